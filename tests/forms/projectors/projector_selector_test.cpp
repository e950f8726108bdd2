#include "forms/projectors/projector_selector.h"

#include "forms/projectors/projector_tree.h"
#include "library_fixture.h"

#include <QAction>
#include <QToolBar>

namespace qdm {
namespace {

using testing::ElementsAre;

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
    QTest::mouseClick(Child<QToolBar>(form_, "Toolbar1").widgetForAction(&Child<QAction>(form_, key)),
                      Qt::LeftButton);
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
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL COPY CUT DELETE EDIT IMPORT EXPORT EXIT ");
  Press("COPY");
  EXPECT_EQ(Enabled(), "NEW FROM MANUAL COPY CUT PASTE DELETE EDIT IMPORT EXPORT EXIT ");
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
  setUp_ = [&] { shown = Line(globals_.CurrentProjector); };
  globals_.CurrentProjector = Named("ACME", "C", 99);
  Select("ACME", "A");
  Press("NEW");
  EXPECT_EQ(shown, " /  = 0");
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
  prompts_.Files = {name, name, name + QStringLiteral("/in a file")};
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
  Press("EXPORT");
  EXPECT_THAT(prompts_.LastText(), testing::StartsWith("Cannot write " + PathToUtf8(file)));
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
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr(PathToUtf8(files_.Temporary)));
  Press("EXIT");
  EXPECT_FALSE(form_.isVisible()) << "closed without saving";
  UnblockSaving();
  form_.show();
  QTest::keyClick(&filter_, Qt::Key_Escape);
  EXPECT_FALSE(form_.isVisible());
  EXPECT_THAT(OnDisk(),
              ElementsAre("ACME / B = 1", "ZETA / Q = 2", "ACME / A = 3", "ACME / C = 40", "BETA / 1 = 5"));
}

}  // namespace
}  // namespace qdm
