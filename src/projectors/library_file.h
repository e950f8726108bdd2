// The library on disk, which other programs change too. Projectors.DEF holds 2,084-byte records back to back:
// no header, no count; a fragment shorter than a record at the end is ignored. It is saved under a lock,
// through Projectors.TMP, and its previous state stays as Projectors.BAK, so that at no moment the only copy
// is half written; what others saved since it was loaded is merged in first. File trouble is a FileError.
#pragma once

#include "base/message.h"
#include "projectors/library_lock.h"
#include "projectors/library_merge.h"
#include "projectors/library_paths.h"
#include "projectors/projector_library.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

namespace qdm {

// Replaces the library by what the folder holds: names cleaned, manufacturers in upper case, records with a
// blank name dropped. A missing file is an empty library. A save that was cut off between its two renames is
// completed first. Trouble that may pass is tried again for two seconds. A file that cannot be opened or read
// then is set aside as Projectors.DAMAGED (DAMAGED2, ...) and replaced by its backup, or given up when there
// is none; the messages about that are returned. When none of that works, the FileError leaves an empty
// library that cannot be saved.
std::vector<Message> LoadProjectorDatabase(const std::filesystem::path& folder, ProjectorLibrary& library,
                                           const LibraryPatience& patience = {});
// The same for who holds the lock already and is going to save.
std::vector<Message> LoadProjectorDatabase(const LibraryLock& lock, const std::filesystem::path& folder,
                                           ProjectorLibrary& library, const LibraryPatience& patience = {});

// Nothing but reading: nothing when the library is not simply there, which the others deal with.
std::optional<ProjectorLibrary> ReadProjectorDatabase(const std::filesystem::path& folder);

struct LibrarySaved {
  // What others and this library changed differently. Nothing was written then: whoever decides makes the
  // library what it is to be, and saves again. As it stands, ours would replace theirs.
  std::vector<LibraryConflict> Conflicts;
  std::size_t Taken = 0;          // names that others added, changed or deleted since the library was loaded
  std::vector<Message> Messages;  // of reading what others saved
};
LibrarySaved SaveProjectorDatabase(const std::filesystem::path& folder, ProjectorLibrary& library,
                                   const LibraryPatience& patience = {});
LibrarySaved SaveProjectorDatabase(const LibraryLock& lock, const std::filesystem::path& folder,
                                   ProjectorLibrary& library, const LibraryPatience& patience = {});

// What a library is once it has been saved: where nobody else saved, all that is new is the file's state.
struct LibraryAfterSave {
  std::optional<ProjectorLibrary> Merged;
  LibraryFileState File;

  void TakePlaceOf(ProjectorLibrary& library);
};
// The same for a library that is shown meanwhile: it stays as it is, and no copy of it is made unless others
// have saved.
LibrarySaved SaveProjectorDatabase(const std::filesystem::path& folder, const ProjectorLibrary& library,
                                   LibraryAfterSave& after, const LibraryPatience& patience = {});

// Whether the file is another one than the library was loaded from or saved to. False where that cannot be
// told now.
bool ChangedOnDisk(const std::filesystem::path& folder, ProjectorLibrary& library);

// The steps of a save, for who holds the lock; they know nothing of others. An empty library removes
// Projectors.DEF and leaves the backup.
LibraryFileState WriteProjectorDatabase(const std::filesystem::path& folder, const ProjectorLibrary& library);

}  // namespace qdm
