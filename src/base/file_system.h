// The system calls that safe file access is made of, one function a call: the same for POSIX and Windows,
// with one seam through which tests look at every call, let it fail, or end the "program" before it.
// Everything here answers with the system's error and throws nothing; file_access.h is what the rest of the
// program uses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <system_error>

namespace qdm {

enum class FileStep {
  Look,
  Open,
  Read,
  Create,
  Write,
  Flush,
  Protect,
  Close,
  Rename,
  Remove,
  Link,
  FlushFolder,
  Lock
};

// Called before each call on a file: an errno that the call is to fail with, 0 to let it happen. It may
// throw, as if the program had been killed there. Without a hook nothing is called.
using FileStepHook = std::function<int(FileStep step, const std::filesystem::path& path)>;

// In force while it lives, in its own thread.
class FileStepHookScope {
 public:
  // The one that is in force, for a thread that goes on with this one's work; empty when there is none.
  static FileStepHook Current();

  explicit FileStepHookScope(FileStepHook hook);
  ~FileStepHookScope();
  FileStepHookScope(const FileStepHookScope&) = delete;
  FileStepHookScope& operator=(const FileStepHookScope&) = delete;

 private:
  FileStepHook hook_;
  FileStepHook* outer_;
};

enum class PathKind { Absent, Regular, Directory, Other };

struct FileFacts {
  PathKind Kind = PathKind::Absent;
  std::uint64_t Size = 0;
  std::int64_t Modified = 0;  // nanoseconds since 1970
  std::uint64_t Device = 0;   // with Number: the same for the same file, whatever name it has
  std::uint64_t Number = 0;
  std::uint64_t Names = 1;  // hard links
  bool WriteProtected = false;
};

// An open file; closed when it goes, whatever closing says.
class FileHandle {
 public:
#ifdef _WIN32
  using Native = void*;
  static inline const Native kClosed = reinterpret_cast<Native>(static_cast<std::intptr_t>(-1));
#else
  using Native = int;
  static constexpr Native kClosed = -1;
#endif

  FileHandle() = default;
  explicit FileHandle(Native native) : native_(native) {}
  ~FileHandle();
  FileHandle(FileHandle&& other) noexcept : native_(other.Release()) {}
  FileHandle& operator=(FileHandle&& other) noexcept;

  bool IsOpen() const { return native_ != kClosed; }
  Native Get() const { return native_; }
  Native Release() {
    const Native native = native_;
    native_ = kClosed;
    return native;
  }

 private:
  Native native_ = kClosed;
};

namespace file_system {

using Path = std::filesystem::path;

// Follows links. A file that is not there is no error, but of kind Absent.
std::error_code Look(const Path& path, FileFacts& facts);
// Never waits: a pipe that nobody writes to opens like any other, and its facts say what it is.
std::error_code OpenForReading(const Path& path, FileHandle& file, FileFacts& facts);
// `got` is 0 at the end of the file.
std::error_code Read(const Path& path, const FileHandle& file, std::span<std::uint8_t> into,
                     std::size_t& got);
// A new file; "file exists" when anything has that name, a dangling link included. A private one can be read
// by its owner alone, the other kind is what the user's settings make of a new file.
enum class Privacy { OwnerOnly, AsUsual };
std::error_code Create(const Path& path, Privacy privacy, FileHandle& file);
std::error_code Write(const Path& path, const FileHandle& file, std::span<const std::uint8_t> bytes);
std::error_code Flush(const Path& path, const FileHandle& file);
// Mode, access control list, extended attributes and, where allowed, owner of `from` for the new file. It is
// never open to more people than `from`: a group that cannot be given has the rights of everybody else.
std::error_code Protect(const Path& from, const Path& path, const FileHandle& file);
std::error_code Close(const Path& path, FileHandle& file);
// Replaces `to` when it exists. Windows wants `file` closed before.
std::error_code Rename(const Path& from, const Path& to);
// Nothing happens when there is no such file.
std::error_code Remove(const Path& path);
// A second name for a file.
std::error_code Link(const Path& existing, const Path& name);
// Makes names in the folder survive a power cut, where the system can.
std::error_code FlushFolder(const Path& folder);
// True in `held` when another process (or another lock of this one) has it; the file is made when there is
// none.
std::error_code Lock(const Path& path, FileHandle& file, bool& held);

// A file that a saver left behind when it was killed; false when its owner lives or that cannot be told.
bool IsAbandoned(const Path& path);
// The user that a file belongs to; empty when the system does not tell.
std::string OwnerOf(const Path& path);
// The path as it is spelled on the disk, where case does not tell two files apart; the path itself elsewhere,
// and for a file that is not there.
Path SpellingOf(const Path& path);
// Where a symbolic link points, also one to nothing; the path itself when it is none.
Path TargetOf(const Path& path);

}  // namespace file_system

}  // namespace qdm
