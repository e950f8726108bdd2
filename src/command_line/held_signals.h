// Ctrl-C and its kin (SIGINT, SIGTERM, SIGHUP; the console's events on Windows) end the program at once, but
// nothing ends it while a file is being written.
#pragma once

#include <memory>

namespace qdm {

// Signals that come while this lives take effect when it is gone.
class HeldSignals {
 public:
  HeldSignals();
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

 private:
  struct Before;
  std::unique_ptr<Before> before_;
};

}  // namespace qdm
