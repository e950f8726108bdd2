#include "manuals/check_sums.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(CheckSums, AreOverAllBytesBeforeThem) {
  EXPECT_TRUE(IsRight(CheckSum::Sum, Bytes{0x02, 0x10, 0xF0, 0x02}));
  EXPECT_FALSE(IsRight(CheckSum::Sum, Bytes{0x02, 0x10, 0xF0, 0x03}));
  EXPECT_TRUE(IsRight(CheckSum::SumFromSecond, Bytes{0x02, 0x10, 0x01, 0x11}));
  EXPECT_TRUE(IsRight(CheckSum::TwosComplement, Bytes{0x02, 0x10, 0x01, 0xED}));
  EXPECT_TRUE(IsRight(CheckSum::ExclusiveOr, Bytes{0x02, 0x10, 0x01, 0x13}));
  EXPECT_FALSE(IsRight(CheckSum::Sum, Bytes{0x02, 0x02}));
}

TEST(SplitByCheckSum, TakesARunApartOnlyWhereEveryCodeIsRight) {
  const Bytes run = {7, 0, 0, 7, 7, 1, 0, 8, 7, 3, 2, 1, 13};
  EXPECT_THAT(SplitByCheckSum(run), testing::ElementsAre(0, 4, 8));
  Bytes broken = run;
  broken[7] = 9;
  EXPECT_THAT(SplitByCheckSum(broken), testing::IsEmpty());
  EXPECT_THAT(SplitByCheckSum(Bytes{7, 0, 0, 7}), testing::IsEmpty());
}

}  // namespace
}  // namespace qdm
