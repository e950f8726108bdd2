#include "projectors/forms/projector_selector.h"

#include "controls/filter_box.h"
#include "library_fixture.h"
#include "projectors/forms/projector_tree.h"
#include "support/distinct_projector.h"

#include <QAction>
#include <QToolBar>
#include <QToolButton>

#include <optional>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Selector : public LibraryFixture {
 protected:
  Selector() {
    Put({Named("ACME", "B", 1), Named("ZETA", "Q", 2), Named("ACME", "A", 3), Named("ACME", "C", 4)});
    SaveProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase);
  }

  ProjectorSelector& Open() {
    form_.emplace(globals_, prompts_, [this](QWidget*) {
      ++setUps_;
      if (whileSettingUp_) whileSettingUp_();
    });
    form_->show();
    QApplication::setActiveWindow(&*form_);
    return *form_;
  }
  ProjectorTree& Tree() { return Child<ProjectorTree>(*form_, "TreeView1"); }
  // "ACME / B" or "ACME"; "" for nothing.
  std::string Selected() {
    const QModelIndexList selected = Tree().selectionModel()->selectedIndexes();
    if (selected.isEmpty()) return {};
    const QModelIndex index = selected.constFirst();
    const std::string text = index.data().toString().toStdString();
    return index.parent().isValid() ? index.parent().data().toString().toStdString() + " / " + text : text;
  }
  QPoint PlaceOf(const char* manufacturer, const char* model = "") {
    const QModelIndex index = Tree().Model().IndexOf(Named(manufacturer, model));
    EXPECT_TRUE(index.isValid()) << manufacturer << " / " << model;
    Tree().scrollTo(index);
    return Tree().visualRect(index).center();
  }
  void Select(const char* manufacturer, const char* model = "") {
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, PlaceOf(manufacturer, model));
  }
  void DoubleClick(const char* manufacturer, const char* model = "") {
    Select(manufacturer, model);
    QTest::mouseDClick(Tree().viewport(), Qt::LeftButton, {}, PlaceOf(manufacturer, model));
  }
  void Press(const char* key) {
    QAction* action = form_->findChild<QAction*>(QLatin1String(key));
    QTest::mouseClick(Child<QToolBar>(*form_, "Toolbar1").widgetForAction(action), Qt::LeftButton);
  }
  void Type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QApplication::setActiveWindow(&*form_);
    Tree().setFocus();
    QTest::keyClick(&Tree(), static_cast<Qt::Key>(key), modifiers);
  }
  // The enabled commands in the toolbar's order.
  std::string Enabled() {
    std::string keys;
    for (const QAction* action : Child<QToolBar>(*form_, "Toolbar1").actions()) {
      if (action->isEnabled()) keys += action->objectName().toStdString() + " ";
    }
    return keys;
  }

  std::optional<ProjectorSelector> form_;
  int setUps_ = 0;
  std::function<void()> whileSettingUp_;
};

TEST_F(Selector, EnablesWhatTheSelectionAndTheClipboardAllow) {
  Open();
  EXPECT_EQ(Enabled(), "NEW IMPORT EXIT ");
  Select("ACME");
  EXPECT_EQ(Enabled(), "NEW IMPORT EXPORT EXIT ");
  Select("ACME", "B");
  EXPECT_EQ(Enabled(), "NEW COPY CUT DELETE EDIT IMPORT EXPORT EXIT ");
  Press("COPY");
  EXPECT_EQ(Enabled(), "NEW COPY CUT PASTE DELETE EDIT IMPORT EXPORT EXIT ");
  Select("ZETA");
  EXPECT_EQ(Enabled(), "NEW PASTE IMPORT EXPORT EXIT ");
  // The filter hides the selection.
  Select("ACME", "B");
  QTest::keyClicks(&Child<FilterBox>(*form_, "Filter"), QStringLiteral("zet"));
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(Enabled(), "NEW PASTE IMPORT EXIT ");
}

TEST_F(Selector, FocusOnTheTreeAloneSelectsNothing) {
  Open();
  Tree().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(Enabled(), "NEW IMPORT EXIT ");
}

TEST_F(Selector, DeleteAsksWithTheNamesAndTakesOneAway) {
  Open();
  Select("ACME", "B");
  prompts_.Answers = {false, true};
  Press("DELETE");
  EXPECT_THAT(prompts_.Shown, ElementsAre(Message{"Are you sure you want to delete ACME / B projector?",
                                                  "Are you sure?", MessageIcon::Question}));
  EXPECT_EQ(InMemory().size(), 4U);
  Press("DELETE");
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / A = 3", "ACME / C = 4"));
  EXPECT_EQ(Enabled(), "NEW COPY CUT DELETE EDIT IMPORT EXPORT EXIT ");
}

TEST_F(Selector, AfterADeleteTheNextIsSelected) {
  Open();
  Select("ACME", "B");
  for (const char* next : {"ACME / C", "ACME / A", "ZETA"}) {
    prompts_.Answers = {true};
    Press("DELETE");
    EXPECT_EQ(Selected(), next);
  }
  Select("ZETA", "Q");
  prompts_.Answers = {true};
  Press("DELETE");
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(Enabled(), "NEW IMPORT EXIT ");
  EXPECT_FALSE(globals_.ProjectorDatabase.Loaded());
  Press("EXIT");
  EXPECT_FALSE(std::filesystem::exists(files_.Library));
}

TEST_F(Selector, WhatWasCutCanBePastedUnderItsOwnName) {
  Open();
  Select("ACME", "B");
  prompts_.Answers = {false, true};
  Press("CUT");
  EXPECT_EQ(Line(globals_.ClipboardProjector), " /  = 0") << "answered with No";
  Press("CUT");
  EXPECT_EQ(prompts_.LastText(), "Are you sure you want to cut(delete) ACME / B projector?");
  EXPECT_EQ(Line(globals_.ClipboardProjector), "ACME / B = 1");
  {
    const DialogScript script({Clicks("Done")});
    Press("PASTE");
  }
  EXPECT_EQ(Selected(), "ACME / B");
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / A = 3", "ACME / C = 4", "ACME / B = 1"));
}

TEST_F(Selector, APasteIsSelectedEvenWhereTheFilterHidIt) {
  Open();
  Select("ZETA", "Q");
  Press("COPY");
  Child<FilterBox>(*form_, "Filter").setText(QStringLiteral("zeta"));
  {
    const DialogScript script({Types("acme", "D")});
    Press("PASTE");
  }
  EXPECT_EQ(Selected(), "ACME / D");
  EXPECT_EQ(Child<FilterBox>(*form_, "Filter").text(), QString());
  {
    const DialogScript script({Types("acme", "E", "Cancel")});
    Press("PASTE");
  }
  EXPECT_EQ(Selected(), "ACME / D");
  EXPECT_EQ(InMemory().size(), 5U);
}

TEST_F(Selector, TheClipboardOutlivesTheWindow) {
  Open();
  Select("ACME", "C");
  Press("COPY");
  Press("EXIT");
  Open();
  EXPECT_EQ(Enabled(), "NEW PASTE IMPORT EXIT ");
}

TEST_F(Selector, NewAndEditHandTheirDefinitionToTheSetupDialogAndShowWhatItStored) {
  Open();
  globals_.CurrentProjector = Named("ACME", "C", 99);
  whileSettingUp_ = [this] {
    EXPECT_EQ(Line(globals_.CurrentProjector), " /  = 0");
    globals_.CurrentProjector = Named("ACME", "N", 8);
    globals_.ProjectorDatabase.Append(globals_.CurrentProjector);
  };
  Press("NEW");
  EXPECT_EQ(Selected(), "ACME / N");

  whileSettingUp_ = [this] { EXPECT_EQ(Line(globals_.CurrentProjector), "ACME / A = 3"); };
  Select("ACME", "A");
  Press("EDIT");
  DoubleClick("ACME", "A");
  Type(Qt::Key_Return);
  EXPECT_EQ(setUps_, 4);
  EXPECT_EQ(Selected(), "ACME / A");

  Select("ZETA");
  Type(Qt::Key_Return);
  DoubleClick("ZETA");
  EXPECT_EQ(setUps_, 4) << "a manufacturer cannot be edited";
}

TEST_F(Selector, NewBeginsAtTheLowestSpeedAndLeavesTheSelectionWhenItIsCancelled) {
  Open();
  globals_.CurrentProjector = DistinctProjector();
  whileSettingUp_ = [this] { EXPECT_EQ(globals_.CurrentProjector.Baudrate, 0); };
  Select("ACME", "A");
  Press("NEW");
  EXPECT_EQ(setUps_, 1);
  EXPECT_EQ(Selected(), "ACME / A");
}

TEST_F(Selector, HasAKeyForEveryCommandOnADefinition) {
  Open();
  Select("ACME", "A");
  Type(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Line(globals_.ClipboardProjector), "ACME / A = 3");
  prompts_.Answers = {true, true};
  Type(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(InMemory().size(), 3U);
  Type(Qt::Key_Delete);
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / C = 4"));
  {
    const DialogScript script({Clicks("Done")});
    Type(Qt::Key_V, Qt::ControlModifier);
  }
  EXPECT_THAT(InMemory(), ElementsAre("ZETA / Q = 2", "ACME / C = 4", "ACME / A = 3"));
  Type(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(setUps_, 1);
  Type(Qt::Key_Escape);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(OnDisk(), InMemory());
}

TEST_F(Selector, KeysInTheFilterBoxEditItsText) {
  Open();
  Select("ACME", "A");
  auto& filter = Child<FilterBox>(*form_, "Filter");
  filter.setFocus();
  filter.setText(QStringLiteral("a"));
  filter.selectAll();
  QTest::keyClick(&filter, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(filter.text(), QString());
  QTest::keyClick(&filter, Qt::Key_Delete);
  EXPECT_EQ(InMemory().size(), 4U);
  QTest::keyClicks(&filter, QStringLiteral("zet"));
  QTest::keyClick(&filter, Qt::Key_Return);
  EXPECT_EQ(Selected(), "ZETA / Q");
  EXPECT_EQ(QApplication::focusWidget(), &Tree());
  EXPECT_EQ(setUps_, 0);
}

TEST_F(Selector, OffersItsCommandsInAContextMenu) {
  Open();
  EXPECT_EQ(Tree().contextMenuPolicy(), Qt::ActionsContextMenu);
  EXPECT_EQ(Tree().actions().size(), 8);
}

TEST_F(Selector, ExportsAModelOrAllOfAManufacturerInTheTreesOrder) {
  Open();
  const std::filesystem::path file = folder_ / "Ä.BVD";
  const QString name = QString::fromStdString(PathToUtf8(file));
  prompts_.Files = {name, name, std::nullopt};
  // What the filter hides of a manufacturer is exported all the same.
  Child<FilterBox>(*form_, "Filter").setText(QStringLiteral("b"));
  Select("ACME");
  Press("EXPORT");
  EXPECT_THAT(prompts_.Shown,
              ElementsAre(Message{"Projector definition saved", "File Saved.", MessageIcon::None}));
  EXPECT_THAT(LinesOf(ReadDefinitions(file)), ElementsAre("ACME / A = 3", "ACME / B = 1", "ACME / C = 4"));

  // The longer file's later records stay.
  Child<FilterBox>(*form_, "Filter").clear();
  Select("ZETA", "Q");
  Press("EXPORT");
  EXPECT_THAT(LinesOf(ReadDefinitions(file)), ElementsAre("ZETA / Q = 2", "ACME / B = 1", "ACME / C = 4"));
  Press("EXPORT");
  EXPECT_EQ(prompts_.Shown.size(), 2U) << "cancelled quietly";
}

TEST_F(Selector, AnExportThatFailsIsTold) {
  Open();
  Select("ACME", "A");
  const std::filesystem::path file = folder_ / "missing" / "A.BVD";
  prompts_.Files = {QString::fromStdString(PathToUtf8(file))};
  Press("EXPORT");
  EXPECT_THAT(prompts_.Shown,
              ElementsAre(Message{"Cannot write " + PathToUtf8(file) + ": No such file or directory.",
                                  "Sorry", MessageIcon::Exclamation}));
}

TEST_F(Selector, AnImportShowsTheDefinitionItTookLastAndIsSavedOnClosing) {
  Open();
  const std::filesystem::path file = folder_ / "Colleague.BVD";
  ExportDefinitions(file, {Named("beta", "1", 5), Named("ACME", "C", 40)});
  prompts_.Files = {QString::fromStdString(PathToUtf8(file)), std::nullopt};
  {
    const DialogScript script({Clicks("ReplaceInDataBase")});
    Press("IMPORT");
  }
  EXPECT_EQ(Selected(), "ACME / C");
  EXPECT_EQ(OnDisk().size(), 4U);
  Press("IMPORT");
  EXPECT_EQ(Selected(), "ACME / C");
  Press("EXIT");
  EXPECT_EQ(OnDisk(), InMemory());
  EXPECT_THAT(InMemory(),
              ElementsAre("ACME / B = 1", "ZETA / Q = 2", "ACME / A = 3", "ACME / C = 40", "BETA / 1 = 5"));
}

TEST_F(Selector, WritesTheLibraryWhateverClosesIt) {
  const std::function<void()> ways[] = {
      [this] { Press("EXIT"); },
      [this] { form_->close(); },
      [this] { Type(Qt::Key_Escape); },
      [this] { QTest::keyClick(&Child<FilterBox>(*form_, "Filter"), Qt::Key_Escape); },
  };
  for (const auto& close : ways) {
    Open();
    std::filesystem::remove(files_.Library);
    close();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(OnDisk(), InMemory());
  }
}

TEST_F(Selector, ASaveThatFailsIsToldAndTheUserDecides) {
  Open();
  BlockSaving();
  prompts_.Answers = {false, true};
  form_->close();
  EXPECT_TRUE(form_->isVisible());
  ASSERT_EQ(prompts_.Shown.size(), 1U);
  EXPECT_EQ(prompts_.Shown[0].Title, "Sorry");
  EXPECT_THAT(prompts_.Shown[0].Text, testing::HasSubstr(PathToUtf8(files_.Temporary)));
  Press("EXIT");
  EXPECT_FALSE(form_->isVisible()) << "closed without saving";

  Open();
  prompts_.Answers = {false};
  Press("EXIT");
  EXPECT_TRUE(form_->isVisible());
  UnblockSaving();
  Press("EXIT");
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(OnDisk(), InMemory());
}

}  // namespace
}  // namespace qdm
