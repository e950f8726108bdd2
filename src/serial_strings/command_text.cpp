#include "serial_strings/command_text.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace qdm {
namespace {

bool IsCharacter(const SerialString& string, std::size_t index) {
  return string.Kinds[index] == static_cast<std::uint8_t>(ByteKind::ASC);
}

bool HasNumbersOnly(const SerialString& string) {
  const auto isNumber = [](std::uint8_t kind) {
    return kind == static_cast<std::uint8_t>(ByteKind::HEX) ||
           kind == static_cast<std::uint8_t>(ByteKind::DEC) ||
           kind == static_cast<std::uint8_t>(ByteKind::BIN);
  };
  return std::all_of(string.Kinds.begin(),
                     string.Kinds.begin() + static_cast<std::ptrdiff_t>(string.BytesInUse()), isNumber);
}

// "0Dh", "CR", "Variable".
std::string Code(const SerialString& string, std::size_t index) {
  const std::uint8_t value = string.Values[index];
  const bool isName = string.Kinds[index] == static_cast<std::uint8_t>(ByteKind::CNT) && value < 32;
  if (isName) return std::string(ControlCodeNames[value]);
  const ByteText byte = CompactByteText(value, string.Kinds[index]);
  return byte.Text + std::string(byte.Suffix);
}

// "PWR ON<CR>"
std::string WithBrackets(const SerialString& string) {
  std::string text;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const std::string code = Code(string, i);
    text += IsCharacter(string, i) ? code : "<" + code + ">";
  }
  return text;
}

// "\"PWR ON\",CR"
std::string WithQuotes(const SerialString& string) {
  std::string text;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const bool isCharacter = IsCharacter(string, i);
    const bool begins = isCharacter && (i == 0 || !IsCharacter(string, i - 1));
    const bool ends = isCharacter && (i + 1 == string.BytesInUse() || !IsCharacter(string, i + 1));
    text += CompactSeparator(string, i);
    text += (begins ? "\"" : "") + Code(string, i) + (ends ? "\"" : "");
  }
  return text;
}

// Unused bytes do not count; kinds do.
bool SameCodes(const SerialString& a, const SerialString& b) {
  const auto count = static_cast<std::ptrdiff_t>(a.BytesInUse());
  return a.BytesInUse() == b.BytesInUse() &&
         std::equal(a.Values.begin(), a.Values.begin() + count, b.Values.begin()) &&
         std::equal(a.Kinds.begin(), a.Kinds.begin() + count, b.Kinds.begin());
}

}  // namespace

std::string CommandText(const SerialString& string) {
  std::array texts = {WithBrackets(string), CompactText(string), WithQuotes(string)};
  if (HasNumbersOnly(string)) std::swap(texts[0], texts[1]);  // "02h,50h" beside "<02h><50h>"
  const std::string* doubtful = nullptr;                      // read back, but as one of several
  for (const std::string& text : texts) {
    const ParsedText parsed = ParseSerialText(FromUtf8(text));
    if (parsed.Readings.empty() || !SameCodes(parsed.Readings.front().String, string)) continue;
    if (!parsed.NeedsChoice()) return text;
    if (doubtful == nullptr) doubtful = &text;
  }
  return doubtful != nullptr ? *doubtful : CompactText(string);
}

}  // namespace qdm
