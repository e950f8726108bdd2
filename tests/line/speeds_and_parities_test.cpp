#include "line/speeds_and_parities.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

// Definitions are stored with these codes, and may hold any other.
TEST(SpeedsAndParities, CodesOfNoSpeedMean9600AndCodesOfNoParityNothing) {
  EXPECT_EQ(SpeedOf(4).BitsPerSecond, 115200);
  for (const int code : {0, -1, 5, 32767}) EXPECT_EQ(SpeedOf(code).BitsPerSecond, 9600) << code;
  EXPECT_FALSE(SpeedWithCode(5));
  EXPECT_EQ(ParityWithCode(2)->Parity, LineParity::Odd);
  for (const int code : {-1, 3}) EXPECT_FALSE(ParityWithCode(code)) << code;
}

}  // namespace
}  // namespace qdm
