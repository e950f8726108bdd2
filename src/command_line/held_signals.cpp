#include "command_line/held_signals.h"

#include <mutex>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#endif

namespace qdm {

#ifdef _WIN32

namespace {

std::recursive_mutex consoleEvents;  // held by whoever must not be interrupted, and by what it calls

// Runs on a thread of its own; what comes next is another handler, or the end of the program.
BOOL WINAPI WaitForHolders(DWORD) {
  const std::lock_guard wait(consoleEvents);
  return FALSE;
}

}  // namespace

struct HeldSignals::Before {
  std::unique_lock<std::recursive_mutex> Held{consoleEvents};
};

HeldSignals::HeldSignals() {
  static const bool listening = SetConsoleCtrlHandler(WaitForHolders, TRUE) != 0;
  static_cast<void>(listening);
  before_ = std::make_unique<Before>();
}
HeldSignals::~HeldSignals() = default;

#else

struct HeldSignals::Before {
  sigset_t Mask;
};

HeldSignals::HeldSignals() : before_(std::make_unique<Before>()) {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&held, signal);
  pthread_sigmask(SIG_BLOCK, &held, &before_->Mask);
}

HeldSignals::~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_->Mask, nullptr); }

#endif

}  // namespace qdm
