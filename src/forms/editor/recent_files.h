// The last ten configurations that were opened or saved, newest first: kept in the settings, shown as a menu.
#pragma once

#include <QMenu>
#include <QStringList>

class QSettings;

namespace qdm {

class RecentFiles : public QMenu {
  Q_OBJECT

 public:
  static constexpr int kLength = 10;

  // `settings` must outlive the menu.
  explicit RecentFiles(QSettings& settings, QWidget* parent = nullptr);

  void Add(const QString& fileName);
  void Remove(const QString& fileName);

 Q_SIGNALS:
  void Chosen(const QString& fileName);

 private:
  QStringList Names() const;
  void Store(const QStringList& names);
  void Fill();

  QSettings& settings_;
};

}  // namespace qdm
