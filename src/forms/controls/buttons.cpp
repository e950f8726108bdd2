#include "forms/controls/buttons.h"

#include "config/panel_types.h"
#include "forms/shared/qt_text.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QRadioButton>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace qdm {
namespace {

constexpr int kPictureSize = 32;

// By LockButton.
constexpr std::array<const char*, Buttons::kButtons> kPictures = {
    "button_volume_up", "button_volume_down", "button_pc1", "button_pc2", "button_video", "button_power"};

QString NameOf(std::size_t button) { return Said(kLockButtonNames[button]); }

// Radio buttons, since they are a choice of one, to a screen reader too, drawn as pictures.
// Styles tell a pressed picture from a raised one by a shade, which drowns beside the picture: the chosen one
// stands on the selection's colour, and the focus is drawn around it.
class PictureButton : public QRadioButton {
 public:
  PictureButton(const char* picture, QWidget* parent) : QRadioButton(parent), name_(picture) {}

 protected:
  bool hitButton(const QPoint& point) const override { return rect().contains(point); }
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
    constexpr int kSize = kPictureSize;
    Picture().paint(&painter, (width() - kSize) / 2, (height() - kSize) / 2, kSize, kSize, Qt::AlignCenter,
                    isEnabled() ? QIcon::Normal : QIcon::Disabled);
  }

 private:
  // Decoded when it is seen: the editor's first image is without it.
  const QIcon& Picture() {
    if (picture_.isNull()) picture_ = QIcon(QStringLiteral(":/icons/%1.png").arg(QLatin1String(name_)));
    return picture_;
  }

  const char* name_;
  QIcon picture_;
};

}  // namespace

Buttons::Buttons(QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  for (int i = 0; i < kButtons; ++i) {
    const auto place = static_cast<std::size_t>(i);
    auto* button = new PictureButton(kPictures[place], this);
    button->setObjectName(QStringLiteral("Option1_%1").arg(i));
    button->setFixedSize(kPictureSize + 12, kPictureSize + 12);
    button->setToolTip(NameOf(place));
    button->setAccessibleName(NameOf(place));
    button->installEventFilter(this);
    connect(button, &QRadioButton::clicked, this, [this, i] { Choose(i); });
    row->addWidget(button);
    Option1[place] = button;
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
  // Exclusive buttons refuse to have none chosen.
  for (QRadioButton* button : Option1) button->setAutoExclusive(false);
  for (int i = 0; i < kButtons; ++i) {
    QRadioButton* button = Option1[static_cast<std::size_t>(i)];
    button->setChecked(i == value_ && IsShown(i));
    button->setFocusPolicy(i == tabStop ? Qt::StrongFocus : Qt::ClickFocus);
  }
  for (QRadioButton* button : Option1) button->setAutoExclusive(true);
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
