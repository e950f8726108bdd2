// A configuration in words: what its options make the panel do, a sentence each, for people who must agree on
// it without the program. Only what the options mean: a number whose unit is the panel's own stands "as the
// panel counts". What makes no sense together is said as well, as a remark.
#pragma once

#include "config/panel_configuration.h"

#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct ConfigurationWords {
  std::vector<std::string> Sentences;
  std::vector<std::string> Remarks;  // what makes no sense together; mostly empty

  friend bool operator==(const ConfigurationWords&, const ConfigurationWords&) = default;
};

// UTF-8, each with its full stop.
ConfigurationWords InWords(const PanelConfiguration& configuration);

// "2.51 V": counts of 5 V / 255.
std::string ThresholdInVolts(int counts);

}  // namespace qdm
