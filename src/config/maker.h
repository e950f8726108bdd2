// Who makes the panels and where they are reached: the one place for it.
#pragma once

#include <string_view>

namespace qdm {

inline constexpr std::string_view kMakerName = "Brevan";
inline constexpr std::string_view kMakerWebAddress = "www.brevan.example";
inline constexpr std::string_view kMakerSupportAddress = "support@brevan.example";

}  // namespace qdm
