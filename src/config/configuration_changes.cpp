#include "config/configuration_changes.h"

#include "config/configuration_sentences.h"
#include "projectors/field_captions.h"

#include <algorithm>

namespace qdm {
namespace {

// The lines of `some` that `others` does not have, each behind `mark`.
void AddMissing(std::vector<std::string>& changes, const std::string& mark,
                const std::vector<std::string>& some, const std::vector<std::string>& others) {
  for (const std::string& line : some) {
    if (std::find(others.begin(), others.end(), line) == others.end()) changes.push_back(mark + line);
  }
}

}  // namespace

std::vector<std::string> ProjectorChangesInWords(const ProjectorDefinition& then,
                                                 const ProjectorDefinition& now) {
  std::vector<std::string> changes;
  for (const DifferenceText& difference : DifferencesInWords(then, now)) {
    changes.push_back(difference.Field + ": " + difference.First + " -> " + difference.Second);
  }
  return changes;
}

std::vector<std::string> ChangesInWords(const PanelConfiguration& then, const PanelConfiguration& now) {
  std::vector<std::string> changes;
  const ConfigurationWords before = InWords(then);
  const ConfigurationWords after = InWords(now);
  AddMissing(changes, "Then: ", before.Sentences, after.Sentences);
  AddMissing(changes, "Now: ", after.Sentences, before.Sentences);
  const std::vector<std::string> projector = ProjectorChangesInWords(then.Projector, now.Projector);
  changes.insert(changes.end(), projector.begin(), projector.end());
  return changes;
}

}  // namespace qdm
