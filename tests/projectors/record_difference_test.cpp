#include "projectors/record_difference.h"

#include "projectors/difference_text.h"
#include "support/distinct_projector.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <functional>

namespace qdm {
namespace {
using testing::ElementsAre;

TEST(ProjectorsEqual, EveryWordCountsAndFlagsByTheirMeaning) {
  for (const auto& word : kProjectorWords) {
    ProjectorDefinition changed = DistinctProjector();
    ++(changed.*word.Member);
    EXPECT_EQ(ProjectorsEqual(DistinctProjector(), changed), word.IsFlag) << word.Name;
  }
}

TEST(ProjectorsEqual, DecidesFieldByField) {
  const struct {
    const char* Path;  // empty: still equal
    std::function<void(ProjectorDefinition&)> Change;
  } cases[] = {
      {"", [](auto& p) { p.Notes.Assign(u"other"); }},
      {"", [](auto& p) { p.Reserved.fill(1); }},
      {"", [](auto& p) { p.Manufacturer.Assign(u"acm\u00E9"); }},
      {"", [](auto& p) { p.Available[3] = 1; }},
      {"Manufacturer", [](auto& p) { p.Manufacturer.Assign(u"ACMY"); }},
      {"Available[24]", [](auto& p) { p.Available[24] = 1; }},
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
    const std::vector<FieldDifference> found = ProjectorDifferences(original, changed);
    EXPECT_EQ(found.empty() ? "" : PathOf(found.front().Place), c.Path);
    EXPECT_EQ(ProjectorsEqual(changed, original), found.empty()) << c.Path;
  }
}

TEST(Differences, TellBothValuesAsAReaderKnowsThem) {
  ProjectorDefinition first = NamedProjector("ACME", " One");
  ProjectorDefinition second = NamedProjector("ACME", "One");
  first.Available[3] = kFlagSet;
  second.Available[3] = 2;
  first.Strings[1] = Characters("P");
  first.MinimumLevel = -7;
  EXPECT_THAT(
      TextsOf(Differences(first, second)),
      ElementsAre(DifferenceText{"Model", " One", "One"}, DifferenceText{"Available[3]", "true", "2"},
                  DifferenceText{"Strings[1]", "\"P\"", "\"\""}, DifferenceText{"MinimumLevel", "-7", "0"}));
}

}  // namespace
}  // namespace qdm
