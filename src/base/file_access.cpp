#include "base/file_access.h"

#include "base/words.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>
#include <system_error>

namespace qdm {
namespace fs = std::filesystem;
namespace {

// Windows has its own words for what every system can refuse, in the code page of the country.
std::string ReasonOf(const std::error_code& error) { return error.default_error_condition().message(); }

void Must(std::error_code error, const fs::path& path, std::string_view operation) {
  if (error) throw FileError(path, operation, error);
}

[[noreturn]] void RefuseKind(const fs::path& path, std::string_view operation, PathKind kind) {
  if (kind == PathKind::Directory)
    throw FileError(path, operation, std::make_error_code(std::errc::is_a_directory));
  throw FileError(path, operation, Say("it is no file but a device or a pipe"));
}

constexpr struct {
  std::string_view Operation;
  const char* Sentence;
} kSentences[] = {
    {"read", Marked("cannot read %1: %2")},
    {"write", Marked("cannot write %1: %2")},
    {"replace", Marked("cannot replace %1: %2")},
    {"delete", Marked("cannot delete %1: %2")},
    {"lock", Marked("cannot lock %1: %2")},
    {"create", Marked("cannot create %1: %2")},
    {"change", Marked("cannot change %1: %2")},
    {"make the folder", Marked("cannot make the folder %1: %2")},
    {"find", Marked("cannot find %1: %2")},
    {"make", Marked("cannot make %1: %2")},
};

std::string SentenceFor(std::string_view operation) {
  for (const auto& entry : kSentences) {
    if (entry.Operation == operation) return entry.Sentence;
  }
  return "cannot " + std::string(operation) + " %1: %2";
}

FileHandle OpenFile(const fs::path& path, FileFacts& facts) {
  FileHandle file;
  Must(file_system::OpenForReading(path, file, facts), path, "read");
  if (facts.Kind != PathKind::Regular) RefuseKind(path, "read", facts.Kind);
  return file;
}

void DemandBearable(const fs::path& path, const FileFacts& facts) {
  if (facts.Size > kMostBytesOfAFile) throw FileError(path, "read", Say("it is larger than 2 GB"));
}

// Until `into` is full or the file ends; how much came.
std::size_t Fill(const fs::path& path, const FileHandle& file, std::span<std::uint8_t> into) {
  std::size_t filled = 0;
  for (;;) {
    std::size_t got = 0;
    Must(file_system::Read(path, file, into.subspan(filled), got), path, "read");
    filled += got;
    if (got == 0 || filled == into.size()) return filled;
  }
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// Short whatever the file's own name is, and the same for each try, so that what a killed saver left is found
// again.
fs::path NameBeside(const fs::path& target, int number) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const char character : PathToUtf8(target.filename())) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 16777619U;
  }
  std::array<char, 24> name{};
  std::snprintf(name.data(), name.size(), ".qdm-%08x-%d", hash, number);
  return target.parent_path() / name.data();
}

// Behind the new bytes, in pieces: the old file may be larger than the memory.
void CopyTail(const fs::path& from, std::uint64_t behind, Replacement& to) {
  std::uint64_t at = 0;
  constexpr std::size_t kPiece = 65536;
  ReadInPieces(from, kPiece, [&](ByteView piece) {
    const std::uint64_t end = at + piece.size();
    if (end > behind) to.Write(piece.subspan(at >= behind ? 0 : static_cast<std::size_t>(behind - at)));
    at = end;
  });
}

}  // namespace

FileError::FileError(const fs::path& path, std::string_view operation, std::string_view reason,
                     std::error_code code)
    : std::runtime_error(Say(SentenceFor(operation), {PathToUtf8(path), std::string(reason)})),
      path_(path),
      operation_(operation),
      reason_(reason),
      code_(code) {}

FileError::FileError(const fs::path& path, std::string_view operation, std::error_code code)
    : FileError(path, operation, ReasonOf(code), code) {}

Message SorryAbout(const FileError& error) {
  std::string text = error.what();
  if (text.front() >= 'a' && text.front() <= 'z') text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return {text + ".", Say("Sorry"), MessageIcon::Exclamation};
}

bool MayPass(std::error_code code) {
  constexpr std::errc kPassing[] = {std::errc::interrupted,
                                    std::errc::resource_unavailable_try_again,
                                    std::errc::too_many_files_open,
                                    std::errc::too_many_files_open_in_system,
                                    std::errc::device_or_resource_busy,
                                    std::errc::text_file_busy,
                                    std::errc::io_error,
                                    std::errc::timed_out,
                                    std::errc::host_unreachable,
                                    std::errc::network_down,
                                    std::errc::network_unreachable,
                                    std::errc::not_enough_memory};
  if (std::any_of(std::begin(kPassing), std::end(kPassing),
                  [&](std::errc passing) { return code == passing; })) {
    return true;
  }
#ifdef _WIN32
  constexpr int kWindowsPassing[] = {32, 33, 53,
                                     59, 64, 121};  // sharing, lock, network path, network, name, semaphore
  return code.category() == std::system_category() &&
         std::find(std::begin(kWindowsPassing), std::end(kWindowsPassing), code.value()) !=
             std::end(kWindowsPassing);
#else
  return code.value() == ESTALE;
#endif
}

std::string PathToUtf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

fs::path PathFromUtf8(std::string_view path) { return fs::path(std::u8string(path.begin(), path.end())); }

void ReadInPieces(const fs::path& path, std::size_t size, const std::function<void(ByteView)>& take) {
  FileFacts facts;
  const FileHandle file = OpenFile(path, facts);
  Bytes piece(size);
  for (std::size_t got = size; got == size;) {
    got = Fill(path, file, piece);
    if (got != 0) take(ByteView(piece).first(got));
  }
}

Bytes ReadBeginning(const fs::path& path, std::size_t size) {
  FileFacts facts;
  const FileHandle file = OpenFile(path, facts);
  Bytes bytes(size);
  bytes.resize(Fill(path, file, bytes));
  return bytes;
}

std::size_t SizeToRead(const fs::path& path) {
  FileFacts facts;
  Must(file_system::Look(path, facts), path, "read");
  DemandBearable(path, facts);
  return static_cast<std::size_t>(facts.Size);
}

Bytes ReadWholeFile(const fs::path& path) {
  FileFacts facts;
  const FileHandle file = OpenFile(path, facts);
  DemandBearable(path, facts);
  Bytes bytes;
  // One byte more than the file had: the end is seen, and a file that grows is followed.
  for (std::size_t room = static_cast<std::size_t>(facts.Size) + 1;; room = 65536) {
    const std::size_t filled = bytes.size();
    bytes.resize(filled + room);
    const std::size_t got = Fill(path, file, std::span(bytes).subspan(filled));
    bytes.resize(filled + got);
    if (got < room) return bytes;
  }
}

void DemandReplaceable(const fs::path& target) {
  FileFacts facts;
  Must(file_system::Look(target, facts), target, "write");
  if (facts.Kind == PathKind::Absent) return;
  if (facts.Kind != PathKind::Regular) RefuseKind(target, "write", facts.Kind);
  // Renaming over a file needs no right to write to it: a write-protected file has to be refused here.
  if (facts.WriteProtected) {
    const std::error_code denied = std::make_error_code(std::errc::permission_denied);
    throw FileError(target, "write", Say("%1: it is write-protected", {ReasonOf(denied)}), denied);
  }
  if (facts.Names > 1) {
    throw FileError(target, "write",
                    Say("it has a second name (a hard link), under which the old contents would stay"));
  }
}

Replacement::Replacement(const fs::path& target) : target_(target) {
  constexpr int kMostSavers = 1000;
  for (int number = 1; number <= kMostSavers; ++number) {
    name_ = NameBeside(target_, number);
    if (file_system::IsAbandoned(name_)) static_cast<void>(file_system::Remove(name_));
    try {
      Make();
      return;
    } catch (const FileError& error) {
      if (error.Code() != std::errc::file_exists || number == kMostSavers) throw;
    }
  }
}

Replacement::Replacement(const fs::path& target, const fs::path& name) : target_(target), name_(name) {
  Make();
}

Replacement::~Replacement() {
  if (left_) return;
  file_ = FileHandle();
  try {
    static_cast<void>(file_system::Remove(name_));
  } catch (...) {  // a test's end of the program: nothing is tidied then
  }
}

void Replacement::Make() {
  left_ = true;  // nothing to tidy yet
  FileFacts facts;
  Must(file_system::Look(target_, facts));
  targetExists_ = facts.Kind != PathKind::Absent;
  const auto privacy = targetExists_ ? file_system::Privacy::OwnerOnly : file_system::Privacy::AsUsual;
  Must(file_system::Create(name_, privacy, file_));
  left_ = false;
}

void Replacement::Must(std::error_code error) { qdm::Must(error, target_, "write"); }

void Replacement::Write(ByteView bytes) { Must(file_system::Write(name_, file_, bytes)); }

void Replacement::Complete() {
  if (targetExists_) Must(file_system::Protect(target_, name_, file_));
  Must(file_system::Flush(name_, file_));
  Must(file_system::Close(name_, file_));
}

void Replacement::TakePlace() {
  Must(file_system::Rename(name_, target_));
  left_ = true;
}

void WriteAndFlush(const fs::path& path, ByteView bytes) {
  RemoveFile(path);
  Replacement file(path, path);
  file.Write(bytes);
  file.Complete();
  file.Leave();
}

void RenameFile(const fs::path& from, const fs::path& to) {
  Must(file_system::Rename(from, to), to, "replace");
}

void RemoveFile(const fs::path& path) { Must(file_system::Remove(path), path, "delete"); }

void FlushFolder(const fs::path& folder) { Must(file_system::FlushFolder(folder), folder, "write"); }

bool FileExists(const fs::path& path) {
  FileFacts facts;
  Must(file_system::Look(path, facts), path, "read");
  std::error_code ignored;
  return facts.Kind != PathKind::Absent || fs::is_symlink(path, ignored);
}

void WriteFileSafely(const fs::path& path, ByteView bytes, OldTail tail) {
  const fs::path target = file_system::TargetOf(path);
  try {
    DemandReplaceable(target);
    FileFacts old;
    Must(file_system::Look(target, old), target, "write");
    Replacement replacement(target);
    replacement.Write(bytes);
    if (tail == OldTail::Kept && old.Size > bytes.size()) CopyTail(target, bytes.size(), replacement);
    replacement.Complete();
    replacement.TakePlace();
    FlushFolder(FolderOf(target));
  } catch (const FileError& failure) {
    throw FileError(path, "write", failure.Reason(), failure.Code());
  }
}

}  // namespace qdm
