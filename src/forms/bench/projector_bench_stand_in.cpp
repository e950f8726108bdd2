// The stand-in's page of the projector bench.
#include "base/words.h"
#include "forms/bench/projector_bench_form.h"

#include "base/file_access.h"
#include "forms/bench/bench_table.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/port_words.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/kind_colours.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/typed_command.h"
#include "ui_projector_bench_form.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace qdm {
namespace {

enum Column { kGapColumn = 1, kCommandColumn = 2, kRemarksColumn = 6 };

QString Milliseconds(Microseconds time) {
  return QString::number(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

void ProjectorBench::LoadStandIn() {
  ui_->StandInHint->setText(
      tr("Connect this computer to the panel's projector cable and press Listen. Delays are compared as "
         "milliseconds, warm-up and cool-down as seconds: how the panel counts them is an assumption."));
  ui_->Delay->setSuffix(tr(" ms"));
  ui_->Power->addItems({tr("answered"), tr("ignored"), tr("answered with")});
  const QStringList captions = {tr("ms"),    tr("Gap ms"), tr("Command"), tr("Text"),
                                tr("Bytes"), tr("Answer"), tr("Remarks")};
  ui_->HeardList->setColumnCount(static_cast<int>(captions.size()));
  ui_->HeardList->setHorizontalHeaderLabels(captions);
  ui_->HeardList->verticalHeader()->hide();
  ui_->HeardList->verticalHeader()->setDefaultSectionSize(ui_->HeardList->fontMetrics().height() + 6);
  // What is to be said stands beside the name: long commands would push it out of sight.
  ui_->HeardList->horizontalHeader()->moveSection(kRemarksColumn, kCommandColumn + 1);
  FitColumns(ui_->HeardList);
  ui_->SaveList->setEnabled(false);
  ui_->Checklist->setText(Text(ChecklistText(StandIn(projector_))));
  Switches_Change();
}

void ProjectorBench::Switches_Change() {
  const bool answered = ui_->Power->currentIndex() == static_cast<int>(WhileBusy::AnswerBusy);
  ui_->BusyReply->setEnabled(answered);
  const TypedCommand busy = ReadTypedCommand(ui_->BusyReply->text().toStdU16String());
  ShowReading(ui_->BusyReading, answered ? Text(busy.Words) : QString(), !busy.String);
  if (!standIn_) return;
  StandInSwitches& switches = standIn_->Switches;
  switches.Silent = ui_->Silent->isChecked();
  switches.AnswerWrong = ui_->AnswerWrong->isChecked();
  switches.Delay = std::chrono::milliseconds(ui_->Delay->value());
  switches.Power = static_cast<WhileBusy>(ui_->Power->currentIndex());
  if (busy.String) switches.BusyReply = BytesIn(*busy.String);
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
    const QStringList cells = {Milliseconds(one.Begin - listenedFrom_),
                               one.Gap ? Milliseconds(*one.Gap) : QStringLiteral("-"),
                               Said(NameOf(one)),
                               Text(ReadableText(one.Data)),
                               Text(HexText(one.Data)),
                               Text(HexText(one.Answer)),
                               Text(standIn_->RemarksOn(one))};
    list->insertRow(row);
    for (int column = 0; column < cells.size(); ++column) {
      auto* cell = new QTableWidgetItem(cells[column]);
      const bool wrong = (column == kGapColumn && one.TooSoon) ||
                         (column == kCommandColumn && !one.Command) ||
                         (column == kRemarksColumn && (one.TooSoon || one.BytesTooClose));
      if (wrong) cell->setForeground(red);
      if (column == kGapColumn && one.TooSoon)
        cell->setToolTip(
            tr("The definition asks for %1 ms between commands").arg(projector_.InterCommandDelay));
      list->setItem(row, column, cell);
    }
  }
  FitColumns(list);
  list->scrollToBottom();
  ui_->SaveList->setEnabled(list->rowCount() > 0);
  ShowChecklist();
}

void ProjectorBench::SaveList_Click() {
  const auto file = prompts_.SaveFile(this, tr("Save What Was Heard"), Marked("Text (*.TXT)|*.TXT"));
  if (!file) return;
  const InEnglish asFile;
  const std::string text = ListText(*standIn_, listenedFrom_);
  try {
    DoBusy(this, tr("Still writing %1.").arg(*file),
           [&] { WriteFileSafely(ToPath(*file), Bytes(text.begin(), text.end())); });
    SetStatus(tr("Saved %1").arg(*file));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
}

}  // namespace qdm
