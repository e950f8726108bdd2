#include "forms/editor/option_controls.h"

#include "config/configuration_rules.h"
#include "config/option_ranges.h"
#include "config/version.h"
#include "forms/controls/buttons.h"
#include "forms/controls/integer5v.h"
#include "forms/controls/integer_entry.h"
#include "support/dialog_script.h"
#include "support/distinct_configuration.h"
#include "support/seeded_random.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace qdm {
namespace {

class Options : public testing::Test {
 protected:
  Options() {
    controls_.ShowRecordInControls(record_);
    controls_.show();
  }
  void Show() { controls_.ShowRecordInControls(record_); }
  PanelConfiguration Stored() const {
    PanelConfiguration stored = record_;
    controls_.StoreControlsToRecord(stored);
    return stored;
  }
  template <class Widget>
  Widget& Get(const char* name) {
    return Child<Widget>(controls_, name);
  }
  void Press(const char* name) { Get<QAbstractButton>(name).click(); }
  bool Enabled(const char* name) { return Get<QWidget>(name).isEnabled(); }
  bool Shown(const char* name) { return Get<QWidget>(name).isVisible(); }
  bool Ticked(const char* name) { return Get<QAbstractButton>(name).isChecked(); }
  int Number(const char* name) { return Get<IntegerEntry>(name).Value(); }
  std::string Tip(const char* name) { return Get<QWidget>(name).toolTip().toStdString(); }
  // The name of a number in its range messages.
  std::string Label(const char* name) {
    const auto& text = Child<QLineEdit>(Get<QWidget>(name), "Text1");
    return text.toolTip().section(QStringLiteral(": "), 0, 0).toStdString();
  }
  void Type(const char* name, const char* text) {
    auto& entry = Child<QLineEdit>(Get<QWidget>(name), "Text1");
    entry.setFocus();
    entry.selectAll();
    QTest::keyClicks(&entry, QLatin1String(text));
  }
  void Enter(const char* name, const char* text) {
    Type(name, text);
    QTest::keyClick(&Child<QLineEdit>(Get<QWidget>(name), "Text1"), Qt::Key_Return);
  }

  PanelConfiguration record_;
  OptionControls controls_;
};

// A value of its own in every field that a control shows, within its range.
PanelConfiguration Distinct() {
  PanelConfiguration record = DistinctConfiguration();
  record.ControllerType = kTlVox;
  record.OutputsOption = kOutputsLift;
  record.UpTime = 201;
  record.DownTime = 202;
  record.ScreenUseVolume = record.LockOnFrontPanel = record.LockOnRoomEmpty = record.UsePC1 =
      record.UseVideo = -1;
  record.AllowVolumeWhenOff = record.LockOnExternalPowerDown = record.AudioTurnsOnAmplifier = -1;
  record.LockUsingButtons = record.UsePC2 = record.LockOnNoButton = record.ControlInputActiveHigh = 0;
  record.ControlInputOption = kControlInputExternalPowerDown;
  record.RoomTimeout = 203;
  record.ThresholdVoltage = 77;
  record.LockAfterProjectorOffPeriod = 204;
  record.LockAfterRoomEmptyPeriod = 205;
  record.LockSequence = {0, 3, 5, 1};
  record.EditorMajor = static_cast<std::int16_t>(kEditorVersion.Major);
  record.EditorMinor = static_cast<std::int16_t>(kEditorVersion.Minor);
  record.NoButtonPowerDown = 7;
  record.VolumeMin = -44;
  record.VolumeMax = 17;
  record.VolumeStep = 5;
  record.PowerUpVolume = -3;
  record.TLVOXpowerDownTime = 14;
  record.AudioRouting = 0x120;
  return record;
}

PanelConfiguration WithFlagsTurned(PanelConfiguration record) {
  for (const auto& word : kConfigurationWords) {
    if (word.IsFlag) record.*word.Member = FlagOf(record.*word.Member == 0);
  }
  return record;
}

TEST_F(Options, StoreWhatTheyShow) {
  for (const PanelConfiguration& record : {Distinct(), WithFlagsTurned(Distinct())}) {
    record_ = record;
    Show();
    EXPECT_EQ(record_, record) << "showing changes nothing but the version";
    PanelConfiguration stored = DistinctConfiguration();  // what no control has stays
    stored.EditorMajor = record.EditorMajor;
    stored.EditorMinor = record.EditorMinor;
    controls_.StoreControlsToRecord(stored);
    EXPECT_EQ(stored, record);
  }
}

TEST_F(Options, ShowEachFieldInItsControl) {
  record_ = Distinct();
  Show();
  EXPECT_TRUE(Ticked("Option2_3"));
  EXPECT_TRUE(Ticked("OutputsOption_3"));
  EXPECT_TRUE(Ticked("ControlInputOption_2"));
  EXPECT_TRUE(Ticked("ControlInputOptionLowHighOption_0"));
  EXPECT_TRUE(Ticked("PC1AudioOption_0"));
  EXPECT_TRUE(Ticked("PC2AudioOption_2"));
  EXPECT_TRUE(Ticked("VideoAudioOption_1"));
  EXPECT_TRUE(Ticked("TurnOffNoButtonCheck"));
  EXPECT_EQ(Get<Integer5V>("integer5v1").Count(), 77);
  using Record = PanelConfiguration;
  const struct {
    const char* Control;
    std::int16_t Record::*Field;
    const char* Label;  // where the range's own is not it
  } entries[] = {
      {"ScreenUpTime", &Record::UpTime, "Lift/screen raise time"},
      {"LiftOptionUpTime", &Record::UpTime, "Lift/screen raise time"},
      {"ProjectorPowerScreenUp", &Record::UpTime, "Lift/screen raise time"},
      {"ScreenDownTime", &Record::DownTime, "Lift lower time"},
      {"LiftOptionDownTime", &Record::DownTime, "Lift lower time"},
      {"ProjectorPowerUpTime", &Record::DownTime, "Lift lower time"},
      {"RoomTimeout", &Record::RoomTimeout, ""},
      {"LockOnFrontPanelAfterTimePeriod", &Record::LockAfterProjectorOffPeriod, ""},
      {"LockOnRoomEmptyPeriod", &Record::LockAfterRoomEmptyPeriod, ""},
      {"NoButtonTimeOut", &Record::NoButtonPowerDown, ""},
      {"VolumeMin", &Record::VolumeMin, ""},
      {"VolumeMax", &Record::VolumeMax, ""},
      {"VolumeStep", &Record::VolumeStep, ""},
      {"PowerUpVolume", &Record::PowerUpVolume, ""},
      {"TLVOXpowerDownTime", &Record::TLVOXpowerDownTime, ""},
  };
  for (const auto& entry : entries) {
    SCOPED_TRACE(entry.Control);
    const OptionRange& range = RangeOf(entry.Field);
    auto& control = Get<IntegerEntry>(entry.Control);
    EXPECT_EQ(control.Value(), record_.*entry.Field);
    control.SetReason({});  // which a disabled one gives instead of its range
    EXPECT_EQ(Label(entry.Control), *entry.Label != 0 ? entry.Label : range.Label);
    control.SetValue(-1000);
    EXPECT_EQ(control.Value(), range.Low);
    control.SetValue(1000);
    EXPECT_EQ(control.Value(), range.High);
  }
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(Get<Buttons>(("Buttons1_" + std::to_string(i)).c_str()).Value(),
              record_.LockSequence[static_cast<std::size_t>(i)]);
  }
}

TEST_F(Options, ShowFramesForTheControllerType) {
  const QStringList panel = {QStringLiteral("OutputsFrame"),
                             QStringLiteral("ControlInputFrame"),
                             QStringLiteral("LockOnRoomEmptyCheck"),
                             QStringLiteral("LockOnRoomEmptyPeriod"),
                             QStringLiteral("LockOnRoomEmptyPeriodLabel"),
                             QStringLiteral("LockONExternalCheck")};
  const QStringList amplifier = {QStringLiteral("AudioInputFrame"), QStringLiteral("VolumeFrame")};
  const QStringList both = {QStringLiteral("ControllerTypeFrame"), QStringLiteral("PowerDownFrame"),
                            QStringLiteral("LockFrame"), QStringLiteral("LockSequenceFrame"),
                            QStringLiteral("InputsFrame")};
  const QSignalSpy types(&controls_, &OptionControls::ControllerTypeChosen);
  for (const int type : {3, 2, 1, 0}) {
    Press(("Option2_" + std::to_string(type)).c_str());
    EXPECT_EQ(types.last().first().toInt(), type);
    EXPECT_EQ(Stored().ControllerType, type);
    for (const QString& name : panel) EXPECT_EQ(Shown(qPrintable(name)), type != 3) << qPrintable(name);
    for (const QString& name : amplifier) EXPECT_EQ(Shown(qPrintable(name)), type == 3) << qPrintable(name);
    for (const QString& name : both) EXPECT_TRUE(Shown(qPrintable(name))) << qPrintable(name);
    EXPECT_EQ(Get<QWidget>("LockFrame").minimumHeight(), type == 3 ? 129 : 209);
    EXPECT_EQ(Get<QWidget>("InputsFrame").toolTip().isEmpty(), type == 3);
  }
}

TEST_F(Options, KeepAHiddenStepOfTheSequence) {
  record_.LockSequence = {0, 1, 4, 5};
  Show();
  Press("Option2_2");
  EXPECT_EQ(Get<QLabel>("Buttons1_1Mark").text(), QStringLiteral("Volume down: not on a QDM 4"));
  EXPECT_FALSE(Shown("Buttons1_2Mark"));
  Press("Option2_3");
  EXPECT_EQ(Stored().LockSequence, record_.LockSequence);
}

TEST_F(Options, ShareTheirTimesBetweenTheUses) {
  record_.OutputsOption = kOutputsScreen;
  Show();
  EXPECT_EQ(Label("ScreenUpTime"), "Screen rise time");
  EXPECT_EQ(Label("ScreenDownTime"), "Sreen lower time");
  Enter("ScreenUpTime", "31");
  Enter("ScreenDownTime", "300");
  EXPECT_EQ(Number("LiftOptionUpTime"), 31);
  EXPECT_EQ(Number("ProjectorPowerUpTime"), 255);

  Press("OutputsOption_3");
  Enter("LiftOptionUpTime", "32");
  EXPECT_EQ(Number("ScreenUpTime"), 32);
  EXPECT_EQ(Label("LiftOptionUpTime"), "Lift/Screen raise time") << "editing writes the label differently";
  EXPECT_EQ(Label("LiftOptionDownTime"), "Lift lower time");

  Press("OutputsOption_4");
  Type("ProjectorPowerUpTime", "33");  // without Enter
  const PanelConfiguration stored = Stored();
  EXPECT_EQ(stored.UpTime, 32);
  EXPECT_EQ(stored.DownTime, 33);
  EXPECT_EQ(Label("ProjectorPowerUpTime"), "Projector power up time");
}

// The rules are the core's; each state has to reach its controls and their labels.
TEST_F(Options, EnableWhatTheSelectionNeeds) {
  const struct {
    const char* On;
    const char* Off;
    std::vector<const char*> Dependents;
  } rules[] = {
      {"OutputsOption_1", "OutputsOption_0", {"ScreenUpTime", "ScreenDownTimeLabel", "ScreenUseVolumeCheck"}},
      {"OutputsOption_2", "OutputsOption_1", {"AllowVolumeWhenOffCheck"}},
      {"OutputsOption_3", "OutputsOption_1", {"LiftOptionUpTimeLabel", "LiftOptionDownTime"}},
      {"OutputsOption_4", "OutputsOption_3", {"ProjectorPowerScreenUp", "ProjectorPowerUpTimeLabel"}},
      {"ControlInputOption_3",
       "ControlInputOption_2",
       {"RoomTimeout", "integer5v1Label", "OccupiedLabel", "ControlInputOptionLowHighOption_1",
        "LockOnRoomEmptyCheck", "LockOnRoomEmptyPeriod"}},
      {"LockOnRoomEmptyCheck", "LockOnRoomEmptyCheck", {"LockOnRoomEmptyPeriod"}},
      {"TurnOffNoButtonCheck", "TurnOffNoButtonCheck", {"NoButtonTimeOut", "LockNoButtonCheck"}},
      {"AudioTurnsOnCheck", "AudioTurnsOnCheck", {"TLVOXpowerDownTime", "TLVOXpowerDownTimeLabel"}},
      {"LockOnFrontPanelCheck", "LockOnFrontPanelCheck", {"LockOnFrontPanelAfterTimePeriod"}},
      {"UsePC1Check", "UsePC1Check", {"PC1AudioOption_1"}},
      {"UsePC2Check", "UsePC2Check", {"PC2AudioOption_0"}},
      {"UseVideoCheck", "UseVideoCheck", {"VideoAudioOption_2"}},
  };
  record_.ControlInputOption = kControlInputRoomPir;
  record_.LockOnRoomEmpty = -1;
  Show();
  for (const auto& rule : rules) {
    for (const char* press : {rule.On, rule.Off, rule.On}) {
      Press(press);
      const bool on = Ticked(rule.On);
      for (const char* name : rule.Dependents) EXPECT_EQ(Enabled(name), on) << name << " after " << press;
    }
  }
}

TEST_F(Options, KeepWhatIsDisabledAndSayWhy) {
  record_.ControlInputOption = kControlInputRoomPir;
  record_.RoomTimeout = 44;
  record_.LockOnRoomEmpty = -1;
  record_.AudioTurnsOnAmplifier = record_.UsePC1 = record_.UsePC2 = record_.UseVideo = 0;
  Show();
  EXPECT_EQ(Tip("LockOnRoomEmptyCheck"), "");
  Press("ControlInputOption_0");
  EXPECT_EQ(Tip("LockOnRoomEmptyCheck"), "Needs “Use as room PIR power down”");
  EXPECT_EQ(Stored().RoomTimeout, 44);
  EXPECT_EQ(Stored().LockOnRoomEmpty, -1) << "disabled is not unticked";

  QStringList captions;
  for (const auto* button : controls_.findChildren<QAbstractButton*>())
    captions << button->text().simplified();
  for (const QWidget* control : controls_.findChildren<QWidget*>()) {
    if (control->isEnabled() ||
        !(qobject_cast<const QAbstractButton*>(control) || qobject_cast<const SpinEntry*>(control)))
      continue;
    if (qobject_cast<const SpinEntry*>(control->parentWidget())) continue;  // its arrows
    const QString why = control->accessibleDescription();
    EXPECT_TRUE(captions.contains(why.section(QStringLiteral("“"), 1).chopped(1))) << qPrintable(why);
    EXPECT_EQ(control->toolTip(), why) << qPrintable(control->objectName());
  }
}

TEST_F(Options, StoreNoPowerDownAsZero) {
  record_.NoButtonPowerDown = 6;
  Show();
  Press("TurnOffNoButtonCheck");
  EXPECT_EQ(Stored().NoButtonPowerDown, 0);
  record_.NoButtonPowerDown = 0;
  Show();
  EXPECT_FALSE(Ticked("TurnOffNoButtonCheck"));
  EXPECT_EQ(Stored().NoButtonPowerDown, 0);
}

TEST_F(Options, StoreWhatNothingIsChosenFor) {
  record_.ControllerType = 9;
  record_.OutputsOption = -2;
  record_.ControlInputOption = 4;
  record_.AudioRouting = 0x1473;  // no field selects a source
  Show();
  for (const char* name : {"Option2_3", "Option2_0", "OutputsOption_0", "ControlInputOption_0",
                           "PC1AudioOption_0", "PC2AudioOption_2", "VideoAudioOption_1"}) {
    EXPECT_FALSE(Ticked(name)) << name;
  }
  EXPECT_TRUE(Shown("OutputsFrame"));
  const PanelConfiguration stored = Stored();
  EXPECT_EQ(stored.ControllerType, kTlVox) << "the scan over the panels ends at the amplifier";
  EXPECT_EQ(stored.OutputsOption, -2);
  EXPECT_EQ(stored.ControlInputOption, 4);
  EXPECT_EQ(stored.AudioRouting, 0x333);
}

// Any bits may come from a file: they are shown without harm, and what has been stored once stays as it is.
TEST_F(Options, TakeAnyRecord) {
  SeededRandom random;
  for (int round = 0; round < 50; ++round) {
    Decode(RandomBytes(random, kStoredConfigurationSize), record_);
    Show();
    PanelConfiguration once = Stored();
    record_ = once;
    Show();
    EXPECT_EQ(Stored(), once);
    EXPECT_GE(once.UpTime, 1);
    EXPECT_LE(once.VolumeMax, 18);
  }
}

}  // namespace
}  // namespace qdm
