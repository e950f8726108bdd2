#include "panels/frame.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using testing::ElementsAre;

TEST(Frame, IsCheckedThenEscaped) {
  PanelImage image{};
  std::copy_n(std::array<std::uint8_t, 8>{0x21, 0xFF, 0xFF, 0x00, 0x80}.begin(), 8, image.begin());
  EXPECT_THAT(ProgramRecord(image, 0), ElementsAre(0xFF, 0x22, 0x00, 0x00, 0x21, 0xFE, 0xFE, 0xFE, 0xFE, 0x00,
                                                   0x80, 0x00, 0x00, 0x00, 0x40));

  image.fill(0);
  image[256] = 0xFE;
  EXPECT_THAT(ProgramRecord(image, 32),
              ElementsAre(0xFF, 0x22, 0x00, 0x01, 0xFE, 0xFD, 0, 0, 0, 0, 0, 0, 0, 0xE0));
  image[8] = 0xD9;  // a check byte of FE
  EXPECT_THAT(ProgramRecord(image, 1),
              ElementsAre(0xFF, 0x22, 0x08, 0x00, 0xD9, 0, 0, 0, 0, 0, 0, 0, 0xFE, 0xFD));
}

TEST(Frame, AReplyAcknowledgesByItsFirstByte) {
  EXPECT_TRUE(IsAcknowledged(Bytes{0xF0, 0xA5}));
  EXPECT_FALSE(IsAcknowledged(Bytes{0xA5, 0xF0}));
  EXPECT_FALSE(IsAcknowledged({}));
}

}  // namespace
}  // namespace qdm
