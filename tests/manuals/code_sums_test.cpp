#include "manuals/code_sums.h"

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

TEST(CheckSums, AreComputedAsTheyAreProven) {
  const Bytes bytes{0x02, 0x10, 0xF0, 0x07};
  for (const CheckSum check : kCheckSums) {
    Bytes code = bytes;
    code.push_back(SumOf(check, bytes));
    EXPECT_TRUE(IsRight(check, code));
  }
}

// 4B37h is the CRC-16 of "123456789" that starts from FFFFh, BB3Dh the one that starts from 0.
TEST(Crc16Start, LeadsBackToWhereTheSumBegan) {
  const Bytes digits{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  EXPECT_EQ(Crc16Start(digits, 0x4B37), 0xFFFF);
  EXPECT_EQ(Crc16Start(digits, 0xBB3D), 0);
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
