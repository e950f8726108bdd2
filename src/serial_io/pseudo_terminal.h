// A pseudo-terminal: a device that programs open as a serial port, and this end of it. Raw both ways. Not on
// Windows. Bytes written to a device that nobody reads are kept for whoever opens it next, until its buffer
// is full; then they are lost.
#pragma once

#include "base/record_codec.h"
#include "line/line_settings.h"

#include <string>

namespace qdm {

class PseudoTerminal {
 public:
  // std::system_error when the system has none left.
  PseudoTerminal();
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  const std::string& Device() const { return device_; }  // "/dev/pts/7"
  int Descriptor() const { return line_; }               // for a notifier: readable when bytes have come

  // What has come, also nothing.
  Bytes Read();
  void Write(ByteView bytes);
  // What the program at the device has set. Pseudo-terminals know no parity and no data bits but 8: both are
  // empty here, whatever was asked for.
  LineSettings Settings() const;
  // As if the program at the device had set it; 9600 at first. One that no device has changes nothing.
  void SetSpeed(int bitsPerSecond);

 private:
  int line_ = -1;
  // Held open, so that a program that closes the device does not hang this end up.
  int deviceHeld_ = -1;
  std::string device_;
};

}  // namespace qdm
