// Shows a message in a failed expectation as the user would read it.
#pragma once

#include "base/message.h"

#include <ostream>

namespace qdm {

inline void PrintTo(const Message& message, std::ostream* out) {
  *out << "[" << message.Title << "] \"" << message.Text << "\" icon " << static_cast<int>(message.Icon);
}

}  // namespace qdm
