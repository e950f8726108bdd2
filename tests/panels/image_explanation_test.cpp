#include "panels/image_explanation.h"

#include "support/distinct_configuration.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

PanelConfiguration Configuration(std::int16_t controllerType) {
  PanelConfiguration configuration;
  configuration.ControllerType = controllerType;
  configuration.OutputsOption = kOutputsScreen;
  configuration.ControlInputOption = kControlInputRoomPir;
  ProjectorDefinition& projector = configuration.Projector;
  projector.VolumeBytePosition = 1;
  projector.NumberOfBytes = 2;
  for (const std::size_t slot : {0U, 6U, 10U, 22U, 24U}) {
    projector.Available[slot] = kFlagSet;
    projector.Strings[slot].Count = static_cast<std::int16_t>(slot);
    projector.Strings[slot].Values.fill(static_cast<std::uint8_t>(slot));
  }
  return configuration;
}

const std::string& FieldsAt(const std::vector<ImagePart>& parts, std::size_t byte) {
  for (const ImagePart& part : parts) {
    if (byte >= part.Offset && byte < part.Offset + part.Length) return part.Fields;
  }
  static const std::string none = "no part";
  return none;
}

struct ImageExplanation : testing::TestWithParam<std::int16_t> {};

// Whatever a field changes in the image is explained by that field.
TEST_P(ImageExplanation, NamesTheFieldsThatEachByteIsMadeFrom) {
  const PanelConfiguration original = Configuration(GetParam());
  const std::vector<ImagePart> parts = ExplainImage(original);
  const PanelImage image = BuildPanelImage(original);
  std::size_t bytesChanged = 0;
  const auto expectExplained = [&](const PanelConfiguration& changed, const std::string& field) {
    const PanelImage other = BuildPanelImage(changed);
    for (std::size_t i = 0; i < image.size(); ++i) {
      if (image[i] == other[i]) continue;
      ++bytesChanged;
      EXPECT_NE((", " + FieldsAt(parts, i) + ",").find(", " + field + ","), std::string::npos)
          << "byte " << i << " depends on " << field << ", it is explained by " << FieldsAt(parts, i);
    }
  };
  const auto toggled = [](std::int16_t value, bool isFlag) {
    return static_cast<std::int16_t>(isFlag ? FlagOf(value == 0) : value ^ 1);
  };
  for (const auto& word : kConfigurationWords) {
    PanelConfiguration changed = original;
    if (word.Name == "ControllerType") continue;
    changed.*word.Member = toggled(original.*word.Member, word.IsFlag);
    expectExplained(changed, std::string(word.Name));
  }
  for (const auto& word : kProjectorWords) {
    PanelConfiguration changed = original;
    const bool isFlag = word.IsFlag || word.Name == "Stopbits";
    changed.Projector.*word.Member = toggled(original.Projector.*word.Member, isFlag);
    expectExplained(changed, "Projector." + std::string(word.Name));
  }
  for (const std::size_t slot : {6U, 10U, 22U}) {
    const std::string field = "Projector.Strings[" + std::to_string(slot) + "].";
    PanelConfiguration changed = original;
    changed.Projector.Strings[slot].Values[3] = 'x';
    expectExplained(changed, field + "Values");
    changed = original;
    changed.Projector.Strings[slot].Kinds[3] = static_cast<std::uint8_t>(ByteKind::IGN);
    expectExplained(changed, field + "Kinds");
  }
  EXPECT_GT(bytesChanged, 20U);
}

INSTANTIATE_TEST_SUITE_P(Layouts, ImageExplanation, testing::Values(kQdm7, kTlVox));

}  // namespace
}  // namespace qdm
