// Two programs stand behind the name `qdm`. The one that the user starts has all commands on files and no
// Qt, whose libraries take longer to load than a file takes to check. What needs a port or pages it hands
// over to `qdm-line` beside it: the same arguments, folder, streams, signals and exit status.
#pragma once

#include "command_line/commands.h"

#include <filesystem>
#include <functional>

namespace qdm {

// The file that runs now, links followed. `called` is the name that it was started by.
std::filesystem::path ProgramFile(const char* called);

// Runs `qdm-line` of that folder as this program was started, `arguments` being main's. Answers its exit
// status where it does not take this program's place; CommandError when it cannot be started.
int HandOver(const std::filesystem::path& programFolder, char** arguments);

// `handOver` in place of each of them.
PortCommands HandedOver(const std::function<int()>& handOver);

}  // namespace qdm
