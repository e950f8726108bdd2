#include "download/forms/port_words.h"

#include "serial_io/port_list.h"

namespace qdm {

QString PortCaption(const SerialPorts& ports, int number) {
  const std::string device = ports.DeviceName(number);
  return QStringLiteral("COM%1 (%2)")
      .arg(number)
      .arg(device.empty() ? QStringLiteral("absent") : QString::fromStdString(device));
}

QString WhyPortIsClosed(const std::string& device) {
  if (device.empty()) return QStringLiteral("This computer has no such port.");
  if (const std::optional<ClosedToUser> closed = DeviceClosedToUser(device);
      closed && !closed->Group.empty()) {
    return QStringLiteral("%1 is open to members of the group %2 only.")
        .arg(QString::fromStdString(device), QString::fromStdString(closed->Group));
  }
  return QStringLiteral("%1 could not be opened: another program may be using it.")
      .arg(QString::fromStdString(device));
}

}  // namespace qdm
