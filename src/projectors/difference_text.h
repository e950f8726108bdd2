// Differences as `qdm compare` prints them: the field's path and both values exactly, so that two values that
// differ never read the same. UTF-8.
#pragma once

#include "projectors/record_difference.h"

#include <string>
#include <vector>

namespace qdm {

struct DifferenceText {
  std::string Field;  // "InterByteDelay", "Strings[6]", "Projector.Available[3]"; in words: "Volume up"
  std::string First;
  std::string Second;

  friend bool operator==(const DifferenceText&, const DifferenceText&) = default;
};

std::string PathOf(const FieldPlace& place);

// Flags read "true", "false", or the number that stands for yes without being -1; strings are their compact
// text in double quotes, with what that cannot tell behind it where it is not enough to tell the two apart.
DifferenceText TextOf(const FieldDifference& difference);
std::vector<DifferenceText> TextsOf(const std::vector<FieldDifference>& differences);

}  // namespace qdm
