// Opens the program's windows with what they share. The main window gets them as functions (EditorWindows),
// so that no form knows another folder's forms.
#pragma once

#include "forms/editor/projector_panel_editor.h"
#include "forms/work_log/download_recorder.h"

class QSettings;
class QString;
class QWidget;

namespace qdm {

class Help;
class SerialPorts;
class UserPrompts;
class Waiting;
class WorkLog;
struct Globals;
struct PanelConfiguration;
struct ProjectorDefinition;

class ProgramWindows {
 public:
  struct SharedParts {
    qdm::Globals& Globals;
    SerialPorts& Ports;
    Waiting& Time;
    UserPrompts& Prompts;
    QSettings& Settings;
    WorkLog& Log;
    qdm::Help& Help;
  };

  explicit ProgramWindows(const SharedParts& shared);

  // They stay usable as long as this does; those that change the main window's record need SetEditor.
  EditorWindows ForEditor();
  void SetEditor(ProjectorPanelEditor& editor) { editor_ = &editor; }

 private:
  void OpenSelector(QWidget* parent);
  void SetUpProjector(QWidget* parent);
  void EditString(QWidget* parent, int firstByte);
  void OpenConsole(QWidget* parent);
  void OpenBench(QWidget* parent, ProjectorDefinition& projector);
  // `file` is what the configuration was opened from, empty for none.
  void OpenDownload(QWidget* parent, const PanelConfiguration& configuration, const QString& file);
  void OpenWorkLog(QWidget* parent);
  void OpenRooms(QWidget* parent);
  void OpenSheet(QWidget* parent, const PanelConfiguration& configuration);

  SharedParts shared_;
  DownloadRecorder recorder_;
  ProjectorPanelEditor* editor_ = nullptr;
};

}  // namespace qdm
