#include "projectors/library_paths.h"

#include "base/file_system.h"

namespace qdm {
namespace {

std::filesystem::path WithEnding(std::filesystem::path path, const char* ending) {
  return path.replace_extension(ending);
}

}  // namespace

ProjectorFiles::ProjectorFiles(const std::filesystem::path& folder)
    : Library(file_system::TargetOf(folder / "Projectors.DEF")),
      Backup(WithEnding(Library, ".BAK")),
      Temporary(WithEnding(Library, ".TMP")),
      Lock(WithEnding(Library, ".LCK")) {}

}  // namespace qdm
