// What a page says against commands that look right on their own: check sums that do not fit, rows that the
// model does not have, a beginning that the page speaks of and the command lacks.
#pragma once

#include "manuals/page.h"
#include "manuals/pairing.h"

#include <vector>

namespace qdm {

void DoubtFindings(const ManualPage& page, std::vector<Finding>& findings);

}  // namespace qdm
