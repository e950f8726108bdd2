#include "forms/controls/spin_entry.h"

#include "forms/controls/entry_note.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace qdm {
namespace {

constexpr int kFirstRepeat = 1000;  // ms
constexpr int kNextRepeats = 100;   // ms
constexpr int kPageSteps = 10;

QToolButton* MakeStepButton(QWidget* parent, const char* name, const QString& caption, Qt::ArrowType arrow) {
  auto* button = new QToolButton(parent);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(caption);
  button->setArrowType(arrow);
  button->setAutoRepeat(false);
  // The arrow keys do what the buttons do: Tab goes from entry to entry.
  button->setFocusPolicy(Qt::NoFocus);
  button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  return button;
}

bool IsEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace

SpinEntry::SpinEntry(QWidget* parent)
    : QWidget(parent),
      Text1(new QLineEdit(this)),
      Up(MakeStepButton(this, "Up", tr("Up"), Qt::UpArrow)),
      Down(MakeStepButton(this, "Down", tr("Down"), Qt::DownArrow)),
      Timer1(new QTimer(this)) {
  Text1->setObjectName(QStringLiteral("Text1"));
  Text1->setAlignment(Qt::AlignRight);
  Text1->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  Timer1->setObjectName(QStringLiteral("Timer1"));

  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(0);
  buttons->addWidget(Up);
  buttons->addWidget(Down);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(1);
  row->addWidget(Text1);
  row->addLayout(buttons);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setFocusProxy(Text1);

  connect(Timer1, &QTimer::timeout, this, &SpinEntry::Timer1_Timer);
  connect(Text1, &QLineEdit::textEdited, this, &SpinEntry::Edited);
  Text1->installEventFilter(this);
  Up->installEventFilter(this);
  Down->installEventFilter(this);
}

void SpinEntry::SetLabel(const QString& label) {
  label_ = label;
  ShowRange();
}

void SpinEntry::SetCaption(const QString& caption) {
  caption_ = caption;
  ShowRange();
}

void SpinEntry::SetMeaning(const QString& meaning) {
  meaning_ = meaning;
  ShowRange();
}

void SpinEntry::SetReason(const QString& reason) {
  if (reason == reason_) return;
  reason_ = reason;
  ShowRange();
}

void SpinEntry::ShowRange() {
  StopRepeat();
  const QString range = meaning_.isEmpty() ? RangeText() : tr("%1, %2").arg(RangeText(), meaning_);
  Text1->setToolTip(!reason_.isEmpty() ? reason_
                    : label_.isEmpty() ? range
                                       : tr("%1: %2", "label, range").arg(label_, range));
  setToolTip(reason_);
  const QString& name = caption_.isEmpty() ? label_ : caption_;
  for (QWidget* part : {static_cast<QWidget*>(this), static_cast<QWidget*>(Text1)}) {
    part->setAccessibleName(name);
    part->setAccessibleDescription(reason_.isEmpty() ? range : reason_);
  }
  FitText();
}

void SpinEntry::SetCurrent(double value) {
  value_ = Limited(value);
  Text1->setText(TextOf(value_));
}

// An unchanged text stands for the value that it was made from, which may be finer than what it shows.
double SpinEntry::Current() const {
  if (Text1->text() == TextOf(value_)) return value_;
  return Limited(Parse(Text1->text().trimmed()).value_or(value_));
}

bool SpinEntry::HoldsWrongText() const {
  const std::optional<double> typed = Parse(Text1->text().trimmed());
  return Text1->text() != TextOf(value_) && (!typed || Limited(*typed) != *typed);
}

void SpinEntry::StoreText() {
  const bool wrong = HoldsWrongText();
  SetCurrent(Current());
  if (wrong) ExplainRange();
}

void SpinEntry::ExplainRange() {
  if (!isVisible() || window()->isHidden()) return;  // the window is hidden before its parts are
  ShowEntryNote(Text1, Text1->toolTip());
}

void SpinEntry::StepBy(int steps) {
  if (HoldsWrongText()) ExplainRange();
  const Steps rule = StepRule();
  const double now = Current();
  const double wanted = now + steps * rule.Size;
  if (steps < 0 && now > rule.Floor) SetCurrent(std::max(wanted, rule.Floor));
  if (steps > 0 && now < rule.Ceiling) SetCurrent(std::min(wanted, rule.Ceiling));
}

void SpinEntry::Up_MouseDown() { HoldButton(Held::Up); }
void SpinEntry::Down_MouseDown() { HoldButton(Held::Down); }

void SpinEntry::HoldButton(Held button) {
  Text1->setFocus(Qt::MouseFocusReason);
  StepBy(button == Held::Up ? 1 : -1);
  held_ = button;
  Timer1->start(kFirstRepeat);
}

void SpinEntry::Timer1_Timer() {
  Timer1->setInterval(kNextRepeats);
  if (held_ == Held::Down) StepBy(-1);
  if (held_ == Held::Up) StepBy(1);
}

void SpinEntry::Button_MouseUp() {
  if (held_ == Held::None) return;
  StopRepeat();
  RaiseChanged();
}

void SpinEntry::StopRepeat() {
  held_ = Held::None;
  Timer1->stop();
}

bool SpinEntry::Text1_KeyDown(int key) {
  if (IsEnter(key)) return true;  // it must not press the window's default button
  int steps = 0;
  switch (key) {
    case Qt::Key_Up:
      steps = 1;
      break;
    case Qt::Key_Down:
      steps = -1;
      break;
    case Qt::Key_PageUp:
      steps = kPageSteps;
      break;
    case Qt::Key_PageDown:
      steps = -kPageSteps;
      break;
    case Qt::Key_Escape:
      if (Text1->text() == TextOf(value_)) return false;  // the window's Escape
      Text1->setText(TextOf(value_));
      return true;
    default:
      return false;
  }
  StepBy(steps);
  RaiseChanged();
  return true;
}

bool SpinEntry::Text1_KeyUp(int key) {
  if (!IsEnter(key)) return false;
  StoreAndRaise();
  Text1->selectAll();
  return true;
}

// A window that is destroyed hides itself when its owner's part of it is gone already: nobody is there to
// tell.
void SpinEntry::Text1_LostFocus() { window()->isHidden() ? StoreText() : StoreAndRaise(); }

void SpinEntry::StoreAndRaise() {
  StoreText();
  RaiseChanged();
}

// An owner that opens a box takes the focus away, which would raise the event inside itself.
void SpinEntry::RaiseChanged() {
  if (raising_) return;
  raising_ = true;
  Q_EMIT Changed();
  raising_ = false;
}

bool SpinEntry::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride: {
      const auto* key = static_cast<QKeyEvent*>(event);
      if (watched != Text1) return false;
      // What was typed is a step of the window's undo, where it has one.
      if (key->modifiers().testFlag(Qt::ControlModifier) &&
          (key->key() == Qt::Key_Z || key->key() == Qt::Key_Y)) {
        event->ignore();
        return true;
      }
      // Escape belongs to the text while it differs, before it is the window's.
      if (key->key() == Qt::Key_Escape && Text1->text() != TextOf(value_)) event->accept();
      return false;
    }
    case QEvent::KeyPress: {
      const auto* key = static_cast<QKeyEvent*>(event);
      return watched == Text1 && !key->modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier) &&
             Text1_KeyDown(key->key());
    }
    case QEvent::KeyRelease: {
      const auto* key = static_cast<QKeyEvent*>(event);
      return watched == Text1 && !key->isAutoRepeat() && Text1_KeyUp(key->key());
    }
    case QEvent::FocusOut:
      // The text's own context menu only borrows the focus.
      if (watched == Text1 && static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
        Text1_LostFocus();
      }
      return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:  // the second press of two quick ones
      if (watched != Text1 && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        watched == Up ? Up_MouseDown() : Down_MouseDown();
      }
      return false;
    case QEvent::MouseButtonRelease:
      if (watched != Text1 && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) Button_MouseUp();
      return false;
    default:
      return QWidget::eventFilter(watched, event);
  }
}

// The mouse up of a held button may never come when the control is taken away under it.
void SpinEntry::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !isEnabled()) StopRepeat();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitText();
  QWidget::changeEvent(event);
}

void SpinEntry::hideEvent(QHideEvent* event) {
  StopRepeat();
  QWidget::hideEvent(event);
}

void SpinEntry::FitText() {
  // Frame, text margins and the cursor, which a line edit adds around its text.
  const int frame = 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, Text1) + 8;
  Text1->setFixedWidth(Text1->fontMetrics().horizontalAdvance(WidestText()) + frame);
  const int height = Text1->sizeHint().height();
  for (QToolButton* button : {Up, Down}) button->setFixedSize(height * 3 / 4, height / 2);
}

}  // namespace qdm
