#include "base/code_page.h"
#include "base/words.h"
#include "serial_strings/code_notation.h"
#include "serial_strings/reading_attempt.h"
#include "serial_strings/text_parts.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

// Words that manuals write where something is to be filled in.
constexpr Text kPlaceholders[] = {
    u"CKS",        u"CHK",    u"CHKSUM", u"CHECKSUM", u"CSUM",     u"SUM",        u"BCC",       u"LRC",
    u"CRC",        u"CS",     u"FCS",    u"CMD",      u"COMMAND",  u"DATA",       u"ID",        u"ADDR",
    u"ADDRESS",    u"VALUE",  u"VAL",    u"LEN",      u"LENGTH",   u"PARAM",      u"PARAMETER", u"PARM",
    u"ARG",        u"LEVEL",  u"N",      u"X",        u"N1",       u"N2",         u"X1",        u"X2",
    u"P1",         u"P2",     u"D1",     u"D2",       u"DATA1",    u"DATA2",      u"EOL",       u"DELIMITER",
    u"TERMINATOR", u"HEADER", u"DEVICE", u"NONE",     u"RESERVED", u"UNSUPPORTED"};

bool IsPlaceholder(Text word) {
  const std::u16string upper = UpperCase(word);
  return std::find(std::begin(kPlaceholders), std::end(kPlaceholders), Text(upper)) !=
         std::end(kPlaceholders);
}

std::string StandsFor(Text text) { return Say("%1 seems to stand for something else", {Quoted(text)}); }

// "XX", "nn", "##", "??" "VOLxx"; not "CONNECT".
bool IsRepeated(Text text, std::size_t at, std::size_t end) {
  if (end - at < 2) return false;
  const char16_t c = text[at];
  if (c == u'X' || c == u'x' || c == u'#' || c == u'*' || c == u'_' || c == u'?') return true;
  constexpr Text kLetters = u"NnYyZzDdPpVvMm";
  if (kLetters.find(c) == Text::npos && !(IsLower(c) && end - at > 2)) return false;
  const bool letterBefore = at > 0 && IsLetter(text[at - 1]);
  const bool letterAfter = end < text.size() && IsLetter(text[end]);
  if (IsUpper(c)) return !letterBefore && !letterAfter;
  return (!letterBefore || IsUpper(text[at - 1])) && (!letterAfter || IsUpper(text[end]));
}

// "VOL n", "VOLn<CR>": one small letter among capitals.
bool IsVariable(Text text, std::size_t at) {
  if (Text(u"nxm").find(text[at]) == Text::npos) return false;
  // "On" is a word.
  const bool smallBefore =
      at > 0 && IsLetter(text[at - 1]) && (at == 1 || !IsUpper(text[at - 2]) || IsLower(text[at - 1]));
  const bool wordAfter = at + 1 < text.size() && IsWordPart(text[at + 1]);
  return !smallBefore && !wordAfter && std::any_of(text.begin(), text.end(), IsUpper);
}

// "%d", "%02X"; "%1POWR" is a command.
bool IsFormat(Text text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && IsDigit(text[end])) ++end;
  if (end >= text.size()) return false;
  return Text(u"dsuxic").find(text[end]) != Text::npos ||
         (text[end] == u'X' && end > at + 1 && text[at + 1] == u'0');
}

// "ON/OFF", "0|1", "0-100", "0~9": one of several.
bool IsChoice(Text text, std::size_t at) {
  if (at == 0 || at + 1 >= text.size()) return false;
  const char16_t before = text[at - 1];
  const char16_t after = text[at + 1];
  const char16_t c = text[at];
  if (c == u'/') {
    const bool isLineEnd = at > 1 && UpperCase(text.substr(at - 2, 5)) == u"CR/LF";
    const bool parts = before == u' ' && after == u' ' && at > 1;
    return parts || (IsWordPart(before) && IsWordPart(after) && !isLineEnd);
  }
  if (c == u'|') return true;
  if (c == u',') return after == u' ' && at + 2 < text.size() && IsLetter(text[at + 2]);
  return (c == u'-' || c == u'~') && IsDigit(before) && IsDigit(after);
}

// "PON*1" points to a footnote, "PON=0D" to a code, "VOL $1" to a value.
std::optional<std::string> DoubtAtSign(Text text, std::size_t at) {
  const char16_t c = text[at];
  const std::size_t end = EndOfWord(text, at + 1);
  const Text behind = text.substr(at + 1, end - at - 1);
  const bool digits = std::all_of(behind.begin(), behind.end(), IsDigit);
  if (behind.empty()) return std::nullopt;
  constexpr std::size_t kLongestNote = 2;
  const bool atEnd = end == text.size() && at > 0 && IsWordPart(text[at - 1]);
  if (c == u'*' && atEnd && digits && behind.size() <= kLongestNote)
    return Say("%1 may point to a footnote", {Quoted(text.substr(at))});
  if (c == u'=' && atEnd && behind.size() == 2 && behind[0] == u'0' && IsHexDigit(behind[1]) &&
      IsLetter(behind[1]))
    return Say("%1 may be a code", {Quoted(text.substr(at))});
  if (c == u'$' && digits && behind.size() == 1) return StandsFor(text.substr(at, 2));
  return std::nullopt;
}

// "<CMD>", "[data]": brackets around no code. Square, curly and round ones are often the command's own.
std::optional<std::string> DoubtInBrackets(Text text, std::size_t at) {
  const std::size_t which = kOpeningBrackets.find(text[at]);
  if (which == Text::npos || ReadCode(text, at, Unmarked::HexadecimalAfterNames, true)) return std::nullopt;
  const std::size_t end = text.find(kClosingBrackets[which], at);
  if (end == Text::npos || end == at + 1) return std::nullopt;
  const Text inner = text.substr(at + 1, end - at - 1);
  const bool isWhole = at == 0 && end + 1 == text.size();
  const bool isNumber = std::all_of(inner.begin(), inner.end(), IsDigit);
  if (which == 0 ? IsWordPart(inner[0]) && !isNumber : IsPlaceholder(inner)) {
    return StandsFor(text.substr(at, end + 1 - at));
  }
  if (isWhole || which == 0) return std::nullopt;
  return Say("the brackets round %1 may be the writer's", {Quoted(inner)});
}

std::optional<std::string> DoubtAtWord(Text text, std::size_t at) {
  const std::size_t end = EndOfWord(text, at);
  const Text word = text.substr(at, end - at);
  if (word.size() > 2 && (word.starts_with(u"0x") || word.starts_with(u"0X")))
    return Say("%1 is not a byte", {Quoted(word)});
  if (word.size() > 1 && IsPlaceholder(word)) return StandsFor(word);
  const bool between = at > 0 && end < text.size() && text[at - 1] == u' ' && text[end] == u' ';
  const std::u16string upper = UpperCase(word);
  if (between && (upper == u"OR" || upper == u"TO" || upper == u"AND"))
    return Say("%1 joins several commands", {Quoted(word)});
  return std::nullopt;
}

// Words in small letters: a sentence out of a manual rather than a command.
std::optional<TextProblem> FindSentence(Text text) {
  std::size_t words = 0;
  std::size_t small = 0;  // words with a small second letter
  bool label = false;     // "Power" before other words
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t end = at == 0 || text[at - 1] == u' ' ? EndOfWord(text, at) : at;
    if (end < at + 2 || !IsLetter(text[at])) continue;
    constexpr std::size_t kLabelLength = 4;
    const bool isSmall = IsLower(text[at + 1]);
    label = label || (isSmall && words == 0 && end >= at + kLabelLength);
    ++words;
    small += isSmall ? 1U : 0U;
  }
  if (small < 2 && !(label && words > 1)) return std::nullopt;
  return TextProblem{0, Say("this reads like a sentence")};
}

std::optional<std::string> DoubtAt(Text text, std::size_t at) {
  const char16_t c = text[at];
  if (auto doubt = DoubtInBrackets(text, at)) return doubt;
  if (c == u'%' && IsFormat(text, at)) return StandsFor(text.substr(at, 4));
  if (auto doubt = DoubtAtSign(text, at)) return doubt;
  if (text.substr(at, 2) == u"..") return Say("\"..\" stands for what is left out");
  if (IsChoice(text, at)) return Say("%1 may be a choice", {Quoted(text.substr(at - 1, 3))});
  std::size_t end = at;
  while (end < text.size() && text[end] == c) ++end;
  const bool begins = at == 0 || text[at - 1] != c;
  if (begins && IsRepeated(text, at, end)) return StandsFor(text.substr(at, end - at));
  if (IsVariable(text, at)) return StandsFor(text.substr(at, 1));
  if (c > 0x7F) return Say("devices do not agree on the code of %1", {Quoted(text.substr(at, 1))});
  const bool atWord = IsWordPart(c) && (at == 0 || !IsWordPart(text[at - 1]));
  return atWord ? DoubtAtWord(text, at) : std::nullopt;
}

}  // namespace

std::optional<TextProblem> FindDoubt(Text text) {
  for (std::size_t at = 0; at < text.size();) {
    if (const auto code = ReadCode(text, at, Unmarked::HexadecimalAfterNames, false); code && code->Certain) {
      at = code->End;
      continue;
    }
    if (auto why = DoubtAt(text, at)) return TextProblem{at, std::move(*why)};
    ++at;
  }
  if (const std::u16string upper = UpperCase(text); upper == u"N.A." || upper == u"N.A" || upper == u"N/A")
    return TextProblem{0, StandsFor(text)};
  const bool hasSign = std::any_of(text.begin(), text.end(), [](char16_t c) { return IsWordPart(c); });
  if (!hasSign) return TextProblem{0, Say("there is no letter and no digit")};
  return FindSentence(text);
}

}  // namespace qdm
