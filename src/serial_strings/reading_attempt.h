// One way to read a text as a serial string, being tried: the bytes so far, or the first reason why the text
// cannot be read in this way.
#pragma once

#include "serial_strings/byte_notation.h"
#include "serial_strings/text_parser.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qdm {

struct Attempt {
  SerialString String;
  std::optional<TextProblem> Problem;  // the first; the reading has failed then
  bool Meant = false;                  // the text looks like this way: its problem is worth telling

  void Fail(std::size_t at, std::string why);
  void Add(std::size_t at, std::uint8_t value, ByteKind kind);
  void Add(std::size_t at, const NotedByte& byte) { Add(at, byte.Value, byte.Kind); }
  void AddCharacter(std::size_t at, char16_t character);
  void AddCharacters(std::size_t at, std::u16string_view text);
};

// The same bytes would be sent; only VAR and IGN bytes differ by their kind.
bool SameBytes(const SerialString& a, const SerialString& b);

// The beginning of a text between quotation marks, for messages.
std::string Quoted(std::u16string_view text);

// Each opening bracket stands where its closing one does.
inline constexpr std::u16string_view kOpeningBrackets = u"<[{(";
inline constexpr std::u16string_view kClosingBrackets = u">]})";

inline bool IsBlank(char16_t c) { return c == u' ' || (c >= 9 && c <= 13); }
inline bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
inline bool IsLower(char16_t c) { return c >= u'a' && c <= u'z'; }
inline bool IsUpper(char16_t c) { return c >= u'A' && c <= u'Z'; }
inline bool IsLetter(char16_t c) { return IsLower(c) || IsUpper(c); }
inline bool IsWordPart(char16_t c) { return IsDigit(c) || IsLetter(c); }
inline bool IsHexDigit(char16_t c) {
  return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// Behind the letters and digits that begin at `at`.
std::size_t EndOfWord(std::u16string_view text, std::size_t at);

// Blanks, tabs and line ends at both ends removed.
std::u16string_view TrimSpace(std::u16string_view text);

}  // namespace qdm
