#include "support/qdm_runner.h"

namespace qdm {
namespace {

using testing::HasSubstr;

// Its folder holds the library too.
struct ProjectorsCommand : testing::Test {
  std::vector<ProjectorDefinition> Library() const { return ReadDefinitions(qdm.Folder / "Projectors.DEF"); }

  QdmRunner qdm;
};

TEST_F(ProjectorsCommand, ListsNamesAndBytesInUseAndRecoversADamagedLibrary) {
  ProjectorDefinition used = NamedProjector("Überblick", "Ä 3");
  used.Available[10] = used.Available[1] = kFlagSet;
  used.Strings[10].Count = 5;  // and the mask of a reply
  used.Strings[1].Count = 2;
  used.Strings[2].Count = 9;  // not in use
  qdm.Write("Projectors.DEF",
            std::vector{NamedProjector("acme", "Two"), used, NamedProjector(" ", "dropped")});
  const std::string list = "ACME\tTwo\t0\nÜBERBLICK\tÄ 3\t11\n";
  EXPECT_THAT(qdm.Run({"projectors", "list"}), Answers(0, list, ""));
  EXPECT_EQ(Library().size(), 3U);  // a list writes nothing

  std::filesystem::rename(qdm.Folder / "Projectors.DEF", qdm.Folder / "Projectors.BAK");
  std::filesystem::create_directory(qdm.Folder / "Projectors.DEF");
  EXPECT_THAT(qdm.Run({"projectors", "list"}), Answers(0, list, HasSubstr("file damaged!")));
  EXPECT_THAT(qdm.Run({"projectors", "list", "--data", qdm.Path("typo")}), IsUnusable("no such folder"));
}

TEST_F(ProjectorsCommand, AddsWhatIsNewAndSettlesConflictsAsTold) {
  const ProjectorDefinition full = NamedProjector("ACME", "One");
  ProjectorDefinition fast = full;
  ProjectorDefinition renamed = NamedProjector("ACME", "One (2)");
  fast.Baudrate = renamed.Baudrate = 3;
  const ProjectorDefinition same = NamedProjector("ACME", "Two");
  const ProjectorDefinition fresh = NamedProjector("ACME", "Three");
  const std::string file = qdm.Write("new.BVD", std::vector{fast, same, fresh, NamedProjector("A", " ")});
  const std::vector<std::tuple<std::string, std::string, std::vector<ProjectorDefinition>>> cases = {
      {"keep", "1 kept as they were\n", {full, same, fresh}},
      {"replace", "1 replaced\n", {fast, same, fresh}},
      {"rename", "1 renamed\n", {full, same, renamed, fresh}},
  };
  for (const auto& [answer, done, library] : cases) {
    qdm.Write("Projectors.DEF", std::vector{full, same});
    EXPECT_THAT(qdm.Run({"projectors", "add", file, "--on-conflict", answer}),
                Answers(0, "1 added, 1 unchanged, " + done, ""));
    EXPECT_EQ(Library(), library) << answer;
  }
  qdm.Write("Projectors.DEF", std::vector{full, same});
  EXPECT_THAT(qdm.Run({"projectors", "add", file}),
              Answers(1, "1 added, 1 unchanged, 1 not imported\n", HasSubstr("ACME / One")));
  EXPECT_THAT(Library(), testing::ElementsAre(full, same, fresh));
}

}  // namespace
}  // namespace qdm
