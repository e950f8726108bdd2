#include "forms/projectors/library_conflict_form.h"

#include "projectors/library_conflict.h"

#include <QCheckBox>
#include <QPushButton>

#include <cstddef>

namespace qdm {
namespace {

ProjectorDefinition FirstOf(const ProjectorLibrary::Group& group) {
  return group.empty() ? ProjectorDefinition{} : group.front();
}

}  // namespace

LibraryConflictForm::LibraryConflictForm(const LibraryConflict& conflict, const QuestionPlace& place,
                                         QWidget* parent)
    : DifferenceDialog(
          {tr("Changed By Somebody Else"),
           conflict.Ours.empty()     ? tr("You deleted this projector, and somebody else has changed it.")
           : conflict.Theirs.empty() ? tr("You changed this projector, and somebody else has deleted it.")
                                     : tr("You changed this projector, and somebody else has changed it "
                                          "differently."),
           conflict.Ours.empty() || conflict.Theirs.empty() ? tr("Before") : tr("Mine"),
           conflict.Theirs.empty() ? tr("Mine") : tr("Theirs")},
          conflict.Named(), parent) {
  ShowFrameTitle(tr("Projector in the data base"));
  ShowPlace(place);
  if (conflict.Ours.empty()) {
    ShowDifferences(FirstOf(conflict.Base), FirstOf(conflict.Theirs));
    AddButtons(tr("Mine: delete it"), tr("Theirs: keep it as they have changed it"));
  } else if (conflict.Theirs.empty()) {
    ShowDifferences(FirstOf(conflict.Base), FirstOf(conflict.Ours));
    AddButtons(tr("Mine: keep it as I have changed it"), tr("Theirs: delete it"));
  } else {
    ShowDifferences(FirstOf(conflict.Ours), FirstOf(conflict.Theirs));
    AddButtons(tr("Mine: save the projector as I have changed it"),
               tr("Theirs: keep the projector as they have changed it"));
  }
  forAll_ = AddForAllCheck(tr("Do the same with all further projectors that were changed on both sides"));
}

void LibraryConflictForm::AddButtons(const QString& mine, const QString& theirs) {
  const auto* mineButton = AddButton("Mine", mine);
  auto* theirsButton = AddButton("Theirs", theirs);
  connect(mineButton, &QPushButton::clicked, this, [this] { Decide(ConflictAnswer::Mine); });
  connect(theirsButton, &QPushButton::clicked, this, [this] { Decide(ConflictAnswer::Theirs); });
  MakeDefault(theirsButton);
}

bool LibraryConflictForm::ForAll() const { return forAll_->isChecked(); }

void LibraryConflictForm::Decide(ConflictAnswer answer) {
  answer_ = answer;
  accept();
}

bool SettleLibraryConflicts(ProjectorLibrary& library, const std::vector<LibraryConflict>& conflicts,
                            QWidget* parent) {
  std::vector<const LibraryConflict*> theirs;
  std::optional<ConflictAnswer> forAll;
  for (std::size_t i = 0; i < conflicts.size(); ++i) {
    std::optional<ConflictAnswer> answer = forAll;
    if (!answer) {
      LibraryConflictForm form(conflicts[i], {i + 1, conflicts.size()}, parent);
      form.exec();
      answer = form.Answer();
      if (form.ForAll()) forAll = answer;
    }
    if (!answer) {
      LeaveOpen(library, conflicts);
      return false;
    }
    if (*answer == ConflictAnswer::Theirs) theirs.push_back(&conflicts[i]);
  }
  for (const LibraryConflict* conflict : theirs) TakeTheirs(library, *conflict);
  return true;
}

}  // namespace qdm
