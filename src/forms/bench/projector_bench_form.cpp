#include "forms/bench/projector_bench_form.h"

#include "base/file_access.h"
#include "forms/shared/port_words.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/kind_colours.h"
#include "projector_bench/bench_line.h"
#include "serial_strings/text_parser.h"
#include "ui_projector_bench_form.h"

#include <QHeaderView>
#include <QSettings>

#include <chrono>
#include <utility>

namespace qdm {
namespace {

constexpr QLatin1String kPortSetting("SerialTest/Port");

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString Milliseconds(Microseconds time) {
  return QString::number(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

void SetColumns(QTableWidget* table, const QStringList& captions) {
  table->setColumnCount(static_cast<int>(captions.size()));
  table->setHorizontalHeaderLabels(captions);
  table->verticalHeader()->hide();
  table->horizontalHeader()->setStretchLastSection(true);
}

}  // namespace

ProjectorBench::ProjectorBench(ProjectorDefinition& projector, SerialPorts& ports, Waiting& time,
                               UserPrompts& prompts, QSettings& settings, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::ProjectorBench>()),
      projector_(projector),
      ports_(ports),
      time_(time),
      prompts_(prompts),
      settings_(settings) {
  ui_->setupUi(this);
  ConnectControls();
  Form_Load();
  resize(900, 520);
}

ProjectorBench::~ProjectorBench() = default;

void ProjectorBench::ConnectControls() {
  connect(ui_->Port, &QComboBox::activated, this, [this] { settings_.setValue(kPortSetting, PortNumber()); });
  connect(ui_->Stopper, &QPushButton::clicked, this, [this] { stop_.request_stop(); });
  connect(ui_->Done, &QPushButton::clicked, this, &ProjectorBench::accept);
  connect(ui_->Listen, &QPushButton::clicked, this, &ProjectorBench::Listen_Click);
  connect(ui_->SaveList, &QPushButton::clicked, this, &ProjectorBench::SaveList_Click);
  connect(ui_->Silent, &QCheckBox::toggled, this, &ProjectorBench::Switches_Change);
  connect(ui_->AnswerWrong, &QCheckBox::toggled, this, &ProjectorBench::Switches_Change);
  connect(ui_->Delay, &QSpinBox::valueChanged, this, &ProjectorBench::Switches_Change);
  connect(ui_->Power, &QComboBox::currentIndexChanged, this, &ProjectorBench::Switches_Change);
  connect(ui_->BusyReply, &QLineEdit::textChanged, this, &ProjectorBench::Switches_Change);
  connect(ui_->FindSettings, &QPushButton::clicked, this, &ProjectorBench::FindSettings_Click);
  connect(ui_->UseSettings, &QPushButton::clicked, this, &ProjectorBench::UseSettings_Click);
  connect(ui_->Correct, &QPushButton::clicked, this, &ProjectorBench::Correct_Click);
  connect(ui_->Findings, &QTableWidget::currentCellChanged, this, [this](int row) {
    ui_->Correct->setEnabled(row >= 0 && codes_.Findings[static_cast<std::size_t>(row)].Corrected);
  });
  connect(ui_->MeasureWarmUp, &QPushButton::clicked, this, [this] { MeasureTransition_Click(kPowerOnSlot); });
  connect(ui_->MeasureCoolDown, &QPushButton::clicked, this,
          [this] { MeasureTransition_Click(kPowerOffSlot); });
  connect(ui_->MeasureDelay, &QPushButton::clicked, this, &ProjectorBench::MeasureDelay_Click);
  connect(ui_->UseTiming, &QPushButton::clicked, this, &ProjectorBench::UseTiming_Click);
}

void ProjectorBench::Form_Load() {
  ui_->ProjectorName->setText(tr("%1 %2 at %3")
                                  .arg(ToQString(projector_.Manufacturer.Trimmed()),
                                       ToQString(projector_.Model.Trimmed()),
                                       Text(BenchLineSettings(projector_))));
  for (int number = 1; number <= kPortSlots; ++number)
    ui_->Port->addItem(PortCaption(ports_, number), number);
  const int last = settings_.value(kPortSetting).toInt();
  int chosen = last >= 1 && last <= kPortSlots ? last : 1;
  for (int number = 1; number <= kPortSlots && ports_.DeviceName(chosen).empty(); ++number) {
    if (!ports_.DeviceName(number).empty()) chosen = number;
  }
  ui_->Port->setCurrentIndex(chosen - 1);
  ui_->Stopper->setEnabled(false);
  ui_->StandInHint->setText(
      tr("Connect this computer to the panel's projector cable and press Listen. Delays are compared as "
         "milliseconds, warm-up and cool-down as seconds."));
  ui_->Delay->setSuffix(tr(" ms"));
  ui_->Power->addItems({tr("answered"), tr("ignored"), tr("answered with")});
  SetColumns(ui_->HeardList,
             {tr("ms"), tr("Gap ms"), tr("Command"), tr("Text"), tr("Bytes"), tr("Answer"), tr("Remarks")});
  ui_->SaveList->setEnabled(false);
  ui_->Checklist->setText(Text(ChecklistText(StandIn(projector_))));
  Switches_Change();
  LoadFinder();
  ShowCodes();
  LoadTiming();
}

// ---- the port, and what runs on it ----

int ProjectorBench::PortNumber() const { return ui_->Port->currentData().toInt(); }

std::unique_ptr<SerialPort> ProjectorBench::OpenPort() {
  for (int number = 1; number <= kPortSlots; ++number)
    ui_->Port->setItemText(number - 1, PortCaption(ports_, number));
  auto port = ports_.Port(PortNumber());
  port->SetSettings(BenchLineSettings(projector_));
  if (port->Open()) return port;
  SetStatus(WhyPortIsClosed(ports_, PortNumber()));
  return nullptr;
}

void ProjectorBench::Run(const QString& status, const std::function<void()>& procedure) {
  if (running_) return;
  running_ = true;
  stop_ = std::stop_source();
  SetStatus(status);
  for (QWidget* control :
       std::initializer_list<QWidget*>{ui_->Port, ui_->Listen, ui_->FindSettings, ui_->MeasureWarmUp,
                                       ui_->MeasureCoolDown, ui_->MeasureDelay})
    control->setEnabled(false);
  ui_->Stopper->setEnabled(true);
  procedure();
  for (QWidget* control :
       std::initializer_list<QWidget*>{ui_->Port, ui_->Listen, ui_->FindSettings, ui_->MeasureWarmUp,
                                       ui_->MeasureCoolDown, ui_->MeasureDelay})
    control->setEnabled(true);
  ui_->Stopper->setEnabled(false);
  running_ = false;
  if (closing_) QDialog::done(*closing_);
}

void ProjectorBench::SetStatus(const QString& text) { ui_->Status->setText(text); }

void ProjectorBench::done(int result) {
  stop_.request_stop();
  if (running_) {
    closing_ = result;
  } else {
    QDialog::done(result);
  }
}

// ---- the stand-in ----

void ProjectorBench::Switches_Change() {
  ui_->BusyReply->setEnabled(ui_->Power->currentIndex() == static_cast<int>(WhileBusy::AnswerBusy));
  if (!standIn_) return;
  StandInSwitches& switches = standIn_->Switches;
  switches.Silent = ui_->Silent->isChecked();
  switches.AnswerWrong = ui_->AnswerWrong->isChecked();
  switches.Delay = std::chrono::milliseconds(ui_->Delay->value());
  switches.Power = static_cast<WhileBusy>(ui_->Power->currentIndex());
  const ParsedText busy = ParseSerialText(ui_->BusyReply->text().toStdU16String());
  if (busy.Readings.empty()) return;
  const SerialString& reply = busy.Readings.front().String;
  switches.BusyReply.assign(reply.Values.begin(),
                            reply.Values.begin() + static_cast<std::ptrdiff_t>(reply.BytesInUse()));
}

void ProjectorBench::Listen_Click() {
  const auto port = OpenPort();
  if (!port) return;
  standIn_ = std::make_unique<StandIn>(projector_);
  Switches_Change();
  ui_->HeardList->setRowCount(0);
  listenedFrom_ = time_.Now();
  ShowChecklist();
  Run(tr("Listening at %1...").arg(Text(BenchLineSettings(projector_))), [&] {
    ServeStandIn(*standIn_, *port, time_, stop_.get_token(), [this] { ShowHeard(); });
    SetStatus(port->IsOpen() ? tr("No longer listening.") : WhyPortIsClosed(ports_, PortNumber()));
  });
}

void ProjectorBench::ShowChecklist() { ui_->Checklist->setText(Text(ChecklistText(*standIn_))); }

void ProjectorBench::ShowHeard() {
  QTableWidget* list = ui_->HeardList;
  const auto& heard = standIn_->Heard();
  const QColor red = ErrorColourOn(palette().color(QPalette::Base));
  for (int row = list->rowCount(); row < static_cast<int>(heard.size()); ++row) {
    const HeardCommand& one = heard[static_cast<std::size_t>(row)];
    QString name = Text(NameOf(one));
    if (one.Level) name = tr("%1, level %2").arg(name).arg(*one.Level);
    const QStringList cells = {Milliseconds(one.Begin - listenedFrom_),
                               one.Gap ? Milliseconds(*one.Gap) : QStringLiteral("-"),
                               name,
                               Text(ReadableText(one.Data)),
                               Text(HexText(one.Data)),
                               Text(HexText(one.Answer)),
                               one.BytesTooClose ? tr("Bytes too close together") : Text(one.Remark)};
    list->insertRow(row);
    for (int column = 0; column < cells.size(); ++column) {
      auto* cell = new QTableWidgetItem(cells[column]);
      const bool wrong =
          (column == 1 && one.TooSoon) || (column == 2 && !one.Command) || (column == 6 && one.BytesTooClose);
      if (wrong) cell->setForeground(red);
      if (column == 1 && one.TooSoon)
        cell->setToolTip(
            tr("The definition asks for %1 ms between commands").arg(projector_.InterCommandDelay));
      list->setItem(row, column, cell);
    }
  }
  list->resizeColumnsToContents();
  list->scrollToBottom();
  ui_->SaveList->setEnabled(list->rowCount() > 0);
  ShowChecklist();
}

void ProjectorBench::SaveList_Click() {
  const auto file = prompts_.SaveFile(this, "Text (*.TXT)|*.TXT");
  if (!file) return;
  const std::string text = ListText(*standIn_, listenedFrom_);
  try {
    WriteFileSafely(ToPath(*file), ByteView(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    SetStatus(tr("Saved %1").arg(*file));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
}

}  // namespace qdm
