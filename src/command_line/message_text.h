// Messages and other texts of the program as the lines of a terminal.
#pragma once

#include "base/message.h"

#include <string>
#include <string_view>

namespace qdm {

class FileError;

// The text of a message, its lines separated by line feeds.
std::string TextOf(const Message& message);

// A failure as qdm tells it: "FILE: cannot read: why".
std::string TextOf(const FileError& error);

// On one line, whatever is in it: control characters as the escapes of JSON.
std::string OneLine(std::string_view text);

}  // namespace qdm
