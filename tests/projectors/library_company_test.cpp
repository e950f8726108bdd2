// One library, several programs: nobody's work is lost. What happens at each call of a save is tests/world's.
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/distinct_projector.h"
#include "support/files.h"
#include "support/no_patience.h"
#include "support/seeded_random.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace qdm {
namespace {
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct LibraryCompany : testing::Test {
  ProjectorLibrary Loaded() const {
    ProjectorLibrary library;
    LoadProjectorDatabase(folder.Path(), library, NoPatience());
    return library;
  }
  std::vector<std::string> OnDisk() const { return TimedModels(Loaded().Elements()); }
  void Put(const std::vector<ProjectorDefinition>& elements) const {
    ProjectorLibrary library;
    for (const ProjectorDefinition& element : elements) library.Append(element);
    WriteProjectorDatabase(folder.Path(), library);
  }
  LibrarySaved Save(ProjectorLibrary& library) const {
    return SaveProjectorDatabase(folder.Path(), library, NoPatience());
  }
  const TempFolder folder;
};

TEST_F(LibraryCompany, WhatOneSideAddsDeletesOrChangesIsTaken) {
  Put({Timed("Kept", 1), Timed("OursChange", 2), Timed("TheirsChange", 3), Timed("OursGone", 4),
       Timed("TheirsGone", 5)});
  ProjectorLibrary ours = Loaded();
  ours.Replace(1, Timed("OursChange", 20));
  ours.Remove(3);
  ours.Append(Timed("OursNew", 6));
  ProjectorLibrary theirs = Loaded();
  theirs.Append(Timed("TheirsNew", 7));
  theirs.Remove(4);
  theirs.Replace(2, Timed("theirschange", 30));
  EXPECT_FALSE(ChangedOnDisk(folder.Path(), ours));
  EXPECT_EQ(Save(theirs).Taken, 0U);
  EXPECT_TRUE(ChangedOnDisk(folder.Path(), ours));

  EXPECT_THAT(TimedModels(ours.ChangedElements()), ElementsAre("OursChange 20", "OursNew 6"));
  LibraryAfterSave after;
  const LibrarySaved saved = SaveProjectorDatabase(folder.Path(), ours, after, NoPatience());
  after.TakePlaceOf(ours);
  EXPECT_THAT(saved.Conflicts, IsEmpty());
  EXPECT_EQ(saved.Taken, 3U);
  EXPECT_THAT(OnDisk(),
              ElementsAre("Kept 1", "OursChange 20", "theirschange 30", "OursNew 6", "TheirsNew 7"));
  EXPECT_EQ(TimedModels(ours.Elements()), OnDisk());
  EXPECT_FALSE(ours.Changed() || ChangedOnDisk(folder.Path(), ours));
}

TEST_F(LibraryCompany, AConflictIsHandedOverAndNothingWrittenUntilItIsSettled) {
  Put({Timed("Both", 1), Timed("GoneHere", 2), Timed("GoneThere", 3), Timed("Same", 4)});
  ProjectorLibrary ours = Loaded();
  ProjectorLibrary theirs = Loaded();
  ours.Replace(0, Timed("Both", 10));
  ours.Remove(1);
  ours.Replace(1, Timed("GoneThere", 30));
  ours.Replace(2, Timed("Same", 40));
  theirs.Replace(3, Timed("Same", 40));
  theirs.Remove(2);
  theirs.Replace(1, Timed("GoneHere", 20));
  theirs.Replace(0, Timed("Both", 11));
  Save(theirs);

  const LibrarySaved asked = Save(ours);
  ASSERT_EQ(asked.Conflicts.size(), 3U);
  EXPECT_THAT(OnDisk(), ElementsAre("Both 11", "GoneHere 20", "Same 40"));
  // The user takes theirs for one and lets the others be as they are here.
  ours.Replace(0, asked.Conflicts[0].Theirs.front());
  EXPECT_THAT(Save(ours).Conflicts, IsEmpty());
  EXPECT_THAT(OnDisk(), ElementsAre("Both 11", "GoneThere 30", "Same 40"));
}

TEST_F(LibraryCompany, MergesOfRandomLibrariesLoseNothingThatNeitherSideDeleted) {
  SeededRandom random;
  const auto grown = [&](std::vector<ProjectorDefinition> from) {
    for (int change = 0; change < 6; ++change) {
      const std::size_t at = random() % (from.size() + 1);
      if (at == from.size() || random() % 3 == 0) {
        from.push_back(Timed("M" + std::to_string(random() % 12), static_cast<int>(random() % 4)));
      } else if (random() % 2 == 0) {
        from.erase(from.begin() + static_cast<std::ptrdiff_t>(at));
      } else {
        from[at].WarmUpTime = static_cast<std::int16_t>(random() % 4);
      }
    }
    return from;
  };
  for (int round = 0; round < 2000; ++round) {
    const auto base = grown({});
    const auto ours = grown(base);
    const auto theirs = grown(base);
    EXPECT_EQ(MergeLibraries(base, base, theirs).Elements.size(), theirs.size());
    EXPECT_EQ(MergeLibraries(base, ours, base).Elements, ours);
    EXPECT_EQ(MergeLibraries(base, ours, ours).Elements, ours);
    const LibraryMerge merge = MergeLibraries(base, ours, theirs);
    const auto has = [](const std::vector<ProjectorDefinition>& elements, const ProjectorDefinition& named) {
      return std::any_of(elements.begin(), elements.end(), [&](const ProjectorDefinition& element) {
        return NameKey(element) == NameKey(named);
      });
    };
    for (const ProjectorDefinition& element : ours) {
      const bool theyDeleted = has(base, element) && !has(theirs, element);
      ASSERT_TRUE(has(merge.Elements, element) || theyDeleted);
    }
    for (const ProjectorDefinition& element : theirs) {
      const bool weDeleted = has(base, element) && !has(ours, element);
      ASSERT_TRUE(has(merge.Elements, element) || weDeleted);
    }
  }
}

TEST_F(LibraryCompany, ACallThatASignalInterruptsIsMadeAgain) {
  ProjectorLibrary library = Loaded();
  library.Append(Timed("One", 1));
  int calls = 0;
  const FileStepHookScope hook([&calls](FileStep, const fs::path&) { return calls++ % 2 == 0 ? EINTR : 0; });
  Save(library);
  EXPECT_THAT(OnDisk(), ElementsAre("One 1"));
}

TEST_F(LibraryCompany, ALockThatIsHeldForTenSecondsIsToldWithItsOwner) {
  const auto held = FileLock::Try(ProjectorFiles(folder.Path()).Lock);
  ProjectorLibrary library = Loaded();
  LibraryPatience patience;
  LibraryPatience::Milliseconds waited{0};
  patience.Pause = [&waited](LibraryPatience::Milliseconds time) { waited += time; };
  EXPECT_THAT(FailureOf([&] { SaveProjectorDatabase(folder.Path(), library, patience); }),
              testing::MatchesRegex(".*: in use by .* \\(process .+\\)"));
  EXPECT_EQ(waited, std::chrono::seconds(10));
}

#ifndef _WIN32
TEST_F(LibraryCompany, ALinkStaysOneAndWhatIsSetAsideIsNamedWithItsReason) {
  const fs::path shared = folder / "shared";
  const fs::path mine = folder / "mine";
  fs::create_directory(shared);
  fs::create_directory(mine);
  fs::create_symlink("../shared/Projectors.DEF", mine / "Projectors.DEF");
  for (const char* model : {"One", "Two"}) {
    ProjectorLibrary library;
    LoadProjectorDatabase(mine, library, NoPatience());
    library.Append(Timed(model, 1));
    SaveProjectorDatabase(mine, library, NoPatience());
  }
  EXPECT_TRUE(fs::is_symlink(mine / "Projectors.DEF"));
  EXPECT_FALSE(fs::is_symlink(shared / "Projectors.DEF"));
  EXPECT_TRUE(fs::exists(shared / "Projectors.BAK"));
  ProjectorLibrary library;
  const auto failing = [](int error, int times) {
    return [error, left = times](FileStep step, const fs::path& path) mutable {
      return step == FileStep::Open && path.filename() == "Projectors.DEF" && left-- > 0 ? error : 0;
    };
  };
  {
    const FileStepHookScope passing(failing(EMFILE, 10));
    EXPECT_THAT(LoadProjectorDatabase(shared, library, NoPatience()), IsEmpty())
        << "it is tried again for two seconds";
  }
  const FileStepHookScope lasting(failing(EACCES, 2));
  const std::vector<Message> told = LoadProjectorDatabase(shared, library, NoPatience());
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(
      told[0].Detail,
      testing::MatchesRegex("Permission denied: it belongs to .*; everything is in Projectors.DAMAGED"));
  EXPECT_EQ(ReadDefinitions(shared / "Projectors.DAMAGED").size(), 2U);
}
#endif

}  // namespace
}  // namespace qdm
