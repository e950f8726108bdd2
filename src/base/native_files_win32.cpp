#include "base/native_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <windows.h>
// After windows.h, which it needs.
#include <aclapi.h>

namespace qdm::native_files {
namespace {

std::error_code Last() { return {static_cast<int>(GetLastError()), std::system_category()}; }
std::error_code Told(BOOL done) { return done != 0 ? std::error_code() : Last(); }

constexpr DWORD kSharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

// Windows counts 100 ns from 1601, everybody else from 1970.
std::int64_t Nanoseconds(const FILETIME& time) {
  constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;
  return (static_cast<std::int64_t>(Joined(time.dwHighDateTime, time.dwLowDateTime)) - kUnixEpoch) * 100;
}

std::error_code FactsOf(HANDLE file, FileFacts& facts) {
  facts = {};
  if (GetFileType(file) != FILE_TYPE_DISK) {
    facts.Kind = PathKind::Other;
    return {};
  }
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(file, &information) == 0) return Last();
  const bool folder = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  facts.Kind = folder ? PathKind::Directory : PathKind::Regular;
  facts.Size = Joined(information.nFileSizeHigh, information.nFileSizeLow);
  facts.Modified = Nanoseconds(information.ftLastWriteTime);
  facts.Device = information.dwVolumeSerialNumber;
  facts.Number = Joined(information.nFileIndexHigh, information.nFileIndexLow);
  facts.Names = information.nNumberOfLinks;
  facts.WriteProtected = !folder && (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
  return {};
}

bool SaysAbsent(const std::error_code& error) {
  return error.value() == ERROR_FILE_NOT_FOUND || error.value() == ERROR_PATH_NOT_FOUND;
}

// A file that goes with its last reader is refused as if there were no right to it; the status behind that
// tells.
constexpr auto kDeletePending = static_cast<LONG>(0xC0000056);
const auto g_lastStatus = reinterpret_cast<LONG(NTAPI*)()>(
    reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetLastNtStatus")));

// Readers, indexers and virus scanners are in the way of a new name for a moment.
template <class Call>
std::error_code Patiently(const Call& call) {
  constexpr int kMostTries = 25;
  constexpr DWORD kBetweenTries = 20;  // ms
  for (int tries = 1;; ++tries) {
    const std::error_code error = Told(call());
    const bool inUse = error.value() == ERROR_ACCESS_DENIED || error.value() == ERROR_SHARING_VIOLATION;
    if (!inUse || tries == kMostTries) return error;
    Sleep(kBetweenTries);
  }
}

FileHandle Opened(const Path& path, DWORD access, DWORD shared, DWORD how, DWORD flags) {
  return FileHandle(CreateFileW(path.c_str(), access, shared, nullptr, how, flags, nullptr));
}

}  // namespace

std::error_code Look(const Path& path, FileFacts& facts) {
  const FileHandle opened =
      Opened(path, FILE_READ_ATTRIBUTES, kSharedByAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (opened.IsOpen()) return FactsOf(opened.Get(), facts);
  const std::error_code error = Last();
  facts = {};
  return error.value() == ERROR_FILE_NOT_FOUND ? std::error_code() : error;
}

std::error_code OpenForReading(const Path& path, FileHandle& file, FileFacts& facts) {
  FileHandle opened = Opened(path, GENERIC_READ, kSharedByAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!opened.IsOpen()) return Last();
  if (const std::error_code error = FactsOf(opened.Get(), facts)) return error;
  file = std::move(opened);
  return {};
}

std::error_code Read(Native file, std::span<std::uint8_t> into, std::size_t& got) {
  DWORD count = 0;
  const auto room = static_cast<DWORD>(std::min<std::size_t>(into.size(), std::numeric_limits<int>::max()));
  if (ReadFile(file, into.data(), room, &count, nullptr) == 0) return Last();
  got = count;
  return {};
}

// Nobody else opens it while it is being written; who may read it is inherited from the folder until Protect.
std::error_code Create(const Path& path, file_system::Privacy, FileHandle& file) {
  FileHandle made = Opened(path, GENERIC_WRITE | WRITE_DAC, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
  if (!made.IsOpen()) return Last();
  file = std::move(made);
  return {};
}

std::error_code Write(Native file, std::span<const std::uint8_t> bytes, std::size_t& written) {
  DWORD count = 0;
  const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::numeric_limits<int>::max()));
  if (WriteFile(file, bytes.data(), size, &count, nullptr) == 0) return Last();
  written = count;
  return {};
}

std::error_code Flush(Native file) { return Told(FlushFileBuffers(file)); }

std::error_code Protect(const Path& from, const Path&, Native file) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const DWORD read = GetNamedSecurityInfoW(from.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                           nullptr, &list, nullptr, &descriptor);
  if (read != ERROR_SUCCESS) return {static_cast<int>(read), std::system_category()};
  const DWORD written =
      SetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
  LocalFree(descriptor);
  // A file system without access control lists has nothing to keep.
  if (written == ERROR_NOT_SUPPORTED || written == ERROR_INVALID_FUNCTION) return {};
  return {static_cast<int>(written), std::system_category()};
}

std::error_code Close(Native file) { return Told(CloseHandle(file)); }

std::error_code Rename(const Path& from, const Path& to) {
  return Patiently([&] {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  });
}

std::error_code Remove(const Path& path) {
  const std::error_code error = Patiently([&] { return DeleteFileW(path.c_str()); });
  return SaysAbsent(error) ? std::error_code() : error;
}

std::error_code Link(const Path& existing, const Path& name) {
  return Told(CreateHardLinkW(name.c_str(), existing.c_str(), nullptr));
}

// Renames are written through.
std::error_code FlushFolder(const Path&) { return {}; }

std::error_code Lock(const Path& path, FileHandle& file, bool& held) {
  // Others may read who holds it, and nobody else opens it for writing. It goes with its owner.
  FileHandle opened = Opened(path, GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                             OPEN_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE);
  held = false;
  if (opened.IsOpen()) {
    file = std::move(opened);
    return {};
  }
  const LONG status = g_lastStatus == nullptr ? 0 : g_lastStatus();
  const std::error_code error = Last();
  held = status == kDeletePending || error.value() == ERROR_SHARING_VIOLATION ||
         error.value() == ERROR_DELETE_PENDING;
  return held ? std::error_code() : error;
}

bool IsAbandoned(const Path& path) {
  const FileHandle opened =
      Opened(path, GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
  FileFacts facts;
  if (!opened.IsOpen() || FactsOf(opened.Get(), facts) || facts.Kind != PathKind::Regular) return false;
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  return Nanoseconds(now) - facts.Modified >= std::int64_t{kAbandonedAfterSeconds} * 1'000'000'000;
}

std::string OwnerOf(const Path& path) {
  PSID owner = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                            nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
    return {};
  }
  wchar_t name[256];
  wchar_t domain[256];
  DWORD nameRoom = 256;
  DWORD domainRoom = 256;
  SID_NAME_USE use{};
  std::string text;
  if (LookupAccountSidW(nullptr, owner, name, &nameRoom, domain, &domainRoom, &use) != 0) {
    const std::u8string utf8 = Path(name).u8string();
    text.assign(utf8.begin(), utf8.end());
  }
  LocalFree(descriptor);
  return text;
}

Path SpellingOf(const Path& path) {
  constexpr std::size_t kLongest = 32768;
  constexpr std::wstring_view kServer = L"\\\\?\\UNC\\";
  constexpr std::wstring_view kDrive = L"\\\\?\\";
  const FileHandle opened = Opened(path, 0, kSharedByAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!opened.IsOpen()) return path;
  std::wstring name(kLongest, L'\0');
  name.resize(GetFinalPathNameByHandleW(opened.Get(), name.data(), kLongest, FILE_NAME_NORMALIZED));
  if (name.starts_with(kServer)) return L"\\\\" + name.substr(kServer.size());
  return name.starts_with(kDrive) ? Path(name.substr(kDrive.size())) : path;
}

}  // namespace qdm::native_files
