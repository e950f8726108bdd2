#include "forms/strings/choice_popup.h"

#include "forms/strings/string_access.h"

#include <QAccessible>
#include <QCursor>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <algorithm>

namespace qdm {
namespace {

constexpr int kPointerCheck = 100;  // ms
constexpr int kPointerSlack = 12;   // pixels around the pop-up that still count as on it

}  // namespace

ChoicePopup::ChoicePopup(const QStringList& captions, int rows, QWidget* parent)
    : QDialog(parent, Qt::Popup | Qt::FramelessWindowHint), Timer1(new QTimer(this)), rows_(rows) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(1, 1, 1, 1);
  grid->setSpacing(0);
  for (int i = 0; i < captions.size(); ++i) {
    auto* label = new QLabel(captions[i], this);
    label->setObjectName(QStringLiteral("Label1_%1").arg(i));
    label->setMargin(4);
    label->setAutoFillBackground(true);
    label->setMouseTracking(true);
    grid->addWidget(label, i % rows, i / rows);
    Label1.append(label);
  }
  setMouseTracking(true);
  InstallStringAccess();
  Timer1->setObjectName(QStringLiteral("Timer1"));
  connect(Timer1, &QTimer::timeout, this, &ChoicePopup::Timer1_Timer);
}

void ChoicePopup::Forbid(int index, const QString& why) {
  Label(index)->setEnabled(false);
  Label(index)->setToolTip(why);
}

int ChoicePopup::ChooseAt(const QRect& place, int current) {
  choice_ = kNothing;
  pointerCame_ = false;
  adjustSize();
  move(PlaceBeside(place));
  Highlight(std::max(current, 0));
  Timer1->start(kPointerCheck);
  exec();
  Timer1->stop();
  return choice_;
}

QPoint ChoicePopup::PlaceBeside(const QRect& place) const {
  const QScreen* screen = QGuiApplication::screenAt(place.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  const int below = place.bottom() + 1;
  const int y = below + height() <= room.bottom() ? below : place.top() - height();
  return {std::clamp(place.left(), room.left(), std::max(room.left(), room.right() - width())),
          std::max(y, room.top())};
}

// Before the pointer has come to the pop-up, as when it was opened with a key, it cannot leave it.
void ChoicePopup::Timer1_Timer() {
  const QRect around = frameGeometry().adjusted(-kPointerSlack, -kPointerSlack, kPointerSlack, kPointerSlack);
  if (pointerCame_ && !around.contains(QCursor::pos())) reject();
}

void ChoicePopup::Choose(int index) {
  choice_ = index;
  accept();
}

void ChoicePopup::Label1_MouseUp(int index, Qt::MouseButton button) {
  if (button == Qt::LeftButton) Choose(index);
}

int ChoicePopup::LabelAt(const QPoint& place) const {
  const auto at = std::find_if(Label1.begin(), Label1.end(),
                               [&](const QLabel* label) { return label->geometry().contains(place); });
  return at == Label1.end() ? kNothing : static_cast<int>(at - Label1.begin());
}

bool ChoicePopup::CanChoose(int index) const {
  return index >= 0 && index < Label1.size() && Label(index)->isEnabled();
}

void ChoicePopup::Highlight(int index) {
  if (!CanChoose(index)) return;
  if (highlighted_ != kNothing) Paint(highlighted_, false);
  highlighted_ = index;
  Paint(index, true);
  QAccessibleEvent focused(Label(index), QAccessible::Focus);
  QAccessible::updateAccessibility(&focused);
}

// Back and fore colour change places.
void ChoicePopup::Paint(int index, bool highlighted) {
  QPalette colours = palette();
  if (highlighted) {
    const QColor back = colours.color(QPalette::Window);
    colours.setColor(QPalette::Window, colours.color(QPalette::WindowText));
    colours.setColor(QPalette::WindowText, back);
  }
  Label(index)->setPalette(colours);
}

void ChoicePopup::mouseMoveEvent(QMouseEvent* event) {
  pointerCame_ = true;
  Highlight(LabelAt(event->position().toPoint()));
}

void ChoicePopup::mouseReleaseEvent(QMouseEvent* event) {
  const int index = LabelAt(event->position().toPoint());
  if (CanChoose(index)) Label1_MouseUp(index, event->button());
}

void ChoicePopup::MoveBy(int step) {
  int next = highlighted_ + step;
  while (next >= 0 && next < Label1.size() && !CanChoose(next)) next += step;
  Highlight(next);
}

void ChoicePopup::GoToLetter(const QString& letter) {
  const int count = static_cast<int>(Label1.size());
  for (int step = 1; step <= count; ++step) {
    const int index = (highlighted_ + step) % count;
    if (CanChoose(index) && Label(index)->text().startsWith(letter, Qt::CaseInsensitive)) {
      return Highlight(index);
    }
  }
}

// The frame that tells it from the window below.
void ChoicePopup::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ChoicePopup::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      return MoveBy(-1);
    case Qt::Key_Down:
      return MoveBy(1);
    case Qt::Key_Left:
      return MoveBy(-rows_);
    case Qt::Key_Right:
      return MoveBy(rows_);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      return Choose(highlighted_);
    default:
      if (!event->text().isEmpty() && event->text()[0].isLetter()) return GoToLetter(event->text());
      QDialog::keyPressEvent(event);  // Escape
  }
}

}  // namespace qdm
