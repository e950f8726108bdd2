#include "forms/strings/my_text_box.h"

#include "forms/strings/kind_colours.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTimer>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace qdm {
namespace {

constexpr int kMargin = 4;

std::optional<EditKey> EditKeyOf(const QKeyEvent& event) {
  if (event.modifiers().testFlag(Qt::ControlModifier)) return std::nullopt;
  switch (event.key()) {
    case Qt::Key_Home:
      return EditKey::Home;
    case Qt::Key_End:
      return EditKey::End;
    case Qt::Key_Left:
      return EditKey::Left;
    case Qt::Key_Right:
      return EditKey::Right;
    case Qt::Key_Delete:
      return EditKey::Delete;
    case Qt::Key_Backspace:
      return EditKey::Backspace;
    default:
      return std::nullopt;
  }
}

// Ctrl and Alt together are AltGr, which types characters.
bool TypesText(const QKeyEvent& event) {
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  const bool alt = event.modifiers().testFlag(Qt::AltModifier);
  const QString text = event.text();
  return control == alt && text.size() == 1 && text[0].unicode() >= 32 && text[0].unicode() != 127;
}

bool OpensList(const QKeyEvent& event) {
  return event.key() == Qt::Key_F4 ||
         (event.key() == Qt::Key_Down && event.modifiers().testFlag(Qt::AltModifier));
}

}  // namespace

MyTextBox::MyTextBox(QWidget* parent) : QWidget(parent), Timer1(new QTimer(this)) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setFocusPolicy(Qt::StrongFocus);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setCursor(Qt::IBeamCursor);
  Timer1->setObjectName(QStringLiteral("Timer1"));
  connect(Timer1, &QTimer::timeout, this, &MyTextBox::Timer1_Timer);
}

void MyTextBox::SetCaption(const QString& caption) {
  caption_ = caption;
  Refresh();
}

void MyTextBox::SetByte(std::int16_t value, std::uint8_t kind) {
  text_.Set(value, kind);
  Refresh();
}

void MyTextBox::Refresh() {
  const std::string_view kind = KindLabel(text_.Kind());
  const QString label = QLatin1String(kind.data(), static_cast<qsizetype>(kind.size()));
  const QString value = QString::fromStdString(text_.Text());
  setAccessibleName(text_.Error() ? tr("%1, %2: %3, error").arg(caption_, label, value)
                                  : tr("%1, %2: %3").arg(caption_, label, value));
  setCursor(text_.HasDigits() || IsKind(ByteKind::ASC) ? Qt::IBeamCursor : Qt::ArrowCursor);
  update();
}

bool MyTextBox::IsKind(ByteKind kind) const { return text_.Kind() == static_cast<std::uint8_t>(kind); }

QSize MyTextBox::sizeHint() const {
  return {fontMetrics().horizontalAdvance(QStringLiteral("Invisible")) + 2 * kMargin,
          fontMetrics().height() + 6};
}

// ---- keys ----

// What is typed into the box is not a shortcut of the window.
bool MyTextBox::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (TypesText(*key) || key->matches(QKeySequence::Paste) || EditKeyOf(*key)) event->accept();
  }
  return QWidget::event(event);
}

void MyTextBox::keyPressEvent(QKeyEvent* event) {
  if (OpensList(*event)) {
    Q_EMIT KindRequest();
  } else if (event->matches(QKeySequence::Paste)) {
    Q_EMIT PasteRequest();
  } else if (event->key() == Qt::Key_Space && !IsKind(ByteKind::ASC)) {
    SpaceKey();
  } else if (TypesText(*event)) {
    if (!text_.Type(event->text()[0].unicode())) return QApplication::beep();
    ShowCaret();
    Q_EMIT ValueChanged();
  } else if (!EditingKey(*event) && !MoveKey(event->key())) {
    QWidget::keyPressEvent(event);
  }
}

void MyTextBox::SpaceKey() {
  const bool isChosen = IsKind(ByteKind::CNT) || IsKind(ByteKind::VAR);
  isChosen ? Q_EMIT ChoiceRequest() : Q_EMIT KindRequest();
}

bool MyTextBox::EditingKey(const QKeyEvent& key) {
  const auto editKey = EditKeyOf(key);
  if (!editKey || !text_.Edit(*editKey)) return false;
  ShowCaret();
  if (*editKey == EditKey::Delete || *editKey == EditKey::Backspace) Q_EMIT ValueChanged();
  return true;
}

// Where the caret cannot go on, the neighbours begin.
bool MyTextBox::MoveKey(int key) {
  const int step = key == Qt::Key_Left    ? -1
                   : key == Qt::Key_Right ? 1
                   : key == Qt::Key_Up    ? -kPerRow
                   : key == Qt::Key_Down  ? kPerRow
                                          : 0;
  if (step != 0) Q_EMIT MoveRequest(step);
  return step != 0;
}

// ---- mouse ----

void MyTextBox::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !text_.HasDigits()) return;
  const int width = fontMetrics().horizontalAdvance(u'0');
  const int place = (event->position().toPoint().x() - TextLeft() + width / 2) / width;
  text_.SetCaret(static_cast<std::size_t>(std::max(place, 0)));
  ShowCaret();
}

void MyTextBox::mouseReleaseEvent(QMouseEvent* event) {
  const bool isChosen = IsKind(ByteKind::CNT) || IsKind(ByteKind::VAR);
  if (event->button() == Qt::LeftButton && isChosen && rect().contains(event->position().toPoint())) {
    Q_EMIT ChoiceRequest();
  }
}

// ---- appearance ----

void MyTextBox::Timer1_Timer() {
  caretOn_ = !caretOn_;
  update();
}

void MyTextBox::ShowCaret() {
  caretOn_ = true;
  const int period = QGuiApplication::styleHints()->cursorFlashTime() / 2;  // 0: it does not blink
  period > 0 ? Timer1->start(period) : Timer1->stop();
  Refresh();
}

void MyTextBox::focusInEvent(QFocusEvent* event) {
  ShowCaret();
  QWidget::focusInEvent(event);
}

void MyTextBox::focusOutEvent(QFocusEvent* event) {
  Timer1->stop();
  caretOn_ = false;
  text_.Complete();
  Refresh();
  QWidget::focusOutEvent(event);
}

void MyTextBox::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange) update();
  QWidget::changeEvent(event);
}

int MyTextBox::TextLeft() const {
  const int width = fontMetrics().horizontalAdvance(QString::fromStdString(text_.Text()));
  return (this->width() - width) / 2;
}

void MyTextBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = palette().color(isEnabled() ? QPalette::Base : QPalette::Window);
  painter.fillRect(rect(), background);
  const QColor text = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text);
  painter.setPen(text_.Error() && isEnabled() ? ErrorColourOn(background) : text);
  const int baseline = (height() + fontMetrics().ascent() - fontMetrics().descent()) / 2;
  painter.drawText(TextLeft(), baseline, QString::fromStdString(text_.Text()));
  if (hasFocus() && caretOn_ && text_.HasDigits()) {
    const int x = TextLeft() + fontMetrics().horizontalAdvance(u'0') * static_cast<int>(text_.Caret());
    painter.drawLine(x, 3, x, height() - 4);
  }
  painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (hasFocus()) painter.drawRect(rect().adjusted(1, 1, -2, -2));
}

}  // namespace qdm
