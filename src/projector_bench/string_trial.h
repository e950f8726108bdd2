// Trying one string against a real projector: its line setting, sending byte by byte with the projector's
// inter-byte delay, taking the reply in as a string. Used by the test console; knows no window.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"
#include "projectors/projector_definition.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>

namespace qdm {

// How long the console waits before it takes the reply in.
inline constexpr Microseconds kTrialReplyTime = std::chrono::milliseconds(1000);
inline constexpr Microseconds kShortestReplyTime = std::chrono::milliseconds(200);
inline constexpr Microseconds kLongestReplyTime = std::chrono::milliseconds(5000);

// "9600,n,8,2" from the definition's speed, parity and stop bits, for showing. Odd parity gives "0,8," with a
// digit zero, as it always has, and a parity outside 0..2 no piece at all.
std::string TrialLineSettings(const ProjectorDefinition& projector);
// The same for the port: odd parity with its letter. Where the parity is unknown the port keeps what it has.
std::string TrialPortSettings(const ProjectorDefinition& projector);

// Sends the bytes in use, each followed by `InterByteDelay`. With `Level` the byte at the 1-based
// `VariablePosition` goes out as those bytes, each followed by the delay of its own. A port that is closed,
// or closes in the middle, sends nothing and says nothing.
struct StringTrial {
  SerialString String;
  std::int16_t VariablePosition = 0;
  std::optional<Bytes> Level;
  std::chrono::milliseconds InterByteDelay{0};
};
void SendString(SerialPort& port, const StringTrial& trial, Waiting& time, const std::stop_token& stop);

// A reply as it is kept: characters stay characters, control codes among them get their names.
SerialString ReplyToKeep(const SerialString& reply);

// What waits in the port, as a string of that kind; nothing when there is nothing or more than 31 bytes.
std::optional<SerialString> TakeReply(SerialPort& port, ByteKind kind);

}  // namespace qdm
