// Characters with codes between them: "PWR ON<CR>", "\x02PON\x03", "^BPON^C", "STX PON ETX", "PWR ON 0x0D".
// Blanks and operators beside a code may be the writer's or the command's, "(10)" a code or characters:
// every way is given.
#pragma once

#include "serial_strings/reading_attempt.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct CodedReading {
  Attempt Read;
  int Doubts = 0;        // what speaks against it; 0: likely
  bool Blanks = false;   // blanks or operators beside codes were left out, or letters joined
  bool Certain = false;  // every code in it is marked so that nothing else can be meant
};

// Nothing when the text holds no code; a failed reading where an escape cannot be read.
std::vector<CodedReading> ReadCodedText(std::u16string_view text, Unmarked unmarked);

// What stands between quotation marks: characters with escapes and codes that are certain.
void AddQuotedText(std::u16string_view text, std::size_t origin, Attempt& attempt);

// "PON" of "P O N"; any other text as it is.
std::u16string JoinLetters(std::u16string_view text);

}  // namespace qdm
