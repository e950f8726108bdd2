#include "serial_io/pseudo_terminal.h"

#include "serial_io/terminal_speeds.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace qdm {

namespace {

std::system_error Failure(const char* operation) {
  return std::system_error(errno, std::generic_category(), std::string("pseudo-terminal: ") + operation);
}

void MakeRaw(int device) {
  termios line{};
  if (::tcgetattr(device, &line) != 0) throw Failure("settings");
  ::cfmakeraw(&line);
  ::cfsetispeed(&line, B9600);
  ::cfsetospeed(&line, B9600);
  if (::tcsetattr(device, TCSANOW, &line) != 0) throw Failure("settings");
}

void CloseAll(int line, int device) {
  if (device >= 0) ::close(device);
  if (line >= 0) ::close(line);
}

}  // namespace

PseudoTerminal::PseudoTerminal() {
  try {
    line_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (line_ < 0 || ::grantpt(line_) != 0 || ::unlockpt(line_) != 0) throw Failure("opening");
    if (::fcntl(line_, F_SETFD, FD_CLOEXEC) != 0 || ::fcntl(line_, F_SETFL, O_NONBLOCK) != 0) {
      throw Failure("opening");
    }
    const char* name = ::ptsname(line_);
    if (name == nullptr) throw Failure("its device");
    device_ = name;
    deviceHeld_ = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (deviceHeld_ < 0) throw Failure("its device");
    MakeRaw(deviceHeld_);
  } catch (...) {
    CloseAll(line_, deviceHeld_);
    throw;
  }
}

PseudoTerminal::~PseudoTerminal() { CloseAll(line_, deviceHeld_); }

Bytes PseudoTerminal::Read() {
  Bytes read;
  std::array<std::uint8_t, 4096> chunk;
  for (ssize_t count = 0; (count = ::read(line_, chunk.data(), chunk.size())) > 0;) {
    read.insert(read.end(), chunk.begin(), chunk.begin() + count);
  }
  return read;
}

void PseudoTerminal::Write(ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(line_, bytes.data(), bytes.size());
    if (count <= 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

LineSettings PseudoTerminal::Settings() const {
  termios line{};
  LineSettings settings;
  if (::tcgetattr(deviceHeld_, &line) != 0) return settings;
  for (const auto& [code, baud] : kTerminalSpeeds) {
    if (code == ::cfgetospeed(&line)) settings.Speed = baud;
  }
  settings.StopBits = (line.c_cflag & CSTOPB) != 0 ? 2 : 1;
  return settings;
}

void PseudoTerminal::SetSpeed(int bitsPerSecond) {
  termios line{};
  if (::tcgetattr(deviceHeld_, &line) != 0) return;
  for (const auto& [code, baud] : kTerminalSpeeds) {
    if (baud != bitsPerSecond) continue;
    ::cfsetispeed(&line, code);
    ::cfsetospeed(&line, code);
  }
  ::tcsetattr(deviceHeld_, TCSANOW, &line);
}

}  // namespace qdm
