// What the projector answers: one acknowledgement for all commands, or their echo. Where the page only
// describes an answer there is none.
#pragma once

#include "manuals/manual_reading.h"
#include "manuals/page.h"

namespace qdm {

// Fills `Replies` for the slots that have a command.
void FindReplies(const ManualPage& page, ManualReading& reading);

}  // namespace qdm
