// In which fields do two records of one type differ? One walk over the record's own field list answers for
// the replace dialogs, for `qdm compare` and for the rule that decides whether two definitions are the same.
#pragma once

#include "projectors/projector_definition.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

struct FieldDifference {
  std::string Path;  // "InterByteDelay", "Strings[6]", "Projector.Available[3]"
  std::string First;
  std::string Second;

  friend bool operator==(const FieldDifference&, const FieldDifference&) = default;
};

// "true", "false", or the number that a flag holds when it is neither -1 nor 0.
std::string FlagText(std::int16_t flag);
// The compact text in double quotes; with what the compact text cannot tell behind it when it is not enough
// to tell two strings apart.
struct StringPairText {
  std::string First;
  std::string Second;
};
StringPairText TextsOf(const SerialString& first, const SerialString& second);

// Visits the fields of `first` and finds the same field of `second` at the same place in memory.
// `Rules` decides what counts as equal: bool Same(name, fieldOfFirst, fieldOfSecond).
template <class Visited, class Rules>
class DifferenceVisitor {
 public:
  DifferenceVisitor(const Visited& first, const Visited& second, const Rules& rules)
      : first_(reinterpret_cast<const std::byte*>(&first)),
        second_(reinterpret_cast<const std::byte*>(&second)),
        rules_(rules) {}

  template <std::size_t N>
  void Text(std::string_view name, const FixedText<N>& text) {
    const FixedText<N>& other = Counterpart(text);
    if (!rules_.Same(name, text, other)) {
      Add(PathOf(name), ToUtf8(text.Unpadded()), ToUtf8(other.Unpadded()));
    }
  }
  void Integer(std::string_view name, const std::int16_t& value) {
    const std::int16_t& other = Counterpart(value);
    if (value != other) Add(PathOf(name), std::to_string(value), std::to_string(other));
  }
  void Flag(std::string_view name, const std::int16_t& value) {
    const std::int16_t& other = Counterpart(value);
    if (!rules_.SameFlag(value, other)) Add(PathOf(name), FlagText(value), FlagText(other));
  }
  template <std::size_t N>
  void Integers(std::string_view name, const std::array<std::int16_t, N>& values) {
    if (rules_.Ignores(name)) return;
    for (std::size_t i = 0; i < N; ++i) {
      const std::int16_t& other = Counterpart(values[i]);
      if (values[i] != other) Add(PathOf(name, i), std::to_string(values[i]), std::to_string(other));
    }
  }
  template <std::size_t N>
  void Flags(std::string_view name, const std::array<std::int16_t, N>& values) {
    for (std::size_t i = 0; i < N; ++i) {
      const std::int16_t& other = Counterpart(values[i]);
      if (!rules_.SameFlag(values[i], other)) Add(PathOf(name, i), FlagText(values[i]), FlagText(other));
    }
  }
  template <std::size_t N>
  void Records(std::string_view name, const std::array<SerialString, N>& strings) {
    for (std::size_t i = 0; i < N; ++i) {
      const SerialString& other = Counterpart(strings[i]);
      if (strings[i] == other) continue;
      StringPairText texts = TextsOf(strings[i], other);
      Add(PathOf(name, i), std::move(texts.First), std::move(texts.Second));
    }
  }
  template <std::size_t N>
  void Block(std::string_view name, const std::array<std::uint8_t, N>& bytes) {
    const auto& other = Counterpart(bytes);
    for (std::size_t i = 0; i < N; ++i) {
      if (bytes[i] != other[i]) Add(PathOf(name, i), HexByte(bytes[i]) + "h", HexByte(other[i]) + "h");
    }
  }
  template <class Nested>
  void Record(std::string_view name, const Nested& nested) {
    const std::string outer = prefix_;
    prefix_ += std::string(name) + ".";
    Fields(*this, nested);
    prefix_ = outer;
  }

  std::vector<FieldDifference> Take() { return std::move(differences_); }

 private:
  template <class Field>
  const Field& Counterpart(const Field& field) const {
    return *reinterpret_cast<const Field*>(second_ + (reinterpret_cast<const std::byte*>(&field) - first_));
  }
  std::string PathOf(std::string_view name) const { return prefix_ + std::string(name); }
  std::string PathOf(std::string_view name, std::size_t index) const {
    return PathOf(name) + "[" + std::to_string(index) + "]";
  }
  void Add(std::string path, std::string first, std::string second) {
    differences_.push_back({std::move(path), std::move(first), std::move(second)});
  }

  const std::byte* first_;
  const std::byte* second_;
  const Rules& rules_;
  std::string prefix_;
  std::vector<FieldDifference> differences_;
};

// Every bit counts.
struct ExactRules {
  template <std::size_t N>
  bool Same(std::string_view, const FixedText<N>& first, const FixedText<N>& second) const {
    return first == second;
  }
  bool SameFlag(std::int16_t first, std::int16_t second) const { return first == second; }
  bool Ignores(std::string_view) const { return false; }
};

template <class Record, class Rules = ExactRules>
std::vector<FieldDifference> Differences(const Record& first, const Record& second, const Rules& rules = {}) {
  DifferenceVisitor<Record, Rules> visitor(first, second, rules);
  Fields(visitor, first);
  return visitor.Take();
}

// The differences that make two definitions of the same name different: `Notes` and the reserved words take
// no part, names are compared in upper case, flags by their meaning.
std::vector<FieldDifference> ProjectorDifferences(const ProjectorDefinition& first,
                                                  const ProjectorDefinition& second);
bool ProjectorsEqual(const ProjectorDefinition& first, const ProjectorDefinition& second);

}  // namespace qdm
