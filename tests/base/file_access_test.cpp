#include "base/file_access.h"

#include "support/files.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace qdm {
namespace {
namespace fs = std::filesystem;
using testing::StartsWith;

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
  EXPECT_THAT(FailureOf([&] { ReadWholeFile(missing); }), StartsWith("cannot read " + PathToUtf8(missing)));
  EXPECT_THAT(FailureOf([&] { WriteFileSafely(missing, Bytes{1}); }),
              StartsWith("cannot write " + PathToUtf8(missing)));
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

TEST(FileAccess, AWriteProtectedFileAndASecondNameAreRefusedWithTheReason) {
  const TempFolder folder;
  WriteFileSafely(folder / "protected", Bytes{1});
  fs::permissions(folder / "protected", fs::perms::owner_read);
  WriteFileSafely(folder / "first", Bytes{1});
  fs::create_hard_link(folder / "first", folder / "second");
  for (const auto& [name, reason] : {std::pair("protected", "Permission denied: it is write-protected"),
                                     std::pair("first",
                                               "it has a second name (a hard link), under which the "
                                               "old contents would stay")}) {
    const fs::path file = folder / name;
    EXPECT_EQ(FailureOf([&file] { WriteFileSafely(file, Bytes{2}); }),
              "cannot write " + file.string() + ": " + reason);
    EXPECT_EQ(ReadWholeFile(file), Bytes{1});
  }
}

#ifdef __linux__
// Of the new file at every step: what the group and others may do with it.
std::vector<unsigned> OpennessDuring(const fs::path& target) {
  std::vector<unsigned> openness;
  const FileStepHookScope hook([&](FileStep, const fs::path& path) {
    struct stat status {};
    if (path != target && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
      openness.push_back(status.st_mode & 077U);
    }
    return 0;
  });
  WriteFileSafely(target, Bytes{2});
  return openness;
}

// Version 2; owner rw, user 12345 rwx, group rw, mask rwx, others nothing: tag, rights, id.
const std::string kAccessList(
    "\2\0\0\0\1\0\6\0\377\377\377\377\2\0\7\0\71\60\0\0\4\0\6\0\377\377\377\377"
    "\20\0\7\0\377\377\377\377\40\0\0\0\377\377\377\377",
    44);

std::string Attribute(const fs::path& path, const char* name) {
  char value[200];
  const ssize_t size = getxattr(path.c_str(), name, value, sizeof(value));
  return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
}

TEST(FileAccess, AttributesAccessListAndOwnerOutliveASaveAndNobodyElseReadsMeanwhile) {
  const TempFolder folder;
  const fs::path file = folder / "shared";
  WriteFileSafely(file, Bytes{1});
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  if (setxattr(file.c_str(), "user.colour", "red", 3, 0) != 0) GTEST_SKIP() << "no attributes in this folder";
  const bool root = geteuid() == 0;
  ASSERT_EQ(root ? chown(file.c_str(), 12345, 54321) : 0, 0);
  for (const unsigned open : OpennessDuring(file)) EXPECT_EQ(open & ~040U, 0U);
  EXPECT_EQ(Attribute(file, "user.colour"), "red");
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_TRUE(!root || (status.st_uid == 12345 && status.st_gid == 54321));

  if (setxattr(file.c_str(), "system.posix_acl_access", kAccessList.data(), kAccessList.size(), 0) != 0) {
    GTEST_SKIP() << "no access lists in this folder";
  }
  WriteFileSafely(file, Bytes{3});
  EXPECT_EQ(Attribute(file, "system.posix_acl_access"), kAccessList);

  // What a new file would have from its folder is not what the old one had.
  ASSERT_EQ(removexattr(file.c_str(), "system.posix_acl_access"), 0);
  ASSERT_EQ(
      setxattr(folder.Path().c_str(), "system.posix_acl_default", kAccessList.data(), kAccessList.size(), 0),
      0);
  WriteFileSafely(file, Bytes{4});
  EXPECT_EQ(Attribute(file, "system.posix_acl_access"), "none");
}
#endif

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
