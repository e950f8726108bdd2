#include "projectors/field_captions.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

using testing::ElementsAre;

// A definition that differs from a cleared one in every field that is compared, names apart.
ProjectorDefinition EverythingElse() {
  Bytes stored(kStoredProjectorSize, 0x21);
  ProjectorDefinition projector;
  Decode(stored, projector);
  projector.Manufacturer = projector.Model = {};
  return projector;
}

TEST(FieldCaptions, EveryFieldThatCanDifferHasWordsOfItsOwn) {
  std::set<std::string> captions;
  for (const FieldDifference& difference : ProjectorDifferences(EverythingElse(), ProjectorDefinition())) {
    const std::string caption = FieldCaption(difference.Path);
    EXPECT_NE(caption, difference.Path == "Parity" ? "" : difference.Path);
    EXPECT_TRUE(captions.insert(caption).second) << caption << " stands for two fields";
  }
  EXPECT_EQ(captions.size(), 25U + 13U + 25U + 17U);
}

TEST(FieldCaptions, NameFieldsAsTheSetupDialogDoes) {
  const std::pair<const char*, const char*> cases[] = {
      {"Strings[6]", "Volume up"},
      {"Strings[16]", "Volume up reply"},
      {"Available[24]", "Blank Off: available"},
      {"RequiresReply[1]", "Power on: requires reply"},
      {"RequiresReply[10]", "External on: requires reply"},
      {"RequiresReply[12]", "Blank Off: requires reply"},
      {"InterByteDelay", "Minimum delay between serial bytes"},
      {"Strings[99]", "Strings[99]"},
      {"Spare[3]", "Spare[3]"},
  };
  for (const auto& [path, caption] : cases) EXPECT_EQ(FieldCaption(path), caption);
}

TEST(FieldCaptions, ValuesAreNamedAndStillTellTheDefinitionsApart) {
  ProjectorDefinition first;
  ProjectorDefinition second;
  first.UseLevels = kFlagSet;
  first.FirstByteIsHigh = 7;
  first.Baudrate = 7;  // as good as 0
  first.Parity = 2;
  second.Parity = 9;
  first.Stopbits = 1;
  second.Stopbits = 2;
  first.WarmUpTime = 30;
  EXPECT_THAT(DifferencesInWords(first, second),
              ElementsAre(FieldDifference{"Volume: first byte is", "High", "Low"},
                          FieldDifference{"Uses levels", "Yes", "No"},
                          FieldDifference{"Speed", "9600 (7)", "9600 (0)"},
                          FieldDifference{"Warm up time", "30", "1"}, FieldDifference{"Parity", "Odd", "9"},
                          FieldDifference{"Stop bits", "2 (1)", "2 (2)"}));
}

}  // namespace
}  // namespace qdm
