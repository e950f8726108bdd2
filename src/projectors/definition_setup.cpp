#include "projectors/definition_setup.h"

#include "base/words.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <utility>

namespace qdm {
namespace {

bool IsFlagged(const ProjectorDefinition& projector, Slot slot) {
  return projector.Available[slot] != kFlagClear;
}

bool IsRequired(const ProjectorDefinition& projector, Slot receivedSlot) {
  return projector.RequiresReply.at(ReceivedIndex(receivedSlot)) != kFlagClear;
}

bool IsShown(const ProjectorDefinition& projector, const SlotFacts& slot) {
  if (slot.Role == SlotRole::Command) return !slot.ShownWith || IsFlagged(projector, *slot.ShownWith);
  return IsRequired(projector, slot.Place) && (!slot.ReplyTo || IsShown(projector, kSlots[*slot.ReplyTo]));
}

Message Refusal(std::string text) { return {std::move(text), Say("Sorry!"), MessageIcon::Exclamation}; }

}  // namespace

SlotSet ShownSlots(const ProjectorDefinition& projector) {
  SlotSet shown{};
  for (const SlotFacts& slot : kSlots) shown[slot.Place] = IsShown(projector, slot);
  return shown;
}

std::optional<std::size_t> RefusedSlot(const ProjectorDefinition& projector) {
  const SlotSet shown = ShownSlots(projector);
  if (SerialBytesUsed(projector, shown) > kSerialByteBudget) return std::nullopt;
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    if (shown[slot] && projector.Strings[slot].BytesInUse() == 0) return slot;
  }
  return std::nullopt;
}

std::optional<Message> CheckDefinition(const ProjectorDefinition& projector) {
  if (SerialBytesUsed(projector, ShownSlots(projector)) > kSerialByteBudget)
    return Refusal(Say("Cannot save as there are too many serial bytes in this configuration!"));
  if (const auto slot = RefusedSlot(projector))
    return Refusal(Say("Cannot save as %1 string has zero byte length!", {Say(CommandSlotNames[*slot])}));
  if (projector.Manufacturer.Trimmed().empty())
    return Refusal(Say("Cannot save as no manufacturer name has been defined!"));
  if (projector.Model.Trimmed().empty())
    return Refusal(Say("Cannot save as no model name has been defined!"));
  if (projector.CoolDownTime == 0) return Refusal(Say("Cannot save as cool down time has not been defined!"));
  if (projector.WarmUpTime == 0) return Refusal(Say("Cannot save as Warm Up Time has not been defined!"));
  return std::nullopt;
}

void CompleteDefinition(ProjectorDefinition& projector) {
  CleanNames(projector);
  const SlotSet shown = ShownSlots(projector);
  std::transform(shown.begin(), shown.end(), projector.Available.begin(), FlagOf);
  projector.VolumeBytePosition = VariableBytePositionOf(projector.Strings[kVolumeUpSlot]);
}

std::optional<Message> OverwriteQuestion(const ProjectorLibrary& library,
                                         const ProjectorDefinition& projector) {
  if (!library.FindProjector(projector)) return std::nullopt;
  return Message{Say("Projector %1 / %2 already exists do you wish to over-write it?",
                     {projector.Manufacturer.TrimmedUtf8(), projector.Model.TrimmedUtf8()}),
                 Say("Overwrite"), MessageIcon::Question};
}

void StoreDefinition(ProjectorLibrary& library, const ProjectorDefinition& projector) {
  if (const auto index = library.FindProjector(projector)) {
    library.Replace(*index, projector);
  } else {
    library.Append(projector);
  }
}

void TakeAsExpectedReply(ProjectorDefinition& projector, std::size_t slot, const SerialString& reply) {
  const auto replySlot = ReplySlotOf(slot);
  assert(replySlot);
  projector.Strings.at(*replySlot) = reply;
  projector.RequiresReply.at(ReceivedIndex(*replySlot)) = kFlagSet;
}

}  // namespace qdm
