// The fields of a projector definition in the words of the setup dialog, for people who have to choose
// between two definitions.
#pragma once

#include "projectors/difference_text.h"

#include <string>
#include <vector>

namespace qdm {

// "Volume up" for `Strings`[6], "Volume up: available" for `Available`[6]; the name of a field that has no
// caption.
std::string CaptionOf(const FieldPlace& place);

// ProjectorDifferences with captions for fields and the choices' names for their numbers: "19200" for 1 in
// `Baudrate`, "Yes" and "No" for flags. Where the names of both values are the same, the numbers stand behind
// them.
std::vector<DifferenceText> DifferencesInWords(const ProjectorDefinition& first,
                                               const ProjectorDefinition& second);

}  // namespace qdm
