#include "app/qt_prompts.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <optional>

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

// Names come from files: they must never be read as rich text.
void SetUp(QMessageBox& box, const Message& message) {
  box.setIcon(IconOf(message.Icon));
  box.setWindowTitle(QString::fromStdString(message.Title));
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(message.Text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
}

struct FileFilter {
  QString ForQt;      // "Caption (*.BVC *.bvc)"
  QString Extension;  // ".BVC"
};

FileFilter FilterOf(const char* filter) {
  const QString text = QString::fromLatin1(filter);
  const QString pattern = text.section(QLatin1Char('|'), 1);
  const QString caption = text.section(QLatin1Char('|'), 0, 0).section(QLatin1String(" ("), 0, 0);
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
  box.button(QMessageBox::Discard)->setText(QStringLiteral("&Don't save"));
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

std::optional<QString> QtPrompts::OpenFile(QWidget* parent, const char* filter) {
  const QString name = QFileDialog::getOpenFileName(parent, {}, {}, FilterOf(filter).ForQt);
  return name.isEmpty() ? std::nullopt : std::optional(name);
}

std::optional<QString> QtPrompts::SaveFile(QWidget* parent, const char* filter) {
  const FileFilter chosen = FilterOf(filter);
  QFileDialog dialog(parent, {}, {}, chosen.ForQt);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(chosen.Extension.mid(1));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().constFirst();
}

}  // namespace qdm
