// Files read whole and written so that a failure, a full disk or a power cut leaves the old file or the new
// one, never half of one: the bytes go to a file beside the target, are flushed to the disk and renamed over
// it.
#pragma once

#include "base/message.h"
#include "base/record_codec.h"

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

namespace qdm {

// Thrown by everything here. `what()` is "cannot WHAT PATH: REASON", UTF-8.
class FileError : public std::runtime_error {
 public:
  FileError(const std::filesystem::path& path, std::string_view operation, std::string_view reason);

  const std::filesystem::path& Path() const { return path_; }
  const std::string& Operation() const { return operation_; }  // "read", "write", ...
  // The system's own words, or ours ("shorter than one record").
  const std::string& Reason() const { return reason_; }

 private:
  std::filesystem::path path_;
  std::string operation_;
  std::string reason_;
};

// What the user is told: file and reason, titled "Sorry".
Message SorryAbout(const FileError& error);

std::string PathToUtf8(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(std::string_view path);

Bytes ReadWholeFile(const std::filesystem::path& path);
// Hands over the file in pieces of `size` bytes, the last one shorter. A piece is gone with the next one.
void ReadInPieces(const std::filesystem::path& path, std::size_t size,
                  const std::function<void(ByteView)>& take);

enum class OldTail {
  Dropped,
  Kept,  // bytes of a longer old file stay behind the new ones
};
void WriteFileSafely(const std::filesystem::path& path, ByteView bytes, OldTail tail = OldTail::Dropped);

// The steps of which safe writing is made, for the library and its three files.
void WriteAndFlush(const std::filesystem::path& path, ByteView bytes);
// Replaces `to` when it exists.
void RenameFile(const std::filesystem::path& from, const std::filesystem::path& to);
// Nothing happens when there is no such file.
void RemoveFile(const std::filesystem::path& path);
// Makes renames in the folder survive a power cut, where the system can.
void FlushFolder(const std::filesystem::path& folder);

}  // namespace qdm
