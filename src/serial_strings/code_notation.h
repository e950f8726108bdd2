// One code between the characters of a text, in the many ways in which manuals, terminals and programs mark
// it: "<CR>", "[0Dh]", "<CR+LF>", "\r", "\x0D", "^M", "CHR$(13)", "0x0D", "%0D", "#13", the pictures of the
// control codes.
#pragma once

#include "serial_strings/byte_notation.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qdm {

struct NotedCode {
  std::array<NotedByte, 2> Bytes{};
  std::size_t Count = 0;  // 1, or 2 for a carriage return with a line feed
  std::size_t End = 0;    // the place behind it
  bool Certain = false;   // the mark is nothing that a command would hold as characters

  void Append(const NotedByte& byte) { Bytes[Count++] = byte; }
};

// The code that begins at `at`. `unmarked` tells what digits in brackets and behind a backslash are;
// `joined` that a code or a quotation ends at `at`, so that "0x02" there is not the end of a word.
std::optional<NotedCode> ReadCode(std::u16string_view text, std::size_t at, Unmarked unmarked, bool joined);

// "CR", "CRLF", "CR+LF", "CR/LF", "CR (0Dh)"; `End` is the text's end.
std::optional<NotedCode> ReadCodeNames(std::u16string_view text);

// A code that usual commands begin or end with: STX, ETX, CR, ...
bool IsUsual(const NotedCode& code);

}  // namespace qdm
