// What screen readers hear of the string windows beyond what Qt tells by itself: pop-ups are parts of the
// window that opened them, the captions of a choice are its items, and a picture of a string is its text.
#pragma once

namespace qdm {

// Once is enough, more does no harm.
void InstallStringAccess();

}  // namespace qdm
