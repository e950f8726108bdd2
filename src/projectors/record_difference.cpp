#include "projectors/record_difference.h"

namespace qdm {
namespace {

struct ProjectorRules {
  template <std::size_t N>
  bool Same(std::string_view name, const FixedText<N>& first, const FixedText<N>& second) const {
    return name == "Notes" || UpperCase(first.View()) == UpperCase(second.View());
  }
  bool SameFlag(std::int16_t first, std::int16_t second) const { return (first != 0) == (second != 0); }
  bool Ignores(std::string_view name) const { return name == "Reserved"; }
};

std::string Quoted(const SerialString& string) { return "\"" + CompactText(string) + "\""; }

// Everything of a string that its compact text may leave out.
std::string Exactly(const SerialString& string) {
  std::string text = Quoted(string) + " Count " + std::to_string(string.Count) + " Values";
  for (const std::uint8_t value : string.Values) text += " " + HexByte(value);
  text += " Kinds";
  for (const std::uint8_t kind : string.Kinds) text += " " + std::to_string(kind);
  return text;
}

}  // namespace

std::string FlagText(std::int16_t flag) {
  if (flag == kFlagSet) return "true";
  return flag == kFlagClear ? "false" : std::to_string(flag);
}

StringPairText TextsOf(const SerialString& first, const SerialString& second) {
  StringPairText texts{Quoted(first), Quoted(second)};
  if (texts.First == texts.Second) texts = {Exactly(first), Exactly(second)};
  return texts;
}

std::vector<FieldDifference> ProjectorDifferences(const ProjectorDefinition& first,
                                                  const ProjectorDefinition& second) {
  return Differences(first, second, ProjectorRules{});
}

bool ProjectorsEqual(const ProjectorDefinition& first, const ProjectorDefinition& second) {
  return ProjectorDifferences(first, second).empty();
}

}  // namespace qdm
