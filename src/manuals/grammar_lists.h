// The lists of a page that describes its commands: names with what they do, and the values that they take, in
// rows or torn from their meanings.
#pragma once

#include "manuals/pairing.h"

#include <cstddef>
#include <vector>

namespace qdm::grammar {

inline constexpr std::size_t kLongestLine = 200;  // characters; a longer one is prose

struct Value {
  CodeBytes Bytes;
  Span Where;
  Span Label;
  Function Says;
};

struct Name {
  CodeBytes Bytes;
  Span Where;
  Span Label;
  Function Says;
  std::vector<Value> Values;
  bool Alone = false;    // takes no value
  bool UpDown = false;   // takes + and -
  bool Queries = false;  // only reads
};

// `pairs`: names and values are hexadecimal digits without blanks. `findings` are those of the codes that
// stand on the page: names that have found their labels already are taken from them.
std::vector<Name> ReadNames(const ManualPage& page, bool pairs, const std::vector<Finding>& findings);

}  // namespace qdm::grammar
