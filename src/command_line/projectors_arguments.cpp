#include "command_line/arguments.h"
#include "command_line/commands.h"

#include <CLI/CLI.hpp>

#include <string>

namespace qdm {
namespace {

void AddDataOption(CLI::App* command, LibraryOptions& options) {
  command->add_option("--data", options.Data, "the folder of Projectors.DEF; the editor's own when left out")
      ->type_name("DIR");
}

void AddListCommand(CLI::App& projectors, CommandToRun& chosen) {
  CLI::App* command =
      AddCommand(projectors, "list", "List the library",
                 "A line each, separated by tabs: manufacturer, model, bytes of serial strings of 460.\n\n"
                 "Example:\n"
                 "  qdm projectors list | sort");
  auto& options = Runs(command, chosen, ListProjectors);
  AddDataOption(command, options);
}

void AddAddCommand(CLI::App& projectors, CommandToRun& chosen) {
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
  auto& options = Runs(command, chosen, AddProjectors);
  command->add_option("FILE.BVD", options.File, "the definitions")->required();
  command
      ->add_option_function<std::string>(
          "--on-conflict",
          [&options](const std::string& answer) {
            options.Conflict = answer == "keep"      ? OnConflict::Keep
                               : answer == "replace" ? OnConflict::Replace
                                                     : OnConflict::Rename;
          },
          "what becomes of a conflict")
      ->transform(CLI::IsMember({"keep", "replace", "rename"}).description(""))
      ->type_name("keep|replace|rename");
  AddDataOption(command, options);
}

void AddExtractCommand(CLI::App& projectors, CommandToRun& chosen) {
  CLI::App* command = AddCommand(
      projectors, "extract", "Copy definitions from the library into a file",
      "Names in either case. Over a longer old file, its later definitions stay in place, as with the\n"
      "editor's EXPORT.\n\n"
      "Examples:\n"
      "  qdm projectors extract VISORA -o Visora.BVD\n"
      "  qdm projectors extract visora compact -o Compact.BVD");
  auto& options = Runs(command, chosen, ExtractProjectors);
  command->add_option("MANUFACTURER", options.Manufacturer, "the manufacturer")->required();
  command->add_option("MODEL", options.Model, "the model; all of the manufacturer's when left out");
  command->add_option("-o,--output", options.Output, "the file to write (.BVD)")
      ->required()
      ->type_name("FILE.BVD");
  AddDataOption(command, options);
}

void AddRemoveCommand(CLI::App& projectors, CommandToRun& chosen) {
  CLI::App* command = AddCommand(projectors, "remove", "Delete a definition from the library",
                                 "The library before that stays as Projectors.BAK.\n\n"
                                 "Example:\n"
                                 "  qdm projectors remove VISORA Compact");
  auto& options = Runs(command, chosen, RemoveProjector);
  command->add_option("MANUFACTURER", options.Manufacturer, "the manufacturer")->required();
  command->add_option("MODEL", options.Model, "the model")->required();
  AddDataOption(command, options);
}

void AddMergeCommand(CLI::App& projectors, CommandToRun& chosen) {
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
  auto& options = Runs(command, chosen, MergeProjectors);
  command->add_option("BASE", options.Base, "what both began with")->required();
  command->add_option("OURS", options.Ours, "one side")->required();
  command->add_option("THEIRS", options.Theirs, "the other side")->required();
  command->add_option("-o,--output", options.Output, "the file to write; it may be one of the three")
      ->required()
      ->type_name("OUT");
}

}  // namespace

void AddProjectorsCommands(CLI::App& app, CommandToRun& chosen, const PortCommands&) {
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
  AddListCommand(*projectors, chosen);
  AddAddCommand(*projectors, chosen);
  AddExtractCommand(*projectors, chosen);
  AddRemoveCommand(*projectors, chosen);
  AddMergeCommand(*projectors, chosen);
}

}  // namespace qdm
