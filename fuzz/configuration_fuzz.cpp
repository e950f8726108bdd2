// Any bits as a configuration: the codec, the rules, the image, its explanation, comparing, the text form and
// back.
#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "config/configuration_rules.h"
#include "config/panel_configuration.h"
#include "fuzz/fuzzing.h"
#include "panels/frame.h"
#include "panels/image_explanation.h"
#include "panels/panel_image.h"
#include "projectors/difference_text.h"
#include "projectors/record_difference.h"

namespace qdm {
namespace {

void BuildAndExplain(const PanelConfiguration& configuration) {
  PanelImage image;
  try {
    image = BuildPanelImage(configuration);
  } catch (const ImageError& error) {
    Demand(std::string_view(error.what()).find(" = ") != std::string_view::npos,
           "an error names its field and value");
    return;
  }
  Demand(image == BuildPanelImage(configuration), "the same configuration makes the same image");
  std::size_t at = 0;
  for (const ImagePart& part : ExplainImage(configuration)) {
    Demand(part.Offset == at && part.Length > 0, "the explanation goes from part to part without a gap");
    at += part.Length;
  }
  Demand(at == image.size(), "the explanation tells all bytes");
  for (int record = 0; record < kRecords; ++record) {
    const std::size_t length = ProgramRecord(image, record).size();
    Demand(length >= kShortestRecord && length <= kLongestRecord, "a record has its length");
  }
}

void ThereAndBack(const PanelConfiguration& configuration) {
  const RecordFile read = ReadJson(ConfigurationToJson(configuration));
  Demand(std::get<PanelConfiguration>(read) == configuration, "the text form makes the same record");
}

void Look(ByteView input) {
  const auto first = RecordFrom<PanelConfiguration>(input);
  const auto second = RecordFrom<PanelConfiguration>(input);
  PanelConfiguration checked = first;
  static_cast<void>(CheckConfiguration(checked));
  StatesFor({.ControllerType = first.ControllerType, .OutputsOption = first.OutputsOption});
  BuildAndExplain(first);
  Demand(Differences(first, second).empty() == (first == second), "records that differ have a difference");
  ThereAndBack(first);
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({data, size});
  return 0;
}
