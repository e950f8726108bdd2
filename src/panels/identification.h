// How a panel is asked who it is, and at which line settings.
// Request: the 8 letters QDMSETUP. Reply, exactly 4 bytes:
//   model code | firmware major | firmware minor | check byte: the sum of all four is 1 modulo 256
#pragma once

#include "base/record_codec.h"
#include "config/panel_types.h"
#include "line/speeds_and_parities.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qdm {

struct LineSetting {
  std::string_view Settings;
  const LineSpeed& Speed;
  const ParityChoice& Parity;
};
inline constexpr std::size_t kLineSettings = LineSpeeds.size() * LineParities.size();
// In the order in which they are tried, each speed with each parity, from "9600,n,8,2" on.
extern const std::array<LineSetting, kLineSettings> LineSettingsTable;
// "Search 9K6,none"
std::string SearchText(const LineSetting& setting);

extern const std::array<std::uint8_t, 8> SearchRequest;

// Panels take programs at these settings, whatever they were found at.
inline constexpr std::string_view kProgrammingSettings = "9600,n,8,2";

struct Identification {
  std::uint8_t Model = 0;  // PanelType::ModelCode, or that of a model which is not known
  std::uint8_t Major = 0;
  std::uint8_t Minor = 0;

  const PanelType* Type() const { return PanelTypeOfModel(Model); }
  bool IsOfType(int controllerType) const { return Model == controllerType + 1; }

  friend bool operator==(const Identification&, const Identification&) = default;
};

inline constexpr std::size_t kIdentReplyBytes = 4;

// Nothing unless there are exactly 4 bytes and their sum is right.
std::optional<Identification> ParseIdentReply(ByteView reply);
std::array<std::uint8_t, kIdentReplyBytes> IdentReplyOf(const Identification& panel);

// "QDM7 1.3", "TL-VOX 1.2". A model that has no name, or none here, is told by its version alone.
enum class NamedModels { All, WallPanels };
std::string IdentificationText(const Identification& panel, NamedModels named = NamedModels::All);

}  // namespace qdm
