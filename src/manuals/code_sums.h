// Check sums as projectors use them: the last byte over those before it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qdm {

enum class CheckSum { Sum, SumFromSecond, TwosComplement, ExclusiveOr };
inline constexpr CheckSum kCheckSums[] = {CheckSum::Sum, CheckSum::SumFromSecond, CheckSum::TwosComplement,
                                          CheckSum::ExclusiveOr};

bool IsRight(CheckSum check, std::span<const std::uint8_t> code);

// From what a CRC-16 with the polynomial A001 (reversed 8005) must have started to become `crc` over the
// bytes.
std::uint16_t Crc16Start(std::span<const std::uint8_t> bytes, std::uint16_t crc);

// What the last byte behind `bytes` would have to be.
std::uint8_t SumOf(CheckSum check, std::span<const std::uint8_t> bytes);

// Where a run of bytes falls apart into codes that all begin with its first byte and end with their check
// sum: the places where codes begin. Empty where it does not.
std::vector<std::size_t> SplitByCheckSum(std::span<const std::uint8_t> run);

}  // namespace qdm
