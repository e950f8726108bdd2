#include "manuals/codes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qdm {
namespace {

void SetAnswer(Code& code, CodeBytes answer, Span at) {
  for (CodeByte& byte : answer) {
    if (byte.Kind == ByteKind::VAR) byte = {0, ByteKind::IGN};
  }
  if (code.Answer.empty()) code.Answer = std::move(answer);
  code.AnswerAt.push_back(at);
}

// Where the columns of a row end in which each begins with the first byte of all and ends with the last.
std::vector<std::size_t> ColumnEnds(const Code& code) {
  constexpr std::size_t kShortest = 3;
  const std::uint8_t first = code.Bytes.front().Value;
  const std::uint8_t last = code.Bytes.back().Value;
  std::vector<std::size_t> ends;
  if (first == last || code.Places.size() != code.Bytes.size()) return ends;
  std::size_t from = 0;
  for (std::size_t at = 0; at < code.Bytes.size(); ++at) {
    const bool begins = code.Bytes[at].Value == first && code.Bytes[at].Kind != ByteKind::VAR;
    if (begins != (at == from)) return {};
    if (code.Bytes[at].Value != last || code.Bytes[at].Kind == ByteKind::VAR) continue;
    if (at + 1 < from + kShortest) return {};
    ends.push_back(at + 1);
    from = at + 1;
  }
  return ends;
}

}  // namespace

void KeepFirstColumn(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 3;
  std::array<std::size_t, 256> rows{};  // by the byte that they begin with
  const auto labelled = [&](const Code& code) {
    const Span before = Trim(page, {code.Begin().Line, 0, code.Begin().From});
    return before.From < before.To;
  };
  for (const Code& code : codes) {
    if (labelled(code) && ColumnEnds(code).size() > 1) ++rows[code.Bytes.front().Value];
  }
  for (Code& code : codes) {
    const std::vector<std::size_t> ends = ColumnEnds(code);
    if (ends.size() < 2 || !labelled(code) || rows[code.Bytes.front().Value] < kFewest) continue;
    const auto begin = code.Bytes.begin();
    SetAnswer(code,
              {begin + static_cast<std::ptrdiff_t>(ends[0]), begin + static_cast<std::ptrdiff_t>(ends[1])},
              {code.Begin().Line, code.Places[ends.front()], code.Begin().To});
    code.Bytes.resize(ends.front());
    code.Where.resize(1);
    code.Where.front().To = code.Places[ends.front()];
    code.Places.resize(ends.front());
    code.Beside = true;
    code.Broken = std::any_of(code.Bytes.begin(), code.Bytes.end(),
                              [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; });
  }
}

void KeepFirstCell(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 4;
  constexpr std::size_t kShortest = 3;
  constexpr std::size_t kMost = 3;
  const auto cell = [&](const Code& code) {
    return code.Where.size() == 1 && code.Bytes.size() >= kShortest && StandsAlone(page, code.Begin());
  };
  std::array<std::vector<std::size_t>, kMost + 1> groups;  // their first cells, by how many stand together
  std::size_t others = 0;
  for (std::size_t at = 0; at < codes.size();) {
    std::size_t end = at + 1;
    if (cell(codes[at])) {
      while (end < codes.size() && cell(codes[end]) &&
             codes[end].Begin().Line == codes[end - 1].Begin().Line + 1 &&
             codes[end].Bytes.front().Value == codes[at].Bytes.front().Value)
        ++end;
    }
    if (end - at > kMost) ++others;
    if (end - at <= kMost) groups[end - at].push_back(at);
    at = end;
  }
  for (std::size_t together = 2; together <= kMost; ++together) {
    if (others > 0 || groups[together].size() < kFewest || groups[together].size() < groups[1].size())
      continue;
    for (const std::size_t first : groups[together]) {
      codes[first].Beside = true;
      for (std::size_t i = first + 1; i < first + together; ++i) {
        SetAnswer(codes[first], codes[i].Bytes, codes[i].Begin());
        codes[i].Bytes.clear();
      }
    }
  }
  std::erase_if(codes, [](const Code& code) { return code.Bytes.empty(); });
}

namespace {

// On the same row with nothing between, or in the cell below.
bool StandsBeside(const ManualPage& page, const Code& before, const Code& code) {
  const Span& end = before.End();
  const Span& begin = code.Begin();
  if (begin.Line == end.Line + 1) return StandsAlone(page, before.Begin()) && StandsAlone(page, code.Begin());
  if (begin.Line != end.Line || begin.From < end.To) return false;
  const Span between{begin.Line, end.To, begin.From};
  return page.At(between).find_first_not_of(u" \t|") == std::u16string_view::npos;
}

// ":VOLM nn" beside ":VOLM +": the same but for what varies.
bool IsOpenEcho(const Code& sent, const Code& code) {
  constexpr std::size_t kShortest = 3;
  if (!code.Broken || code.Bytes.size() < kShortest || sent.How != code.How) return false;
  const auto differs =
      std::mismatch(sent.Bytes.begin(), sent.Bytes.end(), code.Bytes.begin(), code.Bytes.end(),
                    [](const CodeByte& a, const CodeByte& b) { return a.Value == b.Value; });
  return differs.second - code.Bytes.begin() >= static_cast<std::ptrdiff_t>(kShortest);
}

}  // namespace

namespace {

// Lists of numbers beside others, row after row below a heading that speaks of answers.
std::vector<std::size_t> AnswerColumns(const ManualPage& page, const std::vector<Code>& codes) {
  std::vector<std::size_t> found;
  for (std::size_t i = 1; i < codes.size(); ++i) {
    const bool numbers = codes[i].How == Notation::Hexadecimal && codes[i - 1].How == Notation::Hexadecimal;
    const bool sameRow = codes[i].Begin().Line == codes[i - 1].End().Line;
    if (numbers && sameRow && codes[i].Bytes.size() > 1 && StandsBeside(page, codes[i - 1], codes[i]))
      found.push_back(i);
  }
  if (found.empty()) return found;
  constexpr std::size_t kReach = 3;
  const std::size_t first = codes[found.front()].Begin().Line;
  for (std::size_t line = first - std::min(first, kReach); line < first; ++line) {
    const std::u16string folded = FoldLetters(page.Lines[line].substr(0, 200));
    for (const std::u16string_view word :
         {u"reply", u"response", u"answer", u"antwort", u"reponse", u"respuesta"})
      if (folded.find(word) != std::u16string::npos) return found;
  }
  return {};
}

}  // namespace

void TakeAnswers(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 3;
  std::map<std::u16string, std::vector<std::size_t>> behind;
  std::vector<std::size_t> echoes;
  std::vector<std::size_t> openEchoes;
  for (std::size_t i = 1; i < codes.size(); ++i) {
    const Code& before = codes[i - 1];
    if (StandsBeside(page, before, codes[i]) && before.How == codes[i].How) {
      if (SameValues(codes[i].Bytes, before.Bytes)) echoes.push_back(i);
      if (IsOpenEcho(before, codes[i])) openEchoes.push_back(i);
    }
    const bool sameRow = codes[i].Begin().Line == before.Begin().Line;
    const bool whole = codes[i].How == Notation::Hexadecimal && before.How == Notation::Hexadecimal &&
                       codes[i].Bytes.size() > 1 && before.Bytes.size() > codes[i].Bytes.size();
    if (!sameRow || !whole) continue;
    const std::vector<std::uint8_t> values = Values(codes[i].Bytes);
    behind[{values.begin(), values.end()}].push_back(i);
  }
  std::set<std::size_t> answers;
  if (const std::vector<std::size_t> column = AnswerColumns(page, codes); column.size() >= kFewest)
    answers.insert(column.begin(), column.end());
  if (echoes.size() >= kFewest) {
    answers.insert(echoes.begin(), echoes.end());
    answers.insert(openEchoes.begin(), openEchoes.end());
  }
  for (const auto& [bytes, places] : behind) {
    if (places.size() >= kFewest) answers.insert(places.begin(), places.end());
  }
  std::vector<Code> left;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (!answers.contains(i)) {
      left.push_back(std::move(codes[i]));
    } else if (!left.empty()) {
      SetAnswer(left.back(), codes[i].Bytes, codes[i].Begin());
    }
  }
  codes = std::move(left);
}

}  // namespace qdm
