#include "manuals/code_sums.h"
#include "manuals/codes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

constexpr std::size_t kFewestJoins = 4;   // fewer could be chance
constexpr std::size_t kMostBlocks = 100;  // heads and blocks of a page
constexpr std::size_t kShortestData = 4;
constexpr std::size_t kLongestData = 8;
constexpr std::size_t kLongestCrcHead = 8;

// The bytes of a line that holds nothing else.
CodeBytes BytesAlone(const ManualPage& page, std::size_t number) {
  const std::u16string_view line = page.Lines[number];
  constexpr std::size_t kLongestLine = 60;
  CodeBytes bytes;
  if (line.size() > kLongestLine) return bytes;
  for (std::size_t at = 0; at < line.size();) {
    if (IsBlank(line[at])) {
      ++at;
      continue;
    }
    const auto byte = NumberAt(line, at);
    if (!byte) return {};
    bytes.push_back(byte->Byte);
    at = byte->End;
  }
  return bytes;
}

// Neighbouring lines of bytes.
struct Block {
  std::size_t From = 0;
  std::size_t To = 0;  // behind the last line
  CodeBytes Bytes;
};

class Joiner {
 public:
  Joiner(const ManualPage& page, std::vector<Code>& codes) : codes_(codes) {
    for (std::size_t line = 0; line < page.Lines.size(); ++line) lines_.push_back(BytesAlone(page, line));
  }

  // The start value is what the heads have made of the sum before: the same for all codes, so that pairs of a
  // head and a block which agree on it belong together.
  void Join() {
    std::vector<Match> best;
    for (std::size_t length = kShortestData; length <= kLongestData; ++length) {
      for (const bool lowFirst : {true, false}) {
        std::vector<Match> matches = Matches(length, lowFirst);
        if (matches.size() > best.size()) best = std::move(matches);
      }
    }
    if (best.size() >= kFewestJoins) Assemble(best);
  }

 private:
  struct Match {
    std::size_t Head;  // its place among the codes
    Block Data;
  };

  std::vector<Block> DataBlocks(std::size_t length) const {
    std::vector<Block> blocks;
    for (std::size_t from = 0; from < lines_.size() && blocks.size() < kMostBlocks; ++from) {
      Block block{from, from, {}};
      while (block.To < lines_.size() && !lines_[block.To].empty() && block.Bytes.size() < length) {
        block.Bytes.insert(block.Bytes.end(), lines_[block.To].begin(), lines_[block.To].end());
        ++block.To;
      }
      if (block.Bytes.size() == length) blocks.push_back(std::move(block));
    }
    return blocks;
  }

  std::vector<Match> Matches(std::size_t length, bool lowFirst) const {
    const std::vector<Block> blocks = DataBlocks(length);
    std::map<std::uint16_t, std::vector<Match>> byStart;
    for (std::size_t i = 0; i < std::min(codes_.size(), kMostBlocks); ++i) {
      const CodeBytes& bytes = codes_[i].Bytes;
      if (bytes.size() < 2 || bytes.size() > kLongestCrcHead || codes_[i].Broken) continue;
      const std::uint8_t first = bytes[bytes.size() - 2].Value;
      const std::uint8_t last = bytes.back().Value;
      const auto crc = static_cast<std::uint16_t>(lowFirst ? first | last << 8 : first << 8 | last);
      const std::size_t line = codes_[i].Begin().Line;
      for (const Block& block : blocks) {
        if (line >= block.From && line < block.To) continue;
        std::vector<Match>& matches = byStart[Crc16Start(Values(block.Bytes), crc)];
        const bool known = std::any_of(matches.begin(), matches.end(), [&](const Match& match) {
          return match.Head == i || match.Data.From == block.From ||
                 SameValues(codes_[match.Head].Bytes, bytes);
        });
        if (!known) matches.push_back({i, block});
      }
    }
    // Where two start values fit alike, regular data has made a second order that fits too.
    std::vector<Match> best;
    bool twice = false;
    for (auto& [start, matches] : byStart) {
      if (matches.size() < best.size()) continue;
      twice = matches.size() == best.size();
      best = std::move(matches);
    }
    return twice ? std::vector<Match>() : best;
  }

  // The head with the lines of bytes right above it.
  Block HeadOf(const Code& code) const {
    Block head{code.Begin().Line, code.End().Line + 1, code.Bytes};
    while (head.From > 0 && !lines_[head.From].empty() && !lines_[head.From - 1].empty() &&
           head.Bytes.size() + lines_[head.From - 1].size() < kLongestCrcHead &&
           !used_.contains(head.From - 1)) {
      --head.From;
      head.Bytes.insert(head.Bytes.begin(), lines_[head.From].begin(), lines_[head.From].end());
    }
    return head;
  }

  // The places of the code that stands as often as there are heads: the column in which all codes begin.
  std::vector<std::size_t> BeginColumn(std::size_t heads) const {
    std::map<std::u16string, std::vector<std::size_t>> same;
    for (std::size_t i = 0; i < codes_.size(); ++i) {
      if (used_.contains(codes_[i].Begin().Line)) continue;
      const std::vector<std::uint8_t> values = Values(codes_[i].Bytes);
      same[{values.begin(), values.end()}].push_back(i);
    }
    for (const auto& [bytes, places] : same) {
      if (places.size() == heads) return places;
    }
    return {};
  }

  void Assemble(const std::vector<Match>& matches) {
    std::vector<CodeBytes> joined;
    for (const Match& match : matches) {
      const Block head = HeadOf(codes_[match.Head]);
      for (std::size_t line = head.From; line < head.To; ++line) used_.insert(line);
      for (std::size_t line = match.Data.From; line < match.Data.To; ++line) used_.insert(line);
      joined.push_back(head.Bytes);
      joined.back().insert(joined.back().end(), match.Data.Bytes.begin(), match.Data.Bytes.end());
    }
    const std::vector<std::size_t> begins = BeginColumn(matches.size());
    std::set<std::size_t> kept(begins.begin(), begins.end());
    for (std::size_t i = 0; i < matches.size(); ++i) {
      const std::size_t place = begins.empty() ? matches[i].Head : begins[i];
      Code& code = codes_[place];
      if (!begins.empty()) joined[i].insert(joined[i].begin(), code.Bytes.begin(), code.Bytes.end());
      code.Bytes = joined[i];
      code.Places.clear();
      code.Composed = code.Assembled = code.Proven = code.Framed = true;
      kept.insert(place);
    }
    std::vector<Code> left;
    for (std::size_t i = 0; i < codes_.size(); ++i) {
      if (kept.contains(i) || !used_.contains(codes_[i].Begin().Line)) left.push_back(std::move(codes_[i]));
    }
    codes_ = std::move(left);
  }

  std::vector<Code>& codes_;
  std::vector<CodeBytes> lines_;
  std::set<std::size_t> used_;  // lines
};

}  // namespace

void JoinByCrc(const ManualPage& page, std::vector<Code>& codes) { Joiner(page, codes).Join(); }

}  // namespace qdm
