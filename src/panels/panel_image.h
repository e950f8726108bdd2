// The 512 bytes of memory that a panel is programmed with, made from a configuration. Two layouts for bytes
// 0..25, one table of command strings from byte 26 on. The image is either whole or absent: a value that does
// not fit is an ImageError that names the field or slot and the value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace qdm {

struct PanelConfiguration;

inline constexpr std::size_t kPanelImageSize = 512;
using PanelImage = std::array<std::uint8_t, kPanelImageSize>;

// `what()` is one line: field or slot, value, why, and what to do where something can be done.
class ImageError : public std::runtime_error {
 public:
  enum class Kind { Overflow, Subscript };

  ImageError(Kind kind, std::string field, int value, const std::string& why);

  Kind Failure() const { return kind_; }
  const std::string& Field() const { return field_; }  // "RoomTimeout", "Projector.Strings[10].Count"
  int Value() const { return value_; }

 private:
  Kind kind_;
  std::string field_;
  int value_;
};

// Where the table of strings begins.
inline constexpr std::size_t kStringTableStart = 26;

// The codes that the panels use for the buttons of the lock sequence; 0 for an index outside 0..4.
std::uint8_t QdmInputCode(int index);
std::uint8_t TlvoxInputCode(int index);

PanelImage BuildQdmImage(const PanelConfiguration& configuration);
PanelImage BuildTlvoxImage(const PanelConfiguration& configuration);  // tlvox_eeprom.cpp
// The layout that the configuration's controller type asks for.
PanelImage BuildPanelImage(const PanelConfiguration& configuration);

}  // namespace qdm
