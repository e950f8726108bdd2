#include "forms/download/download_words.h"

#include "config/panel_types.h"
#include "forms/shared/port_words.h"
#include "panels/frame.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace qdm {
namespace {

QString tr(const char* sentence) { return QCoreApplication::translate("Download", sentence); }

// What became of the memory.
QString MemorySentence(const ProgrammingEnd& end, const QString& port) {
  const ProgrammingResult& result = end.Result;
  if (result.Programmed) return tr("The panel on %1 has been programmed.").arg(port);
  if (result.Connected) {
    return tr("The panel on %1 is partly written, %2 of %3 records, and will not work until it is programmed "
              "again.")
        .arg(port)
        .arg(result.Records)
        .arg(kRecords);
  }
  return tr("The panel on %1 was not programmed: nothing was written.").arg(port);
}

QString WhySentence(const ProgrammingEnd& end) {
  if (end.Result.Programmed) return {};
  if (end.Port && end.Result.Connected) return tr("The line went away: %1.").arg(WordsFor(*end.Port));
  if (end.Port) return tr("The port did not open: %1.").arg(WordsFor(*end.Port));
  if (end.Stopped) return tr("It was stopped.");
  return end.Result.Connected ? tr("The panel stopped answering.") : tr("It did not answer.");
}

QString NextSentence(const ProgrammingEnd& end) {
  if (end.Port && end.Port->Why == OpenFailure::Reason::Gone)
    return tr("Plug the adapter in, then press Find.");
  if (end.Port) return tr("Press Find when the port is free.");
  return end.Result.Programmed ? tr("Press Done, or click on another panel.")
                               : tr("Click on it to try again.");
}

}  // namespace

QString TypeName(const PanelType* type) {
  return type != nullptr ? QString(QLatin1String(type->Caption)) : tr("unknown model");
}

QString OutcomeOf(const ProgrammingEnd& end, const QString& port) {
  QStringList sentences = {MemorySentence(end, port), WhySentence(end)};
  if (end.Result.Connected && !end.Result.Restarted) {
    sentences.append(tr("It failed to restart: switch its power off and on."));
  }
  sentences.append(NextSentence(end));
  sentences.removeAll(QString());
  return sentences.join(QLatin1Char(' '));
}

QString NoteOf(const ProgrammingEnd& end, const QString& time) {
  const ProgrammingResult& result = end.Result;
  if (result.Programmed && result.Restarted) return tr("✓ Programmed at %1").arg(time);
  if (result.Programmed) return tr("✓ Programmed at %1, failed to restart").arg(time);
  if (!result.Connected) return tr("Not programmed at %1").arg(time);
  return tr("Partly written: %1 of %2 records").arg(result.Records).arg(kRecords);
}

QString WhyNotChoosable(const SearchSlot& slot, int controllerType) {
  if (slot.Choosable()) return {};
  if (slot.Panel) {
    return tr("This is a %1, the configuration is for a %2.")
        .arg(TypeName(slot.Panel->Type()), TypeName(PanelTypeOf(controllerType)));
  }
  if (slot.AskedInVain()) return tr("Nobody answered at any line setting.");
  if (slot.Present()) {
    return tr("Asked at %1 of %2 line settings.").arg(slot.SettingsTried).arg(kLineSettings);
  }
  if (slot.Device.empty()) return {};
  return slot.Failure ? WordsFor(*slot.Failure) : tr("It could not be opened.");
}

QString ChoiceInstruction(const std::vector<SearchSlot>& slots, int controllerType) {
  const auto any = [&slots](auto which) { return std::any_of(slots.begin(), slots.end(), which); };
  const QString wanted = TypeName(PanelTypeOf(controllerType));
  if (any([](const SearchSlot& slot) { return slot.Choosable(); })) {
    return tr("Click on the panel to program.");
  }
  if (!any([](const SearchSlot& slot) { return slot.Present(); })) {
    return any([](const SearchSlot& slot) { return !slot.Device.empty(); })
               ? tr("No port could be opened. The rows say why.")
               : tr("This computer has no serial port. Plug the adapter in, then press Find.");
  }
  if (any([](const SearchSlot& slot) { return slot.Present() && !slot.Panel && !slot.AskedInVain(); })) {
    return tr("Stopped before every line setting was tried: a %1 may still be there. Press Find to ask "
              "again.")
        .arg(wanted);
  }
  if (any([](const SearchSlot& slot) { return slot.Panel.has_value(); })) {
    return tr("No %1 was found. What answered is of another type than the configuration.").arg(wanted);
  }
  return tr("No %1 was found. Check that it has power and is connected, then press Find.").arg(wanted);
}

}  // namespace qdm
