// Tells when a program has opened a device, so that nothing is sent to a pseudo-terminal before somebody
// listens: what waits in a port is usually thrown away when it is opened. Where the system cannot tell, it
// counts as opened.
#pragma once

#include <QSocketNotifier>

#include <memory>
#include <string>

namespace qdm {

class DeviceOpening {
 public:
  // From now on; ends a wait of the event loop when it happens.
  explicit DeviceOpening(const std::string& device);
  ~DeviceOpening();
  DeviceOpening(const DeviceOpening&) = delete;
  DeviceOpening& operator=(const DeviceOpening&) = delete;

  bool Happened() const { return happened_; }

 private:
  int watch_ = -1;
  bool happened_ = false;
  std::unique_ptr<QSocketNotifier> told_;
};

}  // namespace qdm
