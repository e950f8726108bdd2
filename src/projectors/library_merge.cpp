#include "projectors/library_merge.h"

#include <unordered_map>
#include <utility>

namespace qdm {
namespace {

using Definitions = std::vector<ProjectorDefinition>;
using Group = ProjectorLibrary::Group;
using Originals = ProjectorLibrary::Originals;

// The elements of each name, by place.
class Groups {
 public:
  explicit Groups(const Definitions& elements) : elements_(elements) {
    places_.reserve(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) places_[NameKey(elements[i])].push_back(i);
  }

  Group Of(const std::u16string& key) const {
    Group group;
    const auto found = places_.find(key);
    if (found == places_.end()) return group;
    for (const std::size_t place : found->second) group.push_back(elements_[place]);
    return group;
  }
  template <class Visit>
  void ForEachKey(const Visit& visit) const {
    for (const auto& entry : places_) visit(entry.first);
  }

 private:
  const Definitions& elements_;
  std::unordered_map<std::u16string, std::vector<std::size_t>> places_;
};

class Merger {
 public:
  Merger(const Originals& changed, const Definitions& ours, const Definitions& theirs)
      : changed_(changed), ours_(ours), theirs_(theirs), oursByName_(ours), theirsByName_(theirs) {}

  LibraryMerge Merge() {
    merge_.Elements.reserve(ours_.size() + theirs_.size());
    for (const ProjectorDefinition& element : ours_) {
      const std::u16string key = NameKey(element);
      const bool first = !oursStays_.contains(key);
      if (OursStays(key)) {
        merge_.Elements.push_back(element);
      } else if (first) {
        Take(theirsByName_.Of(key));
      }
    }
    for (const ProjectorDefinition& element : theirs_) {
      const std::u16string key = NameKey(element);
      const bool first = !oursStays_.contains(key);
      if (!OursStays(key) && first) Take(theirsByName_.Of(key));
    }
    return std::move(merge_);
  }

 private:
  // Decided once for each name.
  bool OursStays(const std::u16string& key) {
    if (const auto decided = oursStays_.find(key); decided != oursStays_.end()) return decided->second;
    const Group ours = oursByName_.Of(key);
    const Group theirs = theirsByName_.Of(key);
    const auto base = changed_.find(key);
    const bool oursChanged = base != changed_.end() && base->second != ours;
    const bool theirsChanged = base != changed_.end() ? base->second != theirs : ours != theirs;
    const bool oursStays = oursChanged || !theirsChanged;
    if (oursChanged && theirsChanged && ours != theirs) {
      merge_.Conflicts.push_back({ours, theirs, base->second});
    }
    if (!oursStays) ++merge_.Taken;
    if (oursStays && ours != theirs) merge_.StillOurs.emplace(key, theirs);
    return oursStays_[key] = oursStays;
  }
  void Take(const Group& group) { merge_.Elements.insert(merge_.Elements.end(), group.begin(), group.end()); }

  const Originals& changed_;
  const Definitions& ours_;
  const Definitions& theirs_;
  Groups oursByName_;
  Groups theirsByName_;
  std::unordered_map<std::u16string, bool> oursStays_;
  LibraryMerge merge_;
};

}  // namespace

LibraryMerge MergeLibraries(const Originals& changed, const Definitions& ours, const Definitions& theirs) {
  return Merger(changed, ours, theirs).Merge();
}

LibraryMerge MergeLibraries(const Definitions& base, const Definitions& ours, const Definitions& theirs) {
  const Groups baseByName(base);
  const Groups oursByName(ours);
  Originals changed;
  const auto note = [&](const std::u16string& key) {
    Group before = baseByName.Of(key);
    if (before != oursByName.Of(key)) changed.emplace(key, std::move(before));
  };
  baseByName.ForEachKey(note);
  oursByName.ForEachKey(note);
  return MergeLibraries(changed, ours, theirs);
}

}  // namespace qdm
