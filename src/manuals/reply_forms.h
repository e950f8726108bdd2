// Answers whose form the page draws: "Ack [a][][Set ID][][OK][Data][x]", "Reply 0xBB ADDRESS COMMAND 0x06
// SUM". What the command itself holds comes back as it was sent; a status, a value and a check sum over them
// vary.
#pragma once

#include "manuals/codes.h"
#include "manuals/page.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qdm {

struct DrawnReply {
  CodeBytes Bytes;  // IGN where they vary
  Span Where;
};

// The answer to a command that stands on `line`.
std::optional<DrawnReply> FindDrawnReply(const ManualPage& page, const std::vector<std::uint8_t>& sent,
                                         std::size_t line);

}  // namespace qdm
