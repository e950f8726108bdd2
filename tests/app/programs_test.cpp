// The real programs side by side, and their end from outside.
#include "config/configuration_file.h"
#include "forms/projectors/library_fixture.h"
#include "forms/projectors/projector_selector.h"
#include "forms/shared/qt_text.h"
#include "support/files.h"
#include "support/slow_disk.h"

#include <QProcess>
#include <QProcessEnvironment>

namespace qdm {
namespace {

using testing::UnorderedElementsAre;

constexpr int kPatience = 60'000;  // milliseconds, for a machine under load

class Programs : public LibraryFixture {
 protected:
  Programs() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
      environment.insert(QLatin1String(name), Path("home"));
    }
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QDM_DATA"), Path(""));
    program_.setProcessEnvironment(environment);
  }
  QString Path(const char* name) const { return QString::fromStdString((folder_ / name).string()); }
  void Begin(const char* program, const QStringList& arguments) {
    program_.start(QStringLiteral(QDM_BINARY_DIR "/bin/") + QLatin1String(program), arguments);
    ASSERT_TRUE(program_.waitForStarted(kPatience));
  }
  int ExitCode() {
    EXPECT_TRUE(program_.waitForFinished(kPatience));
    return program_.exitCode();
  }

  QProcess program_;
};

TEST_F(Programs, TheEditorAndQdmChangeOneLibraryInBothOrdersAndBothStay) {
  Put({Named("ACME", "Old", 1), Named("ACME", "Gone", 2)});
  SaveLibrary();
  ExportDefinitions(folder_ / "Second.BVD", {Named("ACME", "Second", 3)});
  ExportDefinitions(folder_ / "Third.BVD", {Named("ACME", "Third", 4)});
  ProjectorSelector selector(globals_, prompts_, [](QWidget*) {});
  selector.show();
  // The editor stands open while the other one adds.
  Begin("qdm", {"projectors", "add", Path("Second.BVD")});
  EXPECT_EQ(ExitCode(), 0);
  globals_.ProjectorDatabase.Remove(1);
  selector.close();
  EXPECT_THAT(OnDisk(), UnorderedElementsAre("ACME / Old = 1", "ACME / Second = 3"));
  // The other one comes in the middle of the editor's save.
  selector.show();
  globals_.ProjectorDatabase.Append(Named("ACME", "Fourth", 5));
  {
    SlowDisk disk(FileStep::Flush, "Projectors.TMP");
    disk.WhileWaiting([this] { Begin("qdm", {"projectors", "add", Path("Third.BVD")}); });
    selector.close();
  }
  EXPECT_EQ(ExitCode(), 0);
  EXPECT_THAT(OnDisk(), UnorderedElementsAre("ACME / Old = 1", "ACME / Second = 3", "ACME / Fourth = 5",
                                             "ACME / Third = 4"));
}

#ifndef _WIN32
TEST_F(Programs, ASignalEndsTheEditorAndKeepsWhatIsNotSaved) {
  PanelConfiguration odd;
  odd.ControllerType = 9;  // no control shows it: it is not saved from the start
  WriteConfiguration(folder_ / "Room.BVC", odd, OldTail::Dropped);
  Begin("qdm-editor", {Path("Room.BVC")});
  const auto settings = ToPath(Path("home")) / "Brevan" / "QDM Editor.conf";
  // It is open once it stands among the recent files.
  while (!std::filesystem::exists(settings)) ASSERT_FALSE(program_.waitForFinished(10));
  program_.terminate();
  EXPECT_EQ(ExitCode(), 0);
  EXPECT_THAT(TextOfFile(settings), testing::HasSubstr("[unsavedWork]"));
  EXPECT_NO_THROW(ReadConfiguration(folder_ / "Unsaved.BVC"));
}
#endif

}  // namespace
}  // namespace qdm
