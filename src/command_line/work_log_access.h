// The work log of the user who runs a command.
#pragma once

#include "command_line/command_context.h"
#include "work_log/work_log.h"

#include <string>
#include <vector>

namespace qdm {

// `--data DIR`, else QDM_DATA, else the user's own folder.
WorkLog OpenWorkLog(const std::string& data, const CommandContext& context);
// What `log` had to say of its file, on the error stream.
void TellWorkLog(const std::vector<Message>& messages, CommandContext& context);

}  // namespace qdm
