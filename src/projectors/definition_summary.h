// What tells a definition from similar ones at a glance: its line settings and the strings in use. UTF-8.
#pragma once

#include "projectors/projector_definition.h"

#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct DefinitionSummary {
  struct Row {
    std::string_view Name;  // of the slot
    std::string Text;
  };
  std::string Line;  // "9600,n,8,1"
  std::vector<Row> Strings;
};

DefinitionSummary SummaryOf(const ProjectorDefinition& projector);

}  // namespace qdm
