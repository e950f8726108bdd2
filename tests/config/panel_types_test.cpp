#include "config/panel_types.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

TEST(PanelTypes, AreFoundByTheNamesThatPeopleType) {
  for (const char* name : {"QDM 7", "QDM7", "qdm7", " Q d m 7"}) {
    ASSERT_TRUE(PanelTypeNamed(name)) << name;
    EXPECT_EQ(PanelTypeNamed(name)->Code, kQdm7) << name;
  }
  EXPECT_EQ(PanelTypeNamed("tl-vox")->Code, kTlVox);
  for (const char* name : {"", "QDM", "QDM 5", "TLVOX", "QDM 77"}) EXPECT_FALSE(PanelTypeNamed(name)) << name;
  EXPECT_EQ(CaptionsOfPanelTypes(" or "), "QDM 7, QDM 6, QDM 4 or TL-VOX");
  EXPECT_EQ(CaptionsOfPanelTypes(), "QDM 7, QDM 6, QDM 4, TL-VOX");
}

// Records may hold any code: such a record is taken for a panel's.
TEST(PanelTypes, CodesOfNoTypeAreNoAmplifier) {
  for (const int code : {-32768, -1, 4, 32767}) {
    EXPECT_FALSE(PanelTypeOf(code)) << code;
    EXPECT_FALSE(IsAmplifier(code)) << code;
    EXPECT_EQ(MemoryLayoutOf(code), MemoryLayout::Qdm) << code;
  }
  EXPECT_TRUE(IsAmplifier(kTlVox));
  EXPECT_EQ(MemoryLayoutOf(kTlVox), MemoryLayout::Tlvox);
  EXPECT_FALSE(PanelTypeOfModel(0));
  EXPECT_EQ(PanelTypeOfModel(4)->Code, kTlVox);
}

}  // namespace
}  // namespace qdm
