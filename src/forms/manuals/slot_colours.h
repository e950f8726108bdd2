// The colours in which a manual's text and the list beside it show what belongs together.
#pragma once

#include <QColor>
#include <QPalette>

#include <cstddef>
#include <optional>

namespace qdm {

// A background on which the palette's text can be read, of a hue of its own for each string of a definition;
// grey for what belongs to none.
QColor SlotColour(std::optional<std::size_t> slot, const QPalette& palette);

}  // namespace qdm
