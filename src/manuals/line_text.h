// What a page says of the serial line: speed, parity, stop bits, in sentences, lists, tables torn into labels
// and values, or short forms ("8N1").
#pragma once

#include "manuals/manual_reading.h"
#include "manuals/page.h"

namespace qdm {

ManualLineSettings ReadLineSettings(const ManualPage& page);

}  // namespace qdm
