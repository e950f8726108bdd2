#include "projectors/projector_volume.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(ProjectorVolume, SettingsComeBackFromTheDefinition) {
  const VolumeFormat format = {100, -20, 5, 30, true, 4, LevelFormat::RawBytes, true};
  ProjectorDefinition projector;
  StoreVolumeFormat(projector, format);
  EXPECT_EQ(VolumeFormatOf(projector), format);
  EXPECT_EQ(projector.UsePowerDown, kFlagSet);
  EXPECT_EQ(projector.FirstByteIsHigh, kFlagSet);
  EXPECT_EQ(projector.MessageFormat, 2);
}

TEST(ProjectorVolume, UnknownMessageFormatReadsAsHex) {
  ProjectorDefinition projector;
  projector.MessageFormat = 7;
  projector.FirstByteIsHigh = 1;
  EXPECT_EQ(VolumeFormatOf(projector).MessageFormat, LevelFormat::HexInAscii);
  EXPECT_TRUE(VolumeFormatOf(projector).FirstByteIsHigh);
}

}  // namespace
}  // namespace qdm
