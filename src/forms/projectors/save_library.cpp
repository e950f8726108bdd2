#include "forms/projectors/save_library.h"

#include "base/file_access.h"
#include "forms/projectors/library_conflict_form.h"
#include "forms/projectors/library_wait_form.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/library_file.h"

#include <QCoreApplication>

#include <optional>
#include <utility>
#include <vector>

namespace qdm {
namespace {

struct SaveResult {
  bool Saved = false;
  std::optional<Message> Failure;  // neither: a conflict was left undecided
};

LibrarySaved SaveOrFindConflicts(Globals& globals, QWidget* parent) {
  LibraryWaitForm wait(parent);
  return SaveProjectorDatabase(globals.DataFolder, globals.ProjectorDatabase, wait.Patience());
}

SaveResult Save(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  try {
    for (;;) {
      const LibrarySaved saved = SaveOrFindConflicts(globals, parent);
      for (const Message& message : saved.Messages) prompts.Show(parent, message);
      if (saved.Conflicts.empty()) return {true, {}};
      if (!SettleLibraryConflicts(globals.ProjectorDatabase, saved.Conflicts, parent)) return {};
    }
  } catch (const FileError& error) {
    return {false, SorryAbout(error)};
  }
}

}  // namespace

bool SaveLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  const SaveResult result = Save(globals, prompts, parent);
  if (result.Failure) prompts.Show(parent, *result.Failure);
  return result.Saved;
}

bool SaveLibraryOrAsk(Globals& globals, UserPrompts& prompts, QWidget* window) {
  globals.LibraryNotice.clear();
  SaveResult result = Save(globals, prompts, window);
  if (!result.Failure) return result.Saved;
  if (!globals.ProjectorDatabase.Changed()) {
    globals.LibraryNotice =
        QCoreApplication::translate("qdm::SaveLibrary", "The data base is unchanged and was not saved: %1")
            .arg(QString::fromStdString(result.Failure->Text))
            .toStdString();
    return true;
  }
  result.Failure->Text +=
      "\r\n\r\nThe projector data base has not been saved. Do you wish to close this window all the "
      "same?\r\nWith No it stays open, and you can close it again to try once more.";
  return prompts.AskYesNo(window, *result.Failure);
}

bool ReadLibraryAgain(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  if (globals.ProjectorDatabase.Changed()) return false;
  if (!ChangedOnDisk(globals.DataFolder, globals.ProjectorDatabase)) return false;
  try {
    LibraryWaitForm wait(parent);
    ProjectorLibrary fresh;
    const std::vector<Message> messages = LoadProjectorDatabase(globals.DataFolder, fresh, wait.Patience());
    globals.ProjectorDatabase = std::move(fresh);
    for (const Message& message : messages) prompts.Show(parent, message);
    return true;
  } catch (const FileError&) {
    return false;  // the library at hand is as good as it was; saving it will tell
  }
}

}  // namespace qdm
