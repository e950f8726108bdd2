#include "serial_io/qt_serial_port.h"

#include "serial_io/port_list.h"

#include <QFileInfo>
#include <QSerialPort>
#include <QSocketNotifier>

#include <poll.h>
#include <termios.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {

namespace {

QString DeviceFile(const std::string& device) {
  const QString name = QFile::decodeName(device.c_str());
  if (name.isEmpty()) return {};
  // The real file, so that two names of one device share one lock. Empty when there is none.
  return QFileInfo(name.contains('/') ? name : "/dev/" + name).canonicalFilePath();
}

QSerialPort::Parity QtParity(LineParity parity) {
  switch (parity) {
    case LineParity::Even:
      return QSerialPort::EvenParity;
    case LineParity::Odd:
      return QSerialPort::OddParity;
    case LineParity::None:
      break;
  }
  return QSerialPort::NoParity;
}

// The system takes what it can and reports success: what became of it is read back.
tcflag_t ControlFlags(int line) {
  termios state{};
  return ::tcgetattr(line, &state) == 0 ? state.c_cflag : 0;
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

enum class LineState { Quiet, InputWaits, Gone };

LineState StateOf(const QSerialPort& port) {
  pollfd line{.fd = port.handle(), .events = POLLIN, .revents = 0};
  if (::poll(&line, 1, 0) < 0 || (line.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) return LineState::Gone;
  return line.revents != 0 ? LineState::InputWaits : LineState::Quiet;
}

}  // namespace

QtSerialPort::QtSerialPort(std::string device) : device_(std::move(device)) {}

QtSerialPort::~QtSerialPort() = default;

void QtSerialPort::SetSettings(std::string_view settings) {
  const LineSettings asked = ParseLineSettings(settings);
  if (asked.Speed) settings_.Speed = asked.Speed;
  if (asked.Parity) settings_.Parity = asked.Parity;
  if (asked.DataBits) settings_.DataBits = asked.DataBits;
  if (asked.StopBits) settings_.StopBits = asked.StopBits;
  if (IsOpen()) ApplySettings();
}

bool QtSerialPort::Open() {
  Close();
  failure_.reset();
  const QString file = DeviceFile(device_);
  if (!file.isEmpty()) port_ = std::make_unique<QSerialPort>(file);
  if (!port_ || !port_->open(QIODevice::ReadWrite)) {
    const std::string reason = port_ ? port_->errorString().toStdString() : std::string();
    port_.reset();
    failure_ = WhyDeviceIsClosed(device_).value_or(OpenFailure{OpenFailure::Reason::Refused, reason});
    return false;
  }
  ListenForTrouble();
  // Only now: a setting that is refused while it opens would keep the port closed.
  ApplySettings();
  return true;
}

void QtSerialPort::Close() {
  unplugged_.reset();
  port_.reset();
}

bool QtSerialPort::IsOpen() const { return port_ && port_->isOpen(); }

// QSerialPort goes on reading nothing from a device that has gone, again and again.
void QtSerialPort::ListenForTrouble() {
  unplugged_ = std::make_unique<QSocketNotifier>(port_->handle(), QSocketNotifier::Exception);
  QObject::connect(unplugged_.get(), &QSocketNotifier::activated, unplugged_.get(),
                   [this] { CloseWhenGone(); });
  // It also stops listening when it was told of input that somebody read in the same turn of the event loop.
  QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
                   [this](QSerialPort::SerialPortError error) {
                     const bool stoppedListening = error == QSerialPort::ResourceError;
                     if (stoppedListening && StateOf(*port_) != LineState::Gone) port_->setReadBufferSize(0);
                   });
}

// One call for each setting, so that a refused one keeps none of the others from taking effect.
void QtSerialPort::ApplySettings() {
  refused_.clear();
  const auto check = [this](LineParameter setting, bool taken) {
    if (!taken) refused_.push_back(setting);
  };
  const auto isSet = [this](tcflag_t mask, tcflag_t flags) {
    return (ControlFlags(port_->handle()) & mask) == flags;
  };
  if (settings_.Speed) check(LineParameter::Speed, port_->setBaudRate(*settings_.Speed));
  if (settings_.DataBits) {
    port_->setDataBits(static_cast<QSerialPort::DataBits>(*settings_.DataBits));
    check(LineParameter::DataBits, isSet(CSIZE, DataBitFlags(*settings_.DataBits)));
  }
  if (settings_.StopBits) {
    port_->setStopBits(static_cast<QSerialPort::StopBits>(*settings_.StopBits));
    check(LineParameter::StopBits, isSet(CSTOPB, *settings_.StopBits == 2 ? CSTOPB : 0));
  }
  if (settings_.Parity) {
    port_->setParity(QtParity(*settings_.Parity));
    // Without parity nobody looks at which one it would be.
    const tcflag_t mask = *settings_.Parity == LineParity::None ? PARENB : PARENB | PARODD;
    check(LineParameter::Parity, isSet(mask, ParityFlags(*settings_.Parity)));
  }
}

std::vector<LineParameter> QtSerialPort::RefusedSettings() const {
  return IsOpen() ? refused_ : std::vector<LineParameter>{};
}

std::size_t QtSerialPort::BytesWaiting() {
  TakeInWhatArrived();
  return IsOpen() ? static_cast<std::size_t>(port_->bytesAvailable()) : 0;
}

Bytes QtSerialPort::ReadAll() {
  TakeInWhatArrived();
  if (!IsOpen()) return {};
  const QByteArray read = port_->readAll();
  return Bytes(read.begin(), read.end());
}

bool QtSerialPort::Write(ByteView bytes) {
  if (!IsOpen()) return false;
  const auto count = static_cast<qint64>(bytes.size());
  const qint64 taken = port_->write(reinterpret_cast<const char*>(bytes.data()), count);
  port_->flush();
  CloseWhenGone();
  return IsOpen() && taken == count;
}

// QSerialPort moves bytes from the system's buffer to its own when an event loop tells it to; without one it
// has to be asked.
void QtSerialPort::TakeInWhatArrived() {
  CloseWhenGone();
  while (IsOpen() && StateOf(*port_) == LineState::InputWaits && port_->waitForReadyRead(0)) {
  }
}

void QtSerialPort::CloseWhenGone() {
  if (!IsOpen() || StateOf(*port_) != LineState::Gone) return;
  unplugged_->setEnabled(false);
  port_->close();
}

}  // namespace qdm
