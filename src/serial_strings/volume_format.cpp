#include "serial_strings/volume_format.h"

#include "base/words.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace qdm {
namespace {

// A negative number keeps its sign before the padding.
std::string Decimal(int value, int width) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*d", width, value);
  return text;
}

std::size_t HexDigits(int value) {
  std::size_t digits = 1;
  while ((value /= 16) != 0) ++digits;
  return digits;
}

std::size_t DecimalDigits(int value) { return std::to_string(std::abs(value)).size(); }

// Digits of the longer end of the range, and one for the sign where there are negative levels.
std::size_t CharactersNeeded(const VolumeFormat& format, std::size_t (*digits)(int)) {
  return std::max(digits(format.MaximumLevel), digits(format.MinimumLevel)) +
         (format.MinimumLevel < 0 ? 1 : 0);
}

bool FitsIntoBytes(const VolumeFormat& format) {
  const auto bytes = static_cast<std::size_t>(format.NumberOfBytes);
  switch (format.MessageFormat) {
    case LevelFormat::HexInAscii:
      // A negative level goes out as the last digits of its two's complement. The digit that the sign costs
      // keeps the levels apart: it is F for every negative level and 0 for every other.
      return CharactersNeeded(format, HexDigits) <= bytes;
    case LevelFormat::DecimalInAscii:
      return CharactersNeeded(format, DecimalDigits) <= bytes;
    case LevelFormat::RawBytes:
      break;
  }
  if (bytes >= 2) return true;
  if (format.MinimumLevel >= 0) return format.MaximumLevel < 256;
  return format.MaximumLevel <= 127 && format.MinimumLevel >= -128;
}

std::string HexCharacters(int bytes, std::int16_t level) {
  const std::string word = HexWord(level);
  const std::string padded = std::string(4 - word.size(), '0') + word;
  return padded.substr(padded.size() - static_cast<std::size_t>(std::clamp(bytes, 0, 4)));
}

std::string DecimalCharacters(const VolumeFormat& format, std::int16_t level) {
  const int bytes = std::clamp<int>(format.NumberOfBytes, 1, 4);
  if (format.MinimumLevel >= 0) return Decimal(level, bytes);
  return (level < 0 ? "-" : "+") + Decimal(std::abs(int{level}), std::max(bytes - 1, 1));
}

std::vector<std::uint8_t> RawBytesOf(const VolumeFormat& format, std::int16_t level) {
  const auto word = static_cast<std::uint16_t>(level);
  // The third and fourth byte continue the number, with its sign.
  std::vector<std::uint8_t> bytes(4, level < 0 ? std::uint8_t{0xFF} : std::uint8_t{0});
  bytes[0] = static_cast<std::uint8_t>(word & 0xFF);
  bytes[1] = static_cast<std::uint8_t>(word >> 8);
  bytes.resize(static_cast<std::size_t>(std::clamp<int>(format.NumberOfBytes, 0, 4)));
  if (format.FirstByteIsHigh) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

std::int16_t Word(int level) { return static_cast<std::int16_t>(std::clamp(level, -32768, 32767)); }

bool InAscii(const VolumeFormat& format) { return format.MessageFormat != LevelFormat::RawBytes; }

std::string CharactersOf(const VolumeFormat& format, std::int16_t level) {
  return format.MessageFormat == LevelFormat::DecimalInAscii ? DecimalCharacters(format, level)
                                                             : HexCharacters(format.NumberOfBytes, level);
}

}  // namespace

std::string_view VolumeFormatError(const VolumeFormat& format) {
  const int range = format.MaximumLevel - format.MinimumLevel;
  if (range == 0) return Marked("Error Max = Min Volume");
  if (range < 0) return Marked("Error Max < Min Volume");
  if (format.VolumeStep == 0) return Marked("Error Volume Step = 0");
  if (range < format.VolumeStep)
    return Marked("Error Volume Step < Level Range");  // says the opposite, as ever
  if (!format.UsePowerDown && format.FixedStartLevel > format.MaximumLevel)
    return Marked("Error Start > Max level");
  if (!format.UsePowerDown && format.FixedStartLevel < format.MinimumLevel)
    return Marked("Error Start < Min level");
  if (format.NumberOfBytes < 1 || format.NumberOfBytes > 4) return Marked("Number Of Byte Not Defined");
  if (!FitsIntoBytes(format)) return Marked("Error Not Enough Bytes For Message");
  return {};
}

std::vector<std::uint8_t> LevelBytes(const VolumeFormat& format, std::int16_t level) {
  if (!InAscii(format)) return RawBytesOf(format, level);
  const std::string characters = CharactersOf(format, level);
  return {characters.begin(), characters.end()};
}

std::int16_t LevelUp(const VolumeFormat& format, std::int16_t level) {
  return Word(std::min<int>(level + format.VolumeStep, format.MaximumLevel));
}

std::int16_t LevelDown(const VolumeFormat& format, std::int16_t level) {
  return Word(std::max<int>(level - format.VolumeStep, format.MinimumLevel));
}

std::int16_t FirstTrialLevel(const VolumeFormat& format) {
  return format.UsePowerDown ? format.MinimumLevel : format.FixedStartLevel;
}

VolumePreview PreviewLevel(const VolumeFormat& format, std::int16_t level) {
  if (!VolumeFormatError(format).empty()) return {Say("ERROR"), ""};
  VolumePreview preview;
  preview.Label4 = Say("Value = %1 or %2 in Hex", {std::to_string(level), HexWord(level)});
  if (InAscii(format)) {
    preview.DemoText = '"' + CharactersOf(format, level) + '"';
    return preview;
  }
  std::string decimal;
  std::string hexadecimal;
  for (const std::uint8_t byte : LevelBytes(format, level)) {
    decimal += (decimal.empty() ? "" : ",") + std::to_string(byte);
    hexadecimal += (hexadecimal.empty() ? "" : ",") + HexByte(byte);
  }
  preview.DemoText = Say("%1 or %2", {decimal, hexadecimal});
  return preview;
}

}  // namespace qdm
