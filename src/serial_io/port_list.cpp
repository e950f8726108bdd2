#include "serial_io/port_list.h"

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace qdm {

namespace {

constexpr auto kPortsVariable = "QDM_PORTS";

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

PortDevices SplitDevices(std::string_view list) {
  PortDevices devices;
  if (Trimmed(list).empty()) return devices;
  for (bool more = true; more && devices.size() < kPortSlots;) {
    const std::size_t comma = list.find(',');
    devices.push_back(Trimmed(list.substr(0, comma)));
    more = comma != std::string_view::npos;
    if (more) list.remove_prefix(comma + 1);
  }
  return devices;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes the digits that `text` begins with, without leading zeros.
std::string_view TakeNumber(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  std::string_view number = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(number.size());
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

class SystemPorts : public SerialPorts {
 public:
  std::string DeviceName(int number) const override {
    constexpr std::string_view kDeviceFolder = "/dev/";
    const std::string device = DeviceOf(number);
    if (!DeviceExists(device)) return {};
    return device.starts_with(kDeviceFolder) ? device.substr(kDeviceFolder.size()) : device;
  }
  std::optional<OpenFailure> WhyClosed(int number) const override {
    return WhyDeviceIsClosed(DeviceOf(number));
  }
  std::unique_ptr<SerialPort> Port(int number) override { return PortAt(DeviceOf(number)); }

 private:
  static std::string DeviceOf(int number) {
    const std::optional<PortDevices> chosen = DevicesFromEnvironment();
    const PortDevices devices = chosen ? *chosen : SystemDevices();
    const auto index = static_cast<std::size_t>(number - 1);
    return index < devices.size() ? devices[index] : std::string();
  }
};

}  // namespace

std::optional<PortDevices> DevicesFromEnvironment() {
  if (!qEnvironmentVariableIsSet(kPortsVariable)) return std::nullopt;
  return SplitDevices(qgetenv(kPortsVariable).toStdString());
}

bool NaturallyBefore(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (IsDigit(a.front()) && IsDigit(b.front())) {
      const std::string_view left = TakeNumber(a);
      const std::string_view right = TakeNumber(b);
      if (left.size() != right.size()) return left.size() < right.size();
      if (left != right) return left < right;
    } else if (a.front() != b.front()) {
      return a.front() < b.front();
    } else {
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return a.empty() && !b.empty();
}

std::unique_ptr<SerialPorts> MakeSystemPorts() { return std::make_unique<SystemPorts>(); }

}  // namespace qdm
