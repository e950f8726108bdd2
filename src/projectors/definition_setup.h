// The rules of the setup dialog: which strings a definition shows by its flags, what is refused, and how a
// definition goes into the library. Knows no window.
#pragma once

#include "base/message.h"
#include "projectors/projector_library.h"

#include <array>
#include <cstddef>
#include <optional>

namespace qdm {

using SlotSet = std::array<bool, kCommandSlots>;

// The slots that the flags show. A string that is shown is in use.
SlotSet ShownSlots(const ProjectorDefinition& projector);

// The first rule that the definition breaks, in the rules' order; nothing when it may be stored.
std::optional<Message> CheckDefinition(const ProjectorDefinition& projector);

// The string to which that rule leads, when it is about a string.
std::optional<std::size_t> RefusedSlot(const ProjectorDefinition& projector);

// What a definition goes through before it is stored: names cleaned, `Available` for each slot that is shown,
// the place of the volume byte determined.
void CompleteDefinition(ProjectorDefinition& projector);

// What is asked before an element of the same names is overwritten; nothing when there is none.
std::optional<Message> OverwriteQuestion(const ProjectorLibrary& library,
                                         const ProjectorDefinition& projector);

// Overwrites the element of the same names, or appends a new one.
void StoreDefinition(ProjectorLibrary& library, const ProjectorDefinition& projector);

// Takes a reply as what is expected after the command in `slot`, which has a reply slot, and requires it.
void TakeAsExpectedReply(ProjectorDefinition& projector, std::size_t slot, const SerialString& reply);

}  // namespace qdm
