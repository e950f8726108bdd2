#include "forms/editor/projector_reconciliation.h"

#include "base/words.h"
#include "forms/projectors/projector_replace_form.h"
#include "forms/projectors/save_library.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "projectors/record_difference.h"

#include <cstddef>
#include <optional>

namespace qdm {
namespace {

Message ProjectorChanged() {
  return {Say("The projector included in this configuration has been edited!\r\n"
              "Do you wish to change it to the new version?"),
          Say("Projector Changed!"), MessageIcon::Question};
}

}  // namespace

bool ReconcileProjector(Globals& globals, UserPrompts& prompts, QWidget* parent,
                        ProjectorDefinition& projector) {
  ProjectorDefinition cleaned = projector;
  if (!CleanNames(cleaned)) return false;
  ProjectorLibrary& library = globals.ProjectorDatabase;
  const std::optional<std::size_t> found = library.FindProjector(cleaned);
  if (!found) {
    library.Append(cleaned);
    if (!SaveLibrary(globals, prompts, parent)) library.Remove(*library.FindProjector(cleaned));
    return true;
  }
  if (ProjectorsEqual(cleaned, library[*found])) return false;
  const auto settled = SettleConfigurationConflict(globals, prompts, parent, projector);
  if (settled) projector = *settled;
  return true;
}

void OfferNewVersion(const Globals& globals, UserPrompts& prompts, QWidget* parent,
                     ProjectorDefinition& projector) {
  ProjectorDefinition cleaned = projector;
  if (!CleanNames(cleaned)) return;
  const ProjectorLibrary& library = globals.ProjectorDatabase;
  const std::optional<std::size_t> found = library.FindProjector(cleaned);
  if (!found || ProjectorsEqual(cleaned, library[*found])) return;
  if (prompts.AskYesNo(parent, ProjectorChanged())) projector = library[*found];
}

}  // namespace qdm
