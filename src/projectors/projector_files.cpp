#include "projectors/projector_files.h"

#include "projectors/record_difference.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace qdm {
namespace fs = std::filesystem;
namespace {

const Message kRestoringBackup{
    "Projector configuration file damaged!\r\nRestoring projector configuration backup!",
    "Configuration damaged!", MessageIcon::Exclamation};
const Message kAllLost{
    "Projector configuration file damaged!\r\n all projector configurations have been lost!",
    "Brevan QDM Editor", MessageIcon::None};

// A folder that cannot be looked into is a failure: what is in it must not pass for missing.
bool Exists(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (!fs::status_known(status)) throw FileError(path, "read", error.message());
  return fs::exists(status);
}

// A save ends with library -> backup, temporary -> library. Between the two there is no library, and the
// temporary file is complete.
void CompleteInterruptedSave(const ProjectorFiles& files) {
  std::error_code error;
  if (!Exists(files.Library) && Exists(files.Backup) && fs::is_regular_file(files.Temporary, error)) {
    RenameFile(files.Temporary, files.Library);
  }
}

std::size_t DefinitionsIn(const fs::path& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  return error ? 0 : static_cast<std::size_t>(size) / kStoredProjectorSize;
}

// The whole records of a file, in pieces that stay in the processor's cache.
template <class Take>
void ForEachDefinition(const fs::path& path, const Take& take) {
  constexpr std::size_t kPiece = 64 * kStoredProjectorSize;
  ProjectorDefinition projector;
  ReadInPieces(path, kPiece, [&](ByteView piece) {
    for (; piece.size() >= kStoredProjectorSize; piece = piece.subspan(kStoredProjectorSize)) {
      Decode(piece, projector);
      take(projector);
    }
  });
}

void ReadLibrary(const fs::path& path, ProjectorLibrary& library) {
  library.Reserve(DefinitionsIn(path));
  ForEachDefinition(path, [&library](ProjectorDefinition& projector) {
    if (CleanNames(projector)) library.Append(projector);
  });
}

// A free name that nothing reads: the bytes may still be worth something to somebody.
fs::path AsideOf(const fs::path& damaged) {
  fs::path aside = damaged;
  aside.replace_extension(".DAMAGED");
  for (int n = 2; Exists(aside); ++n) aside.replace_extension(".DAMAGED" + std::to_string(n));
  return aside;
}

void RestoreBackup(const ProjectorFiles& files) {
  std::error_code error;
  // A temporary file that an earlier save left behind must not pass for a finished one once the library is
  // gone.
  if (fs::is_regular_file(files.Temporary, error)) RemoveFile(files.Temporary);
  // A second name for the damaged file, so that there is no moment without a library: cut off there, the next
  // start would take it for an empty one. A directory has no second name and has to go first.
  const fs::path aside = AsideOf(files.Library);
  fs::create_hard_link(files.Library, aside, error);
  if (error) RenameFile(files.Library, aside);
  RenameFile(files.Backup, files.Library);
}

// Loads the library or its backup; what the user is to be told about it.
std::vector<Message> LoadWithBackup(const ProjectorFiles& files, ProjectorLibrary& library) {
  std::vector<Message> messages;
  for (;;) {
    library.Clear();
    if (!Exists(files.Library)) return messages;
    try {
      ReadLibrary(files.Library, library);
      return messages;
    } catch (const FileError&) {
      library.Clear();
    }
    // The backup is moved, not copied: a backup that is damaged itself finds none on the next pass.
    if (!Exists(files.Backup)) break;
    messages.push_back(kRestoringBackup);
    RestoreBackup(files);
  }
  messages.push_back(kAllLost);
  RenameFile(files.Library, AsideOf(files.Library));
  return messages;
}

}  // namespace

std::vector<Message> LoadProjectorDatabase(const fs::path& folder, ProjectorLibrary& library) {
  const ProjectorFiles files(folder);
  library.Clear();
  library.SetMayBeSaved(false);
  CompleteInterruptedSave(files);
  std::vector<Message> messages = LoadWithBackup(files, library);
  library.SetMayBeSaved(true);
  return messages;
}

void SaveProjectorDatabase(const fs::path& folder, const ProjectorLibrary& library) {
  const ProjectorFiles files(folder);
  if (!library.MayBeSaved()) {
    throw FileError(files.Library, "write", "it could not be read when the program started");
  }
  // After a save that failed between its renames the temporary file is the library: it must not be deleted.
  CompleteInterruptedSave(files);
  RemoveFile(files.Temporary);
  if (!library.Loaded()) {
    RemoveFile(files.Library);
    return;
  }

  const bool hasOld = Exists(files.Library);
  // With a backup and no library, a temporary file reads as a finished save at the next start. An empty
  // library keeps one that is still being written from being taken for that.
  if (!hasOld && Exists(files.Backup)) WriteAndFlush(files.Library, {});

  try {
    WriteAndFlush(files.Temporary, EncodeDefinitions(library.Elements()));
  } catch (const FileError& failure) {
    std::error_code ignored;
    fs::remove(files.Temporary, ignored);  // a full disk needs the room
    throw FileError(files.Library, "write", failure.Reason());
  }
  // The temporary file's name has to be on the disk before the library's own is taken away.
  FlushFolder(folder);
  if (hasOld) RenameFile(files.Library, files.Backup);
  RenameFile(files.Temporary, files.Library);
  FlushFolder(folder);
}

Bytes EncodeDefinitions(const std::vector<ProjectorDefinition>& definitions) {
  Bytes stored(definitions.size() * kStoredProjectorSize);
  std::uint8_t* at = stored.data();
  for (const ProjectorDefinition& definition : definitions) {
    RecordWriter writer(at);
    Fields(writer, definition);
    at += kStoredProjectorSize;
  }
  return stored;
}

std::vector<ProjectorDefinition> ReadDefinitions(const fs::path& file) {
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(DefinitionsIn(file));
  ForEachDefinition(
      file, [&definitions](const ProjectorDefinition& projector) { definitions.push_back(projector); });
  return definitions;
}

void ExportDefinitions(const fs::path& file, const std::vector<ProjectorDefinition>& definitions) {
  WriteFileSafely(file, EncodeDefinitions(definitions), OldTail::Kept);
}

ImportResult ImportDefinitions(std::vector<ProjectorDefinition> definitions, ProjectorLibrary& library,
                               const SettleConflict& settle) {
  ImportResult result;
  for (ProjectorDefinition& incoming : definitions) {
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
      } else if (library[*found] == incoming) {
        result.LastTaken = *found;
      }
    }
  }
  return result;
}

}  // namespace qdm
