// Two libraries that grew out of one: what either side added, deleted or changed is taken, by manufacturer
// and model without regard to case, every bit of a definition counting. What both sides changed differently
// is a conflict: ours stays, and both are handed over.
#pragma once

#include "projectors/projector_library.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

struct LibraryConflict {
  // What either side made of it; empty where it was deleted. Never empty both.
  ProjectorLibrary::Group Ours;
  ProjectorLibrary::Group Theirs;
  ProjectorLibrary::Group Base{};  // what both began with

  const ProjectorDefinition& Named() const { return Ours.empty() ? Theirs.front() : Ours.front(); }
};

struct LibraryMerge {
  std::vector<ProjectorDefinition> Elements;  // ours in their order, additions of theirs behind them
  std::vector<LibraryConflict> Conflicts;
  std::size_t Taken = 0;  // names that became what theirs has
  // What theirs has of the names in which the result differs from it.
  ProjectorLibrary::Originals StillOurs;
};

// `changed`: what the beginning had of each name that ours changed; ours has all others from there.
LibraryMerge MergeLibraries(const ProjectorLibrary::Originals& changed,
                            const std::vector<ProjectorDefinition>& ours,
                            const std::vector<ProjectorDefinition>& theirs);
// With the beginning at hand.
LibraryMerge MergeLibraries(const std::vector<ProjectorDefinition>& base,
                            const std::vector<ProjectorDefinition>& ours,
                            const std::vector<ProjectorDefinition>& theirs);

}  // namespace qdm
