// What `qdm download` has to do with the work log: it asks a panel first where the log knows it, and writes
// down what it did.
#pragma once

#include "panels/panel_image.h"
#include "panels/programming.h"
#include "port_commands/panel_ports.h"
#include "port_commands/port_commands.h"
#include "work_log/work_log.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct PanelConfiguration;

class DownloadLog {
 public:
  explicit DownloadLog(PortContext& context);

  // The panel that waits to be programmed where the log knows it. Nothing when there is more than one port to
  // choose from (a panel on another one may be the right one as well), or nobody answered there.
  std::optional<PanelSearch> AskKnownPanel(const std::string& file, int controllerType,
                                           const std::vector<std::string>& ports);

  void Record(const std::string& file, const PanelConfiguration& configuration, const PanelImage& image,
              const PanelSearch& search, std::size_t slot, const ProgrammingResult& result,
              std::chrono::system_clock::time_point began);

 private:
  PortContext& context_;
  WorkLog log_;
};

}  // namespace qdm
