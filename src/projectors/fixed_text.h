// A record's text of exactly N characters: a shorter value is padded on the right with blanks, a longer one
// is cut. In memory a character is 16 bits wide, stored it is one Windows-1252 byte.
#pragma once

#include "serial_strings/code_page.h"

#include <algorithm>
#include <array>
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
    std::copy_n(text.begin(), kept, Characters.begin());
    std::fill(Characters.begin() + static_cast<std::ptrdiff_t>(kept), Characters.end(), u' ');
  }
  void AssignUtf8(std::string_view text) { Assign(FromUtf8(text)); }

  std::u16string_view View() const { return {Characters.data(), N}; }
  // Without the blanks at both ends.
  std::u16string_view Trimmed() const { return TrimBlanks(View()); }
  std::string TrimmedUtf8() const { return ToUtf8(Trimmed()); }

  friend bool operator==(const FixedText&, const FixedText&) = default;
};

}  // namespace qdm
