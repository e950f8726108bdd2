// The images of the examples, byte by byte, with the fields that each part is made from and its meaning.
#include "config/configuration_file.h"
#include "panels/image_explanation.h"
#include "projectors/projector_files.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

namespace qdm {
namespace {

std::string Explained(const PanelConfiguration& configuration) {
  const PanelImage image = BuildPanelImage(configuration);
  std::ostringstream text;
  text << std::hex << std::uppercase << std::setfill('0');
  for (const ImagePart& part : ExplainImage(configuration)) {
    text << std::setw(3) << part.Offset << " |";
    for (const int byte : ByteView(image).subspan(part.Offset, part.Length))
      text << ' ' << std::setw(2) << byte;
    text << " | " << part.Fields << " | " << part.Meaning << '\n';
  }
  return text.str();
}

TEST(ExampleImages, AreAsTheyWereAndCanCarryEveryExampleProjector) {
  const std::filesystem::path source = PathFromUtf8(QDM_SOURCE_DIR);
  const std::vector<ProjectorDefinition> library = ReadDefinitions(source / "examples" / "Projectors.DEF");
  int configurations = 0;
  for (const auto& entry : std::filesystem::directory_iterator(source / "examples")) {
    if (entry.path().extension() != ".BVC") continue;
    ++configurations;
    PanelConfiguration configuration = ReadConfiguration(entry.path());
    ExpectGolden(("panels/golden/" + PathToUtf8(entry.path().stem()) + ".txt").c_str(),
                 Explained(configuration));
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
