#include "forms/editor/recent_files.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace qdm {
namespace {

const QString kKey = QStringLiteral("recentFiles");

#ifdef _WIN32
constexpr Qt::CaseSensitivity kFileNames = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity kFileNames = Qt::CaseSensitive;
#endif

QStringList Without(const QStringList& names, const QString& fileName) {
  QStringList others;
  for (const QString& name : names) {
    if (name.compare(fileName, kFileNames) != 0) others.append(name);
  }
  return others;
}

}  // namespace

RecentFiles::RecentFiles(QSettings& settings, QWidget* parent) : QMenu(parent), settings_(settings) {
  setToolTipsVisible(true);
  Fill();
}

void RecentFiles::Add(const QString& fileName) {
  const QString path = QFileInfo(fileName).absoluteFilePath();
  Store((QStringList(path) + Without(Names(), path)).mid(0, kLength));
}

void RecentFiles::Remove(const QString& fileName) {
  Store(Without(Names(), QFileInfo(fileName).absoluteFilePath()));
}

QStringList RecentFiles::Names() const { return settings_.value(kKey).toStringList().mid(0, kLength); }

void RecentFiles::Store(const QStringList& names) {
  settings_.setValue(kKey, names);
  Fill();
}

void RecentFiles::Fill() {
  clear();
  int number = 0;
  for (const QString& path : Names()) {
    QString name = QFileInfo(path).fileName();
    name.replace(QLatin1Char('&'), QLatin1String("&&"));
    QAction* action = addAction(QStringLiteral("&%1  %2").arg(++number % kLength).arg(name));
    action->setToolTip(QDir::toNativeSeparators(path));
    connect(action, &QAction::triggered, this, [this, path] { Q_EMIT Chosen(path); });
  }
  if (isEmpty()) addAction(tr("No recent files"))->setEnabled(false);
}

}  // namespace qdm
