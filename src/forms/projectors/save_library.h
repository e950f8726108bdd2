// The library to disk and back, as the user's work in a window demands it. What others saved meanwhile is
// merged in; what was changed on both sides is asked about; a library that somebody else is saving is waited
// for.
#pragma once

#include "projectors/projector_library.h"

#include <future>
#include <optional>

class QWidget;

namespace qdm {

struct Globals;
class UserPrompts;

// False when that failed, which the user has been told, or when the user left a conflict undecided. The merge
// may have moved elements: their indices are new.
bool SaveLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent);

// For a window that is about to close: when saving fails, the user says whether it closes all the same. Where
// nothing was changed nothing is asked, and Globals::LibraryNotice says why it failed. True when the window
// may close.
bool SaveLibraryOrAsk(Globals& globals, UserPrompts& prompts, QWidget* window);

// A thread that reads the library while the windows are made.
using LibraryComing = std::future<std::optional<ProjectorLibrary>>;

// At the start: what is coming, or what the data folder holds. Failures are told and leave an empty library.
void LoadLibrary(Globals& globals, UserPrompts& prompts, QWidget* parent, LibraryComing coming = {});

// Takes what others saved, as long as nothing was changed here. True when the library is another one now.
bool ReadLibraryAgain(Globals& globals, UserPrompts& prompts, QWidget* parent);

}  // namespace qdm
