#include "forms/shared/busy_work.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>

#include <exception>

namespace qdm {
namespace {

constexpr int kPointerAfter = 500;  // ms
constexpr int kTextAfter = 2000;    // ms
constexpr int kLook = 50;           // ms

class Worker : public QThread {
 public:
  explicit Worker(const std::function<void()>& work) : work_(work) {}
  std::exception_ptr Failure;

 protected:
  void run() override {
    try {
      work_();
    } catch (...) {
      Failure = std::current_exception();
    }
  }

 private:
  const std::function<void()>& work_;
};

}  // namespace

void DoBusy(const std::function<void()>& work, const std::function<void()>& tellSlow) {
  Worker worker(work);
  QElapsedTimer clock;
  clock.start();
  worker.start();
  if (!worker.wait(kPointerAfter)) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool told = false;
    while (!worker.wait(kLook)) {
      if (!told && clock.elapsed() > kTextAfter) {
        tellSlow();
        told = true;
      }
      QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                      QEventLoop::ExcludeSocketNotifiers);
    }
    QApplication::restoreOverrideCursor();
  }
  if (worker.Failure) std::rethrow_exception(worker.Failure);
}

}  // namespace qdm
