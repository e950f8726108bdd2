#include "command_line/commands.h"

#ifdef _WIN32

namespace qdm {

int Simulate(const SimulateOptions&, CommandContext&) {
  throw CommandError(kRefused, "simulate", "this system has no pseudo-terminals");
}

}  // namespace qdm

#else

#include "base/file_access.h"
#include "command_line/record_files.h"
#include "command_line/signals.h"
#include "serial_io/pseudo_terminal_panel.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace qdm {
namespace {

[[noreturn]] void Misused(const std::string& option, const std::string& why) {
  throw CommandError(kUnusable, option, why);
}

std::uint8_t VersionNumber(std::string_view digits, const std::string& whole) {
  std::uint8_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) {
    Misused("--firmware", "\"" + whole + "\" is not a version like 1.3");
  }
  return number;
}

Identification IdentificationFor(const SimulateOptions& options) {
  const std::string_view version = options.Firmware;
  const std::size_t dot = std::min(version.find('.'), version.size());
  return {.Model = PanelTypeOf(options.ControllerType)->ModelCode(),
          .Major = VersionNumber(version.substr(0, dot), options.Firmware),
          .Minor = VersionNumber(version.substr(std::min(dot + 1, version.size())), options.Firmware)};
}

void DemandLineSetting(const std::string& settings) {
  std::string known;
  for (const LineSetting& setting : LineSettingsTable) {
    if (setting.Settings == settings) return;
    known.append(known.empty() ? "" : " ").append(setting.Settings);
  }
  Misused("--settings", "\"" + settings + "\" is none of " + known);
}

PanelFaults FaultsFrom(const std::vector<std::string>& texts) {
  PanelFaults faults;
  for (const std::string& text : texts) {
    try {
      faults.push_back(ParsePanelFault(text));
    } catch (const std::invalid_argument& error) {
      Misused("--fault", error.what());
    }
  }
  return faults;
}

// The panel's memory on disk: what it was when the panel was switched off last time, blank at first.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& name) : name_(name) {
    kept_.fill(0xFF);
    if (name_.empty()) return;
    if (!std::filesystem::exists(PathOf(name_))) {
      WriteBinaryFile(name_, kept_);
      return;
    }
    const Bytes stored = ReadWholeFile(PathOf(name_));
    if (stored.size() != kept_.size()) {
      throw CommandError(kUnusable, name_,
                         "a panel's memory has " + std::to_string(kept_.size()) + " bytes, this file has " +
                             std::to_string(stored.size()));
    }
    std::copy(stored.begin(), stored.end(), kept_.begin());
  }

  const PanelImage& Contents() const { return kept_; }
  void Keep(const PanelImage& memory) {
    if (memory == kept_) return;
    kept_ = memory;
    if (!name_.empty()) WriteBinaryFile(name_, kept_);
  }

 private:
  std::string name_;
  PanelImage kept_;
};

}  // namespace

int Simulate(const SimulateOptions& options, CommandContext& context) {
  const Identification identification = IdentificationFor(options);
  DemandLineSetting(options.Settings);
  const PanelFaults faults = FaultsFrom(options.Faults);
  MemoryFile memory(options.Memory);

  const StopOnSignals interruptible(context.Stop);
  SimulatedPanel panel({.Panel = identification, .Settings = options.Settings, .Faults = faults},
                       memory.Contents());
  const PseudoTerminalPanel served(panel, context.Time, options.Pace ? Pacing::TrueByteTime : Pacing::None);
  context.Out << served.Device() << std::endl;
  // Kept whenever it changed: by the time that a restart is acknowledged, everything before is on the disk.
  bool waited = false;
  while (!context.Stop.stop_requested()) {
    context.Time.Yield(context.Time.Now() + std::chrono::hours(1));
    memory.Keep(panel.Memory());
    if (panel.InSetUpMode() == waited) continue;
    waited = panel.InSetUpMode();
    context.Err << (waited ? "set-up mode: waits for a restart" : "restarted: works") << std::endl;
  }
  return kDone;
}

}  // namespace qdm

#endif
