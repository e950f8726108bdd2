#include "forms/editor/projector_panel_editor.h"

#include "config/configuration_file.h"
#include "config/version.h"
#include "forms/controls/integer_entry.h"
#include "forms/editor/unsaved_work.h"
#include "forms/projectors/library_fixture.h"
#include "forms/projectors/projector_tree.h"
#include "forms/shared/qt_text.h"
#include "support/slow_disk.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSettings>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

#include <map>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kStartTitle = "Brevan QDM Editor " + VersionText();

class Editor : public LibraryFixture {
 protected:
  Editor() {
    windows_.Selector = [this](QWidget*) {
      if (inSelector_) inSelector_();
    };
    windows_.Download = [this](QWidget*, const PanelConfiguration& configuration) {
      opened_.push_back("download");
      downloaded_ = configuration;
    };
  }

  // The window as the program starts it, on the library of the fixture.
  ProjectorPanelEditor& Start(const QString& commandLine = {}) {
    window_.reset();
    globals_.ProjectorDatabase.MarkUnchanged(
        WriteProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase));
    window_ = std::make_unique<ProjectorPanelEditor>(globals_, prompts_, settings_, windows_);
    window_->Form_Load();
    window_->show();
    window_->OpenNamedFile(commandLine);
    window_->OfferKeptWork();
    return *window_;
  }

  // A file with this configuration; the projector is in the library.
  QString Write(const char* name, PanelConfiguration configuration = {}) {
    if (!HasBothNames(configuration.Projector)) configuration.Projector = Named("ACME", "X 1", 1);
    if (!globals_.ProjectorDatabase.FindProjector(configuration.Projector)) Put({configuration.Projector});
    WriteConfiguration(folder_ / name, configuration, OldTail::Dropped);
    return QString::fromStdString((folder_ / name).string());
  }
  QString Path(const char* name) const { return QString::fromStdString((folder_ / name).string()); }

  void Press(const char* key) { Child<QAction>(*window_, key).trigger(); }
  void Check(const char* name) { Child<QAbstractButton>(*window_, name).click(); }
  // An option that every type shows.
  void ChangeSomething() { Check("LockUsingButtonsCheck"); }
  std::string Title() const { return window_->windowTitle().toStdString(); }
  std::string Label(const char* name) const { return Child<QLabel>(*window_, name).text().toStdString(); }
  std::string Status() const { return Label("StatusText"); }
  std::vector<std::string> Boxes() {
    std::vector<std::string> texts;
    for (const Message& message : prompts_.Shown) texts.push_back(message.Text);
    prompts_.Shown.clear();
    return texts;
  }
  Lines RecentNames() const {
    Lines names;
    const auto* open = qobject_cast<QToolButton*>(
        Child<QToolBar>(*window_, "Toolbar1").widgetForAction(&Child<QAction>(*window_, "OPEN")));
    for (const QAction* action : open->menu()->actions()) {
      names.push_back(action->text().section(QStringLiteral("  "), 1).toStdString());
    }
    return names;
  }
  void Drop(const QString& fileName) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(fileName)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &drop);
    QCoreApplication::processEvents();
  }

  const std::string saved_ = "QDM configuration saved";
  EditorWindows windows_;
  QSettings settings_{QString::fromStdString((folder_ / "settings.ini").string()), QSettings::IniFormat};
  std::unique_ptr<ProjectorPanelEditor> window_;
  std::vector<std::string> opened_;
  PanelConfiguration downloaded_;
  std::function<void()> inSelector_;
};

TEST_F(Editor, OpensTheWindowsOfWorkAndSaysTheOptionsInWords) {
  windows_.Work.WorkLog = [this](QWidget*) { opened_.push_back("work log"); };
  windows_.Work.Sheet = [this](QWidget*, const PanelConfiguration& configuration) {
    opened_.push_back("sheet");
    downloaded_ = configuration;
  };
  ProjectorPanelEditor& editor = Start(Write("Room.BVC"));
  Check("LockUsingButtonsCheck");
  editor.activateWindow();
  QCoreApplication::processEvents();
  for (const char* keys : {"Ctrl+L", "Ctrl+Shift+P", "Ctrl+R", "Ctrl+W"}) {
    QTest::keySequence(&editor, QKeySequence(QLatin1String(keys)));
  }
  EXPECT_THAT(opened_, ElementsAre("work log", "sheet")) << "there are no rooms here";
  EXPECT_NE(downloaded_.LockUsingButtons, 0) << "as it is shown, saved or not";
  auto& words = Child<QTextBrowser>(editor, "WordsPage");
  EXPECT_TRUE(words.isVisible());
  EXPECT_TRUE(
      words.toPlainText().contains(QLatin1String("It can be locked; the code is PC 1, PC 1, PC 1, PC 1.")));
  Check("LockUsingButtonsCheck");
  EXPECT_TRUE(words.toPlainText().contains(QLatin1String("It cannot be locked")));
  Check("OutputsOption_1");
  auto& seconds = Child<QLineEdit>(Child<IntegerEntry>(editor, "ScreenUpTime"), "Text1");
  seconds.setFocus();
  QTest::keyClicks(&seconds, QStringLiteral("77"));
  EXPECT_TRUE(words.toPlainText().contains(QLatin1String("77 seconds to rise"))) << "while it is typed";
}

TEST_F(Editor, OpensTheFileOfItsCommandLine) {
  const QString file = Write("Board room.BVC");
  const QString lower = Write("small.bvc");
  const struct {
    QString CommandLine;
    std::string Title;
  } cases[] = {
      {file, "Board room"},
      {QLatin1Char('"') + file + QLatin1Char('"'), "Board room"},
      {QLatin1Char('"') + file, "Board room"},
      {lower, kStartTitle},
      {Path("missing.BVC"), kStartTitle},
      {QString(), kStartTitle},
  };
  for (const auto& c : cases) {
    Start(c.CommandLine);
    EXPECT_EQ(Title(), c.Title) << c.CommandLine.toStdString();
    EXPECT_THAT(Boxes(), IsEmpty());
  }
}

TEST_F(Editor, ImportsTheDefinitionsOfItsCommandLine) {
  Put({Named("ACME", "X 1", 1)});
  ExportDefinitions(folder_ / "New.BVD", {Named("acme", "X 1", 2), Named("acme", "X 2", 3)});
  const DialogScript script({[](QWidget& dialog) { qdm::Click(dialog, "ReplaceInDataBase"); }});
  Start(Path("New.BVD"));
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 2", "ACME / X 2 = 3"));
  EXPECT_EQ(OnDisk(), InMemory()) << "nothing else would save them";
  EXPECT_EQ(Title(), kStartTitle);
  EXPECT_EQ(Child<ProjectorTree>(*window_, "TreeView1")
                .Model()
                .ElementsOf(Child<ProjectorTree>(*window_, "TreeView1").Model().index(0, 0))
                .size(),
            2U);
  EXPECT_EQ(Status(), "Imported from New.BVD (" + folder_.Path().string() + "): 1 added, 1 replaced");
  Child<QAction>(*window_, "SORT").trigger();
  Start();
  EXPECT_TRUE(Child<QAction>(*window_, "SORT").isChecked()) << "remembered";
}

// 1366 x 768 at twice the scale, without the frame and a task bar.
TEST_F(Editor, FitsASmallScreen) {
  const QSize least = Start().minimumSizeHint();
  EXPECT_LE(least.width(), 670);
  EXPECT_LE(least.height(), 300);
  window_->resize(1000, 700);
  QApplication::setActiveWindow(window_.get());
  QCoreApplication::processEvents();
  auto& columns = Child<QSplitter>(*window_, "Splitter");
  const QList<int> widths = columns.sizes();
  for (int i = 0; i < 2; ++i) QTest::keyClick(window_.get(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(columns.sizes(), widths) << "the words came in place of the first column and went";
}

TEST_F(Editor, HasEachAccessKeyOnce) {
  Start();
  std::map<QString, QString> owners;
  const auto take = [&owners](const QString& text) {
    const QString key = QKeySequence::mnemonic(text).toString();
    if (key.isEmpty()) return;
    EXPECT_TRUE(owners.emplace(key, text).second) << owners[key].toStdString() << ", " << text.toStdString();
  };
  for (const auto* frame : window_->findChildren<QGroupBox*>()) take(frame->title());
  for (const auto* button : window_->findChildren<QToolButton*>()) take(button->text());
}

TEST_F(Editor, OpensAFile) {
  PanelConfiguration configuration;
  configuration.ControllerType = kTlVox;
  configuration.VolumeMin = -12;
  configuration.Projector = Named("ACME", "X 1", 1);
  configuration.Projector.Notes.AssignUtf8("Behind the lectern");
  const QString file = Write("Hall.BVC", configuration);
  Start();
  prompts_.Files = {file};
  Press("OPEN");
  EXPECT_EQ(window_->FileName(), file);
  EXPECT_EQ(Status(), "Opened Hall.BVC (" + folder_.Path().string() + ")");
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = ACME\nModel = X 1");
  EXPECT_EQ(Child<QPlainTextEdit>(*window_, "NotesText").toPlainText(), QStringLiteral("Behind the lectern"));
  EXPECT_EQ(Child<ProjectorTree>(*window_, "TreeView1").SelectedElement(), 0U);
  EXPECT_EQ(Child<IntegerEntry>(*window_, "VolumeMin").Value(), -12);
  EXPECT_FALSE(window_->Modified());
}

TEST_F(Editor, LeavesEverythingWhenAFileCannotBeReadOrWritten) {
  const QString file = Write("Good.BVC");
  WriteAndFlush(folder_ / "Short.BVC", Bytes(3160));
  Start(file);
  Check("LockUsingButtonsCheck");
  const PanelConfiguration before = window_->Configuration();
  prompts_.SaveAnswers = {SaveAnswer::DontSave, SaveAnswer::DontSave, SaveAnswer::DontSave};
  prompts_.Files = {Path("Short.BVC"), Path("missing.BVC"), std::nullopt};
  for (const char* reason : {"3160", "missing.BVC"}) {
    prompts_.Shown.clear();
    Press("OPEN");
    ASSERT_EQ(prompts_.Shown.size(), 2U);
    EXPECT_EQ(prompts_.Shown[1].Title, "Sorry");
    EXPECT_THAT(prompts_.Shown[1].Text, testing::HasSubstr(reason));
  }
  Press("OPEN");  // and cancel
  EXPECT_EQ(window_->Configuration(), before);
  std::filesystem::create_directories(folder_ / "Folder.BVC");
  prompts_.Files = {Path("Folder.BVC")};
  Press("SAVEAS");
  EXPECT_EQ(prompts_.Shown.back().Title, "Sorry");
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr("Folder.BVC"));
  EXPECT_EQ(Title(), "Good");
  EXPECT_TRUE(window_->Modified());
}

TEST_F(Editor, SavesOverItsOwnFileWithoutATailAndOverAnotherWithIt) {
  const QString file = Write("Room.BVC");
  std::filesystem::resize_file(folder_ / "Room.BVC", 5000);
  Start(file);
  Check("OutputsOption_1");
  Press("SAVE");
  ASSERT_EQ(prompts_.Shown.size(), 1U);
  EXPECT_EQ(prompts_.Shown[0], (Message{saved_, "File Saved.", MessageIcon::None}));
  EXPECT_EQ(std::filesystem::file_size(folder_ / "Room.BVC"), kStoredConfigurationSize);
  EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").OutputsOption, kOutputsScreen);
  EXPECT_FALSE(window_->Modified());
  EXPECT_EQ(Status(), "Saved Room.BVC (" + folder_.Path().string() + ")");

  prompts_.Shown.clear();
  WriteAndFlush(folder_ / "Other.BVC", Bytes(4000, 7));
  prompts_.Files = {std::nullopt, Path("Other.BVC")};
  Press("SAVEAS");  // and cancel
  EXPECT_EQ(Title(), "Room");
  Press("SAVEAS");
  EXPECT_THAT(Boxes(), ElementsAre(saved_));
  EXPECT_EQ(Title(), "Other");
  EXPECT_EQ(std::filesystem::file_size(folder_ / "Other.BVC"), 4000U) << "the tail stays";
  EXPECT_EQ(ReadConfiguration(folder_ / "Other.BVC").OutputsOption, kOutputsScreen);
}

TEST_F(Editor, AsksForANameOnlyWhenThereIsNone) {
  Put({Named("ACME", "X 1")});
  Start();
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre("Cannot proceed, no projector has been defined!"));
  auto& tree = Child<ProjectorTree>(*window_, "TreeView1");
  tree.expandAll();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                    tree.visualRect(tree.Model().IndexOf(Named("ACME", "X 1"))).center());
  prompts_.Files = {Path("First.BVC")};
  Press("SAVE");
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre(saved_, saved_));
  EXPECT_EQ(Title(), "First");
}

// The established order: saving checks the record before the controls are stored, downloading after.
TEST_F(Editor, ChecksBeforeStoringWhenItSavesAndAfterWhenItDownloads) {
  PanelConfiguration configuration;
  configuration.ControllerType = kTlVox;
  const QString file = Write("Amplifier.BVC", configuration);
  Start(file);
  auto& maximum = Child<IntegerEntry>(*window_, "VolumeMax");
  auto& minimum = Child<IntegerEntry>(*window_, "VolumeMin");
  maximum.SetValue(-6);
  minimum.SetValue(18);
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre(saved_)) << "the record still had good values";
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre("Cannot proceed, Maximum volume is less than or equal to minimum!"));
  maximum.SetValue(18);
  minimum.SetValue(-45);
  Press("SAVE");
  EXPECT_THAT(Boxes(), ElementsAre("Cannot proceed, Maximum volume is less than or equal to minimum!"));
  Press("DOWNLOAD");
  EXPECT_THAT(opened_, ElementsAre("download"));
  EXPECT_EQ(downloaded_.VolumeMin, -45);
}

TEST_F(Editor, NamesItsCommandsAsEstablishedAndSaysWhichHaveNoWindow) {
  Start();
  QStringList tips;
  const auto& bar = Child<QToolBar>(*window_, "Toolbar1");
  for (QAction* action : bar.actions()) {
    if (!action->isSeparator() && !action->objectName().isEmpty())  // the work menu's button has no action
      tips << action->objectName() + QLatin1Char('=') + bar.widgetForAction(action)->toolTip();
  }
  EXPECT_EQ(tips.join(QLatin1Char('|')).toStdString(),
            "NEW=Start New Configuration (Ctrl+N)|"
            "OPEN=Open Existing Configuration (Ctrl+O, recent files Ctrl+Shift+O)|"
            "SAVE=Save Configuration (Ctrl+S)|SAVEAS=Save Configuration As New File (Ctrl+Shift+S)|"
            "UNDO=Nothing to undo (Ctrl+Z)|REDO=Nothing to redo (Ctrl+Shift+Z)|"
            "EDITPROJECTOR=Edit projectors (Ctrl+P)|DOWNLOAD=Donload Configuration to Controller (Ctrl+D)|"
            "EXIT=Ctrl+Q|HELP=Diplay help: not available in this version|"
            "ABOUT=Display information about this program: not available in this version");
}

TEST_F(Editor, StartsANewConfiguration) {
  PanelConfiguration configuration;
  configuration.ControllerType = kQdm4;
  configuration.Spare[3] = 9;
  Start(Write("Room.BVC", configuration));
  Press("NEW");
  EXPECT_EQ(Title(), kStartTitle);
  EXPECT_TRUE(Child<QAbstractButton>(*window_, "Option2_0").isChecked());
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = \nModel = ");
  EXPECT_EQ(window_->Configuration().Spare[3], 9) << "not an option";
  EXPECT_FALSE(window_->Modified());
  EXPECT_EQ(window_->FileName(), QString());
}

TEST_F(Editor, TakesTheProjectorThatIsLit) {
  Put({Named("ACME", "X 1", 1), Named("ACME", "X 2", 2), Named("ZETA", "Z", 3)});
  Start();
  auto& tree = Child<ProjectorTree>(*window_, "TreeView1");
  QTest::keyClicks(&Child<QWidget>(*window_, "Filter"), QStringLiteral("x"));
  ASSERT_EQ(tree.Model().rowCount(), 1);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(tree.Model().index(0, 0)).center());
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = \nModel = ") << "a manufacturer changes nothing";
  tree.expandAll();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                    tree.visualRect(tree.Model().IndexOf(Named("ACME", "X 2"))).center());
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = ACME\nModel = X 2");
  EXPECT_EQ(window_->Configuration().Projector, globals_.ProjectorDatabase[1]);
  EXPECT_TRUE(window_->Modified());
  QApplication::setActiveWindow(window_.get());
  tree.setFocus();
  for (const auto& [key, line] :
       {std::pair{Qt::Key_Up, "ACME / X 1 = 1"}, {Qt::Key_Down, "ACME / X 2 = 2"}}) {
    QTest::keyClick(&tree, key);
    EXPECT_EQ(Line(window_->Configuration().Projector), line) << "by key alike";
    EXPECT_EQ(QToolTip::text(), tree.currentIndex().data(Qt::ToolTipRole).toString());
  }
  QTest::keyClicks(&Child<QWidget>(*window_, "Filter"), QStringLiteral(" z"));
  EXPECT_EQ(Line(window_->Configuration().Projector), "ACME / X 2 = 2") << "filtering chooses nothing";
}

TEST_F(Editor, UndoesAndRedoesWhatTheUserDid) {
  Put({Named("ACME", "X 1", 1), Named("ACME", "X 2", 2)});
  Start(Write("Room.BVC"));
  const auto tip = [this](const char* key) { return Child<QAction>(*window_, key).toolTip().toStdString(); };
  Check("OutputsOption_1");
  auto& entry = Child<QLineEdit>(Child<QWidget>(*window_, "ScreenUpTime"), "Text1");
  window_->activateWindow();
  QCoreApplication::processEvents();
  entry.setFocus();
  entry.selectAll();
  QTest::keyClicks(&entry, QStringLiteral("2"));
  EXPECT_TRUE(Child<QLabel>(*window_, "UnsavedMark").isVisible()) << "while a number is being typed";
  QTest::keyClicks(&entry, QStringLiteral("5"));
  Press("SAVE");
  auto& tree = Child<ProjectorTree>(*window_, "TreeView1");
  tree.expandAll();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                    tree.visualRect(tree.Model().IndexOf(Named("ACME", "X 2"))).center());
  const struct {
    const char* Undone;
    int UpTime;
    int Outputs;
    const char* Projector;
    bool Modified;
  } steps[] = {{"Undo: Projector", 25, 1, "ACME / X 2 = 2", true},
               {"Undo: Outputs: up time", 25, 1, "ACME / X 1 = 1", false},
               {"Undo: Outputs", 1, 1, "ACME / X 1 = 1", true},
               {"Nothing to undo", 1, 0, "ACME / X 1 = 1", true}};
  const auto expect = [&](const auto& step) {
    EXPECT_EQ(tip("UNDO"), step.Undone);
    EXPECT_EQ(Child<IntegerEntry>(*window_, "ScreenUpTime").Value(), step.UpTime);
    EXPECT_EQ(Child<QAbstractButton>(*window_, "OutputsOption_1").isChecked(), step.Outputs == 1);
    EXPECT_EQ(Line(window_->Configuration().Projector), step.Projector);
    EXPECT_EQ(window_->Modified(), step.Modified) << "as the file has it";
  };
  for (const auto& step : steps) {
    expect(step);
    QTest::keyClick(&entry, Qt::Key_Z, Qt::ControlModifier);
  }
  for (std::size_t i = std::size(steps); i-- > 0;) {
    expect(steps[i]);
    QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  }
}

TEST_F(Editor, AsksBeforeItSavesOverWhatOthersDid) {
  const QString file = Write("Room.BVC");
  const PanelConfiguration opened = ReadConfiguration(folder_ / "Room.BVC");
  PanelConfiguration theirs = opened;
  theirs.VolumeMax = 6;
  const std::vector<std::pair<const char*, std::string>> answers = {
      {"Cancel", "Room"}, {"Save &as", "Other"}, {"&Open theirs", "Room"}, {"Save &mine", "Room"}};
  for (const auto& [answer, title] : answers) {
    WriteConfiguration(folder_ / "Room.BVC", opened, OldTail::Dropped);
    Start(file);
    ChangeSomething();
    WriteConfiguration(folder_ / "Room.BVC", theirs, OldTail::Dropped);
    prompts_.Choices = {QLatin1String(answer)};
    prompts_.Files = {Path("Other.BVC")};
    prompts_.Shown.clear();
    Press("SAVE");
    EXPECT_THAT(prompts_.Shown.at(0).Detail, testing::HasSubstr("Maximum volume: mine 18, theirs 6"));
    EXPECT_EQ(Title(), title) << answer;
    EXPECT_EQ(window_->Modified(), std::string(answer) == "Cancel");
    EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").VolumeMax,
              std::string(answer) == "Save &mine" ? 18 : 6);
  }
  Press("SAVE");  // over what was saved here: no question
  std::filesystem::remove(folder_ / "Room.BVC");
  prompts_.Choices = {QStringLiteral("Save &here again")};
  Press("SAVE");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Room.BVC"));
}

TEST_F(Editor, TellsWhatItCannotShowAndWhatCannotBePressed) {
  PanelConfiguration configuration;
  configuration.ControllerType = kQdm4;
  configuration.VolumeMax = 300;
  configuration.LockSequence[0] = kVolumeUpButton;
  Start(Write("My & room [*] 50%.BVC", configuration));
  EXPECT_EQ(Title(), "My & room [*][*] 50%") << "which shows as one";
  EXPECT_THAT(Status(), testing::StartsWith("Maximum volume: 300 would be saved as 18. Opened My & room"));
  EXPECT_TRUE(window_->Modified());
  Press("SAVE");
  EXPECT_FALSE(window_->Modified());
  EXPECT_THAT(Status(),
              testing::StartsWith("First button of the unlock sequence: Volume up: not on a QDM 4. Saved"));
  prompts_.Answers = {false, true};
  Press("DOWNLOAD");
  EXPECT_THAT(prompts_.LastText(), testing::StartsWith("The unlock sequence cannot be pressed on a QDM 4."));
  EXPECT_THAT(opened_, IsEmpty());
  Press("DOWNLOAD");
  EXPECT_THAT(opened_, ElementsAre("download"));
  prompts_.Files = {std::nullopt, std::nullopt};
  Press("OPEN");
  EXPECT_EQ(prompts_.Folder.toStdString(), folder_.Path().string()) << "of the current file";
  Press("NEW");
  Press("OPEN");
  EXPECT_EQ(prompts_.Folder.toStdString(), folder_.Path().string()) << "of the last one";
}

TEST_F(Editor, ReadsTheLibraryAgainWhenItComesToTheFront) {
  Start(Write("Room.BVC"));
  ProjectorLibrary others = globals_.ProjectorDatabase;
  others.Append(Named("ZETA", "Z", 3));
  WriteProjectorDatabase(globals_.DataFolder, others);
  QEvent event(QEvent::ActivationChange);
  window_->activateWindow();
  QCoreApplication::processEvents();
  QApplication::sendEvent(window_.get(), &event);
  QCoreApplication::processEvents();
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "ZETA / Z = 3"));
  EXPECT_EQ(Child<ProjectorTree>(*window_, "TreeView1").SelectedElement(), 0U) << "the lit model stays";
}

TEST_F(Editor, AddsAnUnknownProjectorToTheLibraryAtOnce) {
  const QString file = Write("Room.BVC");
  globals_.ProjectorDatabase.Clear();
  PanelConfiguration configuration = ReadConfiguration(folder_ / "Room.BVC");
  configuration.Projector = Named(" acme", "X 1 ", 5);
  WriteConfiguration(folder_ / "Room.BVC", configuration, OldTail::Dropped);
  Start(file);
  EXPECT_THAT(OnDisk(), ElementsAre("ACME / X 1 = 5"));
  EXPECT_EQ(InMemory(), OnDisk());
  EXPECT_EQ(Child<ProjectorTree>(*window_, "TreeView1").Model().rowCount(), 1);
  EXPECT_EQ(window_->Configuration().Projector, configuration.Projector)
      << "the file's own copy stays as it is";
  EXPECT_FALSE(window_->Modified());
}

TEST_F(Editor, SettlesAProjectorThatDiffers) {
  const QString file = Write("Room.BVC");
  globals_.ProjectorDatabase.Replace(0, Named("ACME", "X 1", 8));
  const DialogScript script({Clicks("ReplaceInConfiguration")});
  Start(file);
  EXPECT_EQ(Line(window_->Configuration().Projector), "ACME / X 1 = 8");
  EXPECT_TRUE(window_->Modified()) << "the file has another";
  Press("UNDO");
  EXPECT_EQ(Line(window_->Configuration().Projector), "ACME / X 1 = 1");
}

TEST_F(Editor, OffersTheNewVersionAfterEditingProjectors) {
  Start(Write("Room.BVC"));
  inSelector_ = [this] { globals_.ProjectorDatabase.Replace(0, Named("ACME", "X 1", 9)); };
  prompts_.Answers = {false, true};
  Press("EDITPROJECTOR");
  EXPECT_EQ(prompts_.Shown.back(),
            (Message{"The projector included in this configuration has been edited!\r\n"
                     "Do you wish to change it to the new version?",
                     "Projector Changed!", MessageIcon::Question}));
  EXPECT_EQ(window_->Configuration().Projector.InterCommandDelay, 1);
  Press("EDITPROJECTOR");
  EXPECT_EQ(window_->Configuration().Projector.InterCommandDelay, 9);
  Press("EDITPROJECTOR");  // the same now: no question
  inSelector_ = [this] {
    globals_.ProjectorDatabase.Clear();
    Put({Named("ZETA", "Z")});
  };
  Press("EDITPROJECTOR");  // gone from the library: none either
  EXPECT_EQ(Boxes().size(), 2U);
  EXPECT_EQ(Child<ProjectorTree>(*window_, "TreeView1").Model().index(0, 0).data(), QStringLiteral("ZETA"));
}

TEST_F(Editor, AsksBeforeItGivesUpChanges) {
  const QString file = Write("Room.BVC");
  const QString other = Write("Other.BVC");
  const struct {
    const char* What;
    std::function<void()> Do;
    std::string TitleAfter;
  } ways[] = {
      {"NEW", [&] { Press("NEW"); }, kStartTitle},
      {"OPEN",
       [&] {
         prompts_.Files = {other};
         Press("OPEN");
       },
       "Other"},
      {"a recent file",
       [&] {
         const auto* open = qobject_cast<QToolButton*>(
             Child<QToolBar>(*window_, "Toolbar1").widgetForAction(&Child<QAction>(*window_, "OPEN")));
         open->menu()->actions().at(1)->trigger();
       },
       "Other"},
      {"a dropped file", [&] { Drop(other); }, "Other"},
      {"the close box", [&] { window_->close(); }, "Room"},
  };
  for (const auto& way : ways) {
    for (const SaveAnswer answer : {SaveAnswer::Cancel, SaveAnswer::DontSave, SaveAnswer::Save}) {
      WriteConfiguration(folder_ / "Room.BVC", ReadConfiguration(folder_ / "Other.BVC"), OldTail::Dropped);
      Start(other);
      window_.reset();
      Start(file);
      ChangeSomething();
      EXPECT_TRUE(Child<QLabel>(*window_, "UnsavedMark").isVisible());
      prompts_.SaveAnswers = {answer};
      prompts_.Files.clear();
      way.Do();
      const bool goesOn = answer != SaveAnswer::Cancel;
      EXPECT_EQ(Title(), goesOn ? way.TitleAfter : "Room") << way.What;
      EXPECT_EQ(window_->isVisible(), way.TitleAfter != "Room" || !goesOn) << way.What;
      EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").LockUsingButtons != 0, answer == SaveAnswer::Save);
      EXPECT_TRUE(prompts_.SaveAnswers.empty()) << way.What << " did not ask";
      prompts_.Shown.clear();
    }
  }
}

TEST_F(Editor, ExitsAtOnceAndKeepsWhatWasNotSaved) {
  const QString file = Write("Room.BVC");
  for (const char* kept : {"Unsaved.BVC", "Unsaved 2.BVC"}) {
    prompts_.Choices.assign(static_cast<std::size_t>(KeptWork(settings_).size()), QStringLiteral("&Later"));
    Start(file);
    Boxes();
    ChangeSomething();
    Press("EXIT");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(Boxes(), IsEmpty());
    EXPECT_EQ(ReadConfiguration(folder_ / "Room.BVC").LockUsingButtons, 0);
    EXPECT_EQ(ReadConfiguration(folder_ / kept).LockUsingButtons, -1);
  }
  prompts_.Choices = {QStringLiteral("&Discard"), QStringLiteral("&Open")};
  Start(file);
  EXPECT_THAT(Boxes(), ElementsAre(testing::HasSubstr("Unsaved 2.BVC (" + folder_.Path().string() + ")"),
                                   testing::HasSubstr("Unsaved.BVC")))
      << "also when a file is opened at the start";
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Unsaved 2.BVC"));
  EXPECT_EQ(Title(), "Unsaved");
  Press("EXIT");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Unsaved 2.BVC")) << "nothing to keep";
  Start(file);
  EXPECT_THAT(Boxes(), IsEmpty()) << "opened once is dealt with";

  globals_.DataFolder /= "missing";
  ChangeSomething();
  prompts_.Choices = {QStringLiteral("&Stay"), QStringLiteral("&Exit anyway")};
  for (const bool stays : {true, false}) {
    Press("EXIT");
    EXPECT_EQ(window_->isVisible(), stays);
  }
}

TEST_F(Editor, KeepsDefinitionsThatAreNotSavedUntilTheyAre) {
  inSelector_ = [this] {
    globals_.UnstoredProjector = [] { return Named("", "New", 7); };
    Put({Named("ACME", "Added", 8)});
    EXPECT_TRUE(window_->KeepWork() && window_->KeepWork());
    globals_.UnstoredProjector = nullptr;
  };
  Start();
  Press("EDITPROJECTOR");
  EXPECT_THAT(KeptWork(settings_), IsEmpty()) << "the user gave them up";
  globals_.ProjectorDatabase.Clear();
  Start();
  window_->LeaveUnasked();
  Press("EDITPROJECTOR");
  EXPECT_EQ(KeptWork(settings_), QStringList(Path("Unsaved.BVD")));
  globals_.ProjectorDatabase.Clear();
  globals_.Leaving = false;
  prompts_.Choices = {QStringLiteral("&Open")};
  Start();
  EXPECT_THAT(OnDisk(), ElementsAre("ACME / Added = 8", "UNSAVED / New = 7"));
  EXPECT_THAT(KeptWork(settings_), IsEmpty());
}

TEST_F(Editor, SaysWhatTakesSoLongWheneverItTouchesAFile) {
  Put({Named("ACME", "X 1", 1)});
  ExportDefinitions(folder_ / "New.BVD", {Named("ACME", "X 1", 1)});
  const QString file = Write("Room.BVC");
  const struct {
    FileStep Step;
    const char* Path;
    const char* Told;
    std::function<void()> Do;
  } cases[] = {
      {FileStep::Open, "Projectors.DEF", "Still reading the projector data base.", [this] { Start(); }},
      {FileStep::Open, "Room.BVC", "Still opening Room.BVC",
       [&] {
         prompts_.Files = {file};
         Press("OPEN");
       }},
      {FileStep::Open, "Room.BVC", "Still reading Room.BVC.", [this] { Press("SAVE"); }},
      {FileStep::Flush, ".qdm-", "Still saving Room.BVC", [this] { Press("SAVE"); }},
      {FileStep::Read, "New.BVD", "Still reading New.BVD.", [this] { Drop(Path("New.BVD")); }},
      {FileStep::Create, "Unsaved.BVC", "Still keeping what is not saved.",
       [this] {
         ChangeSomething();
         Press("EXIT");
       }},
  };
  for (const auto& c : cases) {
    const SlowDisk disk(c.Step, c.Path);
    c.Do();
    EXPECT_THAT(disk.Told(), testing::StartsWith(c.Told));
  }
}

TEST_F(Editor, RemembersTheLastTenFiles) {
  Start();
  EXPECT_THAT(RecentNames(), ElementsAre(""));
  Lines expected;
  for (int i = 1; i <= 12; ++i) {
    const std::string name = "Room " + std::to_string(i) + ".BVC";
    prompts_.Files = {Write(name.c_str())};
    Press("OPEN");
    expected.insert(expected.begin(), name);
  }
  expected.resize(10);
  EXPECT_EQ(RecentNames(), expected);
  Start();
  EXPECT_EQ(RecentNames(), expected) << "also next time";
  std::filesystem::remove(folder_ / "Room 12.BVC");
  const auto* open = qobject_cast<QToolButton*>(
      Child<QToolBar>(*window_, "Toolbar1").widgetForAction(&Child<QAction>(*window_, "OPEN")));
  open->menu()->actions().constFirst()->trigger();
  EXPECT_EQ(prompts_.Shown.back().Title, "Sorry");
  EXPECT_EQ(RecentNames().front(), "Room 11.BVC") << "a file that is gone leaves the list";
}

}  // namespace
}  // namespace qdm
