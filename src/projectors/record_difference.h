// In which fields do two records of one type differ? One walk over both records' field lists answers for the
// replace dialogs, for `qdm compare` and for the rule that decides whether two definitions are the same. A
// difference says which field and holds both values as they are; difference_text.h and field_captions.h turn
// it into what is printed and shown.
#pragma once

#include "projectors/projector_definition.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace qdm {

struct FieldPlace {
  std::string_view Record;  // "Projector" for a field of the projector in a configuration, else empty
  FieldName Field;
  std::optional<std::size_t> Index = {};  // of an array's element
};

struct NumberValue {
  std::int16_t Number;
};
struct FlagValue {
  std::int16_t Flag;  // any bits: -1 and 0 are what is written, anything else also means yes
};
struct ByteValue {
  std::uint8_t Byte;
};
using FieldValue = std::variant<std::u16string, NumberValue, FlagValue, ByteValue, SerialString>;

// Both values are of the same kind.
struct FieldDifference {
  FieldPlace Place;
  FieldValue First;
  FieldValue Second;
};

// Collects the fields whose values `Rules` does not count as the same.
template <class Rules>
class DifferenceVisitor {
 public:
  template <std::size_t N>
  void Text(const FieldName& field, const FixedText<N>& first, const FixedText<N>& second) {
    if (Rules::Same(field, first, second)) return;
    Add(field, {}, std::u16string(first.Unpadded()), std::u16string(second.Unpadded()));
  }
  void Integer(const FieldName& field, std::int16_t first, std::int16_t second) {
    if (first != second) Add(field, {}, NumberValue{first}, NumberValue{second});
  }
  void Flag(const FieldName& field, std::int16_t first, std::int16_t second) {
    if (!Rules::SameFlag(first, second)) Add(field, {}, FlagValue{first}, FlagValue{second});
  }
  template <std::size_t N>
  void Integers(const FieldName& field, const std::array<std::int16_t, N>& first,
                const std::array<std::int16_t, N>& second) {
    if (Rules::Ignores(field)) return;
    for (std::size_t i = 0; i < N; ++i) {
      if (first[i] != second[i]) Add(field, i, NumberValue{first[i]}, NumberValue{second[i]});
    }
  }
  template <std::size_t N>
  void Flags(const FieldName& field, const std::array<std::int16_t, N>& first,
             const std::array<std::int16_t, N>& second) {
    for (std::size_t i = 0; i < N; ++i) {
      if (!Rules::SameFlag(first[i], second[i])) Add(field, i, FlagValue{first[i]}, FlagValue{second[i]});
    }
  }
  template <std::size_t N>
  void Records(const FieldName& field, const std::array<SerialString, N>& first,
               const std::array<SerialString, N>& second) {
    for (std::size_t i = 0; i < N; ++i) {
      if (first[i] != second[i]) Add(field, i, first[i], second[i]);
    }
  }
  template <std::size_t N>
  void Block(const FieldName& field, const std::array<std::uint8_t, N>& first,
             const std::array<std::uint8_t, N>& second) {
    for (std::size_t i = 0; i < N; ++i) {
      if (first[i] != second[i]) Add(field, i, ByteValue{first[i]}, ByteValue{second[i]});
    }
  }
  // No record in a record holds a third.
  template <class Nested>
  void Record(const FieldName& field, const Nested& first, const Nested& second) {
    record_ = field;
    Fields(*this, first, second);
    record_ = {};
  }

  std::vector<FieldDifference> Take() { return std::move(differences_); }

 private:
  void Add(const FieldName& field, std::optional<std::size_t> index, FieldValue first, FieldValue second) {
    differences_.push_back({{record_, field, index}, std::move(first), std::move(second)});
  }

  std::string_view record_;
  std::vector<FieldDifference> differences_;
};

// Every bit counts.
struct ExactRules {
  template <std::size_t N>
  static bool Same(std::string_view, const FixedText<N>& first, const FixedText<N>& second) {
    return first == second;
  }
  static bool SameFlag(std::int16_t first, std::int16_t second) { return first == second; }
  static bool Ignores(std::string_view) { return false; }
};

template <class Rules = ExactRules, class Record>
std::vector<FieldDifference> Differences(const Record& first, const Record& second) {
  DifferenceVisitor<Rules> visitor;
  Fields(visitor, first, second);
  return visitor.Take();
}

// The differences that make two definitions of the same name different: `Notes` and the reserved words take
// no part, names are compared in upper case, flags by their meaning.
std::vector<FieldDifference> ProjectorDifferences(const ProjectorDefinition& first,
                                                  const ProjectorDefinition& second);
bool ProjectorsEqual(const ProjectorDefinition& first, const ProjectorDefinition& second);

}  // namespace qdm
