// The sheet that is handed over with a room: panel, projector, options in words, lock code, strings, what the
// log knows, lines for signatures. As HTML of the simple kind that both browsers and Qt's documents lay out,
// on one or two A4 pages.
#pragma once

#include "config/panel_configuration.h"
#include "config/panel_types.h"
#include "work_log/work_log_entry.h"

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace qdm {

// Texts are plain UTF-8.
struct SheetFacts {
  PanelConfiguration Configuration;
  std::string Room;
  std::string Date;                                // when the sheet was made
  std::string By;                                  // who commissions; empty leaves a line to write on
  std::vector<WorkLogEntry> Downloads;             // of this room, newest first
  std::array<std::string, kLockButtons> Pictures;  // sources of the buttons' pictures; empty for none
  std::function<std::string(std::chrono::sys_seconds)> TimeText = Iso8601;
};

std::string CommissioningSheetHtml(const SheetFacts& facts);

}  // namespace qdm
