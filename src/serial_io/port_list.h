// Which devices COM1..COM16 stand for. On Windows COMn is the device COMn. Elsewhere the serial ports that
// the system lists, naturally sorted, are COM1, COM2, ... The variable QDM_PORTS overrides both: device paths
// in the order of the COM numbers, separated by commas; an empty entry is an absent port; set but empty,
// there is no port at all. The list is read whenever it is asked for, so that a port plugged in later is
// seen.
#pragma once

#include "line/serial_port.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

// A device for each COM number from 1 on, at most 16; empty where there is none.
using PortDevices = std::vector<std::string>;

// What QDM_PORTS says; nothing when it is not set.
std::optional<PortDevices> DevicesFromEnvironment();

// Digits in a name compare as numbers: ttyUSB2 before ttyUSB10.
bool NaturallyBefore(std::string_view a, std::string_view b);

// The ports of this machine.
std::unique_ptr<SerialPorts> MakeSystemPorts();

// What each system has its own way for.

// The ports that the system lists, in their order.
PortDevices SystemDevices();
// Linux: `deviceFolder` is /dev, `classFolder` /sys/class/tty. On-board ports (ttyS*) without hardware behind
// them are left out.
PortDevices DevicesListedIn(const std::filesystem::path& deviceFolder,
                            const std::filesystem::path& classFolder);

bool DeviceExists(const std::string& device);

// A closed port on a device path ("/dev/ttyUSB0", "COM3"), which need not exist.
std::unique_ptr<SerialPort> PortAt(const std::string& device);

// What keeps this device from being opened now: it is gone, another program holds it, this user may not, or
// the system refuses it. Nothing when it would open. Does not disturb whoever holds it.
std::optional<OpenFailure> WhyDeviceIsClosed(const std::string& device);

}  // namespace qdm
