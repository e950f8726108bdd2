// Records from their text form (json_writer.h). A field that is left out has the value of a new record; a
// serial string's "Text" is for people and not looked at. Everything else that is not exactly what the record
// can hold is refused, nothing is cut or rounded: an unknown or repeated key, a list of another length, a
// number out of range, a fraction, a text that is too long or has a character outside the code page.
#pragma once

#include "config/panel_configuration.h"

#include <stdexcept>
#include <string_view>
#include <variant>
#include <vector>

namespace qdm {

// What a file of the program holds: one configuration, or definitions.
using RecordFile = std::variant<PanelConfiguration, std::vector<ProjectorDefinition>>;

// `what()`: the path inside the text, a colon and the reason ("projectors[2].Strings[6].Values[0]: ..."), or
// where the text stops being JSON.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

RecordFile ReadJson(std::string_view text);

}  // namespace qdm
