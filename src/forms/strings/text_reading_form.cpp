#include "forms/strings/text_reading_form.h"

#include "forms/controls/screen_fit.h"
#include "forms/shared/qt_text.h"
#include "forms/strings/kind_colours.h"
#include "forms/strings/string_picture.h"

#include <QHeaderView>
#include <QPushButton>
#include <QStringList>

#include "serial_strings/serial_string.h"
#include "ui_text_reading_form.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace qdm {
namespace {

enum Column { kAs, kBytes, kString };

}  // namespace

TextReadingForm::TextReadingForm(const QString& text, const ParsedText& parsed, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TextReadingForm>()), parsed_(parsed) {
  ui_->setupUi(this);
  Load(text);
  connect(ui_->Done, &QPushButton::clicked, this, &QDialog::accept);
  connect(ui_->CancelCommand, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->Readings, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
  FitToScreen(this);
}

TextReadingForm::~TextReadingForm() = default;

void TextReadingForm::Load(const QString& text) {
  constexpr int kShownText = 200;
  ui_->PastedText->setText(text.left(kShownText));
  ui_->Problem->setVisible(parsed_.Problem.has_value());
  if (parsed_.Problem) {
    QPalette red = ui_->Problem->palette();
    red.setColor(QPalette::WindowText, ErrorColourOn(red.color(QPalette::Window)));
    ui_->Problem->setPalette(red);
    ui_->Problem->setText(QString::fromStdString(ProblemText(*parsed_.Problem)));
  }
  QStringList notes;
  for (const std::string& note : parsed_.Notes) notes += Said(note);
  ui_->Notes->setVisible(!notes.isEmpty());
  ui_->Notes->setText(tr("Please note: %1.").arg(notes.join(QStringLiteral("; "))));
  for (const TextReading& reading : parsed_.Readings) {
    auto* item = new QTreeWidgetItem(ui_->Readings);
    item->setText(kAs, ReadAs(reading));
    item->setText(kBytes, QString::fromStdString(HexBytes(reading.String)));
    item->setData(kString, Qt::AccessibleTextRole, QString::fromStdString(CompactText(reading.String)));
    auto* picture = new StringPicture(ui_->Readings);
    picture->SetString(reading.String);
    item->setSizeHint(kString, picture->sizeHint());
    ui_->Readings->setItemWidget(item, kString, picture);
  }
  for (const int column : {kAs, kBytes, kString}) ui_->Readings->resizeColumnToContents(column);
  ui_->Readings->setCurrentItem(ui_->Readings->topLevelItem(0));
  // What probably cannot be sent is not to be pasted by pressing Enter.
  if (parsed_.OnlyDoubtful()) ui_->CancelCommand->setDefault(true);
}

QString TextReadingForm::ReadAs(const TextReading& reading) const {
  QString as = SaidEach(reading.As);
  if (!reading.Part.empty()) as = tr("\"%1\" as %2").arg(QString::fromStdString(reading.Part), as);
  return reading.Doubtful ? tr("doubtful: %1").arg(as) : as;
}

const SerialString& TextReadingForm::Chosen() const {
  const int row = ui_->Readings->indexOfTopLevelItem(ui_->Readings->currentItem());
  return parsed_.Readings.at(static_cast<std::size_t>(std::max(row, 0))).String;
}

std::optional<SerialString> TextReadingForm::Choose(QWidget* parent, const QString& text,
                                                    const ParsedText& parsed) {
  TextReadingForm form(text, parsed, parent);
  if (form.exec() != QDialog::Accepted) return std::nullopt;
  return form.Chosen();
}

}  // namespace qdm
