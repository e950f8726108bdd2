#include "forms/strings/serial_editor.h"

#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/byte_mode_form.h"
#include "forms/strings/byte_value_control.h"
#include "forms/strings/edit_step.h"
#include "forms/strings/form_controlcode_form.h"
#include "forms/strings/kind_colours.h"
#include "forms/strings/my_text_box.h"
#include "forms/strings/string_access.h"
#include "forms/strings/string_clipboard.h"
#include "forms/strings/text_reading_form.h"
#include "forms/strings/volume_editor_form.h"
#include "projectors/paste_rule.h"
#include "serial_strings/command_text.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QUndoStack>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "serial_strings/serial_string.h"
#include "ui_serial_editor.h"

namespace qdm {
namespace {

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

void PaintRed(QLabel& label) {
  QPalette red = label.palette();
  red.setColor(QPalette::WindowText, ErrorColourOn(red.color(QPalette::Window)));
  label.setPalette(red);
}

}  // namespace

SerialEditor::SerialEditor(Globals& globals, UserPrompts& prompts, ConsoleOpener openConsole, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::SerialEditor>()),
      globals_(globals),
      prompts_(prompts),
      openConsole_(std::move(openConsole)),
      UndoStack(new QUndoStack(this)) {
  InstallStringAccess();
  ui_->setupUi(this);
  CountText = ui_->NumberOfBytes1->findChild<QLineEdit*>();
  MakeCells();
  MakeCommands();
  SetTabOrder();
  ConnectControls();
  Form_Load();
  KeepWithDefinition();
}

// The focus still moves while the base class takes the window apart.
SerialEditor::~SerialEditor() {
  disconnect(UndoStack, nullptr, this, nullptr);
  disconnect(qApp, nullptr, this, nullptr);
  globals_.UnstoredProjector = unstoredOutside_;
}

// When the program ends, the definition is kept as if the string had been taken over.
void SerialEditor::KeepWithDefinition() {
  unstoredOutside_ = globals_.UnstoredProjector;
  if (!unstoredOutside_) return;
  globals_.UnstoredProjector = [this] {
    const SerialString stored = std::exchange(Slot(), EditedString());
    auto unstored = unstoredOutside_();
    Slot() = stored;
    return unstored;
  };
}

void SerialEditor::MakeCells() {
  for (int i = 0; i < static_cast<int>(kMaximumStringBytes); ++i) {
    auto* cell = new ByteValueControl(i, this);
    ui_->Cells->addWidget(cell, i / MyTextBox::kPerRow, i % MyTextBox::kPerRow);
    ByteValueControl1.push_back(cell);
  }
}

// The commands of a byte's context menu, and their keys.
void SerialEditor::MakeCommands() {
  const auto make = [this](const char* name, const QString& caption, const QKeySequence& key, auto handler) {
    auto* command = new QAction(caption, this);
    command->setObjectName(QLatin1String(name));
    command->setShortcut(key);
    command->setShortcutContext(Qt::WidgetShortcut);
    connect(command, &QAction::triggered, this, handler);
    for (ByteValueControl* cell : ByteValueControl1) cell->Box()->addAction(command);
  };
  make("InsertByte", tr("&Insert a byte"), QKeySequence(Qt::CTRL | Qt::Key_Insert),
       &SerialEditor::InsertByte_Click);
  make("DeleteByte", tr("&Delete this byte"), QKeySequence(Qt::CTRL | Qt::Key_Delete),
       &SerialEditor::DeleteByte_Click);
  for (QWidget* entry : {CountText, ui_->Command}) entry->installEventFilter(this);
  ui_->Undo->setIcon(QIcon(QStringLiteral(":/icons/undo.png")));
  ui_->Redo->setIcon(QIcon(QStringLiteral(":/icons/redo.png")));
  new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), this, [this] { Undo_Click(); });
  for (const QKeyCombination key : {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}) {
    new QShortcut(QKeySequence(key), this, [this] { UndoStack->redo(); });
  }
}

// Of the widgets that take the focus: one that hands it on is no place in the order.
void SerialEditor::SetTabOrder() {
  QList<QWidget*> order = {CountText, ui_->Command, ui_->OtherReadings};
  for (ByteValueControl* cell : ByteValueControl1) order << cell->Box();
  order << ui_->Test << ui_->PasteCommand << ui_->Done << ui_->CancelCommand;
  for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void SerialEditor::ConnectControls() {
  connect(ui_->NumberOfBytes1, &IntegerEntry::Changed, this, &SerialEditor::NumberOfBytes1_Change);
  connect(ui_->Command, &QLineEdit::textEdited, this, &SerialEditor::Command_TextEdited);
  connect(ui_->Command, &QLineEdit::editingFinished, this, &SerialEditor::Command_EditingFinished);
  connect(ui_->OtherReadings, &QPushButton::clicked, this, &SerialEditor::OtherReadings_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &SerialEditor::Done_Click);
  connect(ui_->CancelCommand, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->Test, &QPushButton::clicked, this, &SerialEditor::Test_Click);
  connect(ui_->PasteCommand, &QPushButton::clicked, this, &SerialEditor::PasteCommand_Click);
  for (ByteValueControl* cell : ByteValueControl1) ConnectCell(*cell);

  connect(ui_->Undo, &QToolButton::clicked, this, &SerialEditor::Undo_Click);
  connect(ui_->Redo, &QToolButton::clicked, UndoStack, &QUndoStack::redo);
  connect(UndoStack, &QUndoStack::canUndoChanged, ui_->Undo, &QWidget::setEnabled);
  connect(UndoStack, &QUndoStack::canRedoChanged, ui_->Redo, &QWidget::setEnabled);
  const auto tell = [](QToolButton* button, const QString& tip) {
    button->setToolTip(tip);
    button->setAccessibleDescription(tip);
  };
  connect(UndoStack, &QUndoStack::undoTextChanged, this, [this, tell](const QString& what) {
    tell(ui_->Undo, what.isEmpty() ? tr("Nothing to undo") : tr("Undo: %1 (Ctrl+Z)").arg(what));
  });
  connect(UndoStack, &QUndoStack::redoTextChanged, this, [this, tell](const QString& what) {
    tell(ui_->Redo, what.isEmpty() ? tr("Nothing to redo") : tr("Redo: %1 (Ctrl+Shift+Z)").arg(what));
  });
  connect(qApp, &QApplication::focusChanged, this, [this] { ++typingRound_; });
}

void SerialEditor::ConnectCell(ByteValueControl& cell) {
  const int index = cell.MyIndex();
  connect(&cell, &ByteValueControl::KindRequest, this, [this, &cell] { ChooseKind(cell); });
  connect(cell.Box(), &MyTextBox::ChoiceRequest, this, [this, &cell] { ChooseValue(cell); });
  connect(&cell, &ByteValueControl::VariableChanged, this,
          [this, &cell] { ByteValueControl1_VariableChanged(cell); });
  connect(cell.Box(), &MyTextBox::MoveRequest, this, [this, index](int step) { MoveFrom(index, step); });
  connect(cell.Box(), &MyTextBox::PasteRequest, this,
          [this, index] { PasteAt(static_cast<std::size_t>(index), Rest::Kept); });
}

void SerialEditor::Form_Load() {
  setWindowTitle(tr("Serial String Editor - %1")
                     .arg(Said(CommandSlotNames.at(static_cast<std::size_t>(globals_.CurrentSlot)))));
  ui_->NumberOfBytes1->Bind(0, 0, static_cast<int>(kMaximumStringBytes),
                            tr("Number of bytes in this message"));
  PaintRed(*ui_->ErrorNote);
  Show(StringEdit(Slot()));
  FocusByte(0);
}

SerialString& SerialEditor::Slot() {
  return globals_.CurrentProjector.Strings.at(static_cast<std::size_t>(globals_.CurrentSlot));
}

const SerialString& SerialEditor::Slot() const {
  return globals_.CurrentProjector.Strings.at(static_cast<std::size_t>(globals_.CurrentSlot));
}

void SerialEditor::FocusByte(int index) {
  const int inUse = static_cast<int>(BytesInUse());
  if (inUse == 0) return ui_->Command->setFocus();
  ByteValueControl1[static_cast<std::size_t>(index >= 0 && index < inUse ? index : 0)]->Box()->setFocus();
}

int SerialEditor::FocusedByte() const {
  for (const ByteValueControl* cell : ByteValueControl1) {
    if (cell->Box()->hasFocus()) return cell->MyIndex();
  }
  return -1;
}

void SerialEditor::MoveFrom(int index, int step) {
  const int target = index + step;
  if (target >= 0 && target < static_cast<int>(BytesInUse())) FocusByte(target);
}

// An entry's own undo would know nothing of the other entries.
bool SerialEditor::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return QDialog::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool isStep = key->key() == Qt::Key_Z || key->key() == Qt::Key_Y;
  if (!isStep || !key->modifiers().testFlag(Qt::ControlModifier)) return false;
  event->ignore();
  return true;
}

// ---- showing ----

void SerialEditor::Change(const StringEdit& after, const QString& what, Typing typing) {
  if (after == edit_) return Show(edit_);
  const int round = typing == Typing::Yes ? typingRound_ : EditStep::kNoTyping;
  UndoStack->push(new EditStep(what, round, edit_, after, [this](const StringEdit& edit) { Show(edit); }));
}

void SerialEditor::Show(const StringEdit& edit) {
  edit_ = edit;
  ShowCells();
  const SerialString string = EditedString();
  globals_.VariableBytePosition = VariableBytePositionOf(string);
  ui_->Preview->SetString(string);
  if (!commandTyped_) ShowCommandText();
  ShowNotes();
}

// A cell that shows the byte already keeps its caret.
void SerialEditor::ShowCells() {
  ui_->NumberOfBytes1->SetValue(static_cast<int>(BytesInUse()));
  const int focused = FocusedByte();
  for (std::size_t i = 0; i < kMaximumStringBytes; ++i) {
    ByteValueControl& cell = *ByteValueControl1[i];
    if (cell.Value() != edit_.Value(i) || cell.Kind() != edit_.Kind(i)) {
      cell.SetByte(edit_.Value(i), edit_.Kind(i));
    }
  }
  // Before a cell is disabled the focus leaves it for one that is not.
  if (focused >= static_cast<int>(BytesInUse())) FocusByte(static_cast<int>(BytesInUse()) - 1);
  for (std::size_t i = 0; i < kMaximumStringBytes; ++i) ByteValueControl1[i]->setEnabled(i < BytesInUse());
}

void SerialEditor::ShowNotes() {
  const auto tooLarge = edit_.FirstTooLarge();
  ui_->ErrorNote->setText(
      tooLarge ? tr("Byte %1 is %2: a byte holds 0 to 255.").arg(*tooLarge + 1).arg(edit_.Value(*tooLarge))
               : QString());
  ShowReading();
}

void SerialEditor::ShowCommandText() {
  reading_ = {};
  ui_->Command->setText(QString::fromStdString(CommandText(EditedString())));
}

QString SerialEditor::CommandProblem() const {
  if (!commandTyped_ || ui_->Command->text().isEmpty()) return {};
  if (reading_.Readings.empty()) {
    return QString::fromStdString(ProblemText(reading_.Problem.value_or(TextProblem{})));
  }
  const auto refusal =
      CheckPaste(static_cast<std::size_t>(globals_.CurrentSlot), reading_.Readings[0].String);
  return refusal ? QString::fromStdString(refusal->Text) : QString();
}

void SerialEditor::ShowReading() {
  const QString problem = CommandProblem();
  QStringList others;
  for (std::size_t i = 1; i < reading_.Readings.size(); ++i) {
    others << SaidEach(reading_.Readings[i].As);
  }
  others.removeDuplicates();
  ui_->OtherReadings->setEnabled(reading_.Readings.size() > 1);
  ui_->CommandNote->setPalette(problem.isEmpty() ? palette() : ui_->ErrorNote->palette());
  if (!problem.isEmpty()) return ui_->CommandNote->setText(problem);
  QStringList notes;
  if (!others.isEmpty()) {
    const QString as = SaidEach(reading_.Readings[0].As);
    notes << tr("Read as %1; it could also be %2.").arg(as, others.join(QStringLiteral(", ")));
  }
  if (reading_.Problem) notes << QString::fromStdString(ProblemText(*reading_.Problem));
  ui_->CommandNote->setText(notes.join(QLatin1Char(' ')));
}

bool SerialEditor::RefuseUnstorable() {
  if (!CommandProblem().isEmpty()) {
    ui_->Command->setFocus();
    return true;
  }
  const auto tooLarge = edit_.FirstTooLarge();
  if (tooLarge) ByteValueControl1[*tooLarge]->Box()->setFocus();
  return tooLarge.has_value();
}

// ---- typing ----

void SerialEditor::NumberOfBytes1_Change() {
  StringEdit after = edit_;
  after.SetCount(static_cast<std::size_t>(ui_->NumberOfBytes1->Value()));
  Change(after, tr("Number of bytes"), Typing::Yes);
}

void SerialEditor::ByteValueControl1_VariableChanged(const ByteValueControl& cell) {
  StringEdit after = edit_;
  after.SetValue(static_cast<std::size_t>(cell.MyIndex()), cell.Value());
  Change(after, tr("Byte %1").arg(cell.MyIndex() + 1), Typing::Yes);
}

// What cannot be read leaves the bytes as they are.
void SerialEditor::Command_TextEdited() {
  const QString text = ui_->Command->text();
  commandTyped_ = true;
  reading_ = text.isEmpty() ? ParsedText{} : ParseSerialText(text.toStdU16String());
  StringEdit after = edit_;
  if (CommandProblem().isEmpty()) {
    after.Replace(reading_.Readings.empty() ? SerialString{} : reading_.Readings[0].String);
  }
  Change(after, tr("Command text"), Typing::Yes);
}

void SerialEditor::Command_EditingFinished() {
  if (!commandTyped_ || !CommandProblem().isEmpty()) return;
  commandTyped_ = false;
  Show(edit_);
}

void SerialEditor::OtherReadings_Click() {
  const auto chosen = TextReadingForm::Choose(this, ui_->Command->text(), reading_);
  if (!chosen) return;
  commandTyped_ = false;
  StringEdit after = edit_;
  after.Replace(*chosen);
  Change(after, tr("Command text"));
}

void SerialEditor::InsertByte_Click() {
  const int index = FocusedByte();
  StringEdit after = edit_;
  if (index < 0 || !after.Insert(static_cast<std::size_t>(index))) return QApplication::beep();
  Change(after, tr("Insert a byte"));
}

void SerialEditor::DeleteByte_Click() {
  const int index = FocusedByte();
  StringEdit after = edit_;
  if (index < 0 || !after.Remove(static_cast<std::size_t>(index))) return QApplication::beep();
  Change(after, tr("Delete a byte"));
}

// What was typed and cannot be read is the first that goes.
void SerialEditor::Undo_Click() {
  const bool wasUnread = !CommandProblem().isEmpty();
  commandTyped_ = false;
  wasUnread ? Show(edit_) : UndoStack->undo();
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
  StringEdit after = edit_;
  if (form.AllBytes()) {
    after.MakeAllAscii();
  } else {
    after.SetKind(static_cast<std::size_t>(cell.MyIndex()), static_cast<std::uint8_t>(kind));
  }
  Change(after, tr("Byte mode"));
  if (kind == static_cast<int>(ByteKind::VAR)) EditVolumeFormat();
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
    if (code == FormControlcodeForm::kNothing) return;
    StringEdit after = edit_;
    after.SetValue(static_cast<std::size_t>(cell.MyIndex()), static_cast<std::int16_t>(code));
    Change(after, tr("Byte %1").arg(cell.MyIndex() + 1));
  }
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
  commandTyped_ = false;
  StringEdit after = edit_;
  rest == Rest::Dropped ? after.Replace(*string) : after.Write(first, *string);
  Change(after, tr("Paste"));
}

void SerialEditor::Test_Click() {
  if (RefuseUnstorable()) return;
  const SetAside slot(Slot());
  Slot() = EditedString();
  openConsole_(this);
}

void SerialEditor::Done_Click() {
  if (RefuseUnstorable()) return;
  Slot() = EditedString();
  accept();
}

}  // namespace qdm
