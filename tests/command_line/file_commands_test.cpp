// export, import, check, compare and image, in process.
#include "config/version.h"
#include "download/programming.h"
#include "support/distinct_configuration.h"
#include "support/qdm_runner.h"

#include <iterator>
#include <regex>

namespace qdm {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(ExportImport, GivesBackTheSameFile) {
  QdmRunner qdm;
  const std::vector<ProjectorDefinition> definitions = {DistinctProjector(), Named("a", "b"), {}};
  const std::vector<std::pair<std::string, Bytes>> files = {{"room.BVC", Encode(DistinctConfiguration())},
                                                            {"lower.bvc", Encode(PanelConfiguration{})},
                                                            {"some.BVD", EncodeDefinitions(definitions)},
                                                            {"some.def", EncodeDefinitions(definitions)},
                                                            {"none.BVD", {}}};
  for (const auto& [name, bytes] : files) {
    const std::string original = qdm.Write(name, bytes);
    ASSERT_THAT(qdm.Run({"export", original, "-o", qdm.Path("x.json")}), Answers(0, "", "")) << name;
    ASSERT_THAT(qdm.Run({"import", qdm.Path("x.json"), "-o", qdm.Path("back-" + name)}), Answers(0, "", ""));
    EXPECT_EQ(qdm.Read("back-" + name), bytes);

    // The same through standard output and input.
    const Outcome exported = qdm.Run({"export", original});
    qdm.Input = exported.Out;
    ASSERT_THAT(qdm.Run({"import", "-", "-o", qdm.Path("back-" + name)}), Answers(0, "", ""));
    EXPECT_EQ(qdm.Read("back-" + name), bytes);
    EXPECT_EQ(qdm.Run({"export", original, "-o", "-"}).Out, exported.Out);
  }
}

TEST(ExportImport, IgnoresWhatALongerConfigurationHoldsAndDropsTheTailOfAnOldFile) {
  QdmRunner qdm;
  Bytes longer = Encode(DistinctConfiguration());
  longer.resize(5000, 0x55);
  qdm.Input = qdm.Run({"export", qdm.Write("longer.BVC", longer)}).Out;
  ASSERT_EQ(qdm.Run({"import", "-", "-o", qdm.Path("longer.BVC")}).Status, 0);
  EXPECT_EQ(qdm.Read("longer.BVC"), Encode(DistinctConfiguration()));
}

TEST(FileCommands, RefuseWhatTheyCannotRead) {
  QdmRunner qdm;
  const std::string room = qdm.Write("room.BVC", UsableConfiguration());
  const std::string makers = qdm.Write("some.BVD", std::vector{Named("A", "B")});
  const std::string shorter = qdm.Write("short.BVC", Bytes(3160));
  const std::string text = qdm.Write("room.txt", Bytes{'{', '}'});
  const std::string json = qdm.Write("broken.json", Bytes{'{', '}'});
  const std::string out = qdm.Path("out.json");
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"export", qdm.Path("none.BVC")}, "none.BVC: cannot read: "},
      {{"export", qdm.Path("")}, "neither a configuration"},
      {{"export", shorter, "-o", out}, "short.BVC: cannot read: a configuration has 3161 bytes"},
      {{"export", text}, "neither a configuration (.BVC) nor projector definitions (.BVD, .DEF)"},
      {{"export", room, "-o", makers}, "this ending is not a text's"},
      {{"export", room, "-o", qdm.Path("no/such/folder.json")}, "cannot write"},
      {{"import", qdm.Path("none.json"), "-o", qdm.Path("x.BVC")}, "none.json: cannot read"},
      {{"import", room, "-o", qdm.Path("x.BVC")}, "not JSON text"},
      {{"import", json, "-o", qdm.Path("x.BVC")}, "broken.json: format: missing"},
      {{"check", makers}, "not a configuration file (.BVC)"},
      {{"check", shorter}, "this file has 3160"},
      {{"check", "-"}, "not a configuration"},
      {{"compare", room, makers}, "not of the same kind as " + room},
      {{"compare", room, text}, "the ending says no kind of file"},
      {{"compare", room, qdm.Path("none.BVC")}, "none.BVC: cannot read"},
      {{"image", shorter}, "this file has 3160"},
      {{"image", room, "-o", qdm.Path("no/such/image.bin")}, "cannot write"},
  };
  for (const auto& [arguments, why] : cases) {
    EXPECT_THAT(qdm.Run(arguments), IsUnusable(why)) << arguments[0] << " " << arguments[1];
  }
  EXPECT_FALSE(qdm.Exists("out.json"));
  EXPECT_FALSE(qdm.Exists("x.BVC"));
  EXPECT_EQ(ReadDefinitions(makers), std::vector{Named("A", "B")});
}

TEST(Import, WantsAnEndingThatFitsTheFormat) {
  QdmRunner qdm;
  const std::string room = qdm.Run({"export", qdm.Write("room.BVC", UsableConfiguration())}).Out;
  const std::string makers = qdm.Run({"export", qdm.Write("some.BVD", std::vector{Named("A", "B")})}).Out;
  for (const auto& [json, output] :
       {std::pair{room, "x.BVD"}, {room, "x.json"}, {room, "x"}, {makers, "x.BVC"}}) {
    qdm.Input = json;
    EXPECT_THAT(qdm.Run({"import", "-", "-o", qdm.Path(output)}), IsUnusable(output));
    EXPECT_FALSE(qdm.Exists(output));
  }
  qdm.Input = room;
  EXPECT_THAT(qdm.Run({"import", "-", "-o", "-"}), IsUnusable("-: not a configuration file"));
}

TEST(Check, PrintsWhatTheEditorWouldSay) {
  QdmRunner qdm;
  EXPECT_THAT(qdm.Run({"check", qdm.Write("a.BVC", UsableConfiguration())}), Answers(0, "ok\n", ""));
  EXPECT_THAT(qdm.Run({"check", qdm.Write("b.BVC", PanelConfiguration{})}),
              Answers(1, "Cannot proceed, no projector has been defined!\n", ""));
  PanelConfiguration loud = UsableConfiguration(kTlVox);
  loud.PowerUpVolume = 19;
  EXPECT_THAT(qdm.Run({"check", qdm.Write("c.BVC", loud)}),
              Answers(1, "Cannot proceed, Power up volume is more than maximum!\n", ""));
}

TEST(Compare, PrintsALineForEachFieldThatDiffers) {
  QdmRunner qdm;
  PanelConfiguration changed = UsableConfiguration();
  changed.RoomTimeout = 30;
  changed.UsePC1 = 1;
  changed.Projector.Notes = FixedText<256>(u"one\ntwo");
  changed.Projector.Strings[1].Values[0] = 'Q';
  const std::string a = qdm.Write("a.BVC", UsableConfiguration());
  const std::string b = qdm.Write("b.bvc", changed);
  EXPECT_THAT(qdm.Run({"compare", a, a}), Answers(0, "", ""));
  EXPECT_THAT(qdm.Run({"compare", a, b}), Answers(1,
                                                  "RoomTimeout: 1 -> 30\n"
                                                  "Projector.Notes: \"\" -> one\\u000atwo\n"
                                                  "Projector.Strings[1]: \"PW\xC3\xBE\" -> \"QW\xC3\xBE\"\n"
                                                  "UsePC1: true -> 1\n",
                                                  ""));
  // JSON is of the kind that it holds.
  qdm.Input = qdm.Run({"export", b}).Out;
  EXPECT_THAT(qdm.Run({"compare", "-", b}), Answers(0, "", ""));
}

TEST(Compare, PairsDefinitionsByNamesWhateverTheirOrder) {
  QdmRunner qdm;
  ProjectorDefinition changed = Named("acme", "two");
  changed.Baudrate = 2;
  const std::string a =
      qdm.Write("a.BVD", std::vector{Named("ACME", "One"), Named("ACME", "Two"), Named("ACME", "Gone")});
  const std::string b = qdm.Write("b.DEF", std::vector{changed, Named("ACME", "New"), Named("ACME", "One")});
  EXPECT_THAT(qdm.Run({"compare", a, b}), Answers(1,
                                                  "ACME/Two.Manufacturer: ACME -> acme\n"
                                                  "ACME/Two.Model: Two -> two\n"
                                                  "ACME/Two.Baudrate: 0 -> 2\n"
                                                  "ACME/Gone: present -> absent\n"
                                                  "ACME/New: absent -> present\n",
                                                  ""));
  const std::string twice = qdm.Write("c.BVD", std::vector{Named("ACME", "One"), Named("ACME", "One")});
  EXPECT_THAT(qdm.Run({"compare", twice, twice}), Answers(0, "", ""));
  EXPECT_THAT(qdm.Run({"compare", qdm.Write("d.BVD", std::vector{Named("ACME", "One")}), twice}),
              Answers(1, "ACME/One: absent -> present\n", ""));
}

TEST(Image, ShowsTheMemoryAsDumpAsRecordsAndAsFile) {
  QdmRunner qdm;
  const std::string room = qdm.Write("room.BVC", UsableConfiguration());
  const PanelImage image = BuildPanelImage(UsableConfiguration());

  const std::vector<std::string> dump = LinesOf(qdm.Run({"image", room}).Out);
  ASSERT_THAT(dump, SizeIs(32));
  EXPECT_EQ(dump[0], "0000  00 FF FF 00 80 01 00 01 01 22 22 00 00 00 01 01");
  EXPECT_THAT(dump[31], StartsWith("01F0  FF FF"));

  const std::vector<std::string> records = LinesOf(qdm.Run({"image", room, "--records"}).Out);
  ASSERT_THAT(records, SizeIs(kRecords));
  EXPECT_EQ(records[0], "FF 22 00 00 00 FE FE FE FE 00 80 01 00 01 5F");
  EXPECT_THAT(records[63], StartsWith("FF 22 F8 01 FE FE"));

  EXPECT_THAT(qdm.Run({"image", room, "-o", qdm.Path("image.bin")}), Answers(0, "", ""));
  EXPECT_EQ(qdm.Read("image.bin"), Bytes(image.begin(), image.end()));
  EXPECT_THAT(qdm.Run({"image", room, "-o", "-"}), IsUnusable("no text"));
}

TEST(Image, ExplainsEveryByteWithItsFields) {
  QdmRunner qdm;
  const Outcome explained = qdm.Run({"image", qdm.Write("room.BVC", UsableConfiguration()), "--explain"});
  EXPECT_EQ(explained.Status, 0);
  for (const char* expected :
       {"0005  01                       room empty timeout in minutes ", " RoomTimeout\n",
        "001B  03                       Power on: length",
        "Projector.Strings[1].Count, Projector.Available[1]\n",
        "001C  50 57 FE                 Power on: PW\xC3\xBE ", "FF x 458                 not used\n"}) {
    EXPECT_THAT(explained.Out, HasSubstr(expected));
  }
}

TEST(Image, NamesTheFieldThatHasNoRoomAndWritesNothing) {
  QdmRunner qdm;
  PanelConfiguration configuration = UsableConfiguration();
  configuration.RoomTimeout = 256;
  const std::string room = qdm.Write("room.BVC", configuration);
  const auto refused =
      Answers(1, "", AllOf(StartsWith("qdm: " + room + ": RoomTimeout = 256: "), HasSubstr("0..255")));
  for (const char* form : {"--records", "--explain"}) EXPECT_THAT(qdm.Run({"image", room, form}), refused);
  EXPECT_THAT(qdm.Run({"image", room, "-o", qdm.Path("image.bin")}), refused);
  EXPECT_FALSE(qdm.Exists("image.bin"));
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneLine) {
  QdmRunner qdm;
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"frobnicate"},
      {"export"},
      {"export", "a.BVC", "b.BVC"},
      {"import", "a.json"},
      {"check", "a.BVC", "--fast"},
      {"image", "a.BVC", "--records", "--explain"},
      {"image", "a.BVC", "--records", "-o", "x"},
      {"projectors"},
      {"projectors", "add", "a.BVD", "--on-conflict", "ask"},
      {"projectors", "remove", "ACME"},
      {"find", "--type", "QDM 5"},
      {"find", "--port", "COM17"},
      {"find", "--port", ""},
      {"simulate", "--settings", "9600,x,8,2"},
      {"simulate", "--firmware", "1"},
      {"simulate", "--firmware", "1.256"},
      {"simulate", "--fault", "explode"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const Outcome outcome = qdm.Run(arguments);
    EXPECT_THAT(outcome, IsUnusable("")) << testing::PrintToString(arguments);
    EXPECT_THAT(LinesOf(outcome.Err), SizeIs(1)) << testing::PrintToString(arguments);
  }
}

TEST(CommandLine, ExplainsItselfOnEveryLevelAndInManualAndCompletion) {
  const auto textOf = [](const std::string& name) {
    const Bytes bytes = ReadWholeFile(PathFromUtf8(QDM_SOURCE_DIR "/packaging/" + name));
    return std::string(bytes.begin(), bytes.end());
  };
  const std::string completion = textOf("qdm.bash-completion");
  const std::string manual = std::regex_replace(textOf("qdm.1"), std::regex(R"(\\-)"), "-");
  const std::vector<std::string> commands = {"",
                                             "export",
                                             "import",
                                             "check",
                                             "compare",
                                             "image",
                                             "projectors",
                                             "projectors list",
                                             "projectors add",
                                             "projectors extract",
                                             "projectors remove",
                                             "find",
                                             "download",
                                             "simulate"};
  QdmRunner qdm;
  for (const std::string& command : commands) {
    std::istringstream words(command);
    std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
    arguments.push_back("--help");
    const Outcome help = qdm.Run(arguments);
    const std::string usage = "Usage: qdm" + (command.empty() ? "" : " " + command) + " [OPTIONS]";
    EXPECT_THAT(help, Answers(0, HasSubstr(usage), IsEmpty()));

    EXPECT_THAT(manual, HasSubstr(usage.substr(7))) << "run script/man-page";
    const std::regex option("  (?:-\\w,)?(--[a-z-]+)");
    for (std::sregex_iterator found(help.Out.begin(), help.Out.end(), option), end; found != end; ++found) {
      EXPECT_THAT(completion, HasSubstr((*found)[1].str())) << command;
      EXPECT_THAT(manual, HasSubstr((*found)[1].str())) << command;
    }
  }
  EXPECT_THAT(qdm.Run({"--version"}), Answers(0, "qdm " + VersionText() + "\n", ""));
}

}  // namespace
}  // namespace qdm
