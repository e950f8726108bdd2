// Exported definitions and their way into a library. A *.BVD file holds 2,084-byte records back to back, like
// the library's own: no header, no count; a fragment shorter than a record at the end is ignored. File
// trouble is a FileError.
#pragma once

#include "base/file_access.h"
#include "base/message.h"
#include "base/words.h"
#include "projectors/projector_library.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace qdm {

inline constexpr const char* kProjectorFileFilter = Marked("Brevan Projector Definition (*.BVD)|*.BVD");

// How much of a file of definitions is read and decoded, or encoded and written, at a time: it stays in the
// processor's cache.
inline constexpr std::size_t kDefinitionsPiece = 64 * kStoredProjectorSize;

// The whole records of a file, one after the other; the hash of its bytes (HashOnward).
std::uint64_t ForEachDefinition(const std::filesystem::path& file,
                                const std::function<void(ProjectorDefinition&)>& take);

// Stored records back to back; in the second form in place of what `stored` held.
Bytes EncodeDefinitions(std::span<const ProjectorDefinition> definitions);
void EncodeDefinitions(std::span<const ProjectorDefinition> definitions, Bytes& stored);

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
  std::size_t Added = 0;  // under other names included
  std::size_t Unchanged = 0;
  std::size_t Conflicts = 0;
  std::size_t Replaced = 0;              // conflicts that ended with the incoming definition in the library
  std::size_t Kept = 0;                  // conflicts that left the library as it was
  std::optional<std::size_t> LastTaken;  // index of the element that was appended or replaced last
};
// `stopped`: asked before each definition whether the import ends here.
ImportResult ImportDefinitions(std::vector<ProjectorDefinition> definitions, ProjectorLibrary& library,
                               const SettleConflict& settle, const std::function<bool()>& stopped = {});

// How many conflicts an import will find, as long as none of them is settled by replacing.
std::size_t CountConflicts(const std::vector<ProjectorDefinition>& definitions,
                           const ProjectorLibrary& library);

}  // namespace qdm
