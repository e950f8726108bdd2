// The end that comes from outside: a signal (POSIX), the desktop's session (both systems), or the loss of the
// screen, after which the toolkit leaves the program by itself. What is not saved is kept in each case.
#pragma once

#include <QObject>

#include <functional>

namespace qdm {

class EndOfSession : public QObject {
  Q_OBJECT

 public:
  // `keep` keeps what is not saved; it must not throw and shows nothing. `leave` tells the main window that
  // it is going to be closed.
  EndOfSession(std::function<void()> keep, std::function<void()> leave);
  ~EndOfSession() override;

  // Keeps the work, closes every window from the topmost down as its user would, so that a programming
  // finishes its frame and restarts the panel, and ends the program.
  void End();

 private:
  void WatchSignals();
  void CloseWindows();

  std::function<void()> keep_;
  std::function<void()> leave_;
  bool ending_ = false;
  int closings_ = 0;
};

}  // namespace qdm
