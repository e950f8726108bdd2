// What windows say about a port.
#pragma once

#include "download/serial_port.h"

#include <QString>

namespace qdm {

// "COM3 (ttyUSB0)"; "COM3 (absent)" without a device.
QString PortCaption(const SerialPorts& ports, int number);

// Why a port on this device did not open. Empty: there is no such port.
QString WhyPortIsClosed(const std::string& device);

}  // namespace qdm
