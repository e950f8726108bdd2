// What windows say about a port.
#pragma once

#include "line/serial_port.h"

#include <QString>

#include <vector>

namespace qdm {

// The device's own name; empty where that is the port's number (Windows).
QString OwnName(const SerialPorts& ports, int number);

// "COM3 (ttyUSB0)", "COM3" where the device has no other name; "COM3 (absent)" without a device.
QString PortCaption(const SerialPorts& ports, int number);

// Which group to join for those of the ports that one would open, a line for each group; empty when there is
// none. `numbers` are 1..16.
QString HintOnClosedPorts(const SerialPorts& ports, const std::vector<int>& numbers);

// Why a port did not open.
QString WhyPortIsClosed(const SerialPorts& ports, int number);

}  // namespace qdm
