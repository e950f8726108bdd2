#include "base/file_access.h"

#include "support/temp_folder.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace qdm {
namespace {
namespace fs = std::filesystem;

std::size_t FilesIn(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(FileAccess, WritesAndReadsWholeFilesUnderAnyName) {
  const TempFolder folder;
  const fs::path file = folder.Path() / PathFromUtf8("H\u00F6rsaal \u4E2D.BVC");
  for (const std::size_t size : {0U, 200000U, 3U}) {
    const Bytes bytes(size, static_cast<std::uint8_t>(size + 7));
    WriteFileSafely(file, bytes);
    EXPECT_EQ(ReadWholeFile(file), bytes) << size;
  }
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST(FileAccess, AFailureNamesFileAndReasonAndLeavesEverythingAsItWas) {
  const TempFolder folder;
  const fs::path missing = folder.Path() / "nowhere" / "x.BVC";
  const auto reasonOf = [&](const std::string& action, const auto& attempt) -> std::string {
    try {
      attempt();
    } catch (const FileError& error) {
      EXPECT_EQ(error.what(), "cannot " + action + " " + PathToUtf8(missing) + ": " + error.Reason());
      return error.Reason();
    }
    return {};
  };
  EXPECT_NE(reasonOf("read", [&] { ReadWholeFile(missing); }), "");
  EXPECT_NE(reasonOf("write", [&] { WriteFileSafely(missing, Bytes{1}); }), "");
  EXPECT_THROW(ReadWholeFile(folder.Path()), FileError);
  EXPECT_THROW(WriteFileSafely(folder.Path(), Bytes{1}), FileError);
  EXPECT_THROW(RenameFile(missing, folder / "y"), FileError);
  EXPECT_EQ(FilesIn(folder.Path()), 0U);
}

#ifndef _WIN32
TEST(FileAccess, LinksAndPermissionsOutliveASave) {
  const TempFolder folder;
  WriteFileSafely(folder / "real", Bytes{1});
  fs::permissions(folder / "real", fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(folder / "real", folder / "link");
  WriteFileSafely(folder / "link", Bytes{2});
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(ReadWholeFile(folder / "real"), Bytes{2});
  EXPECT_EQ(fs::status(folder / "real").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(FileAccess, WhatIsNoFileIsRefusedAtOnce) {
  const TempFolder folder;
  const fs::path pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", folder / "endless");
  for (const fs::path& path : {pipe, folder / "endless", folder.Path()}) {
    EXPECT_THROW(ReadWholeFile(path), FileError) << path;
    EXPECT_THROW(ReadBeginning(path, 10), FileError) << path;
    EXPECT_THROW(WriteFileSafely(path, Bytes{1}), FileError) << path;
  }
  EXPECT_EQ(FilesIn(folder.Path()), 2U);
}
#endif

}  // namespace
}  // namespace qdm
