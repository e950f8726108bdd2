#include "projectors/projector_library.h"

#include <bit>
#include <cstddef>

namespace qdm {
namespace {

std::uint64_t Mix(std::uint64_t hash, const FixedText<32>& name) {
  for (const char16_t c : name.Characters) hash = (hash ^ UpperCase(c)) * 0x100000001B3U;  // FNV-1a
  return hash;
}

std::uint64_t HashOf(const FixedText<32>& manufacturer, const FixedText<32>& model) {
  const std::uint64_t hash = Mix(Mix(0xCBF29CE484222325U, manufacturer), model);
  return hash ^ hash >> 32;
}

}  // namespace

bool SameName(const FixedText<32>& first, const FixedText<32>& second) {
  for (std::size_t i = 0; i < first.Characters.size(); ++i) {
    if (first.Characters[i] != second.Characters[i] &&
        UpperCase(first.Characters[i]) != UpperCase(second.Characters[i])) {
      return false;
    }
  }
  return true;
}

void ProjectorLibrary::Append(const ProjectorDefinition& projector) {
  elements_.push_back(projector);
  if (!indexed_) return;
  if (elements_.size() * 2 > places_.size()) {
    indexed_ = false;
  } else {
    Index(elements_.size() - 1);
  }
}

void ProjectorLibrary::Replace(std::size_t index, const ProjectorDefinition& projector) {
  ProjectorDefinition& element = elements_.at(index);
  if (!SameName(element.Manufacturer, projector.Manufacturer) || !SameName(element.Model, projector.Model)) {
    indexed_ = false;
  }
  element = projector;
}

void ProjectorLibrary::Remove(std::size_t index) {
  elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(index));
  indexed_ = false;
}

void ProjectorLibrary::Clear() {
  elements_.clear();
  indexed_ = false;
}

std::optional<std::size_t> ProjectorLibrary::FindProjector(const FixedText<32>& manufacturer,
                                                           const FixedText<32>& model) const {
  if (elements_.empty()) return std::nullopt;
  if (!indexed_) Rebuild();
  const std::uint32_t place = places_[Probe(manufacturer, model)];
  if (place == 0) return std::nullopt;
  return place - 1;
}

// The place that holds an element of these names, or the free one where it would go.
std::size_t ProjectorLibrary::Probe(const FixedText<32>& manufacturer, const FixedText<32>& model) const {
  const std::size_t mask = places_.size() - 1;
  std::size_t at = HashOf(manufacturer, model) & mask;
  while (places_[at] != 0) {
    const ProjectorDefinition& element = elements_[places_[at] - 1];
    if (SameName(element.Manufacturer, manufacturer) && SameName(element.Model, model)) break;
    at = (at + 1) & mask;
  }
  return at;
}

// A name that is there already keeps its place: the first element of a name is the one that is found.
void ProjectorLibrary::Index(std::size_t element) const {
  std::uint32_t& place = places_[Probe(elements_[element].Manufacturer, elements_[element].Model)];
  if (place == 0) place = static_cast<std::uint32_t>(element + 1);
}

void ProjectorLibrary::Rebuild() const {
  places_.assign(std::bit_ceil(elements_.size() * 4), 0);
  for (std::size_t i = 0; i < elements_.size(); ++i) Index(i);
  indexed_ = true;
}

}  // namespace qdm
