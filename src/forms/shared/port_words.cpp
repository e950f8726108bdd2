#include "forms/shared/port_words.h"

#include <QCoreApplication>
#include <QStringList>

#include <map>
#include <optional>
#include <string>

namespace qdm {
namespace {

QString Translated(const char* sentence) { return QCoreApplication::translate("PortWords", sentence); }

}  // namespace

QString PortName(int number) { return QStringLiteral("COM%1").arg(number); }

QString OwnName(const std::string& device, int number) {
  return device == PortName(number).toStdString() ? QString() : QString::fromStdString(device);
}

QString PortCaption(const std::string& device, int number) {
  if (device.empty()) return Translated(QT_TRANSLATE_NOOP("PortWords", "%1 (absent)")).arg(PortName(number));
  const QString name = OwnName(device, number);
  return name.isEmpty() ? PortName(number) : QStringLiteral("%1 (%2)").arg(PortName(number), name);
}

QString PortCaption(const SerialPorts& ports, int number) {
  return PortCaption(ports.DeviceName(number), number);
}

QString WordsFor(const OpenFailure& failure) { return QString::fromStdString(SentenceOf(failure)); }

QString HintOnClosedPorts(const std::vector<ClosedPort>& closed) {
  std::map<std::string, QStringList> devicesOfGroup;
  for (const auto& [device, why] : closed) {
    if (why.Why != OpenFailure::Reason::NotAllowed || why.Detail.empty()) continue;
    devicesOfGroup[why.Detail].append(QString::fromStdString(device));
  }
  QStringList lines;
  for (const auto& [group, devices] : devicesOfGroup) {
    const char* const sentence =
        devices.size() == 1 ? QT_TRANSLATE_NOOP("PortWords",
                                                "%1 belongs to the group %2: join it (sudo adduser $USER %2) "
                                                "and log in again.")
                            : QT_TRANSLATE_NOOP("PortWords",
                                                "%1 belong to the group %2: join it (sudo adduser $USER %2) "
                                                "and log in again.");
    lines.append(Translated(sentence).arg(devices.join(QStringLiteral(", ")), QString::fromStdString(group)));
  }
  return lines.join(QLatin1Char('\n'));
}

QString WhyPortIsClosed(const SerialPorts& ports, int number) {
  const std::string device = ports.DeviceName(number);
  if (device.empty()) return Translated(QT_TRANSLATE_NOOP("PortWords", "This computer has no such port."));
  const std::optional<OpenFailure> why = ports.WhyClosed(number);
  if (!why) {
    return Translated(
               QT_TRANSLATE_NOOP("PortWords", "%1 could not be opened: another program may be using it."))
        .arg(QString::fromStdString(device));
  }
  if (QString hint = HintOnClosedPorts({{device, *why}}); !hint.isEmpty()) return hint;
  return QStringLiteral("%1: %2").arg(PortCaption(device, number), WordsFor(*why));
}

}  // namespace qdm
