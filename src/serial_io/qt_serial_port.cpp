#include "serial_io/qt_serial_port.h"

#include <QFileInfo>
#include <QSerialPort>

#include <poll.h>

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

bool HungUp(int descriptor) {
  pollfd line{.fd = descriptor, .events = POLLIN, .revents = 0};
  return ::poll(&line, 1, 0) < 0 || (line.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
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
  const QString file = DeviceFile(device_);
  if (file.isEmpty()) return false;
  port_ = std::make_unique<QSerialPort>(file);
  if (!port_->open(QIODevice::ReadWrite)) {
    port_.reset();
    return false;
  }
  gone_ = false;
  QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
                   [this](QSerialPort::SerialPortError error) {
                     if (error == QSerialPort::ResourceError) LookWhetherGone();
                   });
  // Only now: a setting that is refused while it opens would keep the port closed.
  ApplySettings();
  return IsOpen();
}

void QtSerialPort::Close() { port_.reset(); }

bool QtSerialPort::IsOpen() const { return port_ && !gone_; }

// One call for each setting, so that a refused one keeps none of the others from taking effect.
void QtSerialPort::ApplySettings() {
  if (settings_.Speed) port_->setBaudRate(*settings_.Speed);
  if (settings_.DataBits) port_->setDataBits(static_cast<QSerialPort::DataBits>(*settings_.DataBits));
  if (settings_.StopBits) port_->setStopBits(static_cast<QSerialPort::StopBits>(*settings_.StopBits));
  if (settings_.Parity) port_->setParity(QtParity(*settings_.Parity));
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
  return IsOpen() && taken == count;
}

// QSerialPort moves bytes from the system's buffer to its own when an event loop tells it to; without one it
// has to be asked.
void QtSerialPort::TakeInWhatArrived() {
  while (IsOpen() && port_->waitForReadyRead(0)) {
  }
}

// QSerialPort also reports this error, and stops listening, when it was told of input that has been read in
// the meantime, in the same turn of the event loop. Then the device is still there.
void QtSerialPort::LookWhetherGone() {
  gone_ = HungUp(port_->handle());
  if (!gone_) port_->setReadBufferSize(0);  // unlimited, as it is; listens again
}

}  // namespace qdm
