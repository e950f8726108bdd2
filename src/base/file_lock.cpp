#include "base/file_lock.h"

#include "base/file_access.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace qdm {
namespace {

#ifdef _WIN32
std::string UserName() {
  const wchar_t* name = _wgetenv(L"USERNAME");
  return name == nullptr ? std::string() : PathToUtf8(name);
}
std::string MachineName() {
  const wchar_t* name = _wgetenv(L"COMPUTERNAME");
  return name == nullptr ? std::string() : PathToUtf8(name);
}
unsigned long ProcessNumber() { return GetCurrentProcessId(); }
#else
std::string UserName() {
  const char* name = std::getenv("USER");
  return name == nullptr ? "user " + std::to_string(geteuid()) : name;
}
std::string MachineName() {
  char name[256] = {};
  return gethostname(name, sizeof(name) - 1) == 0 ? name : "";
}
unsigned long ProcessNumber() { return static_cast<unsigned long>(getpid()); }
#endif

}  // namespace

std::optional<FileLock> FileLock::Try(const std::filesystem::path& path) {
  FileHandle file;
  bool held = false;
  if (const std::error_code error = file_system::Lock(path, file, held)) throw FileError(path, "lock", error);
  if (held) return std::nullopt;
  return FileLock(path, std::move(file));
}

FileLock::FileLock(std::filesystem::path path, FileHandle file)
    : path_(std::move(path)), file_(std::move(file)) {
  const std::string owner =
      UserName() + " on " + MachineName() + " (process " + std::to_string(ProcessNumber()) + ")\n";
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(owner.data());
  // A courtesy to whoever waits: the lock holds without it.
  static_cast<void>(file_system::Write(path_, file_, {bytes, owner.size()}));
}

FileLock::~FileLock() {
  if (!file_.IsOpen()) return;
  // First the name, then the lock: who gets the lock on a file without its name tries again.
  try {
    static_cast<void>(file_system::Remove(path_));
  } catch (...) {  // a test's end of the program: the system alone frees the lock then
  }
}

std::string FileLock::OwnerOf(const std::filesystem::path& path) {
  constexpr std::size_t kLongest = 400;
  try {
    const Bytes text = ReadBeginning(path, kLongest);
    std::string owner(text.begin(), text.end());
    return owner.substr(0, owner.find('\n'));
  } catch (const FileError&) {
    return {};
  }
}

}  // namespace qdm
