// A port's settings text, "9600,n,8,2": speed, parity letter, data bits, stop bits. A piece that is missing
// or not understood ("19200,0,8,1" has a digit where the letter belongs) is a setting that no port accepts:
// it stays empty, and the port keeps what it had for it.
#pragma once

#include "line/speeds_and_parities.h"
#include "line/waiting.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace qdm {

struct LineSettings {
  std::optional<int> Speed;  // bits a second, above 0
  std::optional<LineParity> Parity;
  std::optional<int> DataBits;  // 5..8
  std::optional<int> StopBits;  // 1 or 2

  friend bool operator==(const LineSettings&, const LineSettings&) = default;
};

// Letters in either case, blanks around a piece ignored.
LineSettings ParseLineSettings(std::string_view settings);

// The time that one byte takes: start bit, 8 data bits, parity bit if there is one, stop bits. What is not
// known counts as 9600, none and 2.
Microseconds TimeOfBytes(std::size_t bytes, const LineSettings& settings);

}  // namespace qdm
