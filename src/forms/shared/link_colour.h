// The colour of links that can be read on the palette's background: a desktop's dark palette often keeps the
// dark blue of light ones.
#pragma once

#include <QColor>
#include <QPalette>

namespace qdm {

inline QColor LinkColour(const QPalette& palette, QPalette::ColorRole background) {
  const QColor link = palette.color(QPalette::Link);
  const bool dark = palette.color(background).lightness() < 128;
  return dark && link.lightness() < 160 ? QColor(0x8a, 0xb4, 0xf8) : link;
}

}  // namespace qdm
