// A definition that was changed here and by somebody else since the library was read: the dialog in which the
// user decides whose it is to be.
#pragma once

#include "forms/projectors/difference_dialog.h"
#include "projectors/library_merge.h"

#include <optional>
#include <vector>

namespace qdm {

enum class ConflictAnswer { Mine, Theirs };

class LibraryConflictForm : public DifferenceDialog {
  Q_OBJECT

 public:
  LibraryConflictForm(const LibraryConflict& conflict, const QuestionPlace& place, QWidget* parent = nullptr);

  // Nothing when it was closed without one.
  std::optional<ConflictAnswer> Answer() const { return answer_; }
  // The user wants it for all further conflicts too.
  bool ForAll() const;

 private:
  void AddButtons(const QString& mine, const QString& theirs);
  void Decide(ConflictAnswer answer);

  QCheckBox* forAll_ = nullptr;
  std::optional<ConflictAnswer> answer_;
};

// Asks about each and makes the library what it is to be, ready to be saved again. False when the user did
// not decide: nothing is changed, and the next save asks again.
bool SettleLibraryConflicts(ProjectorLibrary& library, const std::vector<LibraryConflict>& conflicts,
                            QWidget* parent);

}  // namespace qdm
