#include "base/byte_hash.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace qdm {
namespace {

constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t word) { return std::rotl((hash ^ word) * kOdd, 29); }

std::uint64_t WordAt(const std::uint8_t* at, std::size_t bytes = sizeof(std::uint64_t)) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, bytes);
  return word;
}

}  // namespace

std::uint64_t HashOnward(std::uint64_t hash, ByteView piece) {
  // Independent lanes, so that the processor works at all of them at once. A library is hashed whenever it is
  // read: no place is looked up in the span, which would be checked each time.
  std::array<std::uint64_t, 4> lanes = {hash ^ piece.size(), kOdd, ~hash, 1};
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  constexpr std::size_t kStride = lanes.size() * kWord;
  const std::uint8_t* at = piece.data();
  std::size_t left = piece.size();
  for (; left >= kStride; left -= kStride) {
    for (std::uint64_t& lane : lanes) {
      lane = Mixed(lane, WordAt(at));
      at += kWord;
    }
  }
  for (; left >= kWord; left -= kWord, at += kWord) lanes[0] = Mixed(lanes[0], WordAt(at));
  if (left > 0) lanes[1] = Mixed(lanes[1], WordAt(at, left));
  std::uint64_t mixed = 0;
  for (const std::uint64_t lane : lanes) mixed = Mixed(mixed, lane);
  return mixed ^ mixed >> 31;
}

}  // namespace qdm
