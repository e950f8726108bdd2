#include "projectors/forms/projector_setup_form.h"

#include "controls/integer_entry.h"
#include "library_fixture.h"
#include "projectors/definition_setup.h"
#include "projectors/forms/notes_box.h"
#include "serial_strings/forms/serial_string_display.h"
#include "serial_strings/forms/string_clipboard.h"
#include "support/distinct_projector.h"
#include "support/strings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include <set>

namespace qdm {
namespace {

using enum ByteKind;
using testing::ElementsAre;
using testing::IsEmpty;
using Slots = std::set<int>;

class ProjectorSetup : public LibraryFixture {
 protected:
  ProjectorDefinition& Current() { return globals_.CurrentProjector; }

  void Open() {
    const SlotWindows windows{.Edit =
                                  [this](QWidget*, int byte) {
                                    edited_.push_back({globals_.CurrentSlot, byte});
                                    if (whileEditing_) whileEditing_();
                                  },
                              .Test =
                                  [this](QWidget*) {
                                    tested_.push_back(globals_.CurrentSlot);
                                    if (whileTesting_) whileTesting_();
                                  }};
    form_ = std::make_unique<ProjectorSetupForm>(globals_, prompts_, windows);
    form_->show();
    form_->activateWindow();
    QCoreApplication::processEvents();
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
  Slots ShownDisplays() {
    Slots shown;
    for (int slot = 0; slot < 25; ++slot) {
      if (Display(slot)->isVisible()) shown.insert(slot);
    }
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
    form_->activateWindow();
    box->setFocus();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, QLatin1String(text));
  }
  void SetNumber(const char* entry, const char* text) {
    Replace(Find<IntegerEntry>(entry)->findChild<QLineEdit*>(QStringLiteral("Text1")), text);
  }
  int Number(const char* entry) { return Find<IntegerEntry>(entry)->Value(); }
  std::string Text(const char* label) { return Find<QLabel>(label)->text().toStdString(); }
  bool Chosen(const char* option) { return Find<QRadioButton>(option)->isChecked(); }

  // What Done refuses with; "" when it stored.
  std::string Done() {
    prompts_.Shown.clear();
    Press("Done");
    if (!form_->isVisible()) return {};
    EXPECT_EQ(prompts_.Shown.size(), 1U);
    EXPECT_EQ(prompts_.Shown.at(0).Title, "Sorry!");
    EXPECT_EQ(prompts_.Shown.at(0).Icon, MessageIcon::Exclamation);
    EXPECT_EQ(globals_.ProjectorDatabase.Size(), 0U);
    return prompts_.LastText();
  }

  std::unique_ptr<ProjectorSetupForm> form_;
  std::vector<std::pair<int, int>> edited_;  // slot and first byte
  std::vector<int> tested_;
  std::function<void()> whileEditing_;
  std::function<void()> whileTesting_;
};

TEST_F(ProjectorSetup, ShowsEveryFieldAndStoresItUnchanged) {
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
  EXPECT_EQ(form_->windowTitle(), QStringLiteral("Projector Setup"));
  const auto* manufacturer = Find<QComboBox>("Manufacturer");
  EXPECT_EQ(manufacturer->currentText(), QStringLiteral("ACME"));
  ASSERT_EQ(manufacturer->count(), 2) << "each manufacturer once";
  EXPECT_EQ(manufacturer->itemText(1), QStringLiteral("ZETA"));
  EXPECT_EQ(Find<QLineEdit>("Model")->text(), QStringLiteral("Señor 5"));
  EXPECT_EQ(Find<NotesBox>("Notes")->toPlainText(), QStringLiteral("two\nlines"));
  EXPECT_TRUE(Chosen("Baudrate_3"));
  EXPECT_TRUE(Chosen("Stopbits_1"));
  EXPECT_EQ(Number("InterCommandDelay"), 255);
  EXPECT_EQ(Number("InterByteDelay"), 10);
  EXPECT_EQ(Number("WarmUpTime"), 30);
  EXPECT_EQ(Number("CoolDownTime"), 90);
  EXPECT_EQ(ShownDisplays().size(), 25U);

  prompts_.Answers = {true};
  Press("Done");
  ASSERT_FALSE(form_->isVisible());
  stored.VolumeBytePosition = VariableBytePositionOf(stored.Strings[6]);
  EXPECT_EQ(globals_.ProjectorDatabase[2], stored);
  EXPECT_EQ(Current(), stored);
}

TEST_F(ProjectorSetup, ValuesOutOfRangeStartAtTheControlsOwn) {
  OpenStorable();
  EXPECT_TRUE(Chosen("Baudrate_0"));
  EXPECT_TRUE(Chosen("ParityOption_0"));
  EXPECT_TRUE(Chosen("Stopbits_0"));
  const auto label = [this] { return Find<IntegerEntry>("CoolDownTime")->accessibleName().toStdString(); };
  EXPECT_EQ(label(), "Time it takes the projector to cool down after power off");
  Current().Baudrate = 5;
  Current().InterCommandDelay = 256;
  Current().InterByteDelay = 11;
  Current().WarmUpTime = -1;
  Current().CoolDownTime = 300;
  Open();
  EXPECT_TRUE(Chosen("Baudrate_0"));
  for (const char* entry : {"InterCommandDelay", "InterByteDelay", "WarmUpTime", "CoolDownTime"})
    EXPECT_EQ(Number(entry), 0) << entry;
  EXPECT_EQ(label(), "Time it takes the projector to cool down after power down");
}

TEST_F(ProjectorSetup, BoxesShowAndHideStringsAndTheirReplies) {
  Open();
  Slots expected = {1, 2, 4, 8};
  EXPECT_EQ(ShownDisplays(), expected);
  const struct {
    const char* Box;
    Slots Shows;
  } steps[] = {
      {"SerialOnOffUsedCheck", {0, 9}}, {"AvailableCheck_3", {3}},   {"AvailableCheck_5", {5}},
      {"AvailableCheck_23", {23}},      {"AvailableCheck_24", {24}}, {"VolumeAvailableCheck", {6, 7}},
      {"ReplyCheck_0", {10}},           {"ReplyCheck_1", {11}},      {"ReplyCheck_6", {16}},
      {"ReplyCheck_10", {20}},          {"ReplyCheck_11", {21}},     {"ReplyCheck_12", {22}}};
  for (const auto& step : steps) {
    Tick(step.Box);
    expected.insert(step.Shows.begin(), step.Shows.end());
    EXPECT_EQ(ShownDisplays(), expected) << step.Box;
  }
  Tick("VolumeAvailableCheck");
  for (const int slot : {6, 7, 16}) expected.erase(slot);
  EXPECT_EQ(ShownDisplays(), expected);
  EXPECT_FALSE(Find<QCheckBox>("ReplyCheck_6")->isVisible());
  EXPECT_FALSE(Find<QCheckBox>("UseLevelsCheck")->isVisible());
  EXPECT_EQ(Find<QCheckBox>("ReplyCheck_12")->text(), QStringLiteral("In Use"));

  Key(Find<QCheckBox>("AvailableCheck_24"), Qt::Key_Space);
  for (const int slot : {22, 24}) expected.erase(slot);
  EXPECT_EQ(ShownDisplays(), expected);
}

TEST_F(ProjectorSetup, CountsTheBytesOfWhatIsShown) {
  Current().Available[0] = kFlagSet;
  Current().RequiresReply[1] = kFlagSet;
  Current().Strings[1] = Characters("12345");
  Current().Strings[11] = Characters("123");
  Current().Strings[3] = Characters("hidden");
  Open();
  EXPECT_EQ(Text("BytesUsed"), "12") << "five, three, and four for the mask";
  EXPECT_EQ(Text("ByteRemaining"), "448");
  Key(Display(11), Qt::Key_Delete);
  EXPECT_EQ(Text("BytesUsed"), "5") << "an empty reply costs nothing";
  Tick("AvailableCheck_3");
  EXPECT_EQ(Text("BytesUsed"), "11");

  const auto colour = [this] { return Find<QLabel>("ByteRemaining")->palette().color(QPalette::WindowText); };
  const QColor usual = colour();
  whileEditing_ = [this] { Current().Strings[3].Count = 456; };
  Key(Display(3), Qt::Key_Return);
  EXPECT_EQ(Text("ByteRemaining"), "-1");
  EXPECT_GT(colour().red(), colour().green() + 100);
  whileEditing_ = [this] { Current().Strings[3].Count = 455; };
  Key(Display(3), Qt::Key_Return);
  EXPECT_EQ(Text("ByteRemaining"), "0");
  EXPECT_EQ(colour(), usual);
}

TEST_F(ProjectorSetup, DoneRefusesInOrder) {
  Current().WarmUpTime = Current().CoolDownTime = 0;
  Current().Available[3] = kFlagSet;
  Current().Strings[3].Count = 461;
  Open();
  EXPECT_EQ(Done(), "Cannot save as there are too many serial bytes in this configuration!");
  Key(Display(3), Qt::Key_Delete);
  CopyString(globals_, Characters("x"));
  const std::pair<int, const char*> names[] = {
      {1, "Power on"}, {2, "Data 1"}, {3, "Data 2"}, {4, "Video"}, {8, "Power off"}};
  for (const auto& [slot, name] : names) {
    EXPECT_EQ(Done(), std::string("Cannot save as ") + name + " string has zero byte length!");
    Key(Display(slot), Qt::Key_V, Qt::ControlModifier);
  }
  EXPECT_EQ(Done(), "Cannot save as no manufacturer name has been defined!");
  Replace(Find<QComboBox>("Manufacturer")->lineEdit(), " Acme ");
  EXPECT_EQ(Done(), "Cannot save as no model name has been defined!");
  Replace(Find<QLineEdit>("Model"), "A1");
  EXPECT_EQ(Done(), "Cannot save as cool down time has not been defined!");
  SetNumber("CoolDownTime", "90");
  EXPECT_EQ(Done(), "Cannot save as Warm Up Time has not been defined!");
  SetNumber("WarmUpTime", "30");
  Tick("Baudrate_4");
  Tick("ParityOption_2");
  Tick("Stopbits_1");
  EXPECT_EQ(Done(), "");
  ASSERT_EQ(globals_.ProjectorDatabase.Size(), 1U);
  const ProjectorDefinition& stored = globals_.ProjectorDatabase[0];
  EXPECT_EQ(Line(stored), "ACME / A1 = 0");
  EXPECT_EQ(stored.Baudrate, 4);
  EXPECT_EQ(stored.Parity, 2);
  EXPECT_EQ(stored.Stopbits, 1);
  EXPECT_EQ(stored.WarmUpTime, 30);
  EXPECT_EQ(stored.CoolDownTime, 90);
  EXPECT_EQ(stored.Available[3], -1);
  EXPECT_EQ(stored.Available[5], 0);
  EXPECT_EQ(stored.VolumeBytePosition, 0);
}

TEST_F(ProjectorSetup, AsksBeforeItOverwritesAnotherDefinition) {
  Put({Named("ACME", "A1", 1), Named("ACME", "B2", 2)});
  OpenStorable();
  Replace(Find<QLineEdit>("Model"), "b2");
  prompts_.Answers = {false};
  Press("Done");
  EXPECT_TRUE(form_->isVisible());
  EXPECT_EQ(prompts_.LastText(), "Projector ACME / b2 already exists do you wish to over-write it?");
  EXPECT_EQ(prompts_.Shown.back().Title, "Overwrite");
  EXPECT_THAT(InMemory(), ElementsAre("ACME / A1 = 1", "ACME / B2 = 2"));

  prompts_.Answers = {true};
  Key(Find<QLineEdit>("Model"), Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_THAT(InMemory(), ElementsAre("ACME / A1 = 1", "ACME / b2 = 7"));
}

TEST_F(ProjectorSetup, CancelAsksOnlyWhenSomethingHasChanged) {
  Put({Named("ACME", "A1", 1)});
  OpenStorable();
  Press("Cancel");
  EXPECT_FALSE(form_->isVisible());
  EXPECT_THAT(prompts_.Shown, IsEmpty());

  OpenStorable();
  const ProjectorDefinition opened = Current();
  Key(Display(1), Qt::Key_Delete);
  prompts_.Answers = {false};
  form_->close();
  EXPECT_TRUE(form_->isVisible());
  SetNumber("InterByteDelay", "3");
  prompts_.Answers = {true};
  Key(Find<QLineEdit>("Model"), Qt::Key_Escape);
  EXPECT_FALSE(form_->isVisible());
  EXPECT_EQ(Current(), opened);
  EXPECT_THAT(InMemory(), ElementsAre("ACME / A1 = 1"));
}

TEST_F(ProjectorSetup, OpensEditorAndConsoleOnTheSlotAndShowsWhatTheyDid) {
  OpenStorable();
  SetNumber("InterByteDelay", "4");
  whileEditing_ = [this] { Current().Strings[2] = Characters("abc"); };
  Key(Display(2), Qt::Key_Return);
  EXPECT_EQ(Display(2)->String(), Characters("abc"));
  Press("Edit_8");
  EXPECT_THAT(edited_, ElementsAre(std::pair(2, -1), std::pair(8, -1)));

  whileTesting_ = [this] {
    EXPECT_EQ(Current().InterByteDelay, 4) << "what is tried is what is on show";
    TakeAsExpectedReply(Current(), 4, Characters("OK"));
  };
  Press("Test_4");
  Key(Display(2), Qt::Key_F5);
  EXPECT_THAT(tested_, ElementsAre(4, 2));
  EXPECT_TRUE(Find<QCheckBox>("ReplyCheck_4")->isChecked());
  EXPECT_EQ(Display(14)->String(), Characters("OK"));
  EXPECT_TRUE(Display(14)->isVisible());
  EXPECT_EQ(Text("BytesUsed"), "12");
}

TEST_F(ProjectorSetup, TextsTakeWhatARecordCanHold) {
  OpenStorable();
  Replace(Find<QLineEdit>("Model"), "0123456789012345678901234567890123456789");
  EXPECT_EQ(Find<QLineEdit>("Model")->text().size(), 32);
  QTest::keyClick(Find<QLineEdit>("Model"), Qt::Key_Backspace);
  QTest::sendKeyEvent(QTest::Click, Find<QLineEdit>("Model"), Qt::Key_unknown, QString(QChar(0x141)), {});
  EXPECT_EQ(Find<QLineEdit>("Model")->text().size(), 31) << "no code for it";

  auto* notes = Find<NotesBox>("Notes");
  notes->setFocus();
  notes->insertPlainText(QString(250, QLatin1Char('n')) + QChar(0x141) + QChar(0x20AC));
  EXPECT_EQ(notes->toPlainText(), QString(250, QLatin1Char('n')) + QChar(0x20AC));
  QTest::keyClick(notes, Qt::Key_Return);
  QTest::keyClicks(notes, QStringLiteral("12345"));
  EXPECT_TRUE(notes->toPlainText().endsWith(QStringLiteral("\n123"))) << "the line end is two characters";
  EXPECT_EQ(notes->Notes().View().substr(250), std::u16string_view(u"\u20AC\r\n123"));
}

TEST_F(ProjectorSetup, EverythingHasItsPlaceAndAKey) {
  Current().Available.fill(kFlagSet);
  Current().RequiresReply.fill(kFlagSet);
  Open();
  EXPECT_LE(form_->width(), 1366);
  EXPECT_LE(form_->height(), 700);
  std::set<QWidget*> reached;
  for (QWidget* widget = form_->focusWidget(); reached.insert(widget).second; widget = form_->focusWidget()) {
    EXPECT_TRUE(form_->rect().contains(QRect(widget->mapTo(form_.get(), QPoint()), widget->size())));
    QTest::keyClick(widget, Qt::Key_Tab);
  }
  for (int slot = 0; slot < 25; ++slot) {
    EXPECT_TRUE(reached.contains(Display(slot))) << slot;
    EXPECT_FALSE(Display(slot)->accessibleName().isEmpty());
  }
  for (const QCheckBox* box : form_->findChildren<QCheckBox*>()) {
    EXPECT_TRUE(reached.contains(const_cast<QCheckBox*>(box))) << box->objectName().toStdString();
  }
  EXPECT_TRUE(reached.contains(Find<QPushButton>("Done")));
  EXPECT_TRUE(reached.contains(Find<NotesBox>("Notes")));
}

}  // namespace
}  // namespace qdm
