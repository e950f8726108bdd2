#include "serial_io/port_list.h"
#include "serial_io/win32_serial_port.h"

#include <windows.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

namespace qdm {

// COMn is the device COMn; a number without one stays empty.
PortDevices SystemDevices() {
  PortDevices devices;
  for (int number = 1; number <= kPortSlots; ++number) {
    const std::string device = "COM" + std::to_string(number);
    devices.push_back(DeviceExists(device) ? device : std::string());
  }
  return devices;
}

bool DeviceExists(const std::string& device) {
  if (device.empty()) return false;
  std::array<wchar_t, 1024> target{};
  const std::wstring name(device.begin(), device.end());
  return QueryDosDeviceW(name.c_str(), target.data(), static_cast<DWORD>(target.size())) != 0;
}

std::unique_ptr<SerialPort> PortAt(const std::string& device) {
  return std::make_unique<Win32SerialPort>(device);
}

std::optional<OpenFailure> WhyDeviceIsClosed(const std::string& device) {
  Win32SerialPort port(device);
  port.Open();
  return port.WhyClosed();
}

}  // namespace qdm
