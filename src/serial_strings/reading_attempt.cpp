#include "serial_strings/reading_attempt.h"

#include "base/code_page.h"
#include "base/words.h"
#include "serial_strings/serial_string.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

}  // namespace

void Attempt::Fail(std::size_t at, std::string why) {
  if (!Problem) Problem = {at, std::move(why)};
}

void Attempt::Add(std::size_t at, std::uint8_t value, ByteKind kind) {
  if (Problem) return;
  if (String.BytesInUse() == kMaximumStringBytes) return Fail(at, Say("more than 32 bytes"));
  const auto place = static_cast<std::size_t>(String.Count++);
  String.Values[place] = value;
  String.Kinds[place] = static_cast<std::uint8_t>(kind);
}

void Attempt::AddCharacter(std::size_t at, char16_t character) {
  if (Problem) return;
  if (character < 32) {
    return Fail(at, Say("a control character (%1h)", {HexByte(static_cast<std::int16_t>(character))}));
  }
  const auto byte = ByteOf(character);
  if (!byte) return Fail(at, Say("the character has no code of one byte"));
  Add(at, *byte, ByteKind::ASC);
}

void Attempt::AddCharacters(std::size_t at, Text text) {
  for (std::size_t i = 0; i < text.size() && !Problem; ++i) AddCharacter(at + i, text[i]);
}

bool SameBytes(const SerialString& a, const SerialString& b) {
  const auto isSpecial = [](std::uint8_t kind) { return kind >= static_cast<std::uint8_t>(ByteKind::VAR); };
  if (a.Count != b.Count) return false;
  for (std::size_t i = 0; i < a.BytesInUse(); ++i) {
    const bool special = isSpecial(a.Kinds[i]) || isSpecial(b.Kinds[i]);
    if (a.Values[i] != b.Values[i] || (special && a.Kinds[i] != b.Kinds[i])) return false;
  }
  return true;
}

std::string Quoted(Text text) {
  constexpr std::size_t kShown = 20;
  return '"' + ToUtf8(text.substr(0, kShown)) + (text.size() > kShown ? "..." : "") + '"';
}

std::size_t EndOfWord(Text text, std::size_t at) {
  while (at < text.size() && IsWordPart(text[at])) ++at;
  return at;
}

Text TrimSpace(Text text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace qdm
