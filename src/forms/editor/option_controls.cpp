#include "forms/editor/option_controls.h"

#include "config/audio_routing.h"
#include "config/configuration_rules.h"
#include "config/configuration_words.h"
#include "config/option_ranges.h"
#include "config/panel_types.h"
#include "config/version.h"
#include "forms/controls/option_keys.h"
#include "forms/shared/qt_text.h"
#include "ui_option_controls.h"

#include <QButtonGroup>
#include <QEvent>
#include <QLabel>
#include <QRadioButton>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>

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

// Without its access key.
QString Plain(QString caption) { return caption.remove(QLatin1Char('&')); }

void NameButtons(QButtonGroup* group, const QString& subject) {
  for (QAbstractButton* button : group->buttons()) {
    button->setAccessibleName(
        OptionControls::tr("%1: %2", "group, choice").arg(Plain(subject), button->text()));
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

void Bind(IntegerEntry* entry, int value, const OptionRange& range, std::string_view label) {
  entry->Bind(value, range.Low, range.High, Said(label));
}

// To the eye and to a screen reader; nothing when the reason is empty.
void SayWhy(QWidget* control, const QString& reason) {
  if (auto* entry = qobject_cast<SpinEntry*>(control)) return entry->SetReason(reason);
  control->setToolTip(reason);
  control->setAccessibleDescription(reason);
  for (QWidget* part : control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) SayWhy(part, reason);
}

int PixelsOf(int twips) { return twips * 96 / 1440; }

}  // namespace

OptionControls::OptionControls(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::OptionControls>()), Option2(new QButtonGroup(this)) {
  MakeTypeButtons();  // before the other controls: they are the first in the tab order
  ui_->setupUi(this);
  for (QAbstractButton* button : Option2->buttons()) ui_->ControllerTypeFrameLayout->addWidget(button);
  frames_ = {{ui_->ControllerTypeFrame, {0, 0, 0}}, {ui_->PowerDownFrame, {0, 0, 0}},
             {ui_->OutputsFrame, {0, 1, 1}},        {ui_->ControlInputFrame, {0, 1, 1}},
             {ui_->AudioInputFrame, {0, 1, 1}},     {ui_->VolumeFrame, {0, 1, 1}},
             {ui_->LockFrame, {0, 1, 2}},           {ui_->InputsFrame, {0, 0, 0}},
             {ui_->LockSequenceFrame, {0, 0, 2}}};
  ListControls();
  ListDependents();
  NameControls();
  ConnectControls();
  FollowKeysInGroupsOf(this);
}

OptionControls::~OptionControls() = default;

// The view through which the options are seen is their parent.
bool OptionControls::event(QEvent* event) {
  if (event->type() == QEvent::ParentChange && parentWidget() != nullptr)
    parentWidget()->installEventFilter(this);
  return QWidget::event(event);
}

bool OptionControls::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize) FitColumns(parentWidget()->width());
  return QWidget::eventFilter(watched, event);
}

int OptionControls::WidthOf(std::size_t columns) const {
  std::array<int, 3> widths{};
  for (const Frame& frame : frames_) {
    int& width = widths[frame.Column[columns - 1]];
    width = std::max(width, frame.Box->minimumSizeHint().width());
  }
  return std::accumulate(widths.begin(), widths.end(), 2 * ui_->Columns->spacing());
}

int OptionControls::FitColumns(int width) {
  std::size_t columns = frames_.front().Column.size();
  while (columns > 1 && WidthOf(columns) > width) --columns;
  if (columns != std::exchange(columns_, columns)) PlaceFrames();
  return WidthOf(columns);
}

void OptionControls::PlaceFrames() {
  const std::array<QVBoxLayout*, 3> columns = {ui_->DeviceColumn, ui_->InputOutputColumn, ui_->LockColumn};
  for (const Frame& frame : frames_) {
    for (QVBoxLayout* column : columns) column->removeWidget(frame.Box);
  }
  for (const Frame& frame : frames_) {
    QVBoxLayout* column = columns[frame.Column[columns_ - 1]];
    column->insertWidget(column->count() - 1, frame.Box);  // a spacer is the last
  }
}

// In the order of the established window: the last type stands first.
void OptionControls::MakeTypeButtons() {
  Option2->setObjectName(QStringLiteral("Option2"));
  for (auto type = PanelTypes.rbegin(); type != PanelTypes.rend(); ++type) {
    auto* button = new QRadioButton(QLatin1String(type->Caption), this);
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
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    marks_[i] = new QLabel(ui_->LockSequenceFrame);
    marks_[i]->setObjectName(QStringLiteral("Buttons1_%1Mark").arg(i));
    marks_[i]->setTextFormat(Qt::PlainText);
    marks_[i]->setWordWrap(true);
    ui_->LockSequenceFrameLayout->addWidget(marks_[i], static_cast<int>(i), 2);
  }
}

void OptionControls::ListDependents() {
  using States = OptionStates;
  dependents_ = {
      {ui_->NoButtonTimeOut, &States::NoButtonTimeOut},
      {ui_->LockNoButtonCheck, &States::LockNoButton},
      {ui_->AudioPowerDown, &States::PowerDownTime},
      {ui_->ScreenTimes, &States::ScreenTimes},
      {ui_->ScreenUseVolumeCheck, &States::ScreenUseVolume},
      {ui_->LiftTimes, &States::LiftTimes},
      {ui_->PowerAndScreenTimes, &States::PowerAndScreenTimes},
      {ui_->AllowVolumeWhenOffCheck, &States::AllowVolumeWhenOff},
      {ui_->RoomSensorOptions, &States::RoomSensor},
      {ui_->LockOnRoomEmptyCheck, &States::RoomSensor},
      {ui_->RoomEmptyPeriod, &States::LockOnRoomEmptyPeriod},
      {ui_->FrontPanelPeriod, &States::LockOnFrontPanelPeriod},
      {ui_->PC1AudioOptions, &States::PC1Audio},
      {ui_->PC2AudioOptions, &States::PC2Audio},
      {ui_->VideoAudioOptions, &States::VideoAudio},
  };
}

// What the frame and the label say to the eye, the name has to say to a screen reader.
void OptionControls::NameControls() {
  for (const QLabel* label : findChildren<QLabel*>()) {
    if (auto* entry = qobject_cast<SpinEntry*>(label->buddy())) entry->SetCaption(Plain(label->text()));
  }
  ui_->NoButtonTimeOut->SetCaption(Plain(ui_->TurnOffNoButtonCheck->text()));
  ui_->integer5v1->SetLabel(Said(RangeOf(&PanelConfiguration::ThresholdVoltage).Label));
  const QString asThePanelCounts = tr("as the panel counts");
  ui_->NoButtonTimeOut->SetMeaning(asThePanelCounts);
  for (const Entry& entry : entries_) {
    if (RangeOf(entry.Field).Unit.empty()) entry.Control->SetMeaning(asThePanelCounts);
  }
  const std::array<QCheckBox*, 3> inputs = {ui_->UsePC1Check, ui_->UsePC2Check, ui_->UseVideoCheck};
  for (std::size_t i = 0; i < audio_.size(); ++i) NameButtons(audio_[i], inputs[i]->text());
  NameButtons(Option2, ui_->ControllerTypeFrame->title());
  NameButtons(ui_->ControlInputOptionLowHighOption, ui_->OccupiedLabel->text());
  NameButtons(ui_->OutputsOption, ui_->OutputsFrame->title());
  NameButtons(ui_->ControlInputOption, ui_->ControlInputFrame->title());
  for (std::size_t i = 0; i < sequence_.size(); ++i) sequence_[i]->SetLabel(Said(NameOfStep(i)));
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
  const auto typed = [this] {
    UpdateOptionStates();
    Q_EMIT Typed();
  };
  connect(ui_->NoButtonTimeOut, &IntegerEntry::Changed, this, typed);
  for (const Entry& entry : entries_) connect(entry.Control, &IntegerEntry::Changed, this, typed);
  connect(ui_->integer5v1, &Integer5V::Changed, this, typed);
  for (SpinEntry* entry : findChildren<SpinEntry*>()) {
    connect(entry, &SpinEntry::Edited, this, &OptionControls::Typed);
  }
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
  BindTimesAs(CurrentTimes());
  UpdateOptionStates();
  Q_EMIT Changed();
}

void OptionControls::Time_Change(const TimePair& changed) {
  BindTimesAs(changed);
  Q_EMIT Typed();
}

// All pairs show the same two numbers, so that another use of the outputs starts with them.
void OptionControls::BindTimesAs(const TimePair& changed) {
  BindTimes(changed.Up->Value(), changed.Down->Value(), LabelsWhenEdited(ui_->OutputsOption->checkedId()));
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
          .LockOnRoomEmpty = ui_->LockOnRoomEmptyCheck->isChecked(),
          .UsePC1 = ui_->UsePC1Check->isChecked(),
          .UsePC2 = ui_->UsePC2Check->isChecked(),
          .UseVideo = ui_->UseVideoCheck->isChecked()};
}

void OptionControls::UpdateOptionStates() {
  const OptionStates states = StatesFor(Selections());
  ApplyLayout(states);
  for (const Dependent& dependent : dependents_) {
    dependent.Control->setEnabled(states.*dependent.State);
    const QString need = Said(NeedOf(states, dependent.State)).simplified();
    SayWhy(dependent.Control, need.isEmpty() ? QString() : tr("Needs “%1”").arg(need));
  }
  MarkSequence();
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

// A step whose picture this type does not have shows nothing as chosen: the mark says what is stored.
void OptionControls::MarkSequence() {
  const int chosen = Option2->checkedId();
  const int type = chosen >= 0 ? chosen : kTlVox;  // as it would be stored
  for (std::size_t i = 0; i < sequence_.size(); ++i) {
    const QString why = QString::fromStdString(WhyNotPressed(sequence_[i]->Value(), type));
    marks_[i]->setText(why);
    marks_[i]->setVisible(!why.isEmpty());
    sequence_[i]->setAccessibleDescription(why);
  }
}

}  // namespace qdm
