// What the user does in the modal dialogs that a command opens, in their order. A dialog that nobody expects
// fails the test and is closed; so does a step that is left over.
#pragma once

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QToolBar>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <vector>

namespace qdm {

class DialogScript {
 public:
  using Step = std::function<void(QWidget& dialog)>;

  explicit DialogScript(const std::vector<Step>& steps) : steps_(steps.begin(), steps.end()) { WatchOn(); }
  ~DialogScript() { EXPECT_TRUE(steps_.empty()) << steps_.size() << " dialogs were not opened"; }
  DialogScript(const DialogScript&) = delete;
  DialogScript& operator=(const DialogScript&) = delete;

 private:
  // Timers are single: one that is being served does not fire in the event loop of a dialog below it.
  void WatchOn() {
    QTimer::singleShot(1, &context_, [this] { Serve(); });
  }
  void Serve() {
    WatchOn();
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog == served_) return;
    served_ = dialog;
    if (steps_.empty()) {
      ADD_FAILURE() << "nobody expects " << qPrintable(dialog->windowTitle());
      dialog->close();
      return;
    }
    const Step step = steps_.front();
    steps_.pop_front();
    step(*dialog);
  }

  QObject context_;
  QPointer<QWidget> served_;
  std::deque<Step> steps_;
};

// The child of that name, which must exist.
template <class Widget>
Widget& Child(QWidget& form, const char* name) {
  auto* child = form.findChild<Widget*>(QLatin1String(name));
  if (child == nullptr) throw std::runtime_error(std::string("no ") + name);
  return *child;
}

inline void ShowActive(QWidget& form) {
  form.show();
  form.activateWindow();
  QCoreApplication::processEvents();
}

// The button of a command in the form's toolbar.
inline QWidget* ButtonOf(QWidget& form, const char* action) {
  return Child<QToolBar>(form, "Toolbar1").widgetForAction(&Child<QAction>(form, action));
}

inline void Click(QWidget& form, const char* button) {
  QTest::mouseClick(&Child<QWidget>(form, button), Qt::LeftButton);
}

}  // namespace qdm
