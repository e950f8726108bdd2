// The library on disk and the exchange of definitions.
// Projectors.DEF, its backup and exported *.BVD files hold 2,084-byte records back to back: no header, no
// count; a fragment shorter than a record at the end is ignored. The library is saved through Projectors.TMP
// and keeps the previous state as Projectors.BAK, so that at no moment the only copy is half written. File
// trouble is a FileError.
#pragma once

#include "base/file_access.h"
#include "base/message.h"
#include "projectors/projector_library.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace qdm {

inline constexpr const char* kProjectorFileFilter = "Brevan Projector Definition (*.BVD)|*.BVD";

struct ProjectorFiles {
  explicit ProjectorFiles(const std::filesystem::path& folder)
      : Library(folder / "Projectors.DEF"),
        Backup(folder / "Projectors.BAK"),
        Temporary(folder / "Projectors.TMP") {}

  std::filesystem::path Library;
  std::filesystem::path Backup;
  std::filesystem::path Temporary;
};

// Replaces the library by what the folder holds: names cleaned, manufacturers in upper case, records with a
// blank name dropped. First completes a save that was cut off between its two renames. A missing file is an
// empty library. A file that cannot be opened or read is set aside as Projectors.DAMAGED (DAMAGED2, ...) and
// replaced by its backup, or given up when there is none; the messages about that are returned.
// When none of that works, the FileError leaves an empty library that cannot be saved.
std::vector<Message> LoadProjectorDatabase(const std::filesystem::path& folder, ProjectorLibrary& library);

// Writes the whole library. An empty one removes Projectors.DEF and leaves the backup.
void SaveProjectorDatabase(const std::filesystem::path& folder, const ProjectorLibrary& library);

// Stored records back to back.
Bytes EncodeDefinitions(const std::vector<ProjectorDefinition>& definitions);

// The whole records of an exported file, as they stand in it.
std::vector<ProjectorDefinition> ReadDefinitions(const std::filesystem::path& file);

// Writes definitions as a *.BVD file. Later records of a longer old file stay in place.
void ExportDefinitions(const std::filesystem::path& file,
                       const std::vector<ProjectorDefinition>& definitions);

// Takes definitions into the library: names cleaned, blank ones skipped, equal ones skipped, new ones
// appended. `settle` is asked for each that differs from the element `index` of the same name and does with
// the library what the user decides.
using SettleConflict = std::function<void(const ProjectorDefinition& incoming, std::size_t index)>;
struct ImportResult {
  std::size_t Added = 0;
  std::size_t Unchanged = 0;
  std::size_t Conflicts = 0;
  std::optional<std::size_t> LastTaken;  // index of the element that was appended or replaced last
};
ImportResult ImportDefinitions(std::vector<ProjectorDefinition> definitions, ProjectorLibrary& library,
                               const SettleConflict& settle);

}  // namespace qdm
