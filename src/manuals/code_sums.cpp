#include "manuals/code_sums.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace qdm {
namespace {

constexpr std::size_t kShortestCode = 4;
constexpr std::size_t kLongestSummed = 20;

// The fewest bytes that each step takes win: a longer piece would hide a code that is whole.
std::vector<std::size_t> SplitBy(CheckSum check, std::span<const std::uint8_t> run) {
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> pieces(run.size() + 1, 0);  // the most pieces behind each place
  std::vector<std::size_t> next(run.size() + 1, kNone);
  for (std::size_t from = run.size(); from-- > 0;) {
    if (run[from] != run[0]) continue;
    for (std::size_t length = kShortestCode; length <= std::min(kLongestSummed, run.size() - from);
         ++length) {
      const std::size_t end = from + length;
      if (end != run.size() && next[end] == kNone) continue;
      if (!IsRight(check, run.subspan(from, length)) || pieces[end] + 1 <= pieces[from]) continue;
      pieces[from] = pieces[end] + 1;
      next[from] = end;
    }
  }
  std::vector<std::size_t> begins;
  if (next[0] == kNone) return begins;
  for (std::size_t at = 0; at < run.size(); at = next[at]) begins.push_back(at);
  return begins;
}

}  // namespace

std::uint8_t SumOf(CheckSum check, std::span<const std::uint8_t> bytes) {
  const auto sum = [&](std::size_t from) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(from, bytes.size()));
    return static_cast<std::uint8_t>(std::accumulate(begin, bytes.end(), 0U));
  };
  switch (check) {
    case CheckSum::Sum:
      return sum(0);
    case CheckSum::SumFromSecond:
      return sum(1);
    case CheckSum::TwosComplement:
      return static_cast<std::uint8_t>(0U - sum(0));
    case CheckSum::ExclusiveOr:
      return std::accumulate(bytes.begin(), bytes.end(), std::uint8_t{0},
                             [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a ^ b); });
  }
  return 0;
}

bool IsRight(CheckSum check, std::span<const std::uint8_t> code) {
  return code.size() >= 3 && code.back() == SumOf(check, code.first(code.size() - 1));
}

std::uint16_t Crc16Start(std::span<const std::uint8_t> bytes, std::uint16_t crc) {
  constexpr unsigned kPolynomial = 0xA001;
  unsigned start = crc;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      const bool folded = (start & 0x8000U) != 0;
      start = ((folded ? start ^ kPolynomial : start) << 1 & 0xFFFFU) | (folded ? 1U : 0U);
    }
    start ^= *byte;
  }
  return static_cast<std::uint16_t>(start);
}

std::vector<std::size_t> SplitByCheckSum(std::span<const std::uint8_t> run) {
  constexpr std::size_t kLongestRun = 2000;
  if (run.size() > kLongestRun) return {};
  for (const CheckSum check : kCheckSums) {
    std::vector<std::size_t> begins = SplitBy(check, run);
    if (begins.size() >= 2) return begins;
  }
  return {};
}

}  // namespace qdm
