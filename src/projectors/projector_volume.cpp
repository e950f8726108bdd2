#include "projectors/projector_volume.h"

#include <cstdint>

namespace qdm {

VolumeFormat VolumeFormatOf(const ProjectorDefinition& projector) {
  VolumeFormat format;
  format.MaximumLevel = projector.MaximumLevel;
  format.MinimumLevel = projector.MinimumLevel;
  format.VolumeStep = projector.LevelStep;
  format.FixedStartLevel = projector.FixedStartLevel;
  format.UsePowerDown = projector.UsePowerDown != kFlagClear;
  format.NumberOfBytes = projector.NumberOfBytes;
  if (projector.MessageFormat == 1) format.MessageFormat = LevelFormat::DecimalInAscii;
  if (projector.MessageFormat == 2) format.MessageFormat = LevelFormat::RawBytes;
  format.FirstByteIsHigh = projector.FirstByteIsHigh != kFlagClear;
  return format;
}

void StoreVolumeFormat(ProjectorDefinition& projector, const VolumeFormat& format) {
  projector.MaximumLevel = format.MaximumLevel;
  projector.MinimumLevel = format.MinimumLevel;
  projector.LevelStep = format.VolumeStep;
  projector.FixedStartLevel = format.FixedStartLevel;
  projector.UsePowerDown = FlagOf(format.UsePowerDown);
  projector.NumberOfBytes = format.NumberOfBytes;
  projector.MessageFormat = static_cast<std::int16_t>(format.MessageFormat);
  projector.FirstByteIsHigh = FlagOf(format.FirstByteIsHigh);
}

}  // namespace qdm
