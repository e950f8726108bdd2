#include "port_commands/stop_on_signals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cstddef>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#include <csignal>
#endif

namespace qdm {

#ifdef _WIN32

namespace {

std::atomic<std::stop_source*> asked{};  // the procedure that is asked to stop
std::atomic<bool> ended{};

// Runs on a thread of its own; the system ends the program when it returns FALSE, and for all events but
// Ctrl-C and Ctrl-Break also when it returns TRUE.
BOOL WINAPI OnConsoleEvent(DWORD event) {
  std::stop_source* const stop = asked;
  if (stop == nullptr) return FALSE;
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [stop] { stop->request_stop(); }, Qt::QueuedConnection);
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
    while (!ended) Sleep(10);
  }
  return TRUE;
}

}  // namespace

struct StopOnSignals::Line {};

StopOnSignals::StopOnSignals(std::stop_source& stop) {
  ended = false;
  asked = &stop;
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

StopOnSignals::~StopOnSignals() {
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  asked = nullptr;
  ended = true;
}

#else

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler may do next to nothing: it writes a byte, and the event loop does the rest.
std::atomic<int> pipeToLoop{-1};

void OnSignal(int) {
  const int savedError = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = ::write(pipeToLoop, &byte, 1);
  errno = savedError;
}

}  // namespace

struct StopOnSignals::Line {
  std::array<int, 2> Pipe{};
  std::array<struct sigaction, kSignals.size()> Before{};
  std::unique_ptr<QSocketNotifier> Told;
};

StopOnSignals::StopOnSignals(std::stop_source& stop) : line_(std::make_unique<Line>()) {
  if (::pipe(line_->Pipe.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : line_->Pipe) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  pipeToLoop = line_->Pipe[1];
  line_->Told = std::make_unique<QSocketNotifier>(line_->Pipe[0], QSocketNotifier::Read);
  QObject::connect(line_->Told.get(), &QSocketNotifier::activated, line_->Told.get(),
                   [&stop, from = line_->Pipe[0]] {
                     char byte = 0;
                     [[maybe_unused]] const auto got = ::read(from, &byte, 1);
                     stop.request_stop();
                   });
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) ::sigaction(kSignals[i], &action, &line_->Before[i]);
}

StopOnSignals::~StopOnSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) ::sigaction(kSignals[i], &line_->Before[i], nullptr);
  line_->Told.reset();
  pipeToLoop = -1;
  for (const int end : line_->Pipe) ::close(end);
}

#endif

}  // namespace qdm
