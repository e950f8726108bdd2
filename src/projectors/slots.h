// The 25 strings of a projector definition by their places: what each is called, whether the panel sends it
// or compares it with what it receives, whose reply it is and which flag brings it into use. Whoever needs to
// know something about a slot asks this table. A place is an index into `Available` and `Strings`; a received
// string's flag stands in `RequiresReply`, at ReceivedIndex.
#pragma once

#include "base/words.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qdm {

// Stored on disk and known to the panel: never renumber.
enum Slot : std::size_t {
  kSerialEnableSlot = 0,
  kPowerOnSlot = 1,
  kData1Slot = 2,
  kData2Slot = 3,
  kVideoSlot = 4,
  kBlankSlot = 5,
  kVolumeUpSlot = 6,
  kVolumeDownSlot = 7,
  kPowerOffSlot = 8,
  kSerialDisableSlot = 9,
  kSerialEnableReplySlot = 10,
  kPowerOnReplySlot = 11,
  kData1ReplySlot = 12,
  kData2ReplySlot = 13,
  kVideoReplySlot = 14,
  kBlankReplySlot = 15,
  kVolumeUpReplySlot = 16,
  kVolumeDownReplySlot = 17,
  kPowerOffReplySlot = 18,
  kSerialDisableReplySlot = 19,
  kExternalOnSlot = 20,
  kExternalOffSlot = 21,
  kBlankOffReplySlot = 22,
  kVideo2Slot = 23,
  kBlankOffSlot = 24
};
inline constexpr std::size_t kCommandSlots = 25;
inline constexpr std::size_t kFirstReceivedSlot = kSerialEnableReplySlot;
inline constexpr std::size_t kReceivedSlots = 13;

enum class SlotRole {
  Command,  // the panel sends it
  Reply,    // expected after a command
  External  // switches the panel whenever it is received
};

struct SlotFacts {
  Slot Place;
  std::string_view Name;
  SlotRole Role;
  std::optional<Slot> ShownWith = {};  // the slot whose `Available` shows a command; nothing: always shown
  std::optional<Slot> ReplyTo = {};    // a reply's command
  bool Varies = false;                 // the panel puts the volume level in for its VAR byte
};

namespace slot_table {

constexpr SlotFacts Always(Slot place, std::string_view name) { return {place, name, SlotRole::Command}; }
constexpr SlotFacts With(Slot flag, Slot place, std::string_view name) {
  return {place, name, SlotRole::Command, flag};
}
constexpr SlotFacts Volume(Slot place, std::string_view name) {
  return {place, name, SlotRole::Command, kVolumeUpSlot, {}, true};
}
constexpr SlotFacts ReplyTo(Slot command, Slot place, std::string_view name) {
  return {place, name, SlotRole::Reply, {}, command};
}
constexpr SlotFacts External(Slot place, std::string_view name) { return {place, name, SlotRole::External}; }

}  // namespace slot_table

inline constexpr std::array<SlotFacts, kCommandSlots> kSlots = {
    slot_table::With(kSerialEnableSlot, kSerialEnableSlot, Marked("Serial enable")),
    slot_table::Always(kPowerOnSlot, Marked("Power on")),
    slot_table::Always(kData1Slot, Marked("Data 1")),
    slot_table::With(kData2Slot, kData2Slot, Marked("Data 2")),
    slot_table::Always(kVideoSlot, Marked("Video")),
    slot_table::With(kBlankSlot, kBlankSlot, Marked("Blank")),
    slot_table::Volume(kVolumeUpSlot, Marked("Volume up")),
    slot_table::Volume(kVolumeDownSlot, Marked("Volume down")),
    slot_table::Always(kPowerOffSlot, Marked("Power off")),
    slot_table::With(kSerialEnableSlot, kSerialDisableSlot, Marked("Serial disable")),
    slot_table::ReplyTo(kSerialEnableSlot, kSerialEnableReplySlot, Marked("Serial enable reply")),
    slot_table::ReplyTo(kPowerOnSlot, kPowerOnReplySlot, Marked("Power on reply")),
    slot_table::ReplyTo(kData1Slot, kData1ReplySlot, Marked("Data 1 reply")),
    slot_table::ReplyTo(kData2Slot, kData2ReplySlot, Marked("Data 2 reply")),
    slot_table::ReplyTo(kVideoSlot, kVideoReplySlot, Marked("Video reply")),
    slot_table::ReplyTo(kBlankSlot, kBlankReplySlot, Marked("Blank reply")),
    slot_table::ReplyTo(kVolumeUpSlot, kVolumeUpReplySlot, Marked("Volume up reply")),
    slot_table::ReplyTo(kVolumeDownSlot, kVolumeDownReplySlot, Marked("Volume down reply")),
    slot_table::ReplyTo(kPowerOffSlot, kPowerOffReplySlot, Marked("Power off reply")),
    slot_table::ReplyTo(kSerialDisableSlot, kSerialDisableReplySlot, Marked("Serial disable reply")),
    slot_table::External(kExternalOnSlot, Marked("External on")),
    slot_table::External(kExternalOffSlot, Marked("External off")),
    slot_table::ReplyTo(kBlankOffSlot, kBlankOffReplySlot, Marked("Blank Off reply")),
    slot_table::With(kVideo2Slot, kVideo2Slot, Marked("Video 2")),
    slot_table::With(kBlankOffSlot, kBlankOffSlot, Marked("Blank Off")),
};

// Display names of the slots 0..24.
inline constexpr std::array<std::string_view, kCommandSlots> CommandSlotNames = [] {
  std::array<std::string_view, kCommandSlots> names;
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) names[slot] = kSlots[slot].Name;
  return names;
}();

// True for the received strings, which carry an ignore mask in the panel.
constexpr bool SlotHasIgnoreMask(std::size_t slot) { return kSlots.at(slot).Role != SlotRole::Command; }

// Whether an IGN byte may be chosen for the string or pasted into it. The established rule refuses it in the
// ten first commands alone, so "Video 2" and "Blank Off" take it too, where it has no meaning.
constexpr bool SlotTakesIgnore(std::size_t slot) { return slot >= kFirstReceivedSlot; }

// The place of a received string's flag in `RequiresReply`, and back.
constexpr std::size_t ReceivedIndex(std::size_t slot) { return slot - kFirstReceivedSlot; }
constexpr std::size_t ReceivedSlot(std::size_t index) { return index + kFirstReceivedSlot; }

// The slot of a command's expected reply; nothing for "Video 2" and for received strings.
constexpr std::optional<Slot> ReplySlotOf(std::size_t command) {
  for (const SlotFacts& facts : kSlots) {
    if (facts.ReplyTo == static_cast<Slot>(command)) return facts.Place;
  }
  return std::nullopt;
}

// What an element of `Available` and `Strings`, and what one of `RequiresReply` is about: a reply is told by
// its command, which the setup dialog shows beside the box.
constexpr std::string_view NameOfSlot(std::size_t slot) { return kSlots.at(slot).Name; }
constexpr std::string_view NameOfReplysCommand(std::size_t index) {
  const SlotFacts& slot = kSlots.at(ReceivedSlot(index));
  return NameOfSlot(slot.ReplyTo.value_or(slot.Place));
}

// Every row stands at its place, and the received strings in one run.
static_assert([] {
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    const bool received = slot >= kFirstReceivedSlot && slot < kFirstReceivedSlot + kReceivedSlots;
    if (kSlots[slot].Place != slot || SlotHasIgnoreMask(slot) != received) return false;
  }
  return true;
}());

}  // namespace qdm
