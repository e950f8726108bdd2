// The compiled help file "qdm.chm": shown by the system's viewer on Windows and by a window of our own
// elsewhere.
#pragma once

#include "forms/shared/user_prompts.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <filesystem>

namespace qdm {

class Help : public QObject {
  Q_OBJECT

 public:
  Help(const std::filesystem::path& programFolder, UserPrompts& prompts);
  ~Help() override;

  // Opens the page about the window, or the first page for a window without one. A missing file is told in a
  // box.
  void ShowFor(QWidget* window);
  void Show(QWidget* owner, const QString& page);
  void CloseAll();

  // The page about a window; empty when it has none.
  static QString PageFor(const QWidget* window);
  // Every page that PageFor can name.
  static QStringList Pages();

 protected:
  // F1 in any window of the program; the filter is for the application.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString FileName() const;
  void Attach(QWidget* owner);

  std::filesystem::path file_;
  UserPrompts& prompts_;
  QPointer<QWidget> window_;
};

}  // namespace qdm
