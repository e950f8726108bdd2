#include "app/start_up.h"

#include "app/demonstration.h"
#include "app/qt_prompts.h"
#include "config/configuration_file.h"
#include "forms/shared/window_place.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <gmock/gmock.h>

namespace qdm {
namespace {

QStringList Line(std::initializer_list<const char*> words) {
  QStringList line{QStringLiteral("qdm-editor")};
  for (const char* word : words) line.append(QString::fromUtf8(word));
  return line;
}

TEST(StartArguments, AreReadFromTheCommandLine) {
  const StartArguments none = ReadArguments(Line({}));
  EXPECT_FALSE(none.Demo);
  EXPECT_FALSE(none.DataFolder);
  EXPECT_EQ(none.File, QString());

  const StartArguments all = ReadArguments(Line({"--demo", "--data", "/a b/ü", "\"/rooms/Board room.BVC\""}));
  EXPECT_TRUE(all.Demo);
  EXPECT_EQ(all.DataFolder, std::filesystem::path(u8"/a b/ü"));
  EXPECT_EQ(all.File, QStringLiteral("\"/rooms/Board room.BVC\"")) << "the quotes are the window's business";
  EXPECT_EQ(ReadArguments(Line({"/rooms/Board", "room.BVC"})).File, QStringLiteral("/rooms/Board room.BVC"));
  const StartArguments two = ReadArguments(Line({"/rooms/One.BVC", "/rooms/Two", "b.bvd"}));
  EXPECT_EQ(two.File, QStringLiteral("/rooms/One.BVC"));
  EXPECT_EQ(two.Others, QStringList(QStringLiteral("/rooms/Two b.bvd")));
}

TEST(SavedNames, GetTheEndingThatTheyDoNotHave) {
  const char* const names[][2] = {{"St. Mary Hall 2.1", "St. Mary Hall 2.1.BVC"},
                                  {"Room", "Room.BVC"},
                                  {"Room.BVC", "Room.BVC"},
                                  {"room.bvc", "room.bvc"}};
  for (const auto& [typed, saved] : names) {
    EXPECT_EQ(WithEnding(QLatin1String(typed), QStringLiteral(".BVC")), QLatin1String(saved));
  }
}

TEST(Windows, FitWithTheirFrames) {
  const QRect desktop(0, 0, 1366, 728);  // a task bar below
  const QMargins frame(4, 25, 4, 4);
  EXPECT_EQ(FittedTo(desktop, QRect(10, 30, 1366, 730), frame), QRect(4, 25, 1358, 699));
  EXPECT_EQ(FittedTo(desktop, QRect(3000, -200, 800, 600), frame), QRect(562, 25, 800, 600));
  EXPECT_EQ(FittedTo(desktop, QRect(100, 100, 800, 600), frame), QRect(100, 100, 800, 600));
}

TEST(Program, TellsVersionAndOptionsWithoutADisplay) {
  const char* const cases[][2] = {
      {"--version", "QDM Editor 2."}, {"-v", "QDM Editor 2."}, {"--help", "--data"}};
  for (const auto& [option, expected] : cases) {
    QProcess editor;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("there-is-none"));
    editor.setProcessEnvironment(environment);
    editor.start(QStringLiteral(QDM_BINARY_DIR "/bin/qdm-editor"), {QLatin1String(option)});
    ASSERT_TRUE(editor.waitForFinished());
    EXPECT_EQ(editor.exitStatus(), QProcess::NormalExit) << option;
    EXPECT_EQ(editor.exitCode(), 0) << option;
    EXPECT_THAT(editor.readAllStandardOutput().toStdString(), testing::HasSubstr(expected));
  }
}

TEST(Demonstration, WorksOnCopiesThatGoWithIt) {
  std::filesystem::path folder;
  {
    const Demonstration demonstration((QString()));
    folder = demonstration.Folder();
    EXPECT_EQ(QFileInfo(demonstration.Configuration()).fileName(), QStringLiteral("Auditorium TL-VOX.BVC"));
    EXPECT_EQ(ReadConfiguration(demonstration.Configuration().toStdString()).ControllerType, kTlVox);
    ProjectorLibrary library;
    LoadProjectorDatabase(folder, library);
    EXPECT_GE(library.Size(), 20U);
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
  EXPECT_THROW(Demonstration(QStringLiteral("/no/such.BVC")), FileError);
}

}  // namespace
}  // namespace qdm
