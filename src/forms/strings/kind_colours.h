// The colours of the byte kinds on the screen.
#pragma once

#include <QColor>

#include <cstdint>

namespace qdm {

// The kind's own colour on a light background; on a dark one the same hue, lightened until it can be read.
QColor KindColourOn(std::uint8_t kind, const QColor& background);

// For texts that report an error: red, readable on the background.
QColor ErrorColourOn(const QColor& background);

}  // namespace qdm
