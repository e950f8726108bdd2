#include "forms/bench/serial_test_form.h"

#include "forms/bench/bench_settings.h"
#include "forms/controls/option_keys.h"
#include "forms/shared/fit_to_screen.h"
#include "forms/shared/globals.h"
#include "forms/shared/port_words.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/kind_colours.h"
#include "forms/strings/serial_string_display.h"
#include "forms/strings/string_clipboard.h"
#include "projectors/definition_setup.h"
#include "projectors/projector_volume.h"
#include "serial_strings/serial_string.h"
#include "ui_serial_test_form.h"

#include <QButtonGroup>
#include <QFontDatabase>
#include <QHeaderView>
#include <QMap>
#include <QSettings>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

constexpr std::size_t kCellsInRow = 16;
constexpr QLatin1String kReplyTimeSetting("SerialTest/ReplyTime");  // ms
constexpr int kTraceInterval = 10;                                  // ms
enum TraceColumn { kTime, kDirection, kBytes, kCharacters };

int WholeMilliseconds(Microseconds time) {
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

QString SlotName(std::size_t slot) { return Said(CommandSlotNames[slot]); }

int FirstPresent(const SerialPorts& ports) {
  for (int number = 1; number <= kPortSlots; ++number) {
    if (!ports.DeviceName(number).empty()) return number;
  }
  return 1;
}

}  // namespace

SerialTestForm::SerialTestForm(Globals& globals, SerialPorts& ports, Waiting& time, UserPrompts& prompts,
                               QSettings& settings, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::SerialTestForm>()),
      globals_(globals),
      ports_(ports),
      time_(time),
      settings_(settings),
      Timer1(new QTimer(this)),
      TraceTimer(new QTimer(this)),
      Option2(new QButtonGroup(this)),
      slot_(static_cast<std::size_t>(globals.CurrentSlot)),
      lineSettings_(TrialLineSettings(globals.CurrentProjector)),
      format_(VolumeFormatOf(globals.CurrentProjector)),
      variablePosition_(VariableBytePositionOf(Slot())),
      level_(FirstTrialLevel(format_)),
      trace_(time) {
  ui_->setupUi(this);
  Timer1->setObjectName(QStringLiteral("Timer1"));
  TraceTimer->setObjectName(QStringLiteral("TraceTimer"));
  ui_->SerialStringDisplay1->Bind(globals, prompts);
  ui_->SerialStringDisplay1->DisableMenu();
  ui_->SerialStringDisplay2->Bind(globals, prompts);
  ui_->SerialStringDisplay2->DisableMenu();
  int kind = 0;
  for (QRadioButton* option : {ui_->Option2_0, ui_->Option2_1, ui_->Option2_2, ui_->Option2_3})
    Option2->addButton(option, kind++);
  MakeIgnoreCells();
  ConnectControls();
  Form_Load();
}

SerialTestForm::~SerialTestForm() = default;

void SerialTestForm::MakeIgnoreCells() {
  QWidget* before = ui_->Option2_3;
  for (std::size_t i = 0; i < Ignore.size(); ++i) {
    auto* cell = new QToolButton(ui_->IgnoreFrame);
    cell->setObjectName(QStringLiteral("Ignore_%1").arg(i));
    cell->setCheckable(true);
    cell->setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy = cell->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    cell->setSizePolicy(policy);
    cell->setText(QStringLiteral("00"));
    ui_->Cells->addWidget(cell, static_cast<int>(i / kCellsInRow), static_cast<int>(i % kCellsInRow));
    Ignore[i] = cell;
    setTabOrder(before, cell);
    before = cell;
    connect(cell, &QToolButton::clicked, this, [this, i] { Ignore_Click(i); });
  }
  setTabOrder(before, ui_->Copy);
}

void SerialTestForm::ConnectControls() {
  connect(ui_->Port, &QComboBox::activated, this, &SerialTestForm::Port_Click);
  connect(ui_->Send, &QPushButton::clicked, this, &SerialTestForm::Send_Click);
  connect(ui_->Copy, &QPushButton::clicked, this, &SerialTestForm::Copy_Click);
  connect(ui_->UseAsReply, &QPushButton::clicked, this, &SerialTestForm::UseAsReply_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &SerialTestForm::accept);
  connect(ui_->Bench, &QPushButton::clicked, this, &SerialTestForm::Bench_Click);
  connect(Option2, &QButtonGroup::idClicked, this, &SerialTestForm::Option2_Click);
  FollowKeysInGroupsOf(this);
  connect(Timer1, &QTimer::timeout, this, &SerialTestForm::Timer1_Timer);
  connect(TraceTimer, &QTimer::timeout, this, &SerialTestForm::TraceTimer_Timer);
  connect(ui_->ReplyTime, &QDoubleSpinBox::valueChanged, this, &SerialTestForm::ReplyTime_Change);
  connect(ui_->Up, &QPushButton::clicked, this, [this] { Level_Click(LevelUp(format_, level_)); });
  connect(ui_->Down, &QPushButton::clicked, this, [this] { Level_Click(LevelDown(format_, level_)); });
  connect(ui_->PowerUp, &QPushButton::clicked, this, [this] { Level_Click(format_.FixedStartLevel); });
}

void SerialTestForm::Form_Load() {
  setWindowTitle(tr("Serial test: %1").arg(SlotName(slot_)));
  ui_->SlotName->setText(SlotName(slot_));
  ui_->SerialStringDisplay1->Display(static_cast<int>(slot_));
  ui_->LineSettings->setText(QString::fromStdString(lineSettings_));
  ui_->VolumeFrame->setVisible(SendsLevel());
  ui_->Bench->setVisible(false);
  ui_->PowerUp->setEnabled(!format_.UsePowerDown);
  ShowLevel();
  ForgetReply();
  for (int number = 1; number <= kPortSlots; ++number) ui_->Port->addItem({}, number);
  const int replyTime = settings_.value(kReplyTimeSetting, WholeMilliseconds(kTrialReplyTime)).toInt();
  ui_->ReplyTime->setRange(WholeMilliseconds(kShortestReplyTime) / 1000.0,
                           WholeMilliseconds(kLongestReplyTime) / 1000.0);
  ui_->ReplyTime->setValue(replyTime / 1000.0);
  ReplyTime_Change();
  QPalette red = ui_->RefusedSettings->palette();
  red.setColor(QPalette::WindowText, ErrorColourOn(red.color(QPalette::Window)));
  ui_->RefusedSettings->setPalette(red);
  ui_->Trace->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  ui_->Trace->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  const int last = settings_.value(kPortSetting).toInt();
  ui_->Port->setCurrentIndex((last >= 1 && last <= kPortSlots ? last : FirstPresent(ports_)) - 1);
  OpenPort();
  FitToScreen(*this, *ui_->Scroll);
  ui_->Send->setFocus();
}

// ---- the port ----

int SerialTestForm::PortNumber() const { return ui_->Port->currentData().toInt(); }

// Anew each time: an adapter may have been plugged in since.
void SerialTestForm::FillPorts() {
  for (int number = 1; number <= kPortSlots; ++number)
    ui_->Port->setItemText(number - 1, PortCaption(ports_, number));
}

void SerialTestForm::OpenPort() {
  FillPorts();
  port_ = std::make_unique<TracedPort>(ports_.Port(PortNumber()), trace_);
  port_->SetSettings(TrialPortSettings(globals_.CurrentProjector));
  port_->Open();
  TraceTimer->start(kTraceInterval);
  ShowPort();
  ShowRefused();
}

void SerialTestForm::ShowRefused() {
  const QMap<LineParameter, QString> names = {{LineParameter::Speed, tr("speed")},
                                              {LineParameter::Parity, tr("parity")},
                                              {LineParameter::DataBits, tr("data bits")},
                                              {LineParameter::StopBits, tr("stop bits")}};
  QStringList refused;
  for (const LineParameter setting : port_->RefusedSettings()) refused << names[setting];
  ui_->RefusedSettings->setText(
      refused.isEmpty() ? QString() : tr("The port refuses: %1").arg(refused.join(QStringLiteral(", "))));
}

void SerialTestForm::ShowPort() {
  SetStatus(port_->IsOpen() ? tr("%1 is open.").arg(PortCaption(ports_, PortNumber()))
                            : WhyPortIsClosed(ports_, PortNumber()));
}

void SerialTestForm::SetBench(std::function<void(QWidget* parent)> bench) {
  bench_ = std::move(bench);
  ui_->Bench->setVisible(bench_ != nullptr);
}

// The bench wants the port, and may find other line settings.
void SerialTestForm::Bench_Click() {
  port_->Close();
  bench_(this);
  lineSettings_ = TrialLineSettings(globals_.CurrentProjector);
  ui_->LineSettings->setText(QString::fromStdString(lineSettings_));
  OpenPort();
}

void SerialTestForm::Port_Click() {
  settings_.setValue(kPortSetting, PortNumber());
  OpenPort();
}

// ---- sending ----

const SerialString& SerialTestForm::Slot() const { return globals_.CurrentProjector.Strings.at(slot_); }

bool SerialTestForm::SendsLevel() const {
  return variablePosition_ >= 1 && variablePosition_ <= static_cast<int>(Slot().BytesInUse());
}

void SerialTestForm::Send_Click() {
  const std::string_view error = VolumeFormatError(format_);
  if (SendsLevel() && !error.empty()) {
    return SetStatus(tr("Not sent, the volume format is wrong: %1.").arg(Said(error)));
  }
  if (!port_->IsOpen()) OpenPort();
  SetBusy(true);
  ForgetReply();
  port_->ReadAll();
  trace_.Restart();
  StringTrial trial{.String = Slot(),
                    .VariablePosition = variablePosition_,
                    .Level = {},
                    .InterByteDelay = std::chrono::milliseconds(globals_.CurrentProjector.InterByteDelay)};
  if (SendsLevel()) trial.Level = LevelBytes(format_, level_);
  SendString(*port_, trial, time_, stop_.get_token());
  if (stop_.stop_requested()) return;
  ShowTrace();
  if (port_->IsOpen()) {
    SetStatus(tr("Waiting for the reply..."));
  } else {
    ShowPort();
  }
  Timer1->start();
}

void SerialTestForm::Timer1_Timer() {
  Timer1->stop();
  SetBusy(false);
  if (!port_->IsOpen()) return ShowPort();
  const std::size_t waiting = port_->BytesWaiting();
  ShowTrace();
  const auto reply = TakeReply(*port_, static_cast<ByteKind>(Option2->checkedId()));
  if (reply) {
    globals_.ReceivedReply = *reply;
    ShowReply();
    SetStatus(reply->Count == 1 ? tr("Reply of 1 byte.") : tr("Reply of %1 bytes.").arg(reply->Count));
  } else {
    SetStatus(waiting == 0 ? tr("No reply.")
                           : tr("The reply has %1 bytes: more than a string can hold.").arg(waiting));
  }
}

void SerialTestForm::ReplyTime_Change() {
  const int replyTime = qRound(ui_->ReplyTime->value() * 1000);
  Timer1->setInterval(replyTime);
  settings_.setValue(kReplyTimeSetting, replyTime);
}

// ---- the trace ----

void SerialTestForm::TraceTimer_Timer() {
  port_->Poll();
  ShowTrace();
}

void SerialTestForm::ShowTrace() {
  if (trace_.Total() == traced_) return;
  traced_ = trace_.Total();
  ui_->Trace->clear();
  for (const TraceRun& run : trace_.Runs()) {
    const TraceWords words = WordsOf(run);
    auto* row = new QTreeWidgetItem(ui_->Trace);
    row->setText(kTime, QString::fromStdString(words.Time));
    row->setText(kDirection, run.Direction == LineDirection::Sent ? tr("sent") : tr("received"));
    row->setText(kBytes, QString::fromStdString(words.Bytes));
    row->setText(kCharacters, QString::fromStdString(words.Characters));
  }
  ui_->Trace->scrollToBottom();
}

void SerialTestForm::SetBusy(bool busy) {
  if (busy) sendHadFocus_ = ui_->Send->hasFocus();
  ui_->Send->setEnabled(!busy);
  ui_->Port->setEnabled(!busy);
  ui_->Bench->setEnabled(!busy);
  if (busy) SetStatus(tr("Sending..."));
  if (!busy && sendHadFocus_) ui_->Send->setFocus();
}

void SerialTestForm::SetStatus(const QString& text) { ui_->Status->setText(text); }

void SerialTestForm::done(int result) {
  stop_.request_stop();
  Timer1->stop();
  TraceTimer->stop();
  port_->Close();
  QDialog::done(result);
}

// ---- the volume level ----

void SerialTestForm::Level_Click(std::int16_t level) {
  level_ = level;
  ShowLevel();
}

void SerialTestForm::ShowLevel() {
  const VolumePreview preview = PreviewLevel(format_, level_);
  const std::string_view error = VolumeFormatError(format_);
  ui_->DemoText->setText(QString::fromStdString(preview.DemoText));
  ui_->Label4->setText(error.empty() ? QString::fromStdString(preview.Label4) : Said(error));
}

// ---- the reply ----

void SerialTestForm::ForgetReply() {
  globals_.ReceivedReply.Count = 0;
  ShowReply();
}

void SerialTestForm::ShowReply() {
  const SerialString& reply = globals_.ReceivedReply;
  const std::size_t count = reply.BytesInUse();
  ui_->SerialStringDisplay2->FillWithReceiveString();
  for (std::size_t i = 0; i < Ignore.size(); ++i) ShowCell(i, i < count);
  ui_->Copy->setEnabled(count > 0);
  const auto replySlot = ReplySlotOf(slot_);
  ui_->UseAsReply->setEnabled(count > 0 && replySlot);
  ui_->UseAsReply->setToolTip(replySlot ? tr("Stores it as \"%1\"").arg(SlotName(*replySlot))
                                        : tr("No reply is expected after \"%1\"").arg(SlotName(slot_)));
}

// An ignored byte is struck out and has the colour of its kind.
void SerialTestForm::ShowCell(std::size_t index, bool inReply) {
  QToolButton* cell = Ignore[index];
  const std::uint8_t kind = globals_.ReceivedReply.Kinds[index];
  const bool ignored = kind == static_cast<std::uint8_t>(ByteKind::IGN);
  const QString byte = QString::fromStdString(HexByte(globals_.ReceivedReply.Values[index]));
  cell->setVisible(inReply);
  cell->setChecked(ignored);
  cell->setText(byte);
  cell->setToolTip(tr("Byte %1: ignore it").arg(index + 1));
  cell->setAccessibleName(tr("Byte %1, %2 hexadecimal: ignore it").arg(index + 1).arg(byte));
  QFont font = this->font();
  font.setStrikeOut(ignored);
  cell->setFont(font);
  QPalette colours = palette();
  if (ignored) {
    colours.setColor(QPalette::ButtonText, KindColourOn(kind, colours.color(QPalette::Button)));
  }
  cell->setPalette(colours);
}

void SerialTestForm::Option2_Click() {
  SerialString& reply = globals_.ReceivedReply;
  for (std::size_t i = 0; i < reply.BytesInUse(); ++i) {
    if (!Ignore[i]->isChecked()) reply.Kinds[i] = static_cast<std::uint8_t>(Option2->checkedId());
  }
  ShowReply();
}

void SerialTestForm::Ignore_Click(std::size_t index) {
  const int kind = Ignore[index]->isChecked() ? static_cast<int>(ByteKind::IGN) : Option2->checkedId();
  globals_.ReceivedReply.Kinds[index] = static_cast<std::uint8_t>(kind);
  ShowReply();
}

void SerialTestForm::Copy_Click() {
  CopyString(globals_, ReplyToKeep(globals_.ReceivedReply));
  SetStatus(tr("The reply has been copied."));
}

void SerialTestForm::UseAsReply_Click() {
  TakeAsExpectedReply(globals_.CurrentProjector, slot_, ReplyToKeep(globals_.ReceivedReply));
  SetStatus(tr("The reply is now \"%1\".").arg(SlotName(*ReplySlotOf(slot_))));
}

}  // namespace qdm
