// The projector that a panel's memory was programmed for, read back out of its 512 bytes: what a panel goes
// by when a button is pressed. The inverse of what is written there, as far as it is: names, notes and the
// kinds of the bytes are not in the memory. Ignored bytes come back as IGN, the others as HEX, and in the
// volume commands the byte that the panel puts the level in for as VAR.
#pragma once

#include "panels/panel_image.h"
#include "projectors/projector_definition.h"

#include <optional>

namespace qdm {

// Nothing when the memory is blank or its table of strings makes no sense.
std::optional<ProjectorDefinition> ProjectorInImage(const PanelImage& image, int controllerType);

}  // namespace qdm
