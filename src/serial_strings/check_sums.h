// The check sums that serial protocols use: sums, negated sums, exclusive or, CRC-8 and CRC-16 of the usual
// polynomials, and how their value is written into a command.
#pragma once

#include "base/record_codec.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

enum class SumKind { Sum, NegatedSum, InvertedSum, ExclusiveOr, Crc };

// A cyclic redundancy check of `Bits` 8 or 16. Reflected: the lowest bit goes first, both in and out.
struct SumMethod {
  SumKind Kind = SumKind::Sum;
  int Bits = 8;
  std::uint16_t Polynomial = 0;
  bool Reflected = false;
  std::uint16_t Start = 0;
  std::uint16_t FinalXor = 0;

  std::string Name() const;  // "CRC-16 (polynomial 1021, start FFFF)"
};

// Every method that is searched, the common ones first.
const std::vector<SumMethod>& SumMethods();

std::uint16_t SumOf(const SumMethod& method, ByteView bytes);

// How the value stands in the command.
struct SumForm {
  enum class Digits { Raw, UpperCase, LowerCase };
  Digits As = Digits::Raw;
  bool LowFirst = false;  // of two raw bytes

  std::string Name() const;  // "low byte first", "as hexadecimal digits"; empty for the plain forms
};

// The bytes that a sum of `bits` takes in that form: 1, 2 or 4.
std::size_t WidthOf(const SumForm& form, int bits);
Bytes Written(std::uint16_t sum, const SumForm& form, int bits);
// Nothing when the bytes are no digits of that form. `bytes` has WidthOf.
std::optional<std::uint16_t> Read(ByteView bytes, const SumForm& form);

}  // namespace qdm
