// What find and download share: ports as the command line names them, the search, its lines, its progress.
#pragma once

#include "panels/panel_search.h"
#include "port_commands/port_commands.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace qdm {

// One line of the terminal that is written again and again and is gone at the end; nothing at all where the
// error stream is no terminal.
class ProgressLine {
 public:
  explicit ProgressLine(PortContext& context) : context_(context) {}
  ~ProgressLine() { Show(""); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // ASCII, shorter than a terminal is wide.
  void Show(const std::string& text);

 private:
  PortContext& context_;
  std::string shown_;
};

struct PanelSearch {
  // What a port is listed by: "COM3", or the device's path where that was given.
  std::vector<std::string> Names;
  std::vector<SearchSlot> Slots;

  // "COM3<tab>QDM7 1.3<tab>19200,e,8,2"; "COM3<tab>No QDM found"; "COM3<tab>No Port".
  std::string Line(std::size_t slot) const;
  // "COM3 (ttyUSB0): In use by minicom (4711)"; empty for a port that opened.
  std::string WhyClosed(std::size_t slot) const;
};

// A closed port, as the command line names it: "COM3", or a device's path. A name that can be no port is a
// CommandError.
std::unique_ptr<SerialPort> PortNamed(const std::string& name, PortContext& context);
// The same, open at those settings; a CommandError that says why when it does not open.
std::unique_ptr<SerialPort> OpenPortNamed(const std::string& name, const std::string& settings,
                                          PortContext& context);
// The ports that are there among COM1..COM16, or those named, there or not. Nothing has been asked yet.
PanelSearch PortsToAsk(const std::vector<std::string>& ports, PortContext& context);

// Searches the ports that are there among COM1..COM16, or those named, there or not, and restarts what
// answered. `context.Stop` ends it early. Restarts that failed are told on `told`, which they were and why
// ports did not open on the error stream. A name that can be no port is a CommandError.
PanelSearch SearchPanels(const std::vector<std::string>& ports, std::optional<int> controllerType,
                         PortContext& context, std::ostream& told);

}  // namespace qdm
