#include "serial_strings/text_parser.h"

#include "base/code_page.h"
#include "base/words.h"
#include "serial_strings/byte_list.h"
#include "serial_strings/coded_text.h"
#include "serial_strings/folded_text.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parts.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

// 32 bytes in any notation, generously spaced and with a label, are shorter.
constexpr std::size_t kLongestText = 1000;

Attempt ReadCharacters(Text text) {
  Attempt attempt;
  attempt.AddCharacters(0, text);
  return attempt;
}

// ---- the compact text ----

struct CompactReading {
  Attempt Read;
  int Marks = 0;
};

// A comma separates where one of its neighbours is no character; between characters it is a character.
CompactReading ReadCompact(Text text) {
  CompactReading compact;
  Attempt& attempt = compact.Read;
  std::optional<std::size_t> runStart;
  const auto closeRun = [&](std::size_t end) {
    if (!runStart) return;
    if (*runStart == end) attempt.Fail(end, Say("nothing beside the comma"));
    attempt.AddCharacters(*runStart, text.substr(*runStart, end - *runStart));
    runStart.reset();
  };
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(u',', start), text.size());
    const Text piece = text.substr(start, end - start);
    if (const auto byte = ReadCompactByte(piece)) {
      closeRun(start == 0 ? 0 : start - 1);
      attempt.Add(start, *byte);
      ++compact.Marks;
    } else {
      if (piece == u"ERRORc") {
        attempt.Fail(start, Say("\"ERRORc\" stands for a control code without a name"));
        attempt.Meant = true;
      }
      if (!runStart) runStart = start;
    }
    start = end + 1;
  }
  closeRun(text.size());
  return compact;
}

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

bool HasKind(const SerialString& string, ByteKind kind) {
  const auto end = string.Kinds.begin() + static_cast<std::ptrdiff_t>(string.BytesInUse());
  return std::find(string.Kinds.begin(), end, static_cast<std::uint8_t>(kind)) != end;
}

bool HasCharacters(const SerialString& string) { return HasKind(string, ByteKind::ASC); }

// ---- one line in every way ----

struct Way {
  Unmarked Digits;
  const char* As;
};
constexpr Way kListWays[] = {{Unmarked::Hexadecimal, Marked("bytes in hexadecimal")},
                             {Unmarked::Decimal, Marked("bytes in decimal")},
                             {Unmarked::HexadecimalAfterNames, Marked("control codes and bytes")},
                             {Unmarked::Binary, Marked("bytes in binary")}};
constexpr Way kCodedWays[] = {{Unmarked::HexadecimalAfterNames, Marked("characters and codes")},
                              {Unmarked::Hexadecimal, Marked("characters and hexadecimal codes")},
                              {Unmarked::Decimal, Marked("characters and decimal codes")}};

std::string WithRemark(const std::string& as, const char* remark) {
  return remark == nullptr ? as : as + ", " + remark;
}

bool IsWordAlone(Text text) { return !text.empty() && EndOfWord(text, 0) == text.size(); }

// "2 80 79": numbers of one digit beside longer ones are rarely hexadecimal.
bool LooksDecimal(Text text) {
  bool one = false;
  bool more = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!IsWordPart(text[at])) continue;
    const std::size_t end = EndOfWord(text, at);
    if (!std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at),
                     text.begin() + static_cast<std::ptrdiff_t>(end), IsDigit)) {
      return false;
    }
    (end - at == 1 ? one : more) = true;
    at = end;
  }
  return one && more;
}

// Reads one piece of text; positions of problems are counted from its beginning.
class Reader {
 public:
  Reader(Text text, std::optional<Unmarked> base) : text_(text), base_(base) {}

  // True when the text can only be meant in the one way that was found.
  bool Certain() const { return certain_; }
  std::vector<TextReading> Take() { return std::move(readings_); }
  const std::optional<TextProblem>& Problem() const { return problem_; }

  void Read() {
    if (IsCertain()) return;
    ReadCoded();
    const CompactReading compact = ReadCompact(text_);
    // "02,00,0Dh" is rather a list than the characters "02,00" and a byte; "12,CRc" is what the display
    // writes.
    const bool isCompact = compact.Marks > 0;
    const bool compactFirst =
        isCompact && (HasDisplayOnlyMarks(text_) || !HasCharacters(compact.Read.String));
    const Attempt characters = ReadCharacters(text_);
    if (compactFirst) Offer(Marked("compact text"), compact.Read);
    if (!base_ && CharactersComeFirst()) Offer(Marked("characters"), characters);
    // "C1<CR>" is rather characters, "<STX>50 4F<ETX>" bytes.
    const ByteList list = ReadByteList(text_, Unmarked::Hexadecimal);
    const bool oneUnmarked = list.Marked + 1 == list.Items && list.Marked == list.Certain;
    if (oneUnmarked && list.Marked > 0 && !isCompact && !base_) OfferCoded();
    OfferLists();
    if (isCompact || compact.Read.Meant) Offer(Marked("compact text"), compact.Read);
    if (!isCompact) OfferCoded();
    const bool structured = std::any_of(readings_.begin(), readings_.end(), [](const TextReading& reading) {
      return reading.As != "characters";
    });
    if (structured) problem_.reset();
    Offer(Marked("characters"), characters);
    OfferWithoutTabs();
    OfferJoinedLetters();
    if (readings_.empty() && !problem_) problem_ = characters.Problem;
    MarkDoubtful();
  }

 private:
  struct Candidate {
    const char* As;
    CodedReading Coded;
  };

  void Offer(const std::string& as, const Attempt& attempt) {
    if (attempt.Problem) {
      if (attempt.Meant && !problem_) problem_ = attempt.Problem;
      return;
    }
    if (attempt.String.Count == 0) return;
    const auto same = [&](const TextReading& other) { return SameBytes(other.String, attempt.String); };
    if (std::none_of(readings_.begin(), readings_.end(), same)) readings_.push_back({as, attempt.String});
  }

  bool IsCertain() {
    const bool isLoneSuffix = IsWordAlone(text_) && !text_.starts_with(u"0x") && !text_.starts_with(u"0X");
    if (isLoneSuffix) return false;
    const ByteList list = ReadByteList(text_, Unmarked::Hexadecimal);
    const bool isRange = list.Tight && list.Items == 2;  // "02h-FFh"
    const bool isList = IsByteList(list, text_);
    certain_ = isList && list.Certain == list.Items && !isRange;
    if (certain_) {
      Offer(kListWays[0].As, list.Read);
      return true;
    }
    const auto coded = ReadCodedText(text_, Unmarked::HexadecimalAfterNames);
    const auto same = [&coded](const CodedReading& reading) {
      return reading.Certain && !reading.Read.Problem &&
             SameBytes(reading.Read.String, coded.front().Read.String);
    };
    const bool isCompact = ReadCompact(text_).Marks > 0;
    certain_ = !coded.empty() && !isCompact && !isList && std::all_of(coded.begin(), coded.end(), same) &&
               !IsQuoted();
    if (!certain_) return false;
    Offer(kCodedWays[0].As, coded.front().Read);
    // The codes are certain, what stands between them may be a placeholder.
    MarkDoubtful();
    return true;
  }

  // "\"PON\\r\"": the quotation marks are hardly the command's.
  bool IsQuoted() const { return text_.find_first_of(u"\"'`") != Text::npos; }

  // "10" and "1000" are rather characters; "FACE" is a word.
  bool CharactersComeFirst() const {
    if (!IsWordAlone(text_)) return HasUnlikelyCodes();
    constexpr std::size_t kLongestNumber = 6;
    const bool digits = std::all_of(text_.begin(), text_.end(), IsDigit);
    const bool letters = std::all_of(text_.begin(), text_.end(), IsLetter);
    if (text_.size() <= 2) return ReadNumber(text_, Unmarked::Hexadecimal).has_value();
    return letters || (digits && text_.size() <= kLongestNumber);
  }

  // "%1AVMT 31", "VOL(10)": what could be a code is none that commands have.
  bool HasUnlikelyCodes() const {
    const ByteList list = ReadByteList(text_, Unmarked::Hexadecimal);
    if (IsByteList(list, text_)) return false;
    return !coded_.empty() && coded_.front().Coded.Doubts >= 2;
  }

  void OfferLists() {
    std::vector<Way> ways;
    for (const Way& way : kListWays) {
      if (!base_ || way.Digits == *base_ || way.Digits == Unmarked::HexadecimalAfterNames)
        ways.push_back(way);
    }
    if (!base_ && LooksDecimal(text_)) std::swap(ways[0], ways[1]);
    const ByteList binary = ReadByteList(text_, Unmarked::Binary);
    const bool isBinary = IsByteList(binary, text_) && HasKind(binary.Read.String, ByteKind::BIN);
    if (isBinary && !base_) std::rotate(ways.begin(), ways.end() - 1, ways.end());
    for (const Way& way : ways) {
      const ByteList list = ReadByteList(text_, way.Digits);
      const bool failed = list.Read.Problem && list.Read.Meant;
      const char* letters = list.Misread ? Marked("the letter O or l as a digit") : nullptr;
      if (IsByteList(list, text_) || failed) Offer(WithRemark(way.As, letters), list.Read);
    }
  }

  // The likely ones first.
  void ReadCoded() {
    for (const Way& way : kCodedWays) {
      for (CodedReading& reading : ReadCodedText(text_, way.Digits))
        coded_.push_back({way.As, std::move(reading)});
      if (coded_.empty()) return;  // no code in any of the ways
    }
    std::stable_sort(coded_.begin(), coded_.end(),
                     [](const Candidate& a, const Candidate& b) { return a.Coded.Doubts < b.Coded.Doubts; });
  }

  void OfferCoded() {
    constexpr std::size_t kMostReadings = 6;
    for (const auto& [as, coded] : coded_) {
      const char* blanks = coded.Blanks ? Marked("without what separates them") : nullptr;
      if (readings_.size() < kMostReadings) Offer(WithRemark(as, blanks), coded.Read);
    }
  }

  void OfferWithoutTabs() {
    if (text_.find(u'\t') == Text::npos) return;
    std::u16string blanks(text_);
    std::replace(blanks.begin(), blanks.end(), u'\t', u' ');
    Offer(WithRemark("characters", Marked("tabs as blanks")), ReadCharacters(blanks));
  }

  void OfferJoinedLetters() {
    Offer(WithRemark("characters", Marked("without what separates them")),
          ReadCharacters(JoinLetters(text_)));
  }

  void MarkDoubtful() {
    const bool failed = problem_.has_value();
    const std::optional<TextProblem> doubt = FindDoubt(text_);
    if (!failed && !doubt) return;
    for (TextReading& reading : readings_) reading.Doubtful = failed || HasCharacters(reading.String);
    if (readings_.empty() || !readings_.front().Doubtful) return;
    if (!failed) problem_ = doubt;
    certain_ = false;
  }

  Text text_;
  std::optional<Unmarked> base_;
  std::vector<Candidate> coded_;
  bool certain_ = false;
  std::vector<TextReading> readings_;
  std::optional<TextProblem> problem_;
};

// ---- a line and its parts ----

bool Contains(const std::vector<TextReading>& readings, const SerialString& string) {
  return std::any_of(readings.begin(), readings.end(),
                     [&](const TextReading& other) { return SameBytes(other.String, string); });
}

void Append(std::vector<TextReading>& readings, const TextReading& reading, Text part) {
  if (Contains(readings, reading.String)) return;
  readings.push_back(reading);
  readings.back().Part = ToUtf8(part);
}

// Reads a line that has no blanks at its ends; problems count from `origin`, where the folded text begins.
ParsedText ReadLine(Text line, const char16_t* origin) {
  ParsedText parsed;
  const auto shifted = [origin](std::optional<TextProblem> problem, Text of) {
    if (problem) problem->Position += static_cast<std::size_t>(of.data() - origin);
    return problem;
  };
  Reader whole(line, std::nullopt);
  whole.Read();
  parsed.Problem = shifted(whole.Problem(), line);
  const bool certain = whole.Certain();
  std::vector<TextReading> readings = whole.Take();
  const auto parts = FindParts(line);
  if (parts.empty()) {
    parsed.Readings = std::move(readings);
    return parsed;
  }
  // A part is a guess, so the whole line stands second, where it can be read.
  std::vector<TextReading> rest;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    Reader reader(parts[i].Content, parts[i].Base);
    reader.Read();
    if (i == 0) parsed.Problem = shifted(reader.Problem(), parts[i].Content);
    const std::vector<TextReading> ofPart = reader.Take();
    for (std::size_t r = 0; r < ofPart.size(); ++r) {
      const bool otherBase = r == 1 && ofPart[r].As.starts_with("bytes");
      const bool early = i == 0 && (r == 0 || otherBase);
      Append(early ? parsed.Readings : rest, ofPart[r], parts[i].Content);
    }
  }
  if (!readings.empty()) Append(parsed.Readings, readings.front(), {});
  for (const TextReading& reading : rest) {
    if (!Contains(parsed.Readings, reading.String)) parsed.Readings.push_back(reading);
  }
  for (const TextReading& reading : readings) Append(parsed.Readings, reading, {});
  if (parsed.Readings.size() > 1 || !certain) {
    parsed.Notes.emplace_back(Marked("what stands beside the command was left out"));
  }
  return parsed;
}

// Blanks at an end are copied by accident more often than meant.
void OfferOuterBlanks(Text line, ParsedText& parsed) {
  const Text trimmed = TrimSpace(line);
  if (trimmed.size() == line.size()) return;
  Reader reader(line, std::nullopt);
  reader.Read();
  const std::vector<TextReading> withBlanks = reader.Take();
  if (parsed.Readings.empty()) {  // " ,CRc"
    parsed.Readings = withBlanks;
    return;
  }
  const SerialString& first = parsed.Readings.front().String;
  const auto isCharacter = [&first](std::size_t i) {
    return first.Kinds[i] == static_cast<std::uint8_t>(ByteKind::ASC);
  };
  const bool front = trimmed.data() != line.data() && isCharacter(0);
  const bool back =
      trimmed.data() + trimmed.size() != line.data() + line.size() && isCharacter(first.BytesInUse() - 1);
  // A blank beside a comma is a byte in the compact text.
  const bool besideComma = trimmed.starts_with(u',') || trimmed.ends_with(u',');
  if (!front && !back && !besideComma) return;
  parsed.Notes.emplace_back(Marked("blanks at the ends were left out"));
  bool second = parsed.Readings.front().Part.empty();
  for (const TextReading& reading : withBlanks) {
    if (Contains(parsed.Readings, reading.String)) continue;
    const auto place = second ? parsed.Readings.begin() + 1 : parsed.Readings.end();
    parsed.Readings.insert(place, reading)->As =
        WithRemark(reading.As, Marked("with the blanks at the ends"));
    second = false;
  }
}

// Blanks alone are hardly a command, but a definition may hold them.
ParsedText ReadBlanks(Text text) {
  ParsedText parsed;
  parsed.Problem = TextProblem{0, Say("there is nothing but blanks")};
  const Attempt characters = ReadCharacters(text);
  if (!characters.Problem) parsed.Readings.push_back({"characters", characters.String, {}, true});
  return parsed;
}

// One line is one command; bytes in lines of their own may be one.
ParsedText ReadLines(const std::vector<Text>& lines, Text text) {
  constexpr std::size_t kMostLines = 8;
  ParsedText parsed;
  for (std::size_t i = 0; i < std::min(lines.size(), kMostLines); ++i) {
    const ParsedText line = ReadLine(TrimSpace(lines[i]), text.data());
    if (i == 0) parsed.Problem = line.Problem;
    if (!line.Readings.empty()) Append(parsed.Readings, line.Readings.front(), TrimSpace(lines[i]));
  }
  const ByteList joined = ReadByteList(text, Unmarked::Hexadecimal);
  if (IsByteList(joined, text) && !Contains(parsed.Readings, joined.Read.String)) {
    const bool column = joined.Items == lines.size();
    parsed.Readings.insert(
        column ? parsed.Readings.begin() : parsed.Readings.end(),
        {WithRemark("bytes in hexadecimal", Marked("all lines")), joined.Read.String, {}, false});
  }
  if (!parsed.Readings.empty()) parsed.Problem.reset();
  parsed.Notes.emplace_back(Marked("the text has several lines, and one line is one command"));
  return parsed;
}

// What the display itself wrote can always be had back, blanks at its ends included.
void OfferAsDisplayed(Text text, ParsedText& parsed) {
  const CompactReading compact = ReadCompact(text);
  if (compact.Marks == 0 || compact.Read.Problem || compact.Read.String.Count == 0) return;
  const auto same = [&](const TextReading& other) { return SameBytes(other.String, compact.Read.String); };
  if (std::none_of(parsed.Readings.begin(), parsed.Readings.end(), same)) {
    parsed.Readings.push_back({"compact text", compact.Read.String});
  }
}

}  // namespace

bool ParsedText::NeedsChoice() const {
  if (Readings.empty()) return false;
  return Readings.size() > 1 || Problem || !Notes.empty() || Readings.front().Doubtful;
}

bool ParsedText::OnlyDoubtful() const {
  return std::all_of(Readings.begin(), Readings.end(),
                     [](const TextReading& reading) { return reading.Doubtful; });
}

ParsedText ParseSerialText(Text text) {
  if (text.size() > kLongestText) {
    return {{}, TextProblem{kLongestText, Say("more text than 32 bytes need")}, {}};
  }
  const FoldedText folded = FoldTypography(text);
  if (folded.Text.empty())
    return {{}, TextProblem{0, Say("there is no text")}, {}};  // or marks alone that are not seen
  const std::vector<Text> lines = SplitLines(folded.Text);
  if (lines.empty()) return ReadBlanks(folded.Text);

  ParsedText parsed;
  if (lines.size() > 1) {
    parsed = ReadLines(lines, folded.Text);
  } else {
    parsed = ReadLine(TrimSpace(lines.front()), folded.Text.data());
    OfferOuterBlanks(lines.front(), parsed);
    if (text != TrimSpace(text)) OfferAsDisplayed(text, parsed);
  }
  parsed.Notes.insert(parsed.Notes.begin(), folded.Notes.begin(), folded.Notes.end());
  if (parsed.Problem) {
    parsed.Problem->Position = folded.Origins[std::min(parsed.Problem->Position, folded.Origins.size() - 1)];
  }
  if (const std::size_t hidden = text.find(u'\x7F'); hidden != Text::npos && !parsed.Problem) {
    parsed.Problem = {hidden, Say("the display writes every control character like this one")};
  }
  return parsed;
}

std::string ProblemText(const TextProblem& problem) {
  return Say("Character %1: %2.", {std::to_string(problem.Position + 1), problem.Why});
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
