#include "command_line/commands.h"
#include "command_line/json_writer.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "command_line/work_log_access.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace qdm {
namespace {

constexpr std::size_t kDigitsShown = 12;

std::string OrDash(const std::string& text) { return text.empty() ? "-" : OneLine(text); }

void PrintLine(const WorkLogEntry& entry, std::ostream& out) {
  out << Iso8601(entry.Began) << '\t' << OrDash(entry.Title) << '\t' << IdentificationText(entry.Panel)
      << '\t' << OrDash(entry.Port) << '\t' << OrDash(entry.Settings) << '\t' << entry.Records << '\t'
      << entry.Retries << '\t' << OutcomeText(entry.Outcome) << '\t'
      << HexDigits(entry.Image).substr(0, kDigitsShown) << '\n';
}

class JsonObject {
 public:
  JsonObject& Text(std::string_view key, std::string_view value) {
    Key(key);
    AppendQuoted(json_, value);
    return *this;
  }
  JsonObject& Number(std::string_view key, std::int64_t value) {
    Key(key);
    json_ += std::to_string(value);
    return *this;
  }
  std::string Whole() const { return json_ + "}"; }

 private:
  void Key(std::string_view key) {
    json_ += json_.empty() ? "{" : ", ";
    AppendQuoted(json_, key);
    json_ += ": ";
  }
  std::string json_;
};

std::string JsonOf(const WorkLogEntry& entry) {
  return JsonObject()
      .Text("time", Iso8601(entry.Began))
      .Text("configuration", entry.Title)
      .Text("file", entry.File)
      .Number("controllerType", entry.ControllerType)
      .Text("panel", IdentificationText(entry.Panel))
      .Text("port", entry.Port)
      .Text("device", entry.Device)
      .Text("settings", entry.Settings)
      .Number("records", entry.Records)
      .Number("retries", entry.Retries)
      .Number("milliseconds", entry.Duration.count())
      .Text("outcome", OutcomeText(entry.Outcome))
      .Text("image", HexDigits(entry.Image))
      .Whole();
}

void PrintJson(const std::vector<WorkLogEntry>& entries, std::ostream& out) {
  out << "{\"format\": \"qdm-log\", \"version\": 1, \"downloads\": [";
  const char* before = "\n  ";
  for (const WorkLogEntry& entry : entries) {
    out << before << JsonOf(entry);
    before = ",\n  ";
  }
  out << "\n]}\n";
}

}  // namespace

int Log(const LogOptions& options, CommandContext& context) {
  WorkLog log = OpenWorkLog(options.Data, context);
  std::vector<WorkLogEntry> entries = log.Entries();
  if (const auto message = log.TakeMessage()) TellWorkLog({*message}, context);
  if (!options.Files.empty()) {
    std::vector<std::string> rooms;
    for (const std::string& file : options.Files) rooms.push_back(RoomOfFile(PathOf(file)));
    std::erase_if(entries, [&rooms](const WorkLogEntry& entry) {
      return std::find(rooms.begin(), rooms.end(), entry.File) == rooms.end();
    });
  }
  if (options.Json) {
    PrintJson(entries, context.Out);
  } else {
    for (const WorkLogEntry& entry : entries) PrintLine(entry, context.Out);
  }
  return kDone;
}

}  // namespace qdm
