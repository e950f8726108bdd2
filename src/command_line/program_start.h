// What both programs behind the name `qdm` begin with.
#pragma once

#include "command_line/command_context.h"

#include <filesystem>
#include <string>
#include <vector>

namespace qdm {

// In UTF-8, without the program's name. Elsewhere than on Windows a name is the bytes that the user gave.
std::vector<std::string> ArgumentsOf(int argc, char** argv);

// The standard streams, ready to be used, and the user's folders.
CommandContext StandardContext(const std::filesystem::path& programFolder);

}  // namespace qdm
