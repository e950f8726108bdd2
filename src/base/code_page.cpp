#include "base/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qdm {
namespace {

// Bytes 80..9F; all others are their own code point.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char16_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t code) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLowSurrogate(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

// Decodes one sequence at `text[at]` and moves `at` behind it.
char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(at++);
  if (first < 0x80) return first;
  const int following = first >= 0xF0 && first < 0xF5   ? 3
                        : first >= 0xE0 && first < 0xF0 ? 2
                        : first >= 0xC2 && first < 0xE0 ? 1
                                                        : 0;
  if (following == 0) return kReplacement;
  char32_t code = first & (0x3FU >> following);
  for (int i = 0; i < following; ++i) {
    if (at >= text.size() || (byte(at) & 0xC0U) != 0x80) return kReplacement;
    code = (code << 6) | (byte(at++) & 0x3FU);
  }
  const bool overlong = (following == 2 && code < 0x800) || (following == 3 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  return overlong || surrogate || code > 0x10FFFF ? char32_t{kReplacement} : code;
}

}  // namespace

char16_t CharacterOf(std::uint8_t byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80U] : char16_t{byte};
}

std::optional<std::uint8_t> ByteOf(char16_t character) {
  if (character < 0x80 || (character >= 0xA0 && character < 0x100))
    return static_cast<std::uint8_t>(character);
  const auto* const found = std::find(kUpperControls.begin(), kUpperControls.end(), character);
  if (found == kUpperControls.end()) return std::nullopt;
  return static_cast<std::uint8_t>(0x80 + (found - kUpperControls.begin()));
}

std::uint8_t StoredByteOf(char16_t character) {
  return ByteOf(character).value_or(static_cast<std::uint8_t>('?'));
}

// Texts are plain Latin but for a few characters: first all at once, then those that are not their own code
// point one by one. Ten thousand definitions have three million characters.
void ToCharacters(const std::uint8_t* stored, std::span<char16_t> characters) {
  unsigned upperControls = 0;
  for (char16_t& character : characters) {
    character = *stored++;
    upperControls |= (character & 0xE0U) == 0x80U ? 1U : 0U;
  }
  if (upperControls == 0) return;
  for (char16_t& character : characters) character = CharacterOf(static_cast<std::uint8_t>(character));
}

void ToStoredBytes(std::span<const char16_t> characters, std::uint8_t* stored) {
  unsigned others = 0;
  std::uint8_t* to = stored;
  for (const unsigned character : characters) {
    *to++ = static_cast<std::uint8_t>(character & 0xFFU);
    others |= character > 0xFFU || (character & 0xE0U) == 0x80U ? 1U : 0U;
  }
  if (others == 0) return;
  for (std::size_t i = 0; i < characters.size(); ++i) stored[i] = StoredByteOf(characters[i]);
}

char16_t UpperCase(char16_t c) {
  if (c < 0x80) return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<char16_t>(c - 0x20);
  switch (c) {
    case 0x00FF:
      return 0x0178;
    case 0x0161:
      return 0x0160;
    case 0x0153:
      return 0x0152;
    case 0x017E:
      return 0x017D;
    default:
      return c;
  }
}

std::u16string UpperCase(std::u16string_view text) {
  std::u16string upper(text);
  for (char16_t& c : upper) c = UpperCase(c);
  return upper;
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      code = 0x10000 + ((code - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00);
    } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
      code = kReplacement;
    }
    AppendUtf8(out, code);
  }
  return out;
}

std::u16string FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t code = NextCodePoint(text, at);
    if (code < 0x10000) {
      out.push_back(static_cast<char16_t>(code));
    } else {
      out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    }
  }
  return out;
}

bool IsNameCharacter(char16_t character) { return character >= 32 && ByteOf(character).has_value(); }

std::u16string_view TrimBlanks(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace qdm
