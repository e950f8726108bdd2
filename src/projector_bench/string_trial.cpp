#include "projector_bench/string_trial.h"

#include "line/speeds_and_parities.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace qdm {
namespace {

std::string ParityPiece(int code) {
  const ParityChoice* parity = ParityWithCode(code);
  if (parity == nullptr) return "";
  return std::string(parity->Parity == LineParity::Odd ? "0" : parity->Letter) + ",8,";
}

void Pause(Waiting& time, std::chrono::milliseconds period, const std::stop_token& stop) {
  const Deadline deadline(time, period);
  while (!deadline.Passed() && !stop.stop_requested()) time.Yield(deadline.At());
}

}  // namespace

std::string TrialLineSettings(const ProjectorDefinition& projector) {
  return std::string(SpeedOf(projector.Baudrate).Digits) + "," + ParityPiece(projector.Parity) +
         (projector.Stopbits != 0 ? "2" : "1");
}

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
