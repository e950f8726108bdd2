// The library on disk outlives whatever happens to the program that saves it: every save of a library of
// 2,000 definitions carries its generation in each of them, so that half of one and half of another would
// show.

#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/files.h"
#include "support/seeded_random.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>

#ifndef _WIN32
#include "support/another_user.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace qdm {
namespace {
namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::size_t kDefinitions = 2000;

ProjectorLibrary LibraryOf(std::size_t definitions, int generation) {
  ProjectorLibrary library;
  library.Reserve(definitions);
  ProjectorDefinition projector;
  projector.Manufacturer.Assign(u"ACME");
  projector.Notes.AssignUtf8("generation " + std::to_string(generation));
  projector.Strings[24].Values.fill(static_cast<std::uint8_t>(generation));
  projector.Stopbits = static_cast<std::int16_t>(generation);  // the record's last bytes
  for (std::size_t i = 0; i < definitions; ++i) {
    projector.Model.AssignUtf8("Model " + std::to_string(i));
    library.Append(projector);
  }
  return library;
}

// The generation that all definitions of the folder's library carry; 0 for an empty library. Fails the test
// when the library is not complete.
int GenerationIn(const fs::path& folder, std::size_t definitions = kDefinitions) {
  ProjectorLibrary library;
  EXPECT_THAT(LoadProjectorDatabase(folder, library), testing::IsEmpty());
  if (!library.Loaded()) return 0;
  const int generation = library[0].Stopbits;
  EXPECT_EQ(library.Elements(), LibraryOf(definitions, generation).Elements());
  return generation;
}

struct FolderState {
  const char* Name;
  int Library;  // generation, 0 for no file
  int Backup;
  int Temporary;
  bool TemporaryIsCut;
  int Loaded;
};

TEST(LibrarySafety, EveryStateThatACutOffSaveLeavesLoadsWhole) {
  const FolderState states[] = {
      {"before the first save ever", 0, 0, 0, false, 0},
      {"first temporary file half written", 0, 0, 1, true, 0},
      {"temporary file half written", 2, 1, 3, true, 2},
      {"temporary file complete", 2, 1, 3, false, 2},
      {"library moved to the backup", 0, 2, 3, false, 3},
      {"save finished", 3, 2, 0, false, 3},
      {"an empty library was saved", 0, 2, 0, false, 0},
  };
  for (const FolderState& state : states) {
    SCOPED_TRACE(state.Name);
    const TempFolder folder;
    const ProjectorFiles files(folder.Path());
    const auto put = [](const fs::path& file, int generation) {
      if (generation != 0) WriteAndFlush(file, EncodeDefinitions(LibraryOf(20, generation).Elements()));
    };
    put(files.Library, state.Library);
    put(files.Backup, state.Backup);
    put(files.Temporary, state.Temporary);
    if (state.TemporaryIsCut) fs::resize_file(files.Temporary, 10 * kStoredProjectorSize + 7);

    EXPECT_EQ(GenerationIn(folder.Path(), 20), state.Loaded);
    // Saving from there works as from any other state.
    WriteProjectorDatabase(folder.Path(), LibraryOf(20, 9));
    EXPECT_EQ(GenerationIn(folder.Path(), 20), 9);
    EXPECT_FALSE(fs::exists(files.Temporary));
  }
}

// A save that failed between its two renames is tried again: the temporary file is the library's only copy of
// that state then, and the second attempt must not begin by deleting it.
TEST(LibrarySafety, SavingAgainFirstCompletesWhatACutOffSaveLeft) {
  const TempFolder folder;
  const ProjectorFiles files(folder.Path());
  WriteAndFlush(files.Backup, EncodeDefinitions(LibraryOf(20, 2).Elements()));
  WriteAndFlush(files.Temporary, EncodeDefinitions(LibraryOf(20, 3).Elements()));

  WriteProjectorDatabase(folder.Path(), LibraryOf(20, 4));
  EXPECT_EQ(GenerationIn(folder.Path(), 20), 4);
  RenameFile(files.Backup, files.Library);
  EXPECT_EQ(GenerationIn(folder.Path(), 20), 3);
}

TEST(LibrarySafety, AFileInPlaceOfTheFolderIsNamedWithTheReason) {
  const TempFolder folder;
  WriteAndFlush(folder / "Data", {});
  const std::string failure = FailureOf([&] { WriteProjectorDatabase(folder / "Data", LibraryOf(1, 1)); });
  EXPECT_THAT(failure, HasSubstr(PathToUtf8(folder / "Data")));
#ifdef _WIN32
  EXPECT_THAT(failure, HasSubstr("No such file or directory"));
#else
  EXPECT_THAT(failure, HasSubstr("Not a directory"));
#endif
}

#ifndef _WIN32

// Where parent and child tell each other how far the saving is.
struct Progress {
  std::atomic<int> Started;
  std::atomic<int> Finished;
};
static_assert(std::atomic<int>::is_always_lock_free);

[[noreturn]] void SaveForEver(const fs::path& folder, int generation, Progress& progress) {
  for (;;) {
    ++generation;
    const ProjectorLibrary library = LibraryOf(kDefinitions, generation);
    progress.Started = generation;
    WriteProjectorDatabase(folder, library);
    progress.Finished = generation;
  }
}

TEST(LibrarySafety, AKillAtAnyMomentLeavesTheOldOrTheNewLibrary) {
  constexpr int kKills = 100;
  SeededRandom random;
  const TempFolder folder;
  void* shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto& progress = *static_cast<Progress*>(shared);
  // The folder goes on from kill to kill, with whatever the one before left in it.
  WriteProjectorDatabase(folder.Path(), LibraryOf(kDefinitions, 1));
  int generation = 1;
  int killedInASave = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    progress.Started = generation;
    progress.Finished = generation;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) SaveForEver(folder.Path(), generation, progress);
    // Counted from the start of a save, up to about two of them.
    for (int wait = 0; wait < 50'000 && progress.Started == generation; ++wait) usleep(200);
    usleep(std::uniform_int_distribution<useconds_t>(0, 60'000)(random));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself";

    const int started = progress.Started;
    const int finished = progress.Finished;
    killedInASave += started != finished ? 1 : 0;
    generation = GenerationIn(folder.Path());
    ASSERT_TRUE(generation == finished || generation == started)
        << "kill " << kill << ": loaded " << generation << ", last finished " << finished << ", last started "
        << started;
    ASSERT_FALSE(HasFailure()) << "kill " << kill;
  }
  munmap(shared, sizeof(Progress));
  EXPECT_GT(killedInASave, kKills / 2) << "the kills miss the saves";
}

constexpr fs::perms kToLookInto = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                  fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;

class UnwritableLibrary : public testing::Test {
 protected:
  void SetUp() override {
    WriteProjectorDatabase(folder_.Path(), LibraryOf(kDefinitions, 1));
    WriteProjectorDatabase(folder_.Path(), LibraryOf(kDefinitions, 2));
    ExportDefinitions(exported_, LibraryOf(3, 1).Elements());
    before_ = Contents();
  }

  using Files = std::vector<std::pair<std::string, Bytes>>;
  Files Contents() const {
    Files files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.Path())) {
      files.emplace_back(entry.path().filename().string(), ReadWholeFile(entry.path()));
    }
    std::sort(files.begin(), files.end());
    return files;
  }

  TempFolder folder_;
  ProjectorFiles files_{folder_.Path()};
  fs::path exported_ = folder_ / "Exported.BVD";
  Files before_;
};

TEST_F(UnwritableLibrary, StaysAsItWasWhenTheDiskIsFullOrTheFolderClosed) {
  using Case = std::tuple<FileStep, int, std::string>;
  for (const auto& [fails, error, reason] : {Case{FileStep::Write, ENOSPC, "No space left on device"},
                                             Case{FileStep::Create, EACCES, "Permission denied"}}) {
    const FileStepHookScope hook(
        [fails = fails, error = error](FileStep step, const fs::path&) { return step == fails ? error : 0; });
    const ProjectorLibrary library = LibraryOf(kDefinitions, 3);
    EXPECT_EQ(FailureOf([&] { WriteProjectorDatabase(folder_.Path(), library); }),
              "cannot write " + PathToUtf8(files_.Library) + ": " + reason);
    EXPECT_EQ(FailureOf([&] { ExportDefinitions(exported_, library.Elements()); }),
              "cannot write " + PathToUtf8(exported_) + ": " + reason);
  }
  EXPECT_TRUE(Contents() == before_) << "a file was changed, added or removed";
}

// The file may come back, from a network folder or out of another program's hands: an empty library must not
// be saved over it meanwhile.
TEST_F(UnwritableLibrary, ThatCannotBeLoadedIsNotOverwritten) {
  for (const fs::perms folder : {kToLookInto, fs::perms::none}) {
    fs::permissions(files_.Library, fs::perms::none);
    fs::permissions(folder_.Path(), folder);
    ProjectorLibrary library;
    std::string load;
    {
      const AnotherUser user;
      load = FailureOf([&] { LoadProjectorDatabase(folder_.Path(), library); });
    }
    EXPECT_THAT(load, HasSubstr("Permission denied"));
    fs::permissions(folder_.Path(), fs::perms::owner_all);
    fs::permissions(files_.Library, fs::perms::owner_all);
    EXPECT_THAT(FailureOf([&] { SaveProjectorDatabase(folder_.Path(), library); }),
                HasSubstr("could not be read when the program started"));
    EXPECT_TRUE(Contents() == before_);

    LoadProjectorDatabase(folder_.Path(), library);
    EXPECT_EQ(EncodeDefinitions(library.Elements()), ReadWholeFile(files_.Library));
    EXPECT_TRUE(library.MayBeSaved());
  }
}

TEST_F(UnwritableLibrary, AWriteProtectedExportFileIsRefused) {
  fs::permissions(exported_, fs::perms::owner_read);
  EXPECT_EQ(FailureOf([&] { ExportDefinitions(exported_, LibraryOf(1, 3).Elements()); }),
            "cannot write " + PathToUtf8(exported_) + ": Permission denied: it is write-protected");
  EXPECT_TRUE(Contents() == before_);
}

#endif

}  // namespace
}  // namespace qdm
