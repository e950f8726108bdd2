#include "forms/work_log/sheet_form.h"

#include "base/file_access.h"
#include "base/words.h"
#include "forms/controls/screen_fit.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/work_log/sheet_pages.h"

#include <QFileInfo>
#include <QGraphicsView>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <optional>

namespace qdm {
namespace {

constexpr QSize kSheetSize(820, 680);
constexpr const char* kPdfFilter = Marked("PDF (*.PDF)|*.PDF");
constexpr const char* kHtmlFilter = Marked("Web page (*.HTML)|*.HTML");

QString FolderOf(const std::filesystem::path& file) {
  return QString::fromStdString(PathToUtf8(file.parent_path()));
}

QPushButton* AddButton(QHBoxLayout& row, const QString& name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  button->setAutoDefault(false);
  row.addWidget(button);
  return button;
}

}  // namespace

SheetForm::SheetForm(const PanelConfiguration& configuration, const std::filesystem::path& file, WorkLog& log,
                     UserPrompts& prompts, QSettings& settings, QWidget* parent)
    : QDialog(parent),
      configuration_(configuration),
      file_(file),
      log_(log),
      prompts_(prompts),
      settings_(settings),
      printer_(QPrinter::HighResolution),
      By(new QLineEdit(CommissionedBy(settings))),
      preview_(new QPrintPreviewWidget(&printer_)) {
  setWindowTitle(tr("Commissioning sheet"));
  auto* column = new QVBoxLayout(this);
  auto* byRow = new QHBoxLayout;
  auto* label = new QLabel(tr("Commissioned &by:"));
  label->setBuddy(By);
  By->setObjectName(QStringLiteral("By"));
  By->setAccessibleName(tr("Commissioned by"));
  for (auto* view : preview_->findChildren<QGraphicsView*>())
    view->setAccessibleName(tr("The sheet's pages"));
  preview_->setAccessibleName(tr("Preview of the sheet"));
  By->setPlaceholderText(tr("Your name and company; kept for the next sheet"));
  byRow->addWidget(label);
  byRow->addWidget(By);
  column->addLayout(byRow);
  column->addWidget(preview_, 1);
  auto* buttons = new QHBoxLayout;
  connect(AddButton(*buttons, QStringLiteral("Print"), tr("&Print...")), &QPushButton::clicked, this,
          &SheetForm::Print_Click);
  connect(AddButton(*buttons, QStringLiteral("SavePdf"), tr("Save as P&DF...")), &QPushButton::clicked, this,
          [this] { Save_Click(kPdfFilter); });
  connect(AddButton(*buttons, QStringLiteral("SaveHtml"), tr("Save as &HTML...")), &QPushButton::clicked,
          this, [this] { Save_Click(kHtmlFilter); });
  buttons->addStretch();
  connect(AddButton(*buttons, QStringLiteral("Done"), tr("D&one")), &QPushButton::clicked, this,
          &QDialog::accept);
  column->addLayout(buttons);
  connect(preview_, &QPrintPreviewWidget::paintRequested, this,
          [this](QPrinter* printer) { PrintSheet(html_, *printer); });
  connect(By, &QLineEdit::editingFinished, this, &SheetForm::By_Change);
  for (auto* pages : preview_->findChildren<QGraphicsView*>())
    pages->setAccessibleName(tr("Pages of the sheet"));
  preview_->setZoomMode(QPrintPreviewWidget::FitToWidth);
  resize(kSheetSize);
  FitToScreen(this);
  By_Change();
}

void SheetForm::By_Change() {
  KeepCommissionedBy(settings_, By->text());
  html_ = DoBusy(this, tr("Still reading the work log."),
                 [&, by = By->text()] { return SheetHtml(configuration_, file_, log_, by); });
  preview_->updatePreview();
}

void SheetForm::Print_Click() {
  By_Change();
  QPrintDialog dialog(&printer_, this);
  if (dialog.exec() == QDialog::Accepted) preview_->print();
}

void SheetForm::Save_Click(const char* filter) {
  By_Change();
  const std::optional<QString> chosen =
      prompts_.SaveFile(this, tr("Save the Commissioning Sheet"), filter, FolderOf(file_));
  if (!chosen) return;
  try {
    const std::filesystem::path file = ToPath(*chosen);
    const Bytes sheet = SheetFor(html_, file);
    DoBusy(this, tr("Still writing %1.").arg(QFileInfo(*chosen).fileName()),
           [&] { WriteFileSafely(file, sheet); });
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
}

}  // namespace qdm
