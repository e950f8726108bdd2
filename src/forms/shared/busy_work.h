// Work on a disk that may be slow, done in a thread of its own: the windows stay painted and take no input,
// after half a second the pointer says that something is going on, after two seconds a small window says
// what.
#pragma once

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>

class QWidget;

namespace qdm {

class BusyWork {
 public:
  // `text` is a whole sentence about what takes so long. `parent` may be null.
  BusyWork(QWidget* parent, QString text);

  // Waits for `work`; what it throws is thrown here. It works on what no window shows or reads.
  void Do(const std::function<void()>& work);

  // For the work, while it waits for somebody: the window says that instead, and lets the user give up. False
  // when he did.
  bool KeepWaiting(const QString& text);

  // Some work goes on further up: what a timer or the desktop brings had better wait.
  static bool Underway();

 private:
  QString Text();
  void WaitFor(const std::function<bool(int milliseconds)>& finished);

  QWidget* parent_;
  std::mutex mutex_;  // of the text, which the work changes
  QString text_;
  std::atomic<bool> mayGiveUp_ = false;
  std::atomic<bool> givenUp_ = false;
};

// While it lives everything counts as slow at once. For tests, which have no time for slow disks.
class ImpatientScope {
 public:
  ImpatientScope();
  ~ImpatientScope();
  ImpatientScope(const ImpatientScope&) = delete;
  ImpatientScope& operator=(const ImpatientScope&) = delete;
};

// What `work` answers.
template <class Work>
auto DoBusy(QWidget* parent, const QString& text, const Work& work) {
  using Answer = std::invoke_result_t<const Work&>;
  BusyWork busy(parent, text);
  if constexpr (std::is_void_v<Answer>) {
    busy.Do(work);
  } else {
    std::optional<Answer> answer;
    busy.Do([&] { answer.emplace(work()); });
    return Answer(*std::move(answer));
  }
}

}  // namespace qdm
