// Any text as the text form of records: refused with its place, or read and written again the same.
#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "fuzz/fuzzing.h"

#include <variant>

namespace qdm {
namespace {

std::string TextOf(const RecordFile& records) {
  if (const auto* configuration = std::get_if<PanelConfiguration>(&records))
    return ConfigurationToJson(*configuration);
  return ProjectorsToJson(std::get<std::vector<ProjectorDefinition>>(records));
}

void Look(std::string_view text) {
  RecordFile records;
  try {
    records = ReadJson(text);
  } catch (const JsonError& error) {
    Demand(error.what()[0] != '\0', "a refusal says why");
    return;
  }
  const std::string written = TextOf(records);
  Demand(TextOf(ReadJson(written)) == written, "what was read is written back the same");
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({reinterpret_cast<const char*>(data), size});
  return 0;
}
