#include "forms/download/download_form.h"

#include "config/panel_configuration.h"
#include "forms/download/find_panel_form.h"
#include "forms/shared/globals.h"
#include "forms/shared/port_words.h"
#include "forms/shared/user_prompts.h"
#include "panels/frame.h"
#include "ui_download_form.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QRadioButton>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <stop_token>
#include <vector>

namespace qdm {
namespace {

constexpr int kStartDelay = 500;       // ms; lets the window be seen first
constexpr int kRows = kPortSlots / 2;  // in two columns of slots
constexpr int kColumnsOfSlot = 4;      // option, device, status, gap
constexpr int kGap = 24;

QString TypeName(const PanelType* type) {
  return type != nullptr ? QLatin1String(type->Caption) : QStringLiteral("unknown model");
}

bool IsEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

QString PortName(std::size_t slot) { return QStringLiteral("COM%1").arg(slot + 1); }

}  // namespace

// What a procedure works on. It keeps its own hold, so that it can end in peace when the form is gone.
struct Download::Work {
  std::vector<SearchSlot> Slots;
  std::stop_source Stop;
  bool Running = false;
};

// Shows a programming in the form as long as there is one.
class Download::Progress : public ProgrammingObserver {
 public:
  explicit Progress(Download* form) : form_(form) {}

  void Connecting() override {
    if (form_) form_->ShowStage(Stage::Connecting);
  }
  void RecordsAcknowledged(int records) override {
    if (!form_) return;
    if (form_->stage_ != Stage::Programming) form_->ShowStage(Stage::Programming);
    form_->ui_->Records->setValue(records);
  }
  void Tell(const Message& message) override {
    if (form_) form_->prompts_.Show(form_, message);
  }

 private:
  QPointer<Download> form_;
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
      Timer1(new QTimer(this)) {
  ui_->setupUi(this);
  Timer1->setObjectName(QStringLiteral("Timer1"));
  Timer1->setSingleShot(true);
  for (std::size_t slot = 0; slot < rows_.size(); ++slot) MakeRow(slot);
  connect(Timer1, &QTimer::timeout, this, &Download::Timer1_Timer);
  connect(ui_->Done, &QPushButton::clicked, this, &Download::reject);
  connect(ui_->Find, &QPushButton::clicked, this, &Download::Find_Click);
  connect(ui_->Stopper, &QPushButton::clicked, this, &Download::Stopper_Click);
  connect(ui_->FindPanelWindow, &QPushButton::clicked, this, &Download::FindPanel_Click);
  Form_Load();
}

Download::~Download() { work_->Stop.request_stop(); }

void Download::MakeRow(std::size_t slot) {
  SlotRow& row = rows_[slot];
  row.Option1 = new QRadioButton(PortName(slot), ui_->CommFrame);
  row.Option1->setObjectName(QStringLiteral("Option1_%1").arg(slot));
  // A click programs the panel, so the arrow keys must only move the focus.
  row.Option1->setAutoExclusive(false);
  row.Option1->installEventFilter(this);
  row.Device = new QLabel(ui_->CommFrame);
  row.Device->setTextFormat(Qt::PlainText);
  row.Device->setForegroundRole(QPalette::PlaceholderText);
  row.Label1 = new QLabel(ui_->CommFrame);
  row.Label1->setObjectName(QStringLiteral("Label1_%1").arg(slot));
  row.Label1->setTextFormat(Qt::PlainText);
  row.Label1->setMargin(2);
  row.Label1->installEventFilter(this);
  row.Label1->setMinimumWidth(
      row.Label1->fontMetrics().horizontalAdvance(QStringLiteral("Search 115K2,none ")));
  const int line = static_cast<int>(slot) % kRows;
  const int column = static_cast<int>(slot) / kRows * kColumnsOfSlot;
  ui_->SlotGrid->addWidget(row.Option1, line, column);
  ui_->SlotGrid->addWidget(row.Device, line, column + 1);
  ui_->SlotGrid->addWidget(row.Label1, line, column + 2);
  connect(row.Option1, &QRadioButton::clicked, this, [this, slot] { Option1_Click(slot); });
}

void Download::Form_Load() {
  ui_->SlotGrid->setColumnMinimumWidth(kColumnsOfSlot - 1, kGap);
  for (const int column : {1, 2, kColumnsOfSlot + 1, kColumnsOfSlot + 2})
    ui_->SlotGrid->setColumnStretch(column, 1);
  ui_->Records->setRange(0, kRecords);
  work_->Slots = AllSlots(ports_);
  ShowStage(Stage::Loading);
  Timer1->start(kStartDelay);
}

void Download::Timer1_Timer() {
  Timer1->stop();
  try {
    globals_.Image = BuildPanelImage(configuration_);
  } catch (const ImageError& error) {
    ShowStage(Stage::NoImage);
    prompts_.Show(this, {error.what(), "Sorry", MessageIcon::Exclamation});
    return;
  }
  Search();
}

void Download::Find_Click() { Search(); }

void Download::Stopper_Click() {
  work_->Stop.request_stop();
  ShowInstruction();
}

void Download::FindPanel_Click() {
  FindPanel window(ports_, time_, this);
  window.exec();
}

void Download::Option1_Click(std::size_t slot) {
  if (const std::optional<Message> refusal = FirmwareGate(*work_->Slots[slot].Panel)) {
    rows_[slot].Option1->setChecked(false);
    prompts_.Show(this, *refusal);
    return;
  }
  ProgramSlot(slot);
}

// Esc, Done and closing the window. What is under way must end first.
void Download::reject() {
  Timer1->stop();
  if (work_->Running) {
    closing_ = true;
    work_->Stop.request_stop();
    ShowStage(stage_);
    return;
  }
  for (SearchSlot& slot : work_->Slots) slot.Port->Close();
  QDialog::reject();
}

void Download::BeginWork() {
  work_->Running = true;
  work_->Stop = std::stop_source();
}

void Download::EndWork() {
  work_->Running = false;
  for (const SlotRow& row : rows_) row.Option1->setChecked(false);
  ShowStage(Stage::Choice);
  if (closing_) return reject();
  const auto choosable =
      std::find_if(rows_.begin(), rows_.end(), [](const SlotRow& row) { return row.Option1->isEnabled(); });
  QWidget* next = !outcome_.isEmpty()        ? ui_->Done
                  : choosable != rows_.end() ? static_cast<QWidget*>(choosable->Option1)
                                             : ui_->Find;
  next->setFocus(Qt::TabFocusReason);
}

void Download::Search() {
  if (work_->Running) return;
  BeginWork();
  outcome_.clear();
  const std::shared_ptr<Work> work = work_;
  const QPointer<Download> self(this);
  work->Slots = AllSlots(ports_);
  Waiting& time = time_;
  ShowStage(Stage::Searching);
  SearchAllPorts(work->Slots, configuration_.ControllerType, time, work->Stop.get_token(),
                 [self](std::size_t slot) {
                   if (self) self->ShowSlot(slot);
                 });
  if (self) ShowStage(Stage::Restarting);
  for (const Message& message : RestartFoundPanels(work->Slots, time)) {
    if (self) prompts_.Show(this, message);
  }
  if (self) EndWork();
}

void Download::ProgramSlot(std::size_t slot) {
  if (work_->Running) return;
  BeginWork();
  const std::shared_ptr<Work> work = work_;
  const QPointer<Download> self(this);
  programmedPort_ = PortName(slot);
  rows_[slot].Option1->setChecked(true);
  ShowStage(Stage::Connecting);
  Progress progress(this);
  const SearchSlot& panel = work->Slots[slot];
  const ProgrammingResult result =
      ProgramPanel(*panel.Port, std::string(panel.Settings()), configuration_.ControllerType, globals_.Image,
                   time_, work->Stop.get_token(), progress);
  if (!self) return;
  outcome_ =
      result.Programmed
          ? QStringLiteral("The panel on %1 has been programmed. Press Done, or click on another panel.")
          : QStringLiteral("The panel on %1 was not programmed. Click on it to try again.");
  outcome_ = outcome_.arg(programmedPort_);
  EndWork();
}

void Download::ShowStage(Stage stage) {
  stage_ = stage;
  const bool programming = stage == Stage::Connecting || stage == Stage::Programming;
  const bool searching = stage == Stage::Searching || stage == Stage::Restarting;
  ui_->Stages->setCurrentWidget(stage == Stage::Connecting    ? ui_->LinkFrame
                                : stage == Stage::Programming ? ui_->ProgramFrame
                                : stage == Stage::Choice      ? ui_->ClickSelectFrame
                                                              : ui_->SearchFrame);
  if (stage == Stage::Connecting) ui_->Records->setValue(0);
  ui_->SearchBar->setVisible(searching);
  ui_->CommFrame->setEnabled(!programming);
  ui_->Done->setEnabled(!programming && !closing_);
  ui_->Find->setEnabled(stage == Stage::Choice);
  ui_->Stopper->setEnabled(stage == Stage::Searching && !closing_);
  ui_->FindPanelWindow->setEnabled(stage == Stage::Choice || stage == Stage::NoImage);
  ShowPortHint();
  ShowInstruction();
  ShowSlots();
}

// Beside the ports, and only once it is known which of them did not open.
void Download::ShowPortHint() {
  std::vector<int> closed;
  for (std::size_t slot = 0; slot < work_->Slots.size(); ++slot) {
    if (!work_->Slots[slot].Present()) closed.push_back(static_cast<int>(slot) + 1);
  }
  const QString hint = stage_ == Stage::Choice ? HintOnClosedPorts(ports_, closed) : QString();
  ui_->PortHint->setText(hint);
  ui_->PortHint->setVisible(!hint.isEmpty());
}

void Download::ShowInstruction() {
  QString text;
  switch (stage_) {
    case Stage::Loading:
      text = QStringLiteral("Please Wait");
      break;
    case Stage::Searching:
      text = QStringLiteral("Asking every port at all line settings who is there...");
      break;
    case Stage::Restarting:
      text = QStringLiteral("Restarting the panels that answered...");
      break;
    case Stage::Choice:
      text = outcome_.isEmpty() ? ChoiceInstruction() : outcome_;
      break;
    case Stage::Connecting:
      text = QStringLiteral("Connecting to the panel on %1...").arg(programmedPort_);
      break;
    case Stage::Programming:
      text = QStringLiteral("Programming the panel on %1. Do not disconnect it.").arg(programmedPort_);
      break;
    case Stage::NoImage:
      text = QStringLiteral("This configuration cannot be downloaded.");
      break;
  }
  if (work_->Running && work_->Stop.stop_requested()) text = QStringLiteral("Stopping...");
  for (QLabel* label : {ui_->SearchLabel, ui_->ClickSelectLabel, ui_->LinkLabel, ui_->ProgramLabel})
    label->setText(text);
}

QString Download::ChoiceInstruction() const {
  const std::vector<SearchSlot>& slots = work_->Slots;
  const QString wanted = TypeName(PanelTypeOf(configuration_.ControllerType));
  if (std::any_of(slots.begin(), slots.end(), [](const SearchSlot& slot) { return slot.Choosable(); })) {
    return QStringLiteral("Click on the panel to program.");
  }
  if (std::any_of(slots.begin(), slots.end(),
                  [](const SearchSlot& slot) { return slot.Panel.has_value(); })) {
    return QStringLiteral("No %1 was found. What answered is of another type than the configuration.")
        .arg(wanted);
  }
  if (std::none_of(slots.begin(), slots.end(), [](const SearchSlot& slot) { return slot.Present(); })) {
    return ui_->PortHint->text().isEmpty()
               ? QStringLiteral("No port could be opened. Plug the adapter in, then press Find.")
               : QStringLiteral("No port could be opened. The line below the ports says why.");
  }
  return QStringLiteral("No %1 was found. Check that it has power and is connected, then press Find.")
      .arg(wanted);
}

void Download::ShowSlots() {
  for (std::size_t slot = 0; slot < rows_.size(); ++slot) ShowSlot(slot);
}

void Download::ShowSlot(std::size_t index) {
  const SearchSlot& slot = work_->Slots[index];
  const SlotRow& row = rows_[index];
  const int number = static_cast<int>(index) + 1;
  row.Device->setText(OwnName(ports_, number));
  row.Label1->setText(QString::fromStdString(StatusText(slot)));
  row.Option1->setEnabled(slot.Choosable() && stage_ != Stage::Searching && stage_ != Stage::Restarting);
  row.Option1->setAccessibleName(QStringLiteral("%1, %2").arg(PortName(index), row.Label1->text()));
  row.Label1->setAutoFillBackground(slot.Choosable());
  row.Label1->setBackgroundRole(QPalette::Highlight);
  row.Label1->setForegroundRole(slot.Choosable() ? QPalette::HighlightedText
                                : slot.Panel     ? QPalette::WindowText
                                                 : QPalette::PlaceholderText);
  const QString why = WhyNotChoosable(slot, number);
  row.Option1->setToolTip(why);
  row.Label1->setToolTip(why);
}

QString Download::WhyNotChoosable(const SearchSlot& slot, int number) const {
  if (stage_ != Stage::Choice || slot.Choosable()) return {};
  if (slot.Panel) {
    return QStringLiteral("This is a %1, the configuration is for a %2.")
        .arg(TypeName(slot.Panel->Type()), TypeName(PanelTypeOf(configuration_.ControllerType)));
  }
  if (slot.Present()) return QStringLiteral("Nobody answered at any line setting.");
  return WhyPortIsClosed(ports_, number);
}

// Escape is Done, so it waits like Done while a panel is being programmed.
void Download::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !ui_->Done->isEnabled()) return;
  QDialog::keyPressEvent(event);
}

// Enter on an option button is a click on it, and so is a click on the panel's name.
bool Download::eventFilter(QObject* watched, QEvent* event) {
  const auto row = std::find_if(rows_.begin(), rows_.end(), [watched](const SlotRow& candidate) {
    return candidate.Option1 == watched || candidate.Label1 == watched;
  });
  if (row == rows_.end()) return QDialog::eventFilter(watched, event);
  const bool enter = event->type() == QEvent::KeyPress && IsEnter(static_cast<QKeyEvent*>(event)->key());
  const bool nameClicked = watched == row->Label1 && event->type() == QEvent::MouseButtonRelease &&
                           static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (!enter && !nameClicked) return false;
  row->Option1->click();
  return true;
}

}  // namespace qdm
