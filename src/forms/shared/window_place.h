// Where a window may stand: inside what the desktop leaves free, its frame included.
#pragma once

#include <QMargins>
#include <QRect>

#include <algorithm>

namespace qdm {

// `window` without its frame, as large as it fits and moved in as little as possible.
inline QRect FittedTo(const QRect& available, const QRect& window, const QMargins& frame) {
  const QRect room = available.marginsRemoved(frame);
  QRect fitted(window.topLeft(), window.size().boundedTo(room.size()));
  fitted.moveLeft(std::max(room.left(), std::min(fitted.left(), room.right() - fitted.width() + 1)));
  fitted.moveTop(std::max(room.top(), std::min(fitted.top(), room.bottom() - fitted.height() + 1)));
  return fitted;
}

}  // namespace qdm
