#include "line/line_settings.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace qdm {

namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<int> NumberIn(std::string_view text, int lowest, int highest) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number < lowest || number > highest) return std::nullopt;
  return number;
}

std::optional<LineParity> ParityOf(std::string_view piece) {
  if (piece.size() != 1) return std::nullopt;
  const auto letter = static_cast<char>(std::tolower(static_cast<unsigned char>(piece.front())));
  for (const ParityChoice& choice : LineParities) {
    if (choice.Letter.front() == letter) return choice.Parity;
  }
  return std::nullopt;
}

}  // namespace

LineSettings ParseLineSettings(std::string_view settings) {
  std::array<std::string_view, 4> pieces;
  for (std::string_view& piece : pieces) {
    const std::size_t comma = settings.find(',');
    piece = Trimmed(settings.substr(0, comma));
    if (comma == std::string_view::npos) break;
    settings.remove_prefix(comma + 1);
  }
  constexpr int kHighestSpeed = 4'000'000;
  return {.Speed = NumberIn(pieces[0], 1, kHighestSpeed),
          .Parity = ParityOf(pieces[1]),
          .DataBits = NumberIn(pieces[2], 5, 8),
          .StopBits = NumberIn(pieces[3], 1, 2)};
}

Microseconds TimeOfBytes(std::size_t bytes, const LineSettings& settings) {
  const bool parityBit = settings.Parity.value_or(LineParity::None) != LineParity::None;
  const std::int64_t bitsPerByte = 1 + 8 + (parityBit ? 1 : 0) + settings.StopBits.value_or(2);
  const std::int64_t bits = static_cast<std::int64_t>(bytes) * bitsPerByte;
  const std::int64_t speed = settings.Speed.value_or(9600);
  return Microseconds((bits * 1'000'000 + speed - 1) / speed);
}

}  // namespace qdm
