#include "serial_io/port_list.h"
#include "serial_io/posix_serial_port.h"

#ifndef __linux__
#include <QSerialPortInfo>
#endif

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include <sys/stat.h>

namespace qdm {

namespace fs = std::filesystem;

namespace {

// The kernel makes ttyS0..ttyS3 and more on every machine; the port type 0 stands for "nothing there".
bool HasHardware(const fs::path& portFolder) {
  std::ifstream file(portFolder / "type");
  int type = 0;
  return file >> type && type != 0;
}

bool IsPort(const std::string& name, const fs::path& classFolder) {
  if (name.starts_with("ttyUSB") || name.starts_with("ttyACM")) return true;
  return name.starts_with("ttyS") && HasHardware(classFolder / name);
}

// A device as the file system shows it, without a folder: in /dev.
std::string FileOf(const std::string& device) {
  return device.empty() || device.find('/') != std::string::npos ? device : "/dev/" + device;
}

}  // namespace

PortDevices DevicesListedIn(const fs::path& deviceFolder, const fs::path& classFolder) {
  PortDevices devices;
  std::error_code unreadable;  // a folder that cannot be read lists no port
  for (const fs::directory_entry& entry : fs::directory_iterator(deviceFolder, unreadable)) {
    if (IsPort(entry.path().filename().string(), classFolder)) devices.push_back(entry.path().string());
  }
  std::sort(devices.begin(), devices.end(), NaturallyBefore);
  devices.resize(std::min<std::size_t>(devices.size(), kPortSlots));
  return devices;
}

#ifdef __linux__

PortDevices SystemDevices() { return DevicesListedIn("/dev", "/sys/class/tty"); }

#else

PortDevices SystemDevices() {
  PortDevices devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    const std::string device = port.systemLocation().toStdString();
    // macOS names each port twice; opening a "tty" one waits for a caller on a modem.
    if (!device.starts_with("/dev/tty.")) devices.push_back(device);
  }
  std::sort(devices.begin(), devices.end(), NaturallyBefore);
  devices.resize(std::min<std::size_t>(devices.size(), kPortSlots));
  return devices;
}

#endif

bool DeviceExists(const std::string& device) {
  struct stat found {};
  return ::stat(FileOf(device).c_str(), &found) == 0;
}

std::unique_ptr<SerialPort> PortAt(const std::string& device) {
  return std::make_unique<PosixSerialPort>(device);
}

}  // namespace qdm
