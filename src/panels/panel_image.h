// The 512 bytes of memory that a panel is programmed with, made from a configuration. Two layouts for bytes
// 0..25 (image_layout.h), one table of command strings from byte 26 on. The image is either whole or absent:
// a value that does not fit is an ImageError that names the field or slot and the value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace qdm {

struct PanelConfiguration;

inline constexpr std::size_t kPanelImageSize = 512;
using PanelImage = std::array<std::uint8_t, kPanelImageSize>;

// `what()` is one line: field or slot, value, why, and what to do where something can be done.
class ImageError : public std::runtime_error {
 public:
  // `field`: "RoomTimeout", "Projector.Strings[10].Count (Serial enable reply)".
  ImageError(std::string_view field, int value, std::string_view why);
};

// Where the table of strings begins.
inline constexpr std::size_t kStringTableStart = 26;

// In the layout that the configuration's controller type asks for.
PanelImage BuildPanelImage(const PanelConfiguration& configuration);

}  // namespace qdm
