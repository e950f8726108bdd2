// Which label belongs to which code: on the same line, to its left or right, or in the cells above or below.
#pragma once

#include "manuals/codes.h"
#include "manuals/functions.h"
#include "manuals/page.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

// A code with the function that a label gives it.
struct Finding {
  Code What;
  Function For;
  std::vector<Span> Label;
  bool Settled = false;  // the pairing leaves no doubt
  std::string Doubt;     // why not
};

// A code or a text between codes, in the page's order.
struct Piece {
  static constexpr std::size_t kText = static_cast<std::size_t>(-1);
  std::size_t Code = kText;  // its place among the codes
  Span Where;
  Function Says;           // of a text
  bool Heading = false;    // of a column: "Function", "Command"
  bool Caption = false;    // a heading since it says nothing and stands again and again
  bool Numbered = false;   // "2.1 POWER ON"
  bool LeadsOver = false;  // a colon behind it
  bool Bracketed = false;  // adds to the label before it
  bool Sentence = false;   // too long for a label

  bool IsText() const { return Code == kText; }
};

std::vector<Piece> MakePieces(const ManualPage& page, const std::vector<Code>& codes);

std::vector<Finding> PairLabels(const ManualPage& page, const std::vector<Code>& codes);

}  // namespace qdm
