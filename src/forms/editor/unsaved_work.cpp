#include "forms/editor/unsaved_work.h"

#include "base/file_access.h"
#include "forms/shared/globals.h"
#include "forms/shared/qt_text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSettings>

#include <optional>
#include <string>
#include <system_error>

namespace qdm {
namespace {

// A key for each file: two editors that end at the same moment keep theirs side by side.
const QString kGroup = QStringLiteral("unsavedWork");

// A name that is this program's alone, as an empty file.
std::filesystem::path TakenName(const std::filesystem::path& folder, const std::string& ending) {
  for (int number = 1;; ++number) {
    std::string name = "Unsaved";
    if (number > 1) name.append(" ").append(std::to_string(number));
    std::filesystem::path file = folder / name.append(ending);
    FileHandle handle;
    const std::error_code error = file_system::Create(file, file_system::Privacy::AsUsual, handle);
    if (!error) return file;
    if (error != std::errc::file_exists) throw FileError(file, "write", error);
  }
}

}  // namespace

std::filesystem::path WriteUnsavedWork(const std::filesystem::path& folder, const char* ending,
                                       const Bytes& bytes) {
  std::filesystem::path file = TakenName(folder, ending);
  try {
    WriteFileSafely(file, bytes);
  } catch (const FileError&) {
    static_cast<void>(file_system::Remove(file));
    throw;
  }
  return file;
}

std::vector<ProjectorDefinition> UnsavedDefinitions(const Globals& globals) {
  std::vector<ProjectorDefinition> unsaved = globals.ProjectorDatabase.ChangedElements();
  const auto edited = globals.UnstoredProjector ? globals.UnstoredProjector() : std::nullopt;
  if (!edited) return unsaved;
  unsaved.push_back(*edited);
  ProjectorDefinition& named = unsaved.back();
  if (named.Manufacturer.Trimmed().empty()) named.Manufacturer.Assign(u"UNSAVED");
  if (named.Model.Trimmed().empty()) named.Model.Assign(u"Unsaved");
  return unsaved;
}

void NoteKeptWork(const QString& fileName, QSettings& settings) {
  const QString key = QStringLiteral("%1-%2-%3")
                          .arg(QDateTime::currentMSecsSinceEpoch(), 15, 10, QLatin1Char('0'))
                          .arg(QCoreApplication::applicationPid())
                          .arg(QFileInfo(fileName).fileName());
  settings.setValue(kGroup + QLatin1Char('/') + key, fileName);
  settings.sync();  // nobody knows how long the program still has
}

QStringList KeptWork(QSettings& settings) {
  QStringList kept;
  settings.beginGroup(kGroup);
  QStringList keys = settings.childKeys();
  keys.sort();  // by time
  for (const QString& key : keys) {
    const QString file = settings.value(key).toString();
    if (QFileInfo::exists(file)) kept.prepend(file);
  }
  settings.endGroup();
  return kept;
}

void ForgetKeptWork(const QString& fileName, QSettings& settings) {
  settings.beginGroup(kGroup);
  for (const QString& key : settings.childKeys()) {
    if (settings.value(key) == fileName) settings.remove(key);
  }
  settings.endGroup();
}

void DiscardKeptWork(const QString& fileName, QSettings& settings) {
  RemoveFile(ToPath(fileName));
  ForgetKeptWork(fileName, settings);
}

}  // namespace qdm
