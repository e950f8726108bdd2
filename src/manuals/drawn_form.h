// The form of a command as a page draws or states it: "# + code + parameter + CR", "header AA 55 ... ends
// with 0D". What stands before, between and behind the places that a table fills.
#pragma once

#include "manuals/codes.h"
#include "manuals/page.h"

#include <cstddef>
#include <optional>

namespace qdm {

struct DrawnForm {
  CodeBytes Before;
  CodeBytes Between;
  CodeBytes Behind;  // a check sum as a VAR of value 0
  std::size_t Places = 0;
};

// The first form on the page that has a place and something round it.
std::optional<DrawnForm> FindDrawnForm(const ManualPage& page);

}  // namespace qdm
