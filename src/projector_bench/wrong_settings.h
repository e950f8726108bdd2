// What bytes look like to a side that listens at other settings than they were sent with: the levels on the
// wire, sampled again. From it, what was probably sent when something unreadable came.
#pragma once

#include "line/line_settings.h"
#include "projector_bench/command_pattern.h"

#include <optional>
#include <string>
#include <vector>

namespace qdm {

// The bytes follow each other without a pause. Stop bits are not looked at by the listener; an unknown
// setting counts as 9600, none, 1.
Bytes HeardAs(ByteView sent, const LineSettings& sentAt, const LineSettings& heardAt);

// "looks like "Power on" at 19200,n,8,1", "looks like a wrong speed or parity"; nothing when nothing points
// to that.
std::optional<std::string> WrongSettingsRemark(ByteView bytes, const std::vector<LineCommand>& commands,
                                               const LineSettings& heardAt);

}  // namespace qdm
