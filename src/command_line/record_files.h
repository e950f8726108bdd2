// The files that commands are given: their kind is told by the ending, in either case, and "-" is JSON on
// standard input or output. What cannot be read, understood or written is a CommandError with kUnusable.
#pragma once

#include "base/record_codec.h"
#include "command_line/command_context.h"
#include "command_line/json_reader.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

enum class FileKind { Configuration, Definitions, Json, Other };
FileKind KindOfFile(std::string_view name);

inline constexpr std::string_view kStandardStream = "-";

// A name that the user typed, UTF-8.
std::filesystem::path PathOf(const std::string& name);

PanelConfiguration ReadConfigurationFile(const std::string& name);
std::vector<ProjectorDefinition> ReadDefinitionsFile(const std::string& name);
// JSON whatever the name is.
RecordFile ReadJsonFile(const std::string& name, CommandContext& context);
// Any of the three.
RecordFile ReadRecordFile(const std::string& name, CommandContext& context);

void WriteBinaryFile(const std::string& name, ByteView bytes);
// To a file, or to standard output where the name is "-" or empty.
void WriteText(const std::string& name, std::string_view text, CommandContext& context);

// Refuses a name that does not end as `kind` demands.
void DemandKind(const std::string& name, FileKind kind);

}  // namespace qdm
