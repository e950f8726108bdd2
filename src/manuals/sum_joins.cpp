#include "manuals/code_sums.h"
#include "manuals/codes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Values8 = std::vector<std::uint8_t>;
using Places = std::vector<std::size_t>;  // among the codes

constexpr std::size_t kShortestSummedColumn = 8;
constexpr std::size_t kMostBytes = 400;

bool IsCellOfColumn(const ManualPage& page, const Code& code) {
  return code.Bytes.size() == 1 && code.Marked && StandsAlone(page, code.Begin());
}

// Single bytes, a line each, in columns that are too long for one code.
Places LongColumns(const ManualPage& page, const std::vector<Code>& codes) {
  Places found;
  Places column;
  const auto close = [&] {
    if (column.size() >= kShortestSummedColumn) found.insert(found.end(), column.begin(), column.end());
    column.clear();
  };
  for (std::size_t at = 0; at < codes.size(); ++at) {
    const bool follows = !column.empty() && codes[column.back()].Begin().Line + 1 == codes[at].Begin().Line;
    if (!follows) close();
    if (IsCellOfColumn(page, codes[at])) column.push_back(at);
  }
  close();
  return found;
}

struct Head {
  Values8 Values;
  std::size_t From = 0;  // among the bytes
  std::size_t To = 0;
};

// All heads stand before all tails; each head and its tail, which ends with their sum, are one code.
class TornParser {
 public:
  TornParser(const Values8& bytes, CheckSum check) : bytes_(bytes), check_(check) {}

  bool Find(std::size_t headSize) {
    constexpr std::size_t kFewest = 4;
    heads_.clear();
    const std::uint8_t first = bytes_.front();
    for (std::size_t at = 0; at < bytes_.size();) {
      // A first byte that has run into its label is missing here.
      const bool whole = bytes_[at] == first;
      const std::size_t end = at + headSize - (whole ? 0 : 1);
      if (end > bytes_.size()) return false;
      Head head{whole ? Values8() : Values8{first}, at, end};
      head.Values.insert(head.Values.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(at),
                         bytes_.begin() + static_cast<std::ptrdiff_t>(end));
      heads_.push_back(std::move(head));
      at = end;
      if (heads_.size() < kFewest) continue;
      ways_.clear();
      if (Ways(0, at) == 1) return true;
    }
    return false;
  }

  const std::vector<Head>& Heads() const { return heads_; }
  // Where the tails begin, and where the last one ends.
  std::vector<std::size_t> Tails() const {
    std::vector<std::size_t> begins{heads_.back().To};
    for (std::size_t head = 0; head < heads_.size(); ++head)
      begins.push_back(ways_.at({head, begins.back()}).second);
    return begins;
  }

 private:
  // In how many ways the tails of the heads from that one on fill the bytes from there on: 0, 1, or more
  // as 2.
  int Ways(std::size_t head, std::size_t at) {
    if (head == heads_.size()) return at == bytes_.size() ? 1 : 0;
    const auto known = ways_.find({head, at});
    if (known != ways_.end()) return known->second.first;
    constexpr std::size_t kShortestTail = 2;
    constexpr std::size_t kLongestTail = 8;
    const std::size_t heads = heads_.size() - head;
    const std::size_t left = bytes_.size() - at;
    if (left < heads * kShortestTail || left > heads * kLongestTail) return 0;
    int ways = 0;
    std::size_t next = 0;
    Values8 code = heads_[head].Values;
    for (std::size_t to = at + 1; to <= std::min(bytes_.size(), at + kLongestTail) && ways < 2; ++to) {
      code.push_back(bytes_[to - 1]);
      if (to < at + kShortestTail || !IsRight(check_, code)) continue;
      const int more = Ways(head + 1, to);
      if (more > 0) next = to;
      ways = std::min(2, ways + more);
    }
    ways_[{head, at}] = {ways, next};
    return ways;
  }

  const Values8& bytes_;
  CheckSum check_;
  std::vector<Head> heads_;
  std::map<std::pair<std::size_t, std::size_t>, std::pair<int, std::size_t>> ways_;
};

std::optional<std::vector<Code>> Joined(const std::vector<Code>& codes, const Places& column) {
  Values8 bytes;
  for (const std::size_t at : column) bytes.push_back(codes[at].Bytes.front().Value);
  constexpr std::size_t kShortestHead = 3;
  constexpr std::size_t kLongestHead = 6;
  for (const CheckSum check : kCheckSums) {
    TornParser parser(bytes, check);
    for (std::size_t size = kShortestHead; size <= kLongestHead; ++size) {
      if (!parser.Find(size)) continue;
      const std::vector<std::size_t> tails = parser.Tails();
      std::vector<Code> joined;
      for (std::size_t i = 0; i < parser.Heads().size(); ++i) {
        const Head& head = parser.Heads()[i];
        Code code;
        code.Marked = code.Composed = code.Assembled = code.Proven = code.Framed = true;
        for (const std::uint8_t value : head.Values) code.Bytes.push_back({value, ByteKind::HEX});
        for (std::size_t at = head.From; at < head.To; ++at) code.Where.push_back(codes[column[at]].Begin());
        for (std::size_t at = tails[i]; at < tails[i + 1]; ++at) {
          code.Bytes.push_back(codes[column[at]].Bytes.front());
          code.Where.push_back(codes[column[at]].Begin());
        }
        joined.push_back(std::move(code));
      }
      return joined;
    }
  }
  return std::nullopt;
}

// Lists of numbers that stand alone on lines that follow each other.
std::vector<Places> Blocks(const ManualPage& page, const std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 4;
  constexpr std::size_t kLongest = 6;
  std::vector<Places> blocks;
  Places block;
  const auto close = [&] {
    if (block.size() >= kFewest) blocks.push_back(block);
    block.clear();
  };
  for (std::size_t at = 0; at < codes.size(); ++at) {
    const Code& code = codes[at];
    const bool alone = code.Where.size() == 1 && StandsAlone(page, code.Begin()) && !code.Broken &&
                       code.Bytes.size() > 1 && code.Bytes.size() <= kLongest;
    const bool follows = !block.empty() && codes[block.back()].Begin().Line + 1 == code.Begin().Line;
    if (!follows || !alone) close();
    if (alone) block.push_back(at);
  }
  close();
  return blocks;
}

CodeBytes Together(const Code& head, const Code& tail) {
  CodeBytes bytes = head.Bytes;
  bytes.insert(bytes.end(), tail.Bytes.begin(), tail.Bytes.end());
  return bytes;
}

// Two blocks of the same length whose rows together end with their sums.
bool JoinBlocks(const Places& heads, const Places& tails, std::vector<Code>& codes) {
  if (heads.size() != tails.size()) return false;
  const bool right = std::any_of(std::begin(kCheckSums), std::end(kCheckSums), [&](CheckSum check) {
    return std::equal(heads.begin(), heads.end(), tails.begin(), [&](std::size_t head, std::size_t tail) {
      return IsRight(check, Values(Together(codes[head], codes[tail])));
    });
  });
  if (!right) return false;
  for (std::size_t i = 0; i < heads.size(); ++i) {
    Code& code = codes[heads[i]];
    code.Bytes = Together(code, codes[tails[i]]);
    code.Where.push_back(codes[tails[i]].Begin());
    code.Places.clear();
    code.Composed = code.Assembled = code.Proven = code.Framed = true;
    codes[tails[i]].Bytes.clear();
  }
  std::erase_if(codes, [](const Code& code) { return code.Bytes.empty(); });
  return true;
}

}  // namespace

void JoinBySums(const ManualPage& page, std::vector<Code>& codes) {
  const std::vector<Places> blocks = Blocks(page, codes);
  for (std::size_t i = 1; i < blocks.size(); ++i) {
    if (JoinBlocks(blocks[i - 1], blocks[i], codes)) return;
  }
  const Places column = LongColumns(page, codes);
  if (column.size() < kShortestSummedColumn || column.size() > kMostBytes) return;
  auto joined = Joined(codes, column);
  if (!joined) return;
  for (auto at = column.rbegin(); at != column.rend(); ++at)
    codes.erase(codes.begin() + static_cast<std::ptrdiff_t>(*at));
  codes.insert(codes.end(), joined->begin(), joined->end());
  std::stable_sort(codes.begin(), codes.end(), [](const Code& a, const Code& b) {
    return std::pair(a.Begin().Line, a.Begin().From) < std::pair(b.Begin().Line, b.Begin().From);
  });
}

}  // namespace qdm
