#include "config/configuration_file.h"
#include "panels/panel_image.h"
#include "projectors/projector_files.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

TEST(ExampleImages, EveryExampleConfigurationCanCarryEveryExampleProjector) {
  const std::filesystem::path examples = PathFromUtf8(QDM_SOURCE_DIR) / "examples";
  const std::vector<ProjectorDefinition> library = ReadDefinitions(examples / "Projectors.DEF");
  int configurations = 0;
  for (const auto& entry : std::filesystem::directory_iterator(examples)) {
    if (entry.path().extension() != ".BVC") continue;
    ++configurations;
    PanelConfiguration configuration = ReadConfiguration(entry.path());
    EXPECT_NO_THROW(BuildPanelImage(configuration)) << entry.path();
    for (const ProjectorDefinition& projector : library) {
      configuration.Projector = projector;
      EXPECT_NO_THROW(BuildPanelImage(configuration)) << entry.path() << projector.Model.TrimmedUtf8();
    }
  }
  EXPECT_EQ(configurations, 4);
  EXPECT_FALSE(library.empty());
}

}  // namespace
}  // namespace qdm
