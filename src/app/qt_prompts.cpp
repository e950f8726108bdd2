#include "app/qt_prompts.h"

#include "forms/shared/qt_text.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <optional>
#include <string>

namespace qdm {
namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

QString InLines(const std::string& text) {
  return QString::fromStdString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

// Names come from files: they must never be read as rich text.
void SetUp(QMessageBox& box, const Message& message) {
  box.setIcon(IconOf(message.Icon));
  box.setWindowTitle(QString::fromStdString(message.Title));
  box.setTextFormat(Qt::PlainText);
  box.setText(InLines(message.Text));
  box.setInformativeText(InLines(message.Detail));
  // The box has a format for its text alone; this label guesses.
  if (auto* detail = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
    detail->setTextFormat(Qt::PlainText);
  }
}

struct FileFilter {
  QString ForQt;      // "Caption (*.BVC *.bvc)"
  QString Extension;  // ".BVC"
};

FileFilter FilterOf(const char* filter) {
  const QString pattern = QString::fromLatin1(filter).section(QLatin1Char('|'), 1);
  const QString caption = Said(filter).section(QLatin1String(" ("), 0, 0);
  return {QStringLiteral("%1 (%2 %3)").arg(caption, pattern, pattern.toLower()), pattern.mid(1)};
}

}  // namespace

void QtPrompts::Show(QWidget* parent, const Message& message) {
  QMessageBox box(parent);
  SetUp(box, message);
  box.exec();
}

bool QtPrompts::AskYesNo(QWidget* parent, const Message& question) {
  QMessageBox box(parent);
  SetUp(box, question);
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

SaveAnswer QtPrompts::AskSave(QWidget* parent, const Message& question) {
  QMessageBox box(parent);
  SetUp(box, question);
  box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  box.button(QMessageBox::Discard)->setText(tr("&Don't save"));
  box.setDefaultButton(QMessageBox::Save);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Save:
      return SaveAnswer::Save;
    case QMessageBox::Discard:
      return SaveAnswer::DontSave;
    default:
      return SaveAnswer::Cancel;
  }
}

int QtPrompts::Choose(QWidget* parent, const Message& question, const QStringList& answers, int safe) {
  QMessageBox box(parent);
  SetUp(box, question);
  QList<QPushButton*> buttons;
  // All of one role: they stand in the order in which they are named.
  for (const QString& answer : answers) buttons << box.addButton(answer, QMessageBox::ActionRole);
  box.setDefaultButton(buttons.at(safe));
  box.setEscapeButton(buttons.at(safe));
  box.exec();
  const auto pressed = buttons.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
  return pressed < 0 ? safe : static_cast<int>(pressed);
}

std::optional<QString> QtPrompts::OpenFile(QWidget* parent, const QString& title, const char* filter,
                                           const QString& folder) {
  const QString name = QFileDialog::getOpenFileName(parent, title, folder, FilterOf(filter).ForQt);
  return name.isEmpty() ? std::nullopt : std::optional(name);
}

// The dialog's own question about an existing file would come before the name has its ending.
std::optional<QString> QtPrompts::SaveFile(QWidget* parent, const QString& title, const char* filter,
                                           const QString& folder) {
  const FileFilter chosen = FilterOf(filter);
  QFileDialog dialog(parent, title, folder, chosen.ForQt);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const QString name = WithEnding(dialog.selectedFiles().constFirst(), chosen.Extension);
    const QString existing = QFileInfo(name).fileName();
    if (!QFileInfo::exists(name)) return name;
    const QString question = tr("%1 already exists.\nDo you want to replace it?").arg(existing);
    if (AskYesNo(parent, {question.toStdString(), tr("Save File").toStdString(), MessageIcon::Question})) {
      return name;
    }
    dialog.selectFile(name);
  }
  return std::nullopt;
}

QString WithEnding(const QString& fileName, const QString& ending) {
  return fileName.endsWith(ending, Qt::CaseInsensitive) ? fileName : fileName + ending;
}

}  // namespace qdm
