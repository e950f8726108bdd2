// The volume words of a definition as settings of the volume format, and back. Reading never fails: a message
// format outside 0..2 reads as "HEX in ASCII", as it shows.
#pragma once

#include "projectors/projector_definition.h"
#include "serial_strings/volume_format.h"

namespace qdm {

VolumeFormat VolumeFormatOf(const ProjectorDefinition& projector);
void StoreVolumeFormat(ProjectorDefinition& projector, const VolumeFormat& format);

}  // namespace qdm
