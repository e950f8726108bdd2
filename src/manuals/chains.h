// Cells of a torn table in which codes and labels take turns, one below the other: whether a label stands
// above its code or below it shows at the ends of such a chain and in the order of the table's headings.
#pragma once

#include "manuals/pairing.h"

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace qdm {

// Where the labels stand, seen from their codes.
enum class Side { Left, Right, Above, Below };
inline constexpr std::size_t kSides = 4;

struct Chains {
  std::vector<std::optional<Side>> Sides;  // of each piece that is in a chain
  std::vector<bool> Clear;                 // all that can tell the side says the same
  std::array<int, kSides> Votes{};
};

Chains FindChains(const ManualPage& page, const std::vector<Code>& codes, const std::vector<Piece>& pieces);

}  // namespace qdm
