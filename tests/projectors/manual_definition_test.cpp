#include "projectors/manual_definition.h"

#include "projectors/definition_setup.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

constexpr std::u16string_view kPage =
    u"Baud rate: 19200 Parity: even Stop bits: 2\n"
    u"Power On 02 50 4F 4E 03\nPower Off 02 50 4F 46 03\nRGB 02 52 47 31 03\nAV Mute On 02 42 4B 31 03\n"
    u"Video 02 49 4E 35 03\nVideo 02 49 4E 33 03\nAcknowledge ACK (06h)\n";

TEST(TakeFromManual, TakesWhatIsSureAndShowsIt) {
  ProjectorDefinition projector;
  TakeFromManual(projector, ReadManual(kPage), false);
  EXPECT_EQ(projector.Baudrate, 1);
  EXPECT_EQ(projector.Parity, 1);
  EXPECT_EQ(projector.Stopbits, 1);
  EXPECT_EQ(projector.Strings[1].Values[1], 'P');
  EXPECT_EQ(projector.Strings[4].Count, 0);
  EXPECT_EQ(projector.Strings[11].Values[0], 6);
  const SlotSet shown = ShownSlots(projector);
  for (const std::size_t slot : {1U, 2U, 5U, 8U, 11U, 15U}) EXPECT_TRUE(shown[slot]) << slot;
  EXPECT_FALSE(shown[23]);
  EXPECT_EQ(projector.Notes.Unpadded(), kFromManualNote);
}

TEST(TakeFromManual, TakesTheBestCandidatesTooWhenTold) {
  ProjectorDefinition projector;
  projector.Notes.Assign(u"Ceiling");
  TakeFromManual(projector, ReadManual(kPage), true);
  EXPECT_EQ(projector.Strings[4].Values[3], '5');
  EXPECT_EQ(projector.Notes.Unpadded(), u"Ceiling\r\nFrom a manual, not tried yet");
}

TEST(TakeFromManual, LeavesWhatThePageDoesNotSay) {
  ProjectorDefinition projector;
  projector.Baudrate = 3;
  projector.Strings[1].Count = 2;
  TakeFromManual(projector, ReadManual(u"Nothing of use"), true);
  EXPECT_EQ(projector.Baudrate, 3);
  EXPECT_EQ(projector.Strings[1].Count, 2);
}

}  // namespace
}  // namespace qdm
