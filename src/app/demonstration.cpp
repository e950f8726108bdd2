#include "app/demonstration.h"

#include "base/file_access.h"
#include "base/words.h"
#include "forms/shared/qt_text.h"

#include <QCoreApplication>
#include <QDir>

namespace qdm {
namespace {

// Installed beside the program; a build that is not installed knows the source tree's.
QDir FindExamples() {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const QString& folder : {program.filePath(QStringLiteral("examples")), QStringLiteral(QDM_EXAMPLES)}) {
    if (QFileInfo::exists(folder + QStringLiteral("/Projectors.DEF"))) return QDir(folder);
  }
  throw FileError(ToPath(program.filePath(QStringLiteral("examples"))), "find",
                  Say("the examples are missing"));
}

QString CopyInto(const QTemporaryDir& folder, const QString& file) {
  QString copy = folder.filePath(QFileInfo(file).fileName());
  WriteFileSafely(ToPath(copy), ReadWholeFile(ToPath(file)));
  return copy;
}

}  // namespace

Demonstration::Demonstration(const QString& file) {
  if (!folder_.isValid())
    throw FileError(ToPath(folder_.path()), "make", folder_.errorString().toStdString());
  const QDir examples = FindExamples();
  for (const QString& name : examples.entryList(QDir::Files, QDir::Name)) {
    const QString suffix = QFileInfo(name).suffix();
    if (suffix != QLatin1String("DEF") && suffix != QLatin1String("BVC") && suffix != QLatin1String("BVD")) {
      continue;
    }
    const QString copy = CopyInto(folder_, examples.filePath(name));
    if (suffix == QLatin1String("BVC") && configuration_.isEmpty()) configuration_ = copy;
  }
  if (!file.isEmpty()) configuration_ = CopyInto(folder_, file);
}

std::filesystem::path Demonstration::Folder() const { return ToPath(folder_.path()); }

}  // namespace qdm
