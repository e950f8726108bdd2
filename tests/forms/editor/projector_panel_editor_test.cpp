#include "forms/controls/integer_entry.h"
#include "forms/editor/editor_fixture.h"
#include "forms/editor/unsaved_work.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
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

using Editor = EditorFixture;

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
  // Windows' own key for it comes first there.
  const QString told =
      tips.join(QLatin1Char('|')).replace(QLatin1String("Ctrl+Y"), QLatin1String("Ctrl+Shift+Z"));
  EXPECT_EQ(told.toStdString(),
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
  ProjectorTree& tree = Tree();
  QTest::keyClicks(&Child<QWidget>(*window_, "Filter"), QStringLiteral("x"));
  ASSERT_EQ(tree.Model().rowCount(), 1);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(tree.Model().index(0, 0)).center());
  EXPECT_EQ(Label("ProjectorLabel"), "Manufacturer = \nModel = ") << "a manufacturer changes nothing";
  ClickProjector("ACME", "X 2");
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
  ClickProjector("ACME", "X 2");
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

TEST_F(Editor, TellsWhatItCannotShowAndWhatCannotBePressed) {
  PanelConfiguration configuration;
  configuration.ControllerType = kQdm4;
  configuration.VolumeMax = 300;
  configuration.LockSequence[0] = kVolumeUpButton;
  // No file is called so on Windows.
  const std::string star = std::filesystem::path::preferred_separator == '/' ? " [*]" : "";
  Start(Write(("My & room" + star + " 50%.BVC").c_str(), configuration));
  EXPECT_EQ(Title(), "My & room" + (star.empty() ? star : star + "[*]") + " 50%") << "which shows as one";
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
  EXPECT_EQ(ToPath(prompts_.Folder), folder_.Path()) << "of the current file";
  Press("NEW");
  Press("OPEN");
  EXPECT_EQ(ToPath(prompts_.Folder), folder_.Path()) << "of the last one";
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
  EXPECT_EQ(Tree().SelectedElement(), 0U) << "the lit model stays";
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
  EXPECT_EQ(Tree().Model().rowCount(), 1);
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
  EXPECT_EQ(Tree().Model().index(0, 0).data(), QStringLiteral("ZETA"));
}

}  // namespace
}  // namespace qdm
