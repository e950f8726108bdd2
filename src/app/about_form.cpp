#include "app/about_form.h"

#include "base/file_access.h"
#include "base/words.h"
#include "config/maker.h"
#include "config/version.h"
#include "forms/shared/link_colour.h"
#include "ui_about_form.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QFile>
#include <QUrl>

#include <string>
#include <string_view>

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
  ShowLinks();

  connect(ui_->Licence, &QPushButton::clicked, this, &AboutForm::Licence_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &QDialog::accept);
}

AboutForm::~AboutForm() = default;

void AboutForm::ShowLinks() {
  const QString link = QStringLiteral("<a href=\"%1\" style=\"color: %3\">%2</a>");
  const QString colour = LinkColour(palette(), QPalette::Window).name();
  const QString web = Text(kMakerWebAddress);
  const QString support = Text(kMakerSupportAddress);
  ui_->WebLabel->setText(link.arg(QStringLiteral("https://") + web, web, colour));
  ui_->SupportLabel->setText(link.arg(QStringLiteral("mailto:") + support, support, colour));
}

void AboutForm::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowLinks();
}

void AboutForm::Licence_Click() {
  const std::string name = PathToUtf8(licence_);
  if (QFile::exists(QString::fromStdString(name)) && OpenFile(QString::fromStdString(name))) return;
  prompts_.Show(this, {Say("The licence text cannot be opened.\r\n%1", {name}), Say("Sorry"),
                       MessageIcon::Exclamation});
}

}  // namespace qdm
