#include "projectors/manual_definition.h"

#include "line/speeds_and_parities.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace qdm {
namespace {

const LineSpeed* SpeedFor(int bitsPerSecond) {
  const auto speed = std::find_if(LineSpeeds.begin(), LineSpeeds.end(),
                                  [&](const LineSpeed& row) { return row.BitsPerSecond == bitsPerSecond; });
  return speed == LineSpeeds.end() ? nullptr : &*speed;
}

void TakeLine(ProjectorDefinition& projector, const ManualLineSettings& line) {
  if (line.Speed) {
    if (const LineSpeed* speed = SpeedFor(*line.Speed)) projector.Baudrate = speed->Code;
  }
  if (line.Parity) {
    const auto parity = std::find_if(LineParities.begin(), LineParities.end(),
                                     [&](const ParityChoice& row) { return row.Parity == *line.Parity; });
    projector.Parity = parity->Code;
  }
  if (line.StopBits) projector.Stopbits = static_cast<std::int16_t>(*line.StopBits == 2 ? 1 : 0);
}

void TakeString(ProjectorDefinition& projector, const ManualString& taken) {
  projector.Strings.at(taken.Slot) = taken.String;
  if (SlotHasIgnoreMask(taken.Slot)) {
    projector.RequiresReply.at(ReceivedIndex(taken.Slot)) = kFlagSet;
  } else {
    projector.Available.at(kSlots.at(taken.Slot).ShownWith.value_or(kSlots.at(taken.Slot).Place)) = kFlagSet;
  }
}

// Notes that have no room for it stay as they are.
void AddNote(ProjectorDefinition& projector) {
  std::u16string notes(projector.Notes.Unpadded());
  if (notes.find(kFromManualNote) != std::u16string::npos) return;
  if (!notes.empty()) notes += u"\r\n";
  notes.append(kFromManualNote);
  if (notes.size() <= projector.Notes.kLength) projector.Notes.Assign(notes);
}

}  // namespace

ManualChoices ChoicesOf(const ManualReading& reading, bool doubtful) {
  ManualChoices choices{reading.Line, {}};
  for (const ManualSlot& slot : reading.Slots) {
    if (slot.Sure || doubtful)
      choices.Strings.push_back({static_cast<std::size_t>(slot.Slot), reading.Commands[slot.Choice].String});
  }
  for (const ManualReply& reply : reading.Replies) {
    if (reply.Sure || doubtful)
      choices.Strings.push_back({static_cast<std::size_t>(reply.Slot), reply.String});
  }
  return choices;
}

bool DefinitionHasSpeed(int bitsPerSecond) { return SpeedFor(bitsPerSecond) != nullptr; }

ProjectorDefinition WithManual(ProjectorDefinition projector, const ManualChoices& choices) {
  TakeLine(projector, choices.Line);
  for (const ManualString& taken : choices.Strings) TakeString(projector, taken);
  AddNote(projector);
  return projector;
}

}  // namespace qdm
