// What `qdm download` has to do with the work log: it asks a panel first where the log knows it, and writes
// down what it did.
#pragma once

#include "command_line/command_context.h"
#include "command_line/panel_ports.h"
#include "panels/panel_image.h"
#include "panels/programming.h"
#include "work_log/work_log.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct PanelConfiguration;

// `--data DIR`, else QDM_DATA, else the user's own folder.
WorkLog OpenWorkLog(const std::string& data, const CommandContext& context);
// What `log` had to say of its file, on the error stream.
void TellWorkLog(const std::vector<Message>& messages, CommandContext& context);

class DownloadLog {
 public:
  explicit DownloadLog(CommandContext& context);

  // The panel that waits to be programmed where the log knows it. Nothing when there is more than one port to
  // choose from (a panel on another one may be the right one as well), or nobody answered there.
  std::optional<PanelSearch> AskKnownPanel(const std::string& file, int controllerType,
                                           const std::vector<std::string>& ports);

  void Record(const std::string& file, const PanelConfiguration& configuration, const PanelImage& image,
              const PanelSearch& search, std::size_t slot, const ProgrammingResult& result,
              std::chrono::system_clock::time_point began);

 private:
  CommandContext& context_;
  WorkLog log_;
};

}  // namespace qdm
