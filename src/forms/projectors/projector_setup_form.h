// The "Projector Setup" dialog: edits the definition in Globals::CurrentProjector and, on Done, stores it in
// the library. Closed in any other way it puts CurrentProjector back and leaves the library as it was;
// changes are dropped only after a question. Every field and every string can be undone until then.
#pragma once

#include "forms/projectors/definition_history.h"
#include "projectors/projector_definition.h"

#include <QDialog>

#include <functional>
#include <memory>

class QButtonGroup;
class QLineEdit;

namespace Ui {
class ProjectorSetupForm;
}

namespace qdm {

struct Globals;
class IntegerEntry;
class StringRows;
class UserPrompts;

// What the dialog opens for one string: both work on Globals::CurrentSlot of CurrentProjector and return when
// they are closed.
struct SlotWindows {
  std::function<void(QWidget* parent, int firstByte)> Edit;
  std::function<void(QWidget* parent)> Test;
  // The projector bench, on the whole definition; it may change it.
  std::function<void(QWidget* parent)> Bench{};
};

class ProjectorSetupForm : public QDialog {
  Q_OBJECT

 public:
  ProjectorSetupForm(Globals& globals, UserPrompts& prompts, SlotWindows windows, QWidget* parent = nullptr);
  ~ProjectorSetupForm() override;

  // Cancel, Escape and the close box.
  void reject() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void MakeGroups();
  void ConnectControls();
  void ConnectUndo();
  void OrderTabs();
  void Load();
  // Shows CurrentProjector.
  void Show();
  void LimitNumbers();
  void Store(ProjectorDefinition& projector) const;
  // The definition as the controls have it.
  ProjectorDefinition Edited() const;
  bool HasChanges() const;

  void FromManual_Click();
  void Done_Click();
  void Bench_Click();
  void EditSlot(int slot, int firstByte);
  void TestSlot(int slot);
  void PrepareSlotWindow(int slot);
  void ShowAfterSlotWindow();
  void ShowBudget();
  void PlaceColumns();
  // A change that may be one of several in one entry; one that stands for itself.
  void NoteTyping();
  void NoteChange();
  void Restore(const ProjectorDefinition& projector);
  static void ExplainRefusal(QLineEdit* box);

  std::unique_ptr<Ui::ProjectorSetupForm> ui_;
  Globals& globals_;
  UserPrompts& prompts_;
  SlotWindows windows_;
  StringRows* Strings;
  QButtonGroup* Baudrate;
  QButtonGroup* ParityOption;
  QButtonGroup* Stopbits;
  DefinitionHistory history_;
  int typing_ = 1;        // another one in another entry
  bool showing_ = false;  // controls change because the definition did
  const ProjectorDefinition opened_;
  ProjectorDefinition loaded_;  // `opened_` as the controls show it
};

}  // namespace qdm
