#include "command_line/record_files.h"

#include "command_line/held_signals.h"
#include "config/configuration_file.h"
#include "projectors/projector_files.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <iterator>
#include <ostream>
#include <vector>

namespace qdm {
namespace {

constexpr std::string_view kInputName = "standard input";

std::string UpperCaseOf(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

[[noreturn]] void Unusable(const std::string& name, const std::string& why) {
  throw CommandError(kUnusable, name, why);
}

std::string_view TextOf(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
ByteView BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

FileKind KindOfFile(std::string_view name) {
  const std::string upper = UpperCaseOf(name);
  if (upper.ends_with(".BVC")) return FileKind::Configuration;
  if (upper.ends_with(".BVD") || upper.ends_with(".DEF")) return FileKind::Definitions;
  if (upper.ends_with(".JSON") || name == kStandardStream) return FileKind::Json;
  return FileKind::Other;
}

std::filesystem::path PathOf(const std::string& name) { return PathFromUtf8(name); }

void DemandKind(const std::string& name, FileKind kind) {
  if (KindOfFile(name) == kind) return;
  Unusable(name, kind == FileKind::Configuration ? "not a configuration file (.BVC)"
                                                 : "not a file of projector definitions (.BVD, .DEF)");
}

PanelConfiguration ReadConfigurationFile(const std::string& name) {
  DemandKind(name, FileKind::Configuration);
  return ReadConfiguration(PathOf(name));
}

std::vector<ProjectorDefinition> ReadDefinitionsFile(const std::string& name) {
  DemandKind(name, FileKind::Definitions);
  return ReadDefinitions(PathOf(name));
}

RecordFile ReadJsonFile(const std::string& name, CommandContext& context) {
  try {
    if (name != kStandardStream) return ReadJson(TextOf(ReadWholeFile(PathOf(name))));
    return ReadJson(std::string(std::istreambuf_iterator<char>(context.In), {}));
  } catch (const JsonError& error) {
    Unusable(name == kStandardStream ? std::string(kInputName) : name, error.what());
  }
}

RecordFile ReadRecordFile(const std::string& name, CommandContext& context) {
  switch (KindOfFile(name)) {
    case FileKind::Configuration:
      return ReadConfigurationFile(name);
    case FileKind::Definitions:
      return ReadDefinitionsFile(name);
    case FileKind::Json:
      return ReadJsonFile(name, context);
    case FileKind::Other:
      break;
  }
  Unusable(name, "the ending says no kind of file: .BVC, .BVD, .DEF or .json");
}

void WriteBinaryFile(const std::string& name, ByteView bytes) {
  const HeldSignals uninterrupted;
  WriteFileSafely(PathOf(name), bytes);
}

void WriteText(const std::string& name, std::string_view text, CommandContext& context) {
  if (name.empty() || name == kStandardStream) {
    context.Out << text;
  } else {
    WriteBinaryFile(name, BytesOf(text));
  }
}

}  // namespace qdm
