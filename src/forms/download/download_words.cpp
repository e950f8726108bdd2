#include "forms/download/download_words.h"

#include "config/panel_types.h"
#include "forms/shared/port_words.h"
#include "panels/frame.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <vector>

namespace qdm {
namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(DownloadWords)
};

// What became of the memory.
QString MemorySentence(const ProgrammingEnd& end, const QString& port) {
  const ProgrammingResult& result = end.Result;
  if (result.Programmed) return Words::tr("The panel on %1 has been programmed.").arg(port);
  if (result.Connected) {
    return Words::Words::
        tr("The panel on %1 is partly written, %2 of %3 records, and will not work until it is programmed "
           "again.")
            .arg(port)
            .arg(result.Records)
            .arg(kRecords);
  }
  return Words::tr("The panel on %1 was not programmed: nothing was written.").arg(port);
}

QString WhySentence(const ProgrammingEnd& end) {
  if (end.Result.Programmed) return {};
  if (end.Port && end.Result.Connected) return Words::tr("The line went away: %1.").arg(WordsFor(*end.Port));
  if (end.Port) return Words::tr("The port did not open: %1.").arg(WordsFor(*end.Port));
  if (end.Stopped) return Words::tr("It was stopped.");
  return end.Result.Connected ? Words::tr("The panel stopped answering.") : Words::tr("It did not answer.");
}

QString NextSentence(const ProgrammingEnd& end) {
  if (end.Port && end.Port->Why == OpenFailure::Reason::Gone)
    return Words::tr("Plug the adapter in, then press Find.");
  if (end.Port) return Words::tr("Press Find when the port is free.");
  return end.Result.Programmed ? Words::tr("Press Done, or click on another panel.")
                               : Words::tr("Click on it to try again.");
}

}  // namespace

QString TypeName(const PanelType* type) {
  return type != nullptr ? QString(QLatin1String(type->Caption)) : Words::tr("unknown model");
}

QString OutcomeOf(const ProgrammingEnd& end, const QString& port) {
  QStringList sentences = {MemorySentence(end, port), WhySentence(end)};
  if (end.Result.Connected && !end.Result.Restarted) {
    sentences.append(Words::tr("It failed to restart: switch its power off and on."));
  }
  sentences.append(NextSentence(end));
  sentences.removeAll(QString());
  return sentences.join(QLatin1Char(' '));
}

QString NoteOf(const ProgrammingEnd& end, const QString& time) {
  const ProgrammingResult& result = end.Result;
  if (result.Programmed && result.Restarted) return Words::tr("✓ Programmed at %1").arg(time);
  if (result.Programmed) return Words::tr("✓ Programmed at %1, failed to restart").arg(time);
  if (!result.Connected) return Words::tr("Not programmed at %1").arg(time);
  return Words::tr("Partly written: %1 of %2 records").arg(result.Records).arg(kRecords);
}

Message StopQuestion() {
  return {Words::tr("The panel will be partly written and will not work until it is programmed again.")
              .toStdString(),
          Words::tr("Stop programming?").toStdString(), MessageIcon::Exclamation};
}

QString FailedRestarts(const QStringList& ports) {
  return ports.size() == 1
             ? Words::tr("The panel on %1 failed to restart: switch its power off and on.").arg(ports.front())
             : Words::tr("The panels on %1 failed to restart: switch their power off and on.")
                   .arg(ports.join(QStringLiteral(", ")));
}

QString SettingsLeft(int setting) {
  constexpr int kSettings = static_cast<int>(kLineSettings);
  constexpr double kSecondsASetting = 0.5;
  return Words::tr("Line setting %1 of %2, at most %3 s left")
      .arg(setting + 1)
      .arg(kSettings)
      .arg((kSettings - setting) * kSecondsASetting, 0, 'f', 1);
}

QString WhyNotChoosable(const SearchSlot& slot, int controllerType) {
  if (slot.Choosable()) return {};
  if (slot.Panel) {
    return Words::tr("This is a %1, the configuration is for a %2.")
        .arg(TypeName(slot.Panel->Type()), TypeName(PanelTypeOf(controllerType)));
  }
  if (slot.State == SlotState::Waiting) return Words::tr("Not asked: press Find to ask every port.");
  if (slot.AskedInVain()) return Words::tr("Nobody answered at any line setting.");
  if (slot.Present()) {
    return Words::tr("Asked at %1 of %2 line settings.").arg(slot.SettingsTried).arg(kLineSettings);
  }
  if (slot.Device.empty()) return {};
  return slot.Failure ? WordsFor(*slot.Failure) : Words::tr("It could not be opened.");
}

QString PortHintOf(const std::vector<SearchSlot>& slots) {
  std::vector<ClosedPort> closed;
  for (const SearchSlot& slot : slots) {
    if (slot.Failure) closed.push_back({slot.Device, *slot.Failure});
  }
  return HintOnClosedPorts(closed);
}

QString ChoiceInstruction(const std::vector<SearchSlot>& slots, int controllerType) {
  const auto any = [&slots](auto which) { return std::any_of(slots.begin(), slots.end(), which); };
  const QString wanted = TypeName(PanelTypeOf(controllerType));
  const bool choosable = any([](const SearchSlot& slot) { return slot.Choosable(); });
  if (choosable && any([](const SearchSlot& slot) { return slot.State == SlotState::Waiting; })) {
    return Words::tr(
        "The panel answered where it did before. Click on it to program, or press Find to ask every "
        "port.");
  }
  if (choosable) {
    return Words::tr("Click on the panel to program.");
  }
  if (!any([](const SearchSlot& slot) { return slot.Present(); })) {
    return any([](const SearchSlot& slot) { return !slot.Device.empty(); })
               ? Words::tr("No port could be opened. The rows say why.")
               : Words::tr("This computer has no serial port. Plug the adapter in, then press Find.");
  }
  if (any([](const SearchSlot& slot) { return slot.Present() && !slot.Panel && !slot.AskedInVain(); })) {
    return Words::tr(
               "Stopped before every line setting was tried: a %1 may still be there. Press Find to ask "
               "again.")
        .arg(wanted);
  }
  if (any([](const SearchSlot& slot) { return slot.Panel.has_value(); })) {
    return Words::tr("No %1 was found. What answered is of another type than the configuration.").arg(wanted);
  }
  return Words::tr("No %1 was found. Check that it has power and is connected, then press Find.").arg(wanted);
}

QString OfferOf(const KnownPanel& known, const QString& port) {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const QString settings = QString::fromStdString(known.Settings).section(QLatin1Char(','), 0, 1);
  return Words::tr("%1, %2, answered %3: asking there first...")
      .arg(port, settings, WhenText(known.Answered, now));
}

QString WhenText(std::chrono::sys_seconds then, std::chrono::sys_seconds now) {
  const auto local = [](std::chrono::sys_seconds time) {
    return QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count());
  };
  const QDateTime at = local(then);
  const QString clock = at.toString(QStringLiteral("h:mm"));
  switch (at.date().daysTo(local(now).date())) {
    case 0:
      return Words::tr("today at %1").arg(clock);
    case 1:
      return Words::tr("yesterday at %1").arg(clock);
    default:
      return Words::tr("on %1").arg(at.date().toString(Qt::ISODate));
  }
}

}  // namespace qdm
