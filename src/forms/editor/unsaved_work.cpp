#include "forms/editor/unsaved_work.h"

#include "config/configuration_file.h"

#include <QFileInfo>
#include <QSettings>

#include <string>

namespace qdm {
namespace {

const QString kKey = QStringLiteral("unsavedWork");

}  // namespace

void KeepUnsavedWork(const std::filesystem::path& folder, const PanelConfiguration& configuration,
                     QSettings& settings) {
  std::filesystem::path file = folder / "Unsaved.BVC";
  for (int number = 2; std::filesystem::exists(file); ++number) {
    file = folder / ("Unsaved " + std::to_string(number) + ".BVC");
  }
  WriteConfiguration(file, configuration, OldTail::Dropped);
  settings.setValue(kKey, QString::fromStdString(PathToUtf8(file)));
}

QString TakeUnsavedWork(QSettings& settings) {
  const QString file = settings.value(kKey).toString();
  settings.remove(kKey);
  return QFileInfo::exists(file) ? file : QString();
}

}  // namespace qdm
