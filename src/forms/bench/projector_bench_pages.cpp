// The pages of the projector bench that ask: settings finder, code check, timing.
#include "forms/bench/projector_bench_form.h"

#include "forms/bench/bench_table.h"
#include "forms/shared/port_words.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/kind_colours.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/typed_command.h"
#include "serial_strings/text_parser.h"
#include "ui_projector_bench_form.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace qdm {
namespace {

enum TimingRow { kWarmUpRow, kCoolDownRow, kDelayRow };
// Of a cell of the grid: the best ProbeVerdict so far, kAsking until there is one.
constexpr int kVerdictRole = Qt::UserRole;
constexpr int kAsking = -1;
constexpr int kPortRole = Qt::UserRole + 1;  // whose answer that was
constexpr qsizetype kBytesInCell = 5;

int RowOf(const ProbeSetting& setting) { return static_cast<int>(setting.Speed - LineSpeeds.data()); }
int ColumnOf(const ProbeSetting& setting) {
  return static_cast<int>(setting.Parity - LineParities.data()) * 2 + setting.StopBits - 1;
}

int VerdictOf(const QTableWidgetItem* cell) {
  return cell != nullptr ? cell->data(kVerdictRole).toInt() : kAsking;
}

// "50 57 52 20 4F..."
QString ShortHex(ByteView bytes) {
  constexpr auto kMost = static_cast<std::size_t>(kBytesInCell);
  return Text(HexText(bytes.first(std::min(kMost, bytes.size())))) +
         (bytes.size() > kMost ? QStringLiteral("...") : QString());
}

TypedCommand TypedIn(const QLineEdit* entry) {
  return ReadTypedCommand(entry->text().trimmed().toStdU16String());
}

void Put(QTableWidget* table, int row, int column, const QString& text) {
  table->setItem(row, column, new QTableWidgetItem(text));
}

}  // namespace

// ---- the settings finder ----

void ProjectorBench::LoadFinder() {
  for (const LineCommand& command : CommandsOnLine(projector_))
    ui_->Command->addItem(Said(NameOfSlot(command.Place)), static_cast<int>(command.Place));
  QTableWidget* grid = ui_->FinderGrid;
  grid->setSelectionBehavior(QAbstractItemView::SelectItems);
  grid->setColumnCount(static_cast<int>(LineParities.size()) * 2);
  grid->setRowCount(static_cast<int>(LineSpeeds.size()));
  QStringList columns;
  for (const ParityChoice& parity : LineParities) {
    columns << tr("%1\n1 stop bit").arg(Said(parity.Caption))
            << tr("%1\n2 stop bits").arg(Said(parity.Caption));
  }
  grid->setHorizontalHeaderLabels(columns);
  QStringList rows;
  for (const LineSpeed& speed : LineSpeeds) rows << Text(speed.Digits);
  grid->setVerticalHeaderLabels(rows);
  int widest = 0;
  for (int column = 0; column < grid->columnCount(); ++column) {
    widest = std::max(widest, grid->horizontalHeader()->sectionSizeHint(column));
  }
  grid->horizontalHeader()->setMinimumSectionSize(widest);
  grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  grid->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  grid->verticalHeader()->setMinimumSectionSize(grid->fontMetrics().height() * 2 + 4);
  Question_Change();
  ShowFoundSettings();
}

std::optional<ProbeQuestion> ProjectorBench::ChosenQuestion() const {
  if (!ui_->Query->text().trimmed().isEmpty()) {
    const TypedCommand query = TypedIn(ui_->Query);
    return query.String ? std::optional(QuestionOf(projector_, *query.String)) : std::nullopt;
  }
  if (ui_->Command->currentIndex() < 0) return std::nullopt;
  return QuestionOf(projector_, static_cast<Slot>(ui_->Command->currentData().toInt()));
}

// What will be sent, and what that does.
void ProjectorBench::Question_Change() {
  const bool typed = !ui_->Query->text().trimmed().isEmpty();
  const auto question = ChosenQuestion();
  ui_->FindSettings->setEnabled(question && !running_);
  if (typed) {
    const QString words = Text(TypedIn(ui_->Query).Words);
    return ShowReading(ui_->FinderHint,
                       question ? tr("Sends %1 at each of the 30 settings.").arg(words)
                                : tr("The query is not sent: %1").arg(words),
                       !question);
  }
  if (!question)
    return ShowReading(ui_->FinderHint, tr("This projector has no commands: type a query."), false);
  const auto slot = static_cast<Slot>(ui_->Command->currentData().toInt());
  ShowReading(
      ui_->FinderHint,
      tr("Sends \"%1\" (%2) at each of the 30 settings: it %3. A query of your own that switches nothing "
         "is best.")
          .arg(Said(NameOfSlot(slot)), Text(HexText(BytesOnLine(question->Command))), Said(EffectOf(slot))),
      false);
}

ProjectorBench::AskedPorts ProjectorBench::OpenPortsToAsk() {
  AskedPorts asked;
  if (!ui_->EveryPort->isChecked()) {
    if (auto port = OpenPort()) {
      asked.Ports.push_back(std::move(port));
      asked.Numbers.push_back(PortNumber());
    }
    return asked;
  }
  for (int number = 1; number <= kPortSlots; ++number) {
    if (ports_.DeviceName(number).empty()) continue;
    auto port = ports_.Port(number);
    if (port->Open()) {
      asked.Ports.push_back(std::move(port));
      asked.Numbers.push_back(number);
    } else {
      asked.NotAsked << WhyPortIsClosed(ports_, number);
    }
  }
  if (asked.Ports.empty()) {
    SetStatus(asked.NotAsked.isEmpty() ? tr("This computer has no serial port.")
                                       : asked.NotAsked.join(QLatin1Char('\n')));
  }
  return asked;
}

void ProjectorBench::FindSettings_Click() {
  const auto question = ChosenQuestion();
  if (!question) return;
  const AskedPorts asked = OpenPortsToAsk();
  if (asked.Ports.empty()) return;
  ui_->FinderGrid->clearContents();
  ui_->FinderGrid->setCurrentItem(nullptr);
  askedPorts_ = asked.Numbers;
  Run(tr("Asking..."), [&] {
    int count = 0;
    const auto asking = [&](const ProbeSetting& setting) {
      CellOf(setting);
      SetStatus(tr("Asking at %1 (%2 of 30)...").arg(Text(setting.Text())).arg(++count));
    };
    ProbeSettings(asked.Ports, *question, SettingsToProbe(projector_), time_, stop_.get_token(),
                  {[this](const ProbeResult& result) { ShowProbe(result); }, asking});
    TellFound(asked);
  });
  Question_Change();
  ShowFoundSettings();
}

// Made when there is none.
QTableWidgetItem* ProjectorBench::CellOf(const ProbeSetting& setting) {
  QTableWidget* grid = ui_->FinderGrid;
  if (QTableWidgetItem* cell = grid->item(RowOf(setting), ColumnOf(setting))) return cell;
  auto* cell = new QTableWidgetItem(QStringLiteral("..."));
  cell->setData(kVerdictRole, kAsking);
  cell->setTextAlignment(Qt::AlignCenter);
  grid->setItem(RowOf(setting), ColumnOf(setting), cell);
  return cell;
}

// Of several ports the best answer stands in the cell, and all that came in its tool tip.
void ProjectorBench::ShowProbe(const ProbeResult& result) {
  QTableWidgetItem* cell = CellOf(result.Setting);
  const bool something = result.Verdict != ProbeVerdict::Nothing;
  const int port = askedPorts_[result.Port];
  const QString verdict = Said(NameOf(result.Verdict));
  if (something) {
    const QString line = tr("%1 at %2: %3 %4")
                             .arg(PortCaption(ports_, port), Text(result.Setting.Text()), verdict,
                                  Text(HexText(result.Received)));
    cell->setToolTip(cell->toolTip().isEmpty() ? line : cell->toolTip() + QLatin1Char('\n') + line);
  }
  if (VerdictOf(cell) >= static_cast<int>(result.Verdict)) return;
  cell->setData(kVerdictRole, static_cast<int>(result.Verdict));
  cell->setData(kPortRole, port);
  QString text = something && askedPorts_.size() > 1 ? tr("%1: %2").arg(PortName(port), verdict) : verdict;
  if (something) text += QLatin1Char('\n') + ShortHex(result.Received);
  cell->setText(text);
  QFont font = cell->font();
  font.setBold(result.Verdict == ProbeVerdict::Reply);
  cell->setFont(font);
  const QTableWidgetItem* current = ui_->FinderGrid->currentItem();
  if (something && (current == nullptr || VerdictOf(current) < static_cast<int>(result.Verdict)))
    ui_->FinderGrid->setCurrentItem(cell);
  if (cell == ui_->FinderGrid->currentItem()) ShowFoundSettings();
}

void ProjectorBench::ShowFoundSettings() {
  const QTableWidgetItem* cell = ui_->FinderGrid->currentItem();
  const bool something = VerdictOf(cell) > static_cast<int>(ProbeVerdict::Nothing);
  ui_->UseSettings->setEnabled(something && !running_);
  if (cell != nullptr) ui_->FoundSettings->setText(cell->toolTip());
}

void ProjectorBench::TellFound(const AskedPorts& asked) {
  QTableWidget* grid = ui_->FinderGrid;
  int best = static_cast<int>(ProbeVerdict::Nothing);
  for (int row = 0; row < grid->rowCount(); ++row) {
    for (int column = 0; column < grid->columnCount(); ++column) {
      const QTableWidgetItem* cell = grid->item(row, column);
      best = std::max(best, VerdictOf(cell));
      if (cell != nullptr && VerdictOf(cell) == kAsking) delete grid->takeItem(row, column);
    }
  }
  QString told =
      tr("The expected reply came: \"Use these settings\" writes its settings into the definition.");
  if (!AnyIsOpen(asked.Ports)) {
    told = WhyPortIsClosed(ports_, asked.Numbers.back());
  } else if (stop_.stop_requested()) {
    told = tr("Stopped.");
  } else if (best == static_cast<int>(ProbeVerdict::Nothing)) {
    told = tr("Everything is silent.");
    ui_->FoundSettings->setText(tr("What to check:\n%1").arg(Said(WhatToCheckWhenSilent())));
  } else if (best < static_cast<int>(ProbeVerdict::Reply)) {
    told = tr("Something came back, but not the expected reply.");
  }
  if (!asked.NotAsked.isEmpty())
    told += QLatin1Char('\n') + tr("Not asked: %1").arg(asked.NotAsked.join(QLatin1Char('\n')));
  SetStatus(told);
}

void ProjectorBench::UseSettings_Click() {
  const int row = ui_->FinderGrid->currentRow();
  const int column = ui_->FinderGrid->currentColumn();
  for (const ProbeSetting& setting : SettingsToProbe(projector_)) {
    if (RowOf(setting) == row && ColumnOf(setting) == column) UseSettings(projector_, setting);
  }
  ui_->Port->setCurrentIndex(ui_->FinderGrid->currentItem()->data(kPortRole).toInt() - 1);
  ShowName();
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
  FitColumns(table);
  ShowCorrections();
}

void ProjectorBench::ShowCorrections() {
  const int row = ui_->Findings->currentRow();
  const bool chosen = row >= 0 && static_cast<std::size_t>(row) < codes_.Findings.size();
  ui_->Correct->setEnabled(chosen && codes_.Findings[static_cast<std::size_t>(row)].Corrected);
  ui_->ComputeSum->setEnabled(chosen && codes_.Family.Sum);
}

void ProjectorBench::Correct(const SerialString& corrected) {
  const Slot slot = codes_.Findings.at(static_cast<std::size_t>(ui_->Findings->currentRow())).Place;
  projector_.Strings[slot] = corrected;
  SetStatus(tr("\"%1\" is now %2.").arg(Said(NameOfSlot(slot)), Text(HexBytes(corrected))));
  ShowCodes();
}

void ProjectorBench::Correct_Click() {
  Correct(SerialString(*codes_.Findings.at(static_cast<std::size_t>(ui_->Findings->currentRow())).Corrected));
}

void ProjectorBench::ComputeSum_Click() {
  const Slot slot = codes_.Findings.at(static_cast<std::size_t>(ui_->Findings->currentRow())).Place;
  const auto computed = WithSum(projector_.Strings[slot], *codes_.Family.Sum);
  if (!computed) return SetStatus(tr("\"%1\" is too short for it.").arg(Said(NameOfSlot(slot))));
  Correct(*computed);
}

// ---- the timing ----

void ProjectorBench::LoadTiming() {
  for (QComboBox* box : {ui_->Ask, ui_->AskOff}) {
    for (const LineCommand& command : CommandsOnLine(projector_)) {
      if (TimingQuestionOf(projector_, command.Place))
        box->addItem(Said(NameOfSlot(command.Place)), static_cast<int>(command.Place));
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
  TimingQuery_Change();
  ShowTimes();
}

// A query of one's own takes the place of the chosen commands.
void ProjectorBench::TimingQuery_Change() {
  const bool typed = !ui_->TimingQuery->text().trimmed().isEmpty();
  ui_->TimingReply->setEnabled(typed);
  ui_->Ask->setEnabled(!typed);
  ui_->AskOff->setEnabled(!typed);
  ui_->TimingReading->setVisible(typed);
  if (!typed) return;
  const TypedCommand query = TypedIn(ui_->TimingQuery);
  const TypedCommand reply = TypedIn(ui_->TimingReply);
  ShowReading(ui_->TimingReading,
              tr("Asks with %1; the answer: %2").arg(Text(query.Words), Text(reply.Words)),
              !query.String || !reply.String);
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
  FitColumns(table);
  const int row = table->currentRow();
  ui_->UseTiming->setEnabled(row >= 0 && measured_[static_cast<std::size_t>(row)]);
}

std::optional<TimingQuestion> ProjectorBench::QuestionIn(const QComboBox* box) const {
  if (!ui_->TimingQuery->text().trimmed().isEmpty()) {
    const TypedCommand query = TypedIn(ui_->TimingQuery);
    const TypedCommand reply = TypedIn(ui_->TimingReply);
    if (!query.String || !reply.String) return std::nullopt;
    return TimingQuestionOf(projector_, *query.String, *reply.String);
  }
  if (box->currentIndex() < 0) return std::nullopt;
  return TimingQuestionOf(projector_, static_cast<Slot>(box->currentData().toInt()));
}

void ProjectorBench::Measure(
    int row, const std::optional<TimingQuestion>& question,
    const std::function<std::optional<Microseconds>(const TimingBench&, const TimingProgress&)>& measure) {
  if (!question) {
    return SetStatus(
        tr("There is nothing to ask with: a command with an expected reply, or a query of your own "
           "with its answer."));
  }
  const auto port = OpenPort();
  if (!port) return;
  Run(tr("Measuring..."), [&] {
    const auto measured =
        measure({*port, projector_, time_, stop_.get_token()}, [this](Microseconds elapsed) {
          SetStatus(tr("Measuring: %1 s").arg(static_cast<double>(elapsed.count()) / 1e6, 0, 'f', 0));
        });
    if (measured) {
      measured_[static_cast<std::size_t>(row)] = measured;
      ui_->Timings->setCurrentCell(row, 0);
      SetStatus(tr("Measured. \"Use measured\" takes it into the definition with its margin."));
    } else if (!port->IsOpen()) {
      SetStatus(WhyPortIsClosed(ports_, PortNumber()));
    } else {
      SetStatus(stop_.stop_requested() ? tr("Stopped.") : tr("The right reply did not come."));
    }
  });
  ShowTimes();
}

void ProjectorBench::MeasureTransition_Click(Slot power) {
  const bool on = power == kPowerOnSlot;
  const auto question = QuestionIn(on ? ui_->Ask : ui_->AskOff);
  Measure(on ? kWarmUpRow : kCoolDownRow, question,
          [&](const TimingBench& bench, const TimingProgress& told) {
            return MeasureTransition(bench, power, *question, told);
          });
}

void ProjectorBench::MeasureDelay_Click() {
  const auto question = QuestionIn(ui_->Ask);
  Measure(kDelayRow, question, [&](const TimingBench& bench, const TimingProgress& told) {
    return MeasureCommandDelay(bench, *question, told);
  });
}

void ProjectorBench::UseTiming_Click() {
  const int row = ui_->Timings->currentRow();
  const auto measured = *measured_[static_cast<std::size_t>(row)];
  if (row == kWarmUpRow) projector_.WarmUpTime = SecondsWithMargin(measured);
  if (row == kCoolDownRow) projector_.CoolDownTime = SecondsWithMargin(measured);
  if (row == kDelayRow) projector_.InterCommandDelay = MillisecondsWithMargin(measured);
  ShowTimes();
  SetStatus(tr("Taken into the definition."));
}

}  // namespace qdm
