#include "work_log/work_log_entry.h"

#include "base/words.h"

#include <array>
#include <cstddef>
#include <cstdlib>

namespace qdm {

std::string_view OutcomeText(DownloadOutcome outcome) {
  constexpr std::array<std::string_view, 5> kTexts = {Marked("done"), Marked("not restarted"),
                                                      Marked("failed"), Marked("not connected"),
                                                      Marked("interrupted")};
  const auto index = static_cast<std::size_t>(outcome);
  return index < kTexts.size() ? kTexts[index] : Marked("unknown");
}

// Without snprintf: long logs have many of them.
std::string Iso8601(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::string text = "yyyy-mm-ddThh:mm:ssZ";
  const auto put = [&text](std::size_t at, std::size_t digits, std::int64_t number) {
    for (std::size_t i = digits; i-- > 0; number /= 10) text[at + i] = static_cast<char>('0' + number % 10);
  };
  put(0, 4, std::abs(static_cast<int>(date.year())));
  put(5, 2, static_cast<unsigned>(date.month()));
  put(8, 2, static_cast<unsigned>(date.day()));
  put(11, 2, clock.hours().count());
  put(14, 2, clock.minutes().count());
  put(17, 2, clock.seconds().count());
  return text;
}

}  // namespace qdm
