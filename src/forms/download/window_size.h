// How large a window opens: as large as it wants to be, and with its frame no larger than the screen.
#pragma once

#include <QScreen>
#include <QSize>
#include <QWidget>

namespace qdm {

inline void ResizeOnScreen(QWidget& window, QSize wanted) {
  constexpr QSize kFrame(16, 40);  // about; before the window is shown, nobody knows its frame
  window.resize(wanted.boundedTo(window.screen()->availableSize() - kFrame));
}

}  // namespace qdm
