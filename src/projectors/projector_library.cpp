#include "projectors/projector_library.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace qdm {
namespace {

// Four characters at once, in upper case.
std::uint64_t UpperFour(const char16_t* characters) {
  constexpr std::uint64_t kEach = 0x0001000100010001U;
  std::uint64_t four = 0;
  std::memcpy(&four, characters, sizeof four);
  if ((four & kEach * 0xFF80U) ==
      0) {  // ASCII: bit 7 of each tells whether it is "a" or above, and above "z"
    const std::uint64_t fromA = four + kEach * (0x80U - u'a');
    const std::uint64_t aboveZ = four + kEach * (0x7FU - u'z');
    return four - ((fromA & ~aboveZ & kEach * 0x80U) >> 2U);
  }
  std::array<char16_t, 4> upper{};
  std::transform(characters, characters + upper.size(), upper.begin(),
                 [](char16_t c) { return UpperCase(c); });
  std::memcpy(&four, upper.data(), sizeof four);
  return four;
}

std::uint64_t Mix(std::uint64_t hash, const FixedText<32>& name) {
  for (std::size_t at = 0; at < name.kLength; at += 4) {
    hash = (hash ^ UpperFour(&name.Characters[at])) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 29U;
  }
  return hash;
}

std::uint64_t HashOf(const FixedText<32>& manufacturer, const FixedText<32>& model) {
  return Mix(Mix(0, manufacturer), model);
}

}  // namespace

bool SameName(const FixedText<32>& first, const FixedText<32>& second) {
  if (first == second) return true;
  for (std::size_t at = 0; at < first.kLength; at += 4) {
    if (UpperFour(&first.Characters[at]) != UpperFour(&second.Characters[at])) return false;
  }
  return true;
}

std::u16string NameKey(const ProjectorDefinition& projector) {
  return UpperCase(projector.Manufacturer.View()) + UpperCase(projector.Model.View());
}

void ProjectorLibrary::Append(const ProjectorDefinition& projector) {
  RememberGroupOf(projector);
  if (record_ != nullptr) Record(elements_.size(), {}, projector);
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
  RememberGroupOf(element);
  if (record_ != nullptr) Record(index, element, projector);
  if (!SameName(element.Manufacturer, projector.Manufacturer) || !SameName(element.Model, projector.Model)) {
    RememberGroupOf(projector);
    indexed_ = false;
  }
  element = projector;
}

void ProjectorLibrary::Remove(std::size_t index) {
  RememberGroupOf(elements_.at(index));
  if (record_ != nullptr) Record(index, elements_[index], {});
  elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(index));
  indexed_ = false;
}

void ProjectorLibrary::Insert(std::size_t index, const ProjectorDefinition& projector) {
  RememberGroupOf(projector);
  if (record_ != nullptr) Record(index, {}, projector);
  elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(index), projector);
  indexed_ = false;
}

void ProjectorLibrary::Clear() { Become({}, {}, {}); }

ProjectorLibrary::Group ProjectorLibrary::GroupOf(const FixedText<32>& manufacturer,
                                                  const FixedText<32>& model) const {
  const std::optional<std::size_t> first = FindProjector(manufacturer, model);
  if (!first) return {};
  if (!hasTwins_) return {elements_[*first]};
  Group group;
  for (std::size_t i = *first; i < elements_.size(); ++i) {
    const ProjectorDefinition& element = elements_[i];
    if (SameName(element.Manufacturer, manufacturer) && SameName(element.Model, model))
      group.push_back(element);
  }
  return group;
}

void ProjectorLibrary::RememberGroupOf(const ProjectorDefinition& projector) {
  const auto [original, first] = originals_.try_emplace(NameKey(projector));
  if (first) original->second = GroupOf(projector.Manufacturer, projector.Model);
}

void ProjectorLibrary::Record(std::size_t index, const std::optional<ProjectorDefinition>& before,
                              const std::optional<ProjectorDefinition>& after) {
  record_->push_back({index, before, after});
}

void ProjectorLibrary::MarkUnchanged(const LibraryFileState& file) {
  originals_.clear();
  fileState_ = file;
}

std::vector<ProjectorDefinition> ProjectorLibrary::ChangedElements() const {
  std::vector<ProjectorDefinition> changed;
  if (originals_.empty()) return changed;
  for (const ProjectorDefinition& element : elements_) {
    const auto group = originals_.find(NameKey(element));
    if (group == originals_.end()) continue;
    const Group& before = group->second;
    if (std::find(before.begin(), before.end(), element) == before.end()) changed.push_back(element);
  }
  return changed;
}

bool ProjectorLibrary::Changed() const {
  return std::any_of(originals_.begin(), originals_.end(), [this](const auto& original) {
    const std::u16string_view key = original.first;
    const FixedText<32> manufacturer(key.substr(0, FixedText<32>::kLength));
    const FixedText<32> model(key.substr(FixedText<32>::kLength));
    return GroupOf(manufacturer, model) != original.second;
  });
}

void ProjectorLibrary::Become(std::vector<ProjectorDefinition> elements, Originals originals,
                              const LibraryFileState& file) {
  elements_ = std::move(elements);
  originals_ = std::move(originals);
  fileState_ = file;
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
  if (place == 0) {
    place = static_cast<std::uint32_t>(element + 1);
  } else {
    hasTwins_ = true;
  }
}

void ProjectorLibrary::Rebuild() const {
  hasTwins_ = false;
  places_.assign(std::bit_ceil(elements_.size() * 4), 0);
  for (std::size_t i = 0; i < elements_.size(); ++i) Index(i);
  indexed_ = true;
}

}  // namespace qdm
