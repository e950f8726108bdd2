// export, import, check, compare and image, in process.
#include "download/programming.h"
#include "support/distinct_configuration.h"
#include "support/qdm_runner.h"

#include <iterator>
#include <regex>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}
std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

TEST(ExportImport, GivesBackTheSameFileAndDropsWhatALongerConfigurationHolds) {
  QdmRunner qdm;
  const Bytes room = Encode(DistinctConfiguration());
  Bytes longer = room;
  longer.resize(5000, 0x55);
  const Bytes some = EncodeDefinitions({DistinctProjector(), Named("a", "b"), {}});
  const std::vector<std::tuple<std::string, Bytes, Bytes>> files = {
      {"room.BVC", room, room}, {"longer.bvc", longer, room}, {"some.BVD", some, some},
      {"some.def", some, some}, {"none.BVD", {}, {}},
  };
  for (const auto& [name, bytes, expected] : files) {
    const std::string file = qdm.Write(name, bytes);
    ASSERT_THAT(qdm.Run({"export", file, "-o", qdm.Path("x.json")}), Answers(0, "", "")) << name;
    ASSERT_THAT(qdm.Run({"import", qdm.Path("x.json"), "-o", file}), Answers(0, "", ""));
    EXPECT_EQ(qdm.Read(name), expected) << name;
  }
}

TEST(FileCommands, RefuseWhatTheyCannotReadOrWrite) {
  QdmRunner qdm;
  const std::string room = qdm.Write("room.BVC", UsableConfiguration());
  const std::string makers = qdm.Write("some.BVD", std::vector{Named("A", "B")});
  const std::string shorter = qdm.Write("short.BVC", Bytes(3160));
  const std::string json = qdm.Write("broken.json", Bytes{'{', '}'});
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"export", shorter, "-o", qdm.Path("out.json")},
       "short.BVC: cannot read: a configuration has 3161 bytes"},
      {{"export", room, "-o", makers}, "this ending is not a text's"},
      {{"import", json, "-o", qdm.Path("x.BVC")}, "broken.json: format: missing"},
      {{"import", "-", "-o", qdm.Path("x.BVD")}, "x.BVD"},
      {{"import", "-", "-o", "-"}, "-: not a configuration file"},
      {{"compare", room, makers}, "not of the same kind as " + room},
      {{"image", room, "-o", qdm.Path("no/such/image.bin")}, "cannot write"},
  };
  const std::string exported = qdm.Run({"export", room}).Out;
  for (const auto& [arguments, why] : cases) {
    qdm.Input = exported;
    EXPECT_THAT(qdm.Run(arguments), IsUnusable(why)) << arguments[0] << " " << arguments[1];
  }
  for (const char* name : {"out.json", "x.BVC", "x.BVD"}) EXPECT_FALSE(qdm.Exists(name));
  EXPECT_THAT(ReadDefinitions(makers), ElementsAre(Named("A", "B")));
}

TEST(Compare, PrintsALineForEachFieldThatDiffersAndPairsDefinitionsByNames) {
  QdmRunner qdm;
  PanelConfiguration room = UsableConfiguration();
  room.RoomTimeout = 30;
  room.Projector.Notes = FixedText<256>(u"one\ntwo");
  room.Projector.Strings[1].Values[0] = 'Q';
  EXPECT_THAT(qdm.Run({"compare", qdm.Write("a.BVC", UsableConfiguration()), qdm.Write("b.bvc", room)}),
              Answers(1,
                      "RoomTimeout: 1 -> 30\n"
                      "Projector.Notes: \"\" -> one\\u000atwo\n"
                      "Projector.Strings[1]: \"PW\xC3\xBE\" -> \"QW\xC3\xBE\"\n",
                      ""));
  ProjectorDefinition changed = Named("ACME", "two");
  changed.Baudrate = 2;
  const std::string a =
      qdm.Write("a.BVD", std::vector{Named("ACME", "One"), Named("ACME", "Two"), Named("ACME", "Gone")});
  const std::string b = qdm.Write("b.DEF", std::vector{changed, Named("ACME", "New"), Named("ACME", "One")});
  EXPECT_THAT(qdm.Run({"compare", a, b}), Answers(1,
                                                  "ACME/Two.Model: Two -> two\n"
                                                  "ACME/Two.Baudrate: 0 -> 2\n"
                                                  "ACME/Gone: present -> absent\n"
                                                  "ACME/New: absent -> present\n",
                                                  ""));
  const std::string twice = qdm.Write("c.BVD", std::vector(2, Named("ACME", "One")));
  EXPECT_THAT(qdm.Run({"compare", twice, twice}), Answers(0, "", ""));
}

TEST(Image, ShowsTheMemoryAsDumpAsRecordsAsTableAndAsFile) {
  QdmRunner qdm;
  const std::string room = qdm.Write("room.BVC", UsableConfiguration());
  const std::vector<std::string> dump = LinesOf(qdm.Run({"image", room}).Out);
  ASSERT_THAT(dump, SizeIs(32));
  EXPECT_EQ(dump[0], "0000  00 FF FF 00 80 01 00 01 01 22 22 00 00 00 01 01");
  EXPECT_THAT(dump[31], StartsWith("01F0  FF FF"));

  const std::vector<std::string> records = LinesOf(qdm.Run({"image", room, "--records"}).Out);
  ASSERT_THAT(records, SizeIs(kRecords));
  EXPECT_EQ(records[0], "FF 22 00 00 00 FE FE FE FE 00 80 01 00 01 5F");
  EXPECT_THAT(records[63], StartsWith("FF 22 F8 01 FE FE"));

  const Outcome explained = qdm.Run({"image", room, "--explain"});
  for (const char* expected :
       {"0005  01                       room empty timeout in minutes ", " RoomTimeout\n",
        "001B  03                       Power on: length",
        "001C  50 57 FE                 Power on: PW\xC3\xBE ",
        "Projector.Strings[1].Count, Projector.Available[1]\n", "FF x 458                 not used\n"}) {
    EXPECT_THAT(explained.Out, HasSubstr(expected));
  }
  EXPECT_THAT(qdm.Run({"image", room, "-o", qdm.Path("image.bin")}), Answers(0, "", ""));
  const PanelImage image = BuildPanelImage(UsableConfiguration());
  EXPECT_EQ(qdm.Read("image.bin"), Bytes(image.begin(), image.end()));
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneLine) {
  QdmRunner qdm;
  for (const char* wrong : {
           "",
           "export",
           "export a.BVC b.BVC",
           "import a.json",
           "check a.BVC --fast",
           "projectors",
           "image a.BVC --records --explain",
           "image a.BVC --records -o x",
           "projectors remove ACME",
           "projectors add a.BVD --on-conflict ask",
           "find --type QDM5",
           "find --port COM17",
#ifndef _WIN32
           "simulate --settings 9600,x,8,2",
           "simulate --firmware 1.256",
           "simulate --fault explode",
#endif
       }) {
    const Outcome outcome = qdm.Run(WordsOf(wrong));
    EXPECT_THAT(outcome, IsUnusable("")) << wrong;
    EXPECT_THAT(LinesOf(outcome.Err), SizeIs(1)) << wrong;
  }
}

TEST(CommandLine, ExplainsItselfOnEveryLevelAndInManualAndCompletion) {
  const auto textOf = [](const std::string& name) {
    const Bytes bytes = ReadWholeFile(PathFromUtf8(QDM_SOURCE_DIR "/packaging/" + name));
    return std::string(bytes.begin(), bytes.end());
  };
  const std::string completion = textOf("qdm.bash-completion");
  const std::string manual = std::regex_replace(textOf("qdm.1"), std::regex(R"(\\-)"), "-");
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
