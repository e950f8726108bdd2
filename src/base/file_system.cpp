#include "base/file_system.h"

#include "base/native_files.h"

#include <cerrno>
#include <cstddef>
#include <utility>

namespace qdm {
namespace {

thread_local FileStepHook* theHook = nullptr;

// A call that a signal interrupted is made again.
template <class Call>
std::error_code Do(FileStep step, const std::filesystem::path& path, const Call& call) {
  for (;;) {
    const int injected = theHook != nullptr ? (*theHook)(step, path) : 0;
    const std::error_code error = injected != 0 ? std::error_code(injected, std::generic_category()) : call();
    if (error != std::errc::interrupted) return error;
  }
}

}  // namespace

FileStepHook FileStepHookScope::Current() { return theHook != nullptr ? *theHook : FileStepHook(); }

FileStepHookScope::FileStepHookScope(FileStepHook hook) : hook_(std::move(hook)), outer_(theHook) {
  if (hook_) theHook = &hook_;
}

FileStepHookScope::~FileStepHookScope() { theHook = outer_; }

FileHandle::~FileHandle() {
  if (IsOpen()) native_files::Close(Release());
}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
  if (IsOpen()) native_files::Close(Release());
  native_ = other.Release();
  return *this;
}

namespace file_system {

std::error_code Look(const Path& path, FileFacts& facts) {
  return Do(FileStep::Look, path, [&] { return native_files::Look(path, facts); });
}

std::error_code OpenForReading(const Path& path, FileHandle& file, FileFacts& facts) {
  return Do(FileStep::Open, path, [&] { return native_files::OpenForReading(path, file, facts); });
}

std::error_code Read(const Path& path, const FileHandle& file, std::span<std::uint8_t> into,
                     std::size_t& got) {
  return Do(FileStep::Read, path, [&] { return native_files::Read(file.Get(), into, got); });
}

std::error_code Create(const Path& path, Privacy privacy, FileHandle& file) {
  return Do(FileStep::Create, path, [&] { return native_files::Create(path, privacy, file); });
}

std::error_code Write(const Path& path, const FileHandle& file, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    std::size_t written = 0;
    const std::error_code error =
        Do(FileStep::Write, path, [&] { return native_files::Write(file.Get(), bytes, written); });
    if (error) return error;
    bytes = bytes.subspan(written);
  }
  return {};
}

std::error_code Flush(const Path& path, const FileHandle& file) {
  return Do(FileStep::Flush, path, [&] { return native_files::Flush(file.Get()); });
}

std::error_code Protect(const Path& from, const Path& path, const FileHandle& file) {
  return Do(FileStep::Protect, path, [&] { return native_files::Protect(from, path, file.Get()); });
}

// Not repeated when interrupted: the file is closed all the same.
std::error_code Close(const Path& path, FileHandle& file) {
  if (theHook != nullptr) {
    if (const int injected = (*theHook)(FileStep::Close, path)) {
      native_files::Close(file.Release());
      if (injected != EINTR) return {injected, std::generic_category()};
      return {};
    }
  }
  return native_files::Close(file.Release());
}

std::error_code Rename(const Path& from, const Path& to) {
  return Do(FileStep::Rename, to, [&] { return native_files::Rename(from, to); });
}

std::error_code Remove(const Path& path) {
  return Do(FileStep::Remove, path, [&] { return native_files::Remove(path); });
}

std::error_code Link(const Path& existing, const Path& name) {
  return Do(FileStep::Link, name, [&] { return native_files::Link(existing, name); });
}

std::error_code FlushFolder(const Path& folder) {
  return Do(FileStep::FlushFolder, folder, [&] { return native_files::FlushFolder(folder); });
}

std::error_code Lock(const Path& path, FileHandle& file, bool& held) {
  return Do(FileStep::Lock, path, [&] { return native_files::Lock(path, file, held); });
}

bool IsAbandoned(const Path& path) { return native_files::IsAbandoned(path); }

std::string OwnerOf(const Path& path) { return native_files::OwnerOf(path); }

Path SpellingOf(const Path& path) { return native_files::SpellingOf(path); }

Path TargetOf(const Path& path) {
  constexpr int kMostLinks = 40;
  Path target = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const Path next = std::filesystem::read_symlink(target, error);
    if (error) return target;
    target = next.is_absolute() ? next : target.parent_path() / next;
  }
  return path;
}

}  // namespace file_system

}  // namespace qdm
