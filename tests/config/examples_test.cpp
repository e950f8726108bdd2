// Every example that users are given passes the rules that their own work has to pass.

#include "config/configuration_file.h"
#include "config/configuration_rules.h"
#include "examples/example_data.h"
#include "projectors/projector_files.h"
#include "projectors/projector_volume.h"

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

// The slots whose strings the setup dialog shows for the definition's check boxes.
std::set<std::size_t> ShownSlots(const ProjectorDefinition& projector) {
  std::set<std::size_t> shown = {1, 2, 4, 8};
  const auto with = [&](std::size_t flag, std::initializer_list<std::size_t> slots) {
    if (projector.Available[flag] != 0) shown.insert(slots);
  };
  with(0, {0, 9});
  for (const std::size_t slot : {3U, 5U, 23U, 24U}) with(slot, {slot});
  with(6, {6, 7});
  for (std::size_t reply = 0; reply < kReceivedSlots; ++reply) {
    const std::size_t command = reply == 12 ? 24 : reply;
    const bool ofItsOwn = reply == 10 || reply == 11;
    if (projector.RequiresReply[reply] != 0 && (ofItsOwn || shown.contains(command)))
      shown.insert(10 + reply);
  }
  return shown;
}

void ExpectPassesSetup(const ProjectorDefinition& projector) {
  SCOPED_TRACE(NameOf(projector));
  const std::set<std::size_t> shown = ShownSlots(projector);
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    const SerialString& string = projector.Strings[slot];
    EXPECT_EQ(projector.Available[slot] != 0, shown.contains(slot)) << CommandSlotNames[slot];
    EXPECT_EQ(string.Count > 0, shown.contains(slot)) << CommandSlotNames[slot];
    for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
      EXPECT_FALSE(EditByteText(string.Values[i], string.Kinds[i]).Error) << CommandSlotNames[slot];
      const bool ignore = string.Kinds[i] == static_cast<std::uint8_t>(ByteKind::IGN);
      const bool variable = string.Kinds[i] == static_cast<std::uint8_t>(ByteKind::VAR);
      EXPECT_TRUE(!ignore || SlotHasIgnoreMask(slot)) << CommandSlotNames[slot];
      EXPECT_TRUE(!variable || slot == 6 || slot == 7) << CommandSlotNames[slot];
      if (variable && slot == 6) {
        EXPECT_EQ(projector.VolumeBytePosition, static_cast<std::int16_t>(i + 1));
        EXPECT_NE(projector.UseLevels, 0);
      }
    }
  }
  EXPECT_EQ(VolumeFormatError(VolumeFormatOf(projector)), "");
  EXPECT_LE(SerialBytesUsed(projector), kSerialByteBudget);
  EXPECT_TRUE(HasBothNames(projector));
  EXPECT_GE(projector.VolumeBytePosition, 0);
  for (const std::int16_t time : {projector.WarmUpTime, projector.CoolDownTime}) {
    EXPECT_GE(time, 1);
    EXPECT_LE(time, 255);
  }
  EXPECT_LE(projector.InterCommandDelay, 255);
  EXPECT_LE(projector.InterByteDelay, 10);
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

TEST(Examples, TheWrittenFormOfAStringIsRefusedWhenItIsNotOne) {
  EXPECT_EQ(CompactText(examples::StringOf("P{CR 0Ah 065d 101b VAR IGN}")),
            "P,CRc,0Ah,065d,101b,Variable,Ignore");
  EXPECT_EQ(CompactText(examples::StringOf("{02h FFh sum xor}")), "02h,FFh,01h,FCh");
  for (const char* wrong :
       {"{CR", "{cr}", "{100h}", "{256d}", "{2b}", "{h}", "123456789012345678901234567890123"}) {
    EXPECT_THROW(examples::StringOf(wrong), std::invalid_argument) << wrong;
  }
}

}  // namespace
}  // namespace qdm
