#include "projectors/library_file.h"

#include "base/byte_hash.h"
#include "base/file_access.h"
#include "base/words.h"
#include "projectors/projector_files.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

namespace qdm {
namespace fs = std::filesystem;
namespace {

using std::chrono::milliseconds;

Message RestoringBackup(std::string detail) {
  return {Say("Projector configuration file damaged!\r\nRestoring projector configuration backup!"),
          Say("Configuration damaged!"), MessageIcon::Exclamation, std::move(detail)};
}
Message AllLost(std::string detail) {
  return {Say("Projector configuration file damaged!\r\n all projector configurations have been lost!"),
          "Brevan QDM Editor", MessageIcon::None, std::move(detail)};
}

constexpr milliseconds kTriedAgainFor{2000};
constexpr milliseconds kBetweenTries{100};
// How finely file systems tell times, in nanoseconds: two states of a file can bear the same time when they
// are that close. A time with a fraction of a second is told as finely as the system's clock ticks.
constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kCoarseGrain = 2 * kSecond;
constexpr std::int64_t kFineGrain = kSecond / 20;

std::int64_t Now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

LibraryFileState StateOf(const fs::path& file, std::uint64_t hash) {
  FileFacts facts;
  LibraryFileState state;
  state.LookedAt = Now();
  if (const std::error_code error = file_system::Look(file, facts)) throw FileError(file, "read", error);
  state.Exists = facts.Kind != PathKind::Absent;
  state.Size = facts.Size;
  state.Modified = facts.Modified;
  state.Number = facts.Number;
  state.Hash = hash;
  return state;
}

std::uint64_t HashOfFile(const fs::path& file) {
  std::uint64_t hash = 0;
  ReadInPieces(file, kDefinitionsPiece, [&hash](ByteView piece) { hash = HashOnward(hash, piece); });
  return hash;
}

// Nothing when the file is not what it was; else its state now.
std::optional<LibraryFileState> StillThere(const fs::path& file, const LibraryFileState& known) {
  const LibraryFileState now = StateOf(file, known.Hash);
  if (now.Exists != known.Exists || now.Size != known.Size) return std::nullopt;
  if (!now.Exists) return now;
  const bool sameTime = now.Modified == known.Modified && now.Number == known.Number;
  const std::int64_t grain = known.Modified % kSecond == 0 ? kCoarseGrain : kFineGrain;
  if (sameTime && known.LookedAt - known.Modified > grain) return known;
  if (HashOfFile(file) != known.Hash) return std::nullopt;
  return now;
}

// A file that had to be read to tell is known by its times from then on.
bool IsStill(const fs::path& file, ProjectorLibrary& library) {
  const std::optional<LibraryFileState> now = StillThere(file, library.FileState());
  if (now) library.SetFileState(*now);
  return now.has_value();
}

// Calls `read` until it works, for as long as its trouble may pass.
template <class Read>
void Patiently(const LibraryPatience& patience, const Read& read) {
  for (milliseconds tried{0};; tried += kBetweenTries) {
    try {
      return read();
    } catch (const FileError& error) {
      if (!MayPass(error.Code()) || tried >= kTriedAgainFor) throw;
    }
    patience.Pause(kBetweenTries);
  }
}

// The state is taken before the bytes: what changes in between shows at the next comparison.
void ReadLibrary(const fs::path& file, ProjectorLibrary& library) {
  LibraryFileState state = StateOf(file, 0);
  std::vector<ProjectorDefinition> elements;
  elements.reserve(SizeToRead(file) / kStoredProjectorSize);
  state.Hash = ForEachDefinition(file, [&elements](ProjectorDefinition& projector) {
    if (CleanNames(projector)) elements.push_back(projector);
  });
  library.Become(std::move(elements), {}, state);
}

// A save ends with library -> backup, temporary -> library. Between the two there is no library, and the
// temporary file is complete.
bool IsCutOff(const ProjectorFiles& files) {
  return !FileExists(files.Library) && FileExists(files.Backup) && FileExists(files.Temporary);
}

void CompleteInterruptedSave(const ProjectorFiles& files) {
  if (IsCutOff(files)) RenameFile(files.Temporary, files.Library);
}

// A free name that nothing reads: the bytes may still be worth something to somebody.
fs::path AsideOf(const fs::path& damaged) {
  fs::path aside = damaged;
  aside.replace_extension(".DAMAGED");
  for (int n = 2; FileExists(aside); ++n) aside.replace_extension(".DAMAGED" + std::to_string(n));
  return aside;
}

// A second name for the damaged file, so that there is no moment without a library: cut off there, the next
// start would take it for an empty one. A directory has no second name and has to go first.
fs::path KeepAside(const fs::path& damaged) {
  fs::path aside = AsideOf(damaged);
  if (file_system::Link(damaged, aside)) RenameFile(damaged, aside);
  return aside;
}

// "Permission denied: it belongs to root; everything is in Projectors.DAMAGED"
std::string DamageDetail(const FileError& damage, const std::string& owner, const fs::path& aside) {
  const std::string kept = PathToUtf8(aside.filename());
  if (damage.Code() == std::errc::permission_denied && !owner.empty()) {
    return Say("%1: it belongs to %2; everything is in %3", {damage.Reason(), owner, kept});
  }
  return Say("%1; everything is in %2", {damage.Reason(), kept});
}

// The damaged library is set aside and replaced by its backup, or by nothing when there is none.
Message GiveUpDamaged(const ProjectorFiles& files, const FileError& damage) {
  const std::string owner = file_system::OwnerOf(files.Library);
  const bool hasBackup = FileExists(files.Backup);
  fs::path aside;
  try {
    // A temporary file that an earlier save left behind must not pass for a finished one once the library is
    // gone.
    if (hasBackup) RemoveFile(files.Temporary);
    aside = KeepAside(files.Library);
    // The backup is moved, not copied: a backup that is damaged itself finds none on the next pass.
    if (hasBackup) RenameFile(files.Backup, files.Library);
    if (!hasBackup) RemoveFile(files.Library);
  } catch (const FileError& error) {
    throw FileError(files.Library, "read",
                    Say("%1; nor can it be set aside: %2", {damage.Reason(), error.what()}), damage.Code());
  }
  const std::string detail = DamageDetail(damage, owner, aside);
  return hasBackup ? RestoringBackup(detail) : AllLost(detail);
}

// Loads the library or its backup; what the user is to be told about it.
std::vector<Message> LoadWithBackup(const ProjectorFiles& files, ProjectorLibrary& library,
                                    const LibraryPatience& patience) {
  std::vector<Message> messages;
  CompleteInterruptedSave(files);
  while (FileExists(files.Library)) {
    try {
      Patiently(patience, [&] { ReadLibrary(files.Library, library); });
      return messages;
    } catch (const FileError& damage) {
      library.Clear();
      messages.push_back(GiveUpDamaged(files, damage));
    }
  }
  library.Clear();
  return messages;
}

// Nothing but reading, which needs no lock: false when the library is not simply there.
bool LoadUndisturbed(const ProjectorFiles& files, ProjectorLibrary& library) {
  try {
    if (!FileExists(files.Library)) return false;
    ReadLibrary(files.Library, library);
    return true;
  } catch (const FileError&) {
    return false;
  }
}

bool NothingIsThere(const ProjectorFiles& files) {
  return !FileExists(files.Library) && !FileExists(files.Backup) && !FileExists(files.Temporary);
}

// In pieces, so that a second copy of the whole library is never in memory.
std::uint64_t WriteElements(Replacement& file, std::span<const ProjectorDefinition> elements) {
  constexpr std::size_t kAtOnce = kDefinitionsPiece / kStoredProjectorSize;
  Bytes piece;
  std::uint64_t hash = 0;
  while (!elements.empty()) {
    const auto some = elements.first(std::min(kAtOnce, elements.size()));
    EncodeDefinitions(some, piece);
    file.Write(piece);
    hash = HashOnward(hash, piece);
    elements = elements.subspan(some.size());
  }
  return hash;
}

void TakeWhatOthersSaved(const ProjectorFiles& files, ProjectorLibrary& library,
                         const LibraryPatience& patience, LibrarySaved& saved) {
  ProjectorLibrary theirs;
  saved.Messages = LoadWithBackup(files, theirs, patience);
  LibraryMerge merge = MergeLibraries(library.ChangedGroups(), library.Elements(), theirs.Elements());
  library.Become(std::move(merge.Elements), std::move(merge.StillOurs), theirs.FileState());
  saved.Conflicts = std::move(merge.Conflicts);
  saved.Taken = merge.Taken;
}

}  // namespace

std::vector<Message> LoadProjectorDatabase(const fs::path& folder, ProjectorLibrary& library,
                                           const LibraryPatience& patience) {
  const ProjectorFiles files(folder);
  library.Clear();
  library.SetMayBeSaved(false);
  std::vector<Message> messages;
  if (!LoadUndisturbed(files, library)) {
    library.Clear();
    // Somebody may be between his two renames.
    if (!NothingIsThere(files)) {
      const LibraryLock lock(files, patience);
      return LoadProjectorDatabase(lock, folder, library, patience);
    }
  }
  library.SetMayBeSaved(true);
  return messages;
}

std::vector<Message> LoadProjectorDatabase(const LibraryLock&, const fs::path& folder,
                                           ProjectorLibrary& library, const LibraryPatience& patience) {
  library.Clear();
  library.SetMayBeSaved(false);
  std::vector<Message> messages = LoadWithBackup(ProjectorFiles(folder), library, patience);
  library.SetMayBeSaved(true);
  return messages;
}

std::optional<ProjectorLibrary> ReadProjectorDatabase(const fs::path& folder) {
  ProjectorLibrary library;
  if (!LoadUndisturbed(ProjectorFiles(folder), library)) return std::nullopt;
  return library;
}

LibrarySaved SaveProjectorDatabase(const fs::path& folder, ProjectorLibrary& library,
                                   const LibraryPatience& patience) {
  const LibraryLock lock(ProjectorFiles(folder), patience);
  return SaveProjectorDatabase(lock, folder, library, patience);
}

LibrarySaved SaveProjectorDatabase(const LibraryLock&, const fs::path& folder, ProjectorLibrary& library,
                                   const LibraryPatience& patience) {
  const ProjectorFiles files(folder);
  if (!library.MayBeSaved()) {
    throw FileError(files.Library, "write", Say("it could not be read when the program started"));
  }
  LibrarySaved saved;
  CompleteInterruptedSave(files);
  if (!IsStill(files.Library, library)) TakeWhatOthersSaved(files, library, patience, saved);
  if (saved.Conflicts.empty()) library.MarkUnchanged(WriteProjectorDatabase(folder, library));
  return saved;
}

LibrarySaved SaveProjectorDatabase(const fs::path& folder, const ProjectorLibrary& library,
                                   LibraryAfterSave& after, const LibraryPatience& patience) {
  const ProjectorFiles files(folder);
  const LibraryLock lock(files, patience);
  CompleteInterruptedSave(files);
  if (library.MayBeSaved() && StillThere(files.Library, library.FileState())) {
    after.File = WriteProjectorDatabase(folder, library);
    return {};
  }
  after.Merged = library;
  return SaveProjectorDatabase(lock, folder, *after.Merged, patience);
}

void LibraryAfterSave::TakePlaceOf(ProjectorLibrary& library) {
  if (Merged) {
    library = *std::move(Merged);
  } else {
    library.MarkUnchanged(File);
  }
}

bool ChangedOnDisk(const fs::path& folder, ProjectorLibrary& library) {
  try {
    const ProjectorFiles files(folder);
    // Between the two renames of a save there is no library; a moment later there is.
    return !IsCutOff(files) && !IsStill(files.Library, library);
  } catch (const FileError&) {
    return false;
  }
}

namespace {

LibraryFileState WriteInSteps(const ProjectorFiles& files, const ProjectorLibrary& library) {
  DemandReplaceable(files.Library);
  // After a save that failed between its renames the temporary file is the library: it must not be deleted.
  CompleteInterruptedSave(files);
  RemoveFile(files.Temporary);
  if (!library.Loaded()) {
    RemoveFile(files.Library);
    return {};
  }

  const bool hasOld = FileExists(files.Library);
  // With a backup and no library, a temporary file reads as a finished save at the next start. An empty
  // library keeps one that is still being written from being taken for that.
  if (!hasOld && FileExists(files.Backup)) WriteAndFlush(files.Library, {});

  Replacement replacement(files.Library, files.Temporary);
  const std::uint64_t hash = WriteElements(replacement, library.Elements());
  replacement.Complete();
  // The temporary file's name has to be on the disk before the library's own is taken away.
  FlushFolder(files.Library.parent_path());
  if (hasOld) RenameFile(files.Library, files.Backup);
  replacement.Leave();
  replacement.TakePlace();
  FlushFolder(files.Library.parent_path());
  return StateOf(files.Library, hash);
}

}  // namespace

LibraryFileState WriteProjectorDatabase(const fs::path& folder, const ProjectorLibrary& library) {
  const ProjectorFiles files(folder);
  try {
    return WriteInSteps(files, library);
  } catch (const FileError& error) {
    // Whichever of its files failed: it is the library that could not be written.
    throw FileError(files.Library, "write", error.Reason(), error.Code());
  }
}

}  // namespace qdm
