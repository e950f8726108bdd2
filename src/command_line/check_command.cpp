#include "base/file_access.h"
#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "config/configuration_rules.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <string>

namespace qdm {
namespace {

// "ok", or what the editor would say.
std::string Verdict(const std::string& file, ExitStatus& status) {
  PanelConfiguration configuration = ReadConfigurationFile(file);
  const std::optional<Message> refusal = CheckConfiguration(configuration);
  if (!refusal) return "ok";
  status = std::max(status, kRefused);
  return TextOf(*refusal);
}

std::string WithBlanksForBreaks(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

int Check(const CheckOptions& options, CommandContext& context) {
  ExitStatus status = kDone;
  if (options.Files.size() == 1) {
    context.Out << Verdict(options.Files.front(), status) << "\n";
    return status;
  }
  for (const std::string& file : options.Files) {
    try {
      const std::string verdict = WithBlanksForBreaks(Verdict(file, status));
      context.Out << file << ": " << verdict << "\n";
    } catch (const FileError& error) {
      context.Err << "qdm: " << TextOf(error) << "\n";
      status = kUnusable;
    } catch (const CommandError& error) {
      context.Err << "qdm: " << error.what() << "\n";
      status = kUnusable;
    }
  }
  return status;
}

}  // namespace qdm
