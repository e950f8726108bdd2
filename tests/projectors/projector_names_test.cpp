#include "projectors/projector_names.h"

#include "support/distinct_projector.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

TEST(ProjectorNames, ADefinitionIsRenamedToTheFirstFreeNumber) {
  const std::string full(32, 'm');
  ProjectorLibrary library;
  for (const std::string& model : {full, std::string(28, 'M') + " (2)", std::string("One")}) {
    library.Append(NamedProjector("ACME", model));
  }
  const std::pair<std::string, std::string> cases[] = {
      {full, std::string(28, 'm') + " (3)"}, {"One", "One (2)"}, {"New", "New (2)"}};
  for (const auto& [model, renamed] : cases) {
    ProjectorDefinition projector = NamedProjector("ACME", model);
    RenameUntilFree(projector, library);
    EXPECT_EQ(projector.Model.TrimmedUtf8(), renamed);
  }
  ProjectorDefinition blankAtTheCut = NamedProjector("ACME", std::string(27, 'm') + " mmmm");
  RenameUntilFree(blankAtTheCut, library);
  EXPECT_EQ(blankAtTheCut.Model.TrimmedUtf8(), std::string(27, 'm') + " (2)");
}

TEST(ProjectorNames, PastingTakesNamesThatAreFreeAndTheClipboardKeepsThem) {
  ProjectorLibrary library;
  library.Append(NamedProjector("ACME", "X 1"));
  ProjectorDefinition clipboard = library[0];
  const auto refusal = PasteUnderNames(library, clipboard, TypedName(u"acme "), TypedName(u" x 1"));
  EXPECT_EQ(refusal, (Message{"Projector ACME / x 1 already exists cannot paste to this name!",
                              "Sorry cannot paste", MessageIcon::Exclamation}));
  EXPECT_EQ(clipboard, library[0]);
  EXPECT_EQ(PasteUnderNames(library, clipboard, TypedName(u"  Bräu "), TypedName(u" Neu 2 ")), std::nullopt);
  ASSERT_EQ(library.Size(), 2U);
  EXPECT_EQ(library[1], NamedProjector("BRÄU", "Neu 2"));
  EXPECT_EQ(clipboard, library[1]);
}

TEST(ProjectorNames, RenamingTakesOnlyNamesThatAreFreeOrItsOwn) {
  ProjectorLibrary library;
  for (const char* model : {"X 1", "X 2"}) library.Append(NamedProjector("ACME", model));
  const auto renamed = [&library](std::u16string_view model) {
    return RenameElement(library, 0, TypedName(u"acme"), TypedName(model));
  };
  EXPECT_EQ(renamed(u"x 2"), (Message{"Projector ACME / x 2 already exists cannot rename to this name!",
                                      "Sorry cannot rename", MessageIcon::Exclamation}));
  EXPECT_EQ(library[0], NamedProjector("ACME", "X 1"));
  EXPECT_EQ(renamed(u"x 1"), std::nullopt);
  EXPECT_EQ(library[0], NamedProjector("ACME", "x 1"));
}

}  // namespace
}  // namespace qdm
