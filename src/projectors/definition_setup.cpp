#include "projectors/definition_setup.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <utility>

namespace qdm {
namespace {

constexpr std::size_t kSerialEnable = 0;
constexpr std::size_t kVolumeUp = 6;
constexpr std::size_t kVolumeDown = 7;
constexpr std::size_t kSerialDisable = 9;
constexpr std::size_t kCommandsWithReply = 10;  // slots 0..9, replied to in slot + 10
constexpr std::size_t kExternalOn = 20;
constexpr std::size_t kExternalOff = 21;
constexpr std::size_t kBlankOffReply = 22;
constexpr std::size_t kBlankOff = 24;

// The slot whose flag shows this one; nothing for the commands that every definition has.
std::optional<std::size_t> ShownWith(std::size_t command) {
  if (command == kSerialDisable) return kSerialEnable;
  if (command == kVolumeDown) return kVolumeUp;
  if (std::find(kOptionalSlots.begin(), kOptionalSlots.end(), command) == kOptionalSlots.end()) return {};
  return command;
}

bool IsRequired(const ProjectorDefinition& projector, std::size_t receivedSlot) {
  return projector.RequiresReply.at(receivedSlot - kFirstReceivedSlot) != kFlagClear;
}

Message Refusal(std::string reason) {
  return {"Cannot save as " + std::move(reason) + "!", "Sorry!", MessageIcon::Exclamation};
}

}  // namespace

std::optional<std::size_t> ReplySlotOf(std::size_t slot) {
  if (slot < kCommandsWithReply) return slot + kFirstReceivedSlot;
  if (slot == kBlankOff) return kBlankOffReply;
  return std::nullopt;
}

SlotSet ShownSlots(const ProjectorDefinition& projector) {
  SlotSet shown{};
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    if (SlotHasIgnoreMask(slot)) continue;
    const auto with = ShownWith(slot);
    shown[slot] = !with || projector.Available[*with] != kFlagClear;
    if (const auto reply = ReplySlotOf(slot)) shown[*reply] = shown[slot] && IsRequired(projector, *reply);
  }
  for (const std::size_t slot : {kExternalOn, kExternalOff}) shown[slot] = IsRequired(projector, slot);
  return shown;
}

std::optional<Message> CheckDefinition(const ProjectorDefinition& projector) {
  const SlotSet shown = ShownSlots(projector);
  if (SerialBytesUsed(projector, shown) > kSerialByteBudget)
    return Refusal("there are too many serial bytes in this configuration");
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    if (shown[slot] && projector.Strings[slot].BytesInUse() == 0)
      return Refusal(std::string(CommandSlotNames[slot]) + " string has zero byte length");
  }
  if (projector.Manufacturer.Trimmed().empty()) return Refusal("no manufacturer name has been defined");
  if (projector.Model.Trimmed().empty()) return Refusal("no model name has been defined");
  if (projector.CoolDownTime == 0) return Refusal("cool down time has not been defined");
  if (projector.WarmUpTime == 0) return Refusal("Warm Up Time has not been defined");
  return std::nullopt;
}

void CompleteDefinition(ProjectorDefinition& projector) {
  CleanNames(projector);
  const SlotSet shown = ShownSlots(projector);
  std::transform(shown.begin(), shown.end(), projector.Available.begin(), FlagOf);
  projector.VolumeBytePosition = VariableBytePositionOf(projector.Strings[kVolumeUp]);
}

std::optional<Message> OverwriteQuestion(const ProjectorLibrary& library,
                                         const ProjectorDefinition& projector) {
  if (!library.FindProjector(projector)) return std::nullopt;
  return Message{"Projector " + projector.Manufacturer.TrimmedUtf8() + " / " + projector.Model.TrimmedUtf8() +
                     " already exists do you wish to over-write it?",
                 "Overwrite", MessageIcon::Question};
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
  projector.RequiresReply.at(*replySlot - kFirstReceivedSlot) = kFlagSet;
}

}  // namespace qdm
