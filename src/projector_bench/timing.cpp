#include "projector_bench/timing.h"

#include "line/line_settings.h"
#include "projector_bench/bench_line.h"

#include <algorithm>

namespace qdm {
namespace {

using std::chrono::milliseconds;

constexpr Microseconds kReplyTime = milliseconds(1000);
constexpr int kInARow = 3;

// Asking this often keeps the error of a transition near a hundredth, and the line usable in the first
// seconds.
constexpr int kPeriodsOfTransition = 200;
constexpr int kFinestPart = 100;
constexpr Microseconds kShortestPeriod = milliseconds(20);
constexpr Microseconds kFinestDelay = std::chrono::microseconds(20);

std::int16_t RoundedUp(Microseconds time, Microseconds unit, std::int64_t lowest) {
  const std::int64_t whole = (time.count() * 6 / 5 + unit.count() - 1) / unit.count();
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(whole, lowest, 255));
}

class Measurement {
 public:
  Measurement(const TimingBench& bench, const TimingProgress& told)
      : bench_(bench), told_(told), start_(bench.Time.Now()) {}

  bool Stopped() const { return bench_.Stop.stop_requested() || !bench_.Port.IsOpen(); }
  Microseconds Now() const { return bench_.Time.Now(); }

  // Returns when its last bit is through: a port takes a byte at once and sends it when it can. The delay
  // between bytes counts from the taking, and none follows the last, so that the pause behind it is exact.
  void Send(const StringTrial& command) {
    const Microseconds timeOfByte = TimeOfBytes(1, ParseLineSettings(BenchLineSettings(bench_.Projector)));
    Microseconds through = Now();
    Microseconds next = Now();
    for (const std::uint8_t byte : BytesOnLine(command)) {
      if (Stopped()) return;
      WaitTill(next);
      bench_.Port.Write({&byte, 1});
      through = std::max(through, Now()) + timeOfByte;
      next = Now() + command.InterByteDelay;
    }
    WaitTill(through);
  }
  void WaitTill(Microseconds when) {
    Wait(when - Now(), [] { return false; });
  }
  template <class Condition>
  void Wait(Microseconds period, Condition happened) {
    told_(Now() - start_);
    WaitUntil(bench_.Time, period, [&] {
      TakeInput();
      return happened() || Stopped();
    });
  }
  // So many replies have come since the last Forget.
  bool Came(const BytePattern& reply, int count = 1) { return Occurrences(received_, reply) >= count; }
  void Forget() {
    TakeInput();
    received_.clear();
  }

 private:
  void TakeInput() {
    const Bytes more = bench_.Port.ReadAll();
    received_.insert(received_.end(), more.begin(), more.end());
  }

  const TimingBench& bench_;
  const TimingProgress& told_;
  const Microseconds start_;
  Bytes received_;
};

// The first of four commands only opens the row.
bool AllAnswered(Measurement& measurement, const TimingQuestion& question, Microseconds pause) {
  measurement.WaitTill(measurement.Now() + kLongestCommandDelay);
  measurement.Forget();
  for (int i = 0; i <= kInARow && !measurement.Stopped(); ++i) {
    if (i > 0) measurement.WaitTill(measurement.Now() + pause);
    measurement.Send(question.Command);
  }
  const auto all = [&] { return measurement.Came(question.Reply, kInARow + 1); };
  measurement.Wait(kReplyTime, all);
  return all() && !measurement.Stopped();
}

}  // namespace

std::optional<TimingQuestion> TimingQuestionOf(const ProjectorDefinition& projector, Slot command) {
  const auto reply = ReplySlotOf(command);
  if (!reply || projector.Strings[command].BytesInUse() == 0) return std::nullopt;
  TimingQuestion question{TrialOf(projector, projector.Strings[command]),
                          PatternOf(projector.Strings[*reply])};
  if (question.Reply.empty()) return std::nullopt;
  return question;
}

TimingQuestion TimingQuestionOf(const ProjectorDefinition& projector, const SerialString& query,
                                const SerialString& reply) {
  return {TrialOf(projector, query), PatternOf(reply)};
}

// The reply to the power command itself is waited for first, so that it is not taken for the other.
std::optional<Microseconds> MeasureTransition(const TimingBench& bench, Slot power,
                                              const TimingQuestion& question, const TimingProgress& told) {
  Measurement measurement(bench, told);
  measurement.Forget();
  measurement.Send(TrialOf(bench.Projector, bench.Projector.Strings[power]));
  const Microseconds begin = bench.Time.Now();
  const auto pause = std::max<Microseconds>(milliseconds(bench.Projector.InterCommandDelay), kShortestPeriod);
  if (const auto itself = TimingQuestionOf(bench.Projector, power))
    measurement.Wait(kReplyTime, [&] { return measurement.Came(itself->Reply); });
  measurement.WaitTill(measurement.Now() + pause);
  measurement.Forget();
  while (!measurement.Stopped() && measurement.Now() - begin < kLongestTransition) {
    measurement.Send(question.Command);
    const auto came = [&] { return measurement.Came(question.Reply); };
    measurement.Wait(std::max(pause, (measurement.Now() - begin) / kPeriodsOfTransition), came);
    if (came()) return measurement.Now() - begin;
  }
  return std::nullopt;
}

std::optional<Microseconds> MeasureCommandDelay(const TimingBench& bench, const TimingQuestion& question,
                                                const TimingProgress& told) {
  Measurement measurement(bench, told);
  Microseconds enough = kLongestCommandDelay;
  Microseconds tooShort{};
  if (!AllAnswered(measurement, question, enough)) return std::nullopt;
  if (AllAnswered(measurement, question, tooShort)) return tooShort;
  while (enough - tooShort > std::max(enough / kFinestPart, kFinestDelay)) {
    if (measurement.Stopped()) return std::nullopt;
    const Microseconds middle = (enough + tooShort) / 2;
    (AllAnswered(measurement, question, middle) ? enough : tooShort) = middle;
  }
  if (measurement.Stopped()) return std::nullopt;
  return enough;
}

std::int16_t SecondsWithMargin(Microseconds measured) {
  return RoundedUp(measured, std::chrono::seconds(1), 1);
}

std::int16_t MillisecondsWithMargin(Microseconds measured) { return RoundedUp(measured, milliseconds(1), 0); }

}  // namespace qdm
