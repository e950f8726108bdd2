#include "forms/projectors/projector_replace_form.h"

#include "forms/projectors/new_name_form.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"

#include <QCheckBox>
#include <QPushButton>

#include <cstddef>

namespace qdm {

ReplaceDialog::ReplaceDialog(const QString& title, const QString& explanation, const QString& incomingColumn,
                             Globals& globals, UserPrompts& prompts, QWidget* parent)
    : DifferenceDialog({title, explanation, incomingColumn, tr("In my data base")}, globals.CurrentProjector,
                       parent),
      globals_(globals),
      prompts_(prompts),
      index_(globals.ProjectorDatabase.FindProjector(globals.CurrentProjector).value()) {
  ShowDifferences(globals.CurrentProjector, globals.ProjectorDatabase[index_]);
}

bool ReplaceDialog::AppendUnderNewName() {
  globals_.ClipboardProjector = globals_.CurrentProjector;
  NewNameForm names(globals_, prompts_, this);
  names.exec();
  return globals_.ClipboardProjector.Manufacturer != globals_.CurrentProjector.Manufacturer ||
         globals_.ClipboardProjector.Model != globals_.CurrentProjector.Model;
}

void ReplaceDialog::ReplaceElement(const ProjectorDefinition& projector) {
  ProjectorDefinition element = projector;
  CleanNames(element);  // a configuration may hold its manufacturer in lower case
  globals_.ProjectorDatabase.Replace(index_, element);
}

ProjectorReplaceForm::ProjectorReplaceForm(Globals& globals, UserPrompts& prompts, QWidget* parent)
    : ReplaceDialog(
          tr("Replace Projector?"),
          tr("The projector in this configuration has the same manufacturer and model as one in the "
             "data base but is not the same."),
          tr("In the configuration"), globals, prompts, parent) {
  auto* doNothing = AddButton(
      "DoNothing", tr("Keep the projector in the configuartion and make no changes in my data base"));
  const auto* newInData =
      AddButton("NewInData",
                tr("Add the projector in this configuration to my data base under a new manufacturer/model"));
  const auto* inConfiguration = AddButton(
      "ReplaceInConfiguration", tr("Replace projector in the configuration with the one in my data base"));
  const auto* inDataBase = AddButton(
      "ReplaceInDataBase", tr("Replace the projector in my data base with the one in the configuration"));
  MakeDefault(doNothing);
  connect(doNothing, &QPushButton::clicked, this, &QDialog::reject);
  connect(newInData, &QPushButton::clicked, this, &ProjectorReplaceForm::NewInData_Click);
  connect(inConfiguration, &QPushButton::clicked, this, &ProjectorReplaceForm::ReplaceInConfiguration_Click);
  connect(inDataBase, &QPushButton::clicked, this, &ProjectorReplaceForm::ReplaceInDataBase_Click);
}

void ProjectorReplaceForm::NewInData_Click() {
  if (!AppendUnderNewName()) {
    reject();
  } else if (SaveLibrary(globals_, prompts_, this)) {
    globals_.CurrentProjector = globals_.ClipboardProjector;
    accept();
  } else if (const auto own = globals_.ProjectorDatabase.FindProjector(globals_.ClipboardProjector)) {
    globals_.ProjectorDatabase.Remove(*own);
  }
}

void ProjectorReplaceForm::ReplaceInConfiguration_Click() {
  globals_.CurrentProjector = globals_.ProjectorDatabase[index_];
  accept();
}

void ProjectorReplaceForm::ReplaceInDataBase_Click() {
  const ProjectorDefinition old = globals_.ProjectorDatabase[index_];
  ReplaceElement(globals_.CurrentProjector);
  if (SaveLibrary(globals_, prompts_, this)) {
    accept();
  } else if (const auto own = globals_.ProjectorDatabase.FindProjector(old)) {
    globals_.ProjectorDatabase.Replace(*own, old);
  }
}

ProjectorReplaceForm2::ProjectorReplaceForm2(Globals& globals, UserPrompts& prompts,
                                             const QuestionPlace& place, std::size_t taken, QWidget* parent)
    : ReplaceDialog(
          tr("Replace/Add Projector"),
          tr("The projector in this BVD has the same manufacturer and model as one in the data base "
             "but is not the same."),
          tr("In this BVD"), globals, prompts, parent) {
  ShowPlace(place);
  const auto* inDataBase =
      AddButton("ReplaceInDataBase", tr("Replace the projector in my data base with this projector"));
  auto* newInData =
      AddButton("NewInData", tr("Add this projector to my data base under a new manufacturer/model"));
  auto* doNothing = AddButton("DoNothing", tr("Do not import this projector"));
  const auto* stopHere = AddButton("StopHere", tr("Stop here: %n taken so far", "", static_cast<int>(taken)));
  forAll_ = AddForAllCheck(tr("Do the same with all further projectors of this file that differ"));
  MakeDefault(doNothing);
  connect(inDataBase, &QPushButton::clicked, this, &ProjectorReplaceForm2::ReplaceInDataBase_Click);
  connect(newInData, &QPushButton::clicked, this, &ProjectorReplaceForm2::NewInData_Click);
  connect(doNothing, &QPushButton::clicked, this, &ProjectorReplaceForm2::DoNothing_Click);
  connect(stopHere, &QPushButton::clicked, this, &ProjectorReplaceForm2::StopHere_Click);
  // Each needs a name of its own.
  connect(forAll_, &QCheckBox::toggled, newInData, &QPushButton::setDisabled);
}

void ProjectorReplaceForm2::ReplaceInDataBase_Click() {
  ReplaceElement(globals_.CurrentProjector);
  Answer(ReplaceAnswer::ReplaceInDataBase);
}

void ProjectorReplaceForm2::NewInData_Click() {
  if (AppendUnderNewName()) globals_.CurrentProjector = globals_.ClipboardProjector;
  accept();
}

void ProjectorReplaceForm2::DoNothing_Click() { Answer(ReplaceAnswer::DoNothing); }

void ProjectorReplaceForm2::StopHere_Click() {
  stopped_ = true;
  reject();
}

void ProjectorReplaceForm2::Answer(ReplaceAnswer answer) {
  if (forAll_->isChecked()) answerForAll_ = answer;
  accept();
}

std::optional<ProjectorDefinition> SettleConfigurationConflict(Globals& globals, UserPrompts& prompts,
                                                               QWidget* parent,
                                                               const ProjectorDefinition& projector) {
  globals.CurrentProjector = projector;
  CleanName(globals.CurrentProjector.Manufacturer);  // its case is its own
  CleanName(globals.CurrentProjector.Model);
  const ProjectorDefinition incoming = globals.CurrentProjector;
  ProjectorReplaceForm form(globals, prompts, parent);
  form.exec();
  if (globals.CurrentProjector == incoming) return std::nullopt;
  return globals.CurrentProjector;
}

}  // namespace qdm
