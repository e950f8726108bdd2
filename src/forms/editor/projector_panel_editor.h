// The main window: the one current configuration, every option of it, the projector tree and the commands of
// the toolbar. Owns the record and its file name. File trouble is told in a box and leaves the record as it
// was; nothing that would drop unsaved work goes ahead unasked, except EXIT, which keeps it in a file
// instead.
#pragma once

#include "base/file_access.h"
#include "forms/editor/configuration_history.h"
#include "forms/editor/work_commands.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/difference_text.h"

#include <QMainWindow>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QSettings;

namespace Ui {
class ProjectorPanelEditor;
}

namespace qdm {

class RecentFiles;

// What the main window opens without knowing how it is made. A window that is not there disables its command.
struct EditorWindows {
  std::function<void(QWidget* parent)> Selector;
  std::function<void(QWidget* parent, const PanelConfiguration& configuration)> Download;
  std::function<void(QWidget* parent)> FindPanel;
  // May change the definition.
  std::function<void(QWidget* parent, ProjectorDefinition& projector)> Bench;
  std::function<void(QWidget* parent)> Help;
  std::function<void(QWidget* parent)> About;
  WorkWindows Work;
};

class ProjectorPanelEditor : public QMainWindow {
  Q_OBJECT

 public:
  // All references must outlive the window.
  ProjectorPanelEditor(Globals& globals, UserPrompts& prompts, QSettings& settings, EditorWindows windows);
  ~ProjectorPanelEditor() override;

  // Shows a new configuration and the library: the one that is on its way, which the window need not wait for
  // to be seen, or what the data folder holds now.
  void Form_Load(LibraryComing coming = {});
  // What stands on the command line, perhaps in double quotes: a *.BVC is opened, a *.BVD imported. Endings
  // in lower case and files that do not exist are left alone. `others` are only named in the status line.
  void OpenNamedFile(QString commandLine, const QStringList& others = {});
  // Asks what is to become of work that was kept when the editor ended, until it is opened or discarded.
  void OfferKeptWork();
  // Keeps what is not saved, the library's changes and the setup dialog's included, in files of their own,
  // once. False, without a word, when that is impossible. Shows nothing and runs no event.
  bool KeepWork() noexcept;
  // For who ends the program: closing asks nothing from here on.
  void LeaveUnasked() {
    exiting_ = true;
    globals_.Leaving = true;
  }
  // False when the user wants to stay with what is there, or the file cannot be opened.
  bool OpenRoom(const QString& fileName);
  // Shows a configuration that has no file of its own yet.
  bool ShowUnsaved(const PanelConfiguration& configuration);

  const PanelConfiguration& Configuration() const { return record_; }
  const QString& FileName() const { return fileName_; }
  // Something is to be saved: a change, or a stored value that no control can show as it is.
  bool Modified() const;
  void ShowStatus(const QString& text);

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ShowFirstImage();
  void SetUpToolbar();
  void ConnectControls();
  void RestoreWindow();
  void FitToScreen();
  void ShowToolTips();

  void New();
  void Open();
  bool Save();
  bool SaveAs();
  void EditProjector();
  void Download();
  void Exit();
  void Help();
  void About();
  void FindPanel();
  void Bench();
  void Undo();
  void Redo();

  void TreeView1_NodeClick(std::size_t element);
  void TreeView1_SelectionChange();
  void Filter_Change(const QString& text);
  void RecentFile_Click(const QString& fileName);
  void NoteChange(ConfigurationHistory::Change change);

  void ShowRecordInControls();
  void StoreControlsToRecord();
  bool CheckConfiguration();
  void ShowProjector();
  void RefreshTitle();

  // Runs what writes the file.
  using Running = std::function<void(const std::function<void()>& write)>;
  bool KeepWorkBy(const Running& run) noexcept;
  void KeepConfiguration(const Running& run);
  void KeepDefinitions(const Running& run);
  void DropKeptDefinitions();
  // False when the user wants to stay with what is there.
  bool MayDiscard();
  bool OpenConfiguration(const QString& fileName);
  bool WriteRecord(const QString& fileName, OldTail tail);
  void BecomeFile(const QString& fileName);
  QString StartFolder() const;
  void DropKeptFile();
  bool Discard(const QString& keptFile);
  void RebuildTree();
  void ReadLibraryAgain();
  void ImportProjectors(const QString& fileName);
  void OpenDropped(const QString& fileName);

  PanelConfiguration RecordAsShown() const;
  void SetBaseline();
  void Restore(const PanelConfiguration& past);

  Globals& globals_;
  UserPrompts& prompts_;
  QSettings& settings_;
  EditorWindows windows_;
  std::unique_ptr<Ui::ProjectorPanelEditor> ui_;
  RecentFiles* recentFiles_;
  WorkCommands* work_;

  PanelConfiguration record_;
  PanelConfiguration baseline_;  // the record as the controls showed it when it was opened or saved
  PanelConfiguration onDisk_;    // what the file held when it was opened or saved
  std::vector<DifferenceText> notAsStored_;  // values that the controls show otherwise than the file has them
  ConfigurationHistory history_;
  QString fileName_;  // empty for a configuration that has never been saved or opened
  QString keptFile_;  // where the work was kept, in case that something happens
  std::optional<PanelConfiguration> kept_;
  QString keptDefinitionsFile_;
  std::vector<ProjectorDefinition> keptDefinitions_;
  std::string whyNotKept_;
  bool showingProjector_ = false;  // the tree is being told, not the user
  bool exiting_ = false;
};

}  // namespace qdm
