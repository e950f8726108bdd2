// The value of one byte while it is edited: digits of HEX, DEC and BIN are typed at a caret, an ASC byte
// takes the character that is typed, CNT and VAR bytes ask their owner for a choice. A value that is no byte
// of its kind is kept and shown as an error.
#pragma once

#include "serial_strings/serial_string.h"
#include "serial_strings/typed_text.h"

#include <QWidget>

#include <cstdint>

class QTimer;

namespace qdm {

class MyTextBox : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kPerRow = 8;  // of the boxes of a string

  explicit MyTextBox(QWidget* parent = nullptr);

  // What it is for, "Byte 3": what a screen reader says before kind and value.
  void SetCaption(const QString& caption);
  void SetByte(std::int16_t value, std::uint8_t kind);
  std::int16_t Value() const { return text_.Value(); }
  std::uint8_t Kind() const { return text_.Kind(); }
  const TypedText& Text() const { return text_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  // The user typed another value.
  void ValueChanged();
  // A click or the Space key on a CNT or VAR byte: its value is chosen, not typed.
  void ChoiceRequest();
  // F4, Alt+Down, and Space where it is no character.
  void KindRequest();
  void PasteRequest();
  // To another byte, that many places on.
  void MoveRequest(int step);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Timer1_Timer();
  bool MoveKey(int key);
  bool EditingKey(const QKeyEvent& key);
  void SpaceKey();
  void ShowCaret();
  void Refresh();
  int TextLeft() const;
  bool IsKind(ByteKind kind) const;

  TypedText text_;
  QString caption_;
  QTimer* Timer1;
  bool caretOn_ = false;
};

}  // namespace qdm
