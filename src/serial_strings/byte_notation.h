// One byte as manuals and the display write it: "0Dh", "0x0D", "013d", "1101b", "CRc", "STX", "Variable".
#pragma once

#include "serial_strings/string_record.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qdm {

struct NotedByte {
  std::uint8_t Value = 0;
  ByteKind Kind = ByteKind::ASC;
  bool Marked = false;  // the notation itself says what it is; "10" and "STX" could be text
};

// What digits without a mark are, and whether "FF" is a form feed or 255. Binary ones are eight.
enum class Unmarked { Hexadecimal, HexadecimalAfterNames, Decimal, Binary };

std::optional<NotedByte> ReadNumber(std::u16string_view text, Unmarked unmarked);
// The names of the control codes and a few others ("SP", "TAB", "DEL"), in either case.
std::optional<NotedByte> ReadCodeName(std::u16string_view text);
// A number or a name, in the order that `unmarked` tells.
std::optional<NotedByte> ReadByte(std::u16string_view text, Unmarked unmarked);
// Exactly as the compact text writes a byte that is not a character.
std::optional<NotedByte> ReadCompactByte(std::u16string_view text);

}  // namespace qdm
