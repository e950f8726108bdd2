#include "forms/projectors/projector_setup_form.h"

#include "base/words.h"
#include "forms/controls/entry_note.h"
#include "forms/controls/option_keys.h"
#include "forms/controls/screen_fit.h"
#include "forms/controls/undo_actions.h"
#include "forms/manuals/manual_form.h"
#include "forms/projectors/name_validator.h"
#include "forms/projectors/string_rows.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/kind_colours.h"
#include "line/speeds_and_parities.h"
#include "projectors/definition_setup.h"
#include "projectors/projector_names.h"
#include "ui_projector_setup_form.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCompleter>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace qdm {
namespace {

constexpr int kLongestTime = 255;
constexpr int kLongestByteDelay = 10;

FixedText<32> NameIn(const QString& text) { return TypedName(text.toStdU16String()); }

// Each manufacturer once, in the order of the alphabet.
QStringList ManufacturersOf(const ProjectorLibrary& library) {
  std::set<std::u16string> names;
  for (const ProjectorDefinition& projector : library.Elements())
    names.insert(UpperCase(projector.Manufacturer.Trimmed()));
  QStringList list;
  for (const std::u16string& name : names) list << ToQString(name);
  return list;
}

// Nothing is chosen for a value that no option stands for.
void Choose(QButtonGroup* group, int id) {
  if (QAbstractButton* button = group->button(id)) return button->setChecked(true);
  group->setExclusive(false);
  for (QAbstractButton* button : group->buttons()) button->setChecked(false);
  group->setExclusive(true);
}

bool InRange(int value, int highest) { return value >= 0 && value <= highest; }

// A button for each row of a table, with its caption and code. `name` is what a screen reader says, with %1
// for the caption.
template <class Row, std::size_t N>
void AddChoices(QButtonGroup* group, const QString& name, const std::array<QRadioButton*, N>& buttons,
                const std::array<Row, N>& rows) {
  for (std::size_t i = 0; i < N; ++i) {
    const QString caption = Said(rows[i].Caption);
    buttons[i]->setText(caption);
    buttons[i]->setAccessibleName(name.arg(caption));
    group->addButton(buttons[i], rows[i].Code);
  }
}

std::int16_t Narrow(int value) { return static_cast<std::int16_t>(value); }

}  // namespace

ProjectorSetupForm::ProjectorSetupForm(Globals& globals, UserPrompts& prompts, SlotWindows windows,
                                       QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::ProjectorSetupForm>()),
      globals_(globals),
      prompts_(prompts),
      windows_(std::move(windows)),
      Strings(new StringRows(globals, prompts)),
      Baudrate(new QButtonGroup(this)),
      ParityOption(new QButtonGroup(this)),
      Stopbits(new QButtonGroup(this)),
      opened_(globals.CurrentProjector) {
  ui_->setupUi(this);
  ui_->StringsFrameLayout->addWidget(Strings);
  MakeGroups();
  for (QLineEdit* box : {ui_->Manufacturer->lineEdit(), ui_->Model}) {
    TakeNamesOnly(box);
    connect(box, &QLineEdit::inputRejected, this, [box] { ExplainRefusal(box); });
  }
  // A maker that begins like another one must not become that one.
  ui_->Manufacturer->lineEdit()->setAccessibleName(ui_->Manufacturer->accessibleName());
  ui_->Manufacturer->completer()->setCompletionMode(QCompleter::PopupCompletion);
  ConnectControls();
  Load();
  ConnectUndo();
  OrderTabs();
  FitToScreen(this);
  globals_.UnstoredProjector = [this] { return HasChanges() ? std::optional(Edited()) : std::nullopt; };
}

// The focus still moves while the base class takes the window apart.
ProjectorSetupForm::~ProjectorSetupForm() {
  globals_.UnstoredProjector = nullptr;
  disconnect(qApp, nullptr, this, nullptr);
}

// An option's id is the value that it stands for in the record.
void ProjectorSetupForm::MakeGroups() {
  const std::array speeds = {ui_->Baudrate_0, ui_->Baudrate_1, ui_->Baudrate_2, ui_->Baudrate_3,
                             ui_->Baudrate_4};
  const std::array parities = {ui_->ParityOption_0, ui_->ParityOption_1, ui_->ParityOption_2};
  AddChoices(Baudrate, tr("Speed %1"), speeds, LineSpeeds);
  AddChoices(ParityOption, tr("Parity %1"), parities, LineParities);
  int id = 0;
  for (QRadioButton* bits : {ui_->Stopbits_0, ui_->Stopbits_1}) Stopbits->addButton(bits, id++);
}

void ProjectorSetupForm::ConnectControls() {
  connect(Strings, &StringRows::Changed, this, &ProjectorSetupForm::ShowBudget);
  connect(Strings, &StringRows::Changed, this, &ProjectorSetupForm::NoteChange);
  connect(Strings, &StringRows::EditRequest, this, &ProjectorSetupForm::EditSlot);
  connect(Strings, &StringRows::TestRequest, this, &ProjectorSetupForm::TestSlot);
  connect(ui_->FromManual, &QPushButton::clicked, this, &ProjectorSetupForm::FromManual_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &ProjectorSetupForm::Done_Click);
  connect(ui_->Cancel, &QPushButton::clicked, this, &ProjectorSetupForm::reject);
  connect(ui_->Bench, &QPushButton::clicked, this, &ProjectorSetupForm::Bench_Click);
  ui_->Bench->setVisible(windows_.Bench != nullptr);
  connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, ui_->Done, &QPushButton::click);
}

void ProjectorSetupForm::ConnectUndo() {
  connect(ui_->Manufacturer, &QComboBox::currentTextChanged, this, &ProjectorSetupForm::NoteTyping);
  connect(ui_->Model, &QLineEdit::textChanged, this, &ProjectorSetupForm::NoteTyping);
  connect(ui_->Notes, &NotesBox::textChanged, this, &ProjectorSetupForm::NoteTyping);
  // The box with a list has the keys of its entry.
  QList<QWidget*> boxes = {ui_->Manufacturer, ui_->Manufacturer->lineEdit(), ui_->Model, ui_->Notes};
  for (const IntegerEntry* entry :
       {ui_->InterCommandDelay, ui_->InterByteDelay, ui_->WarmUpTime, ui_->CoolDownTime}) {
    connect(entry, &IntegerEntry::Edited, this, &ProjectorSetupForm::NoteTyping);
    connect(entry, &IntegerEntry::Changed, this, &ProjectorSetupForm::NoteTyping);
    boxes << entry->focusProxy();
  }
  for (QWidget* box : boxes) LeaveUndoToWindow(box);
  for (const QButtonGroup* group : {Baudrate, ParityOption, Stopbits})
    connect(group, &QButtonGroup::idClicked, this, &ProjectorSetupForm::NoteChange);
  connect(qApp, &QApplication::focusChanged, this, [this] { ++typing_; });
  connect(&history_, &DefinitionHistory::Restored, this, &ProjectorSetupForm::Restore);
  const UndoActions actions = MakeUndoActions(history_.Stack(), this);
  ui_->Undo->setDefaultAction(actions.Undo);
  ui_->Redo->setDefaultAction(actions.Redo);
}

// Names, line and times stand in the window's own order, the strings from top to bottom behind them.
void ProjectorSetupForm::OrderTabs() {
  FollowKeysInGroupsOf(this);
  setTabOrder(Strings->LastTabStop(), ui_->Notes);
  setTabOrder(ui_->Notes, ui_->Done);
  setTabOrder(ui_->Done, ui_->Cancel);
  setTabOrder(ui_->Cancel, ui_->FromManual);
  setTabOrder(ui_->FromManual, ui_->Bench);
}

void ProjectorSetupForm::Load() {
  ui_->Manufacturer->addItems(ManufacturersOf(globals_.ProjectorDatabase));
  LimitNumbers();
  Show();
  loaded_ = Edited();
  history_.Begin(loaded_);
  ui_->Manufacturer->setFocus();
}

void ProjectorSetupForm::LimitNumbers() {
  ui_->InterCommandDelay->SetLimits(0, kLongestTime);
  ui_->InterCommandDelay->SetLabel(tr("Minimum delay between serial commands"));
  ui_->InterByteDelay->SetLimits(0, kLongestByteDelay);
  ui_->InterByteDelay->SetLabel(tr("Minimum delay between serial bytes"));
  ui_->WarmUpTime->SetLimits(0, kLongestTime);
  ui_->WarmUpTime->SetLabel(tr("Time it takes the projector to warm up after power on"));
  ui_->CoolDownTime->SetLimits(0, kLongestTime);
  ui_->CoolDownTime->SetLabel(InRange(globals_.CurrentProjector.CoolDownTime, kLongestTime)
                                  ? tr("Time it takes the projector to cool down after power off")
                                  : tr("Time it takes the projector to cool down after power down"));
}

void ProjectorSetupForm::Show() {
  const QScopedValueRollback showing(showing_, true);
  const ProjectorDefinition& p = globals_.CurrentProjector;
  ui_->Manufacturer->setCurrentText(ToQString(p.Manufacturer.Trimmed()));
  ui_->Model->setText(ToQString(p.Model.Trimmed()));
  ui_->Notes->SetNotes(p.Notes);
  Choose(Baudrate, SpeedOf(p.Baudrate).Code);
  Choose(ParityOption, p.Parity);
  Choose(Stopbits, p.Stopbits != 0 ? 1 : 0);
  // A stored value out of range leaves the entry with its own starting value.
  if (InRange(p.InterCommandDelay, kLongestTime)) ui_->InterCommandDelay->SetValue(p.InterCommandDelay);
  if (InRange(p.InterByteDelay, kLongestByteDelay)) ui_->InterByteDelay->SetValue(p.InterByteDelay);
  if (InRange(p.WarmUpTime, kLongestTime)) ui_->WarmUpTime->SetValue(p.WarmUpTime);
  if (InRange(p.CoolDownTime, kLongestTime)) ui_->CoolDownTime->SetValue(p.CoolDownTime);
  Strings->Load();
  ShowBudget();
}

void ProjectorSetupForm::NoteTyping() {
  if (!showing_) history_.Note(Edited(), typing_);
}

void ProjectorSetupForm::NoteChange() {
  if (!showing_) history_.Note(Edited());
}

void ProjectorSetupForm::Restore(const ProjectorDefinition& projector) {
  globals_.CurrentProjector = projector;
  Show();
}

void ProjectorSetupForm::ExplainRefusal(QLineEdit* box) { ShowEntryNote(box, WhyNameWasRefused(box)); }

// What no control shows, or shows only in part, stays as it was: an unknown parity, another "two stop bits".
void ProjectorSetupForm::Store(ProjectorDefinition& projector) const {
  // In capitals already: the box itself takes the spelling of its list.
  projector.Manufacturer = NameIn(ui_->Manufacturer->currentText());
  projector.Manufacturer.Assign(UpperCase(projector.Manufacturer.View()));
  projector.Model = NameIn(ui_->Model->text());
  projector.Notes = ui_->Notes->Notes();
  projector.Baudrate = Narrow(std::max(0, Baudrate->checkedId()));
  if (ParityOption->checkedId() >= 0) projector.Parity = Narrow(ParityOption->checkedId());
  const bool two = Stopbits->checkedId() == 1;
  if (two != (projector.Stopbits != 0)) projector.Stopbits = two ? 1 : 0;
  projector.InterCommandDelay = Narrow(ui_->InterCommandDelay->Value());
  projector.InterByteDelay = Narrow(ui_->InterByteDelay->Value());
  projector.WarmUpTime = Narrow(ui_->WarmUpTime->Value());
  projector.CoolDownTime = Narrow(ui_->CoolDownTime->Value());
}

ProjectorDefinition ProjectorSetupForm::Edited() const {
  ProjectorDefinition projector = globals_.CurrentProjector;
  Store(projector);
  return projector;
}

void ProjectorSetupForm::FromManual_Click() {
  const auto filled = ManualForm::Fill(Edited(), prompts_, this);
  if (!filled) return;
  globals_.CurrentProjector = *filled;
  Show();
  NoteChange();
}

void ProjectorSetupForm::Done_Click() {
  ShowBudget();
  ProjectorDefinition projector = Edited();
  if (const auto refusal = CheckDefinition(projector)) {
    prompts_.Show(this, *refusal);
    if (const auto slot = RefusedSlot(projector)) ui_->Scroll->ensureWidgetVisible(Strings->FocusSlot(*slot));
    return;
  }
  CompleteDefinition(projector);
  const auto question = OverwriteQuestion(globals_.ProjectorDatabase, projector);
  if (question && !prompts_.AskYesNo(this, *question)) return;
  StoreDefinition(globals_.ProjectorDatabase, projector);
  globals_.CurrentProjector = projector;
  accept();
}

// What was filled from a manual before it came here has never been stored.
bool ProjectorSetupForm::HasChanges() const {
  const bool filled = std::any_of(opened_.Strings.begin(), opened_.Strings.end(),
                                  [](const SerialString& string) { return string.BytesInUse() > 0; });
  return Edited() != loaded_ || (filled && !HasBothNames(opened_));
}

void ProjectorSetupForm::reject() {
  if (HasChanges() && !globals_.Leaving &&
      !prompts_.AskYesNo(this,
                         {Say("The changes to this projector have not been saved. Do you wish to drop them?"),
                          Say("Are you sure?"), MessageIcon::Question}))
    return;
  globals_.CurrentProjector = opened_;
  QDialog::reject();
}

void ProjectorSetupForm::Bench_Click() {
  Store(globals_.CurrentProjector);
  windows_.Bench(this);
  Show();
  NoteChange();
}

void ProjectorSetupForm::EditSlot(int slot, int firstByte) {
  PrepareSlotWindow(slot);
  windows_.Edit(this, firstByte);
  ShowAfterSlotWindow();
}

void ProjectorSetupForm::TestSlot(int slot) {
  PrepareSlotWindow(slot);
  windows_.Test(this);
  ShowAfterSlotWindow();
}

// The test console's line settings and delay are those on show.
void ProjectorSetupForm::PrepareSlotWindow(int slot) {
  globals_.CurrentSlot = Narrow(slot);
  Store(globals_.CurrentProjector);
}

void ProjectorSetupForm::ShowAfterSlotWindow() {
  Strings->Load();
  ShowBudget();
  NoteChange();
}

void ProjectorSetupForm::ShowBudget() {
  const ProjectorDefinition& projector = globals_.CurrentProjector;
  const int used = SerialBytesUsed(projector, ShownSlots(projector));
  const int remaining = kSerialByteBudget - used;
  ui_->BytesUsed->setText(QString::number(used));
  ui_->ByteRemaining->setText(QString::number(remaining));
  QPalette colours = palette();
  if (remaining < 0) colours.setColor(QPalette::WindowText, ErrorColourOn(colours.color(QPalette::Window)));
  for (QLabel* label : {ui_->BytesUsed, ui_->ByteRemaining}) label->setPalette(colours);
}

// Beside each other while there is room, below each other on a small screen.
void ProjectorSetupForm::PlaceColumns() {
  const QMargins around = layout()->contentsMargins();
  const int room =
      width() - around.left() - around.right() - ui_->Scroll->verticalScrollBar()->sizeHint().width();
  const int wanted = ui_->Fields->minimumSize().width() + ui_->Columns->spacing() +
                     ui_->StringsFrame->minimumSizeHint().width();
  ui_->Columns->setDirection(wanted <= room ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void ProjectorSetupForm::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  PlaceColumns();
}

void ProjectorSetupForm::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) ShowBudget();
  QDialog::changeEvent(event);
}

}  // namespace qdm
