// Commands in running text: 'To switch it off send "LAMP=0"', 'Send "IN=RGB" for the computer input'.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

// Gives codes behind a verb of sending the labels that their sentences hold. `findings` are in the page's
// order.
void LabelProse(const ManualPage& page, std::vector<Finding>& findings);

}  // namespace qdm
