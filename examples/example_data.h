// The example library, configurations and definitions as tables: invented makers, models and protocols that
// show what a definition can hold. `make_examples` writes them to this folder; what is committed here is what
// it wrote.
#pragma once

#include "config/panel_configuration.h"

#include <string>
#include <string_view>
#include <vector>

namespace qdm::examples {

// A command or reply in a short written form. Text stands for itself; in braces, separated by blanks, stand
//   CR, STX, ...  a control code          1Fh  hexadecimal      031d  decimal      101b  binary
//   VAR, IGN      the variable byte, a byte that matches anything
//   sum, xor      the sum modulo 256, or the exclusive or, of all bytes before it
// Throws std::invalid_argument for a form that it does not understand.
SerialString StringOf(std::string_view form);

std::vector<ProjectorDefinition> Library();

struct ExampleFile {
  std::string Name;
  Bytes Contents;
};
std::vector<ExampleFile> Files();

}  // namespace qdm::examples
