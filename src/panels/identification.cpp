#include "panels/identification.h"

#include "base/words.h"

#include <cstddef>
#include <initializer_list>
#include <numeric>
#include <utility>

namespace qdm {

namespace {

// A short text that is put together while compiling.
class BuiltText {
 public:
  constexpr BuiltText(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) {
      for (const char c : piece) characters_[size_++] = c;
    }
  }
  constexpr std::string_view View() const { return {characters_.data(), size_}; }

 private:
  std::array<char, 24> characters_{};
  std::size_t size_ = 0;
};

constexpr const LineSpeed& SpeedAt(std::size_t index) { return LineSpeeds[index / LineParities.size()]; }
constexpr const ParityChoice& ParityAt(std::size_t index) {
  return LineParities[index % LineParities.size()];
}

constexpr BuiltText TextsOf(std::size_t index) {
  return {SpeedAt(index).Digits, ",", ParityAt(index).Letter, ",8,2"};
}

template <std::size_t... Index>
constexpr std::array<BuiltText, sizeof...(Index)> AllTexts(std::index_sequence<Index...>) {
  return {TextsOf(Index)...};
}
constexpr std::array kTexts = AllTexts(std::make_index_sequence<kLineSettings>());

template <std::size_t... Index>
constexpr std::array<LineSetting, sizeof...(Index)> ViewsOfTexts(std::index_sequence<Index...>) {
  return {LineSetting{kTexts[Index].View(), SpeedAt(Index), ParityAt(Index)}...};
}

}  // namespace

constexpr std::array<LineSetting, kLineSettings> LineSettingsTable =
    ViewsOfTexts(std::make_index_sequence<kLineSettings>());

std::string SearchText(const LineSetting& setting) {
  return Say("Search %1,%2", {std::string(setting.Speed.SearchText), Say(setting.Parity.SearchText)});
}

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
