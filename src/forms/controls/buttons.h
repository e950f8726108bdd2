// One step of the lock sequence: six picture option buttons, of which one is chosen. The value is the chosen
// one's index. A value that no visible button stands for (hidden, or outside 0..5) is kept and shows as
// nothing chosen, until the user chooses.
#pragma once

#include <QWidget>

#include <array>

class QRadioButton;

namespace qdm {

class Buttons : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kButtons = 6;  // volume up, volume down, PC 1, PC 2, Video, power

  explicit Buttons(QWidget* parent = nullptr);

  // What the choice is for ("First button"): the accessible name.
  void SetLabel(const QString& label);
  void SetShownButtons(const std::array<bool, kButtons>& shown);
  void SetValue(int value);
  int Value() const { return value_; }

 Q_SIGNALS:
  // The user chose another button.
  void Changed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool IsShown(int index) const;
  void Choose(int index);
  void MoveFrom(int index, int direction);
  void ShowValue();

  std::array<QRadioButton*, kButtons> Option1{};
  int value_ = 0;
};

}  // namespace qdm
