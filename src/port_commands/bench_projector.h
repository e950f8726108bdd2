// The projector that a bench command works with: the one of a configuration, or one of a file of definitions.
#pragma once

#include "port_commands/port_commands.h"
#include "projectors/projector_definition.h"

#include <string>

namespace qdm {

// A CommandError when the file has several and none is named, or none of those names.
ProjectorDefinition ReadProjector(const ProjectorChoice& choice, PortContext& context);

// A string by its name in either case; a CommandError with kUnusable when there is none, naming `option`.
Slot CommandSlotNamed(const std::string& option, const std::string& name);

// Text that stands for one string and can be read in no other way; a CommandError with kUnusable otherwise.
SerialString TypedString(const std::string& option, const std::string& text);

}  // namespace qdm
