#include "forms/projectors/projector_replace_form.h"

#include "forms/projectors/projector_import.h"
#include "library_fixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

namespace qdm {
namespace {

using testing::ElementsAre;

class Conflict : public LibraryFixture {
 protected:
  using Steps = std::vector<DialogScript::Step>;
  struct Answer {
    Steps Does;
    std::string Gives;
    Lines InMemory;
  };

  Conflict() { Restore(); }
  void Restore() {
    globals_.ProjectorDatabase.Clear();
    Put({Named("ACME", "X 1", 1), Named("ACME", "X 2", 2)});
    SaveLibrary();
  }
  // What the configuration takes instead of its own "Acme / X 1" with delay 9.
  std::string Settle(const Steps& steps) {
    const DialogScript script(steps);
    const auto settled = SettleConfigurationConflict(globals_, prompts_, nullptr, Named("Acme", "X 1", 9));
    return settled ? Line(*settled) : "keeps its own";
  }
  // What the selection is after the import.
  std::string Import(const Steps& steps) {
    const DialogScript script(steps);
    const ImportedFile imported = ImportProjectorFile(globals_, prompts_, nullptr, file_);
    told_ = imported.Told.toStdString();
    return imported.LastTaken ? Line(globals_.ProjectorDatabase[*imported.LastTaken]) : "nothing";
  }
  std::string told_;
  const Lines unchanged_ = {"ACME / X 1 = 1", "ACME / X 2 = 2"};
  const std::filesystem::path file_ = folder_ / "Colleague.BVD";
};

TEST_F(Conflict, ShowsWhatDiffers) {
  ProjectorDefinition configured = Named("ACME", "X 1", 9);
  configured.Strings[6].Count = 2;
  configured.Strings[6].Values = {'V', 13};
  configured.Strings[6].Kinds = {0, 4};
  configured.Available[6] = kFlagSet;
  configured.Baudrate = 1;
  configured.Notes.AssignUtf8("goes along");
  globals_.CurrentProjector = configured;
  ProjectorReplaceForm form(globals_, prompts_);
  const auto& table = Child<QTableWidget>(form, "Differences");
  Lines rows;
  for (int row = 0; row < table.rowCount(); ++row) {
    std::string cells;
    for (int column = 0; column < 3; ++column) cells += table.item(row, column)->text().toStdString() + "|";
    rows.push_back(cells);
  }
  EXPECT_THAT(rows,
              ElementsAre("Volume up: available|Yes|No|", "Volume up|\"V,CRc\"|\"\"|", "Speed|19200|9600|",
                          "Minimum delay between serial commands|9|1|", "Notes|goes along||"));
  EXPECT_FALSE(Child<QLabel>(form, "NotesHint").isHidden()) << "whoever replaces loses notes too";
}

TEST_F(Conflict, OfAConfigurationIsSettledAsAnsweredAndSavedAtOnce) {
  const Answer answers[] = {
      {{Clicks("DoNothing")}, "keeps its own", unchanged_},
      {{Closes}, "keeps its own", unchanged_},
      {{Clicks("ReplaceInConfiguration")}, "ACME / X 1 = 1", unchanged_},
      {{Clicks("ReplaceInDataBase")}, "keeps its own", {"ACME / X 1 = 9", "ACME / X 2 = 2"}},
      {{Clicks("NewInData"), Types("ACME", "X 3", "Cancel")}, "keeps its own", unchanged_},
      {{Clicks("NewInData"), Types("acme", "X 3")},
       "ACME / X 3 = 9",
       {"ACME / X 1 = 1", "ACME / X 2 = 2", "ACME / X 3 = 9"}},
  };
  for (const Answer& answer : answers) {
    Restore();
    EXPECT_EQ(Settle(answer.Does), answer.Gives);
    EXPECT_EQ(InMemory(), answer.InMemory);
    EXPECT_EQ(OnDisk(), answer.InMemory);
  }
}

TEST_F(Conflict, StaysOpenWithTheLibraryAsItWasWhenASaveFails) {
  BlockSaving();
  const DialogScript::Step triesBoth = [](QWidget& dialog) {
    Click(dialog, "ReplaceInDataBase");
    EXPECT_TRUE(dialog.isVisible());
    Click(dialog, "NewInData");
    EXPECT_TRUE(dialog.isVisible());
    Click(dialog, "DoNothing");
  };
  EXPECT_EQ(Settle({triesBoth, Types("ACME", "X 3")}), "keeps its own");
  EXPECT_EQ(InMemory(), unchanged_);
  EXPECT_EQ(OnDisk(), unchanged_);
  ASSERT_EQ(prompts_.Shown.size(), 2U);
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr("Projectors."));
}

TEST_F(Conflict, OfAnImportIsAskedAboutOneByOneOrForAllAndNotSaved) {
  ExportDefinitions(file_, {Named("new", " A ", 5), Named("Acme", "x 1", 11), Named("ACME", "X 2", 2),
                            Named("", "blank", 6), Named("ACME", "X 2", 12), Named("ACME", "X 1", 13)});
  const auto forAll = [](const char* button) {
    return [=](QWidget& dialog) {
      Child<QCheckBox>(dialog, "ForAllCheck").setChecked(true);
      EXPECT_FALSE(Child<QPushButton>(dialog, "NewInData").isEnabled());
      Click(dialog, button);
    };
  };
  const auto stopsAt = [](const char* place, const char* caption) {
    return [=](QWidget& dialog) {
      EXPECT_EQ(Child<QLabel>(dialog, "Place").text().toStdString(), place);
      EXPECT_EQ(Child<QPushButton>(dialog, "StopHere").text().toStdString(), caption);
      Click(dialog, "StopHere");
    };
  };
  const Answer answers[] = {
      {{Clicks("ReplaceInDataBase"), Clicks("DoNothing"), Closes},
       "ACME / x 1 = 11",
       {"ACME / x 1 = 11", "ACME / X 2 = 2", "NEW / A = 5"}},
      {{Clicks("NewInData"), Types("ACME", "X 9"), Clicks("NewInData"), Types("Y", "Y", "Cancel"), Closes},
       "ACME / X 9 = 11",
       {"ACME / X 1 = 1", "ACME / X 2 = 2", "NEW / A = 5", "ACME / X 9 = 11"}},
      {{Clicks("ReplaceInDataBase"), stopsAt("2 of 3", "Stop here: 2 taken so far")},
       "ACME / x 1 = 11",
       {"ACME / x 1 = 11", "ACME / X 2 = 2", "NEW / A = 5"}},
      {{forAll("DoNothing")}, "NEW / A = 5", {"ACME / X 1 = 1", "ACME / X 2 = 2", "NEW / A = 5"}},
      {{forAll("ReplaceInDataBase")},
       "ACME / X 1 = 13",
       {"ACME / X 1 = 13", "ACME / X 2 = 12", "NEW / A = 5"}},
  };
  for (const Answer& answer : answers) {
    Restore();
    EXPECT_EQ(Import(answer.Does), answer.Gives);
    EXPECT_EQ(InMemory(), answer.InMemory);
    EXPECT_EQ(OnDisk(), unchanged_);
  }
  EXPECT_EQ(told_, "1 added, 3 replaced, 1 was there already");
  WriteFileSafely(file_, Bytes(3161));
  prompts_.Answers = {false};
  EXPECT_EQ(Import({}), "nothing");
  EXPECT_THAT(prompts_.LastText(), testing::StartsWith("Colleague.BVD has the length of a configuration"));
  std::filesystem::remove(file_);
  EXPECT_EQ(Import({}), "nothing");
  EXPECT_EQ(prompts_.LastText(), "Cannot read " + PathToUtf8(file_) + ": No such file or directory.");
}

}  // namespace
}  // namespace qdm
