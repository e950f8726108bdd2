// Files read whole and written so that a failure, a full disk or a power cut leaves the old file or the new
// one, never half of one: the bytes go to a file of their own beside the target, are flushed to the disk and
// renamed over it.
//
// Only files are read and written: a folder, a pipe or a device is refused at once. What replaces a file
// keeps its mode, access control list, extended attributes and, where allowed, its owner; a symbolic link
// stays one, its target is replaced. A file that is write-protected, or has a second name (a hard link) that
// would keep the old contents, is refused.
#pragma once

#include "base/file_system.h"
#include "base/message.h"
#include "base/record_codec.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace qdm {

// Thrown by everything here. `what()` is "cannot WHAT PATH: REASON", UTF-8.
class FileError : public std::runtime_error {
 public:
  FileError(const std::filesystem::path& path, std::string_view operation, std::string_view reason,
            std::error_code code = {});
  FileError(const std::filesystem::path& path, std::string_view operation, std::error_code code);

  const std::filesystem::path& Path() const { return path_; }
  const std::string& Operation() const { return operation_; }  // "read", "write", ...
  // The system's own words, or ours ("shorter than one record").
  const std::string& Reason() const { return reason_; }
  // The system's error; none where the reason is ours.
  std::error_code Code() const { return code_; }

 private:
  std::filesystem::path path_;
  std::string operation_;
  std::string reason_;
  std::error_code code_;
};

// Another program holds the file: `Reason()` is "in use by ...".
class InUseError : public FileError {
 public:
  InUseError(const std::filesystem::path& path, std::string_view operation, std::string_view reason)
      : FileError(path, operation, reason) {}
};

// What the user is told: file and reason, titled "Sorry".
Message SorryAbout(const FileError& error);

// Trouble that is worth another try: too many open files, a sharing violation, a network folder that hiccups.
bool MayPass(std::error_code code);

std::string PathToUtf8(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(std::string_view path);

// More than any text or library that is of use: a larger file is refused before it takes the memory.
inline constexpr std::uint64_t kMostBytesOfAFile = std::uint64_t{2} << 30;

Bytes ReadWholeFile(const std::filesystem::path& path);
// What the file begins with: `size` bytes, fewer when it is shorter. No more than that is read.
Bytes ReadBeginning(const std::filesystem::path& path, std::size_t size);
// Its size, for who is going to read all of it; FileError when it is larger than kMostBytesOfAFile.
std::size_t SizeToRead(const std::filesystem::path& path);
// Hands over the file in pieces of `size` bytes, the last one shorter. A piece is gone with the next one.
void ReadInPieces(const std::filesystem::path& path, std::size_t size,
                  const std::function<void(ByteView)>& take);

enum class OldTail {
  Dropped,
  Kept,  // bytes of a longer old file stay behind the new ones
};
void WriteFileSafely(const std::filesystem::path& path, ByteView bytes, OldTail tail = OldTail::Dropped);

// A file that is being made and will replace `target`. Its failures name the target; after a failure, and
// when it goes without having taken its place, nothing is left of it.
class Replacement {
 public:
  // Under a short name of its own beside the target.
  explicit Replacement(const std::filesystem::path& target);
  // Under that name, which must be free.
  Replacement(const std::filesystem::path& target, const std::filesystem::path& name);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void Write(ByteView bytes);
  // Protected like the target, where there is one, on the disk and closed.
  void Complete();
  // Over the target.
  void TakePlace();
  // It stays under its name: the target is no longer there, and it is what takes its place later.
  void Leave() { left_ = true; }

 private:
  void Make();
  void Must(std::error_code error);

  std::filesystem::path target_;
  std::filesystem::path name_;
  bool targetExists_ = false;
  bool left_ = false;
  FileHandle file_;
};

// What is wrong with replacing `target`, which links lead to no further; FileError when something is.
void DemandReplaceable(const std::filesystem::path& target);

// The steps of which safe writing is made, for the library and its three files. `path` is made anew.
void WriteAndFlush(const std::filesystem::path& path, ByteView bytes);
// Replaces `to` when it exists.
void RenameFile(const std::filesystem::path& from, const std::filesystem::path& to);
// Nothing happens when there is no such file.
void RemoveFile(const std::filesystem::path& path);
void FlushFolder(const std::filesystem::path& folder);
// FileError where that cannot be told: what is there must not pass for missing. A dangling link is something.
bool FileExists(const std::filesystem::path& path);

}  // namespace qdm
