// The installer's projector definitions, in file order, with an index over the names so that finding one
// takes the same time in a library of ten thousand. The library owns its elements; indices are valid until an
// element is removed.
#pragma once

#include "projectors/projector_definition.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qdm {

// Without regard to case, over the whole fixed-length texts.
bool SameName(const FixedText<32>& first, const FixedText<32>& second);

class ProjectorLibrary {
 public:
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
  void Clear();

  // The first element with the same names.
  std::optional<std::size_t> FindProjector(const FixedText<32>& manufacturer,
                                           const FixedText<32>& model) const;
  std::optional<std::size_t> FindProjector(const ProjectorDefinition& projector) const {
    return FindProjector(projector.Manufacturer, projector.Model);
  }

 private:
  std::size_t Probe(const FixedText<32>& manufacturer, const FixedText<32>& model) const;
  void Index(std::size_t element) const;
  void Rebuild() const;

  std::vector<ProjectorDefinition> elements_;
  bool mayBeSaved_ = true;
  // Open addressing: element index + 1, 0 is free; a power of two at least twice as large as the library.
  // Built at the first search after a change that it cannot follow.
  mutable std::vector<std::uint32_t> places_;
  mutable bool indexed_ = false;
};

}  // namespace qdm
