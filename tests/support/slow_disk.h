// A disk that takes until the user has been told: the first call of that kind on a file whose path has that
// part waits in its thread for the window that says what takes so long.
#pragma once

#include "base/file_access.h"
#include "forms/shared/busy_form.h"
#include "forms/shared/busy_work.h"

#include <QApplication>
#include <QLabel>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <semaphore>
#include <string>

namespace qdm {

class SlowDisk {
 public:
  SlowDisk(FileStep step, std::string part)
      : step_(step), part_(std::move(part)), hook_([this](FileStep now, const std::filesystem::path& path) {
          if (now == step_ && PathToUtf8(path).find(part_) != std::string::npos) Wait();
          return 0;
        }) {
    look_.callOnTimeout([this] { Look(); });
    look_.start(1);
  }

  // What happens while it takes so long.
  void WhileWaiting(std::function<void()> action) { action_ = std::move(action); }
  // What the window said; empty when there was none.
  std::string Told() const { return told_; }

 private:
  void Wait() {
    if (done_.exchange(true)) return;
    const bool window = QThread::currentThread() != qApp->thread();
    EXPECT_TRUE(window) << "the window that waits for " << part_ << " is not painted";
    if (!window) return;
    waiting_ = true;
    EXPECT_TRUE(seen_.try_acquire_for(std::chrono::seconds(30)));
  }
  void Look() {
    auto* form = qobject_cast<BusyForm*>(QApplication::activeModalWidget());
    if (form == nullptr || !waiting_.exchange(false)) return;
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    form->close();
    EXPECT_TRUE(form->isVisible()) << "it cannot be given up";
    told_ = form->findChild<QLabel*>(QStringLiteral("What"))->text().toStdString();
    if (action_) action_();
    seen_.release();
  }

  const FileStep step_;
  const std::string part_;
  const ImpatientScope impatient_;
  std::atomic<bool> done_ = false;
  std::atomic<bool> waiting_ = false;
  std::binary_semaphore seen_{0};
  std::string told_;
  std::function<void()> action_;
  QTimer look_;
  const FileStepHookScope hook_;
};

// What the window says when that call takes so long during the action.
inline std::string ToldOfSlowDisk(FileStep step, const char* part, const std::function<void()>& action) {
  const SlowDisk disk(step, part);
  action();
  return disk.Told();
}

}  // namespace qdm
