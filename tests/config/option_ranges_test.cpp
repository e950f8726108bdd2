#include "config/option_ranges.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

// What the panels take and what their installers know the messages by.
TEST(OptionRanges, AreTheEstablishedOnes) {
  using Record = PanelConfiguration;
  const struct {
    std::int16_t Record::*Field;
    int Low, High;
    const char* Label;
    const char* Unit;
  } expected[] = {
      {&Record::UpTime, 1, 255, "", "s"},
      {&Record::DownTime, 1, 255, "", "s"},
      {&Record::RoomTimeout, 1, 255, "Room empty timeout", "min"},
      {&Record::ThresholdVoltage, 0, 255, "Voltage threshold for PIR sensor", "5 V / 255"},
      {&Record::LockAfterProjectorOffPeriod, 0, 255, "Lock panel timeout after projector off", ""},
      {&Record::LockAfterRoomEmptyPeriod, 0, 255, "Lock panel timeout after room empty timeout", ""},
      {&Record::NoButtonPowerDown, 1, 10, "No button press power down time out", ""},
      {&Record::VolumeMin, -45, 18, "TL-VOX minimum volume", "dB"},
      {&Record::VolumeMax, -6, 18, "TL-VOX minimum volume", "dB"},
      {&Record::VolumeStep, 1, 6, "TL-VOX volume steps", "dB"},
      {&Record::PowerUpVolume, -6, 18, "TL-VOX powerup level", "dB"},
      {&Record::TLVOXpowerDownTime, 1, 15, "No audio input power down time out", ""},
  };
  EXPECT_EQ(std::size(expected), kOptionRanges.size());
  for (const auto& e : expected) {
    const OptionRange& range = RangeOf(e.Field);
    EXPECT_EQ(range.Low, e.Low) << e.Label;
    EXPECT_EQ(range.High, e.High) << e.Label;
    EXPECT_EQ(range.Label, e.Label);
    EXPECT_EQ(range.Unit, e.Unit) << e.Label;
  }
}

}  // namespace
}  // namespace qdm
