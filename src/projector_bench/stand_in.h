// Takes the projector's place on the panel's cable: hears what comes, tells which commands it was and how
// well the delays were kept, and answers as the definition expects it. A state machine that is fed with bytes
// and with the time; `ServeStandIn` gives it a port.
//
// The delays of a definition are taken as milliseconds, warm-up and cool-down as seconds. How the panel
// counts them is not known: whoever shows a comparison says so.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "line/waiting.h"
#include "projector_bench/command_spotter.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qdm {

// While the projector warms up or cools down.
enum class WhileBusy { Answer, Ignore, AnswerBusy };

struct StandInSwitches {
  bool Silent = false;
  bool AnswerWrong = false;  // one bit of the reply is changed
  std::chrono::milliseconds Delay{0};
  WhileBusy Power = WhileBusy::Answer;  // what power commands get
  Bytes BusyReply = {'B', 'U', 'S', 'Y', '\r'};
};

struct HeardCommand {
  Microseconds Begin{};
  Microseconds End{};
  std::optional<Microseconds> Gap;  // since the end of the command before; nothing for the first
  bool TooSoon = false;             // the gap is shorter than the definition's delay between commands
  bool BytesTooClose = false;       // the bytes are closer together than the delay between bytes
  bool InBlocks = false;            // bytes were handed over together: the times are that much less exact
  std::optional<Slot> Command;      // nothing: no command of the definition
  std::optional<std::int16_t> Level;
  Bytes Data;
  Bytes Answer;       // empty: none
  bool Busy = false;  // it came while the projector warms up or cools down, and was not carried out
};

// "Power on", or "unknown".
std::string_view NameOf(const HeardCommand& heard);
// "50 57 0D".
std::string HexText(ByteView bytes);
// Characters as they are, everything else as "<0D>".
std::string ReadableText(ByteView bytes);

class StandIn {
 public:
  explicit StandIn(const ProjectorDefinition& projector);
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;

  // May be changed at any time.
  StandInSwitches Switches;

  // What was sent to it, and when; `now` never goes back.
  void Receive(ByteView bytes, Microseconds now);
  // Takes note of the time: silences end commands, answers become due.
  void Advance(Microseconds now);
  // When Advance has something to do; nothing when only bytes can make it so.
  std::optional<Microseconds> NextTime() const;
  // The answers that are due, each once.
  Bytes TakeAnswers(Microseconds now);

  const std::vector<HeardCommand>& Heard() const { return heard_; }
  // Forgets what was heard, for the checklist too.
  void Forget() { heard_.clear(); }

  // The commands that the panel can send, and those of them that have not come yet.
  const std::vector<LineCommand>& Commands() const { return commands_; }
  std::vector<Slot> Expected() const;
  std::vector<Slot> Missing() const;
  // What is to be said of it: what unknown bytes look like, the level, delays that were not kept. UTF-8.
  std::string RemarksOn(const HeardCommand& heard) const;

 private:
  std::string Meaning(const HeardCommand& heard) const;
  struct Answer {
    Microseconds Due;
    Bytes Data;
  };

  void Hear(const SpottedBytes& spotted);
  void CompareDelays(HeardCommand& heard) const;
  void AnswerTo(HeardCommand& heard);
  Bytes ReplyTo(Slot command) const;

  const ProjectorDefinition projector_;
  const LineSettings line_;
  const std::vector<LineCommand> commands_;
  CommandSpotter spotter_{commands_};
  std::vector<HeardCommand> heard_;
  std::optional<Microseconds> lastEnd_;
  Microseconds busyUntil_{};
  std::deque<Answer> answers_;
};

// "Press each button: 3 of 9 heard, still missing: Blank".
std::string ChecklistText(const StandIn& standIn);

// A line for each command: milliseconds since `start`, since the end of the one before ("-" for the first),
// the name, the bytes; separated by tabs.
std::string ListLine(const HeardCommand& heard, Microseconds start);
// The whole list for people: the same with text, answer and remarks behind.
std::string ListText(const StandIn& standIn, Microseconds start);

// Listens and answers at an open port until it is asked to stop or the port is gone. `changed` is called when
// something was heard and the line is silent: drawing would spoil the times of what still comes.
void ServeStandIn(StandIn& standIn, SerialPort& port, Waiting& time, const std::stop_token& stop,
                  const std::function<void()>& changed);

}  // namespace qdm
