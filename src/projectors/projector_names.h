// The names under which the library keeps a definition: how they are typed, compared and made free.
#pragma once

#include "base/message.h"
#include "projectors/projector_library.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace qdm {

// A name that a user typed: without the blanks at its ends, cut after 32 characters.
FixedText<32> TypedName(std::u16string_view typed);

// "Model (2)", "Model (3)", ...: the first that the library does not have, cut where there is no room.
void RenameUntilFree(ProjectorDefinition& projector, const ProjectorLibrary& library);

// Appends `clipboard` under other names, which it then bears itself, the manufacturer in upper case. When the
// library has these names already nothing changes, and what the user must be told is returned.
std::optional<Message> PasteUnderNames(ProjectorLibrary& library, ProjectorDefinition& clipboard,
                                       const FixedText<32>& manufacturer, const FixedText<32>& model);

// Gives the element `index` other names. When another element has them nothing changes, and what the user
// must be told is returned.
std::optional<Message> RenameElement(ProjectorLibrary& library, std::size_t index,
                                     const FixedText<32>& manufacturer, const FixedText<32>& model);

}  // namespace qdm
