#include "projectors/field_captions.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

using testing::ElementsAre;

TEST(FieldCaptions, EveryFieldThatCanDifferHasWordsOfItsOwn) {
  ProjectorDefinition other;
  Decode(Bytes(kStoredProjectorSize, 0x21), other);
  other.Manufacturer = other.Model = {};
  std::set<std::string> captions;
  for (const FieldDifference& difference : ProjectorDifferences(other, ProjectorDefinition())) {
    const std::string caption = CaptionOf(difference.Place);
    EXPECT_NE(caption, difference.Place.Field.Name == "Parity" ? "" : PathOf(difference.Place));
    EXPECT_TRUE(captions.insert(caption).second) << caption << " stands for two fields";
  }
  EXPECT_EQ(captions.size(), 25U + 13U + 25U + 17U);
}

TEST(FieldCaptions, ValuesAreNamedAndStillTellTheDefinitionsApart) {
  ProjectorDefinition first;
  ProjectorDefinition second;
  first.UseLevels = kFlagSet;
  first.FirstByteIsHigh = 7;
  first.Baudrate = 7;  // as good as 0
  first.Stopbits = 1;
  second.Stopbits = 2;
  EXPECT_THAT(
      DifferencesInWords(first, second),
      ElementsAre(DifferenceText{"Volume: first byte is", "High", "Low"},
                  DifferenceText{"Uses levels", "Yes", "No"}, DifferenceText{"Speed", "9600 (7)", "9600 (0)"},
                  DifferenceText{"Stop bits", "2 (1)", "2 (2)"}));
}

}  // namespace
}  // namespace qdm
