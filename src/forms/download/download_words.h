// What the download window says about a programming that has ended, and about ports on which nothing can be
// chosen.
#pragma once

#include "panels/programming.h"

#include <QString>

#include <optional>

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

// Why the panel on this slot cannot be chosen after a search; empty when it can be, or when there is no such
// device.
QString WhyNotChoosable(const SearchSlot& slot, int controllerType);
// What to do after a search.
QString ChoiceInstruction(const std::vector<SearchSlot>& slots, int controllerType);

}  // namespace qdm
