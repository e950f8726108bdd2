// Any settings of a volume format, any level.
#include "fuzz/fuzzing.h"
#include "serial_strings/volume_format.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace qdm {
namespace {

void Look(FuzzedDataProvider input) {
  const auto word = [&input] { return input.ConsumeIntegral<std::int16_t>(); };
  VolumeFormat format;
  format.MaximumLevel = word();
  format.MinimumLevel = word();
  format.VolumeStep = word();
  format.FixedStartLevel = word();
  format.UsePowerDown = input.ConsumeBool();
  format.NumberOfBytes = input.ConsumeIntegralInRange<std::int16_t>(-1, 6);
  format.MessageFormat = static_cast<LevelFormat>(input.ConsumeIntegralInRange<std::int16_t>(0, 2));
  format.FirstByteIsHigh = input.ConsumeBool();
  const std::int16_t level = word();
  // A negative step is no error, as ever; it walks the other way.
  const bool inOrder = VolumeFormatError(format).empty() && format.VolumeStep > 0;
  const auto bytes = LevelBytes(format, level);
  Demand(bytes.size() <= 6, "a level has at most 6 bytes");
  static_cast<void>(PreviewLevel(format, level));
  if (!inOrder || level < format.MinimumLevel || level > format.MaximumLevel) return;
  Demand(bytes.size() == static_cast<std::size_t>(format.NumberOfBytes),
         "a level in order has its number of bytes");
  Demand(LevelUp(format, level) >= level && LevelUp(format, level) <= format.MaximumLevel,
         "up stays in the range");
  Demand(LevelDown(format, level) <= level && LevelDown(format, level) >= format.MinimumLevel,
         "down stays in the range");
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look(FuzzedDataProvider(data, size));
  return 0;
}
