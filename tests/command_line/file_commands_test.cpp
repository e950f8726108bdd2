// compare, image and the command line itself, in process.
#include "support/files.h"
#include "support/qdm_runner.h"

#include <iterator>
#include <regex>

namespace qdm {
namespace {

using testing::HasSubstr;

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

TEST(Compare, PairsDefinitionsByNamesWhateverTheirOrder) {
  QdmRunner qdm;
  ProjectorDefinition changed = NamedProjector("ACME", "two");
  changed.Baudrate = 2;
  const std::string a =
      qdm.Write("a.BVD", std::vector{NamedProjector("ACME", "One"), NamedProjector("ACME", "Two"),
                                     NamedProjector("ACME", "Gone")});
  const std::string b =
      qdm.Write("b.DEF", std::vector{changed, NamedProjector("ACME", "New"), NamedProjector("ACME", "One")});
  EXPECT_THAT(qdm.Run({"compare", a, b}), Answers(1,
                                                  "ACME/Two.Model: Two -> two\n"
                                                  "ACME/Two.Baudrate: 0 -> 2\n"
                                                  "ACME/Gone: present -> absent\n"
                                                  "ACME/New: absent -> present\n",
                                                  ""));
}

TEST(Check, OfSeveralFilesTellsEachAndGoesOnBehindOneThatCannotBeRead) {
  QdmRunner qdm;
  const std::string good = qdm.Write("good.BVC", UsableConfiguration());
  const std::string blank = qdm.Write("blank.BVC", PanelConfiguration());
  const std::string refusal = blank + ": Cannot proceed, no projector has been defined!\n";
  EXPECT_THAT(qdm.Run({"check", blank, good}), Answers(1, refusal + good + ": ok\n", ""));
  EXPECT_THAT(qdm.Run({"check", good, qdm.Path("none.BVC"), blank}),
              Answers(2, good + ": ok\n" + refusal, HasSubstr("none.BVC: cannot read: ")));
}

TEST(Image, ShowsTheMemoryAsDumpAndAsTable) {
  QdmRunner qdm;
  const std::string room = qdm.Write("room.BVC", UsableConfiguration());
  EXPECT_THAT(qdm.Run({"image", room}).Out,
              testing::StartsWith("0000  00 FF FF 00 80 01 00 01 01 22 22 00 00 00 01 01\n"));
  const Outcome explained = qdm.Run({"image", room, "--explain"});
  for (const char* expected :
       {"0005  01                       room empty timeout in minutes ", " RoomTimeout\n",
        "001B  03                       Power on: length",
        "001C  50 57 FE                 Power on: PW\xC3\xBE ",
        "Projector.Strings[1].Count, Projector.Available[1]\n", "FF x 458                 not used\n"}) {
    EXPECT_THAT(explained.Out, HasSubstr(expected));
  }
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneLine) {
  QdmRunner qdm;
  for (const char* wrong :
       {"", "frobnicate", "export", "export a.BVC b.BVC", "import a.json", "check a.BVC --fast", "projectors",
        "image a.BVC --records --explain", "image a.BVC --records -o x", "projectors remove ACME",
        "projectors add a.BVD --on-conflict ask", "find --type QDM5", "find --port COM17"}) {
    EXPECT_THAT(qdm.Run(WordsOf(wrong)), IsUnusable("")) << wrong;
  }
}

TEST(CommandLine, ExplainsItselfOnEveryLevelAndInManualAndCompletion) {
  const std::filesystem::path packaging = PathFromUtf8(QDM_SOURCE_DIR "/packaging");
  const std::string completion = TextOfFile(packaging / "qdm.bash-completion");
  const std::string manual = std::regex_replace(TextOfFile(packaging / "qdm.1"), std::regex(R"(\\-)"), "-");
  QdmRunner qdm;
  for (const std::string command :
       {"qdm", "qdm export", "qdm import", "qdm check", "qdm compare", "qdm image", "qdm projectors",
        "qdm projectors list", "qdm projectors add", "qdm projectors extract", "qdm projectors remove",
        "qdm find", "qdm download", "qdm simulate"}) {
    const Outcome help = qdm.Run(WordsOf(command.substr(3) + " --help"));
    EXPECT_THAT(help, Answers(0, HasSubstr("Usage: " + command + " [OPTIONS]"), ""));
    EXPECT_THAT(manual, HasSubstr(command + " [OPTIONS]")) << "run script/man-page";
    const std::regex option("  (?:-\\w,)?(--[a-z-]+)");
    for (std::sregex_iterator found(help.Out.begin(), help.Out.end(), option), end; found != end; ++found) {
      EXPECT_THAT(completion, HasSubstr((*found)[1].str())) << command;
      EXPECT_THAT(manual, HasSubstr((*found)[1].str())) << command;
    }
  }
}

}  // namespace
}  // namespace qdm
