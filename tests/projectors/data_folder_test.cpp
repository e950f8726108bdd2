#include "projectors/data_folder.h"

#include "projectors/file_access.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace qdm {
namespace {

namespace fs = std::filesystem;

// The tests may run as a user who can write everywhere.
bool Never(const fs::path&) { return false; }

struct DataFolderRule : testing::Test {
  DataFolderRule() {
    fs::create_directories(program);
    WriteFileSafely(program / "Projectors.DEF", Bytes{1, 2, 3});
  }

  TempFolder folder;
  fs::path program = folder / "program";
  fs::path user = folder / "user/qdm-editor";
};

TEST_F(DataFolderRule, TheNamedFolderWinsThenTheProgramsOwnThenTheUsers) {
  EXPECT_EQ(FindDataFolder(folder / "named", program, user).Folder, folder / "named");
  EXPECT_EQ(FindDataFolder({}, program, user).Folder, program);
  EXPECT_EQ(FindDataFolder({}, program, user, Never).Folder, user);
  EXPECT_EQ(FindDataFolder({}, program, {}, Never).Folder, program);
  EXPECT_FALSE(CanWriteTo(folder / "not there"));
  EXPECT_FALSE(CanWriteTo(program / "Projectors.DEF"));
}

TEST_F(DataFolderRule, TheUsersFolderBeginsAsACopyOfTheProgramsLibrary) {
  const DataFolder chosen = FindDataFolder({}, program, user, Never);
  EXPECT_EQ(chosen.ReadingFolder(), program);
  EXPECT_FALSE(fs::exists(user));  // finding and reading make nothing
  PrepareDataFolder(chosen);
  EXPECT_EQ(ReadWholeFile(user / "Projectors.DEF"), (Bytes{1, 2, 3}));
  EXPECT_EQ(FindDataFolder({}, program, user, Never).ReadingFolder(), user);
}

TEST_F(DataFolderRule, AFolderThatWasInUseIsNeverSeededAgain) {
  for (const char* left : {"Projectors.DEF", "Projectors.BAK", "Projectors.TMP"}) {
    fs::remove_all(user);
    fs::create_directories(user);
    WriteFileSafely(user / left, Bytes{1});
    EXPECT_EQ(FindDataFolder({}, program, user, Never).ReadingFolder(), user) << left;
  }
}

TEST(DataFolderVariables, FollowTheSystem) {
#ifndef _WIN32
  ::setenv("QDM_DATA", "/some/where", 1);
  EXPECT_EQ(DataFolderVariable(), fs::path("/some/where"));
  ::setenv("QDM_DATA", "", 1);
  EXPECT_EQ(DataFolderVariable(), std::nullopt);
  ::unsetenv("QDM_DATA");
  EXPECT_EQ(DataFolderVariable(), std::nullopt);

  ::setenv("HOME", "/home/anna", 1);
  ::setenv("XDG_DATA_HOME", "relative", 1);
  EXPECT_EQ(UserDataFolder(), "/home/anna/.local/share/qdm-editor");
  ::setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(UserDataFolder(), "/data/qdm-editor");
  ::unsetenv("XDG_DATA_HOME");
#endif
}

}  // namespace
}  // namespace qdm
