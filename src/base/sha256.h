// SHA-256 (FIPS 180-4), by which two images are told to be the same one on any machine and at any time.
#pragma once

#include "base/record_codec.h"

#include <array>
#include <cstdint>
#include <string>

namespace qdm {

using Sha256Digest = std::array<std::uint8_t, 32>;

Sha256Digest Sha256(ByteView bytes);

// Lower-case hexadecimal digits, two a byte.
std::string HexDigits(ByteView bytes);

}  // namespace qdm
