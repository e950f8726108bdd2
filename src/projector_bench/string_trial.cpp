#include "projector_bench/string_trial.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace qdm {
namespace {

std::string_view SpeedPiece(std::int16_t baudrate) {
  switch (baudrate) {
    case 1:
      return "19200,";
    case 2:
      return "38400,";
    case 3:
      return "57600,";
    case 4:
      return "115200,";
    default:
      return "9600,";
  }
}

std::string_view ParityPiece(std::int16_t parity) {
  switch (parity) {
    case 0:
      return "n,8,";
    case 1:
      return "e,8,";
    case 2:
      return "0,8,";
    default:
      return "";
  }
}

void Pause(Waiting& time, std::chrono::milliseconds period, const StopRequest& stop) {
  const Deadline deadline(time, period);
  while (!deadline.Passed() && !stop.IsSet()) time.Yield(deadline.At());
}

}  // namespace

std::string TestLineSettings(const ProjectorDefinition& projector) {
  std::string settings(SpeedPiece(projector.Baudrate));
  settings += ParityPiece(projector.Parity);
  settings += projector.Stopbits != 0 ? "2" : "1";
  return settings;
}

void SendString(SerialPort& port, const StringTest& test, Waiting& time, const StopRequest& stop) {
  const auto send = [&](std::uint8_t byte) {
    port.Write({&byte, 1});
    Pause(time, test.InterByteDelay, stop);
  };
  for (std::size_t i = 0; i < test.String.BytesInUse(); ++i) {
    if (stop.IsSet() || !port.IsOpen()) return;
    if (test.Level && static_cast<int>(i) == test.VariablePosition - 1) {
      for (const std::uint8_t byte : *test.Level) send(byte);
      Pause(time, test.InterByteDelay, stop);
    } else {
      send(test.String.Values[i]);
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
