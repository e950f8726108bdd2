// Which strings may be pasted into which slot of a definition.
#pragma once

#include "base/message.h"
#include "serial_strings/string_record.h"

#include <cstddef>
#include <optional>

namespace qdm {

// What the user must be told when `string` cannot be pasted into `slot`; nothing when it can.
std::optional<Message> CheckPaste(std::size_t slot, const SerialString& string);

// The same when `string` is to stand from byte `first` on, 0..31, of the string that is edited.
std::optional<Message> CheckRoomForPaste(std::size_t first, const SerialString& string);

}  // namespace qdm
