// What the rows of the two layouts are made with: values that must fit, and the fields that both layouts
// have.
#pragma once

#include "panels/image_layout.h"
#include "panels/panel_image.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace qdm {

[[noreturn]] void ThrowOverflow(std::string_view field, int stored, int result);

// The byte `result` that `field` becomes; `stored` is what the record holds. ImageError outside 0..255.
std::uint8_t FittingByte(std::string_view field, int stored, int result);

// An intermediate result: the panel's makers reckon in 16 bits. ImageError outside them.
int FittingWord(std::string_view field, int stored, int result);

constexpr int Bit(std::int16_t flag, int value) { return flag != 0 ? value : 0; }

// A word of the configuration or of its projector.
template <auto Member>
std::int16_t ValueOf(const PanelConfiguration& c) {
  if constexpr (std::is_invocable_v<decltype(Member), const PanelConfiguration&>) {
    return c.*Member;
  } else {
    return c.Projector.*Member;
  }
}

// A word that is stored as it is, in one byte or in two.
template <auto Member>
constexpr ImageField PlainByte(std::string_view name, std::string_view meaning) {
  return {1, name, meaning, name, [](const ImageField& field, const PanelConfiguration& c) -> std::uint16_t {
            return FittingByte(field.Name, ValueOf<Member>(c), ValueOf<Member>(c));
          }};
}
template <auto Member>
constexpr ImageField PlainWord(std::string_view name, std::string_view meaning) {
  return {2, name, meaning, name, [](const ImageField&, const PanelConfiguration& c) {
            return static_cast<std::uint16_t>(ValueOf<Member>(c));
          }};
}

// `lockFlags` below bit 4, `NoButtonPowerDown` above.
std::uint8_t LockByte(int lockFlags, const PanelConfiguration& configuration);

// The panel's codes for the buttons of the lock sequence, by the button's place; others have the code 0.
using InputCodes = std::array<std::uint8_t, 5>;
// Buttons `First` and `First` + 1 of the sequence in one byte, the first in the low half.
template <const InputCodes& Codes, std::size_t First>
std::uint16_t ButtonPair(const ImageField&, const PanelConfiguration& c) {
  const auto codeOf = [&c](std::size_t button) {
    const std::int16_t place = c.LockSequence[button];
    return place >= 0 && place < 5 ? Codes[static_cast<std::size_t>(place)] : 0;
  };
  return static_cast<std::uint16_t>(codeOf(First + 1) << 4 | codeOf(First));
}
template <const InputCodes& Codes>
inline constexpr ImageField kFirstButtons = {1, "LockSequence[0]",
                                             "lock sequence: first button + second x 16",
                                             "LockSequence[0], LockSequence[1]", ButtonPair<Codes, 0>};
template <const InputCodes& Codes>
inline constexpr ImageField kLastButtons = {1, "LockSequence[2]", "lock sequence: third button + fourth x 16",
                                            "LockSequence[2], LockSequence[3]", ButtonPair<Codes, 2>};

inline constexpr ImageField kLockAfterProjectorOff =
    PlainByte<&PanelConfiguration::LockAfterProjectorOffPeriod>("LockAfterProjectorOffPeriod",
                                                                "lock timeout after projector off");

std::uint16_t EncodeProjectorLine(const ImageField& field, const PanelConfiguration& configuration);
inline constexpr ImageField kProjectorLineField = {
    1, kProjectorLine, "projector's line: speed + parity x 16 (+ 64 two stop bits)",
    "Projector.Baudrate, Projector.Parity, Projector.Stopbits", EncodeProjectorLine};
inline constexpr ImageField kInterCommandDelay = PlainByte<&ProjectorDefinition::InterCommandDelay>(
    "Projector.InterCommandDelay", "delay between commands");
inline constexpr ImageField kInterByteDelay =
    PlainByte<&ProjectorDefinition::InterByteDelay>("Projector.InterByteDelay", "delay between bytes in ms");
inline constexpr ImageField kWarmUpTime =
    PlainByte<&ProjectorDefinition::WarmUpTime>("Projector.WarmUpTime", "warm-up time");
inline constexpr ImageField kCoolDownTime =
    PlainByte<&ProjectorDefinition::CoolDownTime>("Projector.CoolDownTime", "cool-down time");

// No two rows share a byte or a name, and none reaches into the table of strings.
constexpr bool StandApart(ImageLayout rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::size_t end = rows[i].Offset + rows[i].Field.Width;
    if (end > kStringTableStart) return false;
    for (const ImageRow& later : rows.subspan(i + 1)) {
      if (later.Offset < end && rows[i].Offset < later.Offset + later.Field.Width) return false;
      if (later.Field.Name == rows[i].Field.Name) return false;
    }
  }
  return true;
}

}  // namespace qdm
