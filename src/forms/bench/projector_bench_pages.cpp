// The pages of the projector bench that ask: settings finder, code check, timing.
#include "forms/bench/projector_bench_form.h"

#include "forms/shared/port_words.h"
#include "forms/strings/kind_colours.h"
#include "projector_bench/bench_line.h"
#include "serial_strings/text_parser.h"
#include "ui_projector_bench_form.h"

#include <QHeaderView>

#include <algorithm>
#include <chrono>

namespace qdm {
namespace {

enum TimingRow { kWarmUpRow, kCoolDownRow, kDelayRow };

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

int RowOf(const ProbeSetting& setting) { return static_cast<int>(setting.Speed - LineSpeeds.data()); }
int ColumnOf(const ProbeSetting& setting) {
  return static_cast<int>(setting.Parity - LineParities.data()) * 2 + setting.StopBits - 1;
}

void Put(QTableWidget* table, int row, int column, const QString& text) {
  table->setItem(row, column, new QTableWidgetItem(text));
}

}  // namespace

// ---- the settings finder ----

void ProjectorBench::LoadFinder() {
  for (const LineCommand& command : CommandsOnLine(projector_))
    ui_->Command->addItem(Text(NameOfSlot(command.Place)), static_cast<int>(command.Place));
  ui_->FinderHint->setText(
      tr("The command is really sent, at each of the 30 settings: \"Power on\" switches the projector on. A "
         "query of your own that switches nothing is best."));
  QTableWidget* grid = ui_->FinderGrid;
  grid->setSelectionBehavior(QAbstractItemView::SelectItems);
  grid->setColumnCount(static_cast<int>(LineParities.size()) * 2);
  grid->setRowCount(static_cast<int>(LineSpeeds.size()));
  QStringList columns;
  for (const ParityChoice& parity : LineParities) {
    columns << tr("%1, 1 stop bit").arg(Text(parity.Caption))
            << tr("%1, 2 stop bits").arg(Text(parity.Caption));
  }
  grid->setHorizontalHeaderLabels(columns);
  QStringList rows;
  for (const LineSpeed& speed : LineSpeeds) rows << Text(speed.Digits);
  grid->setVerticalHeaderLabels(rows);
  grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  connect(grid, &QTableWidget::currentItemChanged, this, [this](QTableWidgetItem* item) {
    ui_->UseSettings->setEnabled(item != nullptr && !running_);
    if (item != nullptr) ui_->FoundSettings->setText(item->toolTip());
  });
  ui_->UseSettings->setEnabled(false);
}

std::optional<ProbeQuestion> ProjectorBench::ChosenQuestion() {
  const QString query = ui_->Query->text().trimmed();
  if (query.isEmpty()) {
    if (ui_->Command->currentIndex() < 0) return std::nullopt;
    return QuestionOf(projector_, static_cast<Slot>(ui_->Command->currentData().toInt()));
  }
  const ParsedText parsed = ParseSerialText(query.toStdU16String());
  if (!parsed.Readings.empty()) return QuestionOf(projector_, parsed.Readings.front().String);
  if (parsed.Problem) SetStatus(QString::fromStdString(ProblemText(*parsed.Problem)));
  return std::nullopt;
}

std::vector<std::unique_ptr<SerialPort>> ProjectorBench::OpenPortsToAsk() {
  std::vector<std::unique_ptr<SerialPort>> ports;
  if (!ui_->EveryPort->isChecked()) {
    if (auto port = OpenPort()) ports.push_back(std::move(port));
    return ports;
  }
  for (int number = 1; number <= kPortSlots; ++number) {
    if (ports_.DeviceName(number).empty()) continue;
    auto port = ports_.Port(number);
    if (port->Open()) ports.push_back(std::move(port));
  }
  if (ports.empty()) SetStatus(tr("No port could be opened."));
  return ports;
}

void ProjectorBench::FindSettings_Click() {
  const auto question = ChosenQuestion();
  if (!question) return;
  const auto ports = OpenPortsToAsk();
  if (ports.empty()) return;
  ui_->FinderGrid->clearContents();
  probed_.clear();
  Run(tr("Asking at every setting..."), [&] {
    ProbeSettings(ports, *question, SettingsToProbe(projector_), time_, stop_.get_token(),
                  [this](const ProbeResult& result) { ShowProbe(result); });
    if (stop_.stop_requested()) return SetStatus(tr("Stopped."));
    SetStatus(probed_.empty()
                  ? tr("Everything is silent. What to check:\n%1").arg(Text(WhatToCheckWhenSilent()))
                  : tr("Choose a setting to use it."));
  });
}

// Of several ports, the best answer to a setting stays.
void ProjectorBench::ShowProbe(const ProbeResult& result) {
  const int row = RowOf(result.Setting);
  const int column = ColumnOf(result.Setting);
  QTableWidgetItem* shown = ui_->FinderGrid->item(row, column);
  if (shown != nullptr && shown->data(Qt::UserRole).toInt() >= static_cast<int>(result.Verdict)) return;
  const QString bytes = Text(HexText(result.Received));
  auto* cell = new QTableWidgetItem(Text(NameOf(result.Verdict)));
  cell->setData(Qt::UserRole, static_cast<int>(result.Verdict));
  cell->setTextAlignment(Qt::AlignCenter);
  cell->setToolTip(tr("%1: %2 %3").arg(Text(result.Setting.Text()), Text(NameOf(result.Verdict)), bytes));
  QFont font = cell->font();
  font.setBold(result.Verdict == ProbeVerdict::Reply);
  cell->setFont(font);
  ui_->FinderGrid->setItem(row, column, cell);
  if (result.Verdict != ProbeVerdict::Nothing) probed_.push_back(result.Setting);
  if (result.Verdict == ProbeVerdict::Reply) ui_->FinderGrid->setCurrentItem(cell);
}

void ProjectorBench::UseSettings_Click() {
  const int row = ui_->FinderGrid->currentRow();
  const int column = ui_->FinderGrid->currentColumn();
  for (const ProbeSetting& setting : SettingsToProbe(projector_)) {
    if (RowOf(setting) == row && ColumnOf(setting) == column) UseSettings(projector_, setting);
  }
  SetStatus(tr("The definition now has %1.").arg(Text(BenchLineSettings(projector_))));
}

// ---- the code check ----

void ProjectorBench::ShowCodes() {
  codes_ = CheckCodes(projector_);
  QStringList sentences;
  for (const std::string& sentence : FamilyText(codes_.Family)) sentences << Text(sentence);
  if (sentences.isEmpty()) sentences << tr("The commands have nothing in common that could be checked.");
  if (codes_.Findings.empty()) sentences << tr("No command looks mistyped.");
  ui_->FamilyHint->setText(sentences.join(QLatin1Char('\n')));
  QTableWidget* table = ui_->Findings;
  table->setColumnCount(2);
  table->setHorizontalHeaderLabels({tr("What looks wrong"), tr("Correction")});
  table->verticalHeader()->hide();
  table->setRowCount(static_cast<int>(codes_.Findings.size()));
  for (int row = 0; row < table->rowCount(); ++row) {
    const CodeFinding& finding = codes_.Findings[static_cast<std::size_t>(row)];
    Put(table, row, 0, Text(finding.Text));
    Put(table, row, 1, finding.Corrected ? Text(HexBytes(*finding.Corrected)) : QString());
  }
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
  ui_->Correct->setEnabled(false);
}

void ProjectorBench::Correct_Click() {
  const auto row = static_cast<std::size_t>(ui_->Findings->currentRow());
  const CodeFinding finding = codes_.Findings.at(row);
  projector_.Strings[finding.Place] = *finding.Corrected;
  SetStatus(tr("\"%1\" has been corrected.").arg(Text(NameOfSlot(finding.Place))));
  ShowCodes();
}

// ---- the timing ----

void ProjectorBench::LoadTiming() {
  for (QComboBox* box : {ui_->Ask, ui_->AskOff}) {
    for (const LineCommand& command : CommandsOnLine(projector_)) {
      if (TimingQuestionOf(projector_, command.Place))
        box->addItem(Text(NameOfSlot(command.Place)), static_cast<int>(command.Place));
    }
  }
  // What follows the power command; after power off only power on is sure to be answered again.
  const int next = ui_->Ask->findData(static_cast<int>(kData1Slot));
  ui_->Ask->setCurrentIndex(next >= 0 ? next : 0);
  ui_->AskOff->setCurrentIndex(std::max(0, ui_->AskOff->findData(static_cast<int>(kPowerOnSlot))));
  ui_->TimingHint->setText(
      tr("The projector is switched on and off, and asked until the right reply comes. The definition's "
         "values are taken as seconds (warm-up, cool-down) and milliseconds (delay): how the panel counts "
         "them is an assumption."));
  ShowTimes();
  connect(ui_->Timings, &QTableWidget::currentCellChanged, this, [this](int row) {
    ui_->UseTiming->setEnabled(row >= 0 && measured_[static_cast<std::size_t>(row)]);
  });
}

void ProjectorBench::ShowTimes() {
  QTableWidget* table = ui_->Timings;
  table->setColumnCount(4);
  table->setRowCount(3);
  table->setHorizontalHeaderLabels({tr("Time"), tr("Definition"), tr("Measured"), tr("With 20 % margin")});
  table->verticalHeader()->hide();
  const std::array names = {tr("Warm-up in s"), tr("Cool-down in s"), tr("Delay between commands in ms")};
  const std::array stored = {projector_.WarmUpTime, projector_.CoolDownTime, projector_.InterCommandDelay};
  for (int row = 0; row < 3; ++row) {
    const auto& measured = measured_[static_cast<std::size_t>(row)];
    const double unit = row == kDelayRow ? 1e3 : 1e6;
    Put(table, row, 0, names[static_cast<std::size_t>(row)]);
    Put(table, row, 1, QString::number(stored[static_cast<std::size_t>(row)]));
    Put(table, row, 2,
        measured ? QString::number(static_cast<double>(measured->count()) / unit, 'f', 1) : QString());
    const auto margin = [&] {
      return row == kDelayRow ? MillisecondsWithMargin(*measured) : SecondsWithMargin(*measured);
    };
    Put(table, row, 3, measured ? QString::number(margin()) : QString());
  }
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
  const int row = table->currentRow();
  ui_->UseTiming->setEnabled(row >= 0 && measured_[static_cast<std::size_t>(row)]);
}

std::optional<TimingQuestion> ProjectorBench::QuestionIn(const QComboBox* box) const {
  if (box->currentIndex() < 0) return std::nullopt;
  return TimingQuestionOf(projector_, static_cast<Slot>(box->currentData().toInt()));
}

void ProjectorBench::MeasureTransition_Click(Slot power) {
  const bool on = power == kPowerOnSlot;
  const auto question = QuestionIn(on ? ui_->Ask : ui_->AskOff);
  if (!question) return SetStatus(tr("No command of this projector has an expected reply to wait for."));
  const auto port = OpenPort();
  if (!port) return;
  Run(tr("Measuring..."), [&] {
    const auto measured = MeasureTransition(
        {*port, projector_, time_, stop_.get_token()}, power, *question, [this](Microseconds elapsed) {
          SetStatus(tr("Measuring: %1 s").arg(static_cast<double>(elapsed.count()) / 1e6, 0, 'f', 0));
        });
    measured_[on ? kWarmUpRow : kCoolDownRow] = measured;
    SetStatus(measured ? tr("Measured.") : tr("The right reply did not come."));
  });
  ShowTimes();
}

void ProjectorBench::MeasureDelay_Click() {
  const auto question = QuestionIn(ui_->Ask);
  if (!question) return SetStatus(tr("No command of this projector has an expected reply to wait for."));
  const auto port = OpenPort();
  if (!port) return;
  Run(tr("Measuring..."), [&] {
    measured_[kDelayRow] = MeasureCommandDelay(
        {*port, projector_, time_, stop_.get_token()}, *question, [this](Microseconds elapsed) {
          SetStatus(tr("Measuring: %1 s").arg(static_cast<double>(elapsed.count()) / 1e6, 0, 'f', 0));
        });
    SetStatus(measured_[kDelayRow] ? tr("Measured.") : tr("Not every command was answered."));
  });
  ShowTimes();
}

void ProjectorBench::UseTiming_Click() {
  const int row = ui_->Timings->currentRow();
  const auto measured = *measured_[static_cast<std::size_t>(row)];
  if (row == kWarmUpRow) projector_.WarmUpTime = SecondsWithMargin(measured);
  if (row == kCoolDownRow) projector_.CoolDownTime = SecondsWithMargin(measured);
  if (row == kDelayRow) projector_.InterCommandDelay = MillisecondsWithMargin(measured);
  ShowTimes();
}

}  // namespace qdm
