// The application, through which every event goes to its window: an exception that nobody caught ends the
// event that it came from and not the editor.
#pragma once

#include <QApplication>

#include <functional>
#include <string>
#include <utility>

namespace qdm {

class EditorApplication : public QApplication {
  Q_OBJECT

 public:
  using QApplication::QApplication;

  // Called with what happened. Exceptions that it meets itself, boxes of its own included, are dropped.
  void SetOnException(std::function<void(const std::string& what)> tell) { tell_ = std::move(tell); }

  bool notify(QObject* receiver, QEvent* event) override;

 private:
  void Tell(const std::string& what) noexcept;

  std::function<void(const std::string&)> tell_;
  bool telling_ = false;
};

}  // namespace qdm
