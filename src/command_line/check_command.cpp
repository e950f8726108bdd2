#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "config/configuration_rules.h"

#include <optional>
#include <ostream>

namespace qdm {

int Check(const CheckOptions& options, CommandContext& context) {
  PanelConfiguration configuration = ReadConfigurationFile(options.File);
  if (const std::optional<Message> refusal = CheckConfiguration(configuration)) {
    context.Out << TextOf(*refusal) << "\n";
    return kRefused;
  }
  context.Out << "ok\n";
  return kDone;
}

}  // namespace qdm
