#include "projectors/record_difference.h"

#include "support/distinct_projector.h"

#include <gmock/gmock.h>

#include <functional>

namespace qdm {
namespace {
using testing::ElementsAre;
using testing::IsEmpty;

// The paths of the fields in which a changed copy differs.
std::vector<std::string> Paths(const std::vector<FieldDifference>& differences) {
  std::vector<std::string> paths;
  for (const FieldDifference& difference : differences) paths.push_back(difference.Path);
  return paths;
}

TEST(ProjectorsEqual, EveryWordCountsAndFlagsByTheirMeaning) {
  for (const auto& word : kProjectorWords) {
    ProjectorDefinition changed = DistinctProjector();
    ++(changed.*word.Member);
    EXPECT_EQ(ProjectorsEqual(DistinctProjector(), changed), word.IsFlag) << word.Name;
    changed.*word.Member = 0;
    EXPECT_THAT(Paths(ProjectorDifferences(DistinctProjector(), changed)),
                ElementsAre(std::string(word.Name)));
  }
}

TEST(ProjectorsEqual, DecidesFieldByField) {
  const struct {
    const char* Path;  // empty: still equal
    std::function<void(ProjectorDefinition&)> Change;
  } cases[] = {
      {"", [](auto&) {}},
      {"", [](auto& p) { p.Notes.Assign(u"other"); }},
      {"",
       [](auto& p) {
         p.Reserved = {1, 2};
       }},
      {"", [](auto& p) { p.Manufacturer.Assign(u"acm\u00E9"); }},
      {"", [](auto& p) { p.Model.Assign(u"ONE"); }},
      {"", [](auto& p) { p.Available[3] = 1; }},
      {"Manufacturer", [](auto& p) { p.Manufacturer.Assign(u"ACMY"); }},
      {"Model", [](auto& p) { p.Model.Assign(u"One A"); }},
      {"Available[24]", [](auto& p) { p.Available[24] = 1; }},
      {"RequiresReply[12]", [](auto& p) { p.RequiresReply[12] = -1; }},
      {"Strings[0]", [](auto& p) { p.Strings[0].Count = 1; }},
      // Bytes behind the count take part: they are stored, and shown again when the count grows.
      {"Strings[24]", [](auto& p) { p.Strings[24].Values[31] = 1; }},
      {"Strings[6]", [](auto& p) { p.Strings[6].Kinds[0] = 1; }},
  };
  ProjectorDefinition original = NamedProjector("ACM\u00C9", "One");
  original.Available[3] = kFlagSet;
  for (const auto& c : cases) {
    ProjectorDefinition changed = original;
    c.Change(changed);
    const std::string path = c.Path;
    if (path.empty()) {
      EXPECT_THAT(ProjectorDifferences(original, changed), IsEmpty());
    } else {
      EXPECT_THAT(Paths(ProjectorDifferences(original, changed)), ElementsAre(path));
    }
    EXPECT_EQ(ProjectorsEqual(changed, original), path.empty()) << path;
  }
}

TEST(Differences, TellBothValuesAsAReaderKnowsThem) {
  ProjectorDefinition first = NamedProjector("ACME", " One");
  ProjectorDefinition second = NamedProjector("ACME", "One");
  second.Notes.Assign(u"n");
  first.Available[3] = kFlagSet;
  second.Available[3] = 2;
  second.RequiresReply[0] = kFlagSet;
  first.MinimumLevel = -7;
  first.Strings[1].Count = 1;
  first.Strings[1].Values[0] = 'P';
  // The compact text cannot tell these two apart.
  second.Strings[2].Values[30] = 0xAB;
  const std::string zeros = [] {
    std::string text;
    for (int i = 0; i < 30; ++i) text += " 00";
    return text;
  }();
  const std::string kinds = " Kinds" + [] {
    std::string text;
    for (int i = 0; i < 32; ++i) text += " 0";
    return text;
  }();
  EXPECT_THAT(Differences(first, second),
              ElementsAre(FieldDifference{"Model", " One", "One"}, FieldDifference{"Notes", "", "n"},
                          FieldDifference{"Available[3]", "true", "2"},
                          FieldDifference{"RequiresReply[0]", "false", "true"},
                          FieldDifference{"Strings[1]", "\"P\"", "\"\""},
                          FieldDifference{"Strings[2]", "\"\" Count 0 Values" + zeros + " 00 00" + kinds,
                                          "\"\" Count 0 Values" + zeros + " AB 00" + kinds},
                          FieldDifference{"MinimumLevel", "-7", "0"}));
}

}  // namespace
}  // namespace qdm
