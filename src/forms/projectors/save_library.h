// The library to disk, as the user's work in a window demands it.
#pragma once

class QWidget;

namespace qdm {

struct Globals;
class UserPrompts;

// False when that failed, which the user has been told.
bool SaveLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent);

// For a window that is about to close: when saving fails, the user says whether it closes all the same. True
// when it may.
bool SaveLibraryOrAsk(Globals& globals, UserPrompts& prompts, QWidget* window);

}  // namespace qdm
