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
      {"0,n,8,2,extra", {{}, LineParity::None, 8, 2}},
      {"99999999999,n", {{}, LineParity::None, {}, {}}},
      {"", {}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(ParseLineSettings(text), expected) << text;
}

}  // namespace
}  // namespace qdm
