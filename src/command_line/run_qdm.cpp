#include "command_line/run_qdm.h"

#include "base/file_access.h"
#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "config/panel_configuration.h"
#include "config/version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>

namespace qdm {
namespace {

// What the command line asks for; commands capture their options by reference, so that this must outlive
// them.
struct Request {
  ExportOptions Export;
  ImportOptions Import;
  CheckOptions Check;
  CompareOptions Compare;
  ImageOptions Image;
  LibraryOptions List;
  AddOptions Add;
  ExtractOptions Extract;
  RemoveOptions Remove;
  MergeOptions Merge;
  FindOptions Find;
  DownloadOptions Download;
  LogOptions Log;
  StatusOptions Status;
  DescribeOptions Describe;
  SheetOptions Sheet;
  SimulateOptions Simulate;
  ManualOptions Manual;
  StandInOptions Projector;
  ProbeOptions Probe;

  std::function<int(CommandContext&)> Command;
};

CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& description,
                     const std::string& more) {
  CLI::App* command = parent.add_subcommand(name, description);
  command->footer(more);
  command->group("Commands");
  return command;
}

// `run` is called when the command line names the command.
template <class Options>
void Runs(CLI::App* command, Request& request, int (*run)(const Options&, CommandContext&),
          const Options& options) {
  command->callback([&request, run, &options] {
    request.Command = [run, &options](CommandContext& context) { return run(options, context); };
  });
}

ControllerTypeValue ControllerTypeOf(const std::string& text) {
  if (const PanelType* type = PanelTypeNamed(text)) return type->Code;
  throw CLI::ValidationError("--type", "\"" + text + "\" is none of " + CaptionsOfPanelTypes());
}

void AddTextCommands(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(app, "export", "Write a configuration or projector definitions as JSON text",
                                 "Every field of the file becomes a key, so that the text can be edited, "
                                 "compared and kept under version\n"
                                 "control; \"qdm import\" makes the same file from it, byte for byte.\n\n"
                                 "Examples:\n"
                                 "  qdm export \"Room 101.BVC\"\n"
                                 "  qdm export \"Room 101.BVC\" -o room-101.json\n"
                                 "  qdm export Projectors.DEF -o library.json");
  command->add_option("FILE", request.Export.File, "a configuration (.BVC) or definitions (.BVD, .DEF)")
      ->required();
  command->add_option("-o,--output", request.Export.Output, "the text file; standard output when left out")
      ->type_name("OUT.json");
  Runs(command, request, Export, request.Export);

  command =
      AddCommand(app, "import", "Make a configuration or projector definitions from JSON text",
                 "Keys that are left out have the value of a new record. The rules of \"qdm check\" are not\n"
                 "applied. What no record can hold is refused, and nothing is written.\n\n"
                 "Examples:\n"
                 "  qdm import room-101.json -o \"Room 101.BVC\"\n"
                 "  jq '.configuration.RoomTimeout = 30' room.json | qdm import - -o room.BVC");
  command->add_option("IN.json", request.Import.Json, "the text; - is standard input")->required();
  command
      ->add_option("-o,--output", request.Import.Output,
                   "the file to write: .BVC for a configuration, .BVD or .DEF for definitions")
      ->required()
      ->type_name("FILE");
  Runs(command, request, Import, request.Import);
}

void AddConfigurationCommands(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(app, "check", "Tell whether configurations may be saved and downloaded",
                                 "Prints \"ok\", or what the editor would say; the exit status is 1 then. "
                                 "Of several files, a line each\nwith the file's name; one that cannot be "
                                 "read is told, and the exit status is 2.\n\n"
                                 "Examples:\n"
                                 "  qdm check \"Room 101.BVC\"\n"
                                 "  qdm check *.BVC");
  command->add_option("FILE.BVC", request.Check.Files, "the configurations")->required();
  Runs(command, request, Check, request.Check);

  command = AddCommand(
      app, "compare", "Show the fields in which two files differ",
      "One line a field: \"path: value in A -> value in B\". Definitions are paired by manufacturer "
      "and\nmodel. Exit status: 0 when nothing differs, 1 when something does.\n\n"
      "Examples:\n"
      "  qdm compare \"Room 101.BVC\" \"Room 102.BVC\"\n"
      "  qdm compare Visora.BVD Projectors.DEF\n"
      "  git show HEAD:room.json | qdm compare - room.BVC");
  command
      ->add_option("A", request.Compare.First,
                   "a .BVC, .BVD, .DEF or .json file; - is JSON on standard input")
      ->required();
  command->add_option("B", request.Compare.Second, "another one of the same kind")->required();
  Runs(command, request, Compare, request.Compare);

  command =
      AddCommand(app, "image", "Show or save the memory that a panel would be programmed with",
                 "Without an option: the 512 bytes as a hexadecimal dump. The rules of \"qdm check\" are not "
                 "applied;\na value that the memory has no room for is named, and the exit status is 1.\n\n"
                 "Examples:\n"
                 "  qdm image \"Room 101.BVC\" --explain\n"
                 "  qdm image \"Room 101.BVC\" -o room-101.bin");
  command->add_option("FILE.BVC", request.Image.File, "the configuration")->required();
  CLI::Option* output =
      command->add_option("-o,--output", request.Image.Output, "write the 512 bytes to a file")
          ->type_name("IMAGE.bin");
  CLI::Option* records = command->add_flag_callback(
      "--records", [&request] { request.Image.Form = ImageForm::Records; },
      "the 64 program records as they go over the wire");
  CLI::Option* explain = command->add_flag_callback(
      "--explain", [&request] { request.Image.Form = ImageForm::Explanation; },
      "a table: offset, bytes, what they mean, from which fields");
  records->excludes(explain)->excludes(output);
  explain->excludes(output);
  Runs(command, request, Image, request.Image);
}

void AddDataOption(CLI::App* command, LibraryOptions& options) {
  command->add_option("--data", options.Data, "the folder of Projectors.DEF; the editor's own when left out")
      ->type_name("DIR");
}

void AddListCommand(CLI::App& projectors, Request& request) {
  CLI::App* command =
      AddCommand(projectors, "list", "List the library",
                 "A line each, separated by tabs: manufacturer, model, bytes of serial strings of 460.\n\n"
                 "Example:\n"
                 "  qdm projectors list | sort");
  AddDataOption(command, request.List);
  Runs(command, request, ListProjectors, request.List);
}

void AddAddCommand(CLI::App& projectors, Request& request) {
  CLI::App* command = AddCommand(
      projectors, "add", "Add the definitions of a file to the library",
      "A definition whose names the library has, but with other contents, is a conflict: without\n"
      "--on-conflict it is reported and not imported, and the exit status is 1; all others are. With it:\n"
      "  keep      the library's definition stays, the file's is not imported\n"
      "  replace   the file's takes the place of the library's\n"
      "  rename    the file's is added as \"Model (2)\", the library's stays\n\n"
      "Examples:\n"
      "  qdm projectors add Visora.BVD\n"
      "  qdm projectors add Visora.BVD --on-conflict rename");
  command->add_option("FILE.BVD", request.Add.File, "the definitions")->required();
  command
      ->add_option_function<std::string>(
          "--on-conflict",
          [&request](const std::string& answer) {
            request.Add.Conflict = answer == "keep"      ? OnConflict::Keep
                                   : answer == "replace" ? OnConflict::Replace
                                                         : OnConflict::Rename;
          },
          "what becomes of a conflict")
      ->transform(CLI::IsMember({"keep", "replace", "rename"}).description(""))
      ->type_name("keep|replace|rename");
  AddDataOption(command, request.Add);
  Runs(command, request, AddProjectors, request.Add);
}

void AddExtractCommand(CLI::App& projectors, Request& request) {
  CLI::App* command = AddCommand(
      projectors, "extract", "Copy definitions from the library into a file",
      "Names in either case. Over a longer old file, its later definitions stay in place, as with the\n"
      "editor's EXPORT.\n\n"
      "Examples:\n"
      "  qdm projectors extract VISORA -o Visora.BVD\n"
      "  qdm projectors extract visora compact -o Compact.BVD");
  command->add_option("MANUFACTURER", request.Extract.Manufacturer, "the manufacturer")->required();
  command->add_option("MODEL", request.Extract.Model, "the model; all of the manufacturer's when left out");
  command->add_option("-o,--output", request.Extract.Output, "the file to write (.BVD)")
      ->required()
      ->type_name("FILE.BVD");
  AddDataOption(command, request.Extract);
  Runs(command, request, ExtractProjectors, request.Extract);
}

void AddRemoveCommand(CLI::App& projectors, Request& request) {
  CLI::App* command = AddCommand(projectors, "remove", "Delete a definition from the library",
                                 "The library before that stays as Projectors.BAK.\n\n"
                                 "Example:\n"
                                 "  qdm projectors remove VISORA Compact");
  command->add_option("MANUFACTURER", request.Remove.Manufacturer, "the manufacturer")->required();
  command->add_option("MODEL", request.Remove.Model, "the model")->required();
  AddDataOption(command, request.Remove);
  Runs(command, request, RemoveProjector, request.Remove);
}

void AddMergeCommand(CLI::App& projectors, Request& request) {
  CLI::App* command = AddCommand(
      projectors, "merge", "Merge two libraries that grew out of one",
      "By manufacturer and model: what either side added, deleted or changed is taken. What both sides\n"
      "changed differently is told, stays as it is in OURS, and the exit status is 1. All are libraries or\n"
      "exported definitions, or all their JSON text, whatever their names end in; a BASE that is absent or\n"
      "empty is an empty library. OUT has the order of OURS, with the additions of THEIRS behind it.\n\n"
      "As the merge driver of git, after \"Projectors.DEF merge=qdm\" in .gitattributes:\n"
      "  git config merge.qdm.driver \"qdm projectors merge %O %A %B -o %A\"\n"
      "And to read differences, after \"Projectors.DEF diff=qdm\" there:\n"
      "  git config diff.qdm.textconv \"qdm export\"");
  command->add_option("BASE", request.Merge.Base, "what both began with")->required();
  command->add_option("OURS", request.Merge.Ours, "one side")->required();
  command->add_option("THEIRS", request.Merge.Theirs, "the other side")->required();
  command->add_option("-o,--output", request.Merge.Output, "the file to write; it may be one of the three")
      ->required()
      ->type_name("OUT");
  Runs(command, request, MergeProjectors, request.Merge);
}

void AddProjectorsCommands(CLI::App& app, Request& request) {
  CLI::App* projectors =
      AddCommand(app, "projectors", "Look at the projector library and change it",
                 "The library is the editor's; --data or the variable QDM_DATA names the folder of another.\n"
                 "Others may change it at the same time: what they save is kept.\n\n"
                 "Examples:\n"
                 "  qdm projectors list\n"
                 "  qdm projectors add Visora.BVD --on-conflict keep\n"
                 "  qdm projectors extract VISORA -o Visora.BVD\n"
                 "  qdm projectors remove VISORA \"Grand 4\"");
  projectors->require_subcommand(1);
  AddListCommand(*projectors, request);
  AddAddCommand(*projectors, request);
  AddExtractCommand(*projectors, request);
  AddRemoveCommand(*projectors, request);
  AddMergeCommand(*projectors, request);
}

constexpr const char* kAboutPorts =
    "Ports are COM1..COM16 or devices (/dev/ttyUSB0). On Linux the serial ports of the system, in their "
    "order,\n"
    "are COM1, COM2, ...; the variable QDM_PORTS names others: device paths separated by commas.\n\n";

void AddPanelCommands(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(
      app, "find", "Search the serial ports for panels",
      kAboutPorts + std::string("A line a port: port, panel with its firmware, line settings. Panels "
                                "that answered are restarted. The\nexit status is 1 when none was "
                                "found.\n\n"
                                "Examples:\n"
                                "  qdm find\n"
                                "  qdm find --type \"QDM 7\" --port COM3 --port /dev/ttyUSB1"));
  command
      ->add_option_function<std::string>(
          "--type",
          [&request](const std::string& type) { request.Find.ControllerType = ControllerTypeOf(type); },
          "what to look for: " + CaptionsOfPanelTypes(" or ") + "; any when left out")
      ->type_name("TYPE");
  command->add_option("--port", request.Find.Ports, "search this port alone; may be repeated")
      ->allow_extra_args(false)
      ->type_name("PORT");
  Runs(command, request, Find, request.Find);

  command = AddCommand(
      app, "download", "Program a configuration into a panel",
      kAboutPorts + std::string("Checks the configuration, finds the panel, programs its memory in 64 "
                                "records and restarts it. Ctrl-C\nstops at any time and leaves the "
                                "panel running.\n\n"
                                "Examples:\n"
                                "  qdm download \"Room 101.BVC\"\n"
                                "  qdm download \"Room 101.BVC\" --port COM3"));
  command->add_option("FILE.BVC", request.Download.File, "the configuration")->required();
  command
      ->add_option("--port", request.Download.Port,
                   "the panel's port; when left out, the one panel of the right type that is found")
      ->type_name("PORT");
  Runs(command, request, Download, request.Download);
}

void AddLogDataOption(CLI::App* command, std::string& data) {
  command->add_option("--data", data, "the folder of the work log; the user's own when left out")
      ->type_name("DIR");
}

void AddWorkLogCommands(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(
      app, "log", "Show what was sent to which panel and when",
      "A line for each download, the newest first, separated by tabs: time (UTC), configuration, panel and\n"
      "firmware, port, settings, records, retries, outcome, the first digits of the image's SHA-256.\n\n"
      "Examples:\n"
      "  qdm log\n"
      "  qdm log \"Room 101.BVC\" --json");
  command->add_option("FILE.BVC", request.Log.Files, "the downloads of these configurations alone");
  command->add_flag("--json", request.Log.Json, "everything that is known of each, as JSON");
  AddLogDataOption(command, request.Log.Data);
  Runs(command, request, Log, request.Log);

  command = AddCommand(
      app, "status", "Tell how far each room is",
      "A line for each file, separated by tabs: file, check (\"ok\" or what the editor would say), when it "
      "was\n"
      "last sent, state: current, changed (since then), never, unfinished (the last attempt failed). The\n"
      "exit status is 1 when not every file is ok and current.\n\n"
      "Example:\n"
      "  qdm status rooms/*.BVC");
  command->add_option("FILE.BVC", request.Status.Files, "the configurations")->required();
  AddLogDataOption(command, request.Status.Data);
  Runs(command, request, Status, request.Status);

  command = AddCommand(app, "describe", "Say in words what a configuration does",
                       "A sentence a line. What makes no sense together comes last, each line beginning with "
                       "\"Note: \".\n\n"
                       "Example:\n"
                       "  qdm describe \"Room 101.BVC\"");
  command->add_option("FILE.BVC", request.Describe.File, "the configuration")->required();
  Runs(command, request, Describe, request.Describe);

  command = AddCommand(
      app, "sheet", "Write the commissioning sheet of a room",
      "One or two pages to hand over: panel, projector, options in words, lock code, strings and "
      "what the\nwork log knows. The editor beside this program writes it; no display is needed.\n\n"
      "Examples:\n"
      "  qdm sheet \"Room 101.BVC\" -o room-101.pdf\n"
      "  qdm sheet \"Room 101.BVC\" -o room-101.html");
  command->add_option("FILE.BVC", request.Sheet.File, "the configuration")->required();
  command->add_option("-o,--output", request.Sheet.Output, "the file to write (.pdf or .html)")
      ->required()
      ->type_name("SHEET.pdf");
  Runs(command, request, Sheet, request.Sheet);
}

void AddSimulateCommand(CLI::App& app, Request& request) {
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
  command
      ->add_option_function<std::string>(
          "--type",
          [&request](const std::string& type) { request.Simulate.ControllerType = ControllerTypeOf(type); },
          CaptionsOfPanelTypes(" or ").insert(PanelTypes.front().Caption.size(), " (when left out)"))
      ->type_name("TYPE");
  command->add_option("--firmware", request.Simulate.Firmware, "its version; 1.3 when left out")
      ->type_name("MAJOR.MINOR");
  command->add_option("--settings", request.Simulate.Settings, "where it listens; 9600,n,8,2 when left out")
      ->type_name("SPEED,PARITY,8,2");
  command->add_option("--memory", request.Simulate.Memory, "keep its 512 bytes in this file across runs")
      ->type_name("FILE");
  command->add_flag("--pace", request.Simulate.Pace, "bytes take the time that they take on a real line");
  command->add_option("--fault", request.Simulate.Faults, "something that goes wrong; may be repeated")
      ->allow_extra_args(false)
      ->type_name("FAULT");
  command
      ->add_option("--press", request.Simulate.Press,
                   "press this button of the panel (\"Power on\"); may be repeated")
      ->allow_extra_args(false)
      ->type_name("SLOTNAME");
  Runs(command, request, Simulate, request.Simulate);
}

void AddManualCommand(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(
      app, "manual", "Read a page of a projector's manual",
      "The text as it was copied from the manual. Printed are the line settings and, for each string of a\n"
      "definition, the best candidate on the page, whether it is sure, and what else it could be. The exit\n"
      "status is 1 when nothing was understood.\n\n"
      "Examples:\n"
      "  qdm manual page.txt\n"
      "  pdftotext -layout manual.pdf - | qdm manual - --json\n"
      "  qdm manual page.txt -o Visora.BVD --manufacturer Visora --model \"Grand 4\"");
  command->add_option("PAGE.txt", request.Manual.Page, "the page's text; - is standard input")->required();
  command->add_flag("--json", request.Manual.Json, "JSON instead of a table");
  CLI::Option* manufacturer =
      command->add_option("--manufacturer", request.Manual.Manufacturer, "the definition's manufacturer")
          ->type_name("NAME");
  CLI::Option* model =
      command->add_option("--model", request.Manual.Model, "the definition's model")->type_name("NAME");
  CLI::Option* output =
      command->add_option("-o,--output", request.Manual.Output, "write a definition with what is sure (.BVD)")
          ->type_name("FILE.BVD")
          ->needs(manufacturer)
          ->needs(model);
  command->add_flag("--doubtful", request.Manual.Doubtful, "take what is not sure into the definition too")
      ->needs(output);
  Runs(command, request, Manual, request.Manual);
}

void AddProjectorChoice(CLI::App* command, ProjectorChoice& choice) {
  command
      ->add_option("FILE", choice.File, "a configuration (.BVC), definitions (.BVD, .DEF) or either as .json")
      ->required();
  command->add_option("--manufacturer", choice.Manufacturer, "whose projector, where FILE has several")
      ->type_name("NAME");
  command->add_option("--model", choice.Model, "which projector, where FILE has several")->type_name("NAME");
}

void AddStandInCommand(CLI::App& app, Request& request) {
  CLI::App* command = AddCommand(
      app, "projector", "Stand in for a projector on the panel's cable",
      "Listens at the projector's line settings and answers each command with its expected reply, until it "
      "is\n"
      "interrupted. Without --port it makes a pseudo-terminal and prints its path first. A line for each "
      "command:\n"
      "milliseconds since the start, milliseconds since the end of the command before (- for the first), the "
      "command's\n"
      "name (\"unknown\" for what is none), its bytes in hexadecimal.\n\n"
      "Examples:\n"
      "  qdm projector \"Room 101.BVC\" --port COM3\n"
      "  qdm projector Visora.BVD --delay 300 | tee heard.txt");
  AddProjectorChoice(command, request.Projector);
  command->add_option("--port", request.Projector.Port, "the port on the panel's cable")->type_name("PORT");
  command->add_option("--delay", request.Projector.Delay, "answer so many milliseconds late")
      ->check(CLI::Range(0, 60'000).description(""))
      ->type_name("MS");
  command->add_flag("--silent", request.Projector.Silent, "only listen");
  Runs(command, request, Projector, request.Projector);
}

void AddProbeCommand(CLI::App& app, Request& request) {
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
      "  qdm probe \"Room 101.BVC\" --send \"PWR?<CR>\"");
  AddProjectorChoice(command, request.Probe);
  CLI::Option* slot =
      command->add_option("--slot", request.Probe.Slot, "send this command of the projector: \"Power on\"")
          ->type_name("SLOTNAME");
  CLI::Option* send =
      command->add_option("--send", request.Probe.Send, "send this text, read as pasted text is")
          ->type_name("TEXT");
  slot->excludes(send);
  command
      ->add_option("--port", request.Probe.Port, "ask at this port; every port that is there when left out")
      ->type_name("PORT");
  Runs(command, request, Probe, request.Probe);
}

// An option's name and what stands for its value; everything else is for the description to say.
class PlainFormatter : public CLI::Formatter {
 public:
  PlainFormatter() {
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
    column_width(26);
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_positional() || option->get_items_expected() == 0 ? "" : " " + option->get_type_name();
  }
};

void Describe(CLI::App& app) {
  app.name("qdm");
  app.description("What the QDM editor does to files and panels, without a window");
  app.footer(
      "\"qdm COMMAND --help\" tells more about a command.\n\n"
      "Files are told by their endings, in either case: .BVC a configuration, .BVD and .DEF projector\n"
      "definitions, .json text.\n\n"
      "Exit status: 0 done; 1 refused or failed (a rule, a panel, a reply); 2 wrong command line, or a file\n"
      "that cannot be read, written or understood.");
  app.set_version_flag("--version", "qdm " + VersionText(), "Print the version");
  app.set_help_flag("-h,--help", "Print this help");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);
  app.formatter(std::make_shared<PlainFormatter>());
}

int Complain(CommandContext& context, const std::string& what, int status) {
  context.Err << "qdm: " << OneLine(what) << "\n";
  return status;
}

// The command named so far, for a hint: "qdm projectors add".
std::string NamedCommand(const CLI::App& app) {
  std::string name = app.get_name();
  for (const CLI::App* chosen : app.get_subcommands()) name += " " + NamedCommand(*chosen);
  return name;
}

int RunCommand(const Request& request, CommandContext& context) {
  try {
    return request.Command(context);
  } catch (const CommandError& error) {
    return Complain(context, error.what(), error.Status());
  } catch (const FileError& error) {
    return Complain(context, TextOf(error), kUnusable);
  } catch (const std::exception& error) {
    return Complain(context, error.what(), kUnusable);
  }
}

}  // namespace

int RunQdm(std::vector<std::string> arguments, CommandContext& context) {
  Request request;
  CLI::App app;
  Describe(app);
  AddTextCommands(app, request);
  AddConfigurationCommands(app, request);
  AddProjectorsCommands(app, request);
  AddPanelCommands(app, request);
  AddWorkLogCommands(app, request);
  AddSimulateCommand(app, request);
  AddManualCommand(app, request);
  AddStandInCommand(app, request);
  AddProbeCommand(app, request);

  std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp&) {
    std::string help = app.help();
    help.erase(help.find_last_not_of('\n') + 1);
    context.Out << help << "\n";
    return kDone;
  } catch (const CLI::CallForVersion& version) {
    context.Out << version.what() << "\n";
    return kDone;
  } catch (const CLI::ParseError& error) {
    return Complain(context, std::string(error.what()) + " (see " + NamedCommand(app) + " --help)",
                    kUnusable);
  }

  const int status = RunCommand(request, context);
  context.Out.flush();
  if (!context.Out) return Complain(context, "standard output: cannot write", kUnusable);
  return status;
}

}  // namespace qdm
