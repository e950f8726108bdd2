// A fast 64-bit hash of bytes, to tell whether a file is still the one that was read. No protection against
// people.
#pragma once

#include "base/record_codec.h"

#include <cstdint>

namespace qdm {

// Of a file that is read or written in the same pieces both times: `hash` is that of the pieces before, 0 at
// first.
std::uint64_t HashOnward(std::uint64_t hash, ByteView piece);

}  // namespace qdm
