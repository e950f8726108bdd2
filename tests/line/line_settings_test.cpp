#include "line/line_settings.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(LineSettings, KeepsWhatIsUnderstoodAndLeavesTheRestEmpty) {
  const struct {
    const char* Text;
    LineSettings Expected;
  } cases[] = {
      {"9600,n,8,2", {9600, LineParity::None, 8, 2}},
      {"115200,E,8,1", {115200, LineParity::Even, 8, 1}},
      {" 19200 , o , 7 , 1 ", {19200, LineParity::Odd, 7, 1}},
      {"19200,0,8,1", {19200, {}, 8, 1}},  // a digit where the letter belongs
      {"9600,2", {9600, {}, {}, {}}},      // no parity piece
      {"9600,n,9,3", {9600, LineParity::None, {}, {}}},
      {"9600x,none,8,", {{}, {}, 8, {}}},
      {"1,n,5,1,2", {1, LineParity::None, 5, 1}},
      {"4000000,n,4,0", {4'000'000, LineParity::None, {}, {}}},
      {"4000001,n,8,2", {{}, LineParity::None, 8, 2}},
      {"0,n,8,2,extra", {{}, LineParity::None, 8, 2}},
      {"99999999999,n", {{}, LineParity::None, {}, {}}},
      {"", {}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(ParseLineSettings(text), expected) << text;
}

// A start bit, eight data bits, one for a parity that is used, and the stop bits; rounded up to whole
// microseconds.
TEST(LineSettings, SayHowLongBytesTake) {
  const struct {
    const char* Settings;
    std::size_t Bytes;
    int Microseconds;
  } cases[] = {{"9600,n,8,2", 1, 1146},  {"9600,n,8,1", 96, 100'000}, {"10000,e,8,1", 1, 1100},
               {"10000,o,8,2", 2, 2400}, {"1000000,n,8,1", 3, 30},    {"", 1, 1146},
               {"9600,n,8,2", 0, 0}};
  for (const auto& [settings, bytes, expected] : cases)
    EXPECT_EQ(TimeOfBytes(bytes, ParseLineSettings(settings)), Microseconds(expected)) << settings;
}

}  // namespace
}  // namespace qdm
