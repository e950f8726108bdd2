// How long a projector really takes: to warm up, to cool down, and between two commands. Measured with it on
// the line, by asking again and again until the right reply comes. Nothing is written anywhere; the values
// are compared with a definition's as milliseconds (delays) and seconds (warm-up, cool-down), which is an
// assumption about how the panel counts them.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"
#include "projector_bench/command_pattern.h"
#include "projector_bench/string_trial.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>

namespace qdm {

// A command that a projector in working order answers, and the answer.
struct TimingQuestion {
  StringTrial Command;
  BytePattern Reply;
};

// The command in that slot with the reply that is expected after it; nothing when either is missing.
std::optional<TimingQuestion> TimingQuestionOf(const ProjectorDefinition& projector, Slot command);
// A query of one's own and the answer that the projector gives when it works.
TimingQuestion TimingQuestionOf(const ProjectorDefinition& projector, const SerialString& query,
                                const SerialString& reply);

// The line that is measured on.
struct TimingBench {
  SerialPort& Port;  // open, at the projector's settings
  const ProjectorDefinition& Projector;
  Waiting& Time;
  std::stop_token Stop;
};

// Called again and again with the time since the beginning.
using TimingProgress = std::function<void(Microseconds elapsed)>;

// Longer than a panel could wait: 255 s.
inline constexpr Microseconds kLongestTransition = std::chrono::seconds(300);

// Sends the power command in `power`, then asks until the right reply comes: the time from the end of the
// command to that reply. Nothing when it was stopped, the port is gone, or kLongestTransition has passed.
std::optional<Microseconds> MeasureTransition(const TimingBench& bench, Slot power,
                                              const TimingQuestion& question, const TimingProgress& told);

// The longest pause that is tried between two commands.
inline constexpr Microseconds kLongestCommandDelay = std::chrono::milliseconds(1000);

// The shortest pause between the end of a command and the next one at which every one is answered, three in a
// row; found by halving, to a hundredth of itself. Nothing when not even the longest is
// enough.
std::optional<Microseconds> MeasureCommandDelay(const TimingBench& bench, const TimingQuestion& question,
                                                const TimingProgress& told);

// As a definition stores them: with a margin of 20 %, rounded up, in 1..255 s and 0..255 ms.
std::int16_t SecondsWithMargin(Microseconds measured);
std::int16_t MillisecondsWithMargin(Microseconds measured);

}  // namespace qdm
