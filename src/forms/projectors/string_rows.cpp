#include "forms/projectors/string_rows.h"

#include "forms/shared/globals.h"
#include "forms/strings/serial_string_display.h"
#include "projector_bench/code_check.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace qdm {
namespace {

constexpr int kNameColumn = 0;
constexpr int kBoxColumn = 1;
constexpr int kCommandColumn = 2;  // string, edit, test
constexpr int kTestColumn = 4;
constexpr int kReplyBoxColumn = 5;
constexpr int kReplyColumn = 6;  // string, edit

// A hidden string leaves its place free, so that the rows stay where they are.
void KeepPlace(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace

struct StringRows::Row {
  std::size_t Slot;
  const char* Caption;
  const char* BoxName = nullptr;  // of a command that not every definition has
  const char* BoxCaption = nullptr;
};

const std::array<StringRows::Row, 14>& StringRows::Rows() {
  static constexpr std::array<Row, 14> kRows = {{
      {kSerialEnableSlot, QT_TR_NOOP("Serial enable"), "SerialOnOffUsedCheck", QT_TR_NOOP("Required")},
      {kPowerOnSlot, QT_TR_NOOP("Power on")},
      {kData1Slot, QT_TR_NOOP("Data 1 (PC 1)")},
      {kData2Slot, QT_TR_NOOP("Data 2 (PC 2)"), "AvailableCheck_3", QT_TR_NOOP("Available")},
      {kVideoSlot, QT_TR_NOOP("Video")},
      {kVideo2Slot, QT_TR_NOOP("Video 2"), "AvailableCheck_23", QT_TR_NOOP("Available")},
      {kBlankSlot, QT_TR_NOOP("Blank On (Off)"), "AvailableCheck_5", QT_TR_NOOP("Available")},
      {kBlankOffSlot, QT_TR_NOOP("Blank Off"), "AvailableCheck_24", QT_TR_NOOP("Available")},
      {kVolumeUpSlot, QT_TR_NOOP("Volume up"), "VolumeAvailableCheck", QT_TR_NOOP("Available")},
      {kVolumeDownSlot, QT_TR_NOOP("Volume down")},
      {kPowerOffSlot, QT_TR_NOOP("Power off")},
      {kSerialDisableSlot, QT_TR_NOOP("Serial disable")},
      {kExternalOnSlot, QT_TR_NOOP("External on")},
      {kExternalOffSlot, QT_TR_NOOP("External off")},
  }};
  return kRows;
}

const StringRows::Row& StringRows::RowOf(std::size_t slot) {
  return *std::find_if(Rows().begin(), Rows().end(), [slot](const Row& row) { return row.Slot == slot; });
}

QString StringRows::WhyHidden(const Row& row) {
  const QString caption = tr(row.Caption);
  if (row.BoxName != nullptr) return tr("%1: tick %2").arg(caption, tr(row.BoxCaption));
  const std::optional<Slot> other = kSlots[row.Slot].ShownWith;
  if (!other) return tr("%1: tick %2").arg(caption, tr("Requires reply"));
  const Row& boxRow = RowOf(*other);
  return tr("%1: tick %2 at %3").arg(caption, tr(boxRow.BoxCaption), tr(boxRow.Caption));
}

StringRows::StringRows(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : QWidget(parent), globals_(globals), prompts_(prompts), grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(4);
  grid_->setVerticalSpacing(2);
  grid_->setColumnStretch(kCommandColumn, 1);
  grid_->setColumnStretch(kReplyColumn, 1);
  int line = 0;
  for (const Row& row : Rows()) MakeRow(row, line++);
  Load();
}

void StringRows::MakeRow(const Row& row, int line) {
  const QString caption = tr(row.Caption);
  auto* name = new QLabel(caption, this);
  grid_->addWidget(name, line, kNameColumn);
  cells_[row.Slot].Name = name;
  if (row.BoxName == nullptr && kSlots[row.Slot].ShownWith) {
    cells_[row.Slot].Hint = new QLabel(WhyHidden(row), this);
    cells_[row.Slot].Hint->setEnabled(false);
    grid_->addWidget(cells_[row.Slot].Hint, line, kCommandColumn, 1, kReplyColumn - kCommandColumn + 1);
  }
  if (row.BoxName != nullptr) {
    QCheckBox* box = MakeBox(QLatin1String(row.BoxName), tr(row.BoxCaption),
                             QStringLiteral("%1: %2").arg(caption, tr(row.BoxCaption)),
                             globals_.CurrentProjector.Available[row.Slot]);
    grid_->addWidget(box, line, kBoxColumn);
  }
  if (row.Slot == kVolumeDownSlot) {
    UseLevelsCheck = MakeBox(QStringLiteral("UseLevelsCheck"), tr("Uses Levels"), tr("Volume: Uses Levels"),
                             globals_.CurrentProjector.UseLevels);
    grid_->addWidget(UseLevelsCheck, line, kBoxColumn);
  }
  if (SlotHasIgnoreMask(row.Slot)) {
    const std::size_t reply = ReceivedIndex(row.Slot);
    QCheckBox* box =
        MakeBox(QStringLiteral("ReplyCheck_%1").arg(reply), tr("Requires reply"),
                tr("%1: Requires reply").arg(caption), globals_.CurrentProjector.RequiresReply[reply]);
    grid_->addWidget(box, line, kBoxColumn);
  }
  MakeDisplay(row.Slot, caption, line, kCommandColumn);
  if (SlotHasIgnoreMask(row.Slot)) return;
  Cell& cell = cells_[row.Slot];
  cell.Test = MakeButton("Test", row.Slot, tr("Test"), tr("Try %1 on a projector (F5)").arg(caption));
  grid_->addWidget(cell.Test, line, kTestColumn);
  connect(cell.Test, &QToolButton::clicked, this,
          [this, slot = static_cast<int>(row.Slot)] { Q_EMIT TestRequest(slot); });
  MakeReply(row.Slot, caption, line);
}

void StringRows::MakeReply(std::size_t command, const QString& caption, int line) {
  const auto slot = ReplySlotOf(command);
  if (!slot) return;
  const std::size_t reply = ReceivedIndex(*slot);
  const QString boxCaption = *slot == kBlankOffReplySlot ? tr("In Use") : tr("Requires reply");
  QCheckBox* box =
      MakeBox(QStringLiteral("ReplyCheck_%1").arg(reply), boxCaption,
              tr("%1 reply: %2").arg(caption, boxCaption), globals_.CurrentProjector.RequiresReply[reply]);
  cells_[command].ReplyCheck = box;
  grid_->addWidget(box, line, kReplyBoxColumn);
  MakeDisplay(*slot, tr("%1 reply").arg(caption), line, kReplyColumn);
}

void StringRows::MakeDisplay(std::size_t slot, const QString& name, int line, int column) {
  const int number = static_cast<int>(slot);
  auto* display = new SerialStringDisplay(this);
  display->setObjectName(QStringLiteral("SerialStringDisplay1_%1").arg(number));
  display->setAccessibleName(name);
  display->Bind(globals_, prompts_);
  KeepPlace(display);
  cells_[slot].Display = display;
  cells_[slot].Edit = MakeButton("Edit", slot, {}, tr("Edit %1 (Enter)").arg(name));
  cells_[slot].Edit->setAutoRaise(true);
  cells_[slot].Edit->setIcon(QIcon(QStringLiteral(":/icons/edit.png")));
  grid_->addWidget(display, line, column);
  grid_->addWidget(cells_[slot].Edit, line, column + 1);

  connect(display, &SerialStringDisplay::StringChanged, this, [this] {
    MarkFlagged();
    Q_EMIT Changed();
  });
  connect(display, &SerialStringDisplay::EditRequest, this,
          [this, display, number] { Q_EMIT EditRequest(number, display->RequestedByte()); });
  connect(display, &SerialStringDisplay::TestRequest, this, [this, number] { Q_EMIT TestRequest(number); });
  connect(cells_[slot].Edit, &QToolButton::clicked, this, [this, number] { Q_EMIT EditRequest(number, -1); });
}

// For the mouse: the display has keys for the same.
QToolButton* StringRows::MakeButton(const char* name, std::size_t slot, const QString& caption,
                                    const QString& toolTip) {
  auto* button = new QToolButton(this);
  button->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(slot));
  button->setText(caption);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  button->setFocusPolicy(Qt::NoFocus);
  KeepPlace(button);
  return button;
}

QCheckBox* StringRows::MakeBox(const QString& name, const QString& caption, const QString& meaning,
                               std::int16_t& flag) {
  auto* box = new QCheckBox(caption, this);
  box->setObjectName(name);
  box->setAccessibleName(meaning);
  KeepPlace(box);
  boxes_.push_back({box, &flag});
  connect(box, &QCheckBox::clicked, this, [this, &flag](bool checked) {
    flag = FlagOf(checked);
    ShowStrings();
    Q_EMIT Changed();
  });
  return box;
}

void StringRows::Load() {
  for (const FlagBox& flagBox : boxes_) flagBox.Box->setChecked(*flagBox.Flag != kFlagClear);
  for (std::size_t slot = 0; slot < cells_.size(); ++slot)
    cells_[slot].Display->Display(static_cast<int>(slot));
  ShowStrings();
}

QWidget* StringRows::FocusSlot(std::size_t slot) {
  cells_[slot].Display->setFocus(Qt::OtherFocusReason);
  return cells_[slot].Display;
}

QWidget* StringRows::LastTabStop() const { return cells_[Rows().back().Slot].Display; }

void StringRows::ShowStrings() {
  const SlotSet shown = ShownSlots(globals_.CurrentProjector);
  for (std::size_t slot = 0; slot < cells_.size(); ++slot) {
    const Cell& cell = cells_[slot];
    for (QWidget* widget : {static_cast<QWidget*>(cell.Display), static_cast<QWidget*>(cell.Edit),
                            static_cast<QWidget*>(cell.Test), static_cast<QWidget*>(cell.ReplyCheck)}) {
      if (widget != nullptr) widget->setVisible(shown[slot]);
    }
    if (cell.Hint != nullptr) cell.Hint->setVisible(!shown[slot]);
    if (cell.Name == nullptr) continue;
    const QString why = shown[slot] ? QString() : WhyHidden(RowOf(slot));
    cell.Name->setEnabled(shown[slot]);
    cell.Name->setToolTip(why);
    cell.Name->setAccessibleDescription(why);
  }
  UseLevelsCheck->setVisible(shown[kVolumeDownSlot]);
  MarkFlagged();
}

// What the code check finds stands as a mark at the string's edit button.
void StringRows::MarkFlagged() {
  std::array<QString, kCommandSlots> found;
  for (const CodeFinding& finding : CheckCodes(globals_.CurrentProjector).Findings)
    found[finding.Place] = QString::fromStdString(finding.Text);
  for (std::size_t slot = 0; slot < cells_.size(); ++slot) {
    QToolButton* mark = cells_[slot].Edit;
    mark->setIcon(QIcon(found[slot].isEmpty() ? QStringLiteral(":/icons/edit.png")
                                              : QStringLiteral(":/icons/warning.png")));
    mark->setToolTip(found[slot].isEmpty() ? mark->accessibleName() : found[slot]);
  }
}

}  // namespace qdm
