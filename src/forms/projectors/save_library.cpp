#include "forms/projectors/save_library.h"

#include "base/file_access.h"
#include "base/words.h"
#include "forms/projectors/library_conflict_form.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/library_file.h"

#include <QCoreApplication>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qdm {
namespace {

struct SaveResult {
  bool Saved = false;
  std::optional<Message> Failure;  // neither: a conflict was left undecided
};

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(qdm::SaveLibrary)
};

// Told once the window that tells is there; until the user gives up.
LibraryPatience PatienceOf(BusyWork& busy) {
  LibraryPatience patience;
  patience.KeepWaiting = [&busy](const std::string& owner, LibraryPatience::Milliseconds) {
    return busy.KeepWaiting(
        owner.empty() ? Texts::tr("Another program is saving the projector data base. It is waited for.")
                      : Texts::tr("The projector data base is in use by %1. It is waited for.")
                            .arg(QString::fromStdString(owner)));
  };
  return patience;
}

// The windows show the library meanwhile.
LibrarySaved SaveOrFindConflicts(Globals& globals, QWidget* parent) {
  BusyWork busy(parent, Texts::tr("Still saving the projector data base."));
  const ProjectorLibrary& library = globals.ProjectorDatabase;
  LibrarySaved saved;
  LibraryAfterSave after;
  busy.Do([&] { saved = SaveProjectorDatabase(globals.DataFolder, library, after, PatienceOf(busy)); });
  after.TakePlaceOf(globals.ProjectorDatabase);
  return saved;
}

std::vector<Message> LoadInto(ProjectorLibrary& library, const Globals& globals, QWidget* parent) {
  BusyWork busy(parent, Texts::tr("Still reading the projector data base."));
  std::vector<Message> messages;
  busy.Do([&] { messages = LoadProjectorDatabase(globals.DataFolder, library, PatienceOf(busy)); });
  return messages;
}

SaveResult Save(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  try {
    for (;;) {
      const LibrarySaved saved = SaveOrFindConflicts(globals, parent);
      for (const Message& message : saved.Messages) prompts.Show(parent, message);
      if (saved.Conflicts.empty()) return {true, {}};
      if (globals.Leaving || !SettleLibraryConflicts(globals.ProjectorDatabase, saved.Conflicts, parent))
        return {};
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
  if (globals.Leaving) return true;
  if (!result.Failure) return result.Saved;
  if (!globals.ProjectorDatabase.Changed()) {
    globals.LibraryNotice = Texts::tr("The data base is unchanged and was not saved: %1")
                                .arg(QString::fromStdString(result.Failure->Text))
                                .toStdString();
    return true;
  }
  result.Failure->Text =
      Say("%1\r\n\r\nThe projector data base has not been saved. Do you wish to close this window all the "
          "same?\r\nWith No it stays open, and you can close it again to try once more.",
          {result.Failure->Text});
  return prompts.AskYesNo(window, *result.Failure);
}

void LoadLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent, LibraryComing coming) {
  if (coming.valid()) {
    std::optional<ProjectorLibrary> read =
        DoBusy(parent, Texts::tr("Still reading the projector data base."), [&] { return coming.get(); });
    if (read) {
      globals.ProjectorDatabase = *std::move(read);
      return;
    }
  }
  try {
    const std::vector<Message> messages = LoadInto(globals.ProjectorDatabase, globals, parent);
    for (const Message& message : messages) prompts.Show(parent, message);
  } catch (const FileError& error) {
    prompts.Show(parent, SorryAbout(error));
  }
}

bool ReadLibraryAgain(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  if (BusyWork::Underway() || globals.ProjectorDatabase.Changed()) return false;
  const bool changed = DoBusy(parent, Texts::tr("Still looking at the projector data base."),
                              [&] { return ChangedOnDisk(globals.DataFolder, globals.ProjectorDatabase); });
  if (!changed) return false;
  std::vector<Message> messages;
  try {
    ProjectorLibrary fresh;
    messages = LoadInto(fresh, globals, parent);
    globals.ProjectorDatabase = std::move(fresh);
  } catch (const FileError&) {
    return false;  // the library at hand is as good as it was; saving it will tell
  }
  for (const Message& message : messages) prompts.Show(parent, message);
  return true;
}

}  // namespace qdm
