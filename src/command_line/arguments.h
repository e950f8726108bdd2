// What the command line says of each command of `qdm`: its arguments, its help, and which function of
// commands.h runs it. One function for each group of commands, in the order in which the help lists them.
#pragma once

#include "command_line/commands.h"

#include <CLI/App.hpp>

#include <functional>
#include <memory>
#include <string>

namespace qdm {

// The command that the command line named, with its options; empty until one is named.
using CommandToRun = std::function<int(CommandContext&)>;

inline CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& description,
                            const std::string& more) {
  CLI::App* command = parent.add_subcommand(name, description);
  command->footer(more);
  command->group("Commands");
  return command;
}

// `run` is what is chosen when the command line names `command`. The options that it then gets are the
// answer, and live as long as the command: its arguments are bound to them.
template <class Options>
Options& Runs(CLI::App* command, CommandToRun& chosen, int (*run)(const Options&, CommandContext&)) {
  const auto options = std::make_shared<Options>();
  command->callback([&chosen, run, options] {
    chosen = [run, options](CommandContext& context) { return run(*options, context); };
  });
  return *options;
}

// What needs a port is run as `ports` says, which must outlive the command.
template <class Options>
Options& Runs(CLI::App* command, CommandToRun& chosen, const std::function<int(const Options&)>& run) {
  const auto options = std::make_shared<Options>();
  command->callback(
      [&chosen, &run, options] { chosen = [&run, options](CommandContext&) { return run(*options); }; });
  return *options;
}

// export, import, check, compare, image
void AddFileCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports);
// projectors list, add, ...
void AddProjectorsCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports);
// find, download, simulate
void AddPanelCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports);
// log, status, describe, sheet
void AddRoomCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports);
// manual, projector, probe
void AddProjectorCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports);

}  // namespace qdm
