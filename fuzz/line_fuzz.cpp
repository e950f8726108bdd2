// Whatever talks over the line, in virtual time, against a peer that sends whatever comes: search,
// programming, restart, console, stand-in and settings finder; and programming a panel on a line that the
// input disturbs. "Programed" means that the panel's memory is the image; every wait ends.
#include "fuzz/fuzzing.h"
#include "panels/frame.h"
#include "panels/one_port_search.h"
#include "panels/programming.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/settings_finder.h"
#include "projector_bench/stand_in.h"
#include "simulation/simulated_line.h"
#include "support/virtual_time.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <memory>
#include <stop_token>
#include <utility>

namespace qdm {
namespace {

// Answers each write with a few bytes of the input, at once or late, or goes away.
class FuzzedPeer : public SerialPort {
 public:
  FuzzedPeer(FuzzedDataProvider& input, Waiting& time) : input_(input), time_(time) {}

  Bytes Written;  // to the peer
  Bytes Sent;     // by the peer, as far as it was read
  void Say(ByteView bytes) { waiting_.insert(waiting_.end(), bytes.begin(), bytes.end()); }

  void SetSettings(std::string_view) override {}
  bool Open() override { return open_ = input_.ConsumeIntegralInRange(0, 31) != 0; }
  void Close() override { open_ = false; }
  bool IsOpen() const override { return open_; }
  std::size_t BytesWaiting() override { return time_.Now() >= due_ ? waiting_.size() : 0; }
  Bytes ReadAll() override {
    if (time_.Now() < due_) return {};
    Sent.insert(Sent.end(), waiting_.begin(), waiting_.end());
    return std::exchange(waiting_, {});
  }
  bool Write(ByteView bytes) override {
    if (!open_) return false;
    Written.insert(Written.end(), bytes.begin(), bytes.end());
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

void Search(FuzzedDataProvider& input) {
  VirtualTime time;
  std::vector<SearchSlot> slots(input.ConsumeIntegralInRange<std::size_t>(1, 3));
  for (SearchSlot& slot : slots) slot.Port = std::make_unique<FuzzedPeer>(input, time);
  const Microseconds start = time.Now();
  SearchAllPorts(slots, input.ConsumeIntegralInRange(0, 3), time, std::stop_token(), nullptr);
  Demand(time.Now() - start <= kLineSettings * kReplyTimeout, "a search takes 15 time-outs at the most");
  for (const SearchSlot& slot : slots) {
    Demand(!slot.Port->IsOpen() && slot.State != SlotState::Asking, "a search leaves every port closed");
    Demand(slot.Panel || !slot.Choosable(), "only who answered can be chosen");
  }
  const Microseconds searched = time.Now();
  for (const std::size_t slot : RestartFoundPanels(slots, time, std::stop_token()))
    Demand(slots.at(slot).Panel.has_value(), "only who answered is restarted");
  Demand(time.Now() - searched <= std::chrono::seconds(6), "restarts run side by side");
}

void SearchOnePort(FuzzedDataProvider& input) {
  VirtualTime time;
  FuzzedPeer peer(input, time);
  const Microseconds start = time.Now();
  OnePortSearch search(peer, time, [](const std::string& text) { Demand(!text.empty(), "a text is shown"); });
  while (!search.Finished()) {
    time.Yield(search.NextTime());
    search.Advance();
  }
  Demand(!peer.IsOpen() && time.Now() - start <= kLineSettings * kOnePortReplyTimeout, "a search ends");
}

// A few commands and replies of few bytes, so that some begin or end as others do.
ProjectorDefinition ProjectorFrom(FuzzedDataProvider& input) {
  ProjectorDefinition projector;
  for (const Slot slot : {kPowerOnSlot, kPowerOffSlot, kVolumeUpSlot, kPowerOnReplySlot}) {
    SerialString& string = projector.Strings[slot];
    projector.Available[slot] = kFlagSet;
    string.Count = input.ConsumeIntegralInRange<std::int16_t>(0, 6);
    for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
      string.Values[i] = static_cast<std::uint8_t>('A' + input.ConsumeIntegralInRange(0, 3));
      string.Kinds[i] = input.ConsumeIntegralInRange<std::uint8_t>(0, 6);
    }
  }
  projector.InterByteDelay = input.ConsumeIntegralInRange<std::int16_t>(0, 300);
  projector.InterCommandDelay = input.ConsumeIntegral<std::int16_t>();
  projector.NumberOfBytes = input.ConsumeIntegralInRange<std::int16_t>(0, 4);
  projector.MessageFormat = input.ConsumeIntegralInRange<std::int16_t>(0, 2);
  projector.MaximumLevel = input.ConsumeIntegral<std::int16_t>();
  projector.Parity = input.ConsumeIntegralInRange<std::int16_t>(0, 3);
  return projector;
}

void Console(FuzzedDataProvider& input) {
  VirtualTime time;
  const ProjectorDefinition projector = ProjectorFrom(input);
  FuzzedPeer peer(input, time);
  peer.Open();
  const StringTrial trial = TrialOf(projector, projector.Strings[kVolumeUpSlot]);
  SendString(peer, trial, time, std::stop_token());
  const Bytes whole = BytesOnLine(trial);
  Demand(peer.Written.size() <= whole.size() &&
             std::equal(peer.Written.begin(), peer.Written.end(), whole.begin()),
         "what goes out is the string");
  Demand(!peer.IsOpen() || peer.Written == whole, "an open port gets the whole string");
  if (const auto reply = TakeReply(peer, ByteKind::ASC))
    Demand(reply->Count >= 1 && reply->Count < 32 && ReplyToKeep(*reply).Values == reply->Values,
           "a reply is kept");
}

void StandInFor(FuzzedDataProvider& input) {
  VirtualTime time;
  StandIn standIn(ProjectorFrom(input));
  standIn.Switches.Power = static_cast<WhileBusy>(input.ConsumeIntegralInRange(0, 2));
  standIn.Switches.AnswerWrong = input.ConsumeBool();
  FuzzedPeer peer(input, time);
  peer.Open();
  std::stop_source stop;
  Microseconds at = time.Now();
  for (int burst = input.ConsumeIntegralInRange(0, 12); burst > 0; --burst) {
    Bytes bytes = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 40));
    for (std::uint8_t& byte : bytes) byte = byte < 128 ? static_cast<std::uint8_t>('A' + byte % 4) : byte;
    at += std::chrono::milliseconds(input.ConsumeIntegralInRange(0, 1500));
    time.At(at, [&peer, bytes] { peer.Say(bytes); });
  }
  time.At(at + std::chrono::seconds(5), [&stop] { stop.request_stop(); });
  ServeStandIn(standIn, peer, time, stop.get_token(), [] {});
  Bytes heard;
  for (const HeardCommand& command : standIn.Heard())
    heard.insert(heard.end(), command.Data.begin(), command.Data.end());
  Demand(heard.size() <= peer.Sent.size() && std::equal(heard.begin(), heard.end(), peer.Sent.begin()),
         "a stand-in loses and makes up nothing");
  static_cast<void>(ListText(standIn, Microseconds{}));
}

void FindSettings(FuzzedDataProvider& input) {
  VirtualTime time;
  const ProjectorDefinition projector = ProjectorFrom(input);
  const ProbeQuestion question = QuestionOf(projector, kPowerOnSlot);
  const std::vector<ProbeSetting> settings = SettingsToProbe(projector);
  std::vector<std::unique_ptr<SerialPort>> ports;
  ports.push_back(std::make_unique<FuzzedPeer>(input, time));
  ports.front()->Open();
  std::size_t told = 0;
  const auto check = [&](const ProbeResult& result) {
    Demand(result.Setting == settings.at(told), "the settings are asked in their order");
    Demand((result.Verdict == ProbeVerdict::Nothing) == result.Received.empty(), "silence is silence");
    ++told;
  };
  ProbeSettings(ports, question, settings, time, std::stop_token(), {.Told = check});
}

void Look(FuzzedDataProvider input) {
  constexpr void (*kWays[])(FuzzedDataProvider&) = {
      AgainstAnything, AgainstAPanelOnABadLine, Search, SearchOnePort, Console, StandInFor, FindSettings};
  kWays[input.ConsumeIntegralInRange<std::size_t>(0, std::size(kWays) - 1)](input);
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look(FuzzedDataProvider(data, size));
  return 0;
}
