// What windows say about a port.
#pragma once

#include "line/serial_port.h"

#include <QString>

#include <string>
#include <vector>

namespace qdm {

// "COM3"; `number` is 1..16.
QString PortName(int number);

// The device's own name; empty where that is the port's number (Windows).
QString OwnName(const std::string& device, int number);

// "COM3 (ttyUSB0)", "COM3" where the device has no other name; "COM3 (absent)" without a device.
QString PortCaption(const std::string& device, int number);
QString PortCaption(const SerialPorts& ports, int number);

// "In use by minicom (4711)".
QString WordsFor(const OpenFailure& failure);

struct ClosedPort {
  std::string Device;
  OpenFailure Why;
};
// Which group to join for those of the ports that one would open, a line for each group; empty when there is
// none.
QString HintOnClosedPorts(const std::vector<ClosedPort>& closed);

// Why a port did not open.
QString WhyPortIsClosed(const SerialPorts& ports, int number);

}  // namespace qdm
