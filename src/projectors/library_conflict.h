// What becomes of a library whose save was held up by conflicts: each is decided for theirs, or for ours by
// doing nothing, or all stay open until the next save.
#pragma once

#include "projectors/library_merge.h"

#include <vector>

namespace qdm {

// The library's group becomes what the file has of it.
void TakeTheirs(ProjectorLibrary& library, const LibraryConflict& conflict);

// Nothing was decided: the next save reads the file again and finds the conflicts again.
void LeaveOpen(ProjectorLibrary& library, const std::vector<LibraryConflict>& conflicts);

}  // namespace qdm
