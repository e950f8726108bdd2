#include "projectors/projector_library.h"

#include "support/distinct_projector.h"
#include "support/seeded_random.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {
using testing::Eq;
using testing::Optional;

TEST(ProjectorLibrary, FindsTheFirstOfAnyCaseOverTheWholeNames) {
  ProjectorLibrary library;
  for (const char* model : {"One", "Two", "ONE", "\u00C4rger"}) library.Append(NamedProjector("ACME", model));
  EXPECT_THAT(library.FindProjector(NamedProjector("acme", "oNE")), Optional(Eq(0U)));
  EXPECT_THAT(library.FindProjector(NamedProjector("Acme", "\u00E4RGER")), Optional(Eq(3U)));
  for (const char* other : {" One", "On", "One."}) {
    EXPECT_EQ(library.FindProjector(NamedProjector("ACME", other)), std::nullopt) << other;
  }
  // Where one name ends and the next begins counts.
  EXPECT_EQ(library.FindProjector(NamedProjector("ACM", "EOne")), std::nullopt);
}

TEST(ProjectorLibrary, TheIndexAgreesWithASearchFromTheFirstElementThroughAnyChanges) {
  SeededRandom random;
  ProjectorLibrary library;
  const auto anyProjector = [&random] {
    const std::string model = std::to_string(random() % 60);
    return NamedProjector(random() % 2 == 0 ? "ACME" : "Acme", random() % 2 == 0 ? "m" + model : "M" + model);
  };
  const auto modelOf = [](const ProjectorDefinition& p) { return UpperCase(p.Model.View()); };
  for (int change = 0; change < 3000; ++change) {
    const ProjectorDefinition projector = anyProjector();
    const auto choice = random() % 16;
    if (choice == 0 && change % 50 == 0) {
      library.Clear();
    } else if (choice < 8 || !library.Loaded()) {
      library.Append(projector);
    } else if (choice < 12) {
      library.Replace(random() % library.Size(), projector);
    } else {
      library.Remove(random() % library.Size());
    }
    const ProjectorDefinition wanted = anyProjector();
    std::optional<std::size_t> expected;
    for (std::size_t i = 0; i < library.Size() && !expected; ++i) {
      if (modelOf(library[i]) == modelOf(wanted)) expected = i;
    }
    ASSERT_EQ(library.FindProjector(wanted), expected) << "after change " << change;
  }
}

}  // namespace
}  // namespace qdm
