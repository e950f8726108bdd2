#include "forms/editor/unsaved_work.h"

#include "config/configuration_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <string>
#include <system_error>

namespace qdm {
namespace {

const QString kKey = QStringLiteral("unsavedWork");

}  // namespace

QString KeepUnsavedWork(const std::filesystem::path& folder, const PanelConfiguration& configuration,
                        QSettings& settings) {
  std::filesystem::path file = folder / "Unsaved.BVC";
  // A name that cannot be looked at is left to the writing, which says why.
  std::error_code error;
  for (int number = 2; std::filesystem::exists(file, error) && !error; ++number) {
    file = folder / ("Unsaved " + std::to_string(number) + ".BVC");
  }
  WriteConfiguration(file, configuration, OldTail::Dropped);
  const QString name = QString::fromStdString(PathToUtf8(file));
  settings.setValue(kKey, QStringList(name) + settings.value(kKey).toStringList());
  settings.sync();  // nobody knows how long the program still has
  return name;
}

QStringList KeptWork(QSettings& settings) {
  QStringList kept;
  for (const QString& file : settings.value(kKey).toStringList()) {
    if (QFileInfo::exists(file)) kept << file;
  }
  return kept;
}

void ForgetKeptWork(const QString& fileName, QSettings& settings) {
  QStringList kept = settings.value(kKey).toStringList();
  kept.removeAll(fileName);
  settings.setValue(kKey, kept);
}

void DiscardKeptWork(const QString& fileName, QSettings& settings) {
  ForgetKeptWork(fileName, settings);
  QFile::remove(fileName);
}

}  // namespace qdm
