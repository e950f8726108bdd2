// The installer's projector definitions, in file order, with an index over the names so that finding one
// takes the same time in a library of ten thousand. The library owns its elements; indices are valid until an
// element is removed. It remembers what it changed since it was loaded, so that what others saved meanwhile
// can be merged with it.
#pragma once

#include "projectors/projector_definition.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qdm {

// Without regard to case, over the whole fixed-length texts.
bool SameName(const FixedText<32>& first, const FixedText<32>& second);
// Both names in upper case: what makes two definitions the same one.
std::u16string NameKey(const ProjectorDefinition& projector);

// One state of the library's file. Equal states hold the same bytes, as far as size, time and a hash can
// tell.
struct LibraryFileState {
  bool Exists = false;
  std::uint64_t Size = 0;
  std::int64_t Modified = 0;
  std::uint64_t Number = 0;   // the file's own number in its file system
  std::uint64_t Hash = 0;     // of its bytes
  std::int64_t LookedAt = 0;  // when that was so, in nanoseconds since 1970
};

// One element that came (no `Before`), went (no `After`) or became another, at its place in the library.
struct LibraryChange {
  std::size_t Index = 0;
  std::optional<ProjectorDefinition> Before;
  std::optional<ProjectorDefinition> After;
};

class ProjectorLibrary {
 public:
  // All elements of one name, in order; nearly always one or none.
  using Group = std::vector<ProjectorDefinition>;
  // What the groups that were changed since the last MarkUnchanged were then, by NameKey.
  using Originals = std::unordered_map<std::u16string, Group>;

  // True while the library holds at least one element.
  bool Loaded() const { return !elements_.empty(); }
  std::size_t Size() const { return elements_.size(); }
  const ProjectorDefinition& operator[](std::size_t index) const { return elements_[index]; }
  const std::vector<ProjectorDefinition>& Elements() const { return elements_; }

  // False for a library whose file was there and could not be loaded: saving it would destroy that file.
  bool MayBeSaved() const { return mayBeSaved_; }
  void SetMayBeSaved(bool may) { mayBeSaved_ = may; }

  void Reserve(std::size_t elements) { elements_.reserve(elements); }
  void Append(const ProjectorDefinition& projector);
  void Replace(std::size_t index, const ProjectorDefinition& projector);
  // The elements behind `index` move down by one.
  void Remove(std::size_t index);
  // The element stands at `index` then, the ones from there on move up by one.
  void Insert(std::size_t index, const ProjectorDefinition& projector);
  void Clear();

  // The first element with the same names.
  std::optional<std::size_t> FindProjector(const FixedText<32>& manufacturer,
                                           const FixedText<32>& model) const;
  std::optional<std::size_t> FindProjector(const ProjectorDefinition& projector) const {
    return FindProjector(projector.Manufacturer, projector.Model);
  }
  Group GroupOf(const FixedText<32>& manufacturer, const FixedText<32>& model) const;

  // The file that the elements came from or were last written to.
  const LibraryFileState& FileState() const { return fileState_; }
  // The same bytes, looked at again.
  void SetFileState(const LibraryFileState& file) { fileState_ = file; }
  // The elements are what `file` holds: changes count from here on. Until then they count from an empty
  // library.
  void MarkUnchanged(const LibraryFileState& file);
  // False also when everything was changed back.
  bool Changed() const;
  const Originals& ChangedGroups() const { return originals_; }
  // The elements that came or became others since then.
  std::vector<ProjectorDefinition> ChangedElements() const;

  // Notes every single change from here on, in order, so that it can be undone; null ends it. Reading,
  // clearing and merging are none.
  void RecordChanges(std::vector<LibraryChange>* record) { record_ = record; }

  // Other elements: those of `file`, but for the names in `originals`, of which the file has these.
  void Become(std::vector<ProjectorDefinition> elements, Originals originals, const LibraryFileState& file);

 private:
  std::size_t Probe(const FixedText<32>& manufacturer, const FixedText<32>& model) const;
  void Index(std::size_t element) const;
  void Rebuild() const;
  void RememberGroupOf(const ProjectorDefinition& projector);
  void Record(std::size_t index, const std::optional<ProjectorDefinition>& before,
              const std::optional<ProjectorDefinition>& after);

  std::vector<ProjectorDefinition> elements_;
  bool mayBeSaved_ = true;
  LibraryFileState fileState_;
  Originals originals_;
  std::vector<LibraryChange>* record_ = nullptr;
  // Open addressing: element index + 1, 0 is free; a power of two at least twice as large as the library.
  // Built at the first search after a change that it cannot follow.
  mutable std::vector<std::uint32_t> places_;
  mutable bool indexed_ = false;
  mutable bool hasTwins_ = false;  // some name stands twice
};

}  // namespace qdm
