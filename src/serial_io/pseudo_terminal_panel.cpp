#include "serial_io/pseudo_terminal_panel.h"

#include <algorithm>
#include <chrono>

namespace qdm {

using std::chrono::milliseconds;

PseudoTerminalPanel::PseudoTerminalPanel(SimulatedPanel& panel, Waiting& time, Pacing pacing)
    : time_(time), line_(&panel, time, pacing) {
  nextAnswer_.setTimerType(Qt::PreciseTimer);
  nextAnswer_.setSingleShot(true);
  QObject::connect(&bytesSent_, &QSocketNotifier::activated, &bytesSent_, [this] { TakeWhatWasSent(); });
  QObject::connect(&nextAnswer_, &QTimer::timeout, &nextAnswer_, [this] { AnswerWhatIsDue(); });
  line_.Open();
}

void PseudoTerminalPanel::TakeWhatWasSent() {
  const Bytes sent = terminal_.Read();
  line_.SetSettings(terminal_.Settings());
  line_.Write(sent);
  AnswerWhatIsDue();
}

void PseudoTerminalPanel::AnswerWhatIsDue() {
  terminal_.Write(line_.ReadAll());
  if (const auto due = line_.NextDelivery()) {
    nextAnswer_.start(std::max(milliseconds(0), std::chrono::ceil<milliseconds>(*due - time_.Now())));
  }
}

}  // namespace qdm
