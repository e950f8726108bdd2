#include "forms/download/find_panel_form.h"

#include "forms/download/my_comm.h"
#include "forms/download/window_size.h"
#include "forms/shared/port_words.h"
#include "ui_find_panel_form.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>
#include <QTreeWidgetItem>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace qdm {
namespace {

enum Column { kPort, kDevice, kPanel, kSetting, kState, kColumns };

constexpr QSize kWanted(800, 440);
constexpr int kCellMargin = 16;
constexpr qreal kTint = 0.35;  // how much of the highlight a row that is lit has

QColor Tint(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  const QColor light = palette.color(QPalette::Highlight);
  const auto mixed = [](int a, int b) { return static_cast<int>(a + (b - a) * kTint); };
  return QColor(mixed(base.red(), light.red()), mixed(base.green(), light.green()),
                mixed(base.blue(), light.blue()));
}

}  // namespace

FindPanel::FindPanel(SerialPorts& ports, Waiting& time, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FindPanel>()), ports_(ports), time_(time) {
  ui_->setupUi(this);
  for (int port = 1; port <= kPortSlots; ++port) MakeRow(port);
  connect(ui_->Find, &QPushButton::clicked, this, &FindPanel::Find_Click);
  connect(ui_->Stopper, &QPushButton::clicked, this, &FindPanel::Stopper_Click);
  connect(ui_->Copy, &QPushButton::clicked, this, &FindPanel::Copy_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &FindPanel::reject);
  Find_Click();
  SizeColumns();
  ResizeOnScreen(*this, kWanted);
}

FindPanel::~FindPanel() = default;

// What is found is bold; a device by-id may be far longer than the window is wide.
void FindPanel::SizeColumns() {
  QFont bold = ui_->Ports->font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  QHeaderView& header = *ui_->Ports->header();
  header.setStretchLastSection(false);
  const std::pair<Column, QString> widest[] = {
      {kPort, PortName(kPortSlots)},
      {kPanel, QStringLiteral("TL-VOX 255.255")},
      {kSetting, QString(QLatin1String(LineSettingsTable.back().Settings))}};
  for (const auto& [column, text] : widest) {
    const int titleWidth = header.sectionSizeHint(column);
    header.resizeSection(column, std::max(titleWidth, metrics.horizontalAdvance(text) + kCellMargin));
  }
  for (const Column column : {kDevice, kState}) header.setSectionResizeMode(column, QHeaderView::Stretch);
}

void FindPanel::MakeRow(int port) {
  Row& row = rows_[static_cast<std::size_t>(port - 1)];
  row.Item = new QTreeWidgetItem(ui_->Ports);
  row.Comm = new MyComm(ports_, time_, this);
  connect(row.Comm, &MyComm::Began, this, &FindPanel::RunSearches);
  connect(row.Comm, &MyComm::Changed, this, [this, &row] {
    ShowRow(row);
    ShowState();
  });
}

// The ports are looked up anew: an adapter may have been plugged in since.
void FindPanel::Find_Click() {
  stopped_ = false;
  std::vector<ClosedPort> closed;
  for (int port = 1; port <= kPortSlots; ++port) {
    const Row& row = rows_[static_cast<std::size_t>(port - 1)];
    const bool exists = !ports_.DeviceName(port).empty();
    row.Item->setHidden(!exists);
    if (!exists) continue;
    row.Comm->StartSearch(port);
    if (const auto why = row.Comm->WhyClosed()) closed.push_back({row.Comm->Device(), *why});
    ShowRow(row);
  }
  const QString hint = HintOnClosedPorts(closed);
  ui_->PortHint->setText(hint);
  ui_->PortHint->setVisible(!hint.isEmpty());
  ShowState();
}

void FindPanel::Stopper_Click() {
  stopped_ = true;
  for (const Row& row : rows_) row.Comm->StopSearch();
}

// The selected rows; without a selection, all.
void FindPanel::Copy_Click() {
  const bool all = ui_->Ports->selectedItems().isEmpty();
  QString text;
  for (const Row& row : rows_) {
    if (row.Item->isHidden() || (!all && !row.Item->isSelected())) continue;
    QStringList cells;
    for (int column = 0; column < kColumns; ++column) cells.append(row.Item->text(column));
    text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
  }
  QGuiApplication::clipboard()->setText(text);
}

// Searches that begin while the loop runs are taken along by it, never waited for inside it.
void FindPanel::RunSearches() {
  if (running_) return;
  running_ = true;
  const QPointer<FindPanel> self(this);
  for (;;) {
    std::optional<Microseconds> next;
    for (const Row& row : rows_) {
      if (row.Comm->Searching()) row.Comm->Advance();
      if (row.Comm->Searching()) next = std::min(next.value_or(row.Comm->NextTime()), row.Comm->NextTime());
    }
    if (!next) break;
    time_.Yield(*next);
    if (!self) return;
  }
  running_ = false;
  ShowState();
  if (closing_) QDialog::done(Rejected);
}

void FindPanel::ShowRow(const Row& row) {
  const MyComm& comm = *row.Comm;
  const OnePortResult& found = comm.Result();
  const QString texts[kColumns] = {
      PortName(comm.Port()), QString::fromStdString(comm.Device()),
      found.Panel ? QString::fromStdString(IdentificationText(*found.Panel)) : QString(),
      QString::fromStdString(found.Settings), StateOf(comm)};
  QFont font = ui_->Ports->font();
  font.setBold(found.Panel.has_value());
  for (int column = 0; column < kColumns; ++column) {
    row.Item->setText(column, texts[column]);
    row.Item->setToolTip(column, texts[column]);
    row.Item->setFont(column, font);
    row.Item->setBackground(column, found.Panel ? QBrush(Tint(palette())) : QBrush());
  }
}

QString FindPanel::StateOf(const MyComm& comm) const {
  if (!comm.Opened()) {
    const std::optional<OpenFailure> why = comm.WhyClosed();
    return why ? WordsFor(*why) : tr("It could not be opened");
  }
  if (comm.Result().Panel) {
    if (comm.Searching()) return tr("Found, restarting it");
    return comm.FailedToRestart() ? tr("It failed to restart: switch its power off and on")
                                  : tr("Found and restarted");
  }
  const auto tried = static_cast<int>(comm.SettingsTried());
  const bool over = !comm.Pending() && !comm.Searching();
  if (over && tried < static_cast<int>(kLineSettings)) {
    return tr("%1, asked at %2 of %3 line settings").arg(comm.Label1()).arg(tried).arg(kLineSettings);
  }
  return comm.Label1();
}

bool FindPanel::Busy() const {
  return std::any_of(rows_.begin(), rows_.end(),
                     [](const Row& row) { return row.Comm->Pending() || row.Comm->Searching(); });
}

void FindPanel::ShowState() {
  const bool busy = Busy();
  ui_->Stopper->setEnabled(busy && !stopped_);
  ui_->Find->setEnabled(!busy);
  ui_->Instruction->setText(Instruction());
}

QString FindPanel::Instruction() const {
  const auto count = [this](auto which) { return std::count_if(rows_.begin(), rows_.end(), which); };
  const auto found = count([](const Row& row) { return row.Comm->Result().Panel.has_value(); });
  if (count([](const Row& row) { return !row.Item->isHidden(); }) == 0) {
    return tr("This computer has no serial port. Plug an adapter in and press Find.");
  }
  if (count([](const Row& row) { return row.Comm->Opened(); }) == 0) {
    return tr("No port could be opened. The table says why.");
  }
  if (Busy()) return tr("Asking every port who is there...");
  if (stopped_ && found == 0)
    return tr("Stopped before every line setting was tried. Press Find to ask again.");
  if (count([](const Row& row) { return row.Comm->FailedToRestart(); }) > 0) {
    return tr("Not every panel that answered could be restarted. The table says which.");
  }
  if (found == 1) return tr("One panel answered, and it works again.");
  if (found > 1) return tr("%1 panels answered, and they work again.").arg(found);
  return tr("No panel answered. Check that it has power and is connected, then press Find.");
}

// Escape stops what is under way; without that, it closes the window. Ctrl+C copies.
void FindPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && Busy()) return Stopper_Click();
  if (event->matches(QKeySequence::Copy)) return Copy_Click();
  QDialog::keyPressEvent(event);
}

void FindPanel::done(int result) {
  Stopper_Click();
  closing_ = running_ && Busy();
  if (!closing_) QDialog::done(result);
}

}  // namespace qdm
