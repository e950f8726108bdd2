#include "projectors/library_conflict.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace qdm {

void TakeTheirs(ProjectorLibrary& library, const LibraryConflict& conflict) {
  const ProjectorDefinition& named = conflict.Named();
  std::size_t place = library.FindProjector(named).value_or(library.Size());
  while (const std::optional<std::size_t> found = library.FindProjector(named)) library.Remove(*found);
  for (const ProjectorDefinition& theirs : conflict.Theirs) library.Insert(place++, theirs);
}

// A library that began with what both sides began with, and with no file that the next save could take for
// its own.
void LeaveOpen(ProjectorLibrary& library, const std::vector<LibraryConflict>& conflicts) {
  ProjectorLibrary::Originals originals = library.ChangedGroups();
  for (const LibraryConflict& conflict : conflicts) originals[NameKey(conflict.Named())] = conflict.Base;
  library.Become(library.Elements(), std::move(originals), {});
}

}  // namespace qdm
