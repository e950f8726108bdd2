// The program itself: arguments, streams, exit statuses, devices, signals.
#include "base/sha256.h"
#include "config/version.h"
#include "panels/panel_image.h"
#include "support/distinct_projector.h"
#include "support/files.h"
#include "support/qdm_runner.h"

#include <QProcess>
#include <QStandardPaths>

#ifndef _WIN32
#include <csignal>
#endif

namespace qdm {
namespace {

using testing::HasSubstr;

class Program {
 public:
  // `ports` as in QDM_PORTS: none when left out. (An empty variable counts as not set on Windows.)
  explicit Program(const std::vector<std::string>& arguments, const std::string& ports = ",",
                   const QString& output = {}, const std::filesystem::path& program = QDM_PROGRAM) {
    qputenv("QDM_PORTS", QByteArray::fromStdString(ports));
    if (!output.isEmpty()) process_.setStandardOutputFile(output);
    QStringList list;
    for (const std::string& argument : arguments) list << QString::fromStdString(argument);
    process_.start(QString::fromStdString(PathToUtf8(program)), list);
  }
  ~Program() {
    process_.kill();
    process_.waitForFinished(kPatience);
  }

  Outcome Finish(const std::string& input = "") {
    process_.write(input.data(), static_cast<qint64>(input.size()));
    process_.closeWriteChannel();
    EXPECT_TRUE(process_.waitForFinished(kPatience));
    const bool ended = process_.exitStatus() == QProcess::NormalExit;
    return {ended ? process_.exitCode() : -1, process_.readAllStandardOutput().toStdString(),
            process_.readAllStandardError().toStdString()};
  }
  std::string NextLine() {
    while (!process_.canReadLine() && process_.waitForReadyRead(kPatience)) {
    }
    return process_.readLine().trimmed().toStdString();
  }
#ifndef _WIN32
  void Send(int signal) { ::kill(static_cast<pid_t>(process_.processId()), signal); }
#endif

 private:
  QProcess process_;
};

struct QdmProgram : testing::Test {
  // The program's library and work log are of this folder too.
  QdmProgram() { qputenv("QDM_DATA", QByteArray::fromStdString(files.Folder.Path().string())); }
  ~QdmProgram() override { qunsetenv("QDM_DATA"); }

  QdmRunner files;
};

TEST_F(QdmProgram, DoesEveryFileCommandAndSaysWhyNot) {
  const std::string room = files.Write("Zürich 101.BVC", UsableConfiguration());
  const std::string blank = files.Write("blank.BVC", PanelConfiguration{});
  const std::string some =
      files.Write("some.BVD", std::vector{NamedProjector("ACME", "One"), NamedProjector("ACME", "A")});
  const std::string none = files.Path("none.BVC");
  const std::string data = files.Path("data");
  using Text = testing::Matcher<std::string>;
  const std::vector<std::tuple<std::vector<std::string>, int, Text, Text>> cases = {
      {{"--version"}, 0, "qdm " + VersionText() + "\n", ""},
      {{"export", room, "-o", files.Path("Zürich.json")}, 0, "", ""},
      {{"import", files.Path("Zürich.json"), "-o", files.Path("back.BVC")}, 0, "", ""},
      {{"compare", room, files.Path("back.BVC")}, 0, "", ""},
      {{"compare", room, blank}, 1, HasSubstr("Projector.Strings[1]: \"PWþ\" -> \"\"\n"), ""},
      {{"check", room}, 0, "ok\n", ""},
      {{"check", blank}, 1, HasSubstr("no projector has been defined"), ""},
      {{"image", room, "--records"}, 0, HasSubstr("\nFF 22 F8 01 FE FE "), ""},
      {{"image", blank}, 1, "", SaysInOneLine("blank.BVC: Projector.VolumeBytePosition = -1: ")},
      {{"projectors", "add", some, "--data", data}, 0, HasSubstr("2 added"), ""},
      {{"projectors", "extract", "acme", "-o", files.Path("x.BVD"), "--data", data}, 0, "", ""},
      {{"projectors", "remove", "acme", "one", "--data", data}, 0, "", ""},
      {{"projectors", "remove", "acme", "one", "--data", data}, 1, "", SaysInOneLine("acme / one: not in")},
      {{"download", blank}, 1, HasSubstr("no projector has been"), SaysInOneLine("refused by the check")},
      {{"export", none}, 2, "", SaysInOneLine("none.BVC: cannot read: ")},
      {{"import", none, "-o", files.Path("x.BVC")}, 2, "", SaysInOneLine("not JSON text")},
#ifdef _WIN32
      {{"simulate"}, 1, "", SaysInOneLine("this system has no pseudo-terminals")},
#else
      {{"simulate", "--memory", room}, 2, "", SaysInOneLine("512 bytes, this file has 3161")},
#endif
      {{"export", room, "-o", some}, 2, "", SaysInOneLine("this ending is not a text's")},
      {{"import", files.Path("Zürich.json"), "-o", "x.BVD"}, 2, "", SaysInOneLine("x.BVD: ")},
      {{"compare", room, some}, 2, "", SaysInOneLine("not of the same kind as " + room)},
  };
  for (const auto& [arguments, status, out, err] : cases) {
    EXPECT_THAT(Program(arguments).Finish(), Answers(status, out, err)) << testing::PrintToString(arguments);
  }
  EXPECT_EQ(files.Read("x.BVD"),
            EncodeDefinitions(std::vector{NamedProjector("ACME", "A"), NamedProjector("ACME", "One")}));
}

TEST_F(QdmProgram, ReadsStandardInputAndWritesStandardOutput) {
  const Bytes some =
      EncodeDefinitions(std::vector{DistinctProjector(), NamedProjector("a", "b"), ProjectorDefinition{}});
  const Outcome exported = Program({"export", files.Write("some.def", some), "-o", "-"}).Finish();
  EXPECT_THAT(Program({"import", "-", "-o", files.Path("back.BVD")}).Finish(exported.Out),
              Answers(0, "", ""));
  EXPECT_EQ(files.Read("back.BVD"), some);
}

// With no display, and as pages whose text can be searched.
TEST_F(QdmProgram, WritesTheCommissioningSheet) {
  qunsetenv("DISPLAY");
  const std::string room = files.Write("Zürich 101.BVC", UsableConfiguration());
  const std::string digits = HexDigits(Sha256(BuildPanelImage(UsableConfiguration())));
  EXPECT_THAT(Program({"sheet", room, "-o", files.Path("sheet.pdf")}).Finish(), Answers(0, "", ""));
  EXPECT_THAT(Program({"sheet", room, "-o", files.Path("sheet.HTML")}).Finish(), Answers(0, "", ""));
  std::vector<std::string> texts = {TextOfFile(files.Folder / "sheet.HTML")};
  if (const QString reader = QStandardPaths::findExecutable(QStringLiteral("pdftotext")); !reader.isEmpty()) {
    QProcess process;
    process.start(reader, {QString::fromStdString(files.Path("sheet.pdf")), QStringLiteral("-")});
    EXPECT_TRUE(process.waitForFinished(kPatience));
    texts.push_back(process.readAllStandardOutput().toStdString());
  }
  for (const std::string& text : texts) {
    EXPECT_THAT(text, testing::AllOf(HasSubstr("Zürich 101"), HasSubstr("ACME X 100"), HasSubstr(digits),
                                     HasSubstr("50 57 FE"), HasSubstr("The outputs are not used."),
                                     HasSubstr("Date, signature")));
  }
  EXPECT_THAT(Program({"sheet", room, "-o", files.Path("sheet.doc")}).Finish(),
              Answers(2, "", SaysInOneLine("a sheet ends in .pdf or .html")));
  EXPECT_THAT(Program({"sheet", files.Path("none.BVC"), "-o", files.Path("x.pdf")}).Finish(),
              Answers(2, "", SaysInOneLine("none.BVC: cannot read: ")));
}

// The libraries of Qt take longer to load than most files take to check.
TEST_F(QdmProgram, NeedsNoQtForFilesAndSaysWhenItsOtherHalfIsMissing) {
  const std::filesystem::path program = PathFromUtf8(QDM_PROGRAM);
  EXPECT_THAT(TextOfFile(program), testing::Not(HasSubstr("QCoreApplication")));

  const std::filesystem::path alone = files.Folder / PathToUtf8(program.filename());
  std::filesystem::copy_file(program, alone);
  const std::string room = files.Write("room.BVC", UsableConfiguration());
  EXPECT_THAT(Program({"check", room}, ",", {}, alone).Finish(), Answers(0, "ok\n", ""));
  EXPECT_THAT(Program({"find"}, ",", {}, alone).Finish(),
              Answers(2, "", SaysInOneLine("cannot be started: ")));
}

#ifndef _WIN32

TEST_F(QdmProgram, FindsAndProgramsASimulatedPanelOverAPseudoTerminal) {
  const std::string room = files.Write("room.BVC", UsableConfiguration());
  const std::string memory = files.Path("memory");
  Program panel({"simulate", "--memory", memory, "--fault", "lose-ack:7"});
  const std::string ports = "," + panel.NextLine();
  EXPECT_THAT(Program({"find"}, ports).Finish(), Answers(0, "COM2\tQDM7 1.3\t9600,n,8,2\n", ""));
  EXPECT_THAT(
      Program({"download", room}, ports).Finish(),
      Answers(0, testing::MatchesRegex("QDM7 1.3 on COM2 .* has been programed\n64 of 64 records, [1-9].*"),
              ""));
  EXPECT_THAT(Program({"image", room, "-o", files.Path("image")}).Finish(), Answers(0, "", ""));
  EXPECT_EQ(files.Read("memory"), files.Read("image"));

  panel.Send(SIGINT);
  const std::string asked = "set-up mode: waits for a restart\nrestarted: works\n";
  EXPECT_THAT(panel.Finish(), Answers(0, "", asked + asked + asked)) << "two searches and a connection";
}

TEST_F(QdmProgram, PressesTheButtonsOfAProgrammedPanelOnASecondPseudoTerminal) {
  const std::string room = files.Write("room.BVC", UsableConfiguration());
  Program panel({"simulate", "--press", "Power on"});
  const std::string device = panel.NextLine();
  const std::string projectorPort = panel.NextLine();
  EXPECT_EQ(Program({"download", room, "--port", device}).Finish().Status, 0);
  Program projector({"projector", room, "--port", projectorPort});
  EXPECT_THAT(projector.NextLine(), testing::EndsWith("\t-\tPower on\t50 57 FE"));
  projector.Send(SIGINT);
  EXPECT_EQ(projector.Finish().Status, 0);
  panel.Send(SIGINT);
  EXPECT_EQ(panel.Finish().Status, 0);
}

TEST_F(QdmProgram, CtrlCDuringADownloadRestartsThePanelAndFreesThePort) {
  Program panel({"simulate", "--fault", "late-ack:%1:200"});
  const std::string device = panel.NextLine();
  Program download({"download", files.Write("room.BVC", UsableConfiguration()), "--port", device});
  EXPECT_EQ(download.NextLine(), "QDM7 1.3 on " + device + " at 9600,n,8,2");
  download.Send(SIGINT);
  EXPECT_THAT(download.Finish(), Answers(1, testing::_, HasSubstr("room.BVC: interrupted")));
  EXPECT_THAT(Program({"find", "--port", device}).Finish(), Answers(0, HasSubstr("QDM7 1.3"), ""));
}

TEST_F(QdmProgram, SaysThatStandardOutputIsFull) {
  Program full({"export", files.Write("a.BVC", UsableConfiguration())}, "", "/dev/full");
  EXPECT_THAT(full.Finish(), Answers(2, "", "qdm: standard output: cannot write\n"));
}

#endif

}  // namespace
}  // namespace qdm
