#include "serial_strings/coded_text.h"

#include "base/code_page.h"
#include "base/words.h"
#include "serial_strings/code_notation.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr Text kOperators = u"+&,;_";

struct Piece {
  std::size_t At = 0;
  Text Written;
  std::optional<NotedCode> Code;  // nothing: characters

  bool IsCode() const { return Code.has_value(); }
};

struct Cut {
  std::vector<Piece> Pieces;
  std::optional<TextProblem> Problem;
  std::size_t Codes = 0;
  int Doubts = 0;
  bool Certain = true;
};

// Names that stand for codes without any mark; others ("CAN", "SO", "US") are words as well.
std::optional<NotedCode> ReadBareName(Text text, std::size_t at) {
  constexpr Text kFrames[] = {u"STX", u"ETX", u"SOH",  u"EOT",  u"ENQ",  u"ACK",    u"NAK",   u"CR",    u"LF",
                              u"ESC", u"NUL", u"CRLF", u"VBCR", u"VBLF", u"VBCRLF", u"ENTER", u"RETURN"};
  if (at > 0 && IsWordPart(text[at - 1])) return std::nullopt;
  const std::size_t end = EndOfWord(text, at);
  const std::u16string word = UpperCase(text.substr(at, end - at));
  const bool closes = at > 0 && IsBlank(text[at - 1]) && end == text.size();
  if (word == u"0D" && (closes || TrimSpace(UpperCase(text.substr(end))) == u"0A")) {
    NotedCode code;
    code.Append({13, ByteKind::HEX, false});
    code.End = end;
    const auto isWord = [](char16_t c) { return IsLetter(c) && !IsHexDigit(c); };
    const bool afterWords = std::any_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), isWord);
    return afterWords ? std::optional(code) : std::nullopt;
  }
  if (word == u"0A" && closes && UpperCase(text.substr(0, at)).ends_with(u"0D ")) {
    NotedCode code;
    code.Append({10, ByteKind::HEX, false});
    code.End = end;
    return code;
  }
  if (std::find(std::begin(kFrames), std::end(kFrames), Text(word)) == std::end(kFrames)) return std::nullopt;
  auto code = ReadCodeNames(word);
  if (!code) return std::nullopt;
  code->End = end;
  code->Certain = false;
  return code;
}

std::string EscapeProblem(Text text, std::size_t at) {
  const Text escape = text.substr(at, 2);
  if (escape == u"\\x") return Say("\"\\x\" needs one or two hexadecimal digits");
  const bool isNumber = escape.size() == 2 && IsDigit(escape[1]);
  return isNumber ? Say("%1 is more than 255", {Quoted(text.substr(at, 4))})
                  : Say("%1 is not an escape", {Quoted(text.substr(at, 2))});
}

// Cuts the text at its codes, all or those that are certain.
Cut CutAtCodes(Text text, Unmarked unmarked, bool certainOnly) {
  Cut cut;
  std::size_t start = 0;
  bool joined = true;
  const auto closeText = [&](std::size_t end) {
    if (end > start) cut.Pieces.push_back({start, text.substr(start, end - start), std::nullopt});
  };
  for (std::size_t at = 0; at < text.size();) {
    auto code = ReadCode(text, at, unmarked, joined);
    if (!code && text[at] == u'\\' && !cut.Problem) cut.Problem = {at, EscapeProblem(text, at)};
    if (!code && IsWordPart(text[at])) code = ReadBareName(text, at);
    const bool left = code && certainOnly && !code->Certain;
    if (left) cut.Doubts += IsUsual(*code) ? 2 : 0;
    if (!code || left) {
      at = left ? code->End : at + 1;
      joined = false;
      continue;
    }
    closeText(at);
    ++cut.Codes;
    if (!code->Certain) {
      cut.Certain = false;
      cut.Doubts += IsUsual(*code) ? 0 : 2;
    }
    cut.Pieces.push_back({at, text.substr(at, code->End - at), code});
    at = start = code->End;
    joined = true;
  }
  closeText(text.size());
  return cut;
}

enum class Tidy { All, Blanks, Nothing };

struct TidyText {
  std::u16string Characters;
  std::size_t Skipped = 0;        // at the front
  bool AttachedOperator = false;  // "VOL+<CR>": the operator may well be the command's
};

// "[STX][P][O][N][ETX]": what stands in the same brackets as the codes beside it.
std::u16string Unwrap(Text text, char16_t bracket) {
  const std::size_t which = kOpeningBrackets.find(bracket);
  if (which == Text::npos || text.size() < 3 || text.front() != bracket ||
      text.back() != kClosingBrackets[which]) {
    return std::u16string(text);
  }
  std::u16string inner;
  int depth = 0;
  for (const char16_t c : text) {
    if (c == bracket) ++depth;
    if (depth > 1 || (depth == 0 && !IsBlank(c))) return std::u16string(text);
    if (c == kClosingBrackets[which]) --depth;
    if (depth == 1 && c != bracket) inner += c;
  }
  return inner;
}

void CutOperator(Text& text, bool front, TidyText& tidy) {
  if (text.empty() || kOperators.find(front ? text.front() : text.back()) == Text::npos) return;
  const bool alone = text.size() == 1 || IsBlank(front ? text[1] : text[text.size() - 2]);
  tidy.AttachedOperator = tidy.AttachedOperator || !alone;
  if (front) {
    text.remove_prefix(1);
    ++tidy.Skipped;
  } else {
    text.remove_suffix(1);
  }
}

TidyText TidyBeside(const std::vector<Piece>& pieces, std::size_t i, Tidy how) {
  Text text = pieces[i].Written;
  const bool before = i > 0;
  const bool after = i + 1 < pieces.size();
  TidyText tidy;
  const auto trim = [&] {
    while (before && !text.empty() && IsBlank(text.front())) {
      text.remove_prefix(1);
      ++tidy.Skipped;
    }
    while (after && !text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  };
  if (how != Tidy::Nothing) trim();
  if (how != Tidy::All) {
    tidy.Characters = text;
    return tidy;
  }
  if (before && after && text.size() == 1 && (text[0] == u'/' || text[0] == u'-')) return tidy;  // "CR/LF"
  if (before) CutOperator(text, true, tidy);
  if (after) CutOperator(text, false, tidy);
  trim();
  const Piece& neighbour = pieces[before ? i - 1 : i + 1];
  tidy.Characters = JoinLetters(Unwrap(text, neighbour.Written.front()));
  return tidy;
}

// "CR (0Dh)": the same code twice, the second in brackets to explain the first.
bool ExplainsCodeBefore(const std::vector<Piece>& pieces, std::size_t i) {
  std::size_t before = i;
  if (before > 0 && !pieces[before - 1].IsCode() && TrimSpace(pieces[before - 1].Written).empty()) --before;
  if (before == 0 || !pieces[before - 1].IsCode()) return false;
  const NotedCode& first = *pieces[before - 1].Code;
  const NotedCode& second = *pieces[i].Code;
  const bool bracketed = pieces[i].Written.front() == u'(' || pieces[i].Written.front() == u'[';
  return bracketed && first.Count == second.Count && first.Bytes[0].Value == second.Bytes[0].Value &&
         first.Bytes[0].Kind != second.Bytes[0].Kind;
}

CodedReading Emit(const Cut& cut, Tidy how) {
  CodedReading reading;
  reading.Doubts = cut.Doubts + (how == Tidy::Nothing ? 1 : 0);
  reading.Certain = cut.Certain;
  std::size_t attached = 0;
  std::size_t tidied = 0;
  for (std::size_t i = 0; i < cut.Pieces.size(); ++i) {
    const Piece& piece = cut.Pieces[i];
    if (piece.IsCode()) {
      if (how == Tidy::All && ExplainsCodeBefore(cut.Pieces, i)) {
        ++tidied;
        continue;
      }
      for (std::size_t b = 0; b < piece.Code->Count; ++b) reading.Read.Add(piece.At, piece.Code->Bytes[b]);
      continue;
    }
    const TidyText tidy = TidyBeside(cut.Pieces, i, how);
    attached += tidy.AttachedOperator ? 1U : 0U;
    tidied += tidy.Characters.size() != piece.Written.size() ? 1U : 0U;
    reading.Read.AddCharacters(piece.At + tidy.Skipped, tidy.Characters);
  }
  if (attached == 1) ++reading.Doubts;
  reading.Blanks = tidied > 0;
  return reading;
}

}  // namespace

std::u16string JoinLetters(Text text) {
  constexpr std::size_t kShortest = 5;
  if (text.size() < kShortest) return std::u16string(text);
  std::u16string letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool blankDue = i % 2 == 1;
    // Small letters and their parameters are parted by blanks in some protocols: "k a 1 1".
    if (IsBlank(text[i]) != blankDue || IsLower(text[i])) return std::u16string(text);
    if (!blankDue) letters += text[i];
  }
  return letters;
}

std::vector<CodedReading> ReadCodedText(Text text, Unmarked unmarked) {
  std::vector<CodedReading> readings;
  for (const bool certainOnly : {false, true}) {
    const Cut cut = CutAtCodes(text, unmarked, certainOnly);
    if (cut.Problem) {
      CodedReading failed;
      failed.Read.Fail(cut.Problem->Position, cut.Problem->Why);
      failed.Read.Meant = true;
      return {failed};
    }
    if (cut.Codes == 0 || (certainOnly && readings.front().Certain)) break;
    for (const Tidy how : {Tidy::All, Tidy::Blanks, Tidy::Nothing}) readings.push_back(Emit(cut, how));
  }
  return readings;
}

void AddQuotedText(Text text, std::size_t origin, Attempt& attempt) {
  for (std::size_t at = 0; at < text.size();) {
    const auto code = ReadCode(text, at, Unmarked::HexadecimalAfterNames, false);
    const bool marked = text[at] == u'\\' || text[at] == u'<' || text[at] == u'[' || text[at] == u'{';
    if (code && (code->Certain || text[at] == u'\\' || text[at] == u'<') && marked) {
      for (std::size_t i = 0; i < code->Count; ++i) attempt.Add(origin + at, code->Bytes[i]);
      at = code->End;
    } else {
      if (text[at] == u'\\') attempt.Fail(origin + at, EscapeProblem(text, at));
      attempt.AddCharacter(origin + at, text[at]);
      ++at;
    }
  }
}

}  // namespace qdm
