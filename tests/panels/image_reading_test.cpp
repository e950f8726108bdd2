#include "panels/image_reading.h"

#include "config/panel_configuration.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

// What goes into the memory comes back, but for names and the kinds that the panel does not know.
TEST(ImageReading, GivesBackTheProjectorThatThePanelWasProgrammedFor) {
  for (const int turn : {0, 1, 2, 3}) {
    PanelConfiguration configuration;
    configuration.ControllerType = kQdm7;
    ProjectorDefinition& projector = configuration.Projector;
    projector.MessageFormat = static_cast<std::int16_t>(turn % 3);
    projector.NumberOfBytes = static_cast<std::int16_t>(turn + 1);
    projector.UseLevels = FlagOf(turn % 2 == 0);
    projector.FirstByteIsHigh = FlagOf(turn % 2 == 1);
    projector.UsePowerDown = kFlagSet;  // else the level at power up is the lowest one
    projector.MaximumLevel = static_cast<std::int16_t>(300 + turn);
    projector.MinimumLevel = static_cast<std::int16_t>(-5 - turn);
    projector.LevelStep = 7;
    projector.VolumeBytePosition = 2;
    projector.Baudrate = static_cast<std::int16_t>(turn);
    projector.Parity = 2;
    projector.Stopbits = static_cast<std::int16_t>(turn % 2);
    projector.InterCommandDelay = 11;
    projector.InterByteDelay = 12;
    projector.WarmUpTime = 13;
    projector.CoolDownTime = 14;
    for (const Slot slot : {kPowerOnSlot, kVolumeUpSlot, kPowerOnReplySlot}) {
      SerialString& string = projector.Strings[slot];
      projector.Available[slot] = kFlagSet;
      string.Count = static_cast<std::int16_t>(9 + turn);
      for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
        string.Values[i] = static_cast<std::uint8_t>(slot + i);
        string.Kinds[i] = static_cast<std::uint8_t>(ByteKind::HEX);
      }
    }
    projector.Strings[kVolumeUpSlot].Kinds[1] = static_cast<std::uint8_t>(ByteKind::VAR);
    for (const std::size_t ignored : {0U, 7U, 8U})
      projector.Strings[kPowerOnReplySlot].Kinds[ignored] = static_cast<std::uint8_t>(ByteKind::IGN);
    projector.RequiresReply[ReceivedIndex(kPowerOnReplySlot)] = kFlagSet;

    ProjectorDefinition read = ProjectorInImage(BuildPanelImage(configuration), kQdm7).value();
    projector.FixedStartLevel = read.FixedStartLevel;
    EXPECT_EQ(Encode(read), Encode(projector)) << turn;
  }
}

}  // namespace
}  // namespace qdm
