#include "forms/projectors/projector_setup_form.h"

#include "forms/controls/integer_entry.h"
#include "forms/projectors/notes_box.h"
#include "forms/strings/serial_string_display.h"
#include "forms/strings/string_clipboard.h"
#include "library_fixture.h"
#include "projectors/definition_setup.h"
#include "serial_strings/serial_string.h"
#include "support/dialog_script.h"
#include "support/distinct_projector.h"
#include "support/seeded_random.h"
#include "support/strings.h"
#include "support/undo_walk.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QTest>

#include <array>
#include <random>
#include <set>

namespace qdm {
namespace {

using enum ByteKind;
using testing::ElementsAre;
using testing::IsEmpty;

class ProjectorSetup : public LibraryFixture {
 protected:
  ProjectorDefinition& Current() { return globals_.CurrentProjector; }

  void Open() {
    const auto run = [this](QWidget*) {
      used_.push_back(globals_.CurrentSlot);
      if (whileOpen_) whileOpen_();
    };
    const SlotWindows windows{.Edit = [run](QWidget* parent, int) { run(parent); }, .Test = run};
    form_ = std::make_unique<ProjectorSetupForm>(globals_, prompts_, windows);
    ShowActive(*form_);
  }
  // The commands that every definition has, each of one byte.
  void OpenStorable() {
    Current() = Named("Acme", "A1", 7);
    for (const std::size_t slot : std::set<std::size_t>{1, 2, 4, 8})
      Current().Strings[slot] = Characters("x");
    Open();
  }

  template <class Widget>
  Widget* Find(const char* name) {
    return form_->findChild<Widget*>(QLatin1String(name));
  }
  SerialStringDisplay* Display(int slot) {
    return form_->findChild<SerialStringDisplay*>(QStringLiteral("SerialStringDisplay1_%1").arg(slot));
  }
  SlotSet ShownDisplays() {
    SlotSet shown{};
    for (std::size_t slot = 0; slot < kCommandSlots; ++slot)
      shown[slot] = Display(static_cast<int>(slot))->isVisible();
    return shown;
  }
  void Press(const char* button) { QTest::mouseClick(Find<QAbstractButton>(button), Qt::LeftButton); }
  void Tick(const char* box) {
    QTest::mouseClick(Find<QAbstractButton>(box), Qt::LeftButton, {},
                      QPoint(8, Find<QWidget>(box)->height() / 2));
  }
  void Key(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    form_->activateWindow();
    widget->setFocus();
    QTest::keyClick(widget, key, modifiers);
  }
  void Replace(QWidget* box, const char* text) {
    Key(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, QLatin1String(text));
  }
  void SetNumber(const char* entry, const char* text) {
    Replace(Find<IntegerEntry>(entry)->findChild<QLineEdit*>(QStringLiteral("Text1")), text);
  }
  std::string Text(const char* label) { return Find<QLabel>(label)->text().toStdString(); }

  std::unique_ptr<ProjectorSetupForm> form_;
  std::vector<int> used_;            // the slots that were edited or tested
  std::function<void()> whileOpen_;  // what the user does in the editor or the console
};

TEST_F(ProjectorSetup, StoresWhatItShowsUnchangedAndValuesOutOfRangeAsTheControlsOwn) {
  ProjectorDefinition stored = DistinctProjector();
  stored.Manufacturer.AssignUtf8("ACME");
  stored.Model.AssignUtf8("Señor 5");
  stored.Notes.AssignUtf8("two\r\nlines");
  stored.Baudrate = 3;
  stored.Parity = 9;
  stored.Stopbits = 5;
  stored.InterCommandDelay = 255;
  stored.InterByteDelay = 10;
  stored.WarmUpTime = 30;
  stored.CoolDownTime = 90;
  for (SerialString& string : stored.Strings) string.Count = 1;
  stored.Strings[6].Kinds[20] = static_cast<std::uint8_t>(VAR);
  stored.Available.fill(kFlagSet);
  stored.RequiresReply.fill(kFlagSet);
  Put({Named("ZETA", "Z"), Named("ACME", "Other"), stored});
  Current() = stored;
  Open();
  EXPECT_EQ(Find<QComboBox>("Manufacturer")->count(), 2) << "each manufacturer once";
  EXPECT_EQ(Find<NotesBox>("Notes")->toPlainText(), QStringLiteral("two\nlines"));
  prompts_.Answers = {false, true};
  Press("Done");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(prompts_.LastText(), "Projector ACME / Señor 5 already exists do you wish to over-write it?");
  Key(Find<QLineEdit>("Model"), Qt::Key_S, Qt::ControlModifier);
  ASSERT_FALSE(form_->isVisible());
  stored.VolumeBytePosition = VariableBytePositionOf(stored.Strings[6]);
  EXPECT_EQ(globals_.ProjectorDatabase[2], stored);
  EXPECT_EQ(Current(), stored);

  Current().Baudrate = 5;
  Current().InterCommandDelay = 256;
  Current().InterByteDelay = 11;
  Current().WarmUpTime = -1;
  Current().CoolDownTime = 300;
  Open();
  EXPECT_TRUE(Find<QRadioButton>("Baudrate_0")->isChecked());
  for (const char* entry : {"InterCommandDelay", "InterByteDelay", "WarmUpTime", "CoolDownTime"})
    EXPECT_EQ(Find<IntegerEntry>(entry)->Value(), 0) << entry;
}

TEST_F(ProjectorSetup, EachBoxSetsItsOwnFlagAndTheStringsFollow) {
  auto& available = Current().Available;
  std::vector<std::pair<QByteArray, std::int16_t*>> boxes = {{"SerialOnOffUsedCheck", &available[0]},
                                                             {"VolumeAvailableCheck", &available[6]}};
  for (const std::size_t slot : {3U, 5U, 23U, 24U})
    boxes.emplace_back("AvailableCheck_" + QByteArray::number(slot), &available[slot]);
  for (std::size_t reply = 0; reply < kReceivedSlots; ++reply)
    boxes.emplace_back("ReplyCheck_" + QByteArray::number(reply), &Current().RequiresReply[reply]);
  Open();
  for (const auto& [box, flag] : boxes) {
    EXPECT_EQ(*flag, kFlagClear) << box.data();
    Tick(box.data());
    EXPECT_EQ(*flag, kFlagSet) << box.data();
    EXPECT_EQ(ShownDisplays(), ShownSlots(Current())) << box.data();
  }
  Key(Find<QCheckBox>("VolumeAvailableCheck"), Qt::Key_Space);
  EXPECT_EQ(ShownDisplays(), ShownSlots(Current()));
  EXPECT_FALSE(Find<QCheckBox>("ReplyCheck_6")->isVisible());
}

TEST_F(ProjectorSetup, MarksStringsThatBreakTheFamilyOfCodes) {
  Current() = Named("Acme", "A1", 7);
  for (const std::size_t slot : std::set<std::size_t>{1, 2, 4, 8}) {
    const std::string text(1, static_cast<char>('A' + slot));
    Current().Strings[slot] = Characters(slot == 8 ? text : text + "\r");
  }
  Open();
  EXPECT_EQ(Find<QWidget>("Edit_8")->toolTip(),
            QStringLiteral("Power off: does not end with 0D, as the other three do"));
  EXPECT_EQ(Find<QWidget>("Edit_4")->toolTip(), Find<QWidget>("Edit_4")->accessibleName());
}

TEST_F(ProjectorSetup, CountsTheBytesOfWhatIsShown) {
  Current().RequiresReply[1] = kFlagSet;
  Current().Strings[1] = Characters("12345");
  Current().Strings[11] = Characters("123");
  Current().Strings[3] = Characters("hidden");
  Open();
  EXPECT_EQ(Text("BytesUsed"), "12") << "five, three, and four for the mask";
  Key(Display(11), Qt::Key_Delete);
  Tick("AvailableCheck_3");
  EXPECT_EQ(Text("BytesUsed"), "11") << "an empty reply costs nothing, what is shown now does";
  whileOpen_ = [this] { Current().Strings[3].Count = 456; };
  Key(Display(3), Qt::Key_Return);
  EXPECT_EQ(Text("ByteRemaining"), "-1");
}

TEST_F(ProjectorSetup, DoneStoresWhatTheControlsHoldOnceNothingIsRefused) {
  Open();
  Press("Done");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(globals_.ProjectorDatabase.Size(), 0U);
  EXPECT_EQ(prompts_.LastText(), "Cannot save as Power on string has zero byte length!");
  CopyString(globals_, Characters("x"));
  for (const int slot : {1, 2, 4, 8}) Key(Display(slot), Qt::Key_V, Qt::ControlModifier);
  Replace(Find<QComboBox>("Manufacturer")->lineEdit(), " Acme ");
  Replace(Find<QLineEdit>("Model"), "A1");
  SetNumber("CoolDownTime", "90");
  SetNumber("WarmUpTime", "30");
  Tick("Baudrate_4");
  Tick("ParityOption_2");
  Tick("Stopbits_1");
  Press("Done");
  EXPECT_EQ(prompts_.Shown.size(), 1U);
  ASSERT_EQ(globals_.ProjectorDatabase.Size(), 1U);
  const ProjectorDefinition& stored = globals_.ProjectorDatabase[0];
  EXPECT_EQ(Line(stored), "ACME / A1 = 0");
  EXPECT_THAT((std::array{stored.Baudrate, stored.Parity, stored.Stopbits}), ElementsAre(4, 2, 1));
  EXPECT_THAT((std::array{stored.WarmUpTime, stored.CoolDownTime}), ElementsAre(30, 90));
}

TEST_F(ProjectorSetup, CancelAsksOnlyWhenSomethingHasChanged) {
  OpenStorable();
  const ProjectorDefinition opened = Current();
  Press("Cancel");
  EXPECT_FALSE(form_->isVisible());
  EXPECT_THAT(prompts_.Shown, IsEmpty());

  Open();
  Key(Display(1), Qt::Key_Delete);
  prompts_.Answers = {false};
  form_->close();
  EXPECT_TRUE(form_->isVisible());
  prompts_.Answers = {true};
  Key(Find<QLineEdit>("Model"), Qt::Key_Escape);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(Current(), opened);

  form_.reset();
  Open();
  EXPECT_EQ(globals_.UnstoredProjector(), std::nullopt);
  Key(Display(1), Qt::Key_Delete);
  EXPECT_NE(globals_.UnstoredProjector(), opened) << "kept when the program ends";
  globals_.Leaving = true;
  form_->close();
  EXPECT_FALSE(form_->isVisible()) << "nobody is there to be asked";
}

TEST_F(ProjectorSetup, AManualFillsWhatItTellsAndLeavesTheRest) {
  OpenStorable();
  const char* page =
      "19200 bps, 8 data bits, no parity, 2 stop bits\nPower on 50 57 31 0D\nPower off 50 57 30 0D\n";
  Replace(Find<QLineEdit>("Model"), "B7");
  const DialogScript script({Reads(page, "CancelCommand"), Reads(page)});
  Press("FromManual");
  EXPECT_EQ(Display(1)->String(), Characters("x"));
  Press("FromManual");
  EXPECT_EQ(Display(1)->String().Count, 4);
  EXPECT_EQ(Display(2)->String(), Characters("x"));
  EXPECT_TRUE(Find<QRadioButton>("Baudrate_1")->isChecked());
  EXPECT_TRUE(Find<QRadioButton>("Stopbits_1")->isChecked());
  EXPECT_EQ(Find<QLineEdit>("Model")->text(), QStringLiteral("B7"));
  EXPECT_EQ(Find<NotesBox>("Notes")->toPlainText(), QStringLiteral("From a manual, not tried yet"));
  Press("Done");
  EXPECT_EQ(globals_.ProjectorDatabase[0].Strings[kPowerOnSlot].Count, 4);

  // One that was read before it was opened has never been stored.
  Current() = {};
  Current().Strings[kPowerOnSlot] = Characters("x");
  Open();
  prompts_.Answers = {true};
  Press("Cancel");
  EXPECT_THAT(prompts_.LastText(), testing::HasSubstr("have not been saved"));
}

TEST_F(ProjectorSetup, OpensEditorAndConsoleOnTheSlotAndShowsWhatTheyDid) {
  OpenStorable();
  SetNumber("InterByteDelay", "4");
  whileOpen_ = [this] { Current().Strings[2] = Characters("abc"); };
  Key(Display(2), Qt::Key_Return);
  EXPECT_EQ(Display(2)->String(), Characters("abc"));
  Press("Edit_8");
  whileOpen_ = [this] {
    EXPECT_EQ(Current().InterByteDelay, 4) << "what is tried is what is on show";
    TakeAsExpectedReply(Current(), 4, Characters("OK"));
  };
  Press("Test_4");
  EXPECT_THAT(used_, ElementsAre(2, 8, 4));
  EXPECT_TRUE(Find<QCheckBox>("ReplyCheck_4")->isChecked());
  EXPECT_EQ(Display(14)->String(), Characters("OK"));
}

TEST_F(ProjectorSetup, NotesTakeWhatARecordCanHold) {
  OpenStorable();
  auto* notes = Find<NotesBox>("Notes");
  notes->setFocus();
  notes->insertPlainText(QString(250, QLatin1Char('n')) + QChar(0x141) + QChar(0x20AC));
  QTest::keyClick(notes, Qt::Key_Return);
  QTest::keyClicks(notes, QStringLiteral("12345"));
  EXPECT_EQ(notes->Notes().View().substr(250), std::u16string_view(u"\u20AC\r\n123"))
      << "the line end is two characters, and there is no code for U+0141";
}

TEST_F(ProjectorSetup, TabGoesThroughNamesLineTimesStringsNotesAndButtons) {
  OpenStorable();
  Find<QRadioButton>("ParityOption_0")->setChecked(true);
  const std::vector<QWidget*> order = {Find<QComboBox>("Manufacturer"),
                                       Find<QLineEdit>("Model"),
                                       Find<QRadioButton>("Baudrate_0"),
                                       Find<QRadioButton>("ParityOption_0"),
                                       Find<QRadioButton>("Stopbits_0"),
                                       Find<IntegerEntry>("InterCommandDelay")->focusProxy(),
                                       Find<IntegerEntry>("InterByteDelay")->focusProxy(),
                                       Find<IntegerEntry>("WarmUpTime")->focusProxy(),
                                       Find<IntegerEntry>("CoolDownTime")->focusProxy(),
                                       Find<QCheckBox>("SerialOnOffUsedCheck"),
                                       Display(1)};
  for (QWidget* expected : order) {
    EXPECT_EQ(form_->focusWidget(), expected) << expected->objectName().toStdString();
    QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
  }
  Key(Find<QRadioButton>("ParityOption_0"), Qt::Key_Left);
  EXPECT_TRUE(Find<QRadioButton>("ParityOption_1")->isChecked()) << "arrows choose what stands there";
  Find<QWidget>("Notes")->setFocus();
  for (const char* next : {"Done", "Cancel"}) {
    QTest::keyClick(form_->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(form_->focusWidget()->objectName().toStdString(), next);
  }
}

TEST_F(ProjectorSetup, EveryStringAndBoxFitsTheScreenAndIsReachedByKeys) {
  Current().Available.fill(kFlagSet);
  Current().RequiresReply.fill(kFlagSet);
  Open();
  EXPECT_LE(form_->height(), 700);
  std::set<const QWidget*> reached;
  for (QWidget* widget = form_->focusWidget(); reached.insert(widget).second; widget = form_->focusWidget())
    QTest::keyClick(widget, Qt::Key_Tab);
  for (int slot = 0; slot < 25; ++slot) EXPECT_TRUE(reached.contains(Display(slot))) << slot;
  for (const QCheckBox* box : form_->findChildren<QCheckBox*>())
    EXPECT_TRUE(reached.contains(box)) << box->objectName().toStdString();
}

TEST_F(ProjectorSetup, EveryFieldAndStringIsUndoneTypingInOneEntryAtOnce) {
  OpenStorable();
  std::vector<ProjectorDefinition> states = {Current()};
  states[0].Manufacturer.AssignUtf8("ACME");
  const auto shown = [this] {
    return std::array{Find<QLineEdit>("Model")->text().toStdString(), Text("BytesUsed")};
  };
  const auto start = shown();
  Replace(Find<QLineEdit>("Model"), "B22");
  SetNumber("WarmUpTime", "30");
  Tick("ParityOption_2");
  Tick("AvailableCheck_3");
  Key(Display(1), Qt::Key_Delete);
  auto& undo = Child<QAction>(*form_, "UNDO");
  for (const char* what : {"Power on", "Data 2: available", "Parity", "Warm up time", "Model"}) {
    EXPECT_EQ(undo.toolTip(), QStringLiteral("Undo: %1 (Ctrl+Z)").arg(QLatin1String(what)));
    Key(Find<QLineEdit>("Model"), Qt::Key_Z, Qt::ControlModifier);
  }
  EXPECT_FALSE(undo.isEnabled());
  EXPECT_EQ(Current(), states[0]);
  EXPECT_EQ(shown(), start);
}

TEST_F(ProjectorSetup, ANewMakerStaysWhatWasTypedAndARefusalLeadsToItsString) {
  Put({Named("NECTAR", "1")});
  OpenStorable();
  Replace(Find<QComboBox>("Manufacturer")->lineEdit(), "nec");
  EXPECT_EQ(Find<QComboBox>("Manufacturer")->currentText(), QStringLiteral("nec"));
  QApplication::sendEvent(
      Find<QLineEdit>("Model"),
      std::make_unique<QKeyEvent>(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("日")).get());
  EXPECT_THAT(Text("EntryNote"), testing::HasSubstr("日"));
  Key(Display(4), Qt::Key_Delete);
  Press("Done");
  EXPECT_EQ(form_->focusWidget(), Display(4));
  EXPECT_FALSE(Find<QLabel>("EntryNote")->isVisible()) << "gone with the next key";
}

// The form's model alone: typed and single changes, all of it undone and done again.
TEST(DefinitionHistory, TenThousandEditsAreUndoneByteForByteAndDoneAgain) {
  SeededRandom random;
  DefinitionHistory history;
  ProjectorDefinition shown = DistinctProjector();
  history.Begin(shown);
  QObject::connect(&history, &DefinitionHistory::Restored,
                   [&shown](const ProjectorDefinition& p) { shown = p; });
  std::vector<ProjectorDefinition> states = {shown};
  for (int edit = 0; edit < 10000; ++edit) {
    switch (random() % 4) {
      case 0:
        shown.Model.AssignUtf8(std::to_string(random() % 1000));
        break;
      case 1:
        shown.WarmUpTime = static_cast<std::int16_t>(random());
        break;
      case 2:
        shown.Available[random() % kCommandSlots] = static_cast<std::int16_t>(random() % 2);
        break;
      default:
        shown.Strings[random() % kCommandSlots].Values[random() % 32] = static_cast<std::uint8_t>(random());
    }
    history.Note(shown, random() % 2 == 0 ? 0 : 1 + edit / 5);
    states.resize(static_cast<std::size_t>(history.Stack().index()));
    states.push_back(shown);
  }
  EXPECT_GT(states.size(), 7000U);
  ExpectBackAndForth(
      states, [&] { history.Stack().undo(); }, [&] { history.Stack().redo(); }, [&] { return shown; });
}

}  // namespace
}  // namespace qdm
