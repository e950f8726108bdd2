// Which folder the library lives in: the one that the user named (`--data DIR`, else the variable QDM_DATA);
// else the program's own, where it can be written; else the user's application-data folder, which begins as a
// copy of the program folder's library. Finding the folder changes nothing on the disk, preparing it does.
#pragma once

#include <filesystem>
#include <optional>

namespace qdm {

struct DataFolder {
  std::filesystem::path Folder;
  // Where the library is to be copied from before the first use of `Folder`; empty when it is in use already.
  std::filesystem::path SeedFolder;

  // Where the library can be read now, whether or not the folder has been prepared.
  const std::filesystem::path& ReadingFolder() const { return SeedFolder.empty() ? Folder : SeedFolder; }
};

// QDM_DATA; nothing when it is not set or empty.
std::optional<std::filesystem::path> DataFolderVariable();
// The user's application-data folder of this program. Empty when the system tells none.
std::filesystem::path UserDataFolder();

// Whether this user may add files to the folder. Writes nothing.
bool CanWriteTo(const std::filesystem::path& folder);

// Whether the library belongs into that folder of the program: where this user may write, but not as root
// into what is installed for everybody.
bool MayKeepLibraryIn(const std::filesystem::path& programFolder);

DataFolder FindDataFolder(const std::optional<std::filesystem::path>& named,
                          const std::filesystem::path& programFolder, const std::filesystem::path& userFolder,
                          bool (*mayKeepIn)(const std::filesystem::path&) = MayKeepLibraryIn);

// Makes the folder and copies the library into it where that is due. FileError when either fails.
void PrepareDataFolder(const DataFolder& folder);

}  // namespace qdm
