// Tables of names and their values: "%1POWR | 0 | Power off" with rows below that name only the next value,
// "KP  Power 00 off, 01 on". None of the commands is sure.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

std::vector<Finding> ComposeByValueRows(const ManualPage& page, const std::vector<Code>& codes);

}  // namespace qdm
