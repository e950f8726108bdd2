#include "projectors/manual_definition.h"

#include "projectors/definition_setup.h"

#include <algorithm>
#include <array>

namespace qdm {
namespace {

// In the order of the definition's `Baudrate`.
constexpr std::array kSpeeds = {9600, 19200, 38400, 57600, 115200};

void TakeLine(ProjectorDefinition& projector, const ManualLineSettings& line) {
  if (line.Speed) {
    const auto speed = std::find(kSpeeds.begin(), kSpeeds.end(), *line.Speed);
    if (speed != kSpeeds.end()) projector.Baudrate = static_cast<std::int16_t>(speed - kSpeeds.begin());
  }
  if (line.Parity) {
    projector.Parity = *line.Parity == LineParity::None ? 0 : *line.Parity == LineParity::Even ? 1 : 2;
  }
  if (line.StopBits) projector.Stopbits = static_cast<std::int16_t>(*line.StopBits == 2 ? 1 : 0);
}

}  // namespace

void TakeFromManual(ProjectorDefinition& projector, const ManualReading& reading, bool doubtful) {
  TakeLine(projector, reading.Line);
  for (const ManualSlot& found : reading.Slots) {
    if (!found.Sure && !doubtful) continue;
    const auto slot = static_cast<std::size_t>(found.Slot);
    projector.Strings[slot] = reading.Commands[found.Choice].String;
    projector.Available[slot] = kFlagSet;
  }
  for (const ManualReply& reply : reading.Replies) {
    if (!reply.Sure && !doubtful) continue;
    const auto slot = static_cast<std::size_t>(reply.Slot);
    projector.Strings[slot] = reply.String;
    projector.RequiresReply[slot - kFirstReceivedSlot] = kFlagSet;
  }
  AddFromManualNote(projector);
  CompleteDefinition(projector);
}

void AddFromManualNote(ProjectorDefinition& projector) {
  std::u16string notes(projector.Notes.Unpadded());
  if (notes.find(kFromManualNote) != std::u16string::npos) return;
  if (!notes.empty()) notes += u"\r\n";
  projector.Notes.Assign(notes.append(kFromManualNote));
}

}  // namespace qdm
