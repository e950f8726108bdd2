#include "serial_strings/folded_text.h"

#include "base/words.h"

#include <algorithm>
#include <optional>

namespace qdm {
namespace {

using Text = std::u16string_view;

struct Fold {
  char16_t First;
  char16_t Last;
  Text Plain;
  const char* Note;
};

constexpr const char* kBlank = Marked("a typographic blank became a blank");
constexpr const char* kInvisible = Marked("an invisible character was left out");
constexpr const char* kDash = Marked("a dash became a hyphen");
constexpr const char* kQuote = Marked("typographic quotation marks became plain ones");
constexpr const char* kBracket = Marked("typographic brackets became plain ones");
constexpr const char* kLigature = Marked("a ligature became its letters");
constexpr const char* kDrawnBlank = Marked("a sign for a blank became a blank");
constexpr const char* kWide = Marked("wide characters became plain ones");
constexpr const char* kSign = Marked("a typographic sign became a plain one");

// In the order of their codes.
constexpr Fold kFolds[] = {
    {0x00A0, 0x00A0, u" ", Marked("a no-break space became a blank")},
    {0x00AB, 0x00AB, u"\"", kQuote},
    {0x00AD, 0x00AD, u"", Marked("a soft hyphen was left out")},
    {0x00B4, 0x00B4, u"'", kQuote},
    {0x00B7, 0x00B7, u" ", kDrawnBlank},
    {0x00BB, 0x00BB, u"\"", kQuote},
    {0x02BC, 0x02BC, u"'", kQuote},
    {0x1680, 0x1680, u" ", kBlank},
    {0x2000, 0x200A, u" ", kBlank},
    {0x200B, 0x200F, u"", kInvisible},
    {0x2010, 0x2015, u"-", kDash},
    {0x2018, 0x201B, u"'", kQuote},
    {0x201C, 0x201F, u"\"", kQuote},
    {0x2022, 0x2023, u" ", Marked("a bullet became a blank")},
    {0x2026, 0x2026, u"...", kSign},
    {0x2027, 0x2027, u" ", kDrawnBlank},
    {0x202A, 0x202E, u"", kInvisible},
    {0x202F, 0x202F, u" ", Marked("a no-break space became a blank")},
    {0x2032, 0x2032, u"'", kQuote},
    {0x2033, 0x2033, u"\"", kQuote},
    {0x2039, 0x2039, u"<", kBracket},
    {0x203A, 0x203A, u">", kBracket},
    {0x2044, 0x2044, u"/", kSign},
    {0x205F, 0x205F, u" ", kBlank},
    {0x2060, 0x2069, u"", kInvisible},
    {0x2192, 0x2192, u"->", kSign},
    {0x21D2, 0x21D2, u"->", kSign},
    {0x2212, 0x2212, u"-", kDash},
    {0x2215, 0x2215, u"/", kSign},
    {0x2219, 0x2219, u" ", kDrawnBlank},
    {0x223C, 0x223C, u"~", kSign},
    {0x2294, 0x2294, u" ", kDrawnBlank},
    {0x22C5, 0x22C5, u" ", kDrawnBlank},
    {0x2329, 0x2329, u"<", kBracket},
    {0x232A, 0x232A, u">", kBracket},
    {0x2334, 0x2334, u" ", kDrawnBlank},
    {0x23B5, 0x23B5, u" ", kDrawnBlank},
    {0x2420, 0x2420, u" ", kDrawnBlank},
    {0x2423, 0x2423, u" ", kDrawnBlank},
    {0x25A0, 0x25AB, u" ", kDrawnBlank},
    {0x25CF, 0x25CF, u" ", Marked("a bullet became a blank")},
    {0x27E8, 0x27E8, u"<", kBracket},
    {0x27E9, 0x27E9, u">", kBracket},
    {0x3000, 0x3000, u" ", kBlank},
    {0x3001, 0x3001, u",", kSign},
    {0x3008, 0x3008, u"<", kBracket},
    {0x3009, 0x3009, u">", kBracket},
    {0x300C, 0x300F, u"\"", kQuote},
    {0x3010, 0x3010, u"[", kBracket},
    {0x3011, 0x3011, u"]", kBracket},
    {0x3014, 0x3014, u"[", kBracket},
    {0x3015, 0x3015, u"]", kBracket},
    {0xFB00, 0xFB00, u"ff", kLigature},
    {0xFB01, 0xFB01, u"fi", kLigature},
    {0xFB02, 0xFB02, u"fl", kLigature},
    {0xFB03, 0xFB03, u"ffi", kLigature},
    {0xFB04, 0xFB04, u"ffl", kLigature},
    {0xFB05, 0xFB06, u"st", kLigature},
    {0xFE00, 0xFE0F, u"", kInvisible},
    {0xFE58, 0xFE58, u"-", kDash},
    {0xFE63, 0xFE63, u"-", kDash},
    {0xFEFF, 0xFEFF, u"", kInvisible},
};

// Letters that look Latin, Cyrillic ones first.
constexpr Text kLookAlikes = u"АВЕКМНОРСТХаеорсухΑΒΕΖΗΙΚΜΝΟΡΤΥΧ";
constexpr Text kLatin = u"ABEKMHOPCTXaeopcyxABEZHIKMNOPTYX";
static_assert(kLookAlikes.size() == kLatin.size());

struct Entity {
  Text Name;
  Text Plain;
};
constexpr Entity kEntities[] = {{u"&lt;", u"<"},   {u"&gt;", u">"},  {u"&quot;", u"\""},
                                {u"&nbsp;", u" "}, {u"&amp;", u"&"}, {u"&apos;", u"'"}};

struct Folded {
  Text Plain;
  const char* Note;
  std::size_t Length = 1;  // of what is replaced
};

// Where the character alone does not tell: the sign of multiplication in "0×0D", the currency signs that
// stand on the backslash's key in Japan and Korea.
std::optional<Folded> FoldInContext(Text text, std::size_t at) {
  const char16_t c = text[at];
  if (c == 0xD7 && at > 0 && text[at - 1] == u'0')
    return Folded{u"x", Marked("a sign of multiplication became an x")};
  if (c == 0xA5 || c == 0x20A9) {
    constexpr Text kBehindBackslash = u"xXrn0123";
    const bool isEscape = at + 1 < text.size() && kBehindBackslash.find(text[at + 1]) != Text::npos;
    if (isEscape) return Folded{u"\\", Marked("a currency sign became a backslash")};
  }
  if (c != u'&') return std::nullopt;
  for (const Entity& entity : kEntities) {
    if (text.substr(at).starts_with(entity.Name)) {
      return Folded{entity.Plain, Marked("an HTML name became its character"), entity.Name.size()};
    }
  }
  return std::nullopt;
}

std::optional<Folded> FoldCharacter(Text text, std::size_t at) {
  const char16_t c = text[at];
  if (c < 0x80 && c != u'&') return std::nullopt;
  const auto* fold =
      std::find_if(std::begin(kFolds), std::end(kFolds), [c](const Fold& entry) { return c <= entry.Last; });
  if (fold != std::end(kFolds) && c >= fold->First) return Folded{fold->Plain, fold->Note};
  const std::size_t alike = kLookAlikes.find(c);
  if (alike != Text::npos)
    return Folded{kLatin.substr(alike, 1), Marked("a foreign letter became the Latin one")};
  return FoldInContext(text, at);
}

}  // namespace

FoldedText FoldTypography(Text text) {
  constexpr char16_t kFirstWide = 0xFF01;
  constexpr char16_t kLastWide = 0xFF5E;
  FoldedText folded;
  const auto note = [&folded](const char* what) {
    if (std::find(folded.Notes.begin(), folded.Notes.end(), what) == folded.Notes.end()) {
      folded.Notes.emplace_back(what);
    }
  };
  for (std::size_t at = 0; at < text.size();) {
    std::size_t length = 1;
    const std::size_t before = folded.Text.size();
    if (text[at] >= kFirstWide && text[at] <= kLastWide) {
      folded.Text += static_cast<char16_t>(text[at] - kFirstWide + u'!');
      note(kWide);
    } else if (const auto fold = FoldCharacter(text, at)) {
      folded.Text += fold->Plain;
      length = fold->Length;
      note(fold->Note);
    } else {
      folded.Text += text[at];
    }
    folded.Origins.insert(folded.Origins.end(), folded.Text.size() - before, at);
    at += length;
  }
  folded.Origins.push_back(text.size());
  return folded;
}

}  // namespace qdm
