// Work on a disk that may be slow: after half a second the pointer says that something is going on, after two
// a text does, and the window is drawn meanwhile. The user can do nothing else until it is done.
#pragma once

#include <functional>

namespace qdm {

// Does `work` in a thread of its own and waits for it; what it throws is thrown here. `tellSlow` is called
// here, once, when it takes long.
void DoBusy(const std::function<void()>& work, const std::function<void()>& tellSlow);

}  // namespace qdm
