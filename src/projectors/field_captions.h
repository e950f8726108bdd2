// The fields of a projector definition in the words of the setup dialog, for people who have to choose
// between two definitions.
#pragma once

#include "projectors/record_difference.h"

#include <string>
#include <string_view>
#include <vector>

namespace qdm {

// "Strings[6]" is "Volume up", "Available[6]" "Volume up: available", "InterByteDelay" its caption there. A
// path that is not a definition's comes back as it is.
std::string FieldCaption(std::string_view path);

// ProjectorDifferences with captions for paths and the choices' names for their numbers: "19200" for 1 in
// `Baudrate`. Where the names of both values are the same, the numbers stand behind them.
std::vector<FieldDifference> DifferencesInWords(const ProjectorDefinition& first,
                                                const ProjectorDefinition& second);

}  // namespace qdm
