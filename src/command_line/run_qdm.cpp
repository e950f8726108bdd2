#include "command_line/run_qdm.h"

#include "base/file_access.h"
#include "command_line/arguments.h"
#include "command_line/message_text.h"
#include "config/version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <memory>
#include <ostream>
#include <utility>

namespace qdm {
namespace {

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

bool HasCommand(const CLI::App& app, const std::string& name) {
  return !app.get_subcommands([&name](const CLI::App* command) { return command->get_name() == name; })
              .empty();
}

int RunCommand(const CommandToRun& chosen, CommandContext& context) {
  try {
    return chosen(context);
  } catch (const CommandError& error) {
    return Complain(context, error.what(), error.Status());
  } catch (const FileError& error) {
    return Complain(context, TextOf(error), kUnusable);
  } catch (const std::exception& error) {
    return Complain(context, error.what(), kUnusable);
  }
}

}  // namespace

int RunQdm(std::vector<std::string> arguments, CommandContext& context, const PortCommands& ports) {
  CommandToRun chosen;
  CLI::App app;
  Describe(app);
  // In the order of the help; no more of them than are asked for: describing all takes longer than most run.
  for (const auto add :
       {AddFileCommands, AddProjectorsCommands, AddPanelCommands, AddRoomCommands, AddProjectorCommands}) {
    add(app, chosen, ports);
    if (!arguments.empty() && HasCommand(app, arguments.front())) break;
  }

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

  const int status = RunCommand(chosen, context);
  context.Out.flush();
  if (!context.Out) return Complain(context, "standard output: cannot write", kUnusable);
  return status;
}

}  // namespace qdm
