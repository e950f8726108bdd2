#include "serial_io/pseudo_terminal_port.h"

#include "projector_bench/wrong_settings.h"

#include <cstddef>
#include <utility>

namespace qdm {

PseudoTerminalPort::PseudoTerminalPort(std::string_view settings) {
  PseudoTerminalPort::SetSettings(settings);
  QObject::connect(&arrived_, &QSocketNotifier::activated, &arrived_, [this] { TakeIn(); });
}

void PseudoTerminalPort::SetSettings(std::string_view settings) {
  settings_ = ParseLineSettings(settings);
  if (settings_.Speed) terminal_.SetSpeed(*settings_.Speed);
}

void PseudoTerminalPort::TakeIn() {
  LineSettings theirs = terminal_.Settings();
  theirs.Parity = settings_.Parity;
  Bytes bytes = terminal_.Read();
  if (theirs.Speed != settings_.Speed) bytes = HeardAs(bytes, theirs, settings_);
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
}

std::size_t PseudoTerminalPort::BytesWaiting() {
  TakeIn();
  return waiting_.size();
}

Bytes PseudoTerminalPort::ReadAll() {
  TakeIn();
  return std::exchange(waiting_, {});
}

bool PseudoTerminalPort::Write(ByteView bytes) {
  LineSettings theirs = terminal_.Settings();
  theirs.Parity = settings_.Parity;
  if (theirs.Speed == settings_.Speed) {
    terminal_.Write(bytes);
  } else {
    terminal_.Write(HeardAs(bytes, settings_, theirs));
  }
  return true;
}

}  // namespace qdm
