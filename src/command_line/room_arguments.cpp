#include "command_line/arguments.h"
#include "command_line/commands.h"

#include <CLI/CLI.hpp>

#include <string>

namespace qdm {
namespace {

void AddLogDataOption(CLI::App* command, std::string& data) {
  command->add_option("--data", data, "the folder of the work log; the user's own when left out")
      ->type_name("DIR");
}

void AddLogCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(
      app, "log", "Show what was sent to which panel and when",
      "A line for each download, the newest first, separated by tabs: time (UTC), configuration, panel and\n"
      "firmware, port, settings, records, retries, outcome, the first digits of the image's SHA-256.\n\n"
      "Examples:\n"
      "  qdm log\n"
      "  qdm log \"Room 101.BVC\" --json");
  auto& options = Runs(command, chosen, Log);
  command->add_option("FILE.BVC", options.Files, "the downloads of these configurations alone");
  command->add_flag("--json", options.Json, "everything that is known of each, as JSON");
  AddLogDataOption(command, options.Data);
}

void AddStatusCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(
      app, "status", "Tell how far each room is",
      "A line for each file, separated by tabs: file, check (\"ok\" or what the editor would say), when it "
      "was\n"
      "last sent, state: current, changed (since then), never, unfinished (the last attempt failed). The\n"
      "exit status is 1 when not every file is ok and current.\n\n"
      "Example:\n"
      "  qdm status rooms/*.BVC");
  auto& options = Runs(command, chosen, Status);
  command->add_option("FILE.BVC", options.Files, "the configurations")->required();
  AddLogDataOption(command, options.Data);
}

void AddDescribeCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command =
      AddCommand(app, "describe", "Say in words what a configuration does",
                 "A sentence a line. What makes no sense together comes last, each line beginning with "
                 "\"Note: \".\n\n"
                 "Example:\n"
                 "  qdm describe \"Room 101.BVC\"");
  auto& options = Runs(command, chosen, Describe);
  command->add_option("FILE.BVC", options.File, "the configuration")->required();
}

void AddSheetCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "sheet", "Write the commissioning sheet of a room",
      "One or two pages to hand over: panel, projector, options in words, lock code, strings and "
      "what the\nwork log knows. The editor beside this program writes it; no display is needed.\n\n"
      "Examples:\n"
      "  qdm sheet \"Room 101.BVC\" -o room-101.pdf\n"
      "  qdm sheet \"Room 101.BVC\" -o room-101.html");
  auto& options = Runs(command, chosen, ports.Sheet);
  command->add_option("FILE.BVC", options.File, "the configuration")->required();
  command->add_option("-o,--output", options.Output, "the file to write (.pdf or .html)")
      ->required()
      ->type_name("SHEET.pdf");
}

}  // namespace

void AddRoomCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  AddLogCommand(app, chosen);
  AddStatusCommand(app, chosen);
  AddDescribeCommand(app, chosen);
  AddSheetCommand(app, chosen, ports);
}

}  // namespace qdm
