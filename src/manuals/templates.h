// Commands that the page does not print but describes: a form with a place for a value ("[k][a][ ][ID][
// ][Data] [Cr]", "~XX00 n", "set input=[field]") and a list of values with their meanings. None of them is
// sure.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

// `codes` are those that were found as they stand: examples of the forms.
std::vector<Finding> ComposeCommands(const ManualPage& page, const std::vector<Code>& codes);

}  // namespace qdm
