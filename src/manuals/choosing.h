// Which of the commands that were found is the best for each string of the definition, and whether it is
// sure.
#pragma once

#include "manuals/manual_reading.h"
#include "manuals/pairing.h"

#include <vector>

namespace qdm {

// Fills `Commands` and `Slots`.
void ChooseCommands(const ManualPage& page, std::vector<Finding> findings, ManualReading& reading);

}  // namespace qdm
