#include "base/file_access.h"
#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "command_line/work_log_access.h"
#include "work_log/room_status.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace qdm {
namespace {

std::string CheckText(const RoomStatus& status) {
  if (!status.Check) return "ok";
  std::string text = TextOf(*status.Check);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

int Status(const StatusOptions& options, CommandContext& context) {
  WorkLog log = OpenWorkLog(options.Data, context);
  const std::vector<WorkLogEntry> entries = log.Entries();
  if (const auto message = log.TakeMessage()) TellWorkLog({*message}, context);
  const RoomHistories histories(entries);

  int result = kDone;
  for (const std::string& file : options.Files) {
    PanelConfiguration configuration;
    try {
      configuration = ReadConfigurationFile(file);
    } catch (const FileError& error) {
      context.Err << "qdm: " << TextOf(error) << "\n";
      result = kUnusable;
      continue;
    } catch (const CommandError& error) {
      context.Err << "qdm: " << OneLine(error.what()) << "\n";
      result = kUnusable;
      continue;
    }
    const RoomStatus status = StatusOf(configuration, RoomOfFile(PathOf(file)), histories);
    context.Out << OneLine(file) << '\t' << CheckText(status) << '\t'
                << (status.LastSent ? Iso8601(*status.LastSent) : "-") << '\t' << StateText(status.State)
                << '\n';
    if (!status.IsDone()) result = std::max<int>(result, kRefused);
  }
  return result;
}

}  // namespace qdm
