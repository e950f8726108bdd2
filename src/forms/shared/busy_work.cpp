#include "forms/shared/busy_work.h"

#include "base/file_system.h"
#include "forms/shared/busy_form.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScopedValueRollback>

#include <chrono>
#include <future>
#include <system_error>

namespace qdm {
namespace {

constexpr int kPointerAfter = 500;  // ms
constexpr int kTextAfter = 2000;    // ms
constexpr int kLook = 50;           // ms

bool theImpatience = false;
bool isUnderway = false;

class BusyPointer {
 public:
  BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyPointer() { QApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

// Nothing when the system has no thread left.
std::optional<std::future<void>> Begun(const std::function<void()>& work) {
  try {
    return std::async(std::launch::async, [&work, hook = FileStepHookScope::Current()] {
      const FileStepHookScope inherited(hook);
      work();
    });
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

}  // namespace

BusyWork::BusyWork(QWidget* parent, QString text) : parent_(parent), text_(std::move(text)) {}

bool BusyWork::Underway() { return isUnderway; }

void BusyWork::Do(const std::function<void()>& work) {
  std::optional<std::future<void>> begun = Begun(work);
  if (!begun) return work();
  const QScopedValueRollback underway(isUnderway, true);
  WaitFor([&begun](int milliseconds) {
    return begun->wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready;
  });
  begun->get();
}

void BusyWork::WaitFor(const std::function<bool(int)>& finished) {
  QElapsedTimer clock;
  clock.start();
  if (finished(theImpatience ? 0 : kPointerAfter)) return;
  const BusyPointer pointer;
  BusyForm form(parent_);
  while (!finished(kLook)) {
    if (clock.elapsed() > kTextAfter || theImpatience) {
      form.Say(Text(), mayGiveUp_);
      if (form.GivenUp()) givenUp_ = true;
    }
    // Before the window is there, keys and clicks wait in their queue; it is modal.
    QCoreApplication::processEvents(form.isVisible() ? QEventLoop::AllEvents
                                                     : QEventLoop::ExcludeUserInputEvents |
                                                           QEventLoop::ExcludeSocketNotifiers);
  }
}

bool BusyWork::KeepWaiting(const QString& text) {
  const std::lock_guard lock(mutex_);
  text_ = text;
  mayGiveUp_ = true;
  return !givenUp_;
}

QString BusyWork::Text() {
  const std::lock_guard lock(mutex_);
  return text_;
}

ImpatientScope::ImpatientScope() { theImpatience = true; }
ImpatientScope::~ImpatientScope() { theImpatience = false; }

}  // namespace qdm
