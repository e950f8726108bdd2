#include "panels/identification.h"

#include <numeric>

namespace qdm {

constexpr std::array<LineSetting, kLineSettings> LineSettingsTable = {{
    {"9600,n,8,2", "Search 9K6,none"},
    {"9600,e,8,2", "Search 9K6,even"},
    {"9600,o,8,2", "Search 9K6,odd"},
    {"19200,n,8,2", "Search 19K2,none"},
    {"19200,e,8,2", "Search 19K2,even"},
    {"19200,o,8,2", "Search 19K2,odd"},
    {"38400,n,8,2", "Search 38K4,none"},
    {"38400,e,8,2", "Search 38K4,even"},
    {"38400,o,8,2", "Search 38K4,odd"},
    {"57600,n,8,2", "Search 57K6,none"},
    {"57600,e,8,2", "Search 57K6,even"},
    {"57600,o,8,2", "Search 57K6,odd"},
    {"115200,n,8,2", "Search 115K2,none"},
    {"115200,e,8,2", "Search 115K2,even"},
    {"115200,o,8,2", "Search 115K2,odd"},
}};

constexpr std::array<std::uint8_t, 8> SearchRequest = {'Q', 'D', 'M', 'S', 'E', 'T', 'U', 'P'};

namespace {

constexpr std::uint8_t kSumOfReply = 1;

}  // namespace

std::optional<Identification> ParseIdentReply(ByteView reply) {
  if (reply.size() != kIdentReplyBytes) return std::nullopt;
  const unsigned sum = std::accumulate(reply.begin(), reply.end(), 0U);
  if ((sum & 0xFF) != kSumOfReply) return std::nullopt;
  return Identification{.Model = reply[0], .Major = reply[1], .Minor = reply[2]};
}

std::array<std::uint8_t, kIdentReplyBytes> IdentReplyOf(const Identification& panel) {
  const int sum = panel.Model + panel.Major + panel.Minor;
  return {panel.Model, panel.Major, panel.Minor, static_cast<std::uint8_t>(kSumOfReply - sum)};
}

std::string IdentificationText(const Identification& panel, NamedModels named) {
  const std::string version = std::to_string(panel.Major) + "." + std::to_string(panel.Minor);
  const PanelType* type = panel.Type();
  const bool hasName = type != nullptr && (named == NamedModels::All || type->Kind == DeviceKind::WallPanel);
  return hasName ? std::string(type->ShortName) + " " + version : version;
}

}  // namespace qdm
