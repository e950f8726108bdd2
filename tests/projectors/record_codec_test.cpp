#include "projectors/projector_definition.h"
#include "support/distinct_projector.h"
#include "support/random_seed.h"

#include <gmock/gmock.h>

#include <map>

namespace qdm {
namespace {

TEST(ProjectorRecord, EveryFieldHasItsPlaceInTheStoredForm) {
  EXPECT_EQ(Encode(DistinctProjector()), DistinctProjectorBytes());
  ProjectorDefinition decoded;
  Decode(DistinctProjectorBytes(), decoded);
  EXPECT_EQ(decoded, DistinctProjector());
}

TEST(ProjectorRecord, GoldenBytes) {
  ProjectorDefinition projector = NamedProjector("\u00C4CME", "M");
  projector.Available[24] = kFlagSet;
  projector.Strings[24].Count = 1;
  projector.Strings[24].Values[31] = 0xAB;
  projector.Strings[24].Kinds[0] = 4;
  projector.MinimumLevel = -2;
  projector.Baudrate = 0x1234;
  const Bytes stored = Encode(projector);
  const std::map<std::size_t, int> expected = {
      {0, 0xC4},  {1, 'C'},     {4, ' '},     {31, ' '},    {32, 'M'},    {33, ' '},    {64, ' '},
      {319, ' '}, {368, 0xFF},  {369, 0xFF},  {1980, 1},    {1981, 0},    {2013, 0xAB}, {2014, 4},
      {2046, 1},  {2048, 0xFE}, {2049, 0xFF}, {2068, 0x34}, {2069, 0x12}, {2074, 1},    {2078, 0xFF},
  };
  ASSERT_EQ(stored.size(), 2084U);
  for (const auto& [offset, byte] : expected) EXPECT_EQ(stored[offset], byte) << "at " << offset;
}

TEST(ProjectorRecord, AnyBytesComeBackAsTheyWere) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  for (int round = 0; round < 200; ++round) {
    const Bytes stored = RandomBytes(random, 2084);
    ProjectorDefinition projector;
    Decode(stored, projector);
    ASSERT_EQ(Encode(projector), stored);
    // What the program asks of a record never depends on its being sane.
    for (const SerialString& string : projector.Strings) {
      static_cast<void>(CompactText(string));
      static_cast<void>(IgnoreMask(string));
    }
    static_cast<void>(SerialBytesUsed(projector));
    static_cast<void>(CleanNames(projector));
  }
}

TEST(ProjectorRecord, AllTextBytesSurvive) {
  Bytes stored(2084, ' ');
  for (std::size_t i = 0; i < 256; ++i) stored[64 + i] = static_cast<std::uint8_t>(i);
  ProjectorDefinition projector;
  Decode(stored, projector);
  EXPECT_EQ(Encode(projector), stored);
  // Also by way of the form in which a user edits them.
  ProjectorDefinition typed;
  typed.Notes.AssignUtf8(ToUtf8(projector.Notes.View()));
  EXPECT_EQ(typed.Notes, projector.Notes);
}

TEST(ProjectorRecord, ClearingLeavesSpeedAndPowerDownLevelAlone) {
  ProjectorDefinition projector = DistinctProjector();
  ProjectorDefinition expected;  // a new definition's defaults
  EXPECT_EQ(expected.MaximumLevel, 1);
  EXPECT_EQ(expected.NumberOfBytes, 1);
  EXPECT_EQ(expected.LevelStep, 1);
  EXPECT_EQ(expected.WarmUpTime, 1);
  EXPECT_EQ(expected.CoolDownTime, 1);
  EXPECT_EQ(expected.VolumeBytePosition, -1);
  EXPECT_EQ(expected.Notes.View(), std::u16string(256, u' '));
  expected.Baudrate = projector.Baudrate;
  expected.UsePowerDown = projector.UsePowerDown;
  ClearProjector(projector);
  EXPECT_EQ(projector, expected);
}

TEST(ProjectorRecord, NamesAreCleanedOfControlCharactersAndOuterBlanks) {
  const struct {
    std::u16string Manufacturer, Model;
    std::u16string CleanManufacturer, CleanModel;
    bool Kept;
  } cases[] = {
      {std::u16string(u"  acme\0\0", 8), u"One", u"ACME", u"One", true},
      {u"\r\n b\u00E4r\x1F \x01", u"\tmodel two ", u"B\u00C4R", u"model two", true},
      {u"ACME", u"     ", u"ACME", u"", false},
      {u"\x01\x02 \x03", u"One", u"", u"One", false},
      {u"a\x7F", u"\u00A0", u"A\x7F", u"\u00A0", true},
  };
  for (const auto& c : cases) {
    ProjectorDefinition projector;
    projector.Manufacturer.Assign(c.Manufacturer);
    projector.Model.Assign(c.Model);
    EXPECT_EQ(CleanNames(projector), c.Kept);
    EXPECT_EQ(projector.Manufacturer.Unpadded(), c.CleanManufacturer);
    EXPECT_EQ(projector.Model.Unpadded(), c.CleanModel);
  }
}

TEST(FixedText, IsPaddedCutAndKeptWithinTheCodePage) {
  FixedText<4> text(u"ab");
  EXPECT_EQ(text.View(), u"ab  ");
  text.Assign(u"abcdef");
  EXPECT_EQ(text.View(), u"abcd");
  text.Assign(u" \u03A9\u20AC");
  EXPECT_EQ(text.View(), u" ?\u20AC ");
  EXPECT_EQ(text.Unpadded(), u" ?\u20AC");
  EXPECT_EQ(text.TrimmedUtf8(), "?\u20AC");
  EXPECT_EQ(FixedText<4>().Unpadded(), u"");
}

TEST(SerialBudget, ReceivedStringsCostTheirMask) {
  ProjectorDefinition projector;
  std::array<bool, kCommandSlots> shown{};
  EXPECT_EQ(SerialBytesUsed(projector, shown), 0);
  const struct {
    std::size_t Slot;
    std::int16_t Count;
    int Cost;
  } cases[] = {{0, 5, 5}, {9, 32, 32}, {10, 5, 9}, {10, 0, 0}, {22, 1, 5}, {23, 1, 1}, {24, 32, 32}};
  for (const auto& c : cases) {
    shown = {};
    shown[c.Slot] = true;
    projector.Strings[c.Slot].Count = c.Count;
    EXPECT_EQ(SerialBytesUsed(projector, shown), c.Cost) << "slot " << c.Slot;
  }
  // Without a form the slots in use are those marked so.
  projector.Available[9] = projector.Available[22] = 1;
  EXPECT_EQ(SerialBytesUsed(projector), 32 + 5);
}

}  // namespace
}  // namespace qdm
