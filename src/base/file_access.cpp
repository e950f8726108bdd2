#include "base/file_access.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace qdm {
namespace fs = std::filesystem;
namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

std::string ReasonOf(int error) { return std::generic_category().message(error); }

// Windows has its own words for what every system can refuse, in the code page of the country.
std::string ReasonOf(const std::error_code& error) { return error.default_error_condition().message(); }

File OpenFile(const fs::path& path, const char* mode) {
#ifdef _WIN32
  const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
  return File(_wfopen(path.c_str(), wideMode.c_str()));
#else
  return File(std::fopen(path.c_str(), mode));
#endif
}

bool FlushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
#ifdef _WIN32
  return _commit(_fileno(file)) == 0;
#else
  // A device, a pipe and some network file systems have nothing to flush and say so.
  return fsync(fileno(file)) == 0 || errno == EINVAL || errno == ENOTSUP;
#endif
}

// Where a link points, so that saving through a link replaces the file and not the link.
fs::path TargetOf(const fs::path& path) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(path, error);
  return error || !fs::is_symlink(path, error) ? path : target;
}

bool IsWriteProtected(const fs::path& path) {
  constexpr fs::perms kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  std::error_code error;
  const fs::perms permissions = fs::status(path, error).permissions();
  return !error && permissions != fs::perms::unknown && (permissions & kAnyWrite) == fs::perms::none;
}

}  // namespace

FileError::FileError(const fs::path& path, std::string_view operation, std::string_view reason)
    : std::runtime_error("cannot " + std::string(operation) + " " + PathToUtf8(path) + ": " +
                         std::string(reason)),
      path_(path),
      operation_(operation),
      reason_(reason) {}

Message SorryAbout(const FileError& error) {
  std::string text = error.what();
  text.front() = 'C';
  return {text + ".", "Sorry", MessageIcon::Exclamation};
}

std::string PathToUtf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

fs::path PathFromUtf8(std::string_view path) { return fs::path(std::u8string(path.begin(), path.end())); }

void ReadInPieces(const fs::path& path, std::size_t size, const std::function<void(ByteView)>& take) {
  std::error_code error;
  if (fs::is_directory(path, error)) throw FileError(path, "read", ReasonOf(EISDIR));
  const File file = OpenFile(path, "rb");
  if (!file) throw FileError(path, "read", ReasonOf(errno));
  Bytes piece(size);
  for (std::size_t got = size; got == size;) {
    got = std::fread(piece.data(), 1, size, file.get());
    if (std::ferror(file.get()) != 0) throw FileError(path, "read", ReasonOf(errno));
    if (got != 0) take(ByteView(piece).first(got));
  }
}

Bytes ReadWholeFile(const fs::path& path) {
  constexpr std::size_t kPiece = 65536;
  Bytes bytes;
  ReadInPieces(path, kPiece,
               [&bytes](ByteView piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
  return bytes;
}

void WriteAndFlush(const fs::path& path, ByteView bytes) {
  File file = OpenFile(path, "wb");
  if (!file) throw FileError(path, "write", ReasonOf(errno));
  const bool written =
      (bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size()) &&
      FlushToDisk(file.get());
  const int writeError = errno;
  const bool closed = std::fclose(file.release()) == 0;
  if (!written) throw FileError(path, "write", ReasonOf(writeError));
  if (!closed) throw FileError(path, "write", ReasonOf(errno));
}

void RenameFile(const fs::path& from, const fs::path& to) {
#ifdef _WIN32
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
    const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
    throw FileError(to, "replace", ReasonOf(error));
  }
#else
  std::error_code error;
  fs::rename(from, to, error);
  if (error) throw FileError(to, "replace", ReasonOf(error));
#endif
}

void RemoveFile(const fs::path& path) {
  std::error_code error;
  fs::remove(path, error);
  if (!error) return;
  // Where nothing may be deleted, some systems refuse before they look whether there is anything.
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(path, ignored))) throw FileError(path, "delete", ReasonOf(error));
}

void FlushFolder(const fs::path& folder) {
#ifndef _WIN32
  const fs::path opened = folder.empty() ? fs::path(".") : folder;
  const int descriptor = open(opened.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  static_cast<void>(fsync(descriptor));
  close(descriptor);
#else
  static_cast<void>(folder);  // renames are written through there
#endif
}

void WriteFileSafely(const fs::path& path, ByteView bytes, OldTail tail) {
  const fs::path target = TargetOf(path);
  std::error_code error;
  const bool exists = fs::exists(target, error);
  if (exists && fs::is_directory(target, error)) throw FileError(path, "write", ReasonOf(EISDIR));
  // Renaming over a file needs no right to write to it: a write-protected file has to be refused here.
  if (exists && IsWriteProtected(target)) throw FileError(path, "write", ReasonOf(EACCES));

  // A device or a pipe is written to, not replaced by a file.
  if (exists && !fs::is_regular_file(target, error)) return WriteAndFlush(target, bytes);

  Bytes withTail;
  if (exists && tail == OldTail::Kept) {
    withTail = ReadWholeFile(target);
    if (withTail.size() > bytes.size()) {
      std::copy(bytes.begin(), bytes.end(), withTail.begin());
      bytes = withTail;
    }
  }

  fs::path beside = target;
  beside += ".new";
  try {
    WriteAndFlush(beside, bytes);
    if (exists) fs::permissions(beside, fs::status(target).permissions(), error);
    RenameFile(beside, target);
  } catch (const FileError& failure) {
    fs::remove(beside, error);
    throw FileError(path, "write", failure.Reason());
  }
  FlushFolder(target.parent_path());
}

}  // namespace qdm
