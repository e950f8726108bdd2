#include "forms/download/download_form.h"

#include "base/words.h"
#include "config/panel_configuration.h"
#include "forms/download/find_panel_form.h"
#include "forms/download/port_row.h"
#include "forms/download/window_size.h"
#include "forms/shared/globals.h"
#include "forms/shared/port_words.h"
#include "forms/shared/user_prompts.h"
#include "panels/frame.h"
#include "ui_download_form.h"
#include "work_log/download_record.h"
#include "work_log/known_panel.h"

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QRadioButton>
#include <QScrollBar>
#include <QTime>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <stop_token>
#include <utility>
#include <vector>

namespace qdm {
namespace {

constexpr int kSearchDelay = 500;   // ms; lets the window be seen first
constexpr int kPaintInterval = 34;  // ms; at most 30 pictures a second
constexpr Microseconds kReactionTime = std::chrono::milliseconds(700);

}  // namespace

// What a procedure works on. It keeps its own hold, so that it can end in peace when the form is gone.
struct Download::Work {
  std::vector<SearchSlot> Slots;
  std::stop_source StopFinding;  // ends a search alone
  std::stop_source Stop;
  bool Running = false;
};

// Shows a programming in the form as long as there is one.
class Download::Progress : public ProgrammingObserver {
 public:
  Progress(Download* form, QString port) : form_(form), port_(std::move(port)) {}

  void Connecting() override {
    if (form_) form_->ShowStage(Stage::Connecting);
  }
  // Nothing is painted before the next record is on its way, and then at once: it keeps the line busy for
  // longer than that takes.
  void RecordsAcknowledged(int records) override {
    if (!form_) return;
    form_->records_ = records;
    if (form_->stage_ != Stage::Programming) form_->ShowStage(Stage::Programming);
    if (painted_.isValid() && !painted_.hasExpired(kPaintInterval) && records < kRecords) return;
    painted_.start();
    form_->paintRecords_->start(0);
  }
  // Who stopped it waits for the panel to run again, not for an answer to a box.
  void Tell(const Message& message) override {
    if (!form_) return;
    Message named = message;
    named.Detail = port_.toStdString();
    if (form_->work_->Stop.stop_requested()) {
      held_.push_back(std::move(named));
    } else {
      form_->Show(named);
    }
  }
  void TellWhatWasHeld() {
    for (const Message& message : held_) {
      if (form_) form_->Show(message);
    }
  }

 private:
  QPointer<Download> form_;
  QString port_;
  QElapsedTimer painted_;
  std::vector<Message> held_;
};

Download::Download(Globals& globals, const PanelConfiguration& configuration, SerialPorts& ports,
                   Waiting& time, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Download>()),
      globals_(globals),
      configuration_(configuration),
      ports_(ports),
      time_(time),
      prompts_(prompts),
      work_(std::make_shared<Work>()),
      Timer1(new QTimer(this)),
      paintRecords_(new QTimer(this)) {
  ui_->setupUi(this);
  Timer1->setObjectName(QStringLiteral("Timer1"));
  Timer1->setSingleShot(true);
  paintRecords_->setSingleShot(true);
  for (std::size_t slot = 0; slot < rows_.size(); ++slot) {
    rows_[slot] = new PortRow(static_cast<int>(slot), *ui_->SlotGrid, ui_->Rows);
    rows_[slot]->Option1->installEventFilter(this);
    connect(rows_[slot]->Option1, &QRadioButton::clicked, this, [this, slot] { Option1_Click(slot); });
    connect(rows_[slot], &PortRow::Moved, this, [this, slot](int direction) { MoveFocus(slot, direction); });
    connect(rows_[slot]->ProgramNow, &QToolButton::clicked, this, [this, slot] { ProgramNow_Click(slot); });
    connect(rows_[slot]->Identify, &QToolButton::clicked, this, [this, slot] { Identify_Click(slot); });
  }
  connect(Timer1, &QTimer::timeout, this, &Download::Timer1_Timer);
  connect(paintRecords_, &QTimer::timeout, this, [this] { ui_->Records->setValue(records_); });
  connect(ui_->Done, &QPushButton::clicked, this, &Download::reject);
  connect(ui_->Find, &QPushButton::clicked, this, &Download::Find_Click);
  connect(ui_->Stopper, &QPushButton::clicked, this, &Download::Stopper_Click);
  connect(ui_->Stop, &QPushButton::clicked, this, &Download::Stop_Click);
  connect(ui_->FindPanelWindow, &QPushButton::clicked, this, &Download::FindPanel_Click);
  Form_Load();
}

Download::~Download() { work_->Stop.request_stop(); }

void Download::Form_Load() {
  ui_->Records->setRange(0, kRecords);
  work_->Slots = AllSlots(ports_);
  ShowStage(Stage::Loading);
  // The rows want to be seen without scrolling.
  const int hidden = ui_->Rows->sizeHint().height() - ui_->RowsArea->minimumHeight();
  constexpr int kWidth = 860;
  ResizeOnScreen(*this, QSize(kWidth, minimumSizeHint().height() + std::max(0, hidden)));
  Timer1->start(kSearchDelay);
}

void Download::Offer(const KnownPanel& known) {
  known_ = std::make_unique<KnownPanel>(known);
  ShowStage(Stage::Loading);
}

void Download::Timer1_Timer() {
  Timer1->stop();
  try {
    globals_.Image = BuildPanelImage(configuration_);
  } catch (const ImageError& error) {
    ShowStage(Stage::NoImage);
    Show({error.what(), Say("Sorry"), MessageIcon::Exclamation});
    return;
  }
  Search();
}

void Download::Find_Click() { Search(); }

void Download::Stopper_Click() {
  work_->StopFinding.request_stop();
  ShowStage(stage_);
}

void Download::Stop_Click() {
  if (IsFinding()) return Stopper_Click();
  if (!work_->Running || !MayBeStopped()) return;
  programNext_.reset();
  RequestStop();
}

// True when nothing is lost, or the user says so. The panel waits for the next record meanwhile.
bool Download::MayBeStopped() {
  if (stage_ != Stage::Programming || work_->Stop.stop_requested()) return true;
  const QPointer<Download> self(this);
  const bool yes = prompts_.AskYesNo(this, StopQuestion());
  return yes && self;
}

void Download::RequestStop() {
  work_->StopFinding.request_stop();
  work_->Stop.request_stop();
  ShowStage(stage_);
}

void Download::FindPanel_Click() {
  FindPanel window(ports_, time_, this);
  window.exec();
}

void Download::Option1_Click(std::size_t slot) {
  if (const std::optional<Message> refusal = FirmwareGate(*work_->Slots[slot].Panel)) {
    rows_[slot]->Uncheck();
    Message named = *refusal;
    named.Detail = CaptionOf(slot).toStdString();
    Show(named);
    return;
  }
  ProgramSlot(slot);
}

void Download::ProgramNow_Click(std::size_t slot) {
  programNext_ = slot;
  if (stage_ == Stage::Searching) return Stopper_Click();
  ShowSlot(slot);
  if (stage_ == Stage::Loading) Timer1_Timer();  // nothing to wait for
}

void Download::Identify_Click(std::size_t slot) {
  if (work_->Running) return;
  BeginWork();
  const std::shared_ptr<Work> work = work_;
  const QPointer<Download> self(this);
  workedOn_ = CaptionOf(slot);
  ShowStage(Stage::Restarting);
  std::vector<PanelRestart> restart = {PanelRestart(*work->Slots[slot].Port, time_, work->Stop.get_token())};
  RunRestarts(restart, time_);
  if (!self) return;
  if (restart.front().Acknowledged()) {
    outcome_ = tr("The panel on %1 was restarted: its lights tell which one it is.").arg(workedOn_);
  } else {
    TellFailedRestarts({slot});
  }
  if (self) EndWork();
}

// Done and closing the window; Escape when nothing is under way. What is under way must end first.
void Download::reject() {
  Timer1->stop();
  if (work_->Running) {
    closing_ = true;
    RequestStop();
    return;
  }
  for (SearchSlot& slot : work_->Slots) slot.Port->Close();
  QDialog::reject();
}

// Who closes the window by hand is asked as at Stop.
void Download::closeEvent(QCloseEvent* event) {
  if (!event->spontaneous()) {
    unattended_ = true;
  } else if (work_->Running && !MayBeStopped()) {
    event->ignore();
    return;
  }
  QDialog::closeEvent(event);
}

void Download::BeginWork() {
  work_->Running = true;
  work_->StopFinding = std::stop_source();
  work_->Stop = std::stop_source();
  outcome_.clear();
}

void Download::EndWork() {
  work_->Running = false;
  for (PortRow* row : rows_) row->Uncheck();
  ShowStage(Stage::Choice);
  if (closing_) return reject();
  if (const auto next = std::exchange(programNext_, std::nullopt); next && work_->Slots[*next].Choosable())
    return Option1_Click(*next);
  const auto choosable =
      std::find_if(rows_.begin(), rows_.end(), [](const PortRow* row) { return row->Option1->isEnabled(); });
  QWidget* next = !outcome_.isEmpty()        ? ui_->Done
                  : choosable != rows_.end() ? static_cast<QWidget*>((*choosable)->Option1)
                                             : ui_->Find;
  next->setFocus(Qt::TabFocusReason);
  focused_ = time_.Now();
  if (outcome_.isEmpty() && choosable != rows_.end())
    ui_->RowsArea->ensureWidgetVisible((*choosable)->Option1);
}

void Download::Search() {
  if (work_->Running) return;
  BeginWork();
  const std::shared_ptr<Work> work = work_;
  const QPointer<Download> self(this);
  work->Slots = AllSlots(ports_);
  workedOn_.clear();
  Waiting& time = time_;
  bool answered = false;
  if (const std::optional<std::size_t> offered = OfferedSlot()) {
    ShowStage(Stage::Asking);
    const KnownPanel known = *known_;
    answered = AskKnownPanel(work->Slots[*offered], known.Settings, configuration_.ControllerType, time);
    if (self) known_.reset();
    // Meant for this panel, not for whichever the search finds there.
    if (self && !answered) programNext_.reset();
    for (SearchSlot& slot : work->Slots) {
      if (slot.Device.empty()) slot.State = SlotState::NoPort;
    }
  }
  if (answered && self && programNext_ && !work->StopFinding.stop_requested() &&
      !FirmwareGate(*work->Slots[*programNext_].Panel)) {
    work->Running = false;
    return ProgramSlot(*std::exchange(programNext_, std::nullopt), true);
  }
  if (!answered && self) {
    ShowStage(Stage::Searching);
    SearchAllPorts(work->Slots, configuration_.ControllerType, time, work->StopFinding.get_token(),
                   [self](std::size_t slot) {
                     if (self) self->ShowSlot(slot);
                   });
  }
  if (self) ShowStage(Stage::Restarting);
  const std::vector<std::size_t> failed = RestartFoundPanels(work->Slots, time, work->Stop.get_token());
  if (self) TellFailedRestarts(failed);
  if (!self) return;
  if (!outcome_.isEmpty()) {
    outcome_ += QLatin1Char(' ') + ChoiceInstruction(work->Slots, configuration_.ControllerType);
  }
  EndWork();
}

// `answering`: it has just identified itself and waits, so there is nothing to connect to.
void Download::ProgramSlot(std::size_t slot, bool answering) {
  if (work_->Running) return;
  BeginWork();
  const std::shared_ptr<Work> work = work_;
  const QPointer<Download> self(this);
  workedOn_ = CaptionOf(slot);
  rows_[slot]->Option1->setChecked(true);
  ShowStage(Stage::Connecting);
  Progress progress(this, workedOn_);
  const SearchSlot& panel = work->Slots[slot];
  const auto began = std::chrono::system_clock::now();
  const std::stop_token stop = work->Stop.get_token();
  const ProgrammingResult result =
      answering ? ProgramAnsweringPanel(*panel.Port, globals_.Image, time_, stop, progress)
                : ProgramPanel(*panel.Port, std::string(panel.Settings()), configuration_.ControllerType,
                               globals_.Image, time_, stop, progress);
  progress.TellWhatWasHeld();
  if (!self) return;
  const ProgrammingEnd end = {result, work->Stop.stop_requested(), panel.Port->WhyClosed()};
  outcome_ = OutcomeOf(end, workedOn_);
  notes_[panel.Device] = NoteOf(end, QTime::currentTime().toString(QStringLiteral("HH:mm")));
  if (finished_) {
    finished_({.Panel = *panel.Panel,
               .Port = PortName(static_cast<int>(slot) + 1).toStdString(),
               .Device = panel.Device,
               .Settings = std::string(panel.Settings()),
               .Result = result,
               .Interrupted = end.Stopped,
               .Began = began,
               .Ended = std::chrono::system_clock::now()});
  }
  EndWork();
}

// One box for all of them.
void Download::TellFailedRestarts(const std::vector<std::size_t>& slots) {
  QStringList ports;
  for (const std::size_t slot : slots) {
    notes_[work_->Slots[slot].Device] = tr("Failed to restart: switch its power off and on");
    ports.append(CaptionOf(slot));
  }
  if (ports.isEmpty()) return;
  outcome_ = FailedRestarts(ports);
  Show(RestartFailure(ports.join(QLatin1Char('\n')).toStdString()));
}

void Download::Show(const Message& message) {
  if (!unattended_) prompts_.Show(this, message);
}

std::optional<std::size_t> Download::OfferedSlot() const {
  const int number = known_ ? PortNumberOf(known_->Port) : 0;
  return number > 0 ? std::optional(static_cast<std::size_t>(number - 1)) : std::nullopt;
}

void Download::ShowStage(Stage stage) {
  stage_ = stage;
  const bool programming = stage == Stage::Connecting || stage == Stage::Programming;
  const bool stoppable = programming || stage == Stage::Restarting;
  ui_->Stages->setCurrentWidget(stage == Stage::Connecting    ? ui_->LinkFrame
                                : stage == Stage::Programming ? ui_->ProgramFrame
                                : stage == Stage::Choice      ? ui_->ClickSelectFrame
                                                              : ui_->SearchFrame);
  if (stage == Stage::Connecting) records_ = 0;
  if (programming) ui_->Records->setValue(records_);
  const bool busy = stage == Stage::Asking || stage == Stage::Restarting;
  ui_->SearchBar->setVisible(stage == Stage::Searching || busy);
  if (busy) ui_->SearchBar->setRange(0, 0);
  ui_->CommFrame->setEnabled(!programming);
  ui_->Done->setEnabled(!programming && !closing_);
  ui_->Find->setEnabled(stage == Stage::Choice);
  ui_->Stopper->setVisible(!stoppable);
  ui_->Stopper->setEnabled(IsFinding() && !work_->StopFinding.stop_requested());
  ui_->Stop->setVisible(stoppable);
  ui_->Stop->setEnabled(!work_->Stop.stop_requested());
  ui_->FindPanelWindow->setEnabled(stage == Stage::Choice || stage == Stage::NoImage);
  ShowPortHint();
  ShowSlots();
  ShowInstruction();
}

// Beside the ports, and only once it is known which of them did not open.
void Download::ShowPortHint() {
  const QString hint = stage_ == Stage::Choice ? PortHintOf(work_->Slots) : QString();
  ui_->PortHint->setText(hint);
  ui_->PortHint->setVisible(!hint.isEmpty());
}

void Download::ShowInstruction() {
  QString text;
  switch (stage_) {
    case Stage::Loading:
    case Stage::Asking:
      text = known_ ? OfferOf(*known_, CaptionOf(*OfferedSlot())) : tr("Please Wait");
      break;
    case Stage::Searching:
      text = tr("Asking every port at all line settings who is there...");
      break;
    case Stage::Restarting:
      text = workedOn_.isEmpty() ? tr("Restarting the panels that answered...")
                                 : tr("Restarting the panel on %1...").arg(workedOn_);
      break;
    case Stage::Choice:
      text = outcome_.isEmpty() ? ChoiceInstruction(work_->Slots, configuration_.ControllerType) : outcome_;
      break;
    case Stage::Connecting:
      text = tr("Connecting to the panel on %1...").arg(workedOn_);
      break;
    case Stage::Programming:
      text = tr("Programming the panel on %1. Do not disconnect it.").arg(workedOn_);
      break;
    case Stage::NoImage:
      text = tr("This configuration cannot be downloaded.");
      break;
  }
  const bool stopping = work_->Stop.stop_requested() || (IsFinding() && work_->StopFinding.stop_requested());
  if (work_->Running && stopping) text = tr("Stopping...");
  for (QLabel* label : {ui_->SearchLabel, ui_->ClickSelectLabel, ui_->LinkLabel, ui_->ProgramLabel})
    label->setText(text);
}

void Download::ShowSearchProgress(const SearchSlot& slot) {
  const auto index = static_cast<int>(slot.Setting - LineSettingsTable.data());
  ui_->SearchBar->setRange(0, static_cast<int>(kLineSettings));
  if (ui_->SearchBar->value() == index && index > 0) return;
  ui_->SearchBar->setValue(index);
  ui_->SearchBar->setFormat(SettingsLeft(index));
}

void Download::ShowSlots() {
  for (std::size_t slot = 0; slot < rows_.size(); ++slot) ShowSlot(slot);
}

void Download::ShowSlot(std::size_t index) {
  const SearchSlot& slot = work_->Slots[index];
  if (stage_ == Stage::Searching && slot.State == SlotState::Asking) ShowSearchProgress(slot);
  const bool searching = IsFinding() || stage_ == Stage::Restarting;
  const bool foundNow = stage_ == Stage::Searching && slot.Choosable();
  rows_[index]->Show(slot, {.Note = RowNoteOf(slot, searching),
                            .Ended = stage_ != Stage::Loading && !IsFinding(),
                            .Enabled = slot.Choosable() && !searching,
                            .ProgramNow = OfferedSlot() == index || foundNow,
                            .MayProgramNow = !programNext_ && !work_->StopFinding.stop_requested(),
                            .Identify = stage_ == Stage::Choice && HasTwin(work_->Slots, index)});
  if (foundNow) ui_->RowsArea->ensureWidgetVisible(rows_[index]->Option1);
}

// What was done with the panel in this window, else why it cannot be chosen, once that is known.
QString Download::RowNoteOf(const SearchSlot& slot, bool searching) const {
  const auto done = notes_.find(slot.Device);
  if (slot.Panel && done != notes_.end()) return done->second;
  const bool known = stage_ != Stage::Loading && (!searching || slot.Panel || !slot.Present());
  return known ? WhyNotChoosable(slot, configuration_.ControllerType) : QString();
}

// To the next panel that can be chosen.
void Download::MoveFocus(std::size_t from, int direction) {
  for (auto slot = static_cast<int>(from) + direction; slot >= 0 && slot < kPortSlots; slot += direction) {
    QRadioButton* const option = rows_[static_cast<std::size_t>(slot)]->Option1;
    if (!option->isEnabled()) continue;
    option->setFocus(Qt::TabFocusReason);
    ui_->RowsArea->ensureWidgetVisible(option);
    return;
  }
}

QString Download::CaptionOf(std::size_t slot) const {
  return PortCaption(work_->Slots[slot].Device, static_cast<int>(slot) + 1);
}

// A key that was meant for "Stop Finding" and comes when the search has just ended must not program a panel.
bool Download::eventFilter(QObject* watched, QEvent* event) {
  const bool soon = event->type() == QEvent::KeyPress && time_.Now() < focused_ + kReactionTime;
  if (!soon) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

// Escape stops what is under way, and is Done when nothing is.
void Download::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && work_->Running) return Stop_Click();
  QDialog::keyPressEvent(event);
}

}  // namespace qdm
