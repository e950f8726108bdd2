#include "app/about_form.h"

#include "config/maker.h"
#include "config/version.h"
#include "projectors/file_access.h"
#include "ui_about_form.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QUrl>

namespace qdm {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

AboutForm::AboutForm(const std::filesystem::path& programFolder, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent),
      OpenFile([](const QString& name) { return QDesktopServices::openUrl(QUrl::fromLocalFile(name)); }),
      ui_(std::make_unique<Ui::AboutForm>()),
      licence_(programFolder / "licence.txt"),
      prompts_(prompts) {
  ui_->setupUi(this);
  ui_->ProgramIcon->setPixmap(QIcon(QStringLiteral(":/icons/qdm-editor-64.png")).pixmap(64));
  QFont title = ui_->ProgramName->font();
  title.setPointSizeF(title.pointSizeF() * 1.5);
  title.setBold(true);
  ui_->ProgramName->setFont(title);
  ui_->VersionLabel->setText(tr("Version %1").arg(QString::fromStdString(VersionText())));
  ui_->MakerLabel->setText(tr("Made by %1").arg(Text(kMakerName)));
  ui_->WebLabel->setText(QStringLiteral("<a href=\"https://%1\">%1</a>").arg(Text(kMakerWebAddress)));
  ui_->SupportLabel->setText(QStringLiteral("<a href=\"mailto:%1\">%1</a>").arg(Text(kMakerSupportAddress)));

  connect(ui_->Licence, &QPushButton::clicked, this, &AboutForm::Licence_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &QDialog::accept);
}

AboutForm::~AboutForm() = default;

void AboutForm::Licence_Click() {
  const std::string name = PathToUtf8(licence_);
  if (QFile::exists(QString::fromStdString(name)) && OpenFile(QString::fromStdString(name))) return;
  prompts_.Show(this, {"The licence text cannot be opened.\r\n" + name, "Sorry", MessageIcon::Exclamation});
}

}  // namespace qdm
