#include "manuals/code_sums.h"
#include "manuals/codes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

// A sign in front and one behind are nothing.
bool NearlyAlone(const ManualPage& page, const Code& code) {
  const Span& where = code.Begin();
  const Span line = Trim(page, {where.Line, 0, page.Lines[where.Line].size()});
  const std::u16string_view text = page.Lines[where.Line];
  // "--> 0xBE" leads over.
  const bool before = std::none_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(where.From),
                                   [](char16_t c) { return IsWordPart(c) || c > 0xBF; });
  return before && line.To <= where.To + 1;
}

// The byte with which most of the longer codes begin (or end).
std::optional<std::uint8_t> CommonByte(const std::vector<Code>& codes, bool last) {
  std::array<std::size_t, 256> times{};
  std::size_t all = 0;
  for (const Code& code : codes) {
    if (code.Bytes.size() < 4) continue;
    ++all;
    ++times[last ? code.Bytes.back().Value : code.Bytes.front().Value];
  }
  const auto most = std::max_element(times.begin(), times.end());
  if (*most < 3 || *most * 10 < all * 6) return std::nullopt;
  return static_cast<std::uint8_t>(most - times.begin());
}

}  // namespace

void CutNeighbours(std::vector<Code>& codes) {
  const auto first = CommonByte(codes, false);
  if (!first) return;
  constexpr std::size_t kMostCut = 2;
  for (Code& code : codes) {
    if (code.Bytes.size() < 5 || code.Bytes.front().Value == *first) continue;
    for (std::size_t cut = 1; cut <= kMostCut; ++cut) {
      if (code.Bytes[cut].Value != *first) continue;
      code.Bytes.erase(code.Bytes.begin(), code.Bytes.begin() + static_cast<std::ptrdiff_t>(cut));
      break;
    }
  }
}

// What stands again within the bytes behind it is a column of its own: "30 01  BB 00 30 01 14 EE".
void CutRepeats(std::vector<Code>& codes) {
  constexpr std::size_t kShortest = 2;
  constexpr std::size_t kLongest = 4;
  constexpr std::size_t kFewest = 3;
  const auto cutOf = [](const Code& code) -> std::size_t {
    if (code.Places.size() != code.Bytes.size()) return 0;
    for (std::size_t cut = kLongest; cut >= kShortest; --cut) {
      if (code.Bytes.size() < 2 * cut + 1) continue;
      const auto end = code.Bytes.begin() + static_cast<std::ptrdiff_t>(cut);
      if (std::search(end, code.Bytes.end(), code.Bytes.begin(), end) != code.Bytes.end()) return cut;
    }
    return 0;
  };
  std::array<std::size_t, 256> times{};  // by the byte that the rest begins with
  for (const Code& code : codes) {
    if (const std::size_t cut = cutOf(code)) ++times[code.Bytes[cut].Value];
  }
  for (Code& code : codes) {
    const std::size_t cut = cutOf(code);
    if (cut == 0 || times[code.Bytes[cut].Value] < kFewest) continue;
    code.Bytes.erase(code.Bytes.begin(), code.Bytes.begin() + static_cast<std::ptrdiff_t>(cut));
    code.Places.clear();
    code.Gapped = false;
  }
}

void JoinWrapped(const ManualPage& page, std::vector<Code>& codes) {
  const auto first = CommonByte(codes, false);
  std::vector<Code> joined;
  for (Code& code : codes) {
    const bool follows =
        !joined.empty() && joined.back().End().Line + 1 == code.Begin().Line && NearlyAlone(page, code);
    if (!follows || code.Marked != joined.back().Marked) {
      joined.push_back(std::move(code));
      continue;
    }
    Code& before = joined.back();
    const Span line = Trim(page, {before.End().Line, 0, page.Lines[before.End().Line].size()});
    const bool wraps = before.End().To == line.To && before.Begin().From > line.From &&
                       before.Bytes.size() > code.Bytes.size() &&
                       code.Bytes.size() <= kLongestCode - std::min(kLongestCode, before.Bytes.size());
    const bool another =
        first ? code.Bytes.front().Value == *first : code.Bytes.front().Value == before.Bytes.front().Value;
    if (!wraps || another) {
      joined.push_back(std::move(code));
      continue;
    }
    before.Bytes.insert(before.Bytes.end(), code.Bytes.begin(), code.Bytes.end());
    before.Where.push_back(code.Begin());
    before.Places.clear();
    before.Wrapped = true;
  }
  codes = std::move(joined);
}

void SplitRuns(std::vector<Code>& codes) {
  constexpr std::size_t kShortestRun = 8;
  std::vector<Code> split;
  for (Code& code : codes) {
    const std::vector<std::uint8_t> values = Values(code.Bytes);
    const std::vector<std::size_t> begins =
        values.size() >= kShortestRun && code.Places.size() == values.size() ? SplitByCheckSum(values)
                                                                             : std::vector<std::size_t>();
    if (begins.empty()) {
      split.push_back(std::move(code));
      continue;
    }
    for (std::size_t i = 0; i < begins.size(); ++i) {
      const std::size_t end = i + 1 < begins.size() ? begins[i + 1] : values.size();
      Code piece = code;
      piece.Bytes = {code.Bytes.begin() + static_cast<std::ptrdiff_t>(begins[i]),
                     code.Bytes.begin() + static_cast<std::ptrdiff_t>(end)};
      piece.Where = {{code.Begin().Line, code.Places[begins[i]],
                      i + 1 < begins.size() ? code.Places[end] : code.Begin().To}};
      piece.Proven = true;
      split.push_back(std::move(piece));
    }
  }
  codes = std::move(split);
}

void JoinVertical(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Code> joined;
  std::size_t at = 0;
  while (at < codes.size()) {
    std::size_t end = at;
    const auto single = [&](const Code& code) { return code.Bytes.size() == 1 && NearlyAlone(page, code); };
    while (end < codes.size() && single(codes[end]) &&
           (end == at || codes[end].Begin().Line - codes[end - 1].Begin().Line == 1))
      ++end;
    if (end - at >= 2 && end - at <= kLongestCode) {
      Code& first = codes[at];
      for (std::size_t next = at + 1; next < end; ++next) {
        first.Where.push_back(codes[next].Begin());
        first.Bytes.push_back(codes[next].Bytes.front());
      }
      first.Wrapped = true;
      joined.push_back(std::move(first));
      at = end;
    } else {
      end = std::max(end, at + 1);
      for (; at < end; ++at) joined.push_back(std::move(codes[at]));
    }
  }
  codes = std::move(joined);
}

}  // namespace qdm
