#include "command_line/arguments.h"
#include "command_line/commands.h"
#include "config/panel_types.h"

#include <CLI/CLI.hpp>

#include <string>

namespace qdm {
namespace {

constexpr const char* kAboutPorts =
    "Ports are COM1..COM16 or devices (/dev/ttyUSB0). On Linux the serial ports of the system, in their "
    "order,\n"
    "are COM1, COM2, ...; the variable QDM_PORTS names others: device paths separated by commas.\n\n";

ControllerTypeValue ControllerTypeOf(const std::string& text) {
  if (const PanelType* type = PanelTypeNamed(text)) return type->Code;
  throw CLI::ValidationError("--type", "\"" + text + "\" is none of " + CaptionsOfPanelTypes());
}

void AddFindCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "find", "Search the serial ports for panels",
      kAboutPorts + std::string("A line a port: port, panel with its firmware, line settings. Panels "
                                "that answered are restarted. The\nexit status is 1 when none was "
                                "found.\n\n"
                                "Examples:\n"
                                "  qdm find\n"
                                "  qdm find --type \"QDM 7\" --port COM3 --port /dev/ttyUSB1"));
  auto& options = Runs(command, chosen, ports.Find);
  command
      ->add_option_function<std::string>(
          "--type", [&options](const std::string& type) { options.ControllerType = ControllerTypeOf(type); },
          "what to look for: " + CaptionsOfPanelTypes(" or ") + "; any when left out")
      ->type_name("TYPE");
  command->add_option("--port", options.Ports, "search this port alone; may be repeated")
      ->allow_extra_args(false)
      ->type_name("PORT");
}

void AddDownloadCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "download", "Program a configuration into a panel",
      kAboutPorts + std::string("Checks the configuration, finds the panel, programs its memory in 64 "
                                "records and restarts it. Ctrl-C\nstops at any time and leaves the "
                                "panel running.\n\n"
                                "Examples:\n"
                                "  qdm download \"Room 101.BVC\"\n"
                                "  qdm download \"Room 101.BVC\" --port COM3"));
  auto& options = Runs(command, chosen, ports.Download);
  command->add_option("FILE.BVC", options.File, "the configuration")->required();
  command
      ->add_option("--port", options.Port,
                   "the panel's port; when left out, the one panel of the right type that is found")
      ->type_name("PORT");
}

void AddSimulateCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "simulate", "Be a panel, for practice and tests",
      "Prints the path of a pseudo-terminal and answers there like a panel, until it is interrupted.\n"
      "With --press a second path follows, of the panel's projector port: what the memory holds for these\n"
      "buttons is sent there at the projector's settings, once it is programmed and somebody has opened it.\n"
      "Faults: N says which one goes wrong (3 the third, %3 every third, left out all of them), REPLY is\n"
      "ident, ack or restart:\n"
      "  lose-REPLY[:N], wrong-REPLY[:N], noise-REPLY[:N], long-REPLY[:N], late-REPLY:N:MS,\n"
      "  drop:N[:BYTE], corrupt:N[:BYTE[:MASK]], die:N, restart:N\n\n"
      "Examples:\n"
      "  qdm simulate --type TL-VOX --settings 19200,n,8,2\n"
      "  qdm simulate --fault lose-ack:%3     # then, elsewhere: QDM_PORTS=/dev/pts/7 qdm download room.BVC");
  auto& options = Runs(command, chosen, ports.Simulate);
  command
      ->add_option_function<std::string>(
          "--type", [&options](const std::string& type) { options.ControllerType = ControllerTypeOf(type); },
          CaptionsOfPanelTypes(" or ").insert(PanelTypes.front().Caption.size(), " (when left out)"))
      ->type_name("TYPE");
  command->add_option("--firmware", options.Firmware, "its version; 1.3 when left out")
      ->type_name("MAJOR.MINOR");
  command->add_option("--settings", options.Settings, "where it listens; 9600,n,8,2 when left out")
      ->type_name("SPEED,PARITY,8,2");
  command->add_option("--memory", options.Memory, "keep its 512 bytes in this file across runs")
      ->type_name("FILE");
  command->add_flag("--pace", options.Pace, "bytes take the time that they take on a real line");
  command->add_option("--fault", options.Faults, "something that goes wrong; may be repeated")
      ->allow_extra_args(false)
      ->type_name("FAULT");
  command
      ->add_option("--press", options.Press, "press this button of the panel (\"Power on\"); may be repeated")
      ->allow_extra_args(false)
      ->type_name("SLOTNAME");
}

}  // namespace

void AddPanelCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  AddFindCommand(app, chosen, ports);
  AddDownloadCommand(app, chosen, ports);
  AddSimulateCommand(app, chosen, ports);
}

}  // namespace qdm
