#include "forms/strings/serial_editor.h"

#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/byte_mode_form.h"
#include "forms/strings/byte_value_control.h"
#include "forms/strings/form_controlcode_form.h"
#include "forms/strings/kind_colours.h"
#include "forms/strings/my_text_box.h"
#include "forms/strings/string_clipboard.h"
#include "forms/strings/volume_editor_form.h"
#include "projectors/paste_rule.h"

#include <QPushButton>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "ui_serial_editor.h"

namespace qdm {
namespace {

constexpr int kBytesPerRow = 8;

QRect OnScreen(const QWidget& widget) { return {widget.mapToGlobal(QPoint(0, 0)), widget.size()}; }

// Puts a string back where it was, however the block is left.
class SetAside {
 public:
  explicit SetAside(SerialString& string) : string_(string), saved_(string) {}
  ~SetAside() { string_ = saved_; }
  SetAside(const SetAside&) = delete;
  SetAside& operator=(const SetAside&) = delete;

 private:
  SerialString& string_;
  SerialString saved_;
};

}  // namespace

SerialEditor::SerialEditor(Globals& globals, UserPrompts& prompts, ConsoleOpener openConsole, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::SerialEditor>()),
      globals_(globals),
      prompts_(prompts),
      openConsole_(std::move(openConsole)) {
  ui_->setupUi(this);
  MakeCells();
  ConnectControls();
  Form_Load();
}

SerialEditor::~SerialEditor() = default;

void SerialEditor::MakeCells() {
  QWidget* before = ui_->NumberOfBytes1;
  for (int i = 0; i < static_cast<int>(kMaximumStringBytes); ++i) {
    auto* cell = new ByteValueControl(i, this);
    ui_->Cells->addWidget(cell, i / kBytesPerRow, i % kBytesPerRow);
    setTabOrder(before, cell);
    before = cell;
    ByteValueControl1.push_back(cell);
  }
  setTabOrder(before, ui_->Test);
  setTabOrder(ui_->Test, ui_->PasteCommand);
  setTabOrder(ui_->PasteCommand, ui_->Done);
  setTabOrder(ui_->Done, ui_->CancelCommand);
}

void SerialEditor::ConnectControls() {
  connect(ui_->NumberOfBytes1, &IntegerEntry::Changed, this, &SerialEditor::NumberOfBytes1_Change);
  connect(ui_->Done, &QPushButton::clicked, this, &SerialEditor::Done_Click);
  connect(ui_->CancelCommand, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->Test, &QPushButton::clicked, this, &SerialEditor::Test_Click);
  connect(ui_->PasteCommand, &QPushButton::clicked, this, &SerialEditor::PasteCommand_Click);
  for (ByteValueControl* cell : ByteValueControl1) {
    const int index = cell->MyIndex();
    connect(cell, &ByteValueControl::KindRequest, this, [this, cell] { ChooseKind(*cell); });
    connect(cell->Box(), &MyTextBox::ChoiceRequest, this, [this, cell] { ChooseValue(*cell); });
    connect(cell, &ByteValueControl::ModeChanged, this, &SerialEditor::ByteValueControl1_ModeChanged);
    connect(cell, &ByteValueControl::VariableChanged, this, &SerialEditor::ByteValueControl1_VariableChanged);
    connect(cell->Box(), &MyTextBox::MoveRequest, this, [this, index](int step) { MoveFrom(index, step); });
    connect(cell->Box(), &MyTextBox::PasteRequest, this,
            [this, index] { PasteAt(static_cast<std::size_t>(index), Rest::Kept); });
  }
}

void SerialEditor::Form_Load() {
  const SerialString& string = Slot();
  const std::string_view name = CommandSlotNames.at(static_cast<std::size_t>(globals_.CurrentSlot));
  setWindowTitle(windowTitle() + QStringLiteral(" - ") +
                 QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
  ui_->NumberOfBytes1->Bind(string.Count, 0, static_cast<int>(kMaximumStringBytes),
                            tr("Number of bytes in this message"));
  for (std::size_t i = 0; i < kMaximumStringBytes; ++i) {
    ByteValueControl1[i]->SetByte(string.Values[i], string.Kinds[i]);
  }
  NumberOfBytes1_Change();
  FocusByte(0);
}

SerialString& SerialEditor::Slot() {
  return globals_.CurrentProjector.Strings.at(static_cast<std::size_t>(globals_.CurrentSlot));
}

std::size_t SerialEditor::BytesInUse() const {
  return static_cast<std::size_t>(ui_->NumberOfBytes1->Value());
}

void SerialEditor::FocusByte(int index) {
  const int inUse = static_cast<int>(BytesInUse());
  if (inUse == 0) return ui_->NumberOfBytes1->setFocus();
  ByteValueControl1[static_cast<std::size_t>(index >= 0 && index < inUse ? index : 0)]->setFocus();
}

void SerialEditor::MoveFrom(int index, int step) {
  const int target = index + step;
  if (target >= 0 && target < static_cast<int>(BytesInUse())) FocusByte(target);
}

void SerialEditor::NumberOfBytes1_Change() {
  for (std::size_t i = 0; i < kMaximumStringBytes; ++i) ByteValueControl1[i]->setEnabled(i < BytesInUse());
  ShowString();
}

void SerialEditor::ByteValueControl1_ModeChanged() { ShowString(); }
void SerialEditor::ByteValueControl1_VariableChanged() { ShowString(); }

void SerialEditor::ShowString() {
  const SerialString string = EditedString();
  globals_.VariableBytePosition = VariableBytePositionOf(string);
  ui_->Preview->SetString(string);

  const ByteValueControl* tooLarge = FirstTooLarge();
  ui_->ErrorNote->setText(
      tooLarge == nullptr
          ? QString()
          : tr("Byte %1 is %2: a byte holds 0 to 255.").arg(tooLarge->MyIndex() + 1).arg(tooLarge->Value()));
  QPalette red = ui_->ErrorNote->palette();
  red.setColor(QPalette::WindowText, ErrorColourOn(red.color(QPalette::Window)));
  ui_->ErrorNote->setPalette(red);
}

SerialString SerialEditor::EditedString() {
  SerialString string = Slot();
  string.Count = static_cast<std::int16_t>(BytesInUse());
  for (std::size_t i = 0; i < kMaximumStringBytes; ++i) {
    const std::int16_t value = ByteValueControl1[i]->Value();
    if (value >= 0 && value <= 255) string.Values[i] = static_cast<std::uint8_t>(value);
    string.Kinds[i] = ByteValueControl1[i]->Kind();
  }
  return string;
}

ByteValueControl* SerialEditor::FirstTooLarge() const {
  const auto end = ByteValueControl1.begin() + static_cast<std::ptrdiff_t>(BytesInUse());
  const auto found = std::find_if(ByteValueControl1.begin(), end,
                                  [](const ByteValueControl* cell) { return cell->Value() > 255; });
  return found == end ? nullptr : *found;
}

// A value over 255 may be typed, but there is no byte to store it in.
bool SerialEditor::RefuseTooLarge() {
  ByteValueControl* cell = FirstTooLarge();
  if (cell != nullptr) cell->setFocus();
  return cell != nullptr;
}

// ---- choosing ----

void SerialEditor::ChooseKind(ByteValueControl& cell) {
  const bool isVariable = cell.Kind() == static_cast<std::uint8_t>(ByteKind::VAR);
  const bool isIgnored = cell.Kind() == static_cast<std::uint8_t>(ByteKind::IGN);
  const bool canIgnore = SlotTakesIgnore(static_cast<std::size_t>(globals_.CurrentSlot));
  // A variable byte behind the string's end cannot be seen and does not count.
  const int position = globals_.VariableBytePosition;
  const bool isElsewhere = !isVariable && position <= static_cast<int>(BytesInUse());

  ByteModeForm form(isElsewhere ? position : 0, canIgnore || isIgnored, this);
  const int kind = form.ChooseAt(OnScreen(cell), cell.Kind());
  if (kind == ByteModeForm::kNothing) return;
  if (form.AllBytes()) {
    MakeAllAscii();
  } else if (kind == static_cast<int>(ByteKind::VAR)) {
    MakeVariable(cell);
  } else {
    cell.SetByte(cell.Value(), static_cast<std::uint8_t>(kind));
  }
  Q_EMIT cell.ModeChanged();
}

void SerialEditor::MakeAllAscii() {
  for (ByteValueControl* cell : std::span(ByteValueControl1).first(BytesInUse())) {
    cell->SetByte(cell->Value(), static_cast<std::uint8_t>(ByteKind::ASC));
  }
}

void SerialEditor::MakeVariable(ByteValueControl& cell) {
  constexpr auto kVariable = static_cast<std::uint8_t>(ByteKind::VAR);
  for (ByteValueControl* unused : std::span(ByteValueControl1).subspan(BytesInUse())) {
    if (unused->Kind() == kVariable)
      unused->SetByte(unused->Value(), static_cast<std::uint8_t>(ByteKind::HEX));
  }
  cell.SetByte(cell.Value(), kVariable);
  EditVolumeFormat();
}

void SerialEditor::EditVolumeFormat() {
  VolumeEditorForm form(globals_.CurrentProjector, prompts_, this);
  form.exec();
}

void SerialEditor::ChooseValue(ByteValueControl& cell) {
  if (cell.Kind() == static_cast<std::uint8_t>(ByteKind::VAR)) {
    EditVolumeFormat();
  } else {
    FormControlcodeForm form(this);
    const int code = form.ChooseAt(OnScreen(*cell.Box()), cell.Value() < 32 ? cell.Value() : 0);
    if (code != FormControlcodeForm::kNothing) cell.SetByte(static_cast<std::int16_t>(code), cell.Kind());
  }
  Q_EMIT cell.VariableChanged();
}

// ---- commands ----

void SerialEditor::PasteCommand_Click() { PasteAt(0, Rest::Dropped); }

void SerialEditor::PasteAt(std::size_t first, Rest rest) {
  const auto string = StringToPaste(this, globals_, prompts_, static_cast<std::size_t>(globals_.CurrentSlot));
  if (!string) return;
  if (const auto refusal = CheckRoomForPaste(first, *string)) {
    prompts_.Show(this, *refusal);
    return;
  }
  const std::size_t end = first + string->BytesInUse();
  for (std::size_t i = first; i < end; ++i) {
    ByteValueControl1[i]->SetByte(string->Values[i - first], string->Kinds[i - first]);
  }
  ui_->NumberOfBytes1->SetValue(static_cast<int>(rest == Rest::Dropped ? end : std::max(end, BytesInUse())));
  NumberOfBytes1_Change();
}

void SerialEditor::Test_Click() {
  if (RefuseTooLarge()) return;
  const SetAside slot(Slot());
  Slot() = EditedString();
  openConsole_(this);
}

void SerialEditor::Done_Click() {
  if (RefuseTooLarge()) return;
  Slot() = EditedString();
  accept();
}

}  // namespace qdm
