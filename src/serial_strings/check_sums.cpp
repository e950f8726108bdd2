#include "serial_strings/check_sums.h"

#include "base/words.h"
#include "serial_strings/serial_string.h"

#include <map>
#include <string_view>
#include <tuple>

namespace qdm {
namespace {

using CrcTable = std::array<std::uint16_t, 256>;

std::uint16_t ReflectedBits(std::uint16_t value, int bits) {
  std::uint16_t reflected = 0;
  for (int i = 0; i < bits; ++i) {
    if ((value >> i & 1) != 0) reflected = static_cast<std::uint16_t>(reflected | 1U << (bits - 1 - i));
  }
  return reflected;
}

CrcTable MakeTable(const SumMethod& method) {
  CrcTable table{};
  const unsigned mask = (1U << method.Bits) - 1;
  const unsigned top = 1U << (method.Bits - 1);
  const unsigned reflectedPolynomial = ReflectedBits(method.Polynomial, method.Bits);
  for (unsigned value = 0; value < table.size(); ++value) {
    // 8 or 16 bits.
    unsigned rest = method.Reflected || method.Bits <= 8 ? value : value << (method.Bits - 8);
    for (int bit = 0; bit < 8; ++bit) {
      if (method.Reflected) {
        rest = (rest & 1) != 0 ? rest >> 1 ^ reflectedPolynomial : rest >> 1;
      } else {
        rest = (rest & top) != 0 ? (rest << 1 ^ method.Polynomial) & mask : rest << 1 & mask;
      }
    }
    table[value] = static_cast<std::uint16_t>(rest);
  }
  return table;
}

const CrcTable& TableOf(const SumMethod& method) {
  static std::map<std::tuple<int, std::uint16_t, bool>, CrcTable> tables;
  const auto key = std::make_tuple(method.Bits, method.Polynomial, method.Reflected);
  auto place = tables.find(key);
  if (place == tables.end()) place = tables.emplace(key, MakeTable(method)).first;
  return place->second;
}

std::uint16_t CrcOf(const SumMethod& method, ByteView bytes) {
  const CrcTable& table = TableOf(method);
  unsigned rest = method.Start;
  for (const std::uint8_t byte : bytes) {
    if (method.Bits == 8) {
      rest = table[(rest ^ byte) & 0xFF];
    } else if (method.Reflected) {
      rest = rest >> 8 ^ table[(rest ^ byte) & 0xFF];
    } else {
      rest = (rest << 8 & 0xFFFF) ^ table[(rest >> 8 ^ byte) & 0xFF];
    }
  }
  return static_cast<std::uint16_t>(rest ^ method.FinalXor);
}

void AddCrcs(std::vector<SumMethod>& methods, int bits, const std::vector<std::uint16_t>& polynomials,
             const std::vector<std::uint16_t>& starts, const std::vector<std::uint16_t>& finals) {
  for (const std::uint16_t polynomial : polynomials) {
    for (const bool reflected : {false, true}) {
      for (const std::uint16_t start : starts) {
        for (const std::uint16_t final : finals)
          methods.push_back({SumKind::Crc, bits, polynomial, reflected, start, final});
      }
    }
  }
}

std::vector<SumMethod> MakeMethods() {
  std::vector<SumMethod> methods;
  for (const SumKind kind : {SumKind::Sum, SumKind::ExclusiveOr, SumKind::NegatedSum, SumKind::InvertedSum})
    methods.push_back({.Kind = kind, .Bits = 8});
  for (const SumKind kind : {SumKind::Sum, SumKind::NegatedSum, SumKind::InvertedSum})
    methods.push_back({.Kind = kind, .Bits = 16});
  AddCrcs(methods, 8, {0x07, 0x31, 0x1D, 0x9B, 0xD5, 0x2F, 0x39}, {0x00, 0xFF}, {0x00, 0xFF, 0x55});
  AddCrcs(methods, 16, {0x1021, 0x8005, 0x3D65, 0x8BB7, 0xC867}, {0x0000, 0xFFFF, 0x1D0F}, {0x0000, 0xFFFF});
  return methods;
}

std::string Digits(std::uint16_t value, int bits) {
  const std::string digits = HexByte(static_cast<std::int16_t>(value));
  const auto width = static_cast<std::size_t>(bits / 4);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

constexpr std::string_view kUpperDigits = "0123456789ABCDEF";
constexpr std::string_view kLowerDigits = "0123456789abcdef";

std::string_view DigitsOf(const SumForm& form) {
  return form.As == SumForm::Digits::LowerCase ? kLowerDigits : kUpperDigits;
}

}  // namespace

std::string SumMethod::Name() const {
  const bool wide = Bits == 16;
  switch (Kind) {
    case SumKind::Sum:
      return wide ? Say("16-bit sum") : Say("sum");
    case SumKind::NegatedSum:
      return wide ? Say("16-bit negated sum") : Say("negated sum");
    case SumKind::InvertedSum:
      return wide ? Say("16-bit inverted sum") : Say("inverted sum");
    case SumKind::ExclusiveOr:
      return Say("exclusive or");
    case SumKind::Crc:
      break;
  }
  std::string facts = Say("polynomial %1", {Digits(Polynomial, Bits)});
  if (Reflected) facts += ", " + Say("lowest bit first");
  if (Start != 0) facts += ", " + Say("start %1", {Digits(Start, Bits)});
  if (FinalXor != 0) facts += ", " + Say("final %1", {Digits(FinalXor, Bits)});
  return Say("CRC-%1 (%2)", {std::to_string(Bits), facts});
}

const std::vector<SumMethod>& SumMethods() {
  static const std::vector<SumMethod> methods = MakeMethods();
  return methods;
}

std::uint16_t SumOf(const SumMethod& method, ByteView bytes) {
  if (method.Kind == SumKind::Crc) return CrcOf(method, bytes);
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum = method.Kind == SumKind::ExclusiveOr ? sum ^ byte : sum + byte;
  if (method.Kind == SumKind::NegatedSum) sum = 0U - sum;
  if (method.Kind == SumKind::InvertedSum) sum = ~sum;
  return static_cast<std::uint16_t>(sum & ((1U << method.Bits) - 1));
}

std::string SumForm::Name() const {
  if (As == Digits::UpperCase) return Say("as hexadecimal digits");
  if (As == Digits::LowerCase) return Say("as hexadecimal digits in lower case");
  return LowFirst ? Say("low byte first") : "";
}

std::size_t WidthOf(const SumForm& form, int bits) {
  return static_cast<std::size_t>(form.As == SumForm::Digits::Raw ? bits / 8 : bits / 4);
}

Bytes Written(std::uint16_t sum, const SumForm& form, int bits) {
  Bytes written;
  const int step = form.As == SumForm::Digits::Raw ? 8 : 4;
  for (int shift = bits - step; shift >= 0; shift -= step) {
    const unsigned part = unsigned{sum} >> (form.LowFirst ? bits - step - shift : shift) & ((1U << step) - 1);
    written.push_back(
        static_cast<std::uint8_t>(step == 8 ? part : static_cast<unsigned char>(DigitsOf(form)[part])));
  }
  return written;
}

std::optional<std::uint16_t> Read(ByteView bytes, const SumForm& form) {
  unsigned value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::uint8_t byte = bytes[form.LowFirst ? bytes.size() - 1 - i : i];
    if (form.As == SumForm::Digits::Raw) {
      value = value << 8 | byte;
    } else {
      const std::size_t digit = DigitsOf(form).find(static_cast<char>(byte));
      if (digit == std::string_view::npos) return std::nullopt;
      value = value << 4 | static_cast<unsigned>(digit);
    }
  }
  return static_cast<std::uint16_t>(value);
}

}  // namespace qdm
