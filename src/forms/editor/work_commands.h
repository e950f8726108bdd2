// What the main window offers beside the single configuration, behind one button of its toolbar: the work
// log, the rooms, the commissioning sheet, and the page that says the configuration in words.
#pragma once

#include <QObject>

#include <functional>

class QKeySequence;
class QMainWindow;
class QMenu;
class QSettings;
class QSplitter;
class QToolBar;

namespace qdm {

class WordsPage;
struct PanelConfiguration;

// What opens the windows; one that is not there has no entry in the menu.
struct WorkWindows {
  std::function<void(QWidget* parent)> WorkLog;
  std::function<void(QWidget* parent)> Rooms;
  // With the configuration as it is shown, saved or not.
  std::function<void(QWidget* parent, const PanelConfiguration& configuration)> Sheet;
};

class WorkCommands : public QObject {
  Q_OBJECT

 public:
  // The page stands in `columns` between the first of them and the options.
  WorkCommands(QMainWindow& window, QToolBar& toolbar, QSplitter& columns, QSettings& settings,
               const WorkWindows& windows, std::function<PanelConfiguration()> shown);

  // To be called after every change of an option.
  void ConfigurationChanged();

 private:
  void AddCommand(QMenu& menu, const QString& text, const QKeySequence& key, std::function<void()> run);
  void ShowWords(bool visible);

  QMainWindow& window_;
  QSplitter& columns_;
  QSettings& settings_;
  std::function<PanelConfiguration()> shown_;
  WordsPage* page_;
  int firstWidth_ = 0;  // of the first column, also while it is hidden
};

}  // namespace qdm
