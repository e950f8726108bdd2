// A record's text of exactly N characters: a shorter value is padded on the right with blanks, a longer one
// is cut. In memory a character is 16 bits wide, stored it is one Windows-1252 byte; a character that has no
// such byte becomes "?" at once, so that a name means the same before and after it has been in a file.
#pragma once

#include "base/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace qdm {

template <std::size_t N>
struct FixedText {
  static constexpr std::size_t kLength = N;

  std::array<char16_t, N> Characters;

  constexpr FixedText() : Characters{} { Characters.fill(u' '); }
  explicit FixedText(std::u16string_view text) { Assign(text); }

  void Assign(std::u16string_view text) {
    const std::size_t kept = std::min(text.size(), N);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(kept), Characters.begin(),
                   [](char16_t c) { return c < 0x80 ? c : CharacterOf(StoredByteOf(c)); });
    std::fill(Characters.begin() + static_cast<std::ptrdiff_t>(kept), Characters.end(), u' ');
  }
  void AssignUtf8(std::string_view text) { Assign(FromUtf8(text)); }

  std::u16string_view View() const { return {Characters.data(), N}; }
  // Without the blanks that fill the text up.
  std::u16string_view Unpadded() const { return View().substr(0, View().find_last_not_of(u' ') + 1); }
  // Without the blanks at both ends.
  std::u16string_view Trimmed() const { return TrimBlanks(View()); }
  void Trim() { *this = FixedText(Trimmed()); }
  std::string TrimmedUtf8() const { return ToUtf8(Trimmed()); }

  friend bool operator==(const FixedText&, const FixedText&) = default;
};

}  // namespace qdm
