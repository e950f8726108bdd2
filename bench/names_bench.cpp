// Finding a definition by its names, in either case, against the standard library's hash table with keys that
// are ready: what is there and what is not.
#include "library_of.h"
#include "measure.h"

#include <cstdlib>
#include <string>
#include <unordered_map>

namespace qdm::bench {
namespace {

constexpr std::size_t kDefinitions = 10'000;
constexpr std::size_t kStep = 7919;  // a prime: neighbours are not asked for in turn

Turns Finding(const ProjectorLibrary& library, const std::unordered_map<std::u16string, std::size_t>& table,
              const std::vector<ProjectorDefinition>& wanted, bool there) {
  std::vector<std::u16string> keys;
  for (const ProjectorDefinition& projector : wanted) keys.push_back(NameKey(projector));
  const auto all = [&](const auto& isThere) {
    return ProcessorSeconds([&] {
      std::size_t found = 0;
      for (std::size_t i = 0, at = 0; i < kDefinitions; ++i, at = (at + kStep) % kDefinitions)
        found += isThere(at) ? 1U : 0U;
      if (found != (there ? kDefinitions : 0U)) std::abort();
    });
  };
  return TakeTurns(
      51, [&] { return all([&](std::size_t at) { return library.FindProjector(wanted[at]).has_value(); }); },
      [&] { return all([&](std::size_t at) { return table.find(keys[at]) != table.end(); }); });
}

}  // namespace

void MeasureNames(Table& table) {
  const ProjectorLibrary library = LibraryOf(kDefinitions);
  std::unordered_map<std::u16string, std::size_t> plain;
  for (std::size_t i = 0; i < library.Size(); ++i) plain.emplace(NameKey(library[i]), i);
  table.Ratio("finding 10,000 names that are there", "hash table, keys ready",
              Finding(library, plain, Definitions(0, kDefinitions, 100), true), 3);
  table.Ratio("finding 10,000 names that are not", "hash table, keys ready",
              Finding(library, plain, Definitions(kDefinitions, kDefinitions, 100), false), 3);
}

}  // namespace qdm::bench
