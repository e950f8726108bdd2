#include "base/native_files.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace qdm::native_files {
namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

std::error_code Last() { return {errno, std::generic_category()}; }
std::error_code Told(int result) { return result == 0 ? std::error_code() : Last(); }

FileFacts FactsOf(const struct stat& status) {
  FileFacts facts;
  facts.Kind = S_ISREG(status.st_mode)   ? PathKind::Regular
               : S_ISDIR(status.st_mode) ? PathKind::Directory
                                         : PathKind::Other;
  facts.Size = static_cast<std::uint64_t>(status.st_size);
#ifdef __APPLE__
  const timespec& modified = status.st_mtimespec;
#else
  const timespec& modified = status.st_mtim;
#endif
  facts.Modified = std::int64_t{modified.tv_sec} * 1'000'000'000 + modified.tv_nsec;
  facts.Device = static_cast<std::uint64_t>(status.st_dev);
  facts.Number = static_cast<std::uint64_t>(status.st_ino);
  facts.Names = static_cast<std::uint64_t>(status.st_nlink);
  facts.WriteProtected = (status.st_mode & kAnyWrite) == 0;
  return facts;
}

// A lock of the open file, not of the process: it ends with the file and also keeps out other locks of this
// process. Where there is none, a lock of the process.
#ifdef F_OFD_SETLK
constexpr int kSetLock = F_OFD_SETLK;
#else
constexpr int kSetLock = F_SETLK;
#endif

int SetLock(int file) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return fcntl(file, kSetLock, &lock);
}

bool SaysHeld(int error) { return error == EAGAIN || error == EACCES; }
// File systems that know no locks.
bool SaysUnknown(int error) {
  return error == ENOLCK || error == EOPNOTSUPP || error == EINVAL || error == ENOSYS;
}

bool IsStill(const Path& path, int file) {
  struct stat opened {};
  struct stat named {};
  return fstat(file, &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

#ifdef __linux__
constexpr const char* kAccessList = "system.posix_acl_access";

// A version, then entries of tag, rights and id, little-endian. What a group that could not be given would
// have is cut to what everybody has.
void TakeGroupsRights(std::vector<char>& accessList) {
  constexpr std::size_t kVersion = 4, kEntry = 8, kRights = 2;
  constexpr char kOwningGroup = 0x04, kOthers = 0x20;
  char others = 0;
  for (const char tag : {kOthers, kOwningGroup}) {
    for (std::size_t at = kVersion; at + kEntry <= accessList.size(); at += kEntry) {
      if (accessList[at] != tag) continue;
      char& rights = accessList[at + kRights];
      if (tag == kOthers) others = rights;
      rights = static_cast<char>(rights & others);
    }
  }
}

// One that the new file has from its folder would let in whom the old one keeps out.
void DropAccessList(int file) { static_cast<void>(fremovexattr(file, kAccessList)); }

// Attributes that the system or the user may not copy are left out, as copying files does.
void CopyExtendedAttributes(const Path& from, int to, bool sameGroup) {
  const ssize_t room = listxattr(from.c_str(), nullptr, 0);
  if (room <= 0) return;
  std::vector<char> names(static_cast<std::size_t>(room));
  const ssize_t listed = listxattr(from.c_str(), names.data(), names.size());
  std::vector<char> value;
  for (ssize_t at = 0; at < listed;
       at += static_cast<ssize_t>(std::strlen(&names[static_cast<std::size_t>(at)])) + 1) {
    const char* name = &names[static_cast<std::size_t>(at)];
    const ssize_t size = getxattr(from.c_str(), name, nullptr, 0);
    if (size < 0) continue;
    value.resize(static_cast<std::size_t>(size));
    const ssize_t got = getxattr(from.c_str(), name, value.data(), value.size());
    if (got < 0) continue;
    value.resize(static_cast<std::size_t>(got));
    if (!sameGroup && std::strcmp(name, kAccessList) == 0) TakeGroupsRights(value);
    static_cast<void>(fsetxattr(to, name, value.data(), value.size(), 0));
  }
}
#else
void DropAccessList(int) {}
void CopyExtendedAttributes(const Path&, int, bool) {}
#endif

}  // namespace

std::error_code Look(const Path& path, FileFacts& facts) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    facts = {};
    return errno == ENOENT ? std::error_code() : Last();
  }
  facts = FactsOf(status);
  return {};
}

std::error_code OpenForReading(const Path& path, FileHandle& file, FileFacts& facts) {
  FileHandle opened(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!opened.IsOpen()) return Last();
  struct stat status {};
  if (fstat(opened.Get(), &status) != 0) return Last();
  facts = FactsOf(status);
  file = std::move(opened);
  return {};
}

std::error_code Read(Native file, std::span<std::uint8_t> into, std::size_t& got) {
  const ssize_t count = read(file, into.data(), into.size());
  if (count < 0) return Last();
  got = static_cast<std::size_t>(count);
  return {};
}

std::error_code Create(const Path& path, file_system::Privacy privacy, FileHandle& file) {
  const mode_t mode = privacy == file_system::Privacy::OwnerOnly ? 0600 : 0666;
  FileHandle made(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
  if (!made.IsOpen()) return Last();
  // Tells IsAbandoned that somebody is at work here.
  static_cast<void>(SetLock(made.Get()));
  file = std::move(made);
  return {};
}

std::error_code Write(Native file, std::span<const std::uint8_t> bytes, std::size_t& written) {
  const ssize_t count = write(file, bytes.data(), bytes.size());
  if (count < 0) return Last();
  written = static_cast<std::size_t>(count);
  return {};
}

std::error_code Flush(Native file) {
  // Some network file systems have nothing to flush and say so.
  if (fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP) return {};
  return Last();
}

std::error_code Protect(const Path& from, const Path&, Native file) {
  struct stat old {};
  struct stat made {};
  if (stat(from.c_str(), &old) != 0 || fstat(file, &made) != 0) return Last();
  mode_t mode = old.st_mode & kPermissions;
  if (old.st_uid != made.st_uid && fchown(file, old.st_uid, old.st_gid) == 0) made.st_gid = old.st_gid;
  const bool sameGroup = old.st_gid == made.st_gid || fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
  if (!sameGroup) {
    const mode_t others = mode & S_IRWXO;
    mode = (mode & ~static_cast<mode_t>(S_IRWXG | S_ISGID)) | (mode & (others << 3));
  }
  DropAccessList(file);
  if (fchmod(file, mode) != 0) return Last();
  CopyExtendedAttributes(from, file, sameGroup);
  return {};
}

std::error_code Close(Native file) { return Told(close(file)); }

std::error_code Rename(const Path& from, const Path& to) { return Told(rename(from.c_str(), to.c_str())); }

std::error_code Remove(const Path& path) {
  if (unlink(path.c_str()) == 0 || errno == ENOENT) return {};
  const std::error_code error = Last();
  // Where nothing may be deleted, some systems refuse before they look whether there is anything.
  struct stat status {};
  return lstat(path.c_str(), &status) != 0 && errno == ENOENT ? std::error_code() : error;
}

std::error_code Link(const Path& existing, const Path& name) {
  return Told(link(existing.c_str(), name.c_str()));
}

std::error_code FlushFolder(const Path& folder) {
  const FileHandle opened(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // A folder that may be written to but not listed cannot be opened: there is no way to flush it.
  if (!opened.IsOpen()) return {};
  return Flush(opened.Get());
}

std::error_code Lock(const Path& path, FileHandle& file, bool& held) {
  held = false;
  for (;;) {
    FileHandle opened(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (!opened.IsOpen()) return Last();
    // Whoever comes next may be another user, whatever this one's new files look like.
    static_cast<void>(fchmod(opened.Get(), 0666));
    if (SetLock(opened.Get()) != 0 && !SaysUnknown(errno)) {
      if (!SaysHeld(errno)) return Last();
      held = true;
      return {};
    }
    // Who held it before may have deleted it since it was opened here.
    if (!IsStill(path, opened.Get())) continue;
    file = std::move(opened);
    return {};
  }
}

bool IsAbandoned(const Path& path) {
  const FileHandle opened(open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!opened.IsOpen()) return false;
  struct stat status {};
  if (fstat(opened.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (time(nullptr) - status.st_mtime < kAbandonedAfterSeconds) return false;
  return SetLock(opened.Get()) == 0 && IsStill(path, opened.Get());
}

std::string OwnerOf(const Path& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return {};
  const passwd* user = getpwuid(status.st_uid);
  return user != nullptr ? user->pw_name : "user " + std::to_string(status.st_uid);
}

Path SpellingOf(const Path& path) { return path; }

}  // namespace qdm::native_files
