#include "manuals/page.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace qdm {
namespace {

struct Folding {
  char16_t From;
  char16_t To;
};
constexpr Folding kTypography[] = {
    {0x00A0, u' '},  {0x00AD, u'-'},  {0x2002, u' '}, {0x2003, u' '},  {0x2009, u' '},  {0x200B, u' '},
    {0x2010, u'-'},  {0x2011, u'-'},  {0x2012, u'-'}, {0x2013, u'-'},  {0x2014, u'-'},  {0x2015, u'-'},
    {0x2018, u'\''}, {0x2019, u'\''}, {0x201A, u','}, {0x201B, u'\''}, {0x201C, u'"'},  {0x201D, u'"'},
    {0x201E, u'"'},  {0x201F, u'"'},  {0x00AB, u'"'}, {0x00BB, u'"'},  {0x2032, u'\''}, {0x2033, u'"'},
    {0x2212, u'-'},  {0x2215, u'/'},  {0x3000, u' '}, {0x3001, u','},  {0x3002, u'.'},  {0x300C, u'"'},
    {0x300D, u'"'},  {0x3010, u'['},  {0x3011, u']'}, {0x00B4, u'\''}, {0x301C, u'~'},  {0x02DC, u'~'},
    {0xFEFF, u' '}};

// Letters U+00C0..U+00FF without accent, in lower case.
constexpr std::u16string_view kPlainLatin =
    u"aaaaaaaceeeeiiiidnooooo\u00D7ouuuuytsaaaaaaaceeeeiiiidnooooo\u00F7ouuuuyty";

}  // namespace

char16_t PlainCharacter(char16_t c) {
  if (c < 0x80) return c == u'\f' || c == u'\v' ? u' ' : c;
  if (c >= 0xFF01 && c <= 0xFF5E) return static_cast<char16_t>(c - 0xFF01 + u'!');
  const auto found = std::find_if(std::begin(kTypography), std::end(kTypography),
                                  [c](const Folding& folding) { return folding.From == c; });
  return found == std::end(kTypography) ? c : found->To;
}

char16_t FoldLetter(char16_t c) {
  if (IsUpper(c)) return static_cast<char16_t>(c + 32);
  if (c >= 0xC0 && c <= 0xFF) return kPlainLatin[static_cast<std::size_t>(c - 0xC0)];
  if (c >= 0x0410 && c <= 0x042F) return static_cast<char16_t>(c + 32);
  return c;
}

bool Says(std::u16string_view folded, std::initializer_list<std::u16string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::u16string_view word) {
    return folded.find(word) != std::u16string_view::npos;
  });
}

std::u16string FoldLetters(std::u16string_view text) {
  std::u16string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), FoldLetter);
  return folded;
}

namespace {

// "12 PON Power on": the number that a row begins with, before a command in capitals and its label.
std::optional<int> RowNumber(std::u16string_view line, std::size_t& end) {
  constexpr std::size_t kMostDigits = 3;
  int number = 0;
  for (end = 0; end < line.size() && end <= kMostDigits && IsDigit(line[end]); ++end)
    number = number * 10 + (line[end] - u'0');
  if (end == 0 || end > kMostDigits || end + 1 >= line.size() || line[end] != u' ') return std::nullopt;
  const std::u16string_view rest = line.substr(end + 1);
  const std::size_t blank = rest.find(u' ');
  if (blank == std::u16string_view::npos || blank < 2 || !IsUpper(rest[0])) return std::nullopt;
  const bool command = std::none_of(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(blank), IsLower);
  return command && std::any_of(rest.begin(), rest.end(), IsLower) ? std::optional(number) : std::nullopt;
}

bool HeadsNumbers(std::u16string_view folded) {
  return folded.starts_with(u"no ") || folded.starts_with(u"no.") || folded.starts_with(u"nr") ||
         folded.starts_with(u"#") || folded.starts_with(u"n\u00B0");
}

// Rows that are counted below a heading "No." lose their numbers, not their columns.
void BlankRowNumbers(ManualPage& page) {
  for (std::size_t title = 0; title + 1 < page.Lines.size(); ++title) {
    if (!HeadsNumbers(FoldLetters(page.Lines[title].substr(0, 4)))) continue;
    int expected = 1;
    for (std::size_t line = title + 1; line < page.Lines.size(); ++line, ++expected) {
      std::size_t end = 0;
      if (RowNumber(page.Lines[line], end) != expected) break;
      std::fill_n(page.Lines[line].begin(), end, u' ');
    }
  }
}

}  // namespace

ManualPage MakePage(std::u16string_view text) {
  ManualPage page;
  text = text.substr(0, kMostCharacters);
  std::size_t from = 0;
  std::size_t number = 0;
  while (from <= text.size()) {
    const std::size_t end = std::min(text.find(u'\n', from), text.size());
    std::u16string line(text.substr(from, end - from));
    if (!line.empty() && line.back() == u'\r') line.pop_back();
    std::transform(line.begin(), line.end(), line.begin(), PlainCharacter);
    from = end + 1;
    ++number;
    if (std::all_of(line.begin(), line.end(), IsBlank)) continue;
    page.Folded += FoldLetters(line);
    page.Folded += u'\n';
    page.Lines.push_back(std::move(line));
    page.Numbers.push_back(number);
  }
  BlankRowNumbers(page);
  return page;
}

Span Trim(const ManualPage& page, Span span) {
  const std::u16string& line = page.Lines[span.Line];
  while (span.From < span.To && IsBlank(line[span.From])) ++span.From;
  while (span.To > span.From && IsBlank(line[span.To - 1])) --span.To;
  return span;
}

bool StandsAlone(const ManualPage& page, const Span& span) {
  return Trim(page, {span.Line, 0, page.Lines[span.Line].size()}) == span;
}

}  // namespace qdm
