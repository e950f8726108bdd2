#include "projectors/projector_definition.h"
#include "support/distinct_projector.h"

#include <gmock/gmock.h>

#include <map>

namespace qdm {
namespace {

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

  projector.UsePowerDown = 7;
  ClearProjector(projector);
  EXPECT_EQ(projector.MinimumLevel, ProjectorDefinition{}.MinimumLevel);
  EXPECT_EQ(projector.Baudrate + projector.UsePowerDown, 0x1234 + 7) << "clearing leaves them alone";
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

TEST(SerialBudget, ReceivedStringsCostTheirMask) {
  ProjectorDefinition projector;
  const std::array<int, 3> cases[] = {{9, 32, 32}, {10, 5, 9}, {10, 0, 0}, {22, 1, 5}, {23, 1, 1}};
  for (const auto& [slot, count, cost] : cases) {
    const auto at = static_cast<std::size_t>(slot);
    projector.Strings[at].Count = static_cast<std::int16_t>(count);
    projector.Available[at] = kFlagSet;
    EXPECT_EQ(SerialBytesUsed(projector), cost) << "slot " << slot;
    projector.Available[at] = kFlagClear;
  }
}

}  // namespace
}  // namespace qdm
