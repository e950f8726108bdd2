#include "projectors/projector_files.h"

#include "base/byte_hash.h"
#include "projectors/record_difference.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace qdm {
namespace fs = std::filesystem;
std::uint64_t ForEachDefinition(const fs::path& file, const std::function<void(ProjectorDefinition&)>& take) {
  ProjectorDefinition projector;
  std::uint64_t hash = 0;
  ReadInPieces(file, kDefinitionsPiece, [&](ByteView piece) {
    hash = HashOnward(hash, piece);
    for (; piece.size() >= kStoredProjectorSize; piece = piece.subspan(kStoredProjectorSize)) {
      Decode(piece, projector);
      take(projector);
    }
  });
  return hash;
}

void EncodeDefinitions(std::span<const ProjectorDefinition> definitions, Bytes& stored) {
  stored.resize(definitions.size() * kStoredProjectorSize);
  std::uint8_t* at = stored.data();
  for (const ProjectorDefinition& definition : definitions) {
    RecordWriter writer(at);
    Fields(writer, definition);
    at += kStoredProjectorSize;
  }
}

Bytes EncodeDefinitions(std::span<const ProjectorDefinition> definitions) {
  Bytes stored;
  EncodeDefinitions(definitions, stored);
  return stored;
}

std::vector<ProjectorDefinition> ReadDefinitions(const fs::path& file) {
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(SizeToRead(file) / kStoredProjectorSize);
  ForEachDefinition(
      file, [&definitions](const ProjectorDefinition& projector) { definitions.push_back(projector); });
  return definitions;
}

void ExportDefinitions(const fs::path& file, const std::vector<ProjectorDefinition>& definitions) {
  WriteFileSafely(file, EncodeDefinitions(definitions), OldTail::Kept);
}

ImportResult ImportDefinitions(std::vector<ProjectorDefinition> definitions, ProjectorLibrary& library,
                               const SettleConflict& settle, const std::function<bool()>& stopped) {
  ImportResult result;
  for (ProjectorDefinition& incoming : definitions) {
    if (stopped && stopped()) break;
    if (!CleanNames(incoming)) continue;
    const std::optional<std::size_t> found = library.FindProjector(incoming);
    if (!found) {
      library.Append(incoming);
      result.LastTaken = library.Size() - 1;
      ++result.Added;
    } else if (ProjectorsEqual(incoming, library[*found])) {
      ++result.Unchanged;
    } else {
      ++result.Conflicts;
      const std::size_t before = library.Size();
      settle(incoming, *found);
      if (library.Size() > before) {
        result.LastTaken = library.Size() - 1;
        ++result.Added;
      } else if (library[*found] == incoming) {
        result.LastTaken = *found;
        ++result.Replaced;
      } else {
        ++result.Kept;
      }
    }
  }
  return result;
}

std::size_t CountConflicts(const std::vector<ProjectorDefinition>& definitions,
                           const ProjectorLibrary& library) {
  ProjectorLibrary added;
  std::size_t conflicts = 0;
  for (ProjectorDefinition incoming : definitions) {
    if (!CleanNames(incoming)) continue;
    const std::optional<std::size_t> known = library.FindProjector(incoming);
    const std::optional<std::size_t> before = known ? std::nullopt : added.FindProjector(incoming);
    if (known) {
      if (!ProjectorsEqual(incoming, library[*known])) ++conflicts;
    } else if (before) {
      if (!ProjectorsEqual(incoming, added[*before])) ++conflicts;
    } else {
      added.Append(incoming);
    }
  }
  return conflicts;
}

}  // namespace qdm
