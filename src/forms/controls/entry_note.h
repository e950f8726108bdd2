// A sentence below an entry about what was just typed there: why it was corrected or not taken. In the
// entry's own colours; stays until the next key, or until the entry is hidden.
#pragma once

class QString;
class QWidget;

namespace qdm {

// Replaces an earlier one in the same window. Screen readers are told.
void ShowEntryNote(QWidget* entry, const QString& text);

}  // namespace qdm
