// The small window that says what takes so long. Where somebody else is waited for, the user can give up.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace qdm {

class BusyForm : public QDialog {
  Q_OBJECT

 public:
  explicit BusyForm(QWidget* parent);

  // Shows itself when it does not yet.
  void Say(const QString& text, bool mayGiveUp);
  bool GivenUp() const { return givenUp_; }

  // Escape, the button, the close box.
  void reject() override;

 private:
  QLabel* text_;
  QPushButton* giveUp_;
  bool givenUp_ = false;
};

}  // namespace qdm
