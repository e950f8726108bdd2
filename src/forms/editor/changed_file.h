// A configuration that somebody else saved, moved or deleted since it was opened here is not overwritten
// unasked.
#pragma once

class QString;
class QWidget;

namespace qdm {

struct PanelConfiguration;
class UserPrompts;

enum class SavingOver { Mine, OpenTheirs, SaveAs, Cancel };

// What the user wants when saving `mine` to a file that was `asItWas` when it was opened or last saved. Asks
// nothing when it still is.
SavingOver AskBeforeSavingOver(UserPrompts& prompts, QWidget* parent, const QString& fileName,
                               const PanelConfiguration& asItWas, const PanelConfiguration& mine);

}  // namespace qdm
