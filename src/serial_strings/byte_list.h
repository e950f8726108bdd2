// Bytes one by one: "02 00 0Dh", "0x02,0x0D", "3A-52-54-0D", "3A52540D", "<STX> 30 31 <ETX>", "\"PWR\" + CR",
// "'PWR'#13". Blanks, commas and operators separate; brackets and quotation marks need nothing between them.
#pragma once

#include "serial_strings/reading_attempt.h"

#include <cstddef>
#include <string_view>

namespace qdm {

struct ByteList {
  Attempt Read;
  std::size_t Items = 0;
  std::size_t Bytes = 0;    // items that are bytes
  std::size_t Marked = 0;   // items that say what they are
  std::size_t Certain = 0;  // items that no command would hold as characters
  bool Packed = false;      // pairs of digits without anything between them
  bool Tight = false;       // "-" or the like between the bytes
  bool Misread = false;     // a letter O or l was taken for a digit
};

ByteList ReadByteList(std::u16string_view text, Unmarked unmarked);

// A single word without a mark is a byte only when it is one or two digits.
bool IsByteList(const ByteList& list, std::u16string_view text);

}  // namespace qdm
