// The window "Work log": every download with its details, and what can be done with the configuration that
// was sent: opened, compared with its file as it is now, sent again. File trouble is told in a box.
// The newest downloads are there at once; the rest of a long log is read when the window has been painted.
#pragma once

#include "config/panel_configuration.h"
#include "work_log/work_log.h"

#include <QDialog>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class WorkLogForm;
}

namespace qdm {

class UserPrompts;
class WorkLogModel;

// What is done elsewhere with a configuration; `file` may be empty.
struct ConfigurationCommands {
  // True when it has been opened.
  std::function<bool(QWidget* parent, const PanelConfiguration& configuration)> Open;
  std::function<void(QWidget* parent, const PanelConfiguration& configuration, const QString& file)> Send;
};

class WorkLogForm : public QDialog {
  Q_OBJECT

 public:
  WorkLogForm(WorkLog& log, UserPrompts& prompts, ConfigurationCommands commands, QWidget* parent = nullptr);
  ~WorkLogForm() override;

 private:
  void Form_Load();
  void LoadRest();
  void Read(std::size_t atMost);
  void Filter_Change(const QString& text);
  void Entries_Select();
  void OpenAsConfiguration_Click();
  void Compare_Click();
  void SendAgain_Click();
  void Export_Click();

  const WorkLogEntry* Selected() const;
  // Of the selected entry; what keeps it from being had is told.
  std::optional<PanelConfiguration> SelectedConfiguration();
  void ShowCount();

  std::unique_ptr<Ui::WorkLogForm> ui_;
  WorkLog& log_;
  UserPrompts& prompts_;
  ConfigurationCommands commands_;
  WorkLogModel* model_;
  bool whole_ = false;  // all entries have been read
};

}  // namespace qdm
