#include "app/editor_application.h"

#include "base/words.h"

#include <exception>
#include <new>

namespace qdm {

bool EditorApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::bad_alloc&) {
    Tell(Say("out of memory"));
  } catch (const std::exception& error) {
    Tell(error.what());
  } catch (...) {
    Tell(Say("unknown error"));
  }
  return false;
}

// A window that fails at every painting would ask for a box at every painting.
void EditorApplication::Tell(const std::string& what) noexcept {
  if (telling_ || !tell_) return;
  telling_ = true;
  try {
    tell_(what);
  } catch (...) {
    // Neither memory nor screen for a box: going on is all that is left.
  }
  telling_ = false;
}

}  // namespace qdm
