// The library at 10,000 definitions (20.8 MB): files against the bare reading and writing of as many bytes,
// names, and the import of as many again. Ratios are in the counters; each is of two medians of one run.

#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "support/temp_folder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace qdm {
namespace {

constexpr std::size_t kDefinitions = 10'000;

ProjectorDefinition Definition(std::size_t number) {
  ProjectorDefinition projector;
  projector.Manufacturer.AssignUtf8("MANUFACTURER " + std::to_string(number % 100));
  projector.Model.AssignUtf8("Model " + std::to_string(number));
  projector.Notes.AssignUtf8("Lens shift and zoom by hand; the lamp cools for two minutes.");
  for (SerialString& string : projector.Strings) {
    string.Count = 8;
    string.Values.fill(static_cast<std::uint8_t>(number));
  }
  return projector;
}

std::vector<ProjectorDefinition> Definitions(std::size_t first, std::size_t count) {
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(count);
  for (std::size_t i = 0; i < count; ++i) definitions.push_back(Definition(first + i));
  return definitions;
}

ProjectorLibrary LibraryOf(std::size_t count) {
  ProjectorLibrary library;
  library.Reserve(count);
  for (std::size_t i = 0; i < count; ++i) library.Append(Definition(i));
  return library;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Measures both in turns, so that what else the machine does meets them alike.
class Comparison {
 public:
  void Measure(benchmark::State& state, const std::function<void()>& ours,
               const std::function<void()>& theirs) {
    theirs_.push_back(Seconds(theirs));
    ours_.push_back(Seconds(ours));
    state.SetIterationTime(ours_.back());
  }
  void Report(benchmark::State& state) {
    state.counters["ratio"] = Median(ours_) / Median(theirs_);
    state.counters["base_ms"] = Median(theirs_) * 1000;
  }

 private:
  static double Median(std::vector<double>& times) {
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    return times[times.size() / 2];
  }

  std::vector<double> ours_;
  std::vector<double> theirs_;
};

void ReadAndCopyOnce(const std::filesystem::path& file) {
  std::FILE* opened = std::fopen(file.string().c_str(), "rb");
  const std::size_t size = std::filesystem::file_size(file);
  const std::unique_ptr<char[]> bytes(new char[size]);
  if (std::fread(bytes.get(), 1, size, opened) != size) std::abort();
  std::fclose(opened);
  const std::unique_ptr<char[]> copy(new char[size]);
  std::memcpy(copy.get(), bytes.get(), size);
  benchmark::DoNotOptimize(copy.get());
  benchmark::ClobberMemory();
}

void LoadLibrary(benchmark::State& state) {
  const TempFolder folder;
  WriteProjectorDatabase(folder.Path(), LibraryOf(kDefinitions));
  const ProjectorFiles files(folder.Path());
  Comparison comparison;
  for ([[maybe_unused]] auto _ : state) {
    comparison.Measure(
        state,
        [&] {
          ProjectorLibrary library;
          LoadProjectorDatabase(folder.Path(), library);
          benchmark::DoNotOptimize(library);
        },
        [&] { ReadAndCopyOnce(files.Library); });
  }
  comparison.Report(state);
}
BENCHMARK(LoadLibrary)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

void SaveLibrary(benchmark::State& state) {
  const TempFolder folder;
  const ProjectorLibrary library = LibraryOf(kDefinitions);
  const Bytes stored = EncodeDefinitions(library.Elements());
  Comparison comparison;
  for ([[maybe_unused]] auto _ : state) {
    comparison.Measure(
        state, [&] { WriteProjectorDatabase(folder.Path(), library); },
        [&] { WriteAndFlush(folder / "plain", stored); });
  }
  comparison.Report(state);
}
BENCHMARK(SaveLibrary)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

void FindByName(benchmark::State& state) {
  const ProjectorLibrary library = LibraryOf(kDefinitions);
  const std::vector<ProjectorDefinition> wanted = Definitions(0, kDefinitions);
  std::size_t i = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(library.FindProjector(wanted[i]));
    i = (i + 7919) % wanted.size();
  }
}
BENCHMARK(FindByName);

// As many definitions as the library holds, the first of them with the number `first`.
double ImportTime(std::size_t count, std::size_t first) {
  ProjectorLibrary library = LibraryOf(count);
  std::vector<ProjectorDefinition> incoming = Definitions(first, count);
  return Seconds([&] {
    ImportDefinitions(std::move(incoming), library, [](const ProjectorDefinition&, std::size_t) {});
    benchmark::DoNotOptimize(library);
  });
}

// The counter is the time per definition against the same with a tenth of them: 1 is linear.
void Import(benchmark::State& state, bool allNew) {
  std::vector<double> tenth;
  double whole = 0;
  for ([[maybe_unused]] auto _ : state) {
    tenth.push_back(ImportTime(kDefinitions / 10, allNew ? kDefinitions : 0));
    const double time = ImportTime(kDefinitions, allNew ? kDefinitions : 0);
    whole += time;
    state.SetIterationTime(time);
  }
  double tenths = 0;
  for (const double time : tenth) tenths += time;
  state.counters["per_definition_against_a_tenth"] = whole / tenths / 10;
}
BENCHMARK_CAPTURE(Import, Equal, false)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK_CAPTURE(Import, AllNew, true)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace qdm
