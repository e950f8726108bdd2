// Searching, programming and restarting against a peer that sends whatever comes, in virtual time, and
// against a panel on a line that the input disturbs. "Programed" means that the panel's memory is the image.
#include "fuzz/fuzzing.h"
#include "panels/frame.h"
#include "panels/programming.h"
#include "simulation/simulated_line.h"
#include "support/virtual_time.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <memory>
#include <stop_token>

namespace qdm {
namespace {

// Answers each write with a few bytes of the input, at once or late, or goes away.
class FuzzedPeer : public SerialPort {
 public:
  FuzzedPeer(FuzzedDataProvider& input, Waiting& time) : input_(input), time_(time) {}

  void SetSettings(std::string_view) override {}
  bool Open() override { return open_ = input_.ConsumeIntegralInRange(0, 31) != 0; }
  void Close() override { open_ = false; }
  bool IsOpen() const override { return open_; }
  std::size_t BytesWaiting() override { return time_.Now() >= due_ ? waiting_.size() : 0; }
  Bytes ReadAll() override {
    if (time_.Now() < due_) return {};
    return std::exchange(waiting_, {});
  }
  bool Write(ByteView) override {
    if (!open_) return false;
    const auto answer = input_.ConsumeBytes<std::uint8_t>(input_.ConsumeIntegralInRange<std::size_t>(0, 6));
    waiting_.insert(waiting_.end(), answer.begin(), answer.end());
    due_ = time_.Now() + std::chrono::milliseconds(input_.ConsumeIntegralInRange(0, 700));
    if (!answer.empty()) time_.WakeAt(due_);
    if (input_.ConsumeIntegralInRange(0, 63) == 1) open_ = false;
    return true;
  }

 private:
  FuzzedDataProvider& input_;
  Waiting& time_;
  bool open_ = false;
  Bytes waiting_;
  Microseconds due_{};
};

struct Silent : ProgrammingObserver {
  void Connecting() override {}
  void RecordsAcknowledged(int records) override {
    Demand(records >= 0 && records <= kRecords, "0 to 64 records");
  }
  void Tell(const Message&) override {}
};

PanelImage ImageFrom(FuzzedDataProvider& input) {
  PanelImage image;
  const std::uint8_t first = input.ConsumeIntegral<std::uint8_t>();
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(first + i * 37);
  return image;
}

void AgainstAnything(FuzzedDataProvider& input) {
  VirtualTime time;
  FuzzedPeer peer(input, time);
  Silent observer;
  const Microseconds start = time.Now();
  const ProgrammingResult result =
      ProgramPanel(peer, "9600,n,8,2", kQdm7, ImageFrom(input), time, std::stop_token(), observer);
  Demand(result.Programmed == (result.Records == kRecords), "programmed means 64 records");
  Demand(time.Now() - start < std::chrono::minutes(30), "every wait ends");
}

void AgainstAPanelOnABadLine(FuzzedDataProvider& input) {
  VirtualTime time;
  SimulatedPanel::Description description;
  const int faults = input.ConsumeIntegralInRange(0, 3);
  for (int i = 0; i < faults; ++i) {
    PanelFault fault;
    fault.What = static_cast<PanelFault::Kind>(input.ConsumeIntegralInRange(0, 4));
    fault.Where = static_cast<PanelFault::Target>(input.ConsumeIntegralInRange(0, 2));
    fault.Number = input.ConsumeIntegralInRange(1, 70);
    fault.Delay = std::chrono::milliseconds(input.ConsumeIntegralInRange(0, 2000));
    if (fault.Value == kAcknowledge) fault.Value = 0;
    description.Faults.push_back(fault);
  }
  SimulatedPanel panel(description);
  SimulatedLine line(&panel, time);
  if (input.ConsumeBool()) {
    line.UnplugAt(time.Now() + std::chrono::milliseconds(input.ConsumeIntegralInRange(0, 30'000)));
  }
  Silent observer;
  const PanelImage image = ImageFrom(input);
  const ProgrammingResult result =
      ProgramPanel(line, "9600,n,8,2", kQdm7, image, time, std::stop_token(), observer);
  if (result.Programmed) Demand(panel.Memory() == image, "programed means equal memory");
  if (result.Restarted) Demand(panel.Restarts() > 0, "restarted means restarted");
}

void Look(FuzzedDataProvider input) {
  if (input.ConsumeBool()) return AgainstAnything(input);
  AgainstAPanelOnABadLine(input);
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look(FuzzedDataProvider(data, size));
  return 0;
}
