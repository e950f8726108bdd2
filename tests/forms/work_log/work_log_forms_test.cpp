#include "config/configuration_file.h"
#include "forms/work_log/download_recorder.h"
#include "forms/work_log/rooms_form.h"
#include "forms/work_log/sheet_form.h"
#include "forms/work_log/sheet_pages.h"
#include "forms/work_log/work_log_form.h"
#include "forms/work_log/work_log_model.h"
#include "panels/panel_image.h"
#include "projectors/library_file.h"
#include "simulation/simulated_line.h"
#include "support/dialog_script.h"
#include "support/fake_prompts.h"
#include "support/files.h"
#include "support/form_time.h"
#include "support/panel_descriptions.h"
#include "support/temp_folder.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTableView>
#include <QTableWidget>
#include <QTextDocument>

#include <gmock/gmock.h>

namespace qdm {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::filesystem::path kExamples = PathFromUtf8(QDM_SOURCE_DIR) / "examples";

struct WorkLogForms : testing::Test {
  TempFolder Folder;
  WorkLog Log{Folder.Path()};
  FakePrompts Prompts;
  QSettings Settings{QString::fromStdString(PathToUtf8(Folder / "settings.ini")), QSettings::IniFormat};

  std::filesystem::path AddRoom(const std::string& name, const std::string& example = "Boardroom QDM7.BVC") {
    std::filesystem::copy_file(kExamples / example, Folder / (name + ".BVC"));
    return Folder / (name + ".BVC");
  }
  void AddDownload(const std::filesystem::path& file, DownloadOutcome outcome = DownloadOutcome::Done) {
    const PanelConfiguration configuration = ReadConfiguration(file);
    WorkLogEntry entry;
    entry.Title = PathToUtf8(file.stem());
    entry.File = RoomOfFile(file);
    entry.Panel = {.Model = 1, .Major = 1, .Minor = 3};
    entry.Port = "COM2";
    entry.Settings = "9600,n,8,2";
    entry.Outcome = outcome;
    entry.Image = Sha256(BuildPanelImage(configuration));
    Log.Add(entry, Encode(configuration));
  }
  static QString Text(QWidget& form, const char* name) {
    return Child<QPlainTextEdit>(form, name).toPlainText();
  }
};

struct WorkLogWindow : WorkLogForms {
  std::optional<PanelConfiguration> Opened;
  QString SentFile;
  ConfigurationCommands Commands() {
    return {[this](QWidget*, const PanelConfiguration& c) { return Opened = c, true; },
            [this](QWidget*, const PanelConfiguration&, const QString& file) { SentFile = file; }};
  }
};

TEST_F(WorkLogWindow, FiltersByAllWordsAndSortsByColumns) {
  for (const char* name : {"Room 2", "Hörsaal", "Room 1", "=1, 2"}) AddDownload(AddRoom(name));
  WorkLogForm form(Log, Prompts, Commands());
  QAbstractItemModel& model = *Child<QTableView>(form, "Entries").model();
  const auto titles = [&model] {
    std::vector<std::string> shown;
    for (int row = 0; row < model.rowCount(); ++row) {
      shown.push_back(model.index(row, WorkLogModel::Configuration).data().toString().toStdString());
    }
    return shown;
  };
  EXPECT_THAT(titles(), ElementsAre("=1, 2", "Room 1", "Hörsaal", "Room 2")) << "newest first";
  Child<QTableView>(form, "Entries").sortByColumn(WorkLogModel::Configuration, Qt::AscendingOrder);
  EXPECT_THAT(titles(), ElementsAre("=1, 2", "Hörsaal", "Room 1", "Room 2"));
  Child<QLineEdit>(form, "Filter").setText(QStringLiteral("com2 ROOM"));
  EXPECT_THAT(titles(), ElementsAre("Room 1", "Room 2"));
  Child<QLineEdit>(form, "Filter").setText(QStringLiteral("HÖR"));
  EXPECT_THAT(titles(), ElementsAre("Hörsaal"));
  const QString day = model.index(0, WorkLogModel::Time).data().toString();
  Child<QLineEdit>(form, "Filter").setText(day);
  EXPECT_EQ(titles().size(), 4U) << "times as they are shown";
  Prompts.Files = {QString::fromStdString(PathToUtf8(Folder / "log.csv"))};
  Click(form, "Export");
  EXPECT_THAT(TextOfFile(Folder / "log.csv"),
              AllOf(HasSubstr(",Hörsaal,QDM7 1.3,COM2,\"9600,n,8,2\",0,0,done,"), HasSubstr(",\"'=1, 2\",")));
}

TEST_F(WorkLogWindow, GivesBackWhatWasSentAndComparesItWithTheFile) {
  const std::filesystem::path file = AddRoom("Room 1");
  const PanelConfiguration sent = ReadConfiguration(file);
  AddDownload(file);
  WorkLogForm form(Log, Prompts, Commands());
  EXPECT_THAT(Text(form, "Details").toStdString(), HasSubstr("Outcome: done"));
  Click(form, "Compare");
  EXPECT_THAT(Text(form, "Details").toStdString(), HasSubstr("is as it was sent"));
  PanelConfiguration changed = sent;
  changed.RoomTimeout = 7;
  changed.Projector.Baudrate = 1;
  WriteConfiguration(file, changed, OldTail::Dropped);
  Click(form, "Compare");
  EXPECT_THAT(Text(form, "Details").toStdString(),
              AllOf(HasSubstr("Room empty timeout: 20 -> 7"), HasSubstr("Speed: 57600 -> 19200")));
  Click(form, "SendAgain");
  EXPECT_EQ(SentFile.toStdString(), RoomOfFile(file));
  Click(form, "OpenAsConfiguration");
  EXPECT_EQ(Opened, sent);
  EXPECT_FALSE(form.isVisible());
}

struct RoomsWindow : WorkLogForms {
  FormTime Time;
  SimulatedPorts Ports{Time};
  ProjectorLibrary Library;
  QString OpenedFile;

  RoomsTools Tools() {
    Settings.setValue(QStringLiteral("rooms/folder"), QString::fromStdString(PathToUtf8(Folder.Path())));
    return {Library, Ports, Time, Log, Prompts, Settings, [this](QWidget*, const QString& file) {
              return OpenedFile = file, true;
            }};
  }
  static std::string Cell(RoomsForm& form, int row, int column) {
    return Child<QTableWidget>(form, "Table").item(row, column)->text().toStdString();
  }
  static std::string Instruction(RoomsForm& form) {
    return Child<QLabel>(form, "Instruction").text().toStdString();
  }
};

TEST_F(RoomsWindow, WalksThroughTheRoomsAndWaitsForEachPanel) {
  const std::filesystem::path second = AddRoom("Room 2");
  AddRoom("Room 10");
  AddDownload(AddRoom("Room 1"));
  AddDownload(second, DownloadOutcome::Failed);
  WriteFileSafely(Folder / "short.bvc", Bytes(10, 0));
  RoomsForm form(Tools());
  EXPECT_EQ(Cell(form, 0, 5), "\u2713 current");
  EXPECT_EQ(Cell(form, 1, 5), "unfinished");
  EXPECT_EQ(Cell(form, 2, 0) + Cell(form, 2, 5), "Room 10never sent");
  EXPECT_THAT(Cell(form, 3, 3), HasSubstr("this file has 10"));
  EXPECT_THAT(Instruction(form), HasSubstr("Go to \"Room 2\" and plug in its QDM 7"));

  SimulatedPanel* panel = nullptr;
  Time.Plan(std::chrono::seconds(30), [&] {
    EXPECT_THAT(Instruction(form), HasSubstr("Waiting for the QDM 7 of \"Room 2\""));
    panel = &Ports.AttachPanel(5, "ttySIM", SimulatedPanel(Described(kQdm7, "19200,e,8,2")));
  });
  Click(form, "ProgramNext");
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->Memory(), BuildPanelImage(ReadConfiguration(second)));
  EXPECT_EQ(Cell(form, 1, 5), "\u2713 current");
  EXPECT_THAT(Instruction(form), HasSubstr("Go to \"Room 10\""));

  // Two panels of the type, and the user gives up.
  Ports.AttachPanel(6, "ttySIM2", SimulatedPanel(Described(kQdm7, "19200,e,8,2")));
  Time.Plan(std::chrono::seconds(60), [&] {
    EXPECT_THAT(Instruction(form), HasSubstr("More than one QDM 7 answers"));
    Click(form, "Stopper");
  });
  Click(form, "ProgramNext");
  EXPECT_EQ(Log.Entries().size(), 3U);
  EXPECT_THAT(Instruction(form), HasSubstr("Go to \"Room 10\""));

  // Programming is not stopped unasked.
  Ports.AttachLine(6, "");
  Ports.AttachPanel(5, "ttySIM", SimulatedPanel(Described(kQdm7, "9600,n,8,2", {"late-ack:%1:100"})));
  Prompts.Answers = {false};
  Time.Plan(std::chrono::seconds(4), [&] { Click(form, "Stopper"); });
  Click(form, "ProgramNext");
  EXPECT_THAT(Prompts.LastText(), HasSubstr("partly written"));
  EXPECT_THAT(Instruction(form), HasSubstr("No room is left"));
}

TEST_F(RoomsWindow, TakesOneChangedDefinitionIntoItsRoomsAfterShowingWhatChanges) {
  const std::array files = {AddRoom("Room 1"), AddRoom("Room 2"), AddRoom("Room 3", "Classroom QDM6.BVC")};
  std::vector<PanelConfiguration> before;
  for (const auto& file : files) before.push_back(ReadConfiguration(file));
  for (const std::size_t room : {0U, 2U}) {
    ProjectorDefinition changed = before[room].Projector;
    changed.WarmUpTime = 99;
    Library.Append(changed);
  }
  RoomsForm form(Tools());
  EXPECT_THAT(Cell(form, 0, 2), HasSubstr("(not as in the library)"));
  Child<QTableWidget>(form, "Table").selectRow(1);
  Prompts.Answers = {false, true, true};
  Click(form, "TakeDefinitions");
  EXPECT_EQ(Text(form, "Details").section(QLatin1Char('\n'), 1),
            QStringLiteral("Room 1\n    Warm up time: 50 -> 99\nRoom 2\n    Warm up time: 50 -> 99\n"));
  EXPECT_EQ(ReadConfiguration(files[1]), before[1]) << "No";
  Child<QTableWidget>(form, "Table").selectRow(1);
  Click(form, "TakeDefinitions");
  EXPECT_EQ(ReadConfiguration(files[0]).Projector, Library[0]);
  EXPECT_EQ(ReadConfiguration(files[1]).Projector, Library[0]);
  EXPECT_EQ(ReadConfiguration(files[2]), before[2]) << "another projector";
  Click(form, "TakeDefinitions");
  EXPECT_EQ(ReadConfiguration(files[2]).Projector, Library[1]);
  EXPECT_FALSE(Child<QWidget>(form, "TakeDefinitions").isEnabled());
  ShowActive(form);
  auto& table = Child<QTableWidget>(form, "Table");
  table.setCurrentCell(0, 0);
  table.setFocus();
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_TRUE(OpenedFile.endsWith(QLatin1String("Room 1.BVC")));
}

TEST_F(RoomsWindow, DownloadsAreWrittenDownAndTroubleWithTheLogIsToldOnce) {
  const std::filesystem::path file = AddRoom("Room 1");
  const PanelConfiguration configuration = ReadConfiguration(file);
  DownloadRecorder recorder(Log, Prompts);
  Ports.AttachPanel(3, "ttyUSB0", SimulatedPanel(Described(kQdm7, "19200,e,8,2")));
  const auto known = [&](const std::filesystem::path& room) {
    const std::optional<KnownPanel> panel = recorder.Known(kQdm7, room, Ports);
    return panel ? panel->Port + " " + panel->Settings : "";
  };
  FinishedDownload download{.File = file, .Panel = {1, 1, 3}, .Port = "COM3", .Settings = "9600,n,8,2"};
  download.Result = {.Connected = true, .Records = 64, .Programmed = true, .Restarted = true};
  recorder.Write(nullptr, configuration, BuildPanelImage(configuration), download);
  EXPECT_EQ(known(file), "COM3 57600,n,8,2") << "where its projector's line is";
  EXPECT_EQ(known({}), known(file)) << "also for a configuration that was never saved";
  EXPECT_FALSE(recorder.Known(kTlVox, file, Ports));
  download.Port = "COM9";
  recorder.Write(nullptr, configuration, {}, download);
  EXPECT_EQ(known(file), "COM3 57600,n,8,2") << "there is no COM9 now";

  std::filesystem::remove(Log.File());
  std::filesystem::create_directory(Log.File());
  EXPECT_EQ(known(file), "");
  EXPECT_TRUE(Prompts.Shown.empty());
  for (int n = 0; n < 2; ++n) recorder.Write(nullptr, configuration, {}, download);
  ASSERT_EQ(Prompts.Shown.size(), 1U);
  EXPECT_THAT(Prompts.LastText(), HasSubstr("The download itself is not affected"));
}

TEST_F(WorkLogForms, TheSheetSaysWhatWasSentAndByWhom) {
  const std::filesystem::path file = AddRoom("Room & 1");
  AddDownload(file);
  SheetForm form(ReadConfiguration(file), file, Log, Prompts, Settings);
  Child<QLineEdit>(form, "By").setText(QStringLiteral("A & B"));
  Prompts.Files = {QString::fromStdString(PathToUtf8(Folder / "sheet.HTML")),
                   QString::fromStdString(PathToUtf8(Folder / "none/sheet.pdf"))};
  Click(form, "SaveHtml");
  EXPECT_EQ(CommissionedBy(Settings), QStringLiteral("A & B"));
  QTextDocument sheet;
  sheet.setHtml(QString::fromStdString(TextOfFile(Folder / "sheet.HTML")));
  const std::string text = sheet.toPlainText().toStdString();
  const std::string digits = HexDigits(Sha256(BuildPanelImage(ReadConfiguration(file))));
  for (const std::string& part :
       {std::string("Commissioning sheet: Room & 1"), std::string("Commissioned by: A & B"), digits,
        std::string("What this sheet describes is what was sent last."),
        std::string("It can be locked; the code is"), std::string("COM2 9600,n,8,2"),
        std::string("23 41 31 3D 50 57 2C 31 0D 0A")}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
  EXPECT_THAT(text, Not(HasSubstr("TL-VOX")));
  Click(form, "SavePdf");
  EXPECT_THAT(Prompts.LastText(), HasSubstr("sheet.pdf"));
}

}  // namespace
}  // namespace qdm
