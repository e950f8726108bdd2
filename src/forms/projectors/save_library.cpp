#include "forms/projectors/save_library.h"

#include "base/file_access.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/library_file.h"

#include <optional>

namespace qdm {
namespace {

std::optional<Message> FailureToSave(Globals& globals) {
  try {
    while (!SaveProjectorDatabase(globals.DataFolder, globals.ProjectorDatabase).Conflicts.empty()) {
    }
    return std::nullopt;
  } catch (const FileError& error) {
    return SorryAbout(error);
  }
}

}  // namespace

bool SaveLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent) {
  const auto failure = FailureToSave(globals);
  if (failure) prompts.Show(parent, *failure);
  return !failure;
}

bool SaveLibraryOrAsk(Globals& globals, UserPrompts& prompts, QWidget* window) {
  auto failure = FailureToSave(globals);
  if (!failure) return true;
  failure->Text +=
      "\r\n\r\nThe projector data base has not been saved. Do you wish to close this window all the "
      "same?\r\nWith No it stays open, and you can close it again to try once more.";
  return prompts.AskYesNo(window, *failure);
}

}  // namespace qdm
