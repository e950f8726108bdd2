// What became different between two states of a configuration, in words: for whoever must decide whether to
// send it again.
#pragma once

#include "config/panel_configuration.h"

#include <string>
#include <vector>

namespace qdm {

// "Then: ..." and "Now: ..." for sentences that hold in one of the two alone, then the projector's fields
// with both values. Empty when nothing that has a meaning differs.
std::vector<std::string> ChangesInWords(const PanelConfiguration& then, const PanelConfiguration& now);

// "Volume up: \"UPCRc\" -> \"UP,CRc\"", a line for each field in which two definitions differ.
std::vector<std::string> ProjectorChangesInWords(const ProjectorDefinition& then,
                                                 const ProjectorDefinition& now);

}  // namespace qdm
