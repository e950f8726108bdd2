// The real program beside itself and under git.
#include "support/distinct_projector.h"
#include "support/qdm_runner.h"

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct LibraryInCompany : testing::Test {
  std::vector<std::string> Names(const std::string& file) const {
    return TimedModels(ReadDefinitions(qdm.Folder / file));
  }
  void WriteText(const char* name, std::string_view text) const {
    qdm.Write(name, Bytes(text.begin(), text.end()));
  }
  // The exit status of a shell line in the test's folder, with "qdm" on the path.
  int Shell(const QString& line) const {
    QProcess shell;
    shell.setWorkingDirectory(QString::fromStdString(qdm.Folder.Path().string()));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), shell.workingDirectory());
    environment.insert(QStringLiteral("PATH"), QFileInfo(QStringLiteral(QDM_PROGRAM)).path() +
                                                   QStringLiteral(":") +
                                                   environment.value(QStringLiteral("PATH")));
    shell.setProcessEnvironment(environment);
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.start(QStringLiteral("sh"), {QStringLiteral("-ec"), line});
    EXPECT_TRUE(shell.waitForFinished(kPatience));
    output = shell.readAll().toStdString();
    return shell.exitCode();
  }

  QdmRunner qdm;
  mutable std::string output;
};

TEST_F(LibraryInCompany, MergesLibrariesAndTheirJsonWhateverTheirNames) {
  qdm.Write("base", std::vector{Timed("Ours", 1), Timed("Theirs", 2), Timed("Both", 3)});
  qdm.Write("ours", std::vector{Timed("Both", 30), Timed("Ours", 10), Timed("Theirs", 2), Timed("New", 4)});
  qdm.Write("theirs",
            std::vector{Timed("Ours", 1), Timed("Newer", 5), Timed("Theirs", 20), Timed("Both", 3)});
  const auto merge = [this](const std::string& base, const std::string& theirs, const std::string& out) {
    return qdm.Run(
        {"projectors", "merge", qdm.Path(base), qdm.Path("ours"), qdm.Path(theirs), "-o", qdm.Path(out)});
  };
  EXPECT_THAT(merge("base", "theirs", "out.DEF"), Answers(0, "", ""));
  EXPECT_THAT(Names("out.DEF"), ElementsAre("Both 30", "Ours 10", "Theirs 20", "New 4", "Newer 5"));
  EXPECT_THAT(merge("nowhere", "theirs", "out.DEF"),
              Answers(1, "", HasSubstr("ACME / Both was changed on both sides")));
  EXPECT_THAT(Names("out.DEF"), ElementsAre("Both 30", "Ours 10", "Theirs 2", "New 4", "Newer 5"));

  WriteText("text", ("{\"format\": \"qdm-projectors\", \"version\": 1, \"projectors\": []}"));
  WriteText("junk", "not a library");
  EXPECT_THAT(merge("base", "text", "none"), IsUnusable("not of the same kind"));
  EXPECT_THAT(merge("base", "junk", "none"), IsUnusable("neither JSON text nor whole projector definitions"));
  EXPECT_FALSE(std::filesystem::exists(qdm.Folder / "none"));
  EXPECT_THAT(qdm.Run({"projectors", "merge", "nowhere", qdm.Path("text"), qdm.Path("text"), "-o", "-"}),
              Answers(0, HasSubstr("\"projectors\": []"), ""));
}

#ifndef _WIN32
TEST_F(LibraryInCompany, OfManyProcessesAtOnceEachAdditionStays) {
  constexpr int kProcesses = 12;
  QString line;
  for (int i = 0; i < kProcesses; ++i) {
    const std::string name = "M" + std::to_string(i);
    qdm.Write(name + ".BVD", std::vector{Timed(name, 1)});
    line += QStringLiteral("qdm projectors add M%1.BVD --data . >> log & ").arg(i);
  }
  EXPECT_EQ(Shell(line + QStringLiteral("wait")), 0);
  EXPECT_EQ(output, "");
  EXPECT_EQ(Names("Projectors.DEF").size(), std::size_t{kProcesses});
}

// The lines are those of the help page about a library for the whole team.
TEST_F(LibraryInCompany, GitMergesAndShowsIt) {
  const QString prepare = QStringLiteral(
      "git init -q -b main . && git config user.name a && git config user.email a@b.example\n"
      "echo 'Projectors.DEF merge=qdm diff=qdm' > .gitattributes\n"
      "git config merge.qdm.driver 'qdm projectors merge %O %A %B -o %A'\n"
      "git config diff.qdm.textconv 'qdm export'\n"
      "git add .gitattributes Projectors.DEF && git commit -qm start\n"
      "git checkout -qb other && qdm projectors add theirs.BVD --data . && git commit -qam theirs\n"
      "git checkout -q main && qdm projectors add ours.BVD --data . && git commit -qam ours\n");
  qdm.Write("Projectors.DEF", std::vector{Timed("Old", 1)});
  qdm.Write("ours.BVD", std::vector{Timed("Ours", 2)});
  qdm.Write("theirs.BVD", std::vector{Timed("Theirs", 3)});
  ASSERT_EQ(Shell(prepare), 0) << output;
  EXPECT_EQ(Shell(QStringLiteral("git diff main other")), 0);
  EXPECT_THAT(output, HasSubstr("\"Model\": \"Theirs\""));
  EXPECT_EQ(Shell(QStringLiteral("git merge -q --no-edit other")), 0) << output;
  EXPECT_THAT(Names("Projectors.DEF"), ElementsAre("Old 1", "Ours 2", "Theirs 3"));
}
#endif

}  // namespace
}  // namespace qdm
