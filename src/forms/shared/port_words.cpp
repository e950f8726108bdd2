#include "forms/shared/port_words.h"

#include <QStringList>

#include <map>
#include <string>

namespace qdm {

QString OwnName(const SerialPorts& ports, int number) {
  const std::string device = ports.DeviceName(number);
  return device == "COM" + std::to_string(number) ? QString() : QString::fromStdString(device);
}

QString PortCaption(const SerialPorts& ports, int number) {
  const QString port = QStringLiteral("COM%1").arg(number);
  const bool absent = ports.DeviceName(number).empty();
  const QString name = absent ? QStringLiteral("absent") : OwnName(ports, number);
  return name.isEmpty() ? port : QStringLiteral("%1 (%2)").arg(port, name);
}

QString HintOnClosedPorts(const SerialPorts& ports, const std::vector<int>& numbers) {
  std::map<std::string, QStringList> devicesOfGroup;
  for (const int number : numbers) {
    const std::string group = ports.GroupToJoin(number);
    if (!group.empty()) devicesOfGroup[group].append(QString::fromStdString(ports.DeviceName(number)));
  }
  QStringList lines;
  for (const auto& [group, devices] : devicesOfGroup) {
    const QString verb = devices.size() == 1 ? QStringLiteral("belongs") : QStringLiteral("belong");
    lines.append(QStringLiteral("%1 %2 to the group %3: join it (sudo adduser $USER %3) and log in again.")
                     .arg(devices.join(QStringLiteral(", ")), verb, QString::fromStdString(group)));
  }
  return lines.join(QLatin1Char('\n'));
}

QString WhyPortIsClosed(const SerialPorts& ports, int number) {
  const std::string device = ports.DeviceName(number);
  if (device.empty()) return QStringLiteral("This computer has no such port.");
  if (QString hint = HintOnClosedPorts(ports, {number}); !hint.isEmpty()) return hint;
  return QStringLiteral("%1 could not be opened: another program may be using it.")
      .arg(QString::fromStdString(device));
}

}  // namespace qdm
