// Every example that users are given passes the rules that their own work has to pass.

#include "config/configuration_file.h"
#include "config/configuration_rules.h"
#include "examples/example_data.h"
#include "projectors/definition_setup.h"
#include "projectors/library_file.h"
#include "projectors/projector_files.h"
#include "projectors/projector_volume.h"
#include "serial_strings/serial_string.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {
using testing::IsEmpty;
using testing::SizeIs;

const std::filesystem::path kExamples = PathFromUtf8(QDM_SOURCE_DIR) / "examples";

std::string NameOf(const ProjectorDefinition& projector) {
  return projector.Manufacturer.TrimmedUtf8() + " " + projector.Model.TrimmedUtf8();
}

void ExpectPassesSetup(const ProjectorDefinition& projector) {
  SCOPED_TRACE(NameOf(projector));
  EXPECT_EQ(CheckDefinition(projector), std::nullopt);
  ProjectorDefinition completed = projector;
  CompleteDefinition(completed);
  EXPECT_EQ(completed, projector) << "nothing is left to complete";
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    const SerialString& string = projector.Strings[slot];
    for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
      EXPECT_FALSE(EditByteText(string.Values[i], string.Kinds[i]).Error) << CommandSlotNames[slot];
    }
    EXPECT_TRUE(VariableBytePositionOf(string) == 0 || kSlots[slot].Varies) << CommandSlotNames[slot];
  }
  EXPECT_EQ(VolumeFormatError(VolumeFormatOf(projector)), "");
}

TEST(Examples, AreWhatTheirProgramWrites) {
  for (const examples::ExampleFile& file : examples::Files()) {
    EXPECT_EQ(ReadWholeFile(kExamples / PathFromUtf8(file.Name)), file.Contents) << file.Name;
  }
}

TEST(Examples, TheLibraryHoldsDefinitionsThatTheSetupDialogAccepts) {
  ProjectorLibrary library;
  EXPECT_THAT(LoadProjectorDatabase(kExamples, library), IsEmpty());
  EXPECT_EQ(library.Elements(), examples::Library()) << "loading cleans nothing";
  EXPECT_THAT(library.Elements(), SizeIs(21));
  for (std::size_t i = 0; i < library.Size(); ++i) {
    ExpectPassesSetup(library[i]);
    EXPECT_EQ(library.FindProjector(library[i]), i) << NameOf(library[i]) << " is there twice";
  }
}

TEST(Examples, EachConfigurationPassesItsCheckAndCarriesTheLibrarysProjector) {
  ProjectorLibrary library;
  LoadProjectorDatabase(kExamples, library);
  std::set<std::int16_t> types;
  for (const auto& entry : std::filesystem::directory_iterator(kExamples)) {
    if (entry.path().extension() != ".BVC") continue;
    SCOPED_TRACE(PathToUtf8(entry.path().filename()));
    PanelConfiguration configuration = ReadConfiguration(entry.path());
    types.insert(configuration.ControllerType);
    EXPECT_EQ(CheckConfiguration(configuration), std::nullopt);
    const auto found = library.FindProjector(configuration.Projector);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(library[*found], configuration.Projector);
  }
  EXPECT_EQ(types, (std::set<std::int16_t>{kQdm7, kQdm6, kQdm4, kTlVox}));
}

TEST(Examples, TheExportedFileImportsWithOneConflict) {
  ProjectorLibrary library;
  LoadProjectorDatabase(kExamples, library);
  std::vector<ProjectorDefinition> definitions = ReadDefinitions(kExamples / "Visora.BVD");
  for (const ProjectorDefinition& projector : definitions) ExpectPassesSetup(projector);
  const ImportResult result = ImportDefinitions(definitions, library, [](const auto&, std::size_t) {});
  EXPECT_EQ(result.Added, 0U);
  EXPECT_EQ(result.Unchanged, 1U);
  EXPECT_EQ(result.Conflicts, 1U);
}

}  // namespace
}  // namespace qdm
