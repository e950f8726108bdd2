#include "support/qdm_runner.h"

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

ProjectorDefinition WithSpeed(ProjectorDefinition projector, std::int16_t baudrate) {
  projector.Baudrate = baudrate;
  return projector;
}

// A library with ACME / One and ACME / Two in the folder "data".
struct ProjectorsCommand : testing::Test {
  ProjectorsCommand() { SetLibrary({Named("ACME", "Two"), Named("ACME", "One")}); }

  void SetLibrary(const std::vector<ProjectorDefinition>& definitions) const {
    std::filesystem::create_directories(qdm.Folder / "data");
    qdm.Write("data/Projectors.DEF", definitions);
  }
  Outcome Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "projectors");
    arguments.insert(arguments.end(), {"--data", qdm.Path("data")});
    return qdm.Run(arguments);
  }
  std::vector<std::string> Models() const {
    std::vector<std::string> models;
    for (const auto& projector : ReadDefinitions(qdm.Folder / "data/Projectors.DEF")) {
      models.push_back(projector.Model.TrimmedUtf8());
    }
    return models;
  }

  QdmRunner qdm;
};

TEST_F(ProjectorsCommand, ListsNamesAndBytesInTheOrderOfTheLibraryAndWritesNothing) {
  ProjectorDefinition third = Named("Überblick", "Ä 3");
  third.Available[10] = third.Available[1] = kFlagSet;
  third.Strings[10].Count = 5;  // and the mask of a reply
  third.Strings[1].Count = 2;
  third.Strings[2].Count = 9;  // not in use
  SetLibrary({Named("acme", "Two"), third, Named(" ", "dropped")});
  EXPECT_THAT(Run({"list"}), Answers(0, "ACME\tTwo\t0\nÜBERBLICK\tÄ 3\t11\n", ""));
  EXPECT_THAT(Models(), ElementsAre("Two", "Ä 3", "dropped"));
  EXPECT_FALSE(qdm.Exists("data/Projectors.BAK"));
}

TEST_F(ProjectorsCommand, RecoversADamagedLibraryAsTheEditorDoes) {
  std::filesystem::rename(qdm.Folder / "data/Projectors.DEF", qdm.Folder / "data/Projectors.BAK");
  std::filesystem::create_directory(qdm.Folder / "data/Projectors.DEF");
  EXPECT_THAT(Run({"list"}), Answers(0, "ACME\tTwo\t0\nACME\tOne\t0\n",
                                     HasSubstr("Projectors.DEF: Projector configuration file damaged!")));
}

TEST_F(ProjectorsCommand, AddsWhatIsNewAndSettlesConflictsAsTold) {
  const ProjectorDefinition changed = WithSpeed(Named("acme", "one"), 3);
  const ProjectorDefinition same = Named("Acme", "Two");
  const ProjectorDefinition fresh = Named("acme", "Three");
  const std::string file = qdm.Write("new.BVD", std::vector{changed, same, fresh, Named("acme", " ")});
  struct Case {
    std::vector<std::string> Answer;
    int Status;
    std::string Out;
    std::vector<std::string> Models;
    std::int16_t SpeedOfOne;
  };
  const std::vector<Case> cases = {
      {{}, 1, "1 added, 1 unchanged, 1 not imported\n", {"Two", "One", "Three"}, 0},
      {{"--on-conflict", "keep"},
       0,
       "1 added, 1 unchanged, 1 kept as they were\n",
       {"Two", "One", "Three"},
       0},
      {{"--on-conflict", "replace"}, 0, "1 added, 1 unchanged, 1 replaced\n", {"Two", "one", "Three"}, 3},
      {{"--on-conflict", "rename"},
       0,
       "1 added, 1 unchanged, 1 renamed\n",
       {"Two", "One", "one (2)", "Three"},
       0},
  };
  for (const Case& c : cases) {
    SetLibrary({Named("ACME", "Two"), Named("ACME", "One")});
    std::vector<std::string> arguments = {"add", file};
    arguments.insert(arguments.end(), c.Answer.begin(), c.Answer.end());
    const Outcome outcome = Run(arguments);
    EXPECT_THAT(outcome, Answers(c.Status, c.Out, testing::_));
    EXPECT_EQ(outcome.Err.empty(), c.Status == 0) << outcome.Err;
    EXPECT_EQ(Models(), c.Models);
    EXPECT_EQ(ReadDefinitions(qdm.Folder / "data/Projectors.DEF")[1].Baudrate, c.SpeedOfOne);
  }
}

TEST_F(ProjectorsCommand, RenamesIntoTheFirstFreeNameAndCutsTheModel) {
  const std::string full(32, 'm');
  SetLibrary({Named("A", full), Named("A", std::string(28, 'm') + " (2)")});
  const std::string file = qdm.Write("new.BVD", std::vector(8, WithSpeed(Named("A", full), 1)));
  ASSERT_EQ(Run({"add", file, "--on-conflict", "rename"}).Status, 0);
  EXPECT_THAT(Models(), ElementsAre(full, std::string(28, 'm') + " (2)", std::string(28, 'm') + " (3)",
                                    std::string(28, 'm') + " (4)", std::string(28, 'm') + " (5)",
                                    std::string(28, 'm') + " (6)", std::string(28, 'm') + " (7)",
                                    std::string(28, 'm') + " (8)", std::string(28, 'm') + " (9)",
                                    std::string(27, 'm') + " (10)"));
}

TEST_F(ProjectorsCommand, MakesAFolderThatIsNotThereWhenItAdds) {
  const std::string file = qdm.Write("new.BVD", std::vector{Named("A", "B")});
  EXPECT_EQ(qdm.Run({"projectors", "add", file, "--data", qdm.Path("fresh/data")}).Status, 0);
  EXPECT_TRUE(qdm.Exists("fresh/data/Projectors.DEF"));
  EXPECT_THAT(qdm.Run({"projectors", "list", "--data", qdm.Path("typo")}),
              IsUnusable("typo: no such folder"));
  EXPECT_THAT(qdm.Run({"projectors", "list"}), Answers(0, "", ""));  // the program's own: empty
}

TEST_F(ProjectorsCommand, ExtractsOneOrAllOfAManufacturerSortedByModel) {
  SetLibrary({Named("ACME", "beta"), Named("OTHER", "x"), Named("ACME", "Alpha"), Named("ACME", "Gamma")});
  const std::string all = qdm.Path("all.BVD");
  EXPECT_THAT(Run({"extract", "acme", "-o", all}), Answers(0, "", ""));
  EXPECT_THAT(ReadDefinitions(all),
              ElementsAre(Named("ACME", "Alpha"), Named("ACME", "beta"), Named("ACME", "Gamma")));
  // As the selector's EXPORT: the tail of a longer file stays.
  EXPECT_THAT(Run({"extract", "Other", " X ", "-o", all}), Answers(0, "", ""));
  EXPECT_THAT(ReadDefinitions(all),
              ElementsAre(Named("OTHER", "x"), Named("ACME", "beta"), Named("ACME", "Gamma")));

  for (const char* name : {"nobody", "acm", "", "a name that is longer than any name can be", "Ж"}) {
    EXPECT_THAT(Run({"extract", name, "-o", qdm.Path("no.BVD")}),
                Answers(1, "", HasSubstr("not in the projector library")));
  }
  EXPECT_EQ(Run({"extract", "ACME", "x", "-o", qdm.Path("no.BVD")}).Status, 1);
  EXPECT_FALSE(qdm.Exists("no.BVD"));
  EXPECT_THAT(Run({"extract", "ACME", "-o", qdm.Path("no.BVC")}),
              IsUnusable("not a file of projector definitions"));
}

TEST_F(ProjectorsCommand, RemovesOneAndKeepsTheLibraryBeforeAsBackup) {
  EXPECT_THAT(Run({"remove", "acme", "THREE"}), Answers(1, "", HasSubstr("acme / THREE: not in")));
  EXPECT_FALSE(qdm.Exists("data/Projectors.BAK"));
  EXPECT_THAT(Run({"remove", "acme", "TWO"}), Answers(0, "", ""));
  EXPECT_THAT(Models(), ElementsAre("One"));
  EXPECT_EQ(ReadDefinitions(qdm.Folder / "data/Projectors.BAK").size(), 2U);
  EXPECT_EQ(Run({"remove", "ACME", "One"}).Status, 0);
  EXPECT_FALSE(qdm.Exists("data/Projectors.DEF"));
}

}  // namespace
}  // namespace qdm
