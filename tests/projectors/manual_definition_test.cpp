#include "projectors/manual_definition.h"

#include "projectors/definition_setup.h"
#include "support/strings.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

constexpr std::u16string_view kManualPage =
    u"Baud rate: 19200 Parity: even Stop bits: 2\n"
    u"Power On 02 50 4F 4E 03\nPower Off 02 50 4F 46 03\nRGB 02 52 47 31 03\nAV Mute On 02 42 4B 31 03\n"
    u"Video 02 49 4E 35 03\nVideo 02 49 4E 33 03\nAcknowledge ACK (06h)\n";

ProjectorDefinition Filled(const ProjectorDefinition& projector, bool doubtful) {
  return WithManual(projector, ChoicesOf(ReadManual(kManualPage), doubtful));
}

TEST(WithManual, TakesWhatIsSureAndShowsIt) {
  const ProjectorDefinition projector = Filled({}, false);
  EXPECT_EQ(projector.Baudrate, 1);
  EXPECT_EQ(projector.Parity, 1);
  EXPECT_EQ(projector.Stopbits, 1);
  EXPECT_EQ(projector.Strings[1].Values[1], 'P');
  EXPECT_EQ(projector.Strings[4].Count, 0);
  EXPECT_EQ(projector.Strings[11].Values[0], 6);
  const SlotSet shown = ShownSlots(projector);
  for (const std::size_t slot : {1U, 2U, 5U, 8U, 11U, 15U}) EXPECT_TRUE(shown[slot]) << slot;
  EXPECT_FALSE(shown[23]);
  EXPECT_EQ(Filled({}, true).Strings[4].Values[3], '5') << "the best candidates too when told";
}

TEST(WithManual, TakesTheLineAndTheStringsAndSaysSo) {
  ManualChoices choices;
  choices.Line = {.Speed = 19200, .Parity = LineParity::Odd, .StopBits = 2, .Ranges = {}};
  choices.Strings = {{kVolumeDownSlot, Characters("-")}, {kPowerOnReplySlot, Characters("ok")}};
  ProjectorDefinition before;
  before.Notes.Assign(u"Room 5");
  before.Strings[kVideoSlot] = Characters("kept");
  before.WarmUpTime = 30;
  const ProjectorDefinition after = WithManual(before, choices);
  EXPECT_EQ(after.Baudrate, 1);
  EXPECT_EQ(after.Parity, 2);
  EXPECT_EQ(after.Stopbits, 1);
  EXPECT_EQ(after.WarmUpTime, 30);
  EXPECT_EQ(after.Strings[kVideoSlot], before.Strings[kVideoSlot]);
  for (const ManualString& taken : choices.Strings) {
    EXPECT_EQ(after.Strings[taken.Slot], taken.String);
    EXPECT_TRUE(ShownSlots(after)[taken.Slot]) << taken.Slot;
  }
  EXPECT_EQ(after.Notes.Unpadded(), u"Room 5\r\nFrom a manual, not tried yet");
  EXPECT_EQ(WithManual(after, choices).Notes, after.Notes) << "said once";

  choices.Line.Speed = 2400;
  EXPECT_EQ(WithManual(after, choices).Baudrate, 1) << "no definition can have it";
  before.Notes.Assign(std::u16string(250, u'x'));
  EXPECT_EQ(WithManual(before, choices).Notes, before.Notes) << "no room for it";
}

}  // namespace
}  // namespace qdm
