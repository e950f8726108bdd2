#include "manuals/manual_reading.h"

#include "manuals/character_columns.h"
#include "manuals/choosing.h"
#include "manuals/codes.h"
#include "manuals/framing.h"
#include "manuals/grammar.h"
#include "manuals/line_text.h"
#include "manuals/page.h"
#include "manuals/pairing.h"
#include "manuals/replies.h"
#include "manuals/templates.h"
#include "manuals/value_rows.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qdm {
namespace {

// The characters of a code right beside its numbers belong to it: "PON 50 4F 4E".
void TakeCharactersBeside(const ManualPage& page, std::vector<Code>& numbers) {
  for (Code& code : numbers) {
    const Span where = code.Begin();
    const std::u16string& line = page.Lines[where.Line];
    std::size_t at = where.From;
    std::size_t byte = code.Bytes.size();
    const auto printable = [](std::uint8_t value) { return value > 0x20 && value < 0x7F; };
    while (byte > 0 && !printable(code.Bytes[byte - 1].Value)) --byte;
    std::size_t matched = 0;
    std::size_t from = at;
    while (byte > 0 && at > 0) {
      const char16_t c = line[at - 1];
      if (c == code.Bytes[byte - 1].Value && printable(code.Bytes[byte - 1].Value)) {
        --byte;
        ++matched;
        from = at - 1;
      } else if (!IsBlank(c) && c != u'"' && c != u'\'' && c != u'|' && c != u'(') {
        break;
      } else if (code.Bytes[byte - 1].Value == u' ') {
        --byte;
      }
      --at;
    }
    const bool whole = byte == 0 || !printable(code.Bytes[byte - 1].Value);
    if (!whole || matched < 2 || (from > 0 && IsWordPart(line[from - 1]))) continue;
    code.Where.front().From = from;
    code.Confirmed = true;
  }
}

// The same in cells: "_r1" on the line above "5Fh 72h 31h".
void TakeCharactersAbove(const ManualPage& page, std::vector<Code>& numbers) {
  for (Code& code : numbers) {
    const std::size_t line = code.Begin().Line;
    if (line == 0 || code.Bytes.size() < 2) continue;
    const Span above = Trim(page, {line - 1, 0, page.Lines[line - 1].size()});
    if (above.To - above.From < 2 || !SameValues(Characters(page.At(above)), code.Bytes)) continue;
    code.Where.insert(code.Where.begin(), above);
    code.Confirmed = true;
  }
}

void AddPlace(Code& code, const Span& place) {
  // What stands between the two forms of a code on one line belongs to them.
  constexpr std::size_t kFarthest = 12;
  Span& first = code.Where.front();
  if (first.Line == place.Line && place.From < first.From && first.From - place.To < kFarthest) {
    first.From = place.From;
    return;
  }
  code.Where.push_back(place);
  std::sort(code.Where.begin(), code.Where.end(), [](const Span& a, const Span& b) {
    return std::pair(a.Line, a.From) < std::pair(b.Line, b.From);
  });
}

// The same, or a letter that extraction or a typist takes for the digit.
bool ReadsAs(std::uint8_t number, std::uint8_t character) {
  if (number == character) return true;
  return (number == '0' && character == 'O') || (number == '1' && (character == 'l' || character == 'I'));
}

// Characters that the bytes beside them repeat are one code with them.
void Confirm(std::vector<Code>& numbers, std::vector<Code>& characters) {
  constexpr std::size_t kMost = 1500;  // beyond that a page is no table
  if (numbers.size() > kMost || characters.size() > kMost) return;
  const auto apartFrom = [](const Code& a, const Code& b) {
    return a.Begin().Line > b.Begin().Line ? a.Begin().Line - b.Begin().Line
                                           : b.Begin().Line - a.Begin().Line;
  };
  const auto repeats = [&](const Code& text) {
    Code* nearest = nullptr;
    for (Code& number : numbers) {
      const bool within = std::search(number.Bytes.begin(), number.Bytes.end(), text.Bytes.begin(),
                                      text.Bytes.end(), [](const CodeByte& a, const CodeByte& b) {
                                        return ReadsAs(a.Value, b.Value);
                                      }) != number.Bytes.end();
      const std::size_t apart = apartFrom(number, text);
      if (!within || (apart > 3 && number.Bytes.size() < 3)) continue;
      if (!nearest || apart < apartFrom(*nearest, text)) nearest = &number;
    }
    if (!nearest) return false;
    nearest->Confirmed = true;
    const std::size_t apart = apartFrom(*nearest, text);
    const bool beside = apart == 0 || (apart == 1 && StandsBefore(text, *nearest));
    if (beside) AddPlace(*nearest, text.Begin());
    return beside || SameValues(nearest->Bytes, text.Bytes);
  };
  std::erase_if(characters, repeats);
}

std::vector<Code> AllCodes(const ManualPage& page) {
  std::vector<Code> codes = FindNumberCodes(page);
  JoinByCrc(page, codes);
  JoinBySums(page, codes);
  JoinWrapped(page, codes);
  SplitRuns(codes);
  CutNeighbours(codes);
  CutRepeats(codes);
  KeepFirstColumn(page, codes);
  KeepFirstCell(page, codes);
  TakeCharactersBeside(page, codes);
  JoinVertical(page, codes);
  TakeCharactersAbove(page, codes);
  AddCharacterColumns(page, codes);
  std::vector<Code> characters = FindCharacterCodes(page, codes);
  Confirm(codes, characters);
  // A number that closes characters is part of them.
  std::erase_if(codes, [&](const Code& code) {
    return code.Bytes.size() == 1 && std::any_of(characters.begin(), characters.end(), [&](const Code& text) {
             return text.Begin().Line == code.Begin().Line && text.Begin().From < code.Begin().To &&
                    code.Begin().From < text.Begin().To;
           });
  });
  codes.insert(codes.end(), std::make_move_iterator(characters.begin()),
               std::make_move_iterator(characters.end()));
  std::stable_sort(codes.begin(), codes.end(), StandsBefore);
  TakeAnswers(page, codes);
  TakeLeads(page, codes);
  PutFrames(page, codes);
  CompleteCheckSums(page, codes);
  std::erase_if(codes, [](const Code& code) {
    return code.How == Notation::Hexadecimal && code.Bytes.size() < 2 && !code.Composed;
  });
  return codes;
}

void PutFrame(const ManualFrame& frame, CodeBytes& bytes) {
  const auto noted = [](std::uint8_t value) {
    return CodeByte{value, value < 0x20 ? ByteKind::CNT : ByteKind::HEX};
  };
  std::transform(frame.Before.begin(), frame.Before.end(), std::inserter(bytes, bytes.begin()), noted);
  std::transform(frame.Behind.begin(), frame.Behind.end(), std::back_inserter(bytes), noted);
}

}  // namespace

ManualReading ReadManual(std::u16string_view text) {
  const ManualPage page = MakePage(text);
  ManualReading reading;
  reading.Line = ReadLineSettings(page);
  const Frame frame = FrameOfText(page);
  reading.Frame = {Values(frame.Before), Values(frame.Behind)};
  const std::vector<Code> codes = AllCodes(page);
  std::vector<Finding> findings = PairLabels(page, codes);
  for (auto* compose : {ComposeCommands, ComposeByValueRows}) {
    std::vector<Finding> composed = compose(page, codes);
    std::move(composed.begin(), composed.end(), std::back_inserter(findings));
  }
  ComposeByGrammar(page, findings);
  ChooseCommands(page, std::move(findings), reading);
  FindReplies(page, reading);
  return reading;
}

ManualReading ReadManual(const std::vector<std::u16string>& pages) {
  std::u16string text;
  for (const std::u16string& page : pages) {
    if (!text.empty()) text += u'\n';
    text += page;
  }
  return ReadManual(text);
}

std::optional<SerialString> ReadManualPiece(const ManualReading& reading, std::u16string_view piece) {
  const ManualPage page = MakePage(piece);
  std::vector<Code> codes = FindNumberCodes(page);
  Code code;
  for (const Code& part : codes) code.Bytes.insert(code.Bytes.end(), part.Bytes.begin(), part.Bytes.end());
  const bool numbers = code.Bytes.size() > 1 &&
                       std::none_of(codes.begin(), codes.end(), [](const Code& part) { return part.Broken; });
  if (!numbers) codes = FindCharacterCodes(page, codes);
  if (numbers) {
    code.Framed = true;
  } else if (codes.size() == 1) {
    code = codes.front();
  } else {
    code.Bytes.clear();
    for (const std::u16string& line : page.Lines) {
      const CodeBytes bytes = Characters(TrimSpace(line));
      code.Bytes.insert(code.Bytes.end(), bytes.begin(), bytes.end());
    }
  }
  if (code.Bytes.empty() || code.Bytes.size() > kLongestCode) return std::nullopt;
  if (!code.Framed) PutFrame(reading.Frame, code.Bytes);
  return SerialStringOf(code.Bytes);
}

}  // namespace qdm
