// Merging libraries, as a version control system asks for it: the files may have any name, so that what they
// hold tells their kind.
#include "base/code_page.h"
#include "base/file_access.h"
#include "command_line/commands.h"
#include "command_line/held_signals.h"
#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "projectors/library_merge.h"
#include "projectors/projector_files.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace qdm {
namespace {

enum class Form { Empty, Records, Json };

struct Side {
  std::string Name;
  Form As = Form::Empty;
  std::vector<ProjectorDefinition> Definitions;
};

bool BeginsLikeJson(ByteView bytes) {
  const auto first = std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte > ' '; });
  return first != bytes.end() && *first == '{';
}

std::vector<ProjectorDefinition> DefinitionsInJson(const std::string& name, ByteView bytes) {
  try {
    RecordFile records = ReadJson({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (auto* definitions = std::get_if<std::vector<ProjectorDefinition>>(&records))
      return std::move(*definitions);
  } catch (const JsonError& error) {
    throw CommandError(kUnusable, name, error.what());
  }
  throw CommandError(kUnusable, name, "a configuration, where projector definitions are merged");
}

std::vector<ProjectorDefinition> DefinitionsInRecords(const std::string& name, ByteView bytes) {
  // A fragment behind whole records is ignored, as everywhere.
  if (bytes.size() < kStoredProjectorSize) {
    throw CommandError(kUnusable, name, "neither JSON text nor whole projector definitions");
  }
  std::vector<ProjectorDefinition> definitions(bytes.size() / kStoredProjectorSize);
  for (ProjectorDefinition& definition : definitions) {
    Decode(bytes, definition);
    bytes = bytes.subspan(kStoredProjectorSize);
  }
  return definitions;
}

Side Read(const std::string& name) {
  const Bytes bytes = ReadWholeFile(PathOf(name));
  if (bytes.empty()) return {name, Form::Empty, {}};
  if (BeginsLikeJson(bytes)) return {name, Form::Json, DefinitionsInJson(name, bytes)};
  return {name, Form::Records, DefinitionsInRecords(name, bytes)};
}

// An absent base is an empty library: the file is new on both sides.
Side ReadBase(const std::string& name) {
  return FileExists(PathOf(name)) ? Read(name) : Side{name, Form::Empty, {}};
}

Form CommonForm(std::span<const Side> sides) {
  Form form = Form::Empty;
  for (const Side& side : sides) {
    if (side.As == Form::Empty) continue;
    if (form != Form::Empty && form != side.As) {
      throw CommandError(kUnusable, side.Name,
                         "not of the same kind as the others: JSON text and binary records");
    }
    form = side.As;
  }
  return form;
}

std::string ToldConflict(const LibraryConflict& conflict) {
  const std::string names =
      conflict.Named().Manufacturer.TrimmedUtf8() + " / " + conflict.Named().Model.TrimmedUtf8();
  if (conflict.Ours.empty()) return names + " was deleted in OURS and changed in THEIRS; it stays deleted";
  if (conflict.Theirs.empty()) return names + " was changed in OURS and deleted in THEIRS; ours stays";
  return names + " was changed on both sides; ours stays";
}

}  // namespace

int MergeProjectors(const MergeOptions& options, CommandContext& context) {
  const Side sides[] = {ReadBase(options.Base), Read(options.Ours), Read(options.Theirs)};
  const Form form = CommonForm(sides);
  const LibraryMerge merge = MergeLibraries(sides[0].Definitions, sides[1].Definitions, sides[2].Definitions);
  if (form == Form::Json) {
    WriteText(options.Output, ProjectorsToJson(merge.Elements), context);
  } else {
    WriteBinaryFile(options.Output, EncodeDefinitions(merge.Elements));
  }
  for (const LibraryConflict& conflict : merge.Conflicts) {
    context.Err << "qdm: " << options.Output << ": " << OneLine(ToldConflict(conflict)) << "\n";
  }
  return merge.Conflicts.empty() ? kDone : kRefused;
}

}  // namespace qdm
