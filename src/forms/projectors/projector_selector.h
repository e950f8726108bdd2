// The window in which the user browses and maintains the projector library: manufacturers and their models in
// a tree, and the commands of the toolbar. Works on Globals: the library, the one-definition clipboard, and
// CurrentProjector, through which it hands a definition to the setup dialog. However it is closed, it writes
// the library first, changed or not; when that fails, the user decides whether it stays open. Every change
// can be undone until then. What others saved is shown when the window comes to the front.
#pragma once

#include <QDialog>
#include <QUndoStack>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QSettings;

namespace Ui {
class ProjectorSelector;
}

namespace qdm {

struct Globals;
struct ProjectorDefinition;
class UserPrompts;

class ProjectorSelector : public QDialog {
  Q_OBJECT

 public:
  // Edits Globals::CurrentProjector and, on Done, stores it in the library.
  using SetupDialog = std::function<void(QWidget* parent)>;

  ProjectorSelector(Globals& globals, UserPrompts& prompts, SetupDialog setUp, QWidget* parent = nullptr);
  ~ProjectorSelector() override;

  // Where the order of the manufacturers is kept.
  void RememberIn(QSettings& settings);

  // Every way to close the window comes through here.
  void done(int result) override;

 protected:
  bool event(QEvent* event) override;

 private:
  class Step;
  struct Command;
  static const std::vector<Command>& Commands();

  void FillToolbar();
  void AddUndo();
  // Runs a command; what it changes in the library is one step, undone by the name "Delete ACME / One".
  void Run(const Command& command);
  void ReadAgain();
  void Form_Load();
  void Filter_Return();
  void UpdateToolbar();

  void New();
  void FromManual();
  void Copy();
  void Cut();
  void Paste();
  void Delete();
  void Edit();
  void Rename();
  void Import();
  void Export();
  void Exit();

  void SetUpCurrentProjector();
  bool Confirm(const std::string& question);
  void RemoveSelected();
  void RemoveAll(std::vector<std::size_t> elements);
  void ShowAfterStep(const ProjectorDefinition* projector);
  // `reason`: why it is not enabled, for the user.
  void Enable(const char* key, bool enabled, const QString& reason = {});
  void ShowPreview();
  void Tell(const QString& text);

  QAction* ActionOf(const char* key) const;
  const ProjectorDefinition& SelectedProjector() const;
  // Rebuilds the tree and selects a definition; empties the filter when that hides it.
  void ShowProjector(const ProjectorDefinition& projector);

  Globals& globals_;
  UserPrompts& prompts_;
  SetupDialog setUp_;
  std::unique_ptr<Ui::ProjectorSelector> ui_;
  QUndoStack undo_;
  bool busy_ = false;  // in a command or closing: the library is not to be read again
};

}  // namespace qdm
