#include "forms/strings/volume_editor_form.h"

#include "base/words.h"
#include "forms/controls/hex_entry.h"
#include "forms/controls/integer_entry.h"
#include "forms/controls/option_keys.h"
#include "forms/shared/fit_to_screen.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/kind_colours.h"
#include "projectors/projector_volume.h"

#include <QButtonGroup>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "ui_volume_editor_form.h"

namespace qdm {
namespace {

constexpr int kLowestLevel = std::numeric_limits<std::int16_t>::min();
constexpr int kHighestLevel = std::numeric_limits<std::int16_t>::max();

QButtonGroup* MakeGroup(QWidget* parent, const QList<QRadioButton*>& options) {
  auto* group = new QButtonGroup(parent);
  for (int i = 0; i < options.size(); ++i) group->addButton(options[i], i);
  return group;
}

// No option for an index that none stands for.
void Select(QButtonGroup* group, int index) {
  if (QAbstractButton* option = group->button(index)) option->setChecked(true);
}

// Hidden parts keep their room: nothing moves when the format changes.
void ShowInPlace(QWidget* widget, bool shown) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
  widget->setVisible(shown);
}

}  // namespace

VolumeEditorForm::VolumeEditorForm(ProjectorDefinition& projector, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::VolumeEditorForm>()),
      projector_(projector),
      prompts_(prompts) {
  ui_->setupUi(this);
  levels_ = {
      {{ui_->MaximumLevel, ui_->MaximumLevelInHex, &VolumeFormat::MaximumLevel, kLowestLevel,
        QT_TR_NOOP("Maximum volume level")},
       {ui_->MinimumLevel, ui_->MinimumLevelInHex, &VolumeFormat::MinimumLevel, kLowestLevel,
        QT_TR_NOOP("Minimum volume level")},
       {ui_->VolumeStep, ui_->VolumeStepInHex, &VolumeFormat::VolumeStep, 0, QT_TR_NOOP("Volume Step")},
       {ui_->FixedStartLevel, ui_->FixedStartLevelInHex, &VolumeFormat::FixedStartLevel, kLowestLevel,
        QT_TR_NOOP("Power up Volume")}}};
  NumberOfBytes = MakeGroup(
      this, {ui_->NumberOfBytes_0, ui_->NumberOfBytes_1, ui_->NumberOfBytes_2, ui_->NumberOfBytes_3});
  MessageFormat = MakeGroup(this, {ui_->MessageFormat_0, ui_->MessageFormat_1, ui_->MessageFormat_2});
  FirstByteIs = MakeGroup(this, {ui_->FirstByteIs_0, ui_->FirstByteIs_1});
  FollowKeysInGroupsOf(this);
  Load(VolumeFormatOf(projector));
  FitToScreen(*this, *ui_->Scroll);
  ui_->MaximumLevel->setFocus();
  ConnectControls();
}

VolumeEditorForm::~VolumeEditorForm() = default;

void VolumeEditorForm::ConnectControls() {
  for (const Level& level : levels_) {
    connect(level.Entry, &IntegerEntry::Changed, this, [this, level] {
      level.InHex->SetValue(level.Entry->Value());
      Refresh();
    });
    connect(level.InHex, &HEXentry::Changed, this, [this, level] {
      level.Entry->SetValue(level.InHex->Value());
      level.InHex->SetValue(level.Entry->Value());  // within the entry's limits
      Refresh();
    });
  }
  for (const QButtonGroup* group : {NumberOfBytes, MessageFormat, FirstByteIs}) {
    connect(group, &QButtonGroup::idClicked, this, &VolumeEditorForm::Refresh);
  }
  connect(ui_->UsePowerDownCheck, &QCheckBox::clicked, this, &VolumeEditorForm::Refresh);
  connect(ui_->Up, &QPushButton::clicked, this, &VolumeEditorForm::Up_Click);
  connect(ui_->Down, &QPushButton::clicked, this, &VolumeEditorForm::Down_Click);
  connect(ui_->PowerUp, &QPushButton::clicked, this, &VolumeEditorForm::PowerUp_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &VolumeEditorForm::Done_Click);
  connect(ui_->CancelCommand, &QPushButton::clicked, this, &QDialog::reject);
}

void VolumeEditorForm::Load(const VolumeFormat& format) {
  for (const Level& level : levels_) {
    level.Entry->Bind(format.*level.Setting, level.Lowest, kHighestLevel, tr(level.Caption));
    level.InHex->SetLabel(tr("%1 in HEX").arg(tr(level.Caption)));
    level.InHex->SetValue(level.Entry->Value());
  }
  ui_->UsePowerDownCheck->setChecked(format.UsePowerDown);
  Select(NumberOfBytes, format.NumberOfBytes - 1);
  Select(MessageFormat, static_cast<int>(format.MessageFormat));
  Select(FirstByteIs, format.FirstByteIsHigh ? 0 : 1);
  trialLevel_ = FirstTrialLevel(format);
  Refresh();
}

VolumeFormat VolumeEditorForm::Settings() const {
  VolumeFormat format;
  for (const Level& level : levels_) format.*level.Setting = static_cast<std::int16_t>(level.Entry->Value());
  format.UsePowerDown = ui_->UsePowerDownCheck->isChecked();
  format.NumberOfBytes = static_cast<std::int16_t>(std::max(NumberOfBytes->checkedId(), -1) + 1);
  format.MessageFormat = static_cast<LevelFormat>(MessageFormat->checkedId());
  format.FirstByteIsHigh = FirstByteIs->checkedId() == 0;
  return format;
}

void VolumeEditorForm::Refresh() {
  const VolumeFormat format = Settings();
  for (QWidget* part :
       {static_cast<QWidget*>(ui_->FixedStartLevel), static_cast<QWidget*>(ui_->FixedStartLevelInHex),
        static_cast<QWidget*>(ui_->FixedLevelLabel), static_cast<QWidget*>(ui_->PowerUp)}) {
    part->setEnabled(!format.UsePowerDown);
  }
  const bool hasHex = format.MessageFormat != LevelFormat::DecimalInAscii;
  for (const Level& level : levels_) ShowInPlace(level.InHex, hasHex);
  for (QLabel* label : findChildren<QLabel*>(QRegularExpression(QStringLiteral("^HexLabel_")))) {
    ShowInPlace(label, hasHex);
  }
  ShowInPlace(ui_->FirstByteFrame, format.MessageFormat == LevelFormat::RawBytes);
  ShowVerdict(format);
  ShowPreview(format);
}

void VolumeEditorForm::ShowVerdict(const VolumeFormat& format) {
  const std::string_view error = VolumeFormatError(format);
  const std::string_view verdict = error.empty() ? kVolumeFormatOk : error;
  ui_->ErrorLabel->setText(Said(verdict));
  QPalette colours = palette();
  if (!error.empty()) {
    colours.setColor(QPalette::WindowText, ErrorColourOn(colours.color(QPalette::Window)));
  }
  ui_->ErrorLabel->setPalette(colours);
}

void VolumeEditorForm::ShowPreview(const VolumeFormat& format) {
  const bool inOrder = VolumeFormatError(format).empty();
  if (inOrder) trialLevel_ = std::clamp(trialLevel_, format.MinimumLevel, format.MaximumLevel);
  ui_->Up->setEnabled(inOrder);
  ui_->Down->setEnabled(inOrder);
  const VolumePreview preview = PreviewLevel(format, trialLevel_);
  ui_->DemoText->setText(QString::fromStdString(preview.DemoText));
  ui_->Label4->setText(QString::fromStdString(preview.Label4));
}

void VolumeEditorForm::Try(std::int16_t level) {
  trialLevel_ = level;
  ShowPreview(Settings());
}

void VolumeEditorForm::Up_Click() { Try(LevelUp(Settings(), trialLevel_)); }
void VolumeEditorForm::Down_Click() { Try(LevelDown(Settings(), trialLevel_)); }
void VolumeEditorForm::PowerUp_Click() { Try(Settings().FixedStartLevel); }

void VolumeEditorForm::Done_Click() {
  ui_->Done->setFocus();  // an entry that is still being typed into is taken and checked
  const VolumeFormat format = Settings();
  if (!VolumeFormatError(format).empty()) {
    prompts_.Show(this, {Say("Cannot exit there is an error in the configuration"), Say("Error!"),
                         MessageIcon::Exclamation});
    return;
  }
  StoreVolumeFormat(projector_, format);
  accept();
}

}  // namespace qdm
