#include "projectors/library_step.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace qdm {
namespace {

using State = std::optional<ProjectorDefinition>;

void Turn(ProjectorLibrary& library, std::size_t index, const State& from, const State& to) {
  if (from && to) {
    library.Replace(index, *to);
  } else if (to) {
    library.Insert(index, *to);
  } else {
    library.Remove(index);
  }
}

const ProjectorDefinition* LastOf(const std::vector<LibraryChange>& changes, State LibraryChange::*state) {
  const auto last = std::find_if(changes.rbegin(), changes.rend(), [state](const LibraryChange& change) {
    return (change.*state).has_value();
  });
  return last == changes.rend() ? nullptr : &*((*last).*state);
}

}  // namespace

void LibraryStep::Undo(ProjectorLibrary& library) const {
  for (auto change = changes_.rbegin(); change != changes_.rend(); ++change)
    Turn(library, change->Index, change->After, change->Before);
}

void LibraryStep::Redo(ProjectorLibrary& library) const {
  for (const LibraryChange& change : changes_) Turn(library, change.Index, change.Before, change.After);
}

const ProjectorDefinition* LibraryStep::LastBefore() const {
  return LastOf(changes_, &LibraryChange::Before);
}
const ProjectorDefinition* LibraryStep::LastAfter() const { return LastOf(changes_, &LibraryChange::After); }

}  // namespace qdm
