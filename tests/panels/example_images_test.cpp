// The images of the examples, as `qdm image` prints them: offset and 16 bytes a line.
#include "config/configuration_file.h"
#include "panels/panel_image.h"
#include "projectors/projector_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace qdm {
namespace {

std::string Dump(const PanelImage& image) {
  std::string text;
  char piece[8];
  for (std::size_t i = 0; i < image.size(); ++i) {
    if (i % 16 == 0) text += (std::snprintf(piece, sizeof piece, "%04X ", static_cast<unsigned>(i)), piece);
    text += (std::snprintf(piece, sizeof piece, " %02X", image[i]), piece);
    if (i % 16 == 15) text += '\n';
  }
  return text;
}

TEST(ExampleImages, AreTheRightOnesAndTakeEveryExampleProjector) {
  const std::filesystem::path source = PathFromUtf8(QDM_SOURCE_DIR);
  const std::vector<ProjectorDefinition> library = ReadDefinitions(source / "examples" / "Projectors.DEF");
  int configurations = 0;
  for (const auto& entry : std::filesystem::directory_iterator(source / "examples")) {
    if (entry.path().extension() != ".BVC") continue;
    ++configurations;
    PanelConfiguration configuration = ReadConfiguration(entry.path());
    std::ifstream golden(source / "tests/panels/golden" / entry.path().stem().concat(".txt"));
    EXPECT_EQ(Dump(BuildPanelImage(configuration)), std::string(std::istreambuf_iterator(golden), {}))
        << entry.path();
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
