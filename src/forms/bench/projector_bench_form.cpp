#include "forms/bench/projector_bench_form.h"

#include "forms/bench/bench_settings.h"
#include "forms/bench/bench_table.h"
#include "forms/controls/screen_fit.h"
#include "forms/shared/port_words.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/kind_colours.h"
#include "projector_bench/bench_line.h"
#include "ui_projector_bench_form.h"

#include <QSettings>
#include <QTabBar>

#include <algorithm>
#include <array>
#include <cstddef>

namespace qdm {
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
  ui_->Pages->tabBar()->setFocus();
  resize(1120, 560);
  FitToScreen(this);
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
  connect(ui_->Command, &QComboBox::currentIndexChanged, this, &ProjectorBench::Question_Change);
  connect(ui_->Query, &QLineEdit::textChanged, this, &ProjectorBench::Question_Change);
  connect(ui_->FinderGrid, &QTableWidget::currentItemChanged, this, &ProjectorBench::ShowFoundSettings);
  connect(ui_->FindSettings, &QPushButton::clicked, this, &ProjectorBench::FindSettings_Click);
  connect(ui_->UseSettings, &QPushButton::clicked, this, &ProjectorBench::UseSettings_Click);
  connect(ui_->Correct, &QPushButton::clicked, this, &ProjectorBench::Correct_Click);
  connect(ui_->ComputeSum, &QPushButton::clicked, this, &ProjectorBench::ComputeSum_Click);
  connect(ui_->Findings, &QTableWidget::currentCellChanged, this, &ProjectorBench::ShowCorrections);
  connect(ui_->TimingQuery, &QLineEdit::textChanged, this, &ProjectorBench::TimingQuery_Change);
  connect(ui_->TimingReply, &QLineEdit::textChanged, this, &ProjectorBench::TimingQuery_Change);
  connect(ui_->Timings, &QTableWidget::currentCellChanged, this, [this](int row) {
    ui_->UseTiming->setEnabled(row >= 0 && measured_[static_cast<std::size_t>(row)]);
  });
  connect(ui_->MeasureWarmUp, &QPushButton::clicked, this, [this] { MeasureTransition_Click(kPowerOnSlot); });
  connect(ui_->MeasureCoolDown, &QPushButton::clicked, this,
          [this] { MeasureTransition_Click(kPowerOffSlot); });
  connect(ui_->MeasureDelay, &QPushButton::clicked, this, &ProjectorBench::MeasureDelay_Click);
  connect(ui_->UseTiming, &QPushButton::clicked, this, &ProjectorBench::UseTiming_Click);
}

void ProjectorBench::Form_Load() {
  ShowName();
  for (int number = 1; number <= kPortSlots; ++number)
    ui_->Port->addItem(PortCaption(ports_, number), number);
  const int last = settings_.value(kPortSetting).toInt();
  int chosen = last >= 1 && last <= kPortSlots ? last : 1;
  for (int number = 1; number <= kPortSlots && ports_.DeviceName(chosen).empty(); ++number) {
    if (!ports_.DeviceName(number).empty()) chosen = number;
  }
  ui_->Port->setCurrentIndex(chosen - 1);
  ui_->Stopper->setEnabled(false);
  LoadStandIn();
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
  const std::array<QWidget*, 6> starters = {ui_->Port,          ui_->Listen,          ui_->FindSettings,
                                            ui_->MeasureWarmUp, ui_->MeasureCoolDown, ui_->MeasureDelay};
  QWidget* const pressed = focusWidget();
  ui_->Stopper->setEnabled(true);
  if (std::find(starters.begin(), starters.end(), pressed) != starters.end()) ui_->Stopper->setFocus();
  for (QWidget* control : starters) control->setEnabled(false);
  procedure();
  for (QWidget* control : starters) control->setEnabled(true);
  if (ui_->Stopper->hasFocus() && pressed != nullptr) pressed->setFocus();
  ui_->Stopper->setEnabled(false);
  running_ = false;
  if (closing_) QDialog::done(*closing_);
}

void ProjectorBench::SetStatus(const QString& text) { ui_->Status->setText(text); }

void ProjectorBench::ShowName() {
  ui_->ProjectorName->setText(tr("%1 %2 at %3")
                                  .arg(ToQString(projector_.Manufacturer.Trimmed()),
                                       ToQString(projector_.Model.Trimmed()),
                                       Text(BenchLineSettings(projector_))));
}

void ProjectorBench::ShowReading(QLabel* label, const QString& text, bool refused) {
  QPalette colours = palette();
  if (refused) colours.setColor(QPalette::WindowText, ErrorColourOn(colours.color(QPalette::Window)));
  label->setPalette(colours);
  label->setText(text);
}

void ProjectorBench::done(int result) {
  stop_.request_stop();
  if (running_) {
    closing_ = result;
  } else {
    QDialog::done(result);
  }
}

}  // namespace qdm
