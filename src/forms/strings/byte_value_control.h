// One byte of the string editor: the label of its kind and its value.
#pragma once

#include <QWidget>

#include <cstdint>

class QLabel;

namespace qdm {

class MyTextBox;

class ByteValueControl : public QWidget {
  Q_OBJECT

 public:
  // `index`: the byte's place, 0..31.
  ByteValueControl(int index, QWidget* parent);

  int MyIndex() const { return index_; }
  MyTextBox* Box() const { return MyTextBox1; }

  std::int16_t Value() const;
  std::uint8_t Kind() const;
  void SetByte(std::int16_t value, std::uint8_t kind);

 Q_SIGNALS:
  // The kind is to be chosen: the label was clicked, or the keys said so.
  void KindRequest();
  // The byte has got another kind.
  void ModeChanged();
  // The user typed another value.
  void VariableChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Text2_Click();
  void ShowKind();

  QLabel* Text2;
  MyTextBox* MyTextBox1;
  int index_;
};

}  // namespace qdm
