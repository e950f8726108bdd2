#include "forms/manuals/slot_colours.h"

#include "projectors/slots.h"

namespace qdm {

QColor SlotColour(std::optional<std::size_t> slot, const QPalette& palette) {
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  if (!slot) return dark ? QColor(0x48, 0x48, 0x48) : QColor(0xE0, 0xE0, 0xE0);
  // Hues by the golden angle keep neighbours apart. A reply is a paler shade of its command.
  constexpr std::size_t kTurn = 137;
  constexpr std::size_t kDegrees = 360;
  const SlotFacts& facts = kSlots.at(*slot);
  const std::size_t place = facts.ReplyTo.value_or(facts.Place);
  const std::size_t order = place < kFirstReceivedSlot ? place : place - kFirstReceivedSlot;
  const auto hue = static_cast<int>((order * kTurn + 100) % kDegrees);
  const bool reply = facts.Role == SlotRole::Reply;
  return dark ? QColor::fromHsl(hue, reply ? 60 : 130, 62)
              : QColor::fromHsl(hue, reply ? 100 : 190, reply ? 225 : 212);
}

}  // namespace qdm
