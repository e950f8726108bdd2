#include "forms/download/find_panel_form.h"

#include "forms/download/my_comm.h"
#include "forms/shared/port_words.h"
#include "ui_find_panel_form.h"

#include <QLabel>
#include <QPointer>

#include <algorithm>
#include <optional>
#include <vector>

namespace qdm {
namespace {

constexpr int kRows = kPortSlots / 2;  // of two columns

}  // namespace

FindPanel::FindPanel(SerialPorts& ports, Waiting& time, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FindPanel>()), ports_(ports), time_(time) {
  ui_->setupUi(this);
  for (int port = 1; port <= kPortSlots; ++port) MakeCell(port);
  connect(ui_->Find, &QPushButton::clicked, this, &FindPanel::Find_Click);
  connect(ui_->Stopper, &QPushButton::clicked, this, &FindPanel::Stopper_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &FindPanel::reject);
  Find_Click();
}

FindPanel::~FindPanel() = default;

void FindPanel::MakeCell(int port) {
  Cell& cell = cells_[static_cast<std::size_t>(port - 1)];
  cell.Name = new QLabel(ui_->CommFrame);
  cell.Name->setTextFormat(Qt::PlainText);
  cell.Comm = new MyComm(ports_, time_, ui_->CommFrame);
  const int row = (port - 1) % kRows;
  const int column = (port - 1) / kRows * 2;
  ui_->Cells->addWidget(cell.Name, row, column);
  ui_->Cells->addWidget(cell.Comm, row, column + 1);
  connect(cell.Comm, &MyComm::Began, this, &FindPanel::RunSearches);
  connect(cell.Comm, &MyComm::Finished, this, &FindPanel::ShowState);
  connect(cell.Comm, &MyComm::Chosen, this, [this, &cell] { Comm_Chosen(*cell.Comm); });
}

// The ports are looked up anew: an adapter may have been plugged in since.
void FindPanel::Find_Click() {
  ui_->Chosen->clear();
  std::vector<int> closed;
  for (int port = 1; port <= kPortSlots; ++port) {
    const Cell& cell = cells_[static_cast<std::size_t>(port - 1)];
    const bool exists = !ports_.DeviceName(port).empty();
    cell.Name->setVisible(exists);
    cell.Comm->setVisible(exists);
    if (!exists) continue;
    cell.Comm->StartSearch(port);
    cell.Name->setText(cell.Comm->Opened()
                           ? PortCaption(ports_, port)
                           : PortCaption(ports_, port) + QStringLiteral(" is in use or not allowed"));
    cell.Name->setEnabled(cell.Comm->Opened());
    if (!cell.Comm->Opened()) closed.push_back(port);
  }
  const QString hint = HintOnClosedPorts(ports_, closed);
  ui_->PortHint->setText(hint);
  ui_->PortHint->setVisible(!hint.isEmpty());
  ShowState();
}

void FindPanel::Stopper_Click() {
  for (const Cell& cell : cells_) cell.Comm->StopSearch();
}

void FindPanel::Comm_Chosen(const MyComm& chosen) {
  for (const Cell& cell : cells_) cell.Comm->ShowChosen(cell.Comm == &chosen);
  const OnePortResult& result = chosen.Result();
  ui_->Chosen->setText(QStringLiteral("%1: %2 at %3")
                           .arg(PortCaption(ports_, chosen.Port()),
                                QString::fromStdString(IdentificationText(*result.Panel)),
                                QString::fromStdString(result.Settings)));
}

// Searches that begin while the loop runs are taken along by it, never waited for inside it.
void FindPanel::RunSearches() {
  if (running_) return;
  running_ = true;
  const QPointer<FindPanel> self(this);
  for (;;) {
    std::optional<Microseconds> next;
    for (const Cell& cell : cells_) {
      if (cell.Comm->Searching()) cell.Comm->Advance();
      if (cell.Comm->Searching())
        next = std::min(next.value_or(cell.Comm->NextTime()), cell.Comm->NextTime());
    }
    if (!next) break;
    time_.Yield(*next);
    if (!self) return;
  }
  running_ = false;
}

void FindPanel::ShowState() {
  const auto count = [this](auto which) { return std::count_if(cells_.begin(), cells_.end(), which); };
  const bool busy =
      count([](const Cell& cell) { return cell.Comm->Pending() || cell.Comm->Searching(); }) > 0;
  const auto existing = count([](const Cell& cell) { return !cell.Name->isHidden(); });
  const auto opened = count([](const Cell& cell) { return cell.Comm->Opened(); });
  const auto found = count([](const Cell& cell) { return cell.Comm->Result().Panel.has_value(); });
  ui_->Stopper->setEnabled(busy);
  ui_->Find->setEnabled(!busy);
  if (existing == 0) {
    ui_->Instruction->setText(
        QStringLiteral("This computer has no serial port. Plug an adapter in and press Find."));
  } else if (opened == 0) {
    ui_->Instruction->setText(QStringLiteral("No port could be opened."));
  } else if (found > 0) {
    ui_->Instruction->setText(QStringLiteral("Choose a port to read what is on it."));
  } else if (busy) {
    ui_->Instruction->setText(QStringLiteral("Asking every port who is there..."));
  } else {
    ui_->Instruction->setText(
        QStringLiteral("No panel answered. Check that it has power and is connected, then press Find."));
  }
}

void FindPanel::done(int result) {
  Stopper_Click();
  QDialog::done(result);
}

}  // namespace qdm
