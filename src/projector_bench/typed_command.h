// A command that somebody types to have it sent at once: it is taken only where it can be read in one way,
// and how it is read is said beside it.
#pragma once

#include "serial_strings/string_record.h"

#include <optional>
#include <string>
#include <string_view>

namespace qdm {

struct TypedCommand {
  std::optional<SerialString> String;  // nothing: there is none, or it is refused
  std::string Words;                   // "50 57 0D (characters with codes)", or why it is refused; UTF-8
};

TypedCommand ReadTypedCommand(std::u16string_view text);

}  // namespace qdm
