// The window in which the user browses and maintains the projector library: manufacturers and their models in
// a tree, and the commands of the toolbar. Works on Globals: the library, the one-definition clipboard, and
// CurrentProjector, through which it hands a definition to the setup dialog. However it is closed, it writes
// the library first, changed or not; when that fails, the user decides whether it stays open.
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <vector>

class QAction;

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

  // Every way to close the window comes through here.
  void done(int result) override;

 private:
  struct Command;
  static const std::vector<Command>& Commands();

  void FillToolbar();
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
  void Import();
  void Export();
  void Exit();

  void SetUpCurrentProjector();
  bool Confirm(const char* question);
  void RemoveSelected();

  QAction* ActionOf(const char* key) const;
  const ProjectorDefinition& SelectedProjector() const;
  // Rebuilds the tree and selects a definition; empties the filter when that hides it.
  void ShowProjector(const ProjectorDefinition& projector);

  Globals& globals_;
  UserPrompts& prompts_;
  SetupDialog setUp_;
  std::unique_ptr<Ui::ProjectorSelector> ui_;
};

}  // namespace qdm
