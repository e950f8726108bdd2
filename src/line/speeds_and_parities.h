// The speeds and parities that a line can have: one row each, with everything that they are called and the
// codes that definitions and panels store for them.
#pragma once

#include "base/words.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace qdm {

enum class LineParity { None, Even, Odd };

struct LineSpeed {
  std::int16_t Code;  // stored: never renumber
  int BitsPerSecond;
  std::string_view Digits;  // in a settings text and where values are compared
  std::string_view Caption;
  std::string_view SearchText;  // while a search tries it
};

struct ParityChoice {
  std::int16_t Code;  // stored: never renumber
  LineParity Parity;
  std::string_view Letter;  // in a settings text
  std::string_view Caption;
  std::string_view SearchText;
};

// In the order in which they are tried.
inline constexpr std::array LineSpeeds = {
    LineSpeed{0, 9600, "9600", "9600", "9K6"},        LineSpeed{1, 19200, "19200", "19k2", "19K2"},
    LineSpeed{2, 38400, "38400", "38k4", "38K4"},     LineSpeed{3, 57600, "57600", "57k6", "57K6"},
    LineSpeed{4, 115200, "115200", "115k2", "115K2"},
};
inline constexpr std::array LineParities = {
    ParityChoice{0, LineParity::None, "n", Marked("None"), Marked("none")},
    ParityChoice{1, LineParity::Even, "e", Marked("Even"), Marked("even")},
    ParityChoice{2, LineParity::Odd, "o", Marked("Odd"), Marked("odd")},
};

// Nothing for a code that stands for none.
const LineSpeed* SpeedWithCode(int code);
const ParityChoice* ParityWithCode(int code);
// The speed of a definition: any code that stands for none means 9600.
const LineSpeed& SpeedOf(int code);

}  // namespace qdm
