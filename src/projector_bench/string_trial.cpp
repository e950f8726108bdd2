#include "projector_bench/string_trial.h"

#include "line/speeds_and_parities.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qdm {
namespace {

std::string Settings(const ProjectorDefinition& projector, std::string_view oddLetter) {
  std::string settings = std::string(SpeedOf(projector.Baudrate).Digits) + ",";
  if (const ParityChoice* parity = ParityWithCode(projector.Parity)) {
    settings += parity->Parity == LineParity::Odd ? oddLetter : parity->Letter;
    settings += ",8,";
  }
  return settings + (projector.Stopbits != 0 ? "2" : "1");
}

void Pause(Waiting& time, std::chrono::milliseconds period, const std::stop_token& stop) {
  const Deadline deadline(time, period);
  while (!deadline.Passed() && !stop.stop_requested()) time.Yield(deadline.At());
}

}  // namespace

std::string TrialLineSettings(const ProjectorDefinition& projector) { return Settings(projector, "0"); }

std::string TrialPortSettings(const ProjectorDefinition& projector) { return Settings(projector, "o"); }

void SendString(SerialPort& port, const StringTrial& trial, Waiting& time, const std::stop_token& stop) {
  const auto send = [&](std::uint8_t byte) {
    port.Write({&byte, 1});
    Pause(time, trial.InterByteDelay, stop);
  };
  for (std::size_t i = 0; i < trial.String.BytesInUse(); ++i) {
    if (stop.stop_requested() || !port.IsOpen()) return;
    if (trial.Level && static_cast<int>(i) == trial.VariablePosition - 1) {
      for (const std::uint8_t byte : *trial.Level) send(byte);
      Pause(time, trial.InterByteDelay, stop);
    } else {
      send(trial.String.Values[i]);
    }
  }
}

SerialString ReplyToKeep(const SerialString& reply) {
  SerialString kept = reply;
  for (std::size_t i = 0; i < kept.BytesInUse(); ++i) {
    const bool isControl = kept.Values[i] < 32 && kept.Kinds[i] == static_cast<std::uint8_t>(ByteKind::ASC);
    if (isControl) kept.Kinds[i] = static_cast<std::uint8_t>(ByteKind::CNT);
  }
  return kept;
}

std::optional<SerialString> TakeReply(SerialPort& port, ByteKind kind) {
  const Bytes received = port.ReadAll();
  if (received.empty() || received.size() >= kMaximumStringBytes) return std::nullopt;
  SerialString reply;
  reply.Count = static_cast<std::int16_t>(received.size());
  std::copy(received.begin(), received.end(), reply.Values.begin());
  std::fill_n(reply.Kinds.begin(), received.size(), static_cast<std::uint8_t>(kind));
  return reply;
}

}  // namespace qdm
