// A page as its readers see it: lines of UTF-16 with the typography folded to plain characters, one for one,
// so that columns stay those of the given text.
#pragma once

#include "serial_strings/reading_attempt.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

// Where a piece of text stands; `Line` counts from 0 among the lines that are not empty.
struct Span {
  std::size_t Line = 0;
  std::size_t From = 0;
  std::size_t To = 0;

  friend bool operator==(const Span&, const Span&) = default;
};

struct ManualPage {
  std::vector<std::u16string> Lines;  // those that are not empty
  std::vector<std::size_t> Numbers;   // of the lines in the given text, from 1
  std::u16string Folded;              // all lines in lower case without accents, joined by line feeds

  std::u16string_view At(const Span& span) const {
    return std::u16string_view(Lines[span.Line]).substr(span.From, span.To - span.From);
  }
};

// More than that is no page, nor a manual's chapter: what lies behind is not read.
inline constexpr std::size_t kMostCharacters = 200'000;

ManualPage MakePage(std::u16string_view text);

// Quotation marks, dashes, blanks and full-width forms as their plain characters.
char16_t PlainCharacter(char16_t c);
// Lower case without accents.
char16_t FoldLetter(char16_t c);
std::u16string FoldLetters(std::u16string_view text);
// A folded text has one of the words in it.
bool Says(std::u16string_view folded, std::initializer_list<std::u16string_view> words);

inline int HexDigit(char16_t c) {
  if (IsDigit(c)) return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return -1;
}

// Blanks and tabs at both ends taken off.
Span Trim(const ManualPage& page, Span span);
// Nothing else is on its line.
bool StandsAlone(const ManualPage& page, const Span& span);

}  // namespace qdm
