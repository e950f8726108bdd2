#include "command_line/commands.h"
#include "command_line/record_files.h"
#include "projectors/projector_files.h"

#include <variant>
#include <vector>

namespace qdm {

int Import(const ImportOptions& options, CommandContext& context) {
  const FileKind source = KindOfFile(options.Json);
  if (source == FileKind::Configuration || source == FileKind::Definitions) {
    throw CommandError(kUnusable, options.Json, "not JSON text; \"qdm export\" makes that from it");
  }
  const RecordFile records = ReadJsonFile(options.Json, context);
  if (const auto* configuration = std::get_if<PanelConfiguration>(&records)) {
    DemandKind(options.Output, FileKind::Configuration);
    WriteBinaryFile(options.Output, Encode(*configuration));
  } else {
    DemandKind(options.Output, FileKind::Definitions);
    WriteBinaryFile(options.Output, EncodeDefinitions(std::get<std::vector<ProjectorDefinition>>(records)));
  }
  return kDone;
}

}  // namespace qdm
