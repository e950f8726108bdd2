// What labels leave unsaid and the page says elsewhere: the number of a socket, the state that a pair lacks,
// the function that the characters of a command spell out themselves.
#pragma once

#include "manuals/pairing.h"

#include <vector>

namespace qdm {

void CompleteFunctions(std::vector<Finding>& findings);

}  // namespace qdm
