// Any bits as a configuration. The first byte chooses what is asked of it: the rules, the image and what is
// read back out of it; the words; the text form and back; comparing. One question an input: the text form
// alone takes three times as long as the others together.
#include "command_line/json_reader.h"
#include "command_line/json_writer.h"
#include "config/configuration_rules.h"
#include "config/configuration_sentences.h"
#include "config/configuration_words.h"
#include "config/panel_configuration.h"
#include "fuzz/fuzzing.h"
#include "panels/frame.h"
#include "panels/image_explanation.h"
#include "panels/image_reading.h"
#include "panels/panel_image.h"
#include "projectors/difference_text.h"
#include "projectors/record_difference.h"

#include <algorithm>

namespace qdm {
namespace {

// What the panel goes by is what the configuration says. An empty reply that is in use cannot be told from
// one that is not, and the panel takes its mask for entries.
void ReadBack(const PanelImage& image, const PanelConfiguration& configuration) {
  const ProjectorDefinition& projector = configuration.Projector;
  for (std::size_t slot = 0; slot < projector.Strings.size(); ++slot) {
    if (SlotHasIgnoreMask(slot) && projector.Available[slot] != 0 && projector.Strings[slot].Count == 0)
      return;
  }
  const auto read = ProjectorInImage(image, configuration.ControllerType);
  Demand(read.has_value(), "the projector is read back out of an image");
  for (std::size_t slot = 0; slot < projector.Strings.size(); ++slot) {
    const SerialString& stored = projector.Strings[slot];
    if (projector.Available[slot] == 0) continue;
    const auto end = stored.Values.begin() + static_cast<std::ptrdiff_t>(stored.BytesInUse());
    Demand(read->Strings[slot].Count == stored.Count &&
               std::equal(stored.Values.begin(), end, read->Strings[slot].Values.begin()),
           "a string is read back out of the image");
  }
}

void BuildAndExplain(const PanelConfiguration& configuration) {
  PanelImage image;
  try {
    image = BuildPanelImage(configuration);
  } catch (const ImageError& error) {
    Demand(std::string_view(error.what()).find(" = ") != std::string_view::npos,
           "an error names its field and value");
    return;
  }
  ReadBack(image, configuration);
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

void Tell(const PanelConfiguration& first, const PanelConfiguration& second) {
  const ConfigurationWords words = InWords(first);
  Demand(!words.Sentences.empty(), "a configuration has words");
  for (const std::string& sentence : words.Sentences)
    Demand(sentence.ends_with('.'), "a sentence has its full stop");
  static_cast<void>(WarningsAbout(first));
  Demand(DifferencesInWords(first, first).empty(), "a configuration does not differ from itself");
  for (const DifferenceText& difference : DifferencesInWords(first, second))
    Demand(!LineOf(difference).empty(), "a difference has words");
}

void Look(ByteView input) {
  const std::uint8_t question = input.empty() ? 0 : input[0] % 4;
  if (!input.empty()) input = input.subspan(1);
  const auto first = RecordFrom<PanelConfiguration>(input);
  const auto second = [&] { return RecordFrom<PanelConfiguration>(input); };
  switch (question) {
    case 0: {
      PanelConfiguration checked = first;
      static_cast<void>(CheckConfiguration(checked));
      StatesFor({.ControllerType = first.ControllerType, .OutputsOption = first.OutputsOption});
      return BuildAndExplain(first);
    }
    case 1:
      return Tell(first, second());
    case 2:
      return Demand(std::get<PanelConfiguration>(ReadJson(ConfigurationToJson(first))) == first,
                    "the text form makes the same record");
    default: {
      const PanelConfiguration other = second();
      Demand(Differences(first, other).empty() == (first == other), "records that differ have a difference");
    }
  }
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({data, size});
  return 0;
}
