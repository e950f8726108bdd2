// `qdm`, the editor without a window: reads the command line, runs the command, reports what went wrong in
// one line and answers the exit status (command_context.h).
#pragma once

#include "command_line/commands.h"

#include <string>
#include <vector>

namespace qdm {

// `arguments` in UTF-8, without the program's name.
int RunQdm(std::vector<std::string> arguments, CommandContext& context, const PortCommands& ports);

}  // namespace qdm
