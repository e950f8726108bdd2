// The records as JSON text, made from their field lists: keys are the fields' names in record order, flags
// are true and false (any other stored value is the number that it is), fixed texts go without the blanks
// that fill them up, spare bytes as hexadecimal pairs. One serial string a line. Whatever bytes a record
// holds, json_reader.h makes the same record from its text.
#pragma once

#include "config/panel_configuration.h"

#include <string>
#include <string_view>
#include <vector>

namespace qdm {

inline constexpr std::string_view kConfigurationFormat = "qdm-configuration";
inline constexpr std::string_view kProjectorsFormat = "qdm-projectors";
inline constexpr int kFormatVersion = 1;

// Both end with a line feed.
std::string ConfigurationToJson(const PanelConfiguration& configuration);
std::string ProjectorsToJson(const std::vector<ProjectorDefinition>& projectors);

// UTF-8 text as a JSON string, quotes included.
void AppendQuoted(std::string& json, std::string_view text);

}  // namespace qdm
