#pragma once

#include <QLatin1String>

namespace qdm {

// The bench and the serial test begin with the port that either used last; its number.
inline constexpr QLatin1String kPortSetting("SerialTest/Port");

}  // namespace qdm
