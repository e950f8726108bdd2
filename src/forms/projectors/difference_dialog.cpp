#include "forms/projectors/difference_dialog.h"

#include "forms/controls/screen_fit.h"
#include "forms/shared/qt_text.h"
#include "projectors/field_captions.h"
#include "ui_difference_dialog.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QPushButton>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace qdm {

DifferenceDialog::DifferenceDialog(const Texts& texts, const ProjectorDefinition& named, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::DifferenceDialog>()) {
  ui_->setupUi(this);
  setWindowTitle(texts.Title);
  ui_->Explanation->setText(texts.Explanation);
  ui_->Manufacturer->setText(ToQString(named.Manufacturer.Trimmed()));
  ui_->Model->setText(ToQString(named.Model.Trimmed()));
  ui_->Differences->setColumnCount(3);
  ui_->Differences->setHorizontalHeaderLabels({tr("What differs"), texts.FirstColumn, texts.SecondColumn});
  FitToScreen(this);
}

DifferenceDialog::~DifferenceDialog() = default;

void DifferenceDialog::ShowFrameTitle(const QString& title) { ui_->ProjectorFrame->setTitle(title); }

void DifferenceDialog::ShowPlace(const QuestionPlace& place) {
  ui_->Place->setText(tr("%1 of %2").arg(place.Number).arg(std::max(place.Number, place.Of)));
  ui_->Place->setVisible(place.Of > 1 || place.Number > 1);
}

void DifferenceDialog::ShowDifferences(const ProjectorDefinition& first, const ProjectorDefinition& second) {
  std::vector<DifferenceText> differences = DifferencesInWords(first, second);
  const bool otherNotes = first.Notes != second.Notes;
  if (otherNotes) {
    differences.push_back({tr("Notes").toStdString(), first.Notes.TrimmedUtf8(), second.Notes.TrimmedUtf8()});
  }
  // What neither the rule of "the same" nor the eye would tell apart.
  if (differences.empty()) differences = TextsOf(Differences(first, second));
  ui_->NotesHint->setVisible(otherNotes);
  QTableWidget* table = ui_->Differences;
  table->setRowCount(static_cast<int>(differences.size()));
  for (int row = 0; row < table->rowCount(); ++row) {
    const DifferenceText& difference = differences[static_cast<std::size_t>(row)];
    int column = 0;
    for (const std::string& text : {difference.Field, difference.First, difference.Second}) {
      auto* item = new QTableWidgetItem(QString::fromStdString(text));
      item->setToolTip(item->text().toHtmlEscaped());
      item->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
      table->setItem(row, column++, item);
    }
  }
  table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);  // a long string is a tall row
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

QPushButton* DifferenceDialog::AddButton(const char* name, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  ui_->Buttons->addWidget(button);
  return button;
}

QCheckBox* DifferenceDialog::AddForAllCheck(const QString& caption) {
  auto* box = new QCheckBox(caption, this);
  box->setObjectName(QStringLiteral("ForAllCheck"));
  ui_->Buttons->addWidget(box);
  return box;
}

void DifferenceDialog::MakeDefault(QPushButton* button) {
  button->setDefault(true);
  button->setFocus();
}

}  // namespace qdm
