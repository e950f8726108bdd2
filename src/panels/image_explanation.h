// What every byte of a panel's memory means and which fields of the configuration it was made from: one part
// after the other, all 512 bytes. For people who look for the reason why a panel does what it does.
#pragma once

#include "panels/panel_image.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

struct ImagePart {
  std::size_t Offset;
  std::size_t Length;
  std::string Meaning;
  // Every field that has a say in these bytes, separated by ", "; empty for bytes that stay FF.
  std::string Fields;
};

// For a configuration that can become an image.
std::vector<ImagePart> ExplainImage(const PanelConfiguration& configuration);

}  // namespace qdm
