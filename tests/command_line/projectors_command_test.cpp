#include "support/qdm_runner.h"

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

ProjectorDefinition WithSpeed(ProjectorDefinition projector, std::int16_t baudrate) {
  projector.Baudrate = baudrate;
  return projector;
}

// Its folder holds the library too.
struct ProjectorsCommand : testing::Test {
  std::vector<ProjectorDefinition> Library() const { return ReadDefinitions(qdm.Folder / "Projectors.DEF"); }

  QdmRunner qdm;
};

TEST_F(ProjectorsCommand, ListsNamesAndBytesInUseAndRecoversADamagedLibrary) {
  ProjectorDefinition used = Named("Überblick", "Ä 3");
  used.Available[10] = used.Available[1] = kFlagSet;
  used.Strings[10].Count = 5;  // and the mask of a reply
  used.Strings[1].Count = 2;
  used.Strings[2].Count = 9;  // not in use
  qdm.Write("Projectors.DEF", std::vector{Named("acme", "Two"), used, Named(" ", "dropped")});
  const std::string list = "ACME\tTwo\t0\nÜBERBLICK\tÄ 3\t11\n";
  EXPECT_THAT(qdm.Run({"projectors", "list"}), Answers(0, list, ""));
  EXPECT_EQ(Library().size(), 3U);  // a list writes nothing

  std::filesystem::rename(qdm.Folder / "Projectors.DEF", qdm.Folder / "Projectors.BAK");
  std::filesystem::create_directory(qdm.Folder / "Projectors.DEF");
  EXPECT_THAT(qdm.Run({"projectors", "list"}), Answers(0, list, HasSubstr("file damaged!")));
  EXPECT_THAT(qdm.Run({"projectors", "list", "--data", qdm.Path("typo")}), IsUnusable("no such folder"));
}

TEST_F(ProjectorsCommand, AddsWhatIsNewAndSettlesConflictsAsTold) {
  const ProjectorDefinition one = Named("ACME", "One");
  const ProjectorDefinition two = Named("ACME", "Two");
  const ProjectorDefinition three = Named("ACME", "Three");
  const std::string file = qdm.Write("new.BVD", std::vector{WithSpeed(one, 3), two, three, Named("A", " ")});
  const std::vector<std::tuple<std::string, std::string, std::vector<ProjectorDefinition>>> cases = {
      {"keep", "1 kept as they were\n", {two, one, three}},
      {"replace", "1 replaced\n", {two, WithSpeed(one, 3), three}},
      {"rename", "1 renamed\n", {two, one, WithSpeed(Named("ACME", "One (2)"), 3), three}},
  };
  for (const auto& [answer, done, library] : cases) {
    qdm.Write("Projectors.DEF", std::vector{two, one});
    EXPECT_THAT(qdm.Run({"projectors", "add", file, "--on-conflict", answer}),
                Answers(0, "1 added, 1 unchanged, " + done, ""));
    EXPECT_EQ(Library(), library) << answer;
  }
  qdm.Write("Projectors.DEF", std::vector{two, one});
  EXPECT_THAT(qdm.Run({"projectors", "add", file}),
              Answers(1, "1 added, 1 unchanged, 1 not imported\n", HasSubstr("ACME / One")));
  EXPECT_THAT(Library(), ElementsAre(two, one, three));
}

TEST_F(ProjectorsCommand, RenamesIntoTheFirstFreeNameAndCutsTheModel) {
  const ProjectorDefinition full = Named("A", std::string(32, 'm'));
  qdm.Write("Projectors.DEF", std::vector{full, Named("A", std::string(28, 'm') + " (2)")});
  const std::string file = qdm.Write("new.BVD", std::vector(8, WithSpeed(full, 1)));
  ASSERT_EQ(qdm.Run({"projectors", "add", file, "--on-conflict", "rename"}).Status, 0);
  const std::vector<ProjectorDefinition> library = Library();
  ASSERT_EQ(library.size(), 10U);
  EXPECT_EQ(library[2].Model.TrimmedUtf8(), std::string(28, 'm') + " (3)");
  EXPECT_EQ(library[9].Model.TrimmedUtf8(), std::string(27, 'm') + " (10)");
}

TEST_F(ProjectorsCommand, ExtractsSortedByModelAndRemovesOne) {
  qdm.Write("Projectors.DEF", std::vector{Named("AC", "b"), Named("OTHER", "x"), Named("AC", "A")});
  const std::string all = qdm.Path("all.BVD");
  EXPECT_THAT(qdm.Run({"projectors", "extract", "ac", "-o", all}), Answers(0, "", ""));
  EXPECT_THAT(ReadDefinitions(all), ElementsAre(Named("AC", "A"), Named("AC", "b")));
  for (const char* name : {"a", "", "a name that is longer than any name can be", "Ж"}) {
    EXPECT_THAT(qdm.Run({"projectors", "extract", name, "-o", qdm.Path("no.BVD")}),
                Answers(1, "", HasSubstr("not in the projector library")));
  }
  EXPECT_FALSE(qdm.Exists("no.BVD"));

  EXPECT_THAT(qdm.Run({"projectors", "remove", "ac", " B "}), Answers(0, "", ""));
  EXPECT_THAT(Library(), ElementsAre(Named("OTHER", "x"), Named("AC", "A")));
  EXPECT_EQ(ReadDefinitions(qdm.Folder / "Projectors.BAK").size(), 3U);
}

}  // namespace
}  // namespace qdm
