// The bytes of a panel's memory before the table of strings, as rows: where a field stands, what it means,
// which fields of the configuration it is made from, and how. One table of rows for the QDM panels
// (qdm_eeprom.cpp), one for the amplifier (tlvox_eeprom.cpp). Building and explaining an image walk it, and
// whoever needs the place of a field takes it from there. Bytes that no row has stay FF.
#pragma once

#include "config/panel_configuration.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace qdm {

struct ImageField {
  // The value for its place; what the configuration's value cannot become is an ImageError.
  using Encoder = std::uint16_t (*)(const ImageField& field, const PanelConfiguration& configuration);

  std::size_t Width;         // in bytes: 1, or 2 with the low byte first
  std::string_view Name;     // of the field that an error blames, unless `Encode` knows better
  std::string_view Meaning;  // for people
  // Every field of the configuration that has a say, separated by ", ".
  std::string_view Sources;
  Encoder Encode;
};

struct ImageRow {
  std::size_t Offset;
  ImageField Field;
};

// In the order in which the values are made: of several that fail, the first is reported.
using ImageLayout = std::span<const ImageRow>;

extern const ImageLayout kQdmLayout;
extern const ImageLayout kTlvoxLayout;

// The order of the string slots in the table behind the rows.
extern const std::array<std::uint8_t, kCommandSlots> CommandSlotOrder;

// The layout of a controller type; QDM for a type that no panel has.
ImageLayout LayoutOf(int controllerType);

// Where the field of that name begins, which the layout has to have.
std::size_t OffsetOf(ImageLayout layout, std::string_view name);

// The projector's line, at which the panel listens too: bits 0..3 speed, 4..5 parity, 6 two stop bits.
inline constexpr std::string_view kProjectorLine = "ProjectorLine";

}  // namespace qdm
