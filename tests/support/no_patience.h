// Time that passes at once, and a lock that is given up at once.
#pragma once

#include "projectors/library_file.h"

#include <string>

namespace qdm {

inline LibraryPatience NoPatience() {
  LibraryPatience patience;
  patience.Pause = [](LibraryPatience::Milliseconds) {};
  patience.KeepWaiting = [](const std::string&, LibraryPatience::Milliseconds) { return false; };
  return patience;
}

}  // namespace qdm
