#include "command_line/arguments.h"
#include "command_line/commands.h"

#include <CLI/CLI.hpp>

namespace qdm {
namespace {

void AddExportCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(app, "export", "Write a configuration or projector definitions as JSON text",
                                 "Every field of the file becomes a key, so that the text can be edited, "
                                 "compared and kept under version\n"
                                 "control; \"qdm import\" makes the same file from it, byte for byte.\n\n"
                                 "Examples:\n"
                                 "  qdm export \"Room 101.BVC\"\n"
                                 "  qdm export \"Room 101.BVC\" -o room-101.json\n"
                                 "  qdm export Projectors.DEF -o library.json");
  auto& options = Runs(command, chosen, Export);
  command->add_option("FILE", options.File, "a configuration (.BVC) or definitions (.BVD, .DEF)")->required();
  command->add_option("-o,--output", options.Output, "the text file; standard output when left out")
      ->type_name("OUT.json");
}

void AddImportCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command =
      AddCommand(app, "import", "Make a configuration or projector definitions from JSON text",
                 "Keys that are left out have the value of a new record. The rules of \"qdm check\" are not\n"
                 "applied. What no record can hold is refused, and nothing is written.\n\n"
                 "Examples:\n"
                 "  qdm import room-101.json -o \"Room 101.BVC\"\n"
                 "  jq '.configuration.RoomTimeout = 30' room.json | qdm import - -o room.BVC");
  auto& options = Runs(command, chosen, Import);
  command->add_option("IN.json", options.Json, "the text; - is standard input")->required();
  command
      ->add_option("-o,--output", options.Output,
                   "the file to write: .BVC for a configuration, .BVD or .DEF for definitions")
      ->required()
      ->type_name("FILE");
}

void AddCheckCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(app, "check", "Tell whether configurations may be saved and downloaded",
                                 "Prints \"ok\", or what the editor would say; the exit status is 1 then. "
                                 "Of several files, a line each\nwith the file's name; one that cannot be "
                                 "read is told, and the exit status is 2.\n\n"
                                 "Examples:\n"
                                 "  qdm check \"Room 101.BVC\"\n"
                                 "  qdm check *.BVC");
  auto& options = Runs(command, chosen, Check);
  command->add_option("FILE.BVC", options.Files, "the configurations")->required();
}

void AddCompareCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command = AddCommand(
      app, "compare", "Show the fields in which two files differ",
      "One line a field: \"path: value in A -> value in B\". Definitions are paired by manufacturer "
      "and\nmodel. Exit status: 0 when nothing differs, 1 when something does.\n\n"
      "Examples:\n"
      "  qdm compare \"Room 101.BVC\" \"Room 102.BVC\"\n"
      "  qdm compare Visora.BVD Projectors.DEF\n"
      "  git show HEAD:room.json | qdm compare - room.BVC");
  auto& options = Runs(command, chosen, Compare);
  command->add_option("A", options.First, "a .BVC, .BVD, .DEF or .json file; - is JSON on standard input")
      ->required();
  command->add_option("B", options.Second, "another one of the same kind")->required();
}

void AddImageCommand(CLI::App& app, CommandToRun& chosen) {
  CLI::App* command =
      AddCommand(app, "image", "Show or save the memory that a panel would be programmed with",
                 "Without an option: the 512 bytes as a hexadecimal dump. The rules of \"qdm check\" are not "
                 "applied;\na value that the memory has no room for is named, and the exit status is 1.\n\n"
                 "Examples:\n"
                 "  qdm image \"Room 101.BVC\" --explain\n"
                 "  qdm image \"Room 101.BVC\" -o room-101.bin");
  auto& options = Runs(command, chosen, Image);
  command->add_option("FILE.BVC", options.File, "the configuration")->required();
  CLI::Option* output = command->add_option("-o,--output", options.Output, "write the 512 bytes to a file")
                            ->type_name("IMAGE.bin");
  CLI::Option* records = command->add_flag_callback(
      "--records", [&options] { options.Form = ImageForm::Records; },
      "the 64 program records as they go over the wire");
  CLI::Option* explain = command->add_flag_callback(
      "--explain", [&options] { options.Form = ImageForm::Explanation; },
      "a table: offset, bytes, what they mean, from which fields");
  records->excludes(explain)->excludes(output);
  explain->excludes(output);
}

}  // namespace

void AddFileCommands(CLI::App& app, CommandToRun& chosen, const PortCommands&) {
  AddExportCommand(app, chosen);
  AddImportCommand(app, chosen);
  AddCheckCommand(app, chosen);
  AddCompareCommand(app, chosen);
  AddImageCommand(app, chosen);
}

}  // namespace qdm
