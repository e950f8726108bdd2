#include "work_log/work_log_entry.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace qdm {

std::string_view OutcomeText(DownloadOutcome outcome) {
  constexpr std::array<std::string_view, 5> kTexts = {"done", "not restarted", "failed", "not connected",
                                                      "interrupted"};
  const auto index = static_cast<std::size_t>(outcome);
  return index < kTexts.size() ? kTexts[index] : "unknown";
}

std::string Iso8601(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text.data();
}

}  // namespace qdm
