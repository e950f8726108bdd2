// Which of a family's bytes are a check sum, and of what? Every place, range, method and form is tried; the
// rule that explains most is taken where chance cannot explain it as well.
#pragma once

#include "serial_strings/check_sums.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace qdm {

// Where a check sum stands and what it covers. Places count from the end of the command, or from its
// beginning for a sum that stands before what it covers.
struct SumRule {
  SumMethod Method;
  SumForm Form;
  bool InFront = false;
  std::size_t Place = 0;      // bytes behind the sum; before it when it stands in front
  std::size_t Start = 0;      // bytes at the beginning that are not covered
  std::size_t Uncovered = 0;  // bytes not covered between the range and the sum, or at the end

  std::size_t Width() const { return WidthOf(Form, Method.Bits); }
};

struct FoundSum {
  SumRule Rule;
  std::vector<bool> Keeps;  // by member: it keeps the rule
};

// One byte string for each command.
std::optional<FoundSum> FindSum(const std::vector<Bytes>& members);

// The bytes that carry the sum, and those that it covers; nothing when the command is too short.
struct SumParts {
  std::size_t SumAt = 0;
  std::size_t CoverFrom = 0;
  std::size_t CoverTo = 0;  // one behind the last
};
std::optional<SumParts> PartsOf(const SumRule& rule, std::size_t length);

// What the sum's bytes should be; nothing when the command is too short.
std::optional<Bytes> ComputedSum(const SumRule& rule, ByteView command);

}  // namespace qdm
