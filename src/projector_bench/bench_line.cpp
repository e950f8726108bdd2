#include "projector_bench/bench_line.h"

#include "line/speeds_and_parities.h"
#include "projectors/projector_volume.h"
#include "serial_strings/serial_string.h"

#include <chrono>
#include <cstddef>

namespace qdm {

std::string BenchLineSettings(const ProjectorDefinition& projector) {
  const ParityChoice* parity = ParityWithCode(projector.Parity);
  return std::string(SpeedOf(projector.Baudrate).Digits) + "," +
         std::string(parity != nullptr ? parity->Letter : LineParities.front().Letter) + ",8," +
         (projector.Stopbits != 0 ? "2" : "1");
}

StringTrial TrialOf(const ProjectorDefinition& projector, const SerialString& command) {
  StringTrial trial{.String = command,
                    .VariablePosition = VariableBytePositionOf(command),
                    .Level = {},
                    .InterByteDelay = std::chrono::milliseconds(projector.InterByteDelay)};
  if (trial.VariablePosition > 0) {
    const VolumeFormat format = VolumeFormatOf(projector);
    trial.Level = LevelBytes(format, FirstTrialLevel(format));
  }
  return trial;
}

Bytes BytesIn(const SerialString& string) {
  return Bytes(string.Values.begin(),
               string.Values.begin() + static_cast<std::ptrdiff_t>(string.BytesInUse()));
}

Bytes BytesOnLine(const StringTrial& trial) {
  Bytes bytes;
  for (std::size_t i = 0; i < trial.String.BytesInUse(); ++i) {
    if (trial.Level && static_cast<int>(i) == trial.VariablePosition - 1) {
      bytes.insert(bytes.end(), trial.Level->begin(), trial.Level->end());
    } else {
      bytes.push_back(trial.String.Values[i]);
    }
  }
  return bytes;
}

}  // namespace qdm
