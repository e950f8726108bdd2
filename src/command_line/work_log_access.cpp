#include "command_line/work_log_access.h"

#include "command_line/message_text.h"
#include "command_line/record_files.h"

#include <filesystem>
#include <optional>
#include <ostream>

namespace qdm {

WorkLog OpenWorkLog(const std::string& data, const CommandContext& context) {
  std::optional<std::filesystem::path> named = context.DataVariable;
  if (!data.empty()) named = PathOf(data);
  return WorkLog(WorkLogFolder(named, context.UserFolder));
}

void TellWorkLog(const std::vector<Message>& messages, CommandContext& context) {
  for (const Message& message : messages) {
    context.Err << "qdm: " << OneLine(TextOf(message)) << (message.Detail.empty() ? "" : " ")
                << OneLine(message.Detail) << "\n";
  }
}

}  // namespace qdm
