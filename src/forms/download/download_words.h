// What the download window says about a programming that has ended, about ports on which nothing can be
// chosen, and about a panel that the work log knows.
#pragma once

#include "panels/programming.h"
#include "work_log/known_panel.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

namespace qdm {

// "QDM 7"; "unknown model" for a type or a model that is not known.
QString TypeName(const PanelType* type);

struct ProgrammingEnd {
  ProgrammingResult Result;
  bool Stopped = false;
  std::optional<OpenFailure> Port;  // why the port does not open any more
};

// Everything, and what to do now. `port` is "COM3 (ttyUSB0)".
QString OutcomeOf(const ProgrammingEnd& end, const QString& port);
// The same in a few words, for the row of the port; `time` is when it ended.
QString NoteOf(const ProgrammingEnd& end, const QString& time);

// Before a panel is left partly written.
Message StopQuestion();

// After restarts that were not acknowledged; `ports` is not empty.
QString FailedRestarts(const QStringList& ports);

// While the panels are asked at that entry of the line settings.
QString SettingsLeft(int setting);

// Why the panel on this slot cannot be chosen after a search; empty when it can be, or when there is no such
// device.
QString WhyNotChoosable(const SearchSlot& slot, int controllerType);
// Which groups to join for ports that did not open; empty when there are none.
QString PortHintOf(const std::vector<SearchSlot>& slots);
// What to do after a search.
QString ChoiceInstruction(const std::vector<SearchSlot>& slots, int controllerType);

// "COM3 (ttyUSB0), 115200,o, answered yesterday: asking there first..."
QString OfferOf(const KnownPanel& known, const QString& port);
// "today at 16:50", "yesterday at 9:05", "on 2026-11-12"; in the local time zone.
QString WhenText(std::chrono::sys_seconds then, std::chrono::sys_seconds now);

}  // namespace qdm
