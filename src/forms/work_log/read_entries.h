// The work log's entries for a window: the log may lie on a slow disk, or another program may be writing it.
#pragma once

#include "forms/shared/busy_work.h"
#include "work_log/work_log.h"

#include <QCoreApplication>

#include <cstddef>
#include <limits>
#include <vector>

namespace qdm {

// FileError when it cannot be read.
inline std::vector<WorkLogEntry> ReadEntries(WorkLog& log, QWidget* parent,
                                             std::size_t atMost = std::numeric_limits<std::size_t>::max()) {
  const QString slow = QCoreApplication::translate("qdm::WorkLog", "Still reading the work log.");
  return DoBusy(parent, slow, [&log, atMost] { return log.Entries(atMost); });
}

}  // namespace qdm
