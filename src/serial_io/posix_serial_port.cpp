#include "serial_io/posix_serial_port.h"

#include "serial_io/port_list.h"
#include "serial_io/terminal_speeds.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace qdm {

namespace {

constexpr int kWriteLimit = 5000;  // ms; for a driver whose buffer is full

// What a line begins with where nothing else is asked for.
constexpr std::string_view kPlainSettings = "9600,n,8,1";

// The real file, so that two names of one device share one lock. Empty when there is none.
std::filesystem::path DeviceFile(const std::string& device) {
  if (device.empty()) return {};
  std::error_code missing;
  return std::filesystem::canonical(device.find('/') != std::string::npos ? device : "/dev/" + device,
                                    missing);
}

tcflag_t ParityFlags(LineParity parity) {
  switch (parity) {
    case LineParity::Even:
      return PARENB;
    case LineParity::Odd:
      return PARENB | PARODD;
    case LineParity::None:
      break;
  }
  return 0;
}

tcflag_t DataBitFlags(int bits) { return bits == 8 ? CS8 : bits == 7 ? CS7 : bits == 6 ? CS6 : CS5; }

// The system takes what it can and reports success: what became of it is read back.
bool SetFlags(int line, tcflag_t mask, tcflag_t flags) {
  termios state{};
  if (::tcgetattr(line, &state) != 0) return false;
  state.c_cflag = (state.c_cflag & ~mask) | flags;
  static_cast<void>(::tcsetattr(line, TCSANOW, &state));
  return ::tcgetattr(line, &state) == 0 && (state.c_cflag & mask) == flags;
}

bool SetSpeed(int line, int bitsPerSecond) {
  const auto speed = std::find_if(kTerminalSpeeds.begin(), kTerminalSpeeds.end(),
                                  [=](const auto& entry) { return entry.second == bitsPerSecond; });
  termios state{};
  if (speed == kTerminalSpeeds.end() || ::tcgetattr(line, &state) != 0) return false;
  ::cfsetispeed(&state, speed->first);
  ::cfsetospeed(&state, speed->first);
  static_cast<void>(::tcsetattr(line, TCSANOW, &state));
  return ::tcgetattr(line, &state) == 0 && ::cfgetospeed(&state) == speed->first;
}

// Raw, without flow control. A read that finds nothing says so, one that says "end" means that the device is
// gone.
bool MakeRaw(int line, termios state) {
  ::cfmakeraw(&state);
  state.c_cflag |= CLOCAL | CREAD;
  state.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
  state.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY);
  state.c_cc[VMIN] = 1;
  state.c_cc[VTIME] = 0;
  return ::tcsetattr(line, TCSANOW, &state) == 0;
}

bool WouldBlock(int error) { return error == EAGAIN || error == EINTR; }

}  // namespace

PosixSerialPort::PosixSerialPort(std::string device) : device_(std::move(device)) {}

PosixSerialPort::~PosixSerialPort() { CloseLine(); }

void PosixSerialPort::SetSettings(std::string_view settings) {
  const LineSettings asked = ParseLineSettings(settings);
  if (asked.Speed) settings_.Speed = asked.Speed;
  if (asked.Parity) settings_.Parity = asked.Parity;
  if (asked.DataBits) settings_.DataBits = asked.DataBits;
  if (asked.StopBits) settings_.StopBits = asked.StopBits;
  if (IsOpen()) ApplySettings();
}

bool PosixSerialPort::Open() {
  Close();
  failure_.reset();
  if (OpenLine()) {
    ApplySettings();
    return true;
  }
  const std::string reason = std::strerror(errno);
  Close();
  failure_ = WhyDeviceIsClosed(device_).value_or(OpenFailure{OpenFailure::Reason::Refused, reason});
  return false;
}

// False with the system's error, if it was the system that refused.
bool PosixSerialPort::OpenLine() {
  const std::filesystem::path file = DeviceFile(device_);
  if (file.empty() || !lock_.Hold(file)) return false;
  line_ = ::open(file.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (line_ < 0 || ::tcgetattr(line_, &before_) != 0 || !MakeRaw(line_, before_)) return false;
  ::ioctl(line_, TIOCEXCL);
  arrived_ = std::make_unique<QSocketNotifier>(line_, QSocketNotifier::Read);
  QObject::connect(arrived_.get(), &QSocketNotifier::activated, arrived_.get(), [this] { TakeIn(); });
  return true;
}

void PosixSerialPort::Close() {
  CloseLine();
  arrived_.reset();
}

void PosixSerialPort::CloseLine() {
  waiting_.clear();
  if (arrived_) arrived_->setEnabled(false);  // it may be what calls
  if (line_ >= 0) {
    ::tcsetattr(line_, TCSANOW, &before_);
    ::ioctl(line_, TIOCNXCL);
    ::close(line_);
    line_ = -1;
  }
  lock_.Release();
}

// One call for each setting, so that a refused one keeps none of the others from taking effect.
void PosixSerialPort::ApplySettings() {
  refused_.clear();
  const auto check = [this](LineParameter setting, bool taken) {
    if (!taken) refused_.push_back(setting);
  };
  const LineSettings plain = ParseLineSettings(kPlainSettings);
  const int dataBits = settings_.DataBits.value_or(*plain.DataBits);
  const LineParity parity = settings_.Parity.value_or(*plain.Parity);
  check(LineParameter::Speed, SetSpeed(line_, settings_.Speed.value_or(*plain.Speed)));
  check(LineParameter::DataBits, SetFlags(line_, CSIZE, DataBitFlags(dataBits)));
  check(LineParameter::StopBits,
        SetFlags(line_, CSTOPB, settings_.StopBits.value_or(*plain.StopBits) == 2 ? CSTOPB : 0));
  // Without parity nobody looks at which one it would be.
  const tcflag_t mask = parity == LineParity::None ? PARENB : PARENB | PARODD;
  check(LineParameter::Parity, SetFlags(line_, mask, ParityFlags(parity)));
}

std::vector<LineParameter> PosixSerialPort::RefusedSettings() const {
  return IsOpen() ? refused_ : std::vector<LineParameter>{};
}

std::size_t PosixSerialPort::BytesWaiting() {
  TakeIn();
  return waiting_.size();
}

Bytes PosixSerialPort::ReadAll() {
  TakeIn();
  return std::exchange(waiting_, {});
}

void PosixSerialPort::TakeIn() {
  std::array<std::uint8_t, 4096> some;
  while (IsOpen()) {
    const ssize_t count = ::read(line_, some.data(), some.size());
    if (count < 0 && WouldBlock(errno)) return;
    if (count <= 0) return CloseLine();
    waiting_.insert(waiting_.end(), some.begin(), some.begin() + count);
  }
}

bool PosixSerialPort::Write(ByteView bytes) {
  TakeIn();  // tells whether it is still there
  while (IsOpen() && !bytes.empty()) {
    const ssize_t count = ::write(line_, bytes.data(), bytes.size());
    if (count < 0 && !WouldBlock(errno)) {
      CloseLine();
      return false;
    }
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else {
      pollfd room{.fd = line_, .events = POLLOUT, .revents = 0};
      if (::poll(&room, 1, kWriteLimit) == 0) return false;
    }
  }
  return IsOpen();
}

}  // namespace qdm
