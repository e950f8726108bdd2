#include "serial_io/win32_serial_port.h"

#include "base/words.h"

#include <QString>
#include <QWinEventNotifier>

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

// Time-outs that every driver understands; the special values for "at once" make some of them hang.
constexpr DWORD kReadInterval = 20;  // ms
constexpr DWORD kReadTotal = 200;    // ms, then the byte is asked for again
constexpr DWORD kWriteTotal = 5000;  // ms

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (Valid()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool Valid() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

// The prefix opens COM10 and above as well.
std::wstring DevicePath(const std::string& device) {
  return L"\\\\.\\" + std::wstring(device.begin(), device.end());
}

// The system does not tell who holds a port, and every user may open one.
OpenFailure FailureOf(DWORD error) {
  using Reason = OpenFailure::Reason;
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_GEN_FAILURE:  // an adapter that was pulled out, as its driver has it
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_DEVICE_REMOVED:
      return {Reason::Gone};
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_BUSY:
      return {Reason::Held};
    default:
      return {Reason::Refused, qt_error_string(static_cast<int>(error)).toStdString()};
  }
}

BYTE ParityOf(LineParity parity) {
  switch (parity) {
    case LineParity::Even:
      return EVENPARITY;
    case LineParity::Odd:
      return ODDPARITY;
    case LineParity::None:
      break;
  }
  return NOPARITY;
}

}  // namespace

struct Win32SerialPort::Line {
  explicit Line(const std::string& device)
      : File(CreateFileW(DevicePath(device).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                         FILE_FLAG_OVERLAPPED, nullptr)),
        OpenError(GetLastError()),
        ReadDone(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
        OtherDone(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

  ~Line() {
    Notifier.reset();
    if (!Pending) return;
    // The system may write into `Next` until the operation has ended.
    CancelIoEx(File.Get(), &Reading);
    DWORD count = 0;
    GetOverlappedResult(File.Get(), &Reading, &count, TRUE);
  }

  // Only a serial line has line settings.
  bool IsSerial() const {
    DCB control{};
    control.DCBlength = sizeof(control);
    return File.Valid() && GetCommState(File.Get(), &control) != 0;
  }

  // A device that went while it was opened has no type any more.
  OpenFailure WhyNoLine() const {
    if (GetFileType(File.Get()) == FILE_TYPE_UNKNOWN) return {OpenFailure::Reason::Gone};
    return {OpenFailure::Reason::Refused, Say("it is no serial port")};
  }

  void Start() {
    COMMTIMEOUTS timeouts{kReadInterval, 0, kReadTotal, 0, kWriteTotal};
    SetCommTimeouts(File.Get(), &timeouts);
    Notifier = std::make_unique<QWinEventNotifier>(ReadDone.Get());
    QObject::connect(Notifier.get(), &QWinEventNotifier::activated, Notifier.get(), [this] { TakeIn(); });
    AskForByte();
  }

  // A setting that the driver refuses is left as it was, and keeps none of the others from taking effect.
  void Apply(const LineSettings& settings) {
    Refused.clear();
    const auto change = [this](LineParameter which, auto set) {
      DCB control{};
      control.DCBlength = sizeof(control);
      if (GetCommState(File.Get(), &control) == 0) return Refused.push_back(which);
      control.fBinary = TRUE;
      control.fOutxCtsFlow = control.fOutxDsrFlow = control.fOutX = control.fInX = FALSE;
      control.fDsrSensitivity = control.fNull = control.fErrorChar = control.fAbortOnError = FALSE;
      control.fDtrControl = DTR_CONTROL_ENABLE;
      control.fRtsControl = RTS_CONTROL_ENABLE;
      set(control);
      if (SetCommState(File.Get(), &control) != 0) return;
      // Refused as a whole for something else, perhaps: what counts is what the line has now.
      if (GetCommState(File.Get(), &control) == 0) {
        DCB wished = control;
        set(wished);
        if (std::memcmp(&wished, &control, sizeof(control)) == 0) return;
      }
      Refused.push_back(which);
    };
    if (settings.Speed)
      change(LineParameter::Speed, [&](DCB& c) { c.BaudRate = static_cast<DWORD>(*settings.Speed); });
    if (settings.DataBits)
      change(LineParameter::DataBits, [&](DCB& c) { c.ByteSize = static_cast<BYTE>(*settings.DataBits); });
    if (settings.StopBits)
      change(LineParameter::StopBits,
             [&](DCB& c) { c.StopBits = *settings.StopBits == 2 ? TWOSTOPBITS : ONESTOPBIT; });
    if (settings.Parity) {
      change(LineParameter::Parity, [&](DCB& c) {
        c.Parity = ParityOf(*settings.Parity);
        c.fParity = c.Parity != NOPARITY;
      });
    }
  }

  void AskForByte() {
    ResetEvent(ReadDone.Get());
    Reading = {};
    Reading.hEvent = ReadDone.Get();
    Pending = ReadFile(File.Get(), &Next, 1, nullptr, &Reading) != 0 || GetLastError() == ERROR_IO_PENDING;
    Gone = !Pending;
  }

  // Moves what has arrived to `Arrived`.
  void TakeIn() {
    while (!Gone && Pending && WaitForSingleObject(ReadDone.Get(), 0) == WAIT_OBJECT_0) {
      DWORD count = 0;
      const bool ended = GetOverlappedResult(File.Get(), &Reading, &count, FALSE) != 0;
      Pending = false;
      // Silence ends in success without a byte, or in a time-out.
      if (!ended && GetLastError() != ERROR_TIMEOUT) {
        Gone = true;
        return;
      }
      if (count != 0) {
        Arrived.push_back(Next);
        TakeInRest();
      }
      AskForByte();
    }
  }

  void TakeInRest() {
    COMSTAT state{};
    DWORD errors = 0;
    if (ClearCommError(File.Get(), &errors, &state) == 0 || state.cbInQue == 0) return;
    std::vector<std::uint8_t> rest(state.cbInQue);
    const DWORD count = Finish([&](OVERLAPPED& operation) {
      return ReadFile(File.Get(), rest.data(), static_cast<DWORD>(rest.size()), nullptr, &operation);
    });
    Arrived.insert(Arrived.end(), rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(count));
  }

  // Starts an operation and waits for its end; the number of bytes that it moved.
  template <class Start>
  DWORD Finish(Start start) {
    OVERLAPPED operation{};
    operation.hEvent = OtherDone.Get();
    ResetEvent(OtherDone.Get());
    if (start(operation) == 0 && GetLastError() != ERROR_IO_PENDING) return 0;
    DWORD count = 0;
    GetOverlappedResult(File.Get(), &operation, &count, TRUE);
    return count;
  }

  Handle File;
  DWORD OpenError;  // of use only when the file is not valid
  Handle ReadDone;
  Handle OtherDone;
  OVERLAPPED Reading{};
  std::uint8_t Next = 0;
  bool Pending = false;
  bool Gone = false;
  Bytes Arrived;
  std::vector<LineParameter> Refused;
  std::unique_ptr<QWinEventNotifier> Notifier;
};

Win32SerialPort::Win32SerialPort(std::string device) : device_(std::move(device)) {}

Win32SerialPort::~Win32SerialPort() = default;

void Win32SerialPort::SetSettings(std::string_view settings) {
  const LineSettings asked = ParseLineSettings(settings);
  if (asked.Speed) settings_.Speed = asked.Speed;
  if (asked.Parity) settings_.Parity = asked.Parity;
  if (asked.DataBits) settings_.DataBits = asked.DataBits;
  if (asked.StopBits) settings_.StopBits = asked.StopBits;
  if (IsOpen()) line_->Apply(settings_);
}

std::vector<LineParameter> Win32SerialPort::RefusedSettings() const {
  return IsOpen() ? line_->Refused : std::vector<LineParameter>{};
}

bool Win32SerialPort::Open() {
  Close();
  failure_.reset();
  auto line = std::make_unique<Line>(device_);
  if (!line->File.Valid()) {
    failure_ = device_.empty() ? OpenFailure{} : FailureOf(line->OpenError);
    return false;
  }
  if (!line->IsSerial()) {
    failure_ = line->WhyNoLine();
    return false;
  }
  line_ = std::move(line);
  line_->Apply(settings_);
  line_->Start();
  return IsOpen();
}

void Win32SerialPort::Close() { line_.reset(); }

bool Win32SerialPort::IsOpen() const { return line_ && !line_->Gone; }

std::size_t Win32SerialPort::BytesWaiting() {
  if (!IsOpen()) return 0;
  line_->TakeIn();
  return IsOpen() ? line_->Arrived.size() : 0;
}

Bytes Win32SerialPort::ReadAll() {
  if (BytesWaiting() == 0) return {};
  return std::exchange(line_->Arrived, {});
}

bool Win32SerialPort::Write(ByteView bytes) {
  if (!IsOpen()) return false;
  const DWORD count = line_->Finish([&](OVERLAPPED& operation) {
    return WriteFile(line_->File.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &operation);
  });
  return count == bytes.size();
}

}  // namespace qdm
