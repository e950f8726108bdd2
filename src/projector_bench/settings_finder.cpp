#include "projector_bench/settings_finder.h"

#include "base/words.h"
#include "projector_bench/bench_line.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qdm {
namespace {

bool AnyMatches(ByteView received, const std::vector<BytePattern>& replies) {
  return std::any_of(replies.begin(), replies.end(),
                     [&](const BytePattern& reply) { return Matches(received, reply); });
}

bool AnyOccurs(ByteView received, const std::vector<BytePattern>& replies) {
  return std::any_of(replies.begin(), replies.end(),
                     [&](const BytePattern& reply) { return Occurrences(received, reply) > 0; });
}

void AddReply(const ProjectorDefinition& projector, std::size_t slot, std::vector<BytePattern>& replies) {
  if (BytePattern reply = PatternOf(projector.Strings[slot]); !reply.empty())
    replies.push_back(std::move(reply));
}

void Ask(SerialPort& port, const ProbeSetting& setting, const ProbeQuestion& question, Waiting& time,
         const std::stop_token& stop) {
  port.SetSettings(setting.Text());
  port.ReadAll();
  SendString(port, question.Command, time, stop);
}

}  // namespace

std::string ProbeSetting::Text() const {
  return std::string(Speed->Digits) + "," + std::string(Parity->Letter) + ",8," + std::to_string(StopBits);
}

std::vector<ProbeSetting> SettingsToProbe(const ProjectorDefinition& projector) {
  constexpr std::array kSpeedsByUse = {9600, 19200, 38400, 115200, 57600};
  std::vector<ProbeSetting> settings;
  for (const int stopBits : {1, 2}) {
    for (const ParityChoice& parity : LineParities) {
      for (const int bitsPerSecond : kSpeedsByUse) {
        const auto speed = std::find_if(LineSpeeds.begin(), LineSpeeds.end(), [&](const LineSpeed& row) {
          return row.BitsPerSecond == bitsPerSecond;
        });
        settings.push_back({&*speed, &parity, stopBits});
      }
    }
  }
  const std::string own = BenchLineSettings(projector);
  const auto first = std::find_if(settings.begin(), settings.end(),
                                  [&](const ProbeSetting& setting) { return setting.Text() == own; });
  std::rotate(settings.begin(), first, first + 1);
  return settings;
}

void UseSettings(ProjectorDefinition& projector, const ProbeSetting& setting) {
  projector.Baudrate = setting.Speed->Code;
  projector.Parity = setting.Parity->Code;
  const bool two = setting.StopBits == 2;
  if (two != (projector.Stopbits != 0)) projector.Stopbits = two ? 1 : 0;
}

std::string_view NameOf(ProbeVerdict verdict) {
  constexpr std::array<std::string_view, 4> kNames = {Marked("nothing"), Marked("echo"), Marked("something"),
                                                      Marked("reply")};
  return kNames.at(static_cast<std::size_t>(verdict));
}

ProbeQuestion QuestionOf(const ProjectorDefinition& projector, Slot command) {
  ProbeQuestion question{.Command = TrialOf(projector, projector.Strings[command])};
  if (const auto reply = ReplySlotOf(command)) AddReply(projector, *reply, question.Replies);
  return question;
}

ProbeQuestion QuestionOf(const ProjectorDefinition& projector, const SerialString& command) {
  ProbeQuestion question{.Command = TrialOf(projector, command)};
  const Bytes sent = BytesOnLine(question.Command);
  for (const LineCommand& known : CommandsOnLine(projector)) {
    const auto reply = ReplySlotOf(known.Place);
    if (reply && Matches(sent, known.Pattern)) AddReply(projector, *reply, question.Replies);
  }
  if (!question.Replies.empty()) return question;
  for (const SlotFacts& slot : kSlots) {
    if (slot.Role == SlotRole::Reply) AddReply(projector, slot.Place, question.Replies);
  }
  return question;
}

std::string_view EffectOf(Slot command) {
  switch (command) {
    case kSerialEnableSlot:
      return Marked("makes the projector listen to its serial port");
    case kPowerOnSlot:
      return Marked("switches the projector on");
    case kBlankSlot:
      return Marked("blanks the picture");
    case kBlankOffSlot:
      return Marked("shows the picture again");
    case kVolumeUpSlot:
      return Marked("turns the sound up");
    case kVolumeDownSlot:
      return Marked("turns the sound down");
    case kPowerOffSlot:
      return Marked("switches the projector off");
    case kSerialDisableSlot:
      return Marked("makes the projector deaf on its serial port");
    default:
      return Marked("changes to another input");
  }
}

// A projector may send the command back before it replies; the reply must not be looked for in that.
ProbeVerdict Judge(const ProbeQuestion& question, ByteView received) {
  if (received.empty()) return ProbeVerdict::Nothing;
  if (AnyMatches(received, question.Replies)) return ProbeVerdict::Reply;
  const Bytes sent = BytesOnLine(question.Command);
  const bool echoed =
      received.size() >= sent.size() && std::equal(sent.begin(), sent.end(), received.begin());
  if (echoed) received = received.subspan(sent.size());
  if (received.empty()) return ProbeVerdict::Echo;
  return AnyOccurs(received, question.Replies) ? ProbeVerdict::Reply : ProbeVerdict::Something;
}

void ProbeSettings(const std::vector<std::unique_ptr<SerialPort>>& ports, const ProbeQuestion& question,
                   const std::vector<ProbeSetting>& settings, Waiting& time, const std::stop_token& stop,
                   const ProbeObserver& observer) {
  for (const ProbeSetting& setting : settings) {
    if (stop.stop_requested() || !AnyIsOpen(ports)) return;
    if (observer.Asking) observer.Asking(setting);
    for (const auto& port : ports) {
      if (port->IsOpen()) Ask(*port, setting, question, time, stop);
    }
    WaitUntil(time, kProbeTime, [&] { return stop.stop_requested(); });
    if (stop.stop_requested()) return;
    for (std::size_t i = 0; i < ports.size(); ++i) {
      if (!ports[i]->IsOpen()) continue;
      ProbeResult result{.Port = i, .Setting = setting, .Received = ports[i]->ReadAll()};
      result.Verdict = Judge(question, result.Received);
      observer.Told(result);
    }
  }
}

bool AnyIsOpen(const std::vector<std::unique_ptr<SerialPort>>& ports) {
  return std::any_of(ports.begin(), ports.end(), [](const auto& port) { return port->IsOpen(); });
}

std::string_view WhatToCheckWhenSilent() {
  return Marked(
      "The cable: a projector's port may want a null-modem (crossed) or a straight cable, and the panel's "
      "end and a computer's end are not wired alike.\n"
      "The power: some projectors listen in standby, some only when they are on.\n"
      "The projector's menu: its control port may be switched off, or set to another interface.");
}

}  // namespace qdm
