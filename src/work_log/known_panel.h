// Asking a panel first where it last answered: one exchange of half a second instead of a search of up to
// eight. What does not answer there, or answers as another type, is left to the search in its own order.
#pragma once

#include "panels/panel_search.h"
#include "work_log/work_log.h"
#include "work_log/work_log_entry.h"

#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct KnownPanel {
  std::string Port;      // as the log has it: "COM3"
  std::string Settings;  // one of LineSettingsTable
  std::chrono::sys_seconds Answered{};
};

// 3 for "COM3"; 0 for a port that was named by its device.
int PortNumberOf(std::string_view port);

// The newest of them, read without waiting long for another program. None where the log cannot be read: the
// search goes on without it, and the trouble is told when the download is written.
std::vector<WorkLogEntry> RecentEntries(WorkLog& log);

// Where a panel of that type was last, of the ports for which `present` holds: this room's own panel before
// others. `entries` come newest first; nothing when none fits.
std::optional<KnownPanel> KnownPanelFor(std::span<const WorkLogEntry> entries, int controllerType,
                                        const std::string& room,
                                        const std::function<bool(const std::string& port)>& present);

// One exchange at those settings. True when a panel of that type answered: `slot` is then as a search leaves
// it, its port closed, and the panel waits to be programmed (ProgramAnsweringPanel) or restarted. Otherwise
// the search has to follow, which restarts whatever answered.
bool AskKnownPanel(SearchSlot& slot, std::string_view settings, int controllerType, Waiting& time);

}  // namespace qdm
