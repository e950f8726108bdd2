#include "projectors/forms/projector_setup_form.h"

#include "library_fixture.h"
#include "projectors/definition_setup.h"
#include "projectors/forms/notes_box.h"
#include "serial_strings/forms/serial_string_display.h"
#include "support/distinct_projector.h"
#include "support/strings.h"

#include <QAbstractButton>
#include <QLabel>

#include <set>

namespace qdm {
namespace {

using testing::ElementsAre;

class ProjectorSetup : public LibraryFixture {
 protected:
  // The commands that every definition has are of one byte each.
  ProjectorSetup() {
    Put({Named("ACME", "A1", 1), Named("ACME", "B2", 2)});
    ProjectorDefinition projector = Named("ACME", "A1", 7);
    for (const std::size_t slot : {1U, 2U, 4U, 8U}) projector.Strings[slot] = Characters("x");
    Open(projector);
  }
  void Open(const ProjectorDefinition& projector) {
    globals_.CurrentProjector = projector;
    const SlotWindows windows{
        .Edit = [this](QWidget*, int) { inWindow_(static_cast<std::size_t>(globals_.CurrentSlot)); },
        .Test = [this](QWidget*) { inWindow_(static_cast<std::size_t>(globals_.CurrentSlot)); }};
    form_ = std::make_unique<ProjectorSetupForm>(globals_, prompts_, windows);
    form_->show();
    form_->activateWindow();
    QCoreApplication::processEvents();
  }
  SerialStringDisplay& Display(int slot) {
    return Child<SerialStringDisplay>(*form_, ("SerialStringDisplay1_" + std::to_string(slot)).c_str());
  }
  std::set<int> ShownDisplays() {
    std::set<int> shown;
    for (int slot = 0; slot < 25; ++slot) {
      if (Display(slot).isVisible()) shown.insert(slot);
    }
    return shown;
  }
  std::string Text(const char* label) { return Child<QLabel>(*form_, label).text().toStdString(); }

  std::unique_ptr<ProjectorSetupForm> form_;
  std::function<void(std::size_t slot)> inWindow_;
};

TEST_F(ProjectorSetup, ShowsEveryFieldAndStoresItUnchanged) {
  ProjectorDefinition stored = DistinctProjector();
  stored.Manufacturer.AssignUtf8("ACME");
  stored.Model.AssignUtf8("Señor 5");
  stored.Notes.AssignUtf8("two\r\nlines");
  stored.Baudrate = 3;
  stored.InterCommandDelay = 255;
  stored.InterByteDelay = 10;
  stored.WarmUpTime = 30;
  stored.CoolDownTime = 90;
  for (SerialString& string : stored.Strings) string.Count = 1;
  stored.Available.fill(kFlagSet);
  stored.RequiresReply.fill(kFlagSet);
  Open(stored);
  EXPECT_EQ(ShownDisplays().size(), 25U);
  Click(*form_, "Done");
  ASSERT_EQ(globals_.ProjectorDatabase.Size(), 3U) << prompts_.LastText();
  stored.VolumeBytePosition = VariableBytePositionOf(stored.Strings[6]);
  EXPECT_EQ(globals_.ProjectorDatabase[2], stored);
}

TEST_F(ProjectorSetup, BoxesShowStringsWithTheirRepliesAndCountTheirBytes) {
  globals_.CurrentProjector.Strings[3] = Characters("hidden");
  Open(ProjectorDefinition(globals_.CurrentProjector));
  std::set<int> expected = {1, 2, 4, 8};
  const std::pair<const char*, std::set<int>> boxes[] = {{"SerialOnOffUsedCheck", {0, 9}},
                                                         {"AvailableCheck_3", {3}},
                                                         {"VolumeAvailableCheck", {6, 7}},
                                                         {"ReplyCheck_1", {11}},
                                                         {"ReplyCheck_6", {16}}};
  for (const auto& [box, shows] : boxes) {
    Child<QAbstractButton>(*form_, box).click();
    expected.insert(shows.begin(), shows.end());
    EXPECT_EQ(ShownDisplays(), expected) << box;
  }
  EXPECT_EQ(Text("BytesUsed"), "10");
  EXPECT_EQ(Text("ByteRemaining"), "450");
  Child<QAbstractButton>(*form_, "VolumeAvailableCheck").click();
  for (const int slot : {6, 7, 16}) expected.erase(slot);
  EXPECT_EQ(ShownDisplays(), expected);
}

TEST_F(ProjectorSetup, DoneRefusesAndAsksBeforeItOverwritesAnotherDefinition) {
  auto& model = Child<QLineEdit>(*form_, "Model");
  model.clear();
  Click(*form_, "Done");
  EXPECT_EQ(prompts_.LastText(), "Cannot save as no model name has been defined!");
  QTest::keyClicks(&model, QStringLiteral("b2"));
  prompts_.Answers = {false, true};
  Click(*form_, "Done");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(prompts_.LastText(), "Projector ACME / b2 already exists do you wish to over-write it?");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / A1 = 1", "ACME / B2 = 2"));
  Click(*form_, "Done");
  EXPECT_FALSE(form_->isVisible());
  EXPECT_THAT(InMemory(), ElementsAre("ACME / A1 = 1", "ACME / b2 = 7"));
}

TEST_F(ProjectorSetup, CancelAsksOnlyWhenSomethingHasChanged) {
  const ProjectorDefinition opened = globals_.CurrentProjector;
  Click(*form_, "Cancel");
  EXPECT_FALSE(form_->isVisible());
  Open(opened);
  Display(1).setFocus();
  QTest::keyClick(&Display(1), Qt::Key_Delete);
  prompts_.Answers = {false, true};
  form_->close();
  EXPECT_TRUE(form_->isVisible());
  QTest::keyClick(form_.get(), Qt::Key_Escape);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(globals_.CurrentProjector, opened);
}

TEST_F(ProjectorSetup, OpensEditorAndConsoleOnTheSlotAndShowsWhatTheyDid) {
  inWindow_ = [this](std::size_t slot) { globals_.CurrentProjector.Strings[slot] = Characters("abc"); };
  Display(2).setFocus();
  QTest::keyClick(&Display(2), Qt::Key_Return);
  EXPECT_EQ(Display(2).String(), Characters("abc"));
  inWindow_ = [this](std::size_t slot) {
    TakeAsExpectedReply(globals_.CurrentProjector, slot, Characters("OK"));
  };
  Click(*form_, "Test_4");
  EXPECT_EQ(Display(14).String(), Characters("OK"));
  EXPECT_TRUE(Display(14).isVisible());
}

TEST_F(ProjectorSetup, NotesTakeWhatARecordCanHold) {
  auto& notes = Child<NotesBox>(*form_, "Notes");
  notes.clear();
  notes.insertPlainText(QString(250, QLatin1Char('n')) + QChar(0x141) + QChar(0x20AC));
  QTest::keyClick(&notes, Qt::Key_Return);
  QTest::keyClicks(&notes, QStringLiteral("12345"));
  EXPECT_EQ(notes.Notes().View().substr(250), std::u16string_view(u"\u20AC\r\n123")) << "256 characters";
}

}  // namespace
}  // namespace qdm
