// A projector definition out of what was understood of its manual.
#pragma once

#include "manuals/manual_reading.h"
#include "projectors/projector_definition.h"

namespace qdm {

inline constexpr std::u16string_view kFromManualNote = u"From a manual, not tried yet";

// The line settings and the strings that are sure, with `doubtful` the best candidates too; what the page
// does not say stays as it was. The flags show each string that was taken.
void TakeFromManual(ProjectorDefinition& projector, const ManualReading& reading, bool doubtful);

// The note, added to what stands there.
void AddFromManualNote(ProjectorDefinition& projector);

}  // namespace qdm
