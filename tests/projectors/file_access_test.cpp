#include "projectors/file_access.h"

#include "support/temp_folder.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace qdm {
namespace {
namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::size_t FilesIn(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(FileAccess, WritesAndReadsWholeFilesUnderAnyName) {
  const TempFolder folder;
  const fs::path file = folder.Path() / PathFromUtf8("H\u00F6rsaal \u4E2D.BVC");
  EXPECT_EQ(PathToUtf8(file.filename()), "H\u00F6rsaal \u4E2D.BVC");
  for (const std::size_t size : {0U, 1U, 65536U, 200000U, 3U}) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
    WriteFileSafely(file, bytes);
    EXPECT_EQ(ReadWholeFile(file), bytes) << size;
  }
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST(FileAccess, TheTailOfALongerFileStaysWhenItIsAskedFor) {
  const TempFolder folder;
  const fs::path file = folder / "a";
  WriteFileSafely(file, Bytes{1, 2, 3, 4}, OldTail::Kept);
  WriteFileSafely(file, Bytes{9, 9}, OldTail::Kept);
  EXPECT_EQ(ReadWholeFile(file), (Bytes{9, 9, 3, 4}));
  WriteFileSafely(file, Bytes{7, 7, 7, 7, 7}, OldTail::Kept);
  EXPECT_EQ(ReadWholeFile(file), (Bytes{7, 7, 7, 7, 7}));
  WriteFileSafely(file, Bytes{8}, OldTail::Dropped);
  EXPECT_EQ(ReadWholeFile(file), Bytes{8});
}

TEST(FileAccess, AFailureNamesFileAndReasonAndLeavesEverythingAsItWas) {
  const TempFolder folder;
  fs::create_directory(folder / "folder.BVC");
  const fs::path missing = folder.Path() / "nowhere" / "x.BVC";
  const auto what = [](const auto& action) -> std::string {
    try {
      action();
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), HasSubstr(error.Reason()));
      EXPECT_FALSE(error.Reason().empty());
      return error.what();
    }
    return "no failure";
  };
  EXPECT_THAT(what([&] { ReadWholeFile(missing); }), StartsWith("cannot read " + PathToUtf8(missing) + ": "));
  EXPECT_THAT(what([&] { WriteFileSafely(missing, Bytes{1}); }),
              StartsWith("cannot write " + PathToUtf8(missing) + ": "));
  EXPECT_THAT(what([&] { ReadWholeFile(folder / "folder.BVC"); }), StartsWith("cannot read "));
  EXPECT_THAT(what([&] { WriteFileSafely(folder / "folder.BVC", Bytes{1}); }), StartsWith("cannot write "));
  EXPECT_THAT(what([&] { RenameFile(missing, folder / "y"); }), StartsWith("cannot replace "));
  EXPECT_NO_THROW(RemoveFile(missing));
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
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

TEST(FileAccess, APipeOrDeviceIsWrittenToAndNotReplaced) {
  const TempFolder folder;
  const fs::path pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  WriteFileSafely(pipe, Bytes{1, 2, 3});
  Bytes received(10);
  EXPECT_EQ(read(reader, received.data(), received.size()), 3);
  close(reader);
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
}
#endif

}  // namespace
}  // namespace qdm
