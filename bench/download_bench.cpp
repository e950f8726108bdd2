// The memory image in real time; programming and search in virtual time, against what the line itself needs.
// The ratios are in the counters.

#include "config/panel_configuration.h"
#include "panels/frame.h"
#include "panels/panel_image.h"
#include "panels/programming.h"
#include "simulation/simulated_line.h"
#include "support/panel_descriptions.h"
#include "support/virtual_time.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace qdm {
namespace {

// Every slot is used, and the table ends near the last byte.
PanelConfiguration FullConfiguration(std::int16_t controllerType) {
  PanelConfiguration configuration;
  configuration.ControllerType = controllerType;
  ProjectorDefinition& projector = configuration.Projector;
  projector.VolumeBytePosition = 0;
  projector.Available.fill(kFlagSet);
  for (SerialString& string : projector.Strings) {
    string.Count = 16;
    string.Values.fill(0x41);
    string.Kinds[3] = static_cast<std::uint8_t>(ByteKind::IGN);
  }
  for (std::size_t slot = 0; slot < 2; ++slot) projector.Strings[slot].Count = 0;
  return configuration;
}

void BuildImage(benchmark::State& state) {
  const PanelConfiguration configuration = FullConfiguration(static_cast<std::int16_t>(state.range(0)));
  for (auto _ : state) {
    PanelImage image = BuildPanelImage(configuration);
    benchmark::DoNotOptimize(image.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BuildImage)->ArgName("type")->Arg(kQdm7)->Arg(kTlVox);

class Silent : public ProgrammingObserver {
 public:
  explicit Silent(const Waiting& time) : time_(time) {}
  void Connecting() override {}
  void RecordsAcknowledged(int records) override {
    if (records == 0) start_ = time_.Now();
    if (records == kRecords) took_ = time_.Now() - start_;
  }
  void Tell(const Message&) override {}
  Microseconds Took() const { return took_; }

 private:
  const Waiting& time_;
  Microseconds start_{};
  Microseconds took_{};
};

// The records and their acknowledgements, a byte each.
Microseconds TimeThatTheBytesNeed(const PanelImage& image) {
  std::size_t bytes = 0;
  for (int record = 0; record < kRecords; ++record) bytes += ProgramRecord(image, record).size() + 1;
  return TimeOfBytes(bytes, ParseLineSettings(kProgrammingSettings));
}

void ProgramRecordsAt9600(benchmark::State& state) {
  const PanelImage image = BuildPanelImage(FullConfiguration(kQdm7));
  double ratio = 0;
  for (auto _ : state) {
    VirtualTime time;
    SimulatedPanel panel(Described(kQdm7, "9600,n,8,2"));
    SimulatedLine line(&panel, time, Pacing::TrueByteTime);
    Silent observer(time);
    ProgramPanel(line, "9600,n,8,2", kQdm7, image, time, std::stop_token(), observer);
    if (panel.Memory() != image) state.SkipWithError("the memory differs from the image");
    ratio = static_cast<double>(observer.Took().count()) /
            static_cast<double>(TimeThatTheBytesNeed(image).count());
  }
  state.counters["records_to_bytes"] = ratio;
}
BENCHMARK(ProgramRecordsAt9600)->Unit(benchmark::kMillisecond);

Microseconds TimeOfSearch(int portsThere) {
  VirtualTime time;
  SimulatedPorts ports(time, Pacing::TrueByteTime);
  for (int number = 1; number <= portsThere; ++number) ports.AttachLine(number, "silent");
  std::vector<SearchSlot> slots = AllSlots(ports);
  const Microseconds start = time.Now();
  SearchAllPorts(slots, std::nullopt, time, std::stop_token(), nullptr);
  return time.Now() - start;
}

void SearchSixteenPorts(benchmark::State& state) {
  double ratio = 0;
  for (auto _ : state) {
    ratio =
        static_cast<double>(TimeOfSearch(kPortSlots).count()) / static_cast<double>(TimeOfSearch(1).count());
  }
  state.counters["sixteen_to_one"] = ratio;
  state.counters["one_port_seconds"] = std::chrono::duration<double>(TimeOfSearch(1)).count();
}
BENCHMARK(SearchSixteenPorts)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qdm
