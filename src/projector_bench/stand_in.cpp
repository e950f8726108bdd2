#include "projector_bench/stand_in.h"

#include "base/words.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/wrong_settings.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

namespace qdm {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Clocks are no better, and adapters keep bytes back for so long to hand them over in blocks.
constexpr Microseconds kTolerance = milliseconds(2);
constexpr Microseconds kToleranceOfBlocks = milliseconds(16);

// Something that was heard is told after such a silence, or after so long without one.
constexpr Microseconds kSilenceToTell = milliseconds(60);
constexpr Microseconds kLongestUntold = milliseconds(1000);

bool IsPowerCommand(Slot slot) { return slot == kPowerOnSlot || slot == kPowerOffSlot; }

std::int64_t WholeMilliseconds(Microseconds time) {
  return std::chrono::duration_cast<milliseconds>(time).count();
}

std::string NamesOf(const std::vector<Slot>& slots) {
  std::string names;
  for (const Slot slot : slots) names.append(names.empty() ? "" : ", ").append(Say(NameOfSlot(slot)));
  return names;
}

}  // namespace

std::string_view NameOf(const HeardCommand& heard) {
  return heard.Command ? NameOfSlot(*heard.Command) : std::string_view(Marked("unknown"));
}

std::string HexText(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + HexByte(byte);
  return text;
}

std::string ReadableText(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (byte >= ' ' && byte <= '~') {
      text += static_cast<char>(byte);
    } else {
      text += "<" + HexByte(byte) + ">";
    }
  }
  return text;
}

StandIn::StandIn(const ProjectorDefinition& projector)
    : projector_(projector),
      line_(ParseLineSettings(BenchLineSettings(projector))),
      commands_(CommandsOnLine(projector)) {}

void StandIn::Receive(ByteView bytes, Microseconds now) {
  std::vector<SpottedBytes> spotted;
  for (const std::uint8_t byte : bytes) spotter_.Receive(byte, now, spotted);
  for (const SpottedBytes& one : spotted) Hear(one);
}

void StandIn::Advance(Microseconds now) {
  std::vector<SpottedBytes> spotted;
  spotter_.Advance(now, spotted);
  for (const SpottedBytes& one : spotted) Hear(one);
}

std::optional<Microseconds> StandIn::NextTime() const {
  std::optional<Microseconds> next = spotter_.NextTime();
  if (!answers_.empty()) next = std::min(next.value_or(answers_.front().Due), answers_.front().Due);
  return next;
}

Bytes StandIn::TakeAnswers(Microseconds now) {
  Bytes due;
  while (!answers_.empty() && answers_.front().Due <= now) {
    due.insert(due.end(), answers_.front().Data.begin(), answers_.front().Data.end());
    answers_.pop_front();
  }
  return due;
}

void StandIn::Hear(const SpottedBytes& spotted) {
  HeardCommand heard;
  heard.Begin = spotted.Begin;
  heard.End = spotted.End;
  heard.Data = spotted.Data;
  heard.InBlocks = spotted.InBlocks;
  if (lastEnd_) heard.Gap = spotted.Begin - *lastEnd_;
  lastEnd_ = spotted.End;
  CompareDelays(heard);
  if (spotted.Command != nullptr) {
    heard.Command = spotted.Command->Place;
    heard.Level = LevelIn(heard.Data, *spotted.Command, projector_);
    AnswerTo(heard);
  }
  heard_.push_back(std::move(heard));
}

std::string StandIn::RemarksOn(const HeardCommand& heard) const {
  std::string remarks;
  const auto add = [&](const std::string& remark) {
    if (!remark.empty()) remarks.append(remarks.empty() ? "" : "; ").append(remark);
  };
  if (heard.Level) add(Say("level %1", {std::to_string(*heard.Level)}));
  if (heard.TooSoon) add(Say("too soon after the command before"));
  if (heard.BytesTooClose) add(Say("bytes too close together"));
  add(Meaning(heard));
  return remarks;
}

std::string StandIn::Meaning(const HeardCommand& heard) const {
  if (heard.Busy) return Say("busy: warming up or cooling down");
  if (heard.Command) return {};
  if (const auto wrong = WrongSettingsRemark(heard.Data, commands_, line_)) return *wrong;
  const auto nearest = FindNearest(heard.Data, commands_);
  return nearest ? Say("nearest is \"%1\": %2", {Say(NameOfSlot(nearest->Place)), nearest->Difference})
                 : std::string();
}

// Single gaps mean little: the whole command must have taken as long as all its delays.
void StandIn::CompareDelays(HeardCommand& heard) const {
  const bool blocks = heard.InBlocks || (!heard_.empty() && heard_.back().InBlocks);
  const Microseconds gap = heard.Gap.value_or(Microseconds::max() / 2);
  heard.TooSoon =
      gap + (blocks ? kToleranceOfBlocks : kTolerance) < milliseconds(projector_.InterCommandDelay);
  const auto gaps = static_cast<std::int64_t>(heard.Data.size()) - 1;
  const Microseconds time = heard.End - heard.Begin + (heard.InBlocks ? kToleranceOfBlocks : kTolerance);
  heard.BytesTooClose = time < gaps * milliseconds(projector_.InterByteDelay);
}

void StandIn::AnswerTo(HeardCommand& heard) {
  const Slot command = *heard.Command;
  const bool busy = IsPowerCommand(command) && heard.End < busyUntil_;
  if (busy && Switches.Power != WhileBusy::Answer) {
    heard.Busy = true;
    if (Switches.Power == WhileBusy::AnswerBusy) heard.Answer = Switches.BusyReply;
  } else {
    heard.Answer = ReplyTo(command);
    if (command == kPowerOnSlot) busyUntil_ = heard.End + seconds(projector_.WarmUpTime);
    if (command == kPowerOffSlot) busyUntil_ = heard.End + seconds(projector_.CoolDownTime);
  }
  if (Switches.Silent) heard.Answer.clear();
  if (heard.Answer.empty()) return;
  const Answer answer{heard.End + Switches.Delay, heard.Answer};
  const auto later = [](Microseconds due, const Answer& other) { return due < other.Due; };
  answers_.insert(std::upper_bound(answers_.begin(), answers_.end(), answer.Due, later), answer);
}

// What the panel ignores is sent as 00.
Bytes StandIn::ReplyTo(Slot command) const {
  const auto slot = ReplySlotOf(command);
  if (!slot) return {};
  Bytes reply;
  std::optional<std::size_t> lastChecked;
  const SerialString& string = projector_.Strings[*slot];
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const bool ignored = string.Kinds[i] == static_cast<std::uint8_t>(ByteKind::IGN);
    reply.push_back(ignored ? 0 : string.Values[i]);
    if (!ignored) lastChecked = i;
  }
  if (Switches.AnswerWrong && lastChecked) reply[*lastChecked] ^= 1;
  return reply;
}

std::vector<Slot> StandIn::Expected() const {
  std::vector<Slot> expected;
  for (const LineCommand& command : commands_) {
    if (command.InUse) expected.push_back(command.Place);
  }
  return expected;
}

// Commands that are the same, as the two of a volume that carries its level, are ticked together.
std::vector<Slot> StandIn::Missing() const {
  std::vector<Slot> missing;
  for (const LineCommand& command : commands_) {
    const bool came = std::any_of(heard_.begin(), heard_.end(), [&](const HeardCommand& heard) {
      return heard.Command && Matches(heard.Data, command);
    });
    if (command.InUse && !came) missing.push_back(command.Place);
  }
  return missing;
}

std::string ChecklistText(const StandIn& standIn) {
  const std::vector<Slot> missing = standIn.Missing();
  const std::size_t expected = standIn.Expected().size();
  const std::string heard = std::to_string(expected - missing.size());
  if (missing.empty()) return Say("Press each button: %1 of %2 heard", {heard, std::to_string(expected)});
  return Say("Press each button: %1 of %2 heard, still missing: %3",
             {heard, std::to_string(expected), NamesOf(missing)});
}

std::string ListLine(const HeardCommand& heard, Microseconds start) {
  return std::to_string(WholeMilliseconds(heard.Begin - start)) + "\t" +
         (heard.Gap ? std::to_string(WholeMilliseconds(*heard.Gap)) : "-") + "\t" +
         std::string(NameOf(heard)) + "\t" + HexText(heard.Data);
}

std::string ListText(const StandIn& standIn, Microseconds start) {
  std::string text = "ms\tgap ms\tcommand\tbytes\ttext\tanswer\tremarks\n";
  for (const HeardCommand& heard : standIn.Heard()) {
    text += ListLine(heard, start) + "\t" + ReadableText(heard.Data) + "\t" +
            (heard.Answer.empty() ? "-" : HexText(heard.Answer)) + "\t" + standIn.RemarksOn(heard) + "\n";
  }
  return text + ChecklistText(standIn) + "\n";
}

void ServeStandIn(StandIn& standIn, SerialPort& port, Waiting& time, const std::stop_token& stop,
                  const std::function<void()>& changed) {
  std::size_t told = standIn.Heard().size();
  Microseconds lastByte = time.Now();
  Microseconds untoldFrom = time.Now();
  while (!stop.stop_requested() && port.IsOpen()) {
    const Bytes bytes = port.ReadAll();
    if (!bytes.empty()) lastByte = time.Now();
    standIn.Receive(bytes, time.Now());
    standIn.Advance(time.Now());
    if (const Bytes answers = standIn.TakeAnswers(time.Now()); !answers.empty()) port.Write(answers);
    if (standIn.Heard().size() == told) untoldFrom = time.Now();
    const Microseconds tellAt = std::min(lastByte + kSilenceToTell, untoldFrom + kLongestUntold);
    if (standIn.Heard().size() != told && time.Now() >= tellAt) {
      told = standIn.Heard().size();
      changed();
    }
    if (!bytes.empty()) continue;
    Microseconds next = standIn.NextTime().value_or(time.Now() + std::chrono::hours(1));
    if (standIn.Heard().size() != told) next = std::min(next, tellAt);
    time.Yield(next);
  }
  if (standIn.Heard().size() != told) changed();
}

}  // namespace qdm
