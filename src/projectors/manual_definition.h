// A projector definition out of what was understood of its manual: what is taken is chosen by somebody who
// looked at it, or is what the reading is sure of.
#pragma once

#include "manuals/manual_reading.h"
#include "projectors/projector_definition.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace qdm {

inline constexpr std::u16string_view kFromManualNote = u"From a manual, not tried yet";

struct ManualString {
  std::size_t Slot = 0;
  SerialString String;
};

// What is taken over. `Line` counts where it says something.
struct ManualChoices {
  ManualLineSettings Line;
  std::vector<ManualString> Strings;

  bool Empty() const { return Strings.empty() && !Line.Speed && !Line.Parity && !Line.StopBits; }
};

// The line settings and the strings that are sure, with `doubtful` the best candidates too.
ManualChoices ChoicesOf(const ManualReading& reading, bool doubtful);

// A definition can have five speeds; a manual may well name another.
bool DefinitionHasSpeed(int bitsPerSecond);

// The definition with what was chosen, and a note that says so; all else stays as it was. The flags show each
// string that was taken.
ProjectorDefinition WithManual(ProjectorDefinition projector, const ManualChoices& choices);

}  // namespace qdm
