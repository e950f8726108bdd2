#include "projectors/data_folder.h"

#include "base/file_access.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

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
}

TEST_F(DataFolderRule, TheUsersFolderBeginsAsACopyOfTheProgramsLibrary) {
  const DataFolder chosen = FindDataFolder({}, program, user, Never);
  EXPECT_EQ(chosen.ReadingFolder(), program);
  EXPECT_FALSE(fs::exists(user));  // finding and reading make nothing
  PrepareDataFolder(chosen);
  EXPECT_EQ(ReadWholeFile(user / "Projectors.DEF"), (Bytes{1, 2, 3}));
  for (const char* left : {"Projectors.DEF", "Projectors.BAK", "Projectors.TMP"}) {
    fs::remove_all(user);
    fs::create_directories(user);
    WriteFileSafely(user / left, Bytes{1});
    EXPECT_EQ(FindDataFolder({}, program, user, Never).ReadingFolder(), user) << "in use: never seeded again";
  }
}

#ifndef _WIN32
TEST_F(DataFolderRule, TheUsersFolderIsTheDesktops) {
  const auto folderWith = [](const char* data, const char* home) {
    setenv("XDG_DATA_HOME", data, 1);
    setenv("HOME", home, 1);
    return UserDataFolder().parent_path();
  };
  const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
  EXPECT_EQ(folderWith("/data", "/home/anna"), "/data");
  EXPECT_EQ(folderWith("relative", "/home/anna"), "/home/anna/.local/share");
  EXPECT_EQ(folderWith("", ""), "");
  unsetenv("XDG_DATA_HOME");
  setenv("HOME", home.c_str(), 1);
}
#endif

TEST_F(DataFolderRule, OnlyAFolderCanBeWrittenTo) {
  EXPECT_TRUE(CanWriteTo(program));
  EXPECT_FALSE(CanWriteTo(program / "Projectors.DEF"));
  EXPECT_FALSE(CanWriteTo(user));
}

}  // namespace
}  // namespace qdm
