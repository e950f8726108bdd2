// An advisory lock on a file beside what it guards, held by one program at a time and gone with it: a killed
// owner's lock is free at once. The file says who holds it and is deleted with the lock. On a file system
// that knows no locks everybody gets it.
#pragma once

#include "base/file_system.h"

#include <filesystem>
#include <optional>
#include <string>

namespace qdm {

class FileLock {
 public:
  // Nothing when somebody else holds it. FileError when there can be no such file.
  static std::optional<FileLock> Try(const std::filesystem::path& path);
  // Who holds it: "anna on lab3 (process 4711)"; empty when that cannot be read.
  static std::string OwnerOf(const std::filesystem::path& path);

  ~FileLock();
  FileLock(FileLock&& other) noexcept = default;
  FileLock& operator=(FileLock&&) = delete;

 private:
  FileLock(std::filesystem::path path, FileHandle file);

  std::filesystem::path path_;
  FileHandle file_;
};

}  // namespace qdm
