#include "projectors/record_difference.h"

namespace qdm {
namespace {

struct ProjectorRules {
  template <std::size_t N>
  static bool Same(std::string_view name, const FixedText<N>& first, const FixedText<N>& second) {
    return name == "Notes" || UpperCase(first.View()) == UpperCase(second.View());
  }
  static bool SameFlag(std::int16_t first, std::int16_t second) { return (first != 0) == (second != 0); }
  static bool Ignores(std::string_view name) { return name == "Reserved"; }
};

}  // namespace

std::vector<FieldDifference> ProjectorDifferences(const ProjectorDefinition& first,
                                                  const ProjectorDefinition& second) {
  return Differences<ProjectorRules>(first, second);
}

bool ProjectorsEqual(const ProjectorDefinition& first, const ProjectorDefinition& second) {
  return ProjectorDifferences(first, second).empty();
}

}  // namespace qdm
