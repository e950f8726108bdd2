#include "command_line/commands.h"
#include "command_line/json_writer.h"
#include "command_line/record_files.h"

namespace qdm {

int Export(const ExportOptions& options, CommandContext& context) {
  switch (KindOfFile(options.Output)) {
    case FileKind::Configuration:
    case FileKind::Definitions:
      // Most likely the names were given the wrong way round: a configuration would be overwritten by text.
      throw CommandError(kUnusable, options.Output, "an export is JSON text, this ending is not a text's");
    default:
      break;
  }
  switch (KindOfFile(options.File)) {
    case FileKind::Configuration:
      WriteText(options.Output, ConfigurationToJson(ReadConfigurationFile(options.File)), context);
      return kDone;
    case FileKind::Definitions:
      WriteText(options.Output, ProjectorsToJson(ReadDefinitionsFile(options.File)), context);
      return kDone;
    default:
      throw CommandError(kUnusable, options.File,
                         "neither a configuration (.BVC) nor projector definitions (.BVD, .DEF)");
  }
}

}  // namespace qdm
