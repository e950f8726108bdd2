// A simulated panel that any program can search and program: it sits behind a pseudo-terminal and answers as
// long as this object lives and the thread's event loop runs. Pseudo-terminals know no parity, only the speed
// is compared: a panel set to 19200 even is found at 19200 none.
#pragma once

#include "serial_io/pseudo_terminal.h"
#include "simulation/simulated_line.h"

#include <QSocketNotifier>
#include <QTimer>

#include <string>

namespace qdm {

class PseudoTerminalPanel {
 public:
  // `panel` and `time`, a clock of real time, have to outlive this. std::system_error when the system has no
  // pseudo-terminal left.
  PseudoTerminalPanel(SimulatedPanel& panel, Waiting& time, Pacing pacing = Pacing::None);

  const std::string& Device() const { return terminal_.Device(); }

 private:
  void TakeWhatWasSent();
  void AnswerWhatIsDue();

  Waiting& time_;
  PseudoTerminal terminal_;
  SimulatedLine line_;
  QSocketNotifier bytesSent_{terminal_.Descriptor(), QSocketNotifier::Read};
  QTimer nextAnswer_;
};

}  // namespace qdm
