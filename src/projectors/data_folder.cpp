#include "projectors/data_folder.h"

#include "base/file_access.h"
#include "projectors/library_paths.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace qdm {
namespace fs = std::filesystem;
namespace {

#ifdef _WIN32
using VariableName = const wchar_t*;
constexpr VariableName kDataVariable = L"QDM_DATA";
constexpr const char* kUserFolderName = "Brevan QDM Editor";
fs::path Variable(VariableName name) {
  const wchar_t* value = _wgetenv(name);
  return value == nullptr ? fs::path() : fs::path(value);
}
#else
using VariableName = const char*;
constexpr VariableName kDataVariable = "QDM_DATA";
constexpr const char* kUserFolderName = "qdm-editor";
fs::path Variable(VariableName name) {
  const char* value = std::getenv(name);
  return value == nullptr ? fs::path() : fs::path(value);
}
#endif

// A folder with a backup alone is in use too: its owner deleted the last definition.
bool IsInUse(const fs::path& folder) {
  const ProjectorFiles files(folder);
  std::error_code error;
  return fs::exists(files.Library, error) || fs::exists(files.Backup, error) ||
         fs::exists(files.Temporary, error);
}

}  // namespace

std::optional<fs::path> DataFolderVariable() {
  fs::path folder = Variable(kDataVariable);
  return folder.empty() ? std::nullopt : std::optional(std::move(folder));
}

fs::path UserDataFolder() {
#ifdef _WIN32
  const fs::path base = Variable(L"APPDATA");
#else
  fs::path base = Variable("XDG_DATA_HOME");
  // The desktop's rule: a relative path there counts as not set.
  if (!base.is_absolute()) {
    const fs::path home = Variable("HOME");
    base = home.empty() ? fs::path() : home / ".local" / "share";
  }
#endif
  return base.empty() ? base : base / kUserFolderName;
}

bool CanWriteTo(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) return false;
#ifdef _WIN32
  const HANDLE opened =
      CreateFileW(folder.c_str(), FILE_ADD_FILE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return false;
  CloseHandle(opened);
  return true;
#else
  return access(folder.c_str(), W_OK | X_OK) == 0;
#endif
}

bool MayKeepLibraryIn(const fs::path& programFolder) {
#ifndef _WIN32
  constexpr const char* kInstalled[] = {"/usr/", "/opt/"};
  const std::string folder = programFolder.string() + "/";
  const bool installed = std::any_of(std::begin(kInstalled), std::end(kInstalled),
                                     [&](const char* prefix) { return folder.starts_with(prefix); });
  if (geteuid() == 0 && (installed || std::getenv("SUDO_UID") != nullptr)) return false;
#endif
  return CanWriteTo(programFolder);
}

DataFolder FindDataFolder(const std::optional<fs::path>& named, const fs::path& programFolder,
                          const fs::path& userFolder, bool (*mayKeepIn)(const fs::path&)) {
  if (named) return {*named, {}};
  if (mayKeepIn(programFolder) || userFolder.empty()) return {programFolder, {}};
  std::error_code error;
  const bool seed = !IsInUse(userFolder) && fs::exists(ProjectorFiles(programFolder).Library, error);
  return {userFolder, seed ? programFolder : fs::path()};
}

void PrepareDataFolder(const DataFolder& folder) {
  std::error_code error;
  fs::create_directories(folder.Folder, error);
  if (error) throw FileError(folder.Folder, "create", error);
  if (folder.SeedFolder.empty()) return;
  WriteFileSafely(ProjectorFiles(folder.Folder).Library,
                  ReadWholeFile(ProjectorFiles(folder.SeedFolder).Library));
}

}  // namespace qdm
