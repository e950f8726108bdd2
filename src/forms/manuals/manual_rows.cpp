#include "forms/manuals/manual_rows.h"

#include "forms/manuals/slot_colours.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/kind_colours.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>

namespace qdm {
namespace {

QString TextOf(const ManualCandidate& candidate) {
  const QString text = QString::fromStdString(CompactText(candidate.String));
  const QString function = QString::fromStdString(candidate.Function).simplified();
  return function.isEmpty() ? text : ManualRows::tr("%1   (%2)").arg(text, function);
}

}  // namespace

QString NameOf(std::size_t slot) { return Said(CommandSlotNames.at(slot)); }

ManualRows::ManualRows(QWidget* parent) : QWidget(parent) {
  auto* grid = new QGridLayout(this);
  grid->setVerticalSpacing(3);
  grid->setColumnStretch(1, 4);
  grid->setColumnStretch(2, 3);
  grid->setColumnStretch(3, 4);
  int line = 0;
  for (const bool received : {false, true}) {
    for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
      if (SlotHasIgnoreMask(slot) == received) MakeRow(slot, line++);
    }
  }
  grid->setRowStretch(line, 1);
  ShowRows({});
}

void ManualRows::MakeRow(std::size_t slot, int line) {
  Cells& cells = cells_.at(slot);
  const QString name = NameOf(slot);
  cells = {new QCheckBox(name, this), new QComboBox(this), new QLabel(this), new QLabel(this)};
  const QString number = QString::number(slot);
  cells.Take->setObjectName(QStringLiteral("Take_") + number);
  cells.Take->setAccessibleName(tr("Take %1").arg(name));
  cells.Take->setAutoFillBackground(true);
  cells.Take->setBackgroundRole(QPalette::Window);
  cells.Candidates->setObjectName(QStringLiteral("Candidates_") + number);
  cells.Candidates->setAccessibleName(tr("Candidates for %1").arg(name));
  cells.Candidates->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cells.Candidates->setMinimumContentsLength(14);
  cells.Bytes->setObjectName(QStringLiteral("Bytes_") + number);
  cells.Verdict->setObjectName(QStringLiteral("Verdict_") + number);
  auto* grid = static_cast<QGridLayout*>(layout());
  int column = 0;
  for (QWidget* cell :
       std::initializer_list<QWidget*>{cells.Take, cells.Candidates, cells.Bytes, cells.Verdict}) {
    grid->addWidget(cell, line, column++);
    cell->installEventFilter(this);
    cell->setProperty("slot", QVariant::fromValue(static_cast<uint>(slot)));
  }
  for (QLabel* label : {cells.Bytes, cells.Verdict}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  connect(cells.Take, &QCheckBox::clicked, this, [this, slot](bool ticked) { Q_EMIT Ticked(slot, ticked); });
  connect(cells.Candidates, &QComboBox::activated, this,
          [this, slot](int index) { Q_EMIT Chosen(slot, static_cast<std::size_t>(index)); });
}

void ManualRows::ShowRows(const std::vector<ManualRow>& rows) {
  std::array<const ManualRow*, kCommandSlots> shown{};
  for (const ManualRow& row : rows) shown.at(row.Slot) = &row;
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    const Cells& cells = cells_[slot];
    const bool there = shown[slot] != nullptr;
    if (there) ShowRow(cells, *shown[slot]);
    for (QWidget* cell :
         std::initializer_list<QWidget*>{cells.Take, cells.Candidates, cells.Bytes, cells.Verdict})
      cell->setVisible(there);
  }
  ShowColours();
}

void ManualRows::ShowRow(const Cells& cells, const ManualRow& row) {
  QStringList texts;
  for (const ManualCandidate& candidate : row.Candidates) texts << TextOf(candidate);
  cells.Candidates->clear();
  cells.Candidates->addItems(texts);
  for (std::size_t i = 0; i < row.Candidates.size(); ++i) {
    cells.Candidates->setItemData(
        static_cast<int>(i), QString::fromStdString(HexBytes(row.Candidates[i].String)), Qt::ToolTipRole);
  }
  cells.Candidates->setCurrentIndex(static_cast<int>(row.Chosen));
  cells.Candidates->setToolTip(cells.Candidates->currentText());
  const QString bytes = QString::fromStdString(HexBytes(row.Candidate().String));
  const QString verdict = VerdictOf(row);
  cells.Take->setChecked(row.Ticked);
  cells.Take->setAccessibleDescription(tr("%1, %2").arg(bytes, verdict));
  cells.Bytes->setText(bytes);
  cells.Verdict->setText(verdict);
  cells.Verdict->setProperty("doubtful", !row.Marked && !(row.Sure && row.Chosen == 0));
}

QString ManualRows::VerdictOf(const ManualRow& row) const {
  const QString readAs = SaidEach(row.Candidate().ReadAs);
  const QString doubt = Said(row.Doubt);
  if (row.Chosen != 0) return readAs.isEmpty() ? tr("please check") : tr("please check: %1").arg(readAs);
  if (row.Marked) {
    return doubt.isEmpty() ? tr("marked by you: %1").arg(readAs) : tr("please check: %1").arg(doubt);
  }
  if (row.Sure) return readAs.isEmpty() ? tr("sure") : tr("sure: %1").arg(readAs);
  return doubt.isEmpty() ? tr("please check") : tr("please check: %1").arg(doubt);
}

QWidget* ManualRows::PointOut(std::optional<std::size_t> slot) {
  for (std::size_t each = 0; each < kCommandSlots; ++each) {
    QFont font = cells_[each].Bytes->font();
    font.setBold(each == slot);
    cells_[each].Take->setFont(font);
  }
  return slot && cells_.at(*slot).Take->isVisibleTo(this) ? cells_.at(*slot).Take : nullptr;
}

void ManualRows::ShowColours() {
  const QColor warning = ErrorColourOn(palette().color(QPalette::Window));
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    QPalette take = palette();
    take.setColor(QPalette::Window, SlotColour(slot, palette()));
    cells_[slot].Take->setPalette(take);
    QPalette verdict = palette();
    if (cells_[slot].Verdict->property("doubtful").toBool()) verdict.setColor(QPalette::WindowText, warning);
    cells_[slot].Verdict->setPalette(verdict);
  }
}

bool ManualRows::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress)
    Q_EMIT Entered(watched->property("slot").toUInt());
  return QWidget::eventFilter(watched, event);
}

void ManualRows::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowColours();
}

}  // namespace qdm
