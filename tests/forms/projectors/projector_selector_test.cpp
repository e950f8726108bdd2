#include "forms/projectors/projector_selector.h"

#include "forms/projectors/projector_tree.h"
#include "library_fixture.h"
#include "projectors/definition_setup.h"
#include "support/slow_disk.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QToolBar>

namespace qdm {
namespace {

using testing::ElementsAre;

// What somebody else makes of the file.
using Others = std::vector<ProjectorDefinition>;

// The window reads the library when it is made.
class FourProjectors : public LibraryFixture {
 protected:
  FourProjectors() {
    Put({Named("ACME", "B", 1), Named("ZETA", "Q", 2), Named("ACME", "A", 3), Named("ACME", "C", 4)});
    SaveLibrary();
  }
};

class Selector : public FourProjectors {
 protected:
  Selector() {
    form_.show();
    QApplication::setActiveWindow(&form_);
  }
  // "ACME / B" or "ACME"; "" for nothing.
  std::string Selected() {
    const QModelIndexList selected = tree_.selectionModel()->selectedIndexes();
    if (selected.isEmpty()) return {};
    const QModelIndex index = selected.constFirst();
    const std::string text = index.data().toString().toStdString();
    return index.parent().isValid() ? index.parent().data().toString().toStdString() + " / " + text : text;
  }
  void Select(const char* manufacturer, const char* model = "") {
    const QModelIndex index = tree_.Model().IndexOf(Named(manufacturer, model));
    tree_.scrollTo(index);
    QTest::mouseClick(tree_.viewport(), Qt::LeftButton, {}, tree_.visualRect(index).center());
  }
  void Press(const char* key, const std::vector<DialogScript::Step>& steps = {}) {
    const DialogScript script(steps);
    QTest::mouseClick(ButtonOf(form_, key), Qt::LeftButton);
  }
  // The enabled commands in the toolbar's order.
  std::string Enabled() {
    std::string keys;
    for (const QAction* action : Child<QToolBar>(form_, "Toolbar1").actions()) {
      if (action->isEnabled()) keys += action->objectName().toStdString() + " ";
    }
    return keys;
  }

  std::function<void()> setUp_;
  ProjectorSelector form_{globals_, prompts_, [this](QWidget*) { setUp_(); }};
  ProjectorTree& tree_ = Child<ProjectorTree>(form_, "TreeView1");
  QLineEdit& filter_ = Child<QLineEdit>(form_, "Filter");
};

TEST_F(Selector, EnablesWhatTheSelectionAndTheClipboardAllow) {
  tree_.setFocus(Qt::TabFocusReason);
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL IMPORT EXIT ") << "the focus alone selects nothing";
  Select("ACME");
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL IMPORT EXPORT EXIT ");
  Select("ACME", "B");
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL COPY CUT DELETE EDIT RENAME IMPORT EXPORT EXIT ");
  const QString preview = Child<QPlainTextEdit>(form_, "Preview").toPlainText();
  EXPECT_TRUE(preview.startsWith(QStringLiteral("Line 9600,n,8,1"))) << preview.toStdString();
  EXPECT_EQ(tree_.currentIndex().data(Qt::ToolTipRole).toString(), preview) << "of what the mouse is over";
  EXPECT_EQ(Child<QAction>(form_, "PASTE").toolTip(), QStringLiteral("Paste (Ctrl+V)\nNothing was copied"));
  Press("COPY");
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL COPY CUT PASTE DELETE EDIT RENAME IMPORT EXPORT EXIT ");
  QTest::keyClicks(&filter_, QStringLiteral("zet"));
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL PASTE IMPORT EXIT ") << "the filter hides the selection";
}

TEST_F(Selector, DeletesAfterAskingAndGoesOnToTheNext) {
  Select("ACME", "B");
  prompts_.Answers = {false, true, true};
  Press("DELETE");
  EXPECT_EQ(prompts_.LastText(), "Are you sure you want to delete ACME / B projector?");
  EXPECT_EQ(InMemory().size(), 4U);
  for (const char* next : {"ACME / C", "ACME / A"}) {
    Press("DELETE");
    EXPECT_EQ(Selected(), next);
  }
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / A = 3"));
}

TEST_F(Selector, PastesWhatWasCutAndShowsItEvenWhereTheFilterHidIt) {
  Select("ACME", "B");
  prompts_.Answers = {false, true};
  Press("CUT");
  EXPECT_EQ(Line(globals_.ClipboardProjector), " /  = 0") << "answered with No";
  QTest::keyClick(&tree_, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(prompts_.LastText(), "Are you sure you want to cut(delete) ACME / B projector?");
  filter_.setText(QStringLiteral("zeta"));
  Press("PASTE", {Clicks("Done")});
  EXPECT_EQ(Selected(), "ACME / B");
  Press("PASTE", {Types("acme", "E", "Cancel")});
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / A = 3", "ACME / C = 4", "ACME / B = 1"));
  filter_.setFocus();
  filter_.selectAll();
  QTest::keyClick(&filter_, Qt::Key_X, Qt::ControlModifier);
  QTest::keyClick(&filter_, Qt::Key_Delete);
  EXPECT_EQ(InMemory().size(), 4U) << "keys in the filter edit its text";
}

TEST_F(Selector, NewAndEditHandTheirDefinitionToTheSetupDialogAndShowWhatItStored) {
  std::string shown;
  bool fresh = false;
  setUp_ = [&] {
    shown = Line(globals_.CurrentProjector);
    fresh = globals_.CurrentProjector == ProjectorDefinition();
  };
  globals_.CurrentProjector = DistinctProjector();
  Select("ACME", "A");
  Press("NEW");
  EXPECT_TRUE(fresh) << "nothing of what was viewed last";
  EXPECT_EQ(Selected(), "ACME / A") << "cancelled";
  QTest::keyClick(&tree_, Qt::Key_Return);
  EXPECT_EQ(shown, "ACME / A = 3");
  setUp_ = [&] {
    globals_.CurrentProjector = Named("ACME", "N", 8);
    globals_.ProjectorDatabase.Append(globals_.CurrentProjector);
  };
  Press("EDIT");
  EXPECT_EQ(Selected(), "ACME / N");
}

TEST_F(Selector, FromAManualSetsUpANewDefinition) {
  globals_.CurrentProjector = Named("ACME", "C", 99);
  ProjectorDefinition shown;
  setUp_ = [&] { shown = globals_.CurrentProjector; };
  const char* page = "Power on   50 57 31 0D\nPower off  50 57 30 0D\n";
  Press("FROM MANUAL", {Reads(page, "CancelCommand")});
  EXPECT_EQ(shown, ProjectorDefinition());
  Press("FROM MANUAL", {Reads(page)});
  EXPECT_EQ(shown.Strings[kPowerOffSlot].Count, 4);
  EXPECT_EQ(shown.InterCommandDelay, 0);
  EXPECT_EQ(shown.Notes.Unpadded(), u"From a manual, not tried yet");
}

TEST_F(Selector, ExportsAModelOrAllOfAManufacturerAndTellsWhy) {
  const std::filesystem::path file = folder_ / "Ä.BVD";
  const QString name = QString::fromStdString(PathToUtf8(file));
  const std::filesystem::path another = folder_ / "Two.BVD";
  prompts_.Files = {name, name, QString::fromStdString(PathToUtf8(another)),
                    name + QStringLiteral("/in a file")};
  filter_.setText(QStringLiteral("b"));
  Select("ACME");
  Press("EXPORT");
  EXPECT_EQ(prompts_.LastText(), "Projector definition saved");
  EXPECT_THAT(LinesOf(ReadDefinitions(file)), ElementsAre("ACME / A = 3", "ACME / B = 1", "ACME / C = 4"));
  filter_.clear();
  Select("ZETA", "Q");
  Press("EXPORT");
  EXPECT_THAT(LinesOf(ReadDefinitions(file)), ElementsAre("ZETA / Q = 2", "ACME / B = 1", "ACME / C = 4"))
      << "the longer file's later records stay";
  Select("ACME", "A");
  QTest::keyClick(&tree_, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(&tree_, Qt::Key_E, Qt::ControlModifier);
  EXPECT_THAT(LinesOf(ReadDefinitions(another)), ElementsAre("ACME / A = 3", "ACME / B = 1"));
  Press("EXPORT");
  EXPECT_THAT(prompts_.LastText(), testing::StartsWith("Cannot write " + PathToUtf8(file)));
  EXPECT_THAT(prompts_.FileTitles, ElementsAre("Export 3 Projectors", "Export 1 Projector",
                                               "Export 2 Projectors", "Export 2 Projectors"));
}

TEST_F(Selector, SavesAnImportOnClosingOrLetsTheUserDecide) {
  const std::filesystem::path file = folder_ / "Colleague.BVD";
  ExportDefinitions(file, {Named("beta", "1", 5), Named("ACME", "C", 40)});
  prompts_.Files = {QString::fromStdString(PathToUtf8(file))};
  Press("IMPORT", {Clicks("ReplaceInDataBase")});
  EXPECT_EQ(Selected(), "ACME / C");
  BlockSaving();
  prompts_.Answers = {false, true};
  form_.close();
  EXPECT_TRUE(form_.isVisible());
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr(PathToUtf8(files_.Library)));
  Press("EXIT");
  EXPECT_FALSE(form_.isVisible()) << "closed without saving";
  UnblockSaving();
  form_.show();
  QTest::keyClick(&filter_, Qt::Key_Escape);
  EXPECT_FALSE(form_.isVisible());
  EXPECT_THAT(OnDisk(),
              ElementsAre("ACME / B = 1", "ZETA / Q = 2", "ACME / A = 3", "ACME / C = 40", "BETA / 1 = 5"));
}

TEST_F(Selector, UndoesAndDoesAgainWhatEveryCommandDid) {
  using Keys = Qt::KeyboardModifiers;
  const std::filesystem::path file = folder_ / "Colleague.BVD";
  ExportDefinitions(file, {Named("beta", "1", 5), Named("ACME", "C", 40)});
  prompts_.Files = {QString::fromStdString(PathToUtf8(file))};
  prompts_.Answers = {true, true};
  setUp_ = [&] { StoreDefinition(globals_.ProjectorDatabase, Named("ACME", "A", 33)); };
  std::vector<Lines> states = {InMemory()};
  const auto does = [&](const char* key, const std::vector<DialogScript::Step>& steps = {}) {
    Press(key, steps);
    states.push_back(InMemory());
    EXPECT_NE(states.back(), states[states.size() - 2]) << key;
  };
  Select("ACME", "B");
  does("CUT");
  does("PASTE", {Types("acme", "E")});
  does("RENAME", {Types("acme", "F")});
  does("EDIT");
  Select("ACME", "C");
  QTest::keyClick(&tree_, Qt::Key_Up, Qt::ShiftModifier);  // A and C
  does("DELETE");
  EXPECT_EQ(prompts_.LastText(), "Are you sure you want to delete these 2 projectors?");
  does("IMPORT");
  EXPECT_EQ(Child<QAction>(form_, "UNDO").toolTip(), QStringLiteral("Undo: Import 2 projectors (Ctrl+Z)"));
  QApplication::setActiveWindow(&form_);
  for (std::size_t step = states.size() - 1; step-- > 0;) {
    QTest::keyClick(&tree_, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(InMemory(), states[step]) << "undone to " << step;
  }
  EXPECT_EQ(Selected(), "ACME / B");
  EXPECT_EQ(Child<QAction>(form_, "REDO").toolTip(), QStringLiteral("Redo: Cut ACME / B (Ctrl+Shift+Z)"));
  for (std::size_t step = 1; step < states.size(); ++step) {
    QTest::keyClick(&tree_, Qt::Key_Z, Keys(Qt::ControlModifier) | Qt::ShiftModifier);
    EXPECT_EQ(InMemory(), states[step]) << "done again to " << step;
  }
}

TEST_F(Selector, TakesWhatOthersSavedWhenItComesToTheFrontAndWhenItCloses) {
  const auto comesToTheFront = [this] {
    QEvent front(QEvent::WindowActivate);
    QApplication::sendEvent(&form_, &front);
  };
  Others others = globals_.ProjectorDatabase.Elements();
  others.push_back(Named("OTHER", "1"));
  OthersSave(others);
  comesToTheFront();
  EXPECT_EQ(InMemory(), OnDisk()) << "nothing was changed here";
  EXPECT_TRUE(tree_.Model().IndexOf(Named("OTHER", "1")).isValid());

  prompts_.Answers = {true};
  Select("ZETA", "Q");
  Press("DELETE");
  others.push_back(Named("OTHER", "2"));
  OthersSave(others);
  comesToTheFront();
  EXPECT_EQ(InMemory().size(), 4U) << "changed here: the closing merges";
  form_.close();
  EXPECT_THAT(OnDisk(),
              ElementsAre("ACME / B = 1", "ACME / A = 3", "ACME / C = 4", "OTHER / 1 = 0", "OTHER / 2 = 0"));
}

TEST_F(Selector, AsksWhoseChangeOfOneDefinitionItIsToBe) {
  const auto mine = [this](const char* model, int delay) {
    ProjectorLibrary& library = globals_.ProjectorDatabase;
    const std::size_t place = *library.FindProjector(Named("ACME", model));
    delay == 0 ? library.Remove(place) : library.Replace(place, Named("ACME", model, delay));
  };
  const auto conflict = [](const char* place, const char* says, const char* button, bool forAll = false) {
    return [=](QWidget& dialog) {
      EXPECT_EQ(Child<QLabel>(dialog, "Place").text().toStdString(), place);
      EXPECT_THAT(Child<QLabel>(dialog, "Explanation").text().toStdString(), testing::HasSubstr(says));
      if (forAll) Child<QCheckBox>(dialog, "ForAllCheck").setChecked(true);
      if (button == nullptr) return Closes(dialog);
      Click(dialog, button);
    };
  };
  const Lines theirs = {"ACME / B = 10", "ZETA / Q = 2", "ACME / A = 30"};
  const struct {
    std::vector<DialogScript::Step> Does;
    bool Closes;
    Lines OnDisk;
  } cases[] = {
      {{conflict("1 of 3", "changed it differently", "Mine"),
        conflict("2 of 3", "else has deleted", nullptr)},
       false,
       theirs},
      {{conflict("1 of 3", "changed it differently", "Mine"),
        conflict("2 of 3", "else has deleted", "Theirs"), conflict("3 of 3", "You deleted", "Theirs")},
       true,
       {"ACME / B = 11", "ZETA / Q = 2", "ACME / A = 30"}},
      {{conflict("1 of 3", "changed it differently", "Mine", true)},
       true,
       {"ACME / B = 11", "ZETA / Q = 2", "ACME / C = 44"}},
  };
  for (const auto& c : cases) {
    globals_.ProjectorDatabase.Clear();
    Put({Named("ACME", "B", 1), Named("ZETA", "Q", 2), Named("ACME", "A", 3), Named("ACME", "C", 4)});
    SaveLibrary();
    OthersSave({Named("ACME", "B", 10), Named("ZETA", "Q", 2), Named("ACME", "A", 30)});
    mine("B", 11);
    mine("A", 0);
    mine("C", 44);
    form_.show();
    Press("EXIT", c.Does);
    EXPECT_EQ(form_.isVisible(), !c.Closes);
    EXPECT_THAT(OnDisk(), testing::UnorderedElementsAreArray(c.OnDisk));
  }
}

TEST_F(Selector, ClosesWithoutAskingWhereNothingWasChangedAndSaysWhyItWasNotSaved) {
  BlockSaving();
  form_.close();
  EXPECT_FALSE(form_.isVisible());
  EXPECT_TRUE(prompts_.Shown.empty());
  EXPECT_THAT(globals_.LibraryNotice, testing::HasSubstr(PathToUtf8(files_.Library)));
}

TEST_F(Selector, SaysWhatTakesSoLongAndWhoHoldsTheLibraryAndLetsTheUserGiveUp) {
  const QString file = QString::fromStdString((folder_ / "ACME.BVD").string());
  prompts_.Files = {file, file};
  Select("ACME");
  EXPECT_EQ(ToldOfSlowDisk(FileStep::Flush, ".qdm-", [this] { Child<QAction>(form_, "EXPORT").trigger(); }),
            "Still writing ACME.BVD.");
  EXPECT_EQ(ToldOfSlowDisk(FileStep::Read, "ACME.BVD", [this] { Child<QAction>(form_, "IMPORT").trigger(); }),
            "Still reading ACME.BVD.");
  {
    const ImpatientScope impatient;
    const auto held = FileLock::Try(files_.Lock);
    QTimer user;
    user.callOnTimeout([] {
      QWidget* waiting = QApplication::activeModalWidget();
      if (waiting == nullptr || !Child<QLabel>(*waiting, "What").text().contains("in use by")) return;
      Click(*waiting, "GiveUp");
    });
    user.start(1);
    form_.close();
    EXPECT_THAT(globals_.LibraryNotice, testing::HasSubstr("in use by")) << "nothing was changed";
  }
  form_.show();
  EXPECT_EQ(ToldOfSlowDisk(FileStep::Flush, "Projectors.TMP", [this] { form_.close(); }),
            "Still saving the projector data base.");
}

}  // namespace
}  // namespace qdm
