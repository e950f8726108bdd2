// What the targets share: a property that does not hold ends the run, and the input is kept.
#pragma once

#include "base/record_codec.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace qdm {

// Not an assert: it holds in every build.
inline void Demand(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "the property does not hold: %s\n", property);
  std::abort();
}

// A record of any bits, from as many bytes as there are; zeros behind them.
template <class Record>
Record RecordFrom(ByteView& input) {
  Bytes stored(StoredSize<Record>());
  const std::size_t taken = std::min(stored.size(), input.size());
  std::copy_n(input.begin(), taken, stored.begin());
  input = input.subspan(taken);
  Record record;
  Decode(stored, record);
  Demand(Encode(record) == stored, "a record that was read is written back the same");
  return record;
}

}  // namespace qdm
