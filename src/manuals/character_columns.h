// Tables of one character a cell that extraction has read column by column: a line for each character, first
// the first characters of all rows, then the second ones.
#pragma once

#include "manuals/codes.h"

#include <vector>

namespace qdm {

// Adds the codes in the order of their rows. The length of a row is the one for which the labels of the page
// fit.
void AddCharacterColumns(const ManualPage& page, std::vector<Code>& codes);

}  // namespace qdm
