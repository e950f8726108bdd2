// Takes the help's pictures from the running windows on the example data:
//   make_pictures EXAMPLES HELP_PICTURES README_PICTURES
// The look is fixed, so that a picture changes only when its window does.
#include "app/resources.h"
#include "config/configuration_file.h"
#include "forms/bench/projector_bench_form.h"
#include "forms/bench/serial_test_form.h"
#include "forms/download/download_form.h"
#include "forms/editor/projector_panel_editor.h"
#include "forms/manuals/manual_form.h"
#include "forms/manuals/manual_text.h"
#include "forms/projectors/projector_replace_form.h"
#include "forms/projectors/projector_selector.h"
#include "forms/projectors/projector_setup_form.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/serial_editor.h"
#include "forms/strings/volume_editor_form.h"
#include "forms/work_log/rooms_form.h"
#include "forms/work_log/sheet_form.h"
#include "forms/work_log/sheet_pages.h"
#include "forms/work_log/work_log_form.h"
#include "serial_io/event_loop_waiting.h"
#include "simulation/pressed_buttons_port.h"
#include "simulation/simulated_line.h"
#include "work_log/download_record.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QCursor>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeView>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <utility>

namespace qdm {
namespace {

// String slots that the pictures show.
constexpr std::int16_t kPowerOn = 1;
constexpr std::int16_t kBlank = 5;
constexpr std::int16_t kVolumeUp = 6;

constexpr int kWidestInHelp = 860;  // beside the contents, in the help window's first size
constexpr int kWidestInReadme = 1366;

[[noreturn]] void Fail(const std::string& reason) {
  std::fprintf(stderr, "make_pictures: %s\n", reason.c_str());
  std::exit(1);
}

// Nothing asks anything while pictures are taken; what does is a mistake in this program.
class NoPrompts : public UserPrompts {
 public:
  void Show(QWidget*, const Message& message) override { Fail(message.Text); }
  bool AskYesNo(QWidget*, const Message& question) override { Fail(question.Text); }
  SaveAnswer AskSave(QWidget*, const Message& question) override { Fail(question.Text); }
  int Choose(QWidget*, const Message& question, const QStringList&, int) override { Fail(question.Text); }
  std::optional<QString> OpenFile(QWidget*, const QString&, const char*, const QString&) override {
    Fail("Open?");
  }
  std::optional<QString> SaveFile(QWidget*, const QString&, const char*, const QString&) override {
    Fail("Save?");
  }
};

// A projector that answers the command of the picture, whose bytes come one by one.
class AnsweringProjector : public SerialPort {
 public:
  void SetSettings(std::string_view) override {}
  bool Open() override { return open_ = true; }
  void Close() override { open_ = false; }
  bool IsOpen() const override { return open_; }
  std::size_t BytesWaiting() override { return reply_.size(); }
  Bytes ReadAll() override { return std::exchange(reply_, {}); }
  bool Write(ByteView bytes) override {
    constexpr std::uint8_t kLastOfCommand = 0xB9;
    if (!bytes.empty() && bytes.back() == kLastOfCommand) reply_ = {0xA5, 0x03, 0x90, 0x01, 0x39};
    return open_;
  }

 private:
  bool open_ = false;
  Bytes reply_;
};

class ProjectorPort : public SerialPorts {
 public:
  std::string DeviceName(int number) const override { return number == 1 ? "ttyUSB0" : ""; }
  std::unique_ptr<SerialPort> Port(int) override { return std::make_unique<AnsweringProjector>(); }
};

// Waits for nothing, so that every time in a picture is the same again.
class JumpingTime : public Waiting {
 public:
  std::function<void()> WhenOver;  // what the user does then
  Microseconds Over = std::chrono::hours(1);

  Microseconds Now() const override { return now_; }
  void WakeAt(Microseconds when) override { wakes_.insert(when); }
  void Yield(Microseconds until) override {
    QApplication::processEvents();
    wakes_.erase(wakes_.begin(), wakes_.upper_bound(now_));
    now_ = std::max(now_, wakes_.empty() ? until : std::min(until, *wakes_.begin()));
    if (now_ >= Over && WhenOver) WhenOver();
  }

 private:
  Microseconds now_{};
  std::set<Microseconds> wakes_;
};

// Answers every command at its own settings, but for the time that it warms up, and when it is given time.
class BenchProjector : public SerialPort {
 public:
  BenchProjector(const ProjectorDefinition& projector, Waiting& time) : projector_(projector), time_(time) {}

  void SetSettings(std::string_view settings) override { settings_ = settings; }
  bool Open() override { return true; }
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::size_t BytesWaiting() override { return reply_.size(); }
  Bytes ReadAll() override { return std::exchange(reply_, {}); }
  bool Write(ByteView bytes) override {
    constexpr Microseconds kWarmUp = std::chrono::milliseconds(33'400);
    constexpr Microseconds kPause = std::chrono::milliseconds(43);
    if (settings_ != "38400,n,8,1") return true;
    if (command_.empty()) tooSoon_ = time_.Now() - last_ < kPause;
    command_.insert(command_.end(), bytes.begin(), bytes.end());
    const SerialString& powerOn = projector_.Strings[kPowerOn];
    if (command_.size() < powerOn.BytesInUse()) return true;
    const bool on = std::equal(command_.begin(), command_.end(), powerOn.Values.begin());
    last_ = time_.Now();
    command_.clear();
    if (tooSoon_ || time_.Now() < readyAt_) return true;
    if (on) readyAt_ = time_.Now() + kWarmUp;
    reply_ = {0x06};
    return true;
  }

 private:
  const ProjectorDefinition& projector_;
  Waiting& time_;
  std::string settings_;
  Bytes command_;
  Bytes reply_;
  Microseconds readyAt_{};
  Microseconds last_{};
  bool tooSoon_ = false;
};

// COM1: the panel's projector cable; COM2: a projector.
class BenchPorts : public SerialPorts {
 public:
  BenchPorts(const PanelConfiguration& programmed, const ProjectorDefinition& projector, Waiting& time)
      : programmed_(programmed), projector_(projector), time_(time) {}

  std::string DeviceName(int number) const override {
    return number <= 2 ? "ttyUSB" + std::to_string(number - 1) : "";
  }
  std::unique_ptr<SerialPort> Port(int number) override {
    if (number == 2) return std::make_unique<BenchProjector>(projector_, time_);
    const auto buttons = PanelButtons::Of(BuildPanelImage(programmed_), programmed_.ControllerType);
    if (!buttons) Fail("an example has no buttons");
    return std::make_unique<PressedButtonsPort>(*buttons, time_);
  }

 private:
  const PanelConfiguration& programmed_;
  const ProjectorDefinition& projector_;
  Waiting& time_;
};

void Save(QWidget& window, const QString& file, int widest = kWidestInHelp) {
  for (int round = 0; round < 3; ++round) QApplication::processEvents();
  // A blinking cursor is in one picture and not in the next.
  if (QWidget* focus = window.focusWidget()) focus->clearFocus();
  QApplication::processEvents();
  QImage picture = window.grab().toImage();
  if (picture.width() > widest) picture = picture.scaledToWidth(widest, Qt::SmoothTransformation);
  if (!picture.save(file)) Fail(file.toStdString() + " cannot be written");
}

// Every command of the main window is enabled.
EditorWindows AllWindows() {
  const auto open = [](QWidget*) {};
  return {.Selector = open,
          .Download = [](QWidget*, const PanelConfiguration&) {},
          .FindPanel = open,
          .Bench = [](QWidget*, ProjectorDefinition&) {},
          .Help = open,
          .About = open,
          .Work = {}};
}

struct Pictures {
  QDir Examples;
  QDir Help;
  QDir Readme;
  QTemporaryDir Data;
  NoPrompts Prompts;
  QSettings Settings{Data.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
  Globals Shared;

  Pictures(const QString& examples, const QString& help, const QString& readme)
      : Examples(examples), Help(help), Readme(readme) {
    Shared.DataFolder = ToPath(Data.path());
    Shared.ProgramFolder = ToPath(QApplication::applicationDirPath());
    for (const QString& name : Examples.entryList({QStringLiteral("*.DEF"), QStringLiteral("*.BVC")})) {
      QFile::copy(Examples.filePath(name), Data.filePath(name));
    }
  }

  const ProjectorDefinition& Projector(std::u16string_view manufacturer, std::u16string_view model) const {
    const auto index =
        Shared.ProjectorDatabase.FindProjector(FixedText<32>(manufacturer), FixedText<32>(model));
    if (!index) Fail("an example projector is missing");
    return Shared.ProjectorDatabase[*index];
  }

  void MainWindow() {
    const EditorWindows windows = AllWindows();
    ProjectorPanelEditor editor(Shared, Prompts, Settings, windows);
    editor.Form_Load();
    editor.show();
    editor.OpenNamedFile(Data.filePath(QStringLiteral("Boardroom QDM7.BVC")));
    editor.ShowStatus(QStringLiteral("Opened Boardroom QDM7.BVC (/home/anna/rooms)"));
    editor.resize(kWidestInReadme, 740);
    Save(editor, Readme.filePath(QStringLiteral("main-window.png")), kWidestInReadme);
    Save(editor, Help.filePath(QStringLiteral("main-window.png")));
  }

  void Selector() {
    ProjectorSelector selector(Shared, Prompts, [](QWidget*) {});
    auto* const tree = selector.findChild<QTreeView*>();
    const QModelIndex manufacturer = tree->model()->index(1, 0);
    tree->expand(manufacturer);
    tree->setCurrentIndex(tree->model()->index(1, 0, manufacturer));
    selector.resize(860, 420);
    selector.show();
    Save(selector, Help.filePath(QStringLiteral("projector-selector.png")));
  }

  void Replace() {
    ProjectorDefinition changed = Projector(u"CORVANE", u"C32");
    changed.WarmUpTime = 90;
    changed.Strings[kBlank] = changed.Strings[kPowerOn];
    Shared.CurrentProjector = changed;
    ProjectorReplaceForm form(Shared, Prompts);
    form.resize(860, 400);
    form.show();
    Save(form, Help.filePath(QStringLiteral("replace.png")));
  }

  void Setup() {
    Shared.CurrentProjector = Projector(u"BRACKENLIGHT", u"BL-900 Theatre");
    ProjectorSetupForm form(Shared, Prompts, {.Edit = {}, .Test = {}, .Bench = [](QWidget*) {}});
    form.show();
    Save(form, Help.filePath(QStringLiteral("projector-setup.png")));
  }

  void StringEditor() {
    Shared.CurrentProjector = Projector(u"BRACKENLIGHT", u"BL-900 Theatre");
    Shared.CurrentSlot = kVolumeUp;
    SerialEditor form(Shared, Prompts, [](QWidget*) {});
    form.show();
    Save(form, Help.filePath(QStringLiteral("string-editor.png")));
  }

  void VolumeFormat() {
    VolumeEditorForm form(Shared.CurrentProjector, Prompts);
    form.show();
    Save(form, Help.filePath(QStringLiteral("volume-format.png")));
  }

  void TestConsole() {
    Shared.CurrentProjector = Projector(u"CORVANE", u"C32");
    Shared.CurrentSlot = kPowerOn;
    ProjectorPort ports;
    EventLoopWaiting time;
    SerialTestForm form(Shared, ports, time, Prompts, Settings);
    form.SetBench([](QWidget*) {});
    form.show();
    form.findChild<QRadioButton*>(QStringLiteral("Option2_1"))->click();
    form.findChild<QPushButton*>(QStringLiteral("Send"))->click();
    form.Timer1_Timer();
    Save(form, Help.filePath(QStringLiteral("test-console.png")));
  }

  // The page of the example is the one that the help shows.
  void FromManual() {
    QFile page(Help.filePath(QStringLiteral("../from-a-manual.html")));
    if (!page.open(QIODevice::ReadOnly)) Fail("the page of the example is missing");
    const QString html = QString::fromUtf8(page.readAll());
    const QString example = html.section(QStringLiteral("<pre>"), 1).section(QStringLiteral("</pre>"), 0, 0);
    ManualForm form(Prompts);
    form.resize(1180, 560);
    form.show();
    QGuiApplication::clipboard()->setText(example);
    form.findChild<QPushButton*>(QStringLiteral("AddPage"))->click();
    Save(form, Help.filePath(QStringLiteral("from-a-manual.png")));
    auto* const text = form.findChild<ManualText*>();
    text->setTextCursor(text->document()->find(QStringLiteral("LSP+")));
    form.findChild<QAction*>(QStringLiteral("MarkAs_%1").arg(kVolumeUp))->trigger();
    QTextCursor inside = text->textCursor();
    inside.setPosition(inside.selectionStart());
    text->setTextCursor(inside);
    Save(form, Help.filePath(QStringLiteral("from-a-manual-marked.png")));
  }

  // Its definition is not quite what the panel was programmed with, and mistyped in one byte.
  void Bench() {
    const PanelConfiguration configuration =
        ReadConfiguration(ToPath(Examples.filePath(QStringLiteral("Classroom QDM6.BVC"))));
    ProjectorDefinition projector = configuration.Projector;
    SerialString& blank = projector.Strings[kBlank];
    blank.Values[blank.BytesInUse() - 1] = 0x14;
    for (const Slot slot : {kData1Slot, kBlankOffSlot})
      projector.Strings[*ReplySlotOf(slot)] = projector.Strings[kPowerOnReplySlot];
    JumpingTime time;
    BenchPorts ports(configuration, projector, time);
    ProjectorBench form(projector, ports, time, Prompts, Settings);
    form.resize(860, 490);
    form.show();
    const auto click = [&form](const char* button) {
      form.findChild<QPushButton*>(QLatin1String(button))->click();
    };
    const auto save = [&](const char* page, const char* file) {
      auto* pages = form.findChild<QTabWidget*>(QStringLiteral("Pages"));
      pages->setCurrentWidget(form.findChild<QWidget*>(QLatin1String(page)));
      Save(form, Help.filePath(QLatin1String(file)));
    };
    time.Over = std::chrono::seconds(10);
    time.WhenOver = [&] { click("Stopper"); };
    click("Listen");
    save("StandInPage", "bench-stand-in.png");
    time.WhenOver = nullptr;
    form.findChild<QComboBox*>(QStringLiteral("Port"))->setCurrentIndex(1);
    form.findChild<QComboBox*>(QStringLiteral("Command"))->setCurrentText(QStringLiteral("Power on"));
    click("FindSettings");
    save("FinderPage", "bench-finder.png");
    click("UseSettings");
    form.findChild<QTableWidget*>(QStringLiteral("Findings"))->setCurrentCell(0, 0);
    save("CodePage", "bench-codes.png");
    click("MeasureDelay");
    click("MeasureWarmUp");
    save("TimingPage", "bench-timing.png");
  }

  // Searches in true time: some eight seconds.
  void DownloadWindow() {
    EventLoopWaiting time;
    const std::unique_ptr<SimulatedPorts> ports = DemonstrationPorts(time);
    const PanelConfiguration configuration =
        ReadConfiguration(ToPath(Examples.filePath(QStringLiteral("Boardroom QDM7.BVC"))));
    Download form(Shared, configuration, *ports, time, Prompts);
    form.show();
    form.Timer1_Timer();
    Save(form, Help.filePath(QStringLiteral("download.png")));
  }
};

// Three rooms of the building: one as it was sent, one changed since, one that failed.
struct Building {
  const QDir Folder;
  WorkLog Log;

  Building(const Pictures& pictures)
      : Folder(pictures.Data.filePath(QStringLiteral("West wing"))), Log(ToPath(pictures.Data.path())) {
    QDir().mkpath(Folder.path());
    const std::pair<const char*, const char*> rooms[] = {{"101 Boardroom", "Boardroom QDM7.BVC"},
                                                         {"102 Classroom", "Classroom QDM6.BVC"},
                                                         {"103 Classroom", "Classroom QDM6.BVC"},
                                                         {"201 Lecture hall", "Auditorium TL-VOX.BVC"}};
    for (const auto& [room, example] : rooms) {
      if (!QFile::copy(pictures.Examples.filePath(QLatin1String(example)), File(room))) Fail(example);
    }
    Send("101 Boardroom", 0, DownloadOutcome::Done);
    Send("102 Classroom", 41, DownloadOutcome::Done);
    Send("201 Lecture hall", 95, DownloadOutcome::Failed);
    PanelConfiguration changed = ReadConfiguration(ToPath(File("102 Classroom")));
    changed.Projector.WarmUpTime = 35;
    WriteConfiguration(ToPath(File("102 Classroom")), changed, OldTail::Dropped);
  }
  QString File(const char* room) const {
    return Folder.filePath(QLatin1String(room) + QStringLiteral(".BVC"));
  }

 private:
  void Send(const char* room, int minutes, DownloadOutcome outcome) {
    const PanelConfiguration configuration = ReadConfiguration(ToPath(File(room)));
    FinishedDownload download;
    download.File = ToPath(File(room));
    download.Panel = {static_cast<std::uint8_t>(configuration.ControllerType + 1), 1, 3};
    download.Port = "COM1";
    download.Device = "ttyUSB0";
    download.Settings = "9600,n,8,2";
    download.Began = std::chrono::sys_days(std::chrono::year(2026) / 11 / 20) + std::chrono::hours(9) +
                     std::chrono::minutes(minutes);
    download.Ended = download.Began + std::chrono::milliseconds(4210);
    const bool done = outcome == DownloadOutcome::Done;
    download.Result = {.Connected = true, .Records = done ? 64 : 23, .Programmed = done, .Restarted = true};
    Record(Log, configuration, BuildPanelImage(configuration), download);
  }
};

void WorkWindowsOf(Pictures& pictures) {
  const QString kFolder = QStringLiteral("/home/anna/rooms/West wing");  // instead of a temporary one
  Building building(pictures);
  WorkLogForm log(building.Log, pictures.Prompts, {});
  log.resize(1000, 480);
  log.show();
  auto* const details = log.findChild<QPlainTextEdit*>(QStringLiteral("Details"));
  details->setPlainText(details->toPlainText().replace(building.Folder.path(), kFolder));
  Save(log, pictures.Help.filePath(QStringLiteral("work-log.png")));

  EventLoopWaiting time;
  const std::unique_ptr<SimulatedPorts> ports = DemonstrationPorts(time);
  pictures.Settings.setValue(QStringLiteral("rooms/folder"), building.Folder.path());
  RoomsForm rooms({pictures.Shared.ProjectorDatabase,
                   *ports,
                   time,
                   building.Log,
                   pictures.Prompts,
                   pictures.Settings,
                   {}});
  rooms.resize(1000, 520);
  rooms.show();
  rooms.findChild<QLabel*>(QStringLiteral("FolderName"))->setText(kFolder);
  Save(rooms, pictures.Help.filePath(QStringLiteral("rooms.png")));

  const std::filesystem::path boardroom = ToPath(building.File("101 Boardroom"));
  KeepCommissionedBy(pictures.Settings, QStringLiteral("Anna Berger, Berger Media"));
  SheetForm sheet(ReadConfiguration(boardroom), boardroom, building.Log, pictures.Prompts, pictures.Settings);
  sheet.resize(860, 720);
  sheet.show();
  Save(sheet, pictures.Help.filePath(QStringLiteral("sheet.png")));

  const EditorWindows windows = AllWindows();
  ProjectorPanelEditor editor(pictures.Shared, pictures.Prompts, pictures.Settings, windows);
  editor.Form_Load();
  editor.show();
  editor.OpenNamedFile(building.File("101 Boardroom"));
  editor.ShowStatus(QStringLiteral("Opened 101 Boardroom.BVC (%1)").arg(kFolder));
  editor.resize(kWidestInReadme, 740);
  QApplication::processEvents();  // the columns have their widths then
  for (QAction* action : editor.actions()) {
    if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_W)) action->trigger();
  }
  Save(editor, pictures.Help.filePath(QStringLiteral("in-words.png")));
}

int Make(const QStringList& arguments) {
  if (arguments.size() != 4) {
    std::fputs("usage: make_pictures EXAMPLES HELP_PICTURES README_PICTURES\n", stderr);
    return 2;
  }
  Pictures pictures(arguments[1], arguments[2], arguments[3]);
  pictures.MainWindow();
  pictures.Selector();
  pictures.Replace();
  pictures.Setup();
  pictures.FromManual();
  pictures.StringEditor();
  pictures.VolumeFormat();
  pictures.TestConsole();
  pictures.Bench();
  pictures.DownloadWindow();
  WorkWindowsOf(pictures);
  return 0;
}

}  // namespace
}  // namespace qdm

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
  QApplication::setCursorFlashTime(0);
  QCursor::setPos(4000, 4000);  // over no button
  qdm::InitialiseResources();
  return qdm::Make(QApplication::arguments());
}
