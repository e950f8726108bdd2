// Reading a string out of text that was copied somewhere: a projector's manual, a terminal, the display's own
// compact text. Understood are bytes one by one ("02 00 0Dh", "0x02,0x0D", "<STX> 30 31 <ETX>", "\"PWR\"
// 0D"), characters with escapes ("\x02PWR\r", "PWR ON<CR>"), the compact text ("PWR,CRc") and plain
// characters. Text is often readable in more than one way ("10 20": bytes or characters?): every way is
// given, the likely one first, and the user chooses. A reading never has more than 32 bytes.
#pragma once

#include "serial_strings/serial_string.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct TextReading {
  std::string As;  // "bytes in hexadecimal", "characters"
  SerialString String;
};

struct TextProblem {
  std::size_t Position = 0;  // of the character, from 0 (UTF-16 units)
  std::string Why;           // UTF-8, a sentence without its end: "\"0G\" is not a byte"
};

struct ParsedText {
  std::vector<TextReading> Readings;
  // Why the text cannot be read as what it looks like. It can stand beside readings: "02 0G" is no list of
  // bytes, but five characters.
  std::optional<TextProblem> Problem;

  // True when the first reading must not be taken without having been shown.
  bool NeedsChoice() const { return Readings.size() > 1 || (Problem && !Readings.empty()); }
};

ParsedText ParseSerialText(std::u16string_view text);

// "Character 4: ...", counted from 1.
std::string ProblemText(const TextProblem& problem);

// The bytes in use as "50 57 0D"; VAR and IGN bytes as "Variable" and "Ignore".
std::string HexBytes(const SerialString& string);

}  // namespace qdm
