// The library's file and those beside it. Where Projectors.DEF is a symbolic link, they are those of its
// target, so that everybody who shares the target meets there.
#pragma once

#include <filesystem>

namespace qdm {

struct ProjectorFiles {
  explicit ProjectorFiles(const std::filesystem::path& folder);

  std::filesystem::path Library;    // Projectors.DEF
  std::filesystem::path Backup;     // Projectors.BAK, the library before the last save
  std::filesystem::path Temporary;  // Projectors.TMP, being written under the lock
  std::filesystem::path Lock;       // Projectors.LCK, there while somebody saves
};

}  // namespace qdm
