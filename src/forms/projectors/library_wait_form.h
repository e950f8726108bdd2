// Waits for a library that another program holds: the windows stay painted and take no input, after two
// seconds this one says who holds it and lets the user give up.
#pragma once

#include "projectors/library_lock.h"

#include <QDialog>

#include <string>

class QLabel;

namespace qdm {

class LibraryWaitForm : public QDialog {
  Q_OBJECT

 public:
  explicit LibraryWaitForm(QWidget* parent);
  ~LibraryWaitForm() override;

  // Good for as long as the window lives.
  LibraryPatience Patience();

 private:
  void Pause(LibraryPatience::Milliseconds time);
  bool KeepWaiting(const std::string& owner, LibraryPatience::Milliseconds waited);

  QLabel* owner_;
  bool busyPointer_ = false;
};

}  // namespace qdm
