#include "port_commands/download_log.h"

#include "command_line/held_signals.h"
#include "command_line/record_files.h"
#include "command_line/work_log_access.h"
#include "work_log/download_record.h"
#include "work_log/known_panel.h"

#include <cstddef>
#include <ostream>
#include <utility>

namespace qdm {
namespace {

// "ttyUSB0" for "COM3"; empty for a port that was named by its device.
std::string DeviceOf(const std::string& port, const SerialPorts& ports) {
  const int number = PortNumberOf(port);
  return number == 0 ? std::string() : ports.DeviceName(number);
}

}  // namespace

DownloadLog::DownloadLog(PortContext& context) : context_(context), log_(OpenWorkLog({}, context)) {}

std::optional<PanelSearch> DownloadLog::AskKnownPanel(const std::string& file, int controllerType,
                                                      const std::vector<std::string>& ports) {
  PanelSearch search = PortsToAsk(ports, context_);
  if (search.Slots.size() != 1) return std::nullopt;
  const std::optional<KnownPanel> known =
      KnownPanelFor(RecentEntries(log_), controllerType, RoomOfFile(PathOf(file)),
                    [&search](const std::string& port) { return port == search.Names.front(); });
  if (!known) return std::nullopt;
  ProgressLine progress(context_);
  progress.Show("Asking at " + known->Settings);
  if (!qdm::AskKnownPanel(search.Slots.front(), known->Settings, controllerType, context_.Time))
    return std::nullopt;
  // A panel that will not be programmed must not be left waiting.
  if (context_.Stop.stop_requested() || FirmwareGate(*search.Slots.front().Panel)) {
    RestartFoundPanels(search.Slots, context_.Time, {});
  }
  return search;
}

void DownloadLog::Record(const std::string& file, const PanelConfiguration& configuration,
                         const PanelImage& image, const PanelSearch& search, std::size_t slot,
                         const ProgrammingResult& result, std::chrono::system_clock::time_point began) {
  const HeldSignals uninterrupted;
  const std::string& port = search.Names[slot];
  TellWorkLog(qdm::Record(log_, configuration, image,
                          {.File = PathOf(file),
                           .Panel = *search.Slots[slot].Panel,
                           .Port = port,
                           .Device = DeviceOf(port, context_.Ports),
                           .Settings = std::string(search.Slots[slot].Settings()),
                           .Result = result,
                           .Interrupted = context_.Stop.stop_requested(),
                           .Began = began,
                           .Ended = std::chrono::system_clock::now()}),
              context_);
}

}  // namespace qdm
