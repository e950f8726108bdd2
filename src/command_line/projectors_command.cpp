// The library's commands: list, add, extract, remove.
#include "command_line/commands.h"
#include "command_line/held_signals.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "projectors/data_folder.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "projectors/projector_names.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace qdm {
namespace {

constexpr const char* kLibraryName = "the projector library";

DataFolder FolderOf(const LibraryOptions& options, const CommandContext& context) {
  std::optional<std::filesystem::path> named = context.DataVariable;
  if (!options.Data.empty()) named = PathOf(options.Data);
  return FindDataFolder(named, context.ProgramFolder, context.UserFolder);
}

void Tell(const std::vector<Message>& messages, const std::filesystem::path& folder,
          CommandContext& context) {
  const std::string library = PathToUtf8(ProjectorFiles(folder).Library);
  for (const Message& message : messages) {
    context.Err << "qdm: " << library << ": " << OneLine(TextOf(message)) << "\n";
    if (!message.Detail.empty()) context.Err << "qdm: " << library << ": " << message.Detail << "\n";
  }
}

// The library of a folder, for reading; with what had to be said while it was loaded.
ProjectorLibrary LoadFrom(const std::filesystem::path& folder, CommandContext& context) {
  const HeldSignals uninterrupted;  // a damaged library may be recovered
  ProjectorLibrary library;
  Tell(LoadProjectorDatabase(folder, library), folder, context);
  return library;
}

// Changes the library under its lock, from reading to renaming: what others save comes before or after it.
template <class Change>
void ChangeLibrary(const std::filesystem::path& folder, CommandContext& context, const Change& change) {
  const LibraryLock lock{ProjectorFiles(folder)};
  ProjectorLibrary library;
  Tell(LoadProjectorDatabase(lock, folder, library), folder, context);
  change(library);
  Tell(SaveProjectorDatabase(lock, folder, library).Messages, folder, context);
}

ProjectorLibrary LoadForReading(const LibraryOptions& options, CommandContext& context) {
  const std::filesystem::path folder = FolderOf(options, context).ReadingFolder();
  std::error_code error;
  // The editor's own folder may not be there yet; one that was named by mistake is not an empty library.
  const bool isFolder = std::filesystem::is_directory(folder, error);
  if (error && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) {
    throw FileError(folder, "look into", error);
  }
  if (!options.Data.empty() && !isFolder) {
    throw CommandError(kUnusable, PathToUtf8(folder), "no such folder");
  }
  return LoadFrom(folder, context);
}

std::string ShownNames(const ProjectorDefinition& projector) {
  return projector.Manufacturer.TrimmedUtf8() + " / " + projector.Model.TrimmedUtf8();
}

// A name that the user typed, as the library keeps it. One that is too long or outside the code page is a
// name that no definition has.
std::optional<FixedText<32>> NameOf(const std::string& typed) {
  const std::u16string characters = FromUtf8(typed);
  const std::u16string_view name = TrimBlanks(characters);
  const bool storable = std::all_of(name.begin(), name.end(), IsNameCharacter);
  if (name.empty() || name.size() > FixedText<32>::kLength || !storable) return std::nullopt;
  return FixedText<32>(name);
}

[[noreturn]] void NoSuchProjector(const std::string& manufacturer, const std::string& model) {
  throw CommandError(kRefused, manufacturer + (model.empty() ? "" : " / " + model),
                     std::string("not in ") + kLibraryName);
}

std::size_t FindOrRefuse(const ProjectorLibrary& library, const std::string& manufacturer,
                         const std::string& model) {
  const auto manufacturerName = NameOf(manufacturer);
  const auto modelName = NameOf(model);
  if (manufacturerName && modelName) {
    if (const auto found = library.FindProjector(*manufacturerName, *modelName)) return *found;
  }
  NoSuchProjector(manufacturer, model);
}

// In the order of the selector's tree: the first element of each name, by model.
std::vector<ProjectorDefinition> AllOf(const ProjectorLibrary& library, const std::string& manufacturer) {
  std::vector<ProjectorDefinition> definitions;
  const auto name = NameOf(manufacturer);
  for (std::size_t i = 0; name && i < library.Size(); ++i) {
    if (SameName(library[i].Manufacturer, *name) && library.FindProjector(library[i]) == i) {
      definitions.push_back(library[i]);
    }
  }
  if (definitions.empty()) NoSuchProjector(manufacturer, "");
  std::sort(definitions.begin(), definitions.end(), [](const auto& first, const auto& second) {
    return UpperCase(first.Model.Trimmed()) < UpperCase(second.Model.Trimmed());
  });
  return definitions;
}

void AppendRenamed(ProjectorDefinition projector, ProjectorLibrary& library) {
  RenameUntilFree(projector, library);
  library.Append(projector);
}

std::string Counted(std::size_t count, const char* what) { return std::to_string(count) + " " + what; }

}  // namespace

int ListProjectors(const LibraryOptions& options, CommandContext& context) {
  const ProjectorLibrary library = LoadForReading(options, context);
  for (const ProjectorDefinition& projector : library.Elements()) {
    context.Out << projector.Manufacturer.TrimmedUtf8() << '\t' << projector.Model.TrimmedUtf8() << '\t'
                << SerialBytesUsed(projector) << '\n';
  }
  return kDone;
}

int AddProjectors(const AddOptions& options, CommandContext& context) {
  std::vector<ProjectorDefinition> definitions = ReadDefinitionsFile(options.File);
  const DataFolder folder = FolderOf(options, context);
  const HeldSignals uninterrupted;
  PrepareDataFolder(folder);

  ImportResult result;
  ChangeLibrary(folder.Folder, context, [&](ProjectorLibrary& library) {
    const auto settle = [&](const ProjectorDefinition& incoming, std::size_t index) {
      switch (options.Conflict) {
        case OnConflict::Keep:
          break;
        case OnConflict::Replace:
          library.Replace(index, incoming);
          break;
        case OnConflict::Rename:
          AppendRenamed(incoming, library);
          break;
        case OnConflict::Report:
          context.Err << "qdm: " << options.File << ": " << ShownNames(incoming)
                      << " differs from the library's and was not imported; --on-conflict keep, replace or "
                         "rename decides\n";
          break;
      }
    };
    result = ImportDefinitions(std::move(definitions), library, settle);
  });

  constexpr const char* kConflictOutcome[] = {"not imported", "kept as they were", "replaced", "renamed"};
  const std::size_t renamed = options.Conflict == OnConflict::Rename ? result.Conflicts : 0;
  context.Out << Counted(result.Added - renamed, "added, ") << Counted(result.Unchanged, "unchanged, ")
              << Counted(result.Conflicts, kConflictOutcome[static_cast<std::size_t>(options.Conflict)])
              << "\n";
  return options.Conflict == OnConflict::Report && result.Conflicts > 0 ? kRefused : kDone;
}

int ExtractProjectors(const ExtractOptions& options, CommandContext& context) {
  DemandKind(options.Output, FileKind::Definitions);
  const ProjectorLibrary library = LoadForReading(options, context);
  const std::vector<ProjectorDefinition> definitions =
      options.Model.empty()
          ? AllOf(library, options.Manufacturer)
          : std::vector{library[FindOrRefuse(library, options.Manufacturer, options.Model)]};
  const HeldSignals uninterrupted;
  ExportDefinitions(PathOf(options.Output), definitions);
  return kDone;
}

int RemoveProjector(const RemoveOptions& options, CommandContext& context) {
  const DataFolder folder = FolderOf(options, context);
  // Looked for first: nothing is prepared or saved for a definition that is not there.
  FindOrRefuse(LoadForReading(options, context), options.Manufacturer, options.Model);
  const HeldSignals uninterrupted;
  PrepareDataFolder(folder);
  ChangeLibrary(folder.Folder, context, [&](ProjectorLibrary& library) {
    library.Remove(FindOrRefuse(library, options.Manufacturer, options.Model));
  });
  return kDone;
}

}  // namespace qdm
