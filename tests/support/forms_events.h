// What a user does to a modal dialog or a pop-up while the code under test waits in its exec().
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace qdm {

// The open modal window or pop-up; null when there is none.
inline QWidget* OpenWindow() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  return QApplication::activeModalWidget();
}

// Runs `open`, which is to open a window of that class, and `actions` on the window once it is there. What
// `actions` leaves open is closed.
template <class Form>
void WithOpened(const std::function<void()>& open, const std::function<void(Form&)>& actions) {
  bool done = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    auto* form = qobject_cast<Form*>(OpenWindow());
    if (form == nullptr || done) return;
    // Until a dialog is active, keys are still the shortcuts of the window below.
    if (QApplication::activePopupWidget() == nullptr && !form->isActiveWindow())
      return form->activateWindow();
    done = true;
    actions(*form);
    if (form->isVisible()) form->close();
  });
  timer.start(0);
  open();
  // A pop-up menu does not wait.
  if (!done) QCoreApplication::processEvents();
  EXPECT_TRUE(done) << "the window has not been opened";
}

}  // namespace qdm
