#include "command_line/arguments.h"
#include "command_line/commands.h"

#include <CLI/CLI.hpp>

namespace qdm {
namespace {

void AddProjectorChoice(CLI::App* command, ProjectorChoice& choice) {
  command
      ->add_option("FILE", choice.File, "a configuration (.BVC), definitions (.BVD, .DEF) or either as .json")
      ->required();
  command->add_option("--manufacturer", choice.Manufacturer, "whose projector, where FILE has several")
      ->type_name("NAME");
  command->add_option("--model", choice.Model, "which projector, where FILE has several")->type_name("NAME");
}

void AddManualCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(
      app, "manual", "Read a page of a projector's manual",
      "The text as it was copied from the manual. Printed are the line settings and, for each string of a\n"
      "definition, the best candidate on the page, whether it is sure, and what else it could be. The exit\n"
      "status is 1 when nothing was understood.\n\n"
      "Examples:\n"
      "  qdm manual page.txt\n"
      "  pdftotext -layout manual.pdf - | qdm manual - --json\n"
      "  qdm manual page.txt -o Visora.BVD --manufacturer Visora --model \"Grand 4\"");
  auto& options = Runs(command, chosen, Manual);
  command->add_option("PAGE.txt", options.Page, "the page's text; - is standard input")->required();
  command->add_flag("--json", options.Json, "JSON instead of a table");
  CLI::Option* manufacturer =
      command->add_option("--manufacturer", options.Manufacturer, "the definition's manufacturer")
          ->type_name("NAME");
  CLI::Option* model =
      command->add_option("--model", options.Model, "the definition's model")->type_name("NAME");
  CLI::Option* output =
      command->add_option("-o,--output", options.Output, "write a definition with what is sure (.BVD)")
          ->type_name("FILE.BVD")
          ->needs(manufacturer)
          ->needs(model);
  command->add_flag("--doubtful", options.Doubtful, "take what is not sure into the definition too")
      ->needs(output);
}

void AddStandInCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "projector", "Stand in for a projector on the panel's cable",
      "Listens at the projector's line settings and answers each command with its expected reply, until it "
      "is\n"
      "interrupted. Without --port it makes a pseudo-terminal and prints its path first. A line for each "
      "command:\n"
      "milliseconds since the start, milliseconds since the end of the command before (- for the first), the "
      "command's\n"
      "name (\"unknown\" for what is none), its bytes in hexadecimal. With --remarks standard error tells "
      "the "
      "level of\n"
      "a volume command, delays that were not kept, what unknown bytes are nearest to, and which commands "
      "are "
      "still\n"
      "missing.\n\n"
      "Examples:\n"
      "  qdm projector \"Room 101.BVC\" --port COM3\n"
      "  qdm projector Visora.BVD --delay 300 | tee heard.txt");
  auto& options = Runs(command, chosen, ports.Projector);
  AddProjectorChoice(command, options);
  command->add_option("--port", options.Port, "the port on the panel's cable")->type_name("PORT");
  command->add_option("--delay", options.Delay, "answer so many milliseconds late")
      ->check(CLI::Range(0, 60'000).description(""))
      ->type_name("MS");
  command->add_flag("--silent", options.Silent, "only listen");
  command->add_flag("--wrong", options.Wrong, "answer with a bit changed");
  command
      ->add_option(
          "--busy", options.Busy,
          "while warming up or cooling down, answer power commands with this; \"ignore\": not at all")
      ->type_name("TEXT");
  command->add_flag("--remarks", options.Remarks, "tell more on standard error");
}

void AddProbeCommand(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  CLI::App* command = AddCommand(
      app, "probe", "Find the line settings of a projector",
      "Sends a command at each of the 30 settings that a definition can have, the likely ones first, and "
      "waits\n"
      "500 ms each. A line a setting: settings, the bytes that came (- for none), and what they are: reply, "
      "echo,\n"
      "something or nothing. The exit status is 0 when a reply came. The command is really sent: a query "
      "that\n"
      "switches nothing is best.\n\n"
      "Examples:\n"
      "  qdm probe Visora.BVD --slot \"Power on\" --port COM3\n"
      "  qdm probe \"Room 101.BVC\" --send \"PWR?<CR>\"     # or \"0x02 0x50 0x03\"");
  auto& options = Runs(command, chosen, ports.Probe);
  AddProjectorChoice(command, options);
  CLI::Option* slot =
      command->add_option("--slot", options.Slot, "send this command of the projector: \"Power on\"")
          ->type_name("SLOTNAME");
  CLI::Option* send = command->add_option("--send", options.Send, "send this text, read as pasted text is")
                          ->type_name("TEXT");
  slot->excludes(send);
  command->add_option("--port", options.Port, "ask at this port; every port that is there when left out")
      ->type_name("PORT");
}

}  // namespace

void AddProjectorCommands(CLI::App& app, CommandToRun& chosen, const PortCommands& ports) {
  AddManualCommand(app, chosen);
  AddStandInCommand(app, chosen, ports);
  AddProbeCommand(app, chosen, ports);
}

}  // namespace qdm
