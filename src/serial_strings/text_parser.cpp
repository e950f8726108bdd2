#include "serial_strings/text_parser.h"

#include "base/code_page.h"
#include "serial_strings/byte_notation.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

// 32 bytes in any notation, generously spaced, are shorter.
constexpr std::size_t kLongestText = 1000;
// The longest name or number between brackets.
constexpr std::size_t kLongestBracket = 8;

std::string Quoted(Text text) {
  constexpr std::size_t kShown = 20;
  return '"' + ToUtf8(text.substr(0, kShown)) + (text.size() > kShown ? "..." : "") + '"';
}

// One way to read the text, being tried.
struct Attempt {
  SerialString String;
  std::optional<TextProblem> Problem;  // the first; the reading has failed then
  int Marks = 0;                       // notations that say what they are: what makes the reading likely
  bool Meant = false;                  // the text looks like this way: its problem is worth telling

  void Fail(std::size_t at, std::string why) {
    if (!Problem) Problem = {at, std::move(why)};
  }

  void Add(std::size_t at, std::uint8_t value, ByteKind kind) {
    if (Problem) return;
    if (String.BytesInUse() == kMaximumStringBytes) return Fail(at, "more than 32 bytes");
    const auto place = static_cast<std::size_t>(String.Count++);
    String.Values[place] = value;
    String.Kinds[place] = static_cast<std::uint8_t>(kind);
  }
  void Add(std::size_t at, const NotedByte& byte) { Add(at, byte.Value, byte.Kind); }

  void AddCharacter(std::size_t at, char16_t character) {
    if (Problem) return;
    if (character < 32) {
      return Fail(at, "a control character (" + HexByte(static_cast<std::int16_t>(character)) + "h)");
    }
    const auto byte = ByteOf(character);
    if (!byte) return Fail(at, "the character has no code of one byte");
    Add(at, *byte, ByteKind::ASC);
  }
};

Attempt ReadCharacters(Text text) {
  Attempt attempt;
  for (std::size_t i = 0; i < text.size(); ++i) attempt.AddCharacter(i, text[i]);
  return attempt;
}

// The compact text. A comma separates where one of its neighbours is no character; between characters it is
// a character.
Attempt ReadCompact(Text text) {
  Attempt attempt;
  std::optional<std::size_t> runStart;
  const auto closeRun = [&](std::size_t end) {
    if (!runStart) return;
    if (*runStart == end) attempt.Fail(end, "nothing beside the comma");
    for (std::size_t i = *runStart; i < end; ++i) attempt.AddCharacter(i, text[i]);
    runStart.reset();
  };
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(u',', start), text.size());
    const Text piece = text.substr(start, end - start);
    if (const auto byte = ReadCompactByte(piece)) {
      closeRun(start == 0 ? 0 : start - 1);
      attempt.Add(start, *byte);
      ++attempt.Marks;
    } else {
      if (piece == u"ERRORc") {
        attempt.Fail(start, "\"ERRORc\" stands for a control code without a name");
        attempt.Meant = true;
      }
      if (!runStart) runStart = start;
    }
    start = end + 1;
  }
  closeRun(text.size());
  return attempt;
}

// ---- characters with escapes ----

struct Escape {
  char16_t Letter;
  std::uint8_t Value;
  ByteKind Kind;
};
constexpr Escape kEscapes[] = {
    {u'a', 7, ByteKind::CNT},   {u'b', 8, ByteKind::CNT},     {u't', 9, ByteKind::CNT},
    {u'n', 10, ByteKind::CNT},  {u'v', 11, ByteKind::CNT},    {u'f', 12, ByteKind::CNT},
    {u'r', 13, ByteKind::CNT},  {u'e', 27, ByteKind::CNT},    {u'\\', '\\', ByteKind::ASC},
    {u'"', '"', ByteKind::ASC}, {u'\'', '\'', ByteKind::ASC}, {u'?', '?', ByteKind::ASC},
};

bool IsOctal(char16_t c) { return c >= u'0' && c <= u'7'; }

// A run of digits from `at` on, at most `room`.
std::size_t EndOfDigits(Text text, std::size_t at, std::size_t room, bool (*isDigit)(char16_t)) {
  const std::size_t limit = std::min(text.size(), at + room);
  while (at < limit && isDigit(text[at])) ++at;
  return at;
}

// The escape whose backslash is at `at`; gives the place behind it.
std::size_t ReadEscape(Text text, std::size_t at, std::size_t origin, Attempt& attempt) {
  const Text letter = text.substr(at + 1, 1);
  const auto isHexadecimal = [](char16_t c) {
    return ReadNumber({&c, 1}, Unmarked::Hexadecimal).has_value();
  };
  attempt.Meant = true;
  if (letter == u"x") {
    const std::size_t end = EndOfDigits(text, at + 2, 2, isHexadecimal);
    const auto byte = ReadNumber(text.substr(at + 2, end - at - 2), Unmarked::Hexadecimal);
    if (!byte) attempt.Fail(origin + at, "\"\\x\" needs one or two hexadecimal digits");
    if (byte) attempt.Add(origin + at, *byte);
    return end;
  }
  if (!letter.empty() && IsOctal(letter[0])) {
    const std::size_t end = EndOfDigits(text, at + 1, 3, IsOctal);
    int value = 0;
    for (std::size_t i = at + 1; i < end; ++i) value = value * 8 + (text[i] - u'0');
    if (value > 255) attempt.Fail(origin + at, Quoted(text.substr(at, end - at)) + " is more than 255");
    attempt.Add(origin + at, static_cast<std::uint8_t>(value & 0xFF), ByteKind::HEX);
    return end;
  }
  for (const Escape& escape : kEscapes) {
    if (letter != Text(&escape.Letter, 1)) continue;
    attempt.Add(origin + at, escape.Value, escape.Kind);
    return at + 2;
  }
  attempt.Fail(origin + at, Quoted(text.substr(at, 2)) + " is not an escape");
  return at + 1 + letter.size();
}

struct Bracketed {
  NotedByte Byte;
  std::size_t End;  // behind the closing bracket
};

// "<CR>", "[CR]", "{CR}", "<0D>". Square and curly brackets are usual around other numbers.
std::optional<Bracketed> ReadBracket(Text text, std::size_t at, Unmarked unmarked) {
  constexpr Text kOpening = u"<[{";
  constexpr Text kClosing = u">]}";
  const std::size_t which = kOpening.find(text[at]);
  if (which == Text::npos) return std::nullopt;
  const std::size_t end = text.substr(0, at + kLongestBracket + 2).find(kClosing[which], at);
  if (end == Text::npos) return std::nullopt;
  const Text inner = text.substr(at + 1, end - at - 1);
  const auto byte = which == 0 ? ReadByte(inner, unmarked) : ReadCodeName(inner);
  if (!byte) return std::nullopt;
  return Bracketed{*byte, end + 1};
}

void AddEscapedText(Text text, std::size_t origin, Unmarked unmarked, Attempt& attempt) {
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == u'\\') {
      at = ReadEscape(text, at, origin, attempt);
      ++attempt.Marks;
    } else if (const auto bracketed = ReadBracket(text, at, unmarked)) {
      attempt.Add(origin + at, bracketed->Byte);
      at = bracketed->End;
      ++attempt.Marks;
    } else {
      attempt.AddCharacter(origin + at, text[at]);
      ++at;
    }
  }
}

Attempt ReadEscapes(Text text, Unmarked unmarked) {
  Attempt attempt;
  AddEscapedText(text, 0, unmarked, attempt);
  return attempt;
}

// ---- bytes one by one ----

bool IsBlank(char16_t c) { return c == u' ' || (c >= 9 && c <= 13) || c == 0xA0; }
bool IsComma(char16_t c) { return c == u',' || c == u';'; }
bool IsQuotationMark(char16_t c) { return c == u'"' || c == u'\''; }

struct ByteList {
  Attempt Read;
  std::size_t Items = 0;
  std::size_t Bytes = 0;  // items that are bytes
};

// A text in quotation marks, opened at `at`; gives the place behind it.
std::size_t ReadQuotation(Text text, std::size_t at, ByteList& list) {
  std::size_t end = at + 1;
  while (end < text.size() && text[end] != text[at]) end += text[end] == u'\\' ? 2U : 1U;
  if (end >= text.size()) {
    list.Read.Fail(at, "the quotation mark is not closed");
    return text.size();
  }
  AddEscapedText(text.substr(at + 1, end - at - 1), at + 1, Unmarked::HexadecimalAfterNames, list.Read);
  ++list.Read.Marks;
  ++list.Bytes;
  return end + 1;
}

std::size_t ReadItem(Text text, std::size_t at, Unmarked unmarked, ByteList& list) {
  std::size_t end = at;
  while (end < text.size() && !IsBlank(text[end]) && !IsComma(text[end])) ++end;
  const Text item = text.substr(at, end - at);
  std::optional<NotedByte> byte = ReadByte(item, unmarked);
  const Unmarked inBrackets = unmarked == Unmarked::Hexadecimal ? Unmarked::HexadecimalAfterNames : unmarked;
  if (const auto bracketed = ReadBracket(text, at, inBrackets); bracketed && bracketed->End == end) {
    byte = bracketed->Byte;
    byte->Marked = true;
  }
  if (!byte) {
    if (!list.Read.Problem) list.Read.Fail(at, Quoted(item) + " is not a byte");
    return end;
  }
  list.Read.Add(at, *byte);
  list.Read.Marks += byte->Marked ? 1 : 0;
  ++list.Bytes;
  return end;
}

ByteList ReadList(Text text, Unmarked unmarked) {
  ByteList list;
  bool afterComma = true;  // or at the beginning
  for (std::size_t at = 0; at < text.size();) {
    if (IsBlank(text[at])) {
      ++at;
    } else if (IsComma(text[at])) {
      if (afterComma) list.Read.Fail(at, "nothing before the comma");
      afterComma = true;
      ++at;
    } else {
      ++list.Items;
      afterComma = false;
      at = IsQuotationMark(text[at]) ? ReadQuotation(text, at, list) : ReadItem(text, at, unmarked, list);
      const bool apart = at >= text.size() || IsBlank(text[at]) || IsComma(text[at]);
      if (!apart) list.Read.Fail(at, "a blank or a comma is missing");
    }
  }
  const bool mostlyBytes = list.Bytes >= 2 && 2 * list.Bytes >= list.Items;
  list.Read.Meant = list.Read.Marks > 0 || mostlyBytes;
  return list;
}

// A single word without a mark is a byte only when it is one or two digits.
bool IsList(const ByteList& list, Text text) {
  if (list.Read.Problem || list.Read.String.Count == 0) return false;
  const auto first = static_cast<ByteKind>(list.Read.String.Kinds[0]);
  const bool isNumber = first == ByteKind::HEX || first == ByteKind::DEC;
  return list.Items > 1 || list.Read.Marks > 0 || (isNumber && text.size() <= 2);
}

// ---- all of them ----

bool SameBytes(const SerialString& a, const SerialString& b) {
  const auto isSpecial = [](std::uint8_t kind) { return kind >= static_cast<std::uint8_t>(ByteKind::VAR); };
  if (a.Count != b.Count) return false;
  for (std::size_t i = 0; i < a.BytesInUse(); ++i) {
    const bool special = isSpecial(a.Kinds[i]) || isSpecial(b.Kinds[i]);
    if (a.Values[i] != b.Values[i] || (special && a.Kinds[i] != b.Kinds[i])) return false;
  }
  return true;
}

class Readings {
 public:
  void Offer(const char* as, const Attempt& attempt) {
    if (attempt.Problem) {
      if (attempt.Meant && !problem_) problem_ = attempt.Problem;
      return;
    }
    const auto same = [&](const TextReading& other) { return SameBytes(other.String, attempt.String); };
    if (std::none_of(readings_.begin(), readings_.end(), same)) readings_.push_back({as, attempt.String});
  }
  bool Empty() const { return readings_.empty(); }
  std::vector<TextReading> Take() { return std::move(readings_); }
  const std::optional<TextProblem>& Problem() const { return problem_; }

 private:
  std::vector<TextReading> readings_;
  std::optional<TextProblem> problem_;
};

struct ListWay {
  Unmarked Digits;
  const char* As;
};
constexpr ListWay kListWays[] = {{Unmarked::Hexadecimal, "bytes in hexadecimal"},
                                 {Unmarked::Decimal, "bytes in decimal"},
                                 {Unmarked::HexadecimalAfterNames, "control codes and bytes"}};
constexpr ListWay kEscapeWays[] = {{Unmarked::HexadecimalAfterNames, "characters and codes"},
                                   {Unmarked::Hexadecimal, "characters and hexadecimal codes"},
                                   {Unmarked::Decimal, "characters and decimal codes"}};

// Names and numbers that only the display writes in this way.
bool HasDisplayOnlyMarks(Text text) {
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(u',', start), text.size());
    const auto byte = ReadCompactByte(text.substr(start, end - start));
    if (byte && byte->Kind != ByteKind::HEX) return true;
    start = end + 1;
  }
  return false;
}

bool HasCharacters(const SerialString& string) {
  const auto end = string.Kinds.begin() + static_cast<std::ptrdiff_t>(string.BytesInUse());
  return std::find(string.Kinds.begin(), end, static_cast<std::uint8_t>(ByteKind::ASC)) != end;
}

void OfferLists(Text text, Readings& readings) {
  for (const ListWay& way : kListWays) {
    const ByteList list = ReadList(text, way.Digits);
    if (IsList(list, text) || (list.Read.Problem && list.Read.Meant)) readings.Offer(way.As, list.Read);
  }
}

void OfferEscapes(Text text, Readings& readings) {
  if (text.find_first_of(u"\\<[{") == Text::npos) return;
  for (const ListWay& way : kEscapeWays) {
    const Attempt attempt = ReadEscapes(text, way.Digits);
    if (attempt.Marks > 0) readings.Offer(way.As, attempt);
  }
}

Text WithoutLineEnd(Text text) {
  if (text.ends_with(u'\n')) text.remove_suffix(1);
  if (text.ends_with(u'\r')) text.remove_suffix(1);
  return text;
}

}  // namespace

ParsedText ParseSerialText(Text wholeText) {
  const Text text = WithoutLineEnd(wholeText);  // of a line that was copied whole
  if (text.empty()) return {{}, TextProblem{0, "there is no text"}};
  if (text.size() > kLongestText) return {{}, TextProblem{kLongestText, "more text than 32 bytes need"}};

  const Attempt compact = ReadCompact(text);
  const Attempt characters = ReadCharacters(text);
  const bool isCompact = compact.Marks > 0;
  // "02,00,0Dh" is rather a list than the characters "02,00" and a byte; "12,CRc" is what the display writes.
  const bool compactFirst = isCompact && (HasDisplayOnlyMarks(text) || !HasCharacters(compact.String));

  Readings readings;
  if (compactFirst) readings.Offer("compact text", compact);
  const bool isLoneNumber = text.size() <= 2 && ReadNumber(text, Unmarked::Hexadecimal);
  if (isLoneNumber) readings.Offer("characters", characters);
  OfferLists(text, readings);
  OfferEscapes(text, readings);
  if (isCompact || compact.Meant) readings.Offer("compact text", compact);
  const bool structured = !readings.Empty();
  readings.Offer("characters", characters);

  ParsedText parsed;
  parsed.Problem = structured ? std::nullopt : readings.Problem();
  parsed.Readings = readings.Take();
  if (parsed.Readings.empty() && !parsed.Problem) parsed.Problem = characters.Problem;
  if (const std::size_t hidden = text.find(u'\x7F'); hidden != Text::npos && !parsed.Problem) {
    parsed.Problem = {hidden, "the display writes every control character like this one"};
  }
  return parsed;
}

std::string ProblemText(const TextProblem& problem) {
  return "Character " + std::to_string(problem.Position + 1) + ": " + problem.Why + ".";
}

std::string HexBytes(const SerialString& string) {
  std::string text;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const std::uint8_t kind = string.Kinds[i];
    const bool special =
        kind == static_cast<std::uint8_t>(ByteKind::VAR) || kind == static_cast<std::uint8_t>(ByteKind::IGN);
    text += (i == 0 ? "" : " ") + (special ? CompactByteText(0, kind).Text : HexByte(string.Values[i]));
  }
  return text;
}

}  // namespace qdm
