#include "forms/controls/buttons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace qdm {
namespace {

constexpr int kPictureSize = 32;

struct Picture {
  const char* Icon;
  const char* Name;
};
// In the order of the stored indexes: never renumber.
constexpr std::array<Picture, Buttons::kButtons> kPictures = {
    {{"button_volume_up", QT_TRANSLATE_NOOP("qdm::Buttons", "Volume up")},
     {"button_volume_down", QT_TRANSLATE_NOOP("qdm::Buttons", "Volume down")},
     {"button_pc1", QT_TRANSLATE_NOOP("qdm::Buttons", "PC 1")},
     {"button_pc2", QT_TRANSLATE_NOOP("qdm::Buttons", "PC 2")},
     {"button_video", QT_TRANSLATE_NOOP("qdm::Buttons", "Video")},
     {"button_power", QT_TRANSLATE_NOOP("qdm::Buttons", "Power")}}};

// Styles tell a pressed picture from a raised one by a shade, which drowns beside the picture: the chosen one
// stands on the selection's colour, and the focus is drawn around it.
class PictureButton : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    const bool lit = isChecked() && isEnabled();
    // Some styles draw the selection of a window behind another one in the colour of the window.
    const QBrush chosen = palette().brush(QPalette::Active, QPalette::Highlight);
    painter.setPen(QPen(isChecked() ? chosen.color() : palette().color(QPalette::Mid), 1));
    painter.setBrush(lit ? chosen : palette().brush(QPalette::Button));
    painter.drawRoundedRect(frame, 4, 4);
    if (hasFocus()) {
      painter.setPen(
          QPen(palette().color(lit ? QPalette::HighlightedText : QPalette::ButtonText), 1, Qt::DotLine));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(frame.adjusted(2, 2, -2, -2), 3, 3);
    }
    const int size = iconSize().width();
    icon().paint(&painter, (width() - size) / 2, (height() - size) / 2, size, size, Qt::AlignCenter,
                 isEnabled() ? QIcon::Normal : QIcon::Disabled);
  }
};

}  // namespace

Buttons::Buttons(QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  for (int i = 0; i < kButtons; ++i) {
    const Picture& picture = kPictures[static_cast<std::size_t>(i)];
    auto* button = new PictureButton(this);
    button->setObjectName(QStringLiteral("Option1_%1").arg(i));
    button->setIcon(QIcon(QStringLiteral(":/icons/%1.png").arg(QLatin1String(picture.Icon))));
    button->setIconSize({kPictureSize, kPictureSize});
    button->setFixedSize(kPictureSize + 12, kPictureSize + 12);
    button->setToolTip(tr(picture.Name));
    button->setAccessibleName(tr(picture.Name));
    button->setCheckable(true);
    button->installEventFilter(this);
    connect(button, &QToolButton::clicked, this, [this, i] { Choose(i); });
    row->addWidget(button);
    Option1[static_cast<std::size_t>(i)] = button;
  }
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  ShowValue();
}

void Buttons::SetLabel(const QString& label) { setAccessibleName(label); }

void Buttons::SetShownButtons(const std::array<bool, kButtons>& shown) {
  for (std::size_t i = 0; i < shown.size(); ++i) Option1[i]->setVisible(shown[i]);
  ShowValue();
}

void Buttons::SetValue(int value) {
  value_ = value;
  ShowValue();
}

bool Buttons::IsShown(int index) const {
  return index >= 0 && index < kButtons && !Option1[static_cast<std::size_t>(index)]->isHidden();
}

void Buttons::Choose(int index) {
  const bool another = index != value_;
  SetValue(index);
  if (another) Q_EMIT Changed();
}

// The buttons are one stop of the Tab key: the chosen one, or the first when none is.
void Buttons::ShowValue() {
  int tabStop = value_;
  if (!IsShown(tabStop)) {
    for (tabStop = 0; tabStop < kButtons - 1 && !IsShown(tabStop);) ++tabStop;
  }
  for (int i = 0; i < kButtons; ++i) {
    QToolButton* button = Option1[static_cast<std::size_t>(i)];
    button->setChecked(i == value_ && IsShown(i));
    button->setFocusPolicy(i == tabStop ? Qt::StrongFocus : Qt::ClickFocus);
  }
  setFocusProxy(Option1[static_cast<std::size_t>(tabStop)]);
}

void Buttons::MoveFrom(int index, int direction) {
  int next = index + direction;
  while (next >= 0 && next < kButtons && !IsShown(next)) next += direction;
  if (next < 0 || next >= kButtons) return;
  Choose(next);
  Option1[static_cast<std::size_t>(next)]->setFocus(Qt::TabFocusReason);
}

bool Buttons::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto button = std::find(Option1.begin(), Option1.end(), watched);
  if (button == Option1.end()) return false;
  const int index = static_cast<int>(button - Option1.begin());
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
      MoveFrom(index, -1);
      return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
      MoveFrom(index, 1);
      return true;
    default:
      return false;
  }
}

}  // namespace qdm
