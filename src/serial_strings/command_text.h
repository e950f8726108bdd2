// A string as one would type it: "PWR ON<CR>". The notation is the plainest that `ParseSerialText` reads back
// as the same bytes and kinds.
#pragma once

#include "serial_strings/string_record.h"

#include <string>

namespace qdm {

// UTF-8. Empty for an empty string.
std::string CommandText(const SerialString& string);

}  // namespace qdm
