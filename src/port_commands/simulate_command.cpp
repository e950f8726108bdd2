#include "port_commands/port_commands.h"

#ifdef _WIN32

namespace qdm {

int Simulate(const SimulateOptions&, PortContext&) {
  throw CommandError(kRefused, "simulate", "this system has no pseudo-terminals");
}

}  // namespace qdm

#else

#include "base/file_access.h"
#include "command_line/record_files.h"
#include "port_commands/bench_projector.h"
#include "port_commands/stop_on_signals.h"
#include "serial_io/pseudo_device_opening.h"
#include "serial_io/pseudo_terminal_panel.h"
#include "serial_io/pseudo_terminal_port.h"
#include "simulation/panel_buttons.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
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

// The panel's projector port, a second device, and a finger on its buttons: they are pressed once for each
// programming, when somebody listens.
class ProjectorPort {
 public:
  ProjectorPort(std::vector<Slot> slots, int controllerType, PortContext& context)
      : slots_(std::move(slots)), controllerType_(controllerType), context_(context) {}

  const std::string& Device() const { return port_.Device(); }

  // To be called when something may have changed. When it wants to be called again, at the latest.
  std::optional<Microseconds> Advance(const SimulatedPanel& panel) {
    if (panel.Restarts() != restarts_ || !looked_) LookAt(panel);
    if (!buttons_ || !opening_.Happened()) return std::nullopt;
    // Whoever opens a port sets it up first.
    if (!pressAt_) pressAt_ = context_.Time.Now() + std::chrono::milliseconds(300);
    if (context_.Time.Now() < *pressAt_) return pressAt_;
    buttons_->Press(slots_, port_, context_.Time, context_.Stop.get_token());
    buttons_.reset();
    pressAt_.reset();
    return std::nullopt;
  }

 private:
  void LookAt(const SimulatedPanel& panel) {
    restarts_ = panel.Restarts();
    if (looked_ == panel.Memory()) return;
    looked_ = panel.Memory();
    buttons_ = PanelButtons::Of(*looked_, controllerType_);
    if (buttons_) port_.SetSettings(buttons_->LineSettings());
  }

  const std::vector<Slot> slots_;
  const int controllerType_;
  PortContext& context_;
  PseudoTerminalPort port_{kProgrammingSettings};
  DeviceOpening opening_{port_.Device()};
  int restarts_ = 0;
  std::optional<PanelImage> looked_;     // the memory that was pressed for, or that will be
  std::optional<PanelButtons> buttons_;  // still to be pressed
  std::optional<Microseconds> pressAt_;
};

std::vector<Slot> SlotsToPress(const std::vector<std::string>& names) {
  std::vector<Slot> slots;
  slots.reserve(names.size());
  for (const std::string& name : names) slots.push_back(CommandSlotNamed("--press", name));
  return slots;
}

}  // namespace

int Simulate(const SimulateOptions& options, PortContext& context) {
  const Identification identification = IdentificationFor(options);
  DemandLineSetting(options.Settings);
  const PanelFaults faults = FaultsFrom(options.Faults);
  const std::vector<Slot> slots = SlotsToPress(options.Press);
  MemoryFile memory(options.Memory);

  const StopOnSignals interruptible(context.Stop);
  SimulatedPanel panel({.Panel = identification, .Settings = options.Settings, .Faults = faults},
                       memory.Contents());
  const PseudoTerminalPanel served(panel, context.Time, options.Pace ? Pacing::TrueByteTime : Pacing::None);
  std::optional<ProjectorPort> projectorPort;
  if (!slots.empty()) projectorPort.emplace(slots, options.ControllerType, context);
  context.Out << served.Device() << std::endl;
  std::optional<Microseconds> next;
  if (projectorPort) {
    next = projectorPort->Advance(panel);  // sets the port up before its name is known
    context.Out << projectorPort->Device() << std::endl;
  }
  // Kept whenever it changed: by the time that a restart is acknowledged, everything before is on the disk.
  bool waited = false;
  while (!context.Stop.stop_requested()) {
    context.Time.Yield(next.value_or(context.Time.Now() + std::chrono::hours(1)));
    memory.Keep(panel.Memory());
    if (projectorPort) next = projectorPort->Advance(panel);
    if (panel.InSetUpMode() == waited) continue;
    waited = panel.InSetUpMode();
    context.Err << (waited ? "set-up mode: waits for a restart" : "restarted: works") << std::endl;
  }
  return kDone;
}

}  // namespace qdm

#endif
