#include "forms/work_log/rooms_form.h"

#include "base/file_access.h"
#include "base/words.h"
#include "config/configuration_file.h"
#include "config/configuration_sentences.h"
#include "forms/controls/screen_fit.h"
#include "forms/download/download_words.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/work_log/read_entries.h"
#include "forms/work_log/work_log_model.h"
#include "panels/frame.h"
#include "ui_rooms_form.h"
#include "work_log/room_programming.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QSettings>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace qdm {
namespace {

const QString kFolderKey = QStringLiteral("rooms/folder");
constexpr QSize kRoomsSize(1000, 620);

enum Column { kRoom, kType, kProjector, kCheck, kLastSent, kState, kColumns };
constexpr std::array<int, kColumns> kRoomsWidths = {26, 10, 28, 30, 22, 19};

std::string NameOf(const ProjectorDefinition& projector) {
  return projector.Manufacturer.TrimmedUtf8() + " " + projector.Model.TrimmedUtf8();
}

QString TypeName(const Room& room) {
  const PanelType* type = PanelTypeOf(room.Configuration.ControllerType);
  return type != nullptr ? ToText(type->Caption) : QString();
}

QString StateCaption(const Room& room) {
  switch (room.Status.State) {
    case RoomState::Current:
      return RoomsForm::tr("\u2713 current");
    case RoomState::Changed:
      return RoomsForm::tr("changed since");
    case RoomState::Never:
      return RoomsForm::tr("never sent");
    case RoomState::Unfinished:
      break;
  }
  return RoomsForm::tr("unfinished");
}

QString CellText(const Room& room, int column) {
  if (column == kRoom) return ToText(room.Name);
  if (!room.Trouble.empty()) return column == kCheck ? ToText(room.Trouble) : QString();
  const ProjectorDefinition& projector = room.Configuration.Projector;
  switch (column) {
    case kType:
      return TypeName(room);
    case kProjector:
      return ToText(NameOf(projector));
    case kCheck:
      return room.Status.Check ? ToText(room.Status.Check->Text) : RoomsForm::tr("ok");
    case kLastSent:
      return room.Status.LastSent ? LocalTimeText(*room.Status.LastSent) : QString();
    default:
      return StateCaption(room);
  }
}

}  // namespace

// Shows a room's programming as long as there is a window.
class RoomsForm::Progress : public RoomObserver {
 public:
  Progress(RoomsForm* form, const Room& room)
      : form_(form), room_(ToText(room.Name)), type_(TypeName(room)) {}

  void StillWaiting(std::size_t panels) override {
    Say(panels == 0
            ? tr("Waiting for the %2 of \"%1\". Plug it in.").arg(room_, type_)
            : tr("More than one %2 answers. Leave only the one of \"%1\" plugged in.").arg(room_, type_));
  }
  void Found(const Identification& panel, const std::string& port) override {
    Say(tr("Found %1 on %2, for \"%3\".").arg(ToText(IdentificationText(panel)), ToText(port), room_));
  }
  void Connecting() override {}
  void RecordsAcknowledged(int records) override {
    if (form_) form_->ui_->Records->setValue(records);
    if (form_) form_->programming_ = true;
    Say(tr("Programming \"%1\". Do not disconnect it.").arg(room_));
  }
  // What went well is seen in the table: no box holds up the walk.
  void Tell(const Message& message) override {
    if (!form_ || message.Icon == MessageIcon::None) return;
    Message named = message;
    if (named.Detail.empty()) named.Detail = room_.toStdString();
    form_->tools_.Prompts.Show(form_, named);
  }

 private:
  void Say(const QString& text) {
    if (form_) form_->Say(text);
  }

  QPointer<RoomsForm> form_;
  QString room_;
  QString type_;
};

RoomsForm::RoomsForm(const RoomsTools& tools, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::RoomsForm>()), tools_(tools) {
  ui_->setupUi(this);
  ui_->Records->setRange(0, kRecords);
  ui_->Table->setColumnCount(kColumns);
  ui_->Table->setHorizontalHeaderLabels(
      {tr("Room"), tr("Panel"), tr("Projector"), tr("Check"), tr("Last sent"), tr("State")});
  const int character = fontMetrics().averageCharWidth();
  for (int column = 0; column < kColumns; ++column) {
    ui_->Table->setColumnWidth(column, kRoomsWidths[static_cast<std::size_t>(column)] * character);
  }
  for (const int column : {kProjector, kCheck})
    ui_->Table->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
  QSizePolicy kept = ui_->Records->sizePolicy();
  kept.setRetainSizeWhenHidden(true);
  ui_->Records->setSizePolicy(kept);
  ui_->Table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  ui_->Splitter->setStretchFactor(0, 3);
  ui_->Splitter->setStretchFactor(1, 2);
  resize(kRoomsSize);
  FitToScreen(this);
  connect(ui_->Folder, &QPushButton::clicked, this, &RoomsForm::Folder_Click);
  connect(ui_->ProgramNext, &QPushButton::clicked, this, &RoomsForm::ProgramNext_Click);
  connect(ui_->Stopper, &QPushButton::clicked, this, &RoomsForm::Stopper_Click);
  connect(ui_->TakeDefinitions, &QPushButton::clicked, this, &RoomsForm::TakeDefinitions_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &RoomsForm::reject);
  connect(ui_->Table, &QTableWidget::cellDoubleClicked, this, &RoomsForm::Room_DoubleClick);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    new QShortcut(
        key, ui_->Table, this, [this] { Room_DoubleClick(ui_->Table->currentRow()); }, Qt::WidgetShortcut);
  }
  connect(ui_->Table, &QTableWidget::itemSelectionChanged, this, &RoomsForm::Table_Select);
  folder_ = tools_.Settings.value(kFolderKey).toString();
  ReadFolder();
  FocusNext();
}

RoomsForm::~RoomsForm() { stop_.request_stop(); }

void RoomsForm::Folder_Click() {
  const std::optional<QString> file = tools_.Prompts.OpenFile(
      this, tr("Choose a Configuration of the Folder"), kConfigurationFileFilter, folder_);
  if (!file) return;
  folder_ = QFileInfo(*file).absolutePath();
  tools_.Settings.setValue(kFolderKey, folder_);
  ReadFolder();
}

void RoomsForm::ReadFolder() {
  rooms_.clear();
  try {
    const std::vector<WorkLogEntry> entries = ReadEntries(tools_.Log, this);
    if (!folder_.isEmpty()) {
      rooms_ = DoBusy(this, tr("Still reading %1.").arg(folder_),
                      [&] { return RoomsIn(ToPath(folder_), RoomHistories(entries)); });
    }
  } catch (const FileError& error) {
    tools_.Prompts.Show(this, SorryAbout(error));
  }
  outdated_ = OutdatedRooms(rooms_, tools_.Library);
  ShowRooms();
  next_ = NextDue(rooms_, std::nullopt);
  ShowNext();
}

void RoomsForm::ShowRooms() {
  ui_->FolderName->setText(folder_.isEmpty() ? tr("No folder has been chosen.") : folder_);
  ui_->FolderName->setToolTip(folder_);
  const auto due = std::count_if(rooms_.begin(), rooms_.end(), [](const Room& room) { return room.IsDue(); });
  ui_->Count->setText(tr("%1 of %2 rooms to program").arg(due).arg(rooms_.size()));
  ui_->Table->setRowCount(static_cast<int>(rooms_.size()));
  for (int row = 0; row < ui_->Table->rowCount(); ++row) ShowRow(row);
}

void RoomsForm::ShowRow(int row) {
  const Room& room = rooms_[static_cast<std::size_t>(row)];
  for (int column = 0; column < kColumns; ++column) {
    QString text = CellText(room, column);
    if (column == kProjector && IsOutdated(static_cast<std::size_t>(row)))
      text = tr("%1 (not as in the library)").arg(text);
    auto* cell = new QTableWidgetItem(text);
    cell->setToolTip(cell->text());
    QFont font = cell->font();
    font.setBold(column == kState && room.IsDue());
    cell->setFont(font);
    ui_->Table->setItem(row, column, cell);
  }
}

bool RoomsForm::IsOutdated(std::size_t room) const {
  return std::any_of(outdated_.begin(), outdated_.end(),
                     [room](const OutdatedRoom& outdated) { return outdated.Room == room; });
}

// Selects the room that is to be programmed and names it.
void RoomsForm::ShowNext() {
  if (next_) {
    const Room& room = rooms_[*next_];
    Say(tr("Go to \"%1\" and plug in its %2. Then press Program Next.")
            .arg(ToText(room.Name), TypeName(room)));
    ui_->Table->selectRow(static_cast<int>(*next_));
  } else {
    Say(rooms_.empty() ? tr("Choose a folder with configurations.") : tr("No room is left to program."));
  }
  ShowButtons();
}

void RoomsForm::ShowButtons() {
  ui_->ProgramNext->setEnabled(next_.has_value() && !running_);
  ui_->Stopper->setEnabled(running_ && !closing_);
  ui_->Folder->setEnabled(!running_);
  ui_->Table->setEnabled(!running_);
  ui_->TakeDefinitions->setEnabled(!running_ && !outdated_.empty());
  ui_->TakeDefinitions->setToolTip(
      outdated_.empty()
          ? tr("Every room has the projector as the library has it")
          : tr("Takes the selected room's projector from the library into all rooms that use it. "
               "Rooms that differ: %1")
                .arg(outdated_.size()));
  ui_->Records->setVisible(running_);
}

void RoomsForm::Say(const QString& text) { ui_->Instruction->setText(text); }

std::optional<std::size_t> RoomsForm::SelectedRoom() const {
  const QModelIndexList rows = ui_->Table->selectionModel()->selectedRows();
  if (rows.isEmpty()) return std::nullopt;
  return static_cast<std::size_t>(rows.first().row());
}

// A room that is due and clicked on is the next one.
void RoomsForm::Table_Select() {
  const std::optional<std::size_t> selected = SelectedRoom();
  if (!selected || *selected >= rooms_.size() || running_) return;
  const Room& room = rooms_[*selected];
  QString text = ToText(room.Trouble);
  if (room.Trouble.empty()) {
    const ConfigurationWords words = InWords(room.Configuration);
    for (const std::string& sentence : words.Sentences) text += ToText(sentence) + QLatin1Char('\n');
    for (const std::string& remark : words.Remarks)
      text += tr("Note: %1").arg(ToText(remark)) + QLatin1Char('\n');
  }
  ui_->Details->setPlainText(text);
  if (!room.IsDue() || next_ == selected) return;
  next_ = selected;
  ShowNext();
}

void RoomsForm::Room_DoubleClick(int row) {
  if (row < 0) return;
  const QString file = QString::fromStdString(PathToUtf8(rooms_[static_cast<std::size_t>(row)].File));
  if (tools_.Open(this, file)) accept();
}

void RoomsForm::ProgramNext_Click() {
  if (!next_ || running_) return;
  const QPointer<RoomsForm> self(this);
  const std::size_t current = *next_;
  running_ = true;
  programming_ = false;
  stop_ = std::stop_source();
  ui_->Records->setValue(0);
  ShowButtons();
  ui_->Stopper->setFocus();
  Progress progress(this, rooms_[current]);
  progress.StillWaiting(0);
  bool programmed = false;
  try {
    const RoomToProgram room{rooms_[current].File, rooms_[current].Configuration};
    programmed = ProgramRoom(room, tools_.Ports, tools_.Log, tools_.Time, stop_.get_token(), progress);
  } catch (const ImageError& error) {
    if (self) tools_.Prompts.Show(this, {error.what(), qdm::Say("Sorry"), MessageIcon::Exclamation});
  }
  if (!self) return;
  running_ = false;
  if (closing_) return reject();
  ReadFolder();
  next_ =
      programmed || current >= rooms_.size() || !rooms_[current].IsDue() ? NextDue(rooms_, current) : current;
  ShowNext();
  FocusNext();
}

// So that a key goes on with the next room.
void RoomsForm::FocusNext() {
  (next_ ? ui_->ProgramNext : rooms_.empty() ? ui_->Folder : ui_->Done)->setFocus();
}

// True when nothing is lost, or the user says so. The panel waits for the next record meanwhile.
bool RoomsForm::MayBeStopped() {
  if (!running_ || !programming_ || stop_.stop_requested()) return true;
  const QPointer<RoomsForm> self(this);
  const bool yes = tools_.Prompts.AskYesNo(this, StopQuestion());
  return yes && self;
}

void RoomsForm::Stopper_Click() {
  if (!MayBeStopped() || !running_) return;
  RequestStop();
}

void RoomsForm::RequestStop() {
  stop_.request_stop();
  Say(tr("Stopping..."));
}

// One definition at a time: that of the selected room, or else the first that differs. The differences are
// shown before anything is asked.
void RoomsForm::TakeDefinitions_Click() {
  const auto selected =
      std::find_if(outdated_.begin(), outdated_.end(),
                   [room = SelectedRoom()](const OutdatedRoom& outdated) { return outdated.Room == room; });
  const std::size_t element = (selected != outdated_.end() ? *selected : outdated_.front()).Element;
  const ProjectorDefinition& definition = tools_.Library[element];
  const QString name = ToText(NameOf(definition));
  std::vector<OutdatedRoom> rooms = outdated_;
  std::erase_if(rooms, [element](const OutdatedRoom& room) { return room.Element != element; });

  QString text = tr("What changes with the library's %1:").arg(name) + QLatin1Char('\n');
  for (const OutdatedRoom& outdated : rooms) {
    text += ToText(rooms_[outdated.Room].Name) + QLatin1Char('\n');
    for (const std::string& change : outdated.Changes)
      text += QLatin1String("    ") + ToText(change) + QLatin1Char('\n');
  }
  ui_->Details->setPlainText(text);
  const QString question =
      tr("Take the library's %1 into the rooms that use it (%2)?\r\nWhat changes is listed in the window.")
          .arg(name)
          .arg(rooms.size());
  if (!tools_.Prompts.AskYesNo(
          this, {question.toStdString(), tr("Take Projector").toStdString(), MessageIcon::Question}))
    return;
  for (const OutdatedRoom& outdated : rooms) {
    try {
      Room& room = rooms_[outdated.Room];
      DoBusy(this, tr("Still writing %1.").arg(ToText(room.Name)), [&] { TakeDefinition(room, definition); });
    } catch (const FileError& error) {
      tools_.Prompts.Show(this, SorryAbout(error));
    }
  }
  ReadFolder();
}

void RoomsForm::reject() {
  if (!MayBeStopped()) return;
  if (running_) {
    closing_ = true;
    RequestStop();
    ShowButtons();
    return;
  }
  QDialog::reject();
}

}  // namespace qdm
