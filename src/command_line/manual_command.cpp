#include "base/code_page.h"
#include "base/file_access.h"
#include "command_line/commands.h"
#include "command_line/json_writer.h"
#include "command_line/record_files.h"
#include "manuals/manual_reading.h"
#include "projectors/definition_setup.h"
#include "projectors/manual_definition.h"
#include "projectors/projector_files.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {
namespace {

constexpr std::string_view kReadingFormat = "qdm-manual-reading";

std::string PageText(const std::string& name, CommandContext& context) {
  if (name == kStandardStream) return std::string(std::istreambuf_iterator<char>(context.In), {});
  const std::vector<std::uint8_t> bytes = ReadWholeFile(PathOf(name));
  return {bytes.begin(), bytes.end()};
}

std::string_view ParityName(LineParity parity) {
  return parity == LineParity::None ? "none" : parity == LineParity::Even ? "even" : "odd";
}

void AppendOptional(std::string& json, std::string_view key, const std::optional<int>& value) {
  json.append("\"").append(key).append("\": ").append(value ? std::to_string(*value) : "null");
}

std::string LineToJson(const ManualLineSettings& line) {
  std::string json = "{";
  AppendOptional(json, "speed", line.Speed);
  json += ", \"parity\": ";
  if (line.Parity) {
    AppendQuoted(json, ParityName(*line.Parity));
  } else {
    json += "null";
  }
  json += ", ";
  AppendOptional(json, "stop", line.StopBits);
  return json += "}";
}

std::set<std::size_t> LinesOf(const std::vector<ManualRange>& ranges) {
  std::set<std::size_t> lines;
  for (const ManualRange& range : ranges) lines.insert(range.Line);
  return lines;
}

void AppendLines(std::string& json, const std::vector<ManualRange>& ranges) {
  json += "\"lines\": [";
  const char* separator = "";
  for (const std::size_t line : LinesOf(ranges)) {
    json.append(separator).append(std::to_string(line));
    separator = ", ";
  }
  json += "]";
}

// What a slot and a reply begin with.
void AppendHead(std::string& json, int slot, const SerialString& string, bool sure) {
  json += "{\"slot\": " + std::to_string(slot) + ", \"name\": ";
  AppendQuoted(json, CommandSlotNames[static_cast<std::size_t>(slot)]);
  json += ", \"bytes\": ";
  AppendQuoted(json, HexBytes(string));
  json.append(", \"sure\": ").append(sure ? "true" : "false").append(", ");
}

std::string ReadingToJson(const ManualReading& reading) {
  std::string json = "{\"format\": \"" + std::string(kReadingFormat) +
                     "\", \"version\": " + std::to_string(kFormatVersion) +
                     ", \"line\": " + LineToJson(reading.Line) + ",\n \"commands\": [";
  const char* separator = "\n  ";
  for (const ManualSlot& slot : reading.Slots) {
    const ManualCommand& command = reading.Commands[slot.Choice];
    json += separator;
    separator = ",\n  ";
    AppendHead(json, slot.Slot, command.String, slot.Sure);
    json += "\"function\": ";
    AppendQuoted(json, command.Function);
    json += ", ";
    AppendLines(json, command.CodeRanges);
    json += ", \"alternatives\": [";
    for (const std::size_t& other : slot.Alternatives) {
      if (&other != slot.Alternatives.data()) json += ", ";
      AppendQuoted(json, HexBytes(reading.Commands[other].String));
    }
    json += "]}";
  }
  json += "],\n \"replies\": [";
  separator = "\n  ";
  for (const ManualReply& reply : reading.Replies) {
    json += separator;
    separator = ",\n  ";
    AppendHead(json, reply.Slot, reply.String, reply.Sure);
    AppendLines(json, reply.Ranges);
    json += "}";
  }
  return json + "],\n \"found\": " + std::to_string(reading.Commands.size()) + "}\n";
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, padded.size()), ' ');
  return padded + "  ";
}

void AppendRow(std::string& table, int slot, const SerialString& string, std::string_view verdict) {
  table +=
      Padded(CommandSlotNames[static_cast<std::size_t>(slot)], 15) + Padded(verdict, 12) + HexBytes(string);
}

std::string ReadingToText(const ManualReading& reading) {
  const ManualLineSettings& line = reading.Line;
  std::string table = "line: " + (line.Speed ? std::to_string(*line.Speed) : "speed not said") + ", parity " +
                      (line.Parity ? std::string(ParityName(*line.Parity)) : "not said") + ", stop bits " +
                      (line.StopBits ? std::to_string(*line.StopBits) : "not said") + "\n";
  for (const ManualSlot& slot : reading.Slots) {
    const ManualCommand& command = reading.Commands[slot.Choice];
    AppendRow(table, slot.Slot, command.String, slot.Sure ? "sure" : "please check");
    table += "  " + CompactText(command.String) + "  \"" + command.Function + "\", " + command.ReadAs;
    if (!slot.Sure) table += " (" + slot.Doubt + ")";
    table += "\n";
    for (const std::size_t other : slot.Alternatives) {
      const ManualCommand& instead = reading.Commands[other];
      AppendRow(table, slot.Slot, instead.String, "or");
      table += "  " + CompactText(instead.String) + "  \"" + instead.Function + "\"\n";
    }
  }
  for (const ManualReply& reply : reading.Replies) {
    AppendRow(table, reply.Slot, reply.String, reply.Sure ? "sure" : "please check");
    table += "\n";
  }
  return table + std::to_string(reading.Commands.size()) + " commands on the page\n";
}

}  // namespace

int Manual(const ManualOptions& options, CommandContext& context) {
  const ManualReading reading = ReadManual(FromUtf8(PageText(options.Page, context)));
  context.Out << (options.Json ? ReadingToJson(reading) : ReadingToText(reading));
  if (reading.Empty()) return kRefused;
  if (!options.Output.empty()) {
    DemandKind(options.Output, FileKind::Definitions);
    ProjectorDefinition projector;
    projector.Manufacturer.Assign(FromUtf8(options.Manufacturer));
    projector.Model.Assign(FromUtf8(options.Model));
    projector = WithManual(projector, ChoicesOf(reading, options.Doubtful));
    CompleteDefinition(projector);
    WriteBinaryFile(options.Output, EncodeDefinitions({&projector, 1}));
  }
  return kDone;
}

}  // namespace qdm
