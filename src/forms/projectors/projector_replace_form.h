// Two definitions of one manufacturer and model that are not the same: the dialogs in which the user decides.
// Both show what differs and work on Globals::CurrentProjector, the incoming definition; the library's is
// found by its names when the dialog loads. A dialog that is closed by its close box has changed nothing.
#pragma once

#include "forms/projectors/difference_dialog.h"

#include <cstddef>
#include <optional>

namespace qdm {

struct Globals;
class UserPrompts;

enum class ReplaceAnswer { DoNothing, NewInData, ReplaceInConfiguration, ReplaceInDataBase };

// What both dialogs have in common.
class ReplaceDialog : public DifferenceDialog {
  Q_OBJECT

 protected:
  // The library must hold a definition with the names of CurrentProjector. `incomingColumn`: whose values the
  // table's second column holds.
  ReplaceDialog(const QString& title, const QString& explanation, const QString& incomingColumn,
                Globals& globals, UserPrompts& prompts, QWidget* parent);

  // Asks for the new names. True when the definition was appended to the library under them; it stays in
  // ClipboardProjector.
  bool AppendUnderNewName();
  void ReplaceElement(const ProjectorDefinition& projector);

  Globals& globals_;
  UserPrompts& prompts_;
  const std::size_t index_;  // of the library's definition
};

// For the projector of a configuration that is being opened. What it changes in the library is saved at once;
// when that fails, the user is told, the library is as it was, and the dialog stays.
class ProjectorReplaceForm : public ReplaceDialog {
  Q_OBJECT

 public:
  ProjectorReplaceForm(Globals& globals, UserPrompts& prompts, QWidget* parent = nullptr);

 private:
  void NewInData_Click();
  void ReplaceInConfiguration_Click();
  void ReplaceInDataBase_Click();
};

// For a definition that is being imported. Nothing is saved to disk here.
class ProjectorReplaceForm2 : public ReplaceDialog {
  Q_OBJECT

 public:
  // `taken`: how many definitions this import has taken so far.
  ProjectorReplaceForm2(Globals& globals, UserPrompts& prompts, const QuestionPlace& place, std::size_t taken,
                        QWidget* parent = nullptr);

  // Keep or replace, when the user wants that for all further conflicts of the import too.
  std::optional<ReplaceAnswer> AnswerForAll() const { return answerForAll_; }
  // The import ends here; what it has taken stays.
  bool Stopped() const { return stopped_; }

 private:
  void ReplaceInDataBase_Click();
  void NewInData_Click();
  void DoNothing_Click();
  void StopHere_Click();
  void Answer(ReplaceAnswer answer);

  QCheckBox* forAll_ = nullptr;
  std::optional<ReplaceAnswer> answerForAll_;
  bool stopped_ = false;
};

// Reconciles a configuration's projector with the library's definition of the same names, which must be there
// and differ. The definition that the configuration is to carry from now on, or nothing when it keeps its
// own.
std::optional<ProjectorDefinition> SettleConfigurationConflict(Globals& globals, UserPrompts& prompts,
                                                               QWidget* parent,
                                                               const ProjectorDefinition& projector);

}  // namespace qdm
