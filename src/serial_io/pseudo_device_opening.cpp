#include "serial_io/pseudo_device_opening.h"

#include <unistd.h>

#ifdef __linux__
#include <sys/inotify.h>
#endif

namespace qdm {

DeviceOpening::DeviceOpening(const std::string& device) {
#ifdef __linux__
  watch_ = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (watch_ >= 0 && ::inotify_add_watch(watch_, device.c_str(), IN_OPEN | IN_ONESHOT) >= 0) {
    told_ = std::make_unique<QSocketNotifier>(watch_, QSocketNotifier::Read);
    QObject::connect(told_.get(), &QSocketNotifier::activated, told_.get(), [this] {
      happened_ = true;
      told_->setEnabled(false);
    });
    return;
  }
#endif
  happened_ = true;
}

DeviceOpening::~DeviceOpening() {
  told_.reset();
  if (watch_ >= 0) ::close(watch_);
}

}  // namespace qdm
