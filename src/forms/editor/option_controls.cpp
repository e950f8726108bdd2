#include "forms/editor/option_controls.h"

#include "config/audio_routing.h"
#include "config/configuration_rules.h"
#include "config/option_ranges.h"
#include "config/panel_types.h"
#include "config/version.h"
#include "ui_option_controls.h"

#include <QButtonGroup>
#include <QRadioButton>

#include <string_view>

namespace qdm {
namespace {

// The least height of the "Lock Control" frame, in twips (1/1440 inch).
constexpr int kLockFrameTwipsAmplifier = 1935;
constexpr int kLockFrameTwipsPanel = 3135;

// Numbers of a group's buttons stand behind the last "_" of their names.
void NumberButtons(QButtonGroup* group) {
  for (QAbstractButton* button : group->buttons()) {
    group->setId(button, button->objectName().section(QLatin1Char('_'), -1).toInt());
  }
}

void NameButtons(QButtonGroup* group, const QString& subject) {
  for (QAbstractButton* button : group->buttons()) {
    button->setAccessibleName(subject + QStringLiteral(": ") + button->text());
  }
}

void Select(QButtonGroup* group, int id) {
  if (QAbstractButton* button = group->button(id)) {
    button->setChecked(true);
    return;
  }
  group->setExclusive(false);
  for (QAbstractButton* button : group->buttons()) button->setChecked(false);
  group->setExclusive(true);
}

std::int16_t Word(int value) { return static_cast<std::int16_t>(value); }

QString TextOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void Bind(IntegerEntry* entry, int value, const OptionRange& range, std::string_view label) {
  entry->Bind(value, range.Low, range.High, TextOf(label));
}

int PixelsOf(int twips) { return twips * 96 / 1440; }

}  // namespace

OptionControls::OptionControls(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::OptionControls>()), Option2(new QButtonGroup(this)) {
  MakeTypeButtons();  // before the other controls: they are the first in the tab order
  ui_->setupUi(this);
  for (QAbstractButton* button : Option2->buttons()) ui_->ControllerTypeFrameLayout->addWidget(button);
  ListControls();
  ConnectControls();
}

OptionControls::~OptionControls() = default;

// In the order of the established window: the last type stands first.
void OptionControls::MakeTypeButtons() {
  Option2->setObjectName(QStringLiteral("Option2"));
  for (auto type = PanelTypes.rbegin(); type != PanelTypes.rend(); ++type) {
    auto* button = new QRadioButton(TextOf(type->Caption), this);
    button->setObjectName(QStringLiteral("Option2_%1").arg(int{type->Code}));
    Option2->addButton(button, type->Code);
  }
}

void OptionControls::ListControls() {
  using Record = PanelConfiguration;
  entries_ = {
      {ui_->VolumeMin, &Record::VolumeMin},
      {ui_->VolumeMax, &Record::VolumeMax},
      {ui_->VolumeStep, &Record::VolumeStep},
      {ui_->PowerUpVolume, &Record::PowerUpVolume},
      {ui_->TLVOXpowerDownTime, &Record::TLVOXpowerDownTime},
      {ui_->LockOnFrontPanelAfterTimePeriod, &Record::LockAfterProjectorOffPeriod},
      {ui_->LockOnRoomEmptyPeriod, &Record::LockAfterRoomEmptyPeriod},
      {ui_->RoomTimeout, &Record::RoomTimeout},
  };
  checks_ = {
      {ui_->AudioTurnsOnCheck, &Record::AudioTurnsOnAmplifier},
      {ui_->UsePC1Check, &Record::UsePC1},
      {ui_->UsePC2Check, &Record::UsePC2},
      {ui_->UseVideoCheck, &Record::UseVideo},
      {ui_->LockNoButtonCheck, &Record::LockOnNoButton},
      {ui_->AllowVolumeWhenOffCheck, &Record::AllowVolumeWhenOff},
      {ui_->LockOnFrontPanelCheck, &Record::LockOnFrontPanel},
      {ui_->LockONExternalCheck, &Record::LockOnExternalPowerDown},
      {ui_->LockOnRoomEmptyCheck, &Record::LockOnRoomEmpty},
      {ui_->LockUsingButtonsCheck, &Record::LockUsingButtons},
      {ui_->ScreenUseVolumeCheck, &Record::ScreenUseVolume},
  };
  times_ = {{{kOutputsScreen, ui_->ScreenUpTime, ui_->ScreenDownTime},
             {kOutputsLift, ui_->LiftOptionUpTime, ui_->LiftOptionDownTime},
             {kOutputsPowerAndScreen, ui_->ProjectorPowerScreenUp, ui_->ProjectorPowerUpTime}}};
  sequence_ = {ui_->Buttons1_0, ui_->Buttons1_1, ui_->Buttons1_2, ui_->Buttons1_3};
  audio_ = {ui_->PC1AudioOption, ui_->PC2AudioOption, ui_->VideoAudioOption};

  for (QButtonGroup* group : findChildren<QButtonGroup*>()) NumberButtons(group);
  ui_->integer5v1->SetLabel(TextOf(RangeOf(&Record::ThresholdVoltage).Label));
  // What the frame says to the eye, the name has to say to a screen reader.
  const std::array<QCheckBox*, 3> inputs = {ui_->UsePC1Check, ui_->UsePC2Check, ui_->UseVideoCheck};
  for (std::size_t i = 0; i < audio_.size(); ++i) NameButtons(audio_[i], inputs[i]->text());
  NameButtons(ui_->ControlInputOptionLowHighOption, ui_->OccupiedLabel->text());
  NameButtons(ui_->OutputsOption, ui_->OutputsFrame->title());
  NameButtons(ui_->ControlInputOption, ui_->ControlInputFrame->title());
  const std::array<const char*, 4> steps = {"First button", "Second button", "Third button", "Fourth button"};
  for (std::size_t i = 0; i < sequence_.size(); ++i) sequence_[i]->SetLabel(QLatin1String(steps[i]));
}

void OptionControls::ConnectControls() {
  connect(Option2, &QButtonGroup::idClicked, this, &OptionControls::Option2_Click);
  connect(ui_->OutputsOption, &QButtonGroup::idClicked, this, &OptionControls::OutputsOption_Click);
  for (const TimePair& pair : times_) {
    connect(pair.Up, &IntegerEntry::Changed, this, [this, &pair] { Time_Change(pair); });
    connect(pair.Down, &IntegerEntry::Changed, this, [this, &pair] { Time_Change(pair); });
  }
  // Every other option only has consequences for what is enabled.
  const auto update = [this] {
    UpdateOptionStates();
    Q_EMIT Changed();
  };
  for (QButtonGroup* group : {ui_->ControlInputOption, ui_->ControlInputOptionLowHighOption,
                              ui_->PC1AudioOption, ui_->PC2AudioOption, ui_->VideoAudioOption}) {
    connect(group, &QButtonGroup::idClicked, this, update);
  }
  connect(ui_->TurnOffNoButtonCheck, &QCheckBox::clicked, this, update);
  for (const Check& check : checks_) connect(check.Control, &QCheckBox::clicked, this, update);
  connect(ui_->NoButtonTimeOut, &IntegerEntry::Changed, this, update);
  for (const Entry& entry : entries_) connect(entry.Control, &IntegerEntry::Changed, this, update);
  connect(ui_->integer5v1, &Integer5V::Changed, this, update);
  for (Buttons* step : sequence_) connect(step, &Buttons::Changed, this, update);
}

void OptionControls::ShowRecordInControls(PanelConfiguration& record) {
  record.EditorMajor = Word(kEditorVersion.Major);
  record.EditorMinor = Word(kEditorVersion.Minor);
  record.AudioRouting = MigrateAudioRouting(record.AudioRouting, record.EditorMajor, record.EditorMinor);

  for (const Entry& entry : entries_) {
    const OptionRange& range = RangeOf(entry.Field);
    Bind(entry.Control, record.*entry.Field, range, range.Label);
  }
  for (const Check& check : checks_) check.Control->setChecked(record.*check.Field != 0);
  ShowAudioRouting(record.AudioRouting);
  ui_->TurnOffNoButtonCheck->setChecked(record.NoButtonPowerDown != 0);
  const OptionRange& noButton = RangeOf(&PanelConfiguration::NoButtonPowerDown);
  Bind(ui_->NoButtonTimeOut, record.NoButtonPowerDown, noButton, noButton.Label);
  Select(ui_->ControlInputOption, record.ControlInputOption);
  for (std::size_t i = 0; i < sequence_.size(); ++i) sequence_[i]->SetValue(record.LockSequence[i]);
  Select(ui_->OutputsOption, record.OutputsOption);
  Select(Option2, record.ControllerType);
  Select(ui_->ControlInputOptionLowHighOption, record.ControlInputActiveHigh != 0 ? 1 : 0);
  BindTimes(record.UpTime, record.DownTime, LabelsWhenShown(record.OutputsOption));
  ui_->integer5v1->SetCount(record.ThresholdVoltage);
  UpdateOptionStates();
}

void OptionControls::StoreControlsToRecord(PanelConfiguration& record) const {
  for (const Entry& entry : entries_) record.*entry.Field = Word(entry.Control->Value());
  for (const Check& check : checks_) record.*check.Field = FlagOf(check.Control->isChecked());
  record.AudioRouting = SelectedAudioRouting();
  record.NoButtonPowerDown =
      ui_->TurnOffNoButtonCheck->isChecked() ? Word(ui_->NoButtonTimeOut->Value()) : Word(0);
  if (const int use = ui_->ControlInputOption->checkedId(); use >= 0) record.ControlInputOption = Word(use);
  for (std::size_t i = 0; i < sequence_.size(); ++i) record.LockSequence[i] = Word(sequence_[i]->Value());
  if (const int use = ui_->OutputsOption->checkedId(); use >= 0) record.OutputsOption = Word(use);
  // Where none is chosen, the amplifier is meant.
  const int type = Option2->checkedId();
  record.ControllerType = type >= 0 ? Word(type) : Word(kTlVox);
  record.ControlInputActiveHigh = FlagOf(ui_->ControlInputOptionLowHighOption->checkedId() == 1);
  record.UpTime = Word(CurrentTimes().Up->Value());
  record.DownTime = Word(CurrentTimes().Down->Value());
  record.ThresholdVoltage = Word(ui_->integer5v1->Count());
}

void OptionControls::ShowAudioRouting(std::int16_t routing) {
  for (int input = 0; input < kProjectorInputs; ++input) {
    Select(audio_[static_cast<std::size_t>(input)],
           AudioSourceOf(routing, static_cast<ProjectorInput>(input)));
  }
}

std::int16_t OptionControls::SelectedAudioRouting() const {
  const auto source = [this](std::size_t input) {
    const int id = audio_[input]->checkedId();
    return id < 0 ? static_cast<int>(kNoAudioSource) : id;
  };
  return PackAudioRouting(source(0), source(1), source(2));
}

void OptionControls::Option2_Click(int type) {
  Q_EMIT ControllerTypeChosen(type);
  UpdateOptionStates();
  Q_EMIT Changed();
}

void OptionControls::OutputsOption_Click() {
  Time_Change(CurrentTimes());
  UpdateOptionStates();
}

// All pairs show the same two numbers, so that another use of the outputs starts with them.
void OptionControls::Time_Change(const TimePair& changed) {
  BindTimes(changed.Up->Value(), changed.Down->Value(), LabelsWhenEdited(ui_->OutputsOption->checkedId()));
  Q_EMIT Changed();
}

void OptionControls::BindTimes(int up, int down, const OutputTimeLabels& labels) {
  for (const TimePair& pair : times_) {
    Bind(pair.Up, up, RangeOf(&PanelConfiguration::UpTime), labels.Up);
    Bind(pair.Down, down, RangeOf(&PanelConfiguration::DownTime), labels.Down);
  }
}

// The pair in which a number may be typed just now.
const OptionControls::TimePair& OptionControls::CurrentTimes() const {
  for (const TimePair& pair : times_) {
    if (pair.Use == ui_->OutputsOption->checkedId()) return pair;
  }
  return times_.front();
}

OptionSelections OptionControls::Selections() const {
  return {.ControllerType = Option2->checkedId(),
          .OutputsOption = ui_->OutputsOption->checkedId(),
          .ControlInputOption = ui_->ControlInputOption->checkedId(),
          .TurnOffNoButton = ui_->TurnOffNoButtonCheck->isChecked(),
          .AudioTurnsOn = ui_->AudioTurnsOnCheck->isChecked(),
          .LockOnFrontPanel = ui_->LockOnFrontPanelCheck->isChecked(),
          .LockOnRoomEmpty = ui_->LockOnRoomEmptyCheck->isChecked()};
}

void OptionControls::UpdateOptionStates() {
  const OptionStates states = StatesFor(Selections());
  ApplyLayout(states);
  Apply(states);
}

void OptionControls::ApplyLayout(const OptionStates& states) {
  const bool amplifier = states.AmplifierLayout;
  for (QWidget* widget : {ui_->AudioInputFrame, ui_->VolumeFrame}) widget->setVisible(amplifier);
  for (QWidget* widget :
       {static_cast<QWidget*>(ui_->OutputsFrame), static_cast<QWidget*>(ui_->ControlInputFrame),
        static_cast<QWidget*>(ui_->LockONExternalCheck), static_cast<QWidget*>(ui_->LockOnRoomEmptyCheck),
        ui_->RoomEmptyPeriod}) {
    widget->setVisible(!amplifier);
  }
  ui_->LockFrame->setMinimumHeight(PixelsOf(amplifier ? kLockFrameTwipsAmplifier : kLockFrameTwipsPanel));
  ui_->InputsFrame->setToolTip(amplifier ? QString() : tr("Used by the TL-VOX"));
  for (Buttons* step : sequence_) step->SetShownButtons(states.LockButtons);
}

void OptionControls::Apply(const OptionStates& states) {
  ui_->NoButtonTimeOut->setEnabled(states.NoButtonTimeOut);
  ui_->LockNoButtonCheck->setEnabled(states.LockNoButton);
  ui_->LockNoButtonCheck->setToolTip(
      states.LockNoButton ? QString() : tr("Needs “%1”").arg(ui_->TurnOffNoButtonCheck->text()));
  ui_->AudioPowerDown->setEnabled(states.PowerDownTime);

  ui_->ScreenTimes->setEnabled(states.ScreenTimes);
  ui_->ScreenUseVolumeCheck->setEnabled(states.ScreenUseVolume);
  ui_->LiftTimes->setEnabled(states.LiftTimes);
  ui_->PowerAndScreenTimes->setEnabled(states.PowerAndScreenTimes);
  ui_->AllowVolumeWhenOffCheck->setEnabled(states.AllowVolumeWhenOff);

  ui_->RoomSensorOptions->setEnabled(states.RoomSensor);
  ui_->LockOnRoomEmptyCheck->setEnabled(states.RoomSensor);
  ui_->LockOnRoomEmptyCheck->setToolTip(
      states.RoomSensor ? QString() : tr("Needs “%1”").arg(ui_->ControlInputOption_3->text()));
  ui_->RoomEmptyPeriod->setEnabled(states.LockOnRoomEmptyPeriod);
  ui_->FrontPanelPeriod->setEnabled(states.LockOnFrontPanelPeriod);

  ui_->PC1AudioOptions->setEnabled(ui_->UsePC1Check->isChecked());
  ui_->PC2AudioOptions->setEnabled(ui_->UsePC2Check->isChecked());
  ui_->VideoAudioOptions->setEnabled(ui_->UseVideoCheck->isChecked());
}

}  // namespace qdm
