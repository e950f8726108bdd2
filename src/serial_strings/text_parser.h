// Reading a string out of text that was copied somewhere: a projector's manual, a program, a terminal, the
// display's own compact text. Typography is folded first, one line is one command, and every way in which the
// line can be read is tried: bytes one by one ("02 00 0Dh", "3A-52-0D", "\"PWR\" + CR"), characters with
// codes between them ("PWR ON<CR>", "\x02PON\x03", "^BPON^C"), the compact text ("PWR,CRc"), plain
// characters; with and without a label or remark beside the command. Where only one thing can be meant there
// is one reading; else every way is given, the likeliest first, and the user chooses. A reading has 1 to 32
// bytes.
#pragma once

#include "serial_strings/string_record.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct TextReading {
  std::string As;  // English, remarks behind commas (SayEach): "bytes in hexadecimal, all lines"
  SerialString String;
  std::string Part = {};  // what of the text was read (UTF-8); empty: all of it
  bool Doubtful = false;  // it holds what stands for something else ("XX"), or looks like another notation
};

struct TextProblem {
  std::size_t Position = 0;  // of the character, from 0 (UTF-16 units)
  std::string Why;           // UTF-8, a sentence without its end: "\"0G\" is not a byte"
};

struct ParsedText {
  std::vector<TextReading> Readings;
  // Why the text cannot be read as what it looks like, or not be sent as it stands. It can stand beside
  // readings: "02 0G" is no list of bytes, but five characters.
  std::optional<TextProblem> Problem;
  // What was changed or left out, in English: "a no-break space became a blank".
  std::vector<std::string> Notes;

  // True when the first reading must not be taken without having been shown.
  bool NeedsChoice() const;
  // True when no reading should be taken without thinking.
  bool OnlyDoubtful() const;
};

ParsedText ParseSerialText(std::u16string_view text);

// "Character 4: ...", counted from 1.
std::string ProblemText(const TextProblem& problem);

// The bytes in use as "50 57 0D"; VAR and IGN bytes as "Variable" and "Ignore".
std::string HexBytes(const SerialString& string);

}  // namespace qdm
