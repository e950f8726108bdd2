#include "projectors/forms/projector_replace_form.h"

#include "library_fixture.h"
#include "projectors/forms/projector_import.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Captions(const QWidget& form) {
  std::vector<std::string> captions;
  for (const QPushButton* button : form.findChildren<QPushButton*>()) {
    captions.push_back(button->text().toStdString());
  }
  return captions;
}

bool Says(const QWidget& form, const char* text) {
  const QList<QLabel*> labels = form.findChildren<QLabel*>();
  return std::any_of(labels.begin(), labels.end(),
                     [=](const QLabel* label) { return label->text() == QLatin1String(text); });
}

// The configuration's projector is "Acme / X 1" with delay 9, the library's "ACME / X 1" with delay 1.
class Settling : public LibraryFixture {
 protected:
  Settling() {
    Put({Named("ACME", "X 1", 1), Named("ACME", "X 2", 2)});
    SaveProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase);
  }
  std::string Settle(std::initializer_list<DialogScript::Step> steps) {
    const DialogScript script(steps);
    const auto settled = SettleConfigurationConflict(globals_, prompts_, nullptr, Named("Acme", "X 1", 9));
    return settled ? Line(*settled) : "keeps its own";
  }
  const Lines unchanged_ = {"ACME / X 1 = 1", "ACME / X 2 = 2"};
};

TEST_F(Settling, ShowsBothDefinitionsAndWhatDiffers) {
  ProjectorDefinition configured = Named("ACME", "X 1", 9);
  configured.Strings[6].Count = 2;
  configured.Strings[6].Values = {'V', 13};
  configured.Strings[6].Kinds = {0, 4};
  configured.Available[6] = kFlagSet;
  configured.Baudrate = 1;
  configured.Notes.AssignUtf8("not compared");
  globals_.CurrentProjector = configured;
  ProjectorReplaceForm form(globals_, prompts_);

  EXPECT_EQ(form.windowTitle(), QStringLiteral("Replace Projector?"));
  EXPECT_TRUE(
      Says(form,
           "The projector in this configuration has the same manufacturer and model as one in the data "
           "base but is not the same."));
  EXPECT_TRUE(Says(form, "Click on one of the buttons below to proceed."));
  EXPECT_EQ(Child<QLabel>(form, "Manufacturer").text(), QStringLiteral("ACME"));
  EXPECT_EQ(Child<QLabel>(form, "Model").text(), QStringLiteral("X 1"));
  EXPECT_THAT(
      Captions(form),
      ElementsAre("Keep the projector in the configuartion and make no changes in my data base",
                  "Add the projector in this configuration to my data base under a new manufacturer/model",
                  "Replace projector in the configuration with the one in my data base",
                  "Replace the projector in my data base with the one in the configuration"));

  const auto& table = Child<QTableWidget>(form, "Differences");
  Lines rows;
  for (int row = 0; row < table.rowCount(); ++row) {
    std::string cells;
    for (int column = 0; column < 3; ++column) cells += table.item(row, column)->text().toStdString() + "|";
    rows.push_back(cells);
  }
  EXPECT_THAT(rows, ElementsAre("Volume up: available|Yes|No|", "Volume up|\"V,CRc\"|\"\"|",
                                "Speed|19200|9600|", "Minimum delay between serial commands|9|1|"));
}

TEST_F(Settling, DoNothingAndTheCloseBoxChangeNothing) {
  for (const auto& step : {Clicks("DoNothing"), DialogScript::Step(Closes)}) {
    EXPECT_EQ(Settle({step}), "keeps its own");
    EXPECT_EQ(InMemory(), unchanged_);
    EXPECT_EQ(OnDisk(), unchanged_);
  }
}

TEST_F(Settling, ReplaceInConfigurationGivesTheLibrarysDefinition) {
  EXPECT_EQ(Settle({Clicks("ReplaceInConfiguration")}), "ACME / X 1 = 1");
  EXPECT_EQ(OnDisk(), unchanged_);
}

TEST_F(Settling, ReplaceInDataBaseSavesTheConfigurationsAtOnce) {
  EXPECT_EQ(Settle({Clicks("ReplaceInDataBase")}), "keeps its own");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 9", "ACME / X 2 = 2"));
  EXPECT_EQ(OnDisk(), InMemory());
}

TEST_F(Settling, NewInDataSavesItUnderItsNewNamesAndGivesItThose) {
  EXPECT_EQ(Settle({Clicks("NewInData"), Types("acme", "X 3")}), "ACME / X 3 = 9");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "ACME / X 2 = 2", "ACME / X 3 = 9"));
  EXPECT_EQ(OnDisk(), InMemory());
  EXPECT_EQ(Line(globals_.ClipboardProjector), "ACME / X 3 = 9");
}

TEST_F(Settling, ACancelledNewNameChangesNeitherAndLeavesTheIncomingInTheClipboard) {
  EXPECT_EQ(Settle({Clicks("NewInData"), Types("ACME", "X 3", "Cancel")}), "keeps its own");
  EXPECT_EQ(InMemory(), unchanged_);
  EXPECT_EQ(OnDisk(), unchanged_);
  EXPECT_EQ(Line(globals_.ClipboardProjector), "Acme / X 1 = 9");
}

TEST_F(Settling, ASaveThatFailsIsToldLeavesTheLibraryAsItWasAndTheDialogOpen) {
  BlockSaving();
  EXPECT_EQ(Settle({[](QWidget& dialog) {
                      Click(dialog, "ReplaceInDataBase");
                      EXPECT_TRUE(dialog.isVisible());
                      Click(dialog, "NewInData");
                      EXPECT_TRUE(dialog.isVisible());
                      Click(dialog, "DoNothing");
                    },
                    Types("ACME", "X 3")}),
            "keeps its own");
  EXPECT_EQ(InMemory(), unchanged_);
  EXPECT_EQ(OnDisk(), unchanged_);
  ASSERT_EQ(prompts_.Shown.size(), 2U);
  for (const Message& message : prompts_.Shown) {
    EXPECT_EQ(message.Title, "Sorry");
    EXPECT_THAT(message.Text, testing::HasSubstr("Projectors."));
  }
}

class Importing : public LibraryFixture {
 protected:
  Importing() {
    Put({Named("ACME", "X 1", 1), Named("ACME", "X 2", 2)});
    SaveProjectorDatabase(globals_.DataFolder, globals_.ProjectorDatabase);
    ExportDefinitions(file_, {Named("new", " A ", 5), Named("Acme", "x 1", 11), Named("ACME", "X 2", 2),
                              Named("", "blank", 6), Named("ACME", "X 2", 12), Named("ACME", "X 1", 13)});
  }
  // What the imported selection is.
  std::string Import(std::initializer_list<DialogScript::Step> steps) {
    const DialogScript script(steps);
    const auto taken = ImportProjectorFile(globals_, prompts_, nullptr, file_);
    return taken ? Line(globals_.ProjectorDatabase[*taken]) : "nothing";
  }
  const std::filesystem::path file_ = folder_ / "Colleague.BVD";
};

TEST_F(Importing, AsksAboutEachConflictAndSavesNothingItself) {
  const Lines before = OnDisk();
  EXPECT_EQ(Import({Clicks("ReplaceInDataBase"), Clicks("DoNothing"), Closes}), "ACME / x 1 = 11");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / x 1 = 11", "ACME / X 2 = 2", "NEW / A = 5"));
  EXPECT_EQ(OnDisk(), before);
}

TEST_F(Importing, AConflictCanBeAddedUnderANewName) {
  EXPECT_EQ(Import({Clicks("NewInData"), Types("ACME", "X 9"), Clicks("NewInData"), Types("Y", "Y", "Cancel"),
                    Clicks("DoNothing")}),
            "ACME / X 9 = 11");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "ACME / X 2 = 2", "NEW / A = 5", "ACME / X 9 = 11"));
}

TEST_F(Importing, OneAnswerCanStandForAllFurtherConflicts) {
  const auto forAll = [](const char* button) {
    return [=](QWidget& dialog) {
      Child<QCheckBox>(dialog, "ForAllCheck").setChecked(true);
      EXPECT_FALSE(Child<QPushButton>(dialog, "NewInData").isEnabled());
      Click(dialog, button);
    };
  };
  const ProjectorLibrary before = globals_.ProjectorDatabase;
  EXPECT_EQ(Import({forAll("DoNothing")}), "NEW / A = 5");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 1", "ACME / X 2 = 2", "NEW / A = 5"));

  globals_.ProjectorDatabase = before;
  EXPECT_EQ(Import({forAll("ReplaceInDataBase")}), "ACME / X 1 = 13");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / X 1 = 13", "ACME / X 2 = 12", "NEW / A = 5"));
}

TEST_F(Importing, ShowsTheTextsOfAnImport) {
  globals_.CurrentProjector = Named("ACME", "X 1", 9);
  const ProjectorReplaceForm2 form(globals_, prompts_);
  EXPECT_EQ(form.windowTitle(), QStringLiteral("Replace/Add Projector"));
  EXPECT_TRUE(
      Says(form,
           "The projector in this BVD has the same manufacturer and model as one in the data base but is "
           "not the same."));
  EXPECT_THAT(Captions(form), ElementsAre("Replace the projector in my data base with this projector",
                                          "Add this projector to my data base under a new manufacturer/model",
                                          "Do not import this projector"));
}

TEST_F(Importing, AFileThatCannotBeReadIsNamedWithTheReason) {
  std::filesystem::remove(file_);
  EXPECT_EQ(Import({}), "nothing");
  EXPECT_THAT(prompts_.Shown,
              ElementsAre(Message{"Cannot read " + PathToUtf8(file_) + ": No such file or directory.",
                                  "Sorry", MessageIcon::Exclamation}));
}

}  // namespace
}  // namespace qdm
