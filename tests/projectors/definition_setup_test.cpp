#include "projectors/definition_setup.h"
#include "projectors/projector_volume.h"
#include "support/distinct_projector.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

using Slots = std::set<std::size_t>;

Slots Shown(const ProjectorDefinition& projector) {
  Slots slots;
  const SlotSet shown = ShownSlots(projector);
  for (std::size_t slot = 0; slot < shown.size(); ++slot) {
    if (shown[slot]) slots.insert(slot);
  }
  return slots;
}

// A definition that may be stored: the commands that every projector has, each of one byte.
ProjectorDefinition Storable() {
  ProjectorDefinition projector = NamedProjector("Acme", "A1");
  for (const std::size_t slot : Slots{1, 2, 4, 8}) projector.Strings[slot] = Characters("x");
  return projector;
}

std::string Refused(const ProjectorDefinition& projector) {
  const auto message = CheckDefinition(projector);
  if (!message) return {};
  EXPECT_EQ(message->Title, "Sorry!");
  EXPECT_EQ(message->Icon, MessageIcon::Exclamation);
  return message->Text;
}

TEST(DefinitionSetup, EveryDefinitionHasFourCommandsAndItsFlagsShowTheOthers) {
  const Slots always = {1, 2, 4, 8};
  ASSERT_EQ(Shown(ProjectorDefinition{}), always);
  const struct {
    std::size_t Flag;
    Slots Shows;
  } cases[] = {{0, {0, 9}}, {3, {3}}, {5, {5}}, {6, {6, 7}}, {23, {23}}, {24, {24}}, {7, {}}, {20, {}}};
  for (const auto& c : cases) {
    ProjectorDefinition projector;
    projector.Available[c.Flag] = 1;
    Slots expected = always;
    expected.insert(c.Shows.begin(), c.Shows.end());
    EXPECT_EQ(Shown(projector), expected) << c.Flag;
  }
}

TEST(DefinitionSetup, RefusesInOrder) {
  ProjectorDefinition projector;
  projector.RequiresReply[1] = kFlagSet;  // slot 11
  projector.Strings[11] = Characters("0123456789ABCDEF0123456789ABCDEF");
  projector.Strings[2].Count = 425;  // a damaged count: one byte too many with the 36 of slot 11
  projector.CoolDownTime = projector.WarmUpTime = 0;

  EXPECT_EQ(Refused(projector), "Cannot save as there are too many serial bytes in this configuration!");
  projector.Strings[2].Count = 424;
  EXPECT_EQ(Refused(projector), "Cannot save as Power on string has zero byte length!");
  projector.Strings[1] = projector.Strings[4] = Characters("x");
  projector.Strings[2] = Characters("x");
  EXPECT_EQ(Refused(projector), "Cannot save as Power off string has zero byte length!");
  projector.Strings[8] = Characters("x");
  projector.Available[24] = projector.RequiresReply[12] = kFlagSet;
  projector.Strings[24] = Characters("x");
  EXPECT_EQ(Refused(projector), "Cannot save as Blank Off reply string has zero byte length!");
  projector.Strings[22] = Characters("x");
  EXPECT_EQ(Refused(projector), "Cannot save as no manufacturer name has been defined!");
  projector.Manufacturer.AssignUtf8("Acme");
  EXPECT_EQ(Refused(projector), "Cannot save as no model name has been defined!");
  projector.Model.AssignUtf8("A1");
  EXPECT_EQ(Refused(projector), "Cannot save as cool down time has not been defined!");
  projector.CoolDownTime = 1;
  EXPECT_EQ(Refused(projector), "Cannot save as Warm Up Time has not been defined!");
  projector.WarmUpTime = 1;
  EXPECT_FALSE(CheckDefinition(projector));
}

TEST(DefinitionSetup, CompletesWhatIsShownAsAvailableAndFindsTheVolumeByte) {
  ProjectorDefinition projector = Storable();
  projector.Available[6] = 17;
  projector.Available[20] = kFlagSet;  // without its box
  projector.RequiresReply[6] = 1;
  projector.Strings[6] = String({{'V'}, {0, ByteKind::VAR}});
  CompleteDefinition(projector);
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    EXPECT_EQ(projector.Available[slot], FlagOf(Slots{1, 2, 4, 6, 7, 8, 16}.contains(slot))) << slot;
  }
  EXPECT_EQ(projector.VolumeBytePosition, 2);
}

TEST(DefinitionSetup, StoresUnderItsNamesAndAsksBeforeItOverwrites) {
  ProjectorLibrary library;
  ProjectorDefinition projector = Storable();
  EXPECT_FALSE(OverwriteQuestion(library, projector));
  StoreDefinition(library, projector);
  projector.Model.AssignUtf8("B2");
  EXPECT_FALSE(OverwriteQuestion(library, projector));
  StoreDefinition(library, projector);
  ASSERT_EQ(library.Size(), 2U);

  ProjectorDefinition changed = NamedProjector("ACME", " a1");
  CleanNames(changed);
  const auto question = OverwriteQuestion(library, changed);
  ASSERT_TRUE(question);
  EXPECT_EQ(question->Text, "Projector ACME / a1 already exists do you wish to over-write it?");
  EXPECT_EQ(question->Title, "Overwrite");
  StoreDefinition(library, changed);
  ASSERT_EQ(library.Size(), 2U);
  EXPECT_EQ(library[0], changed);
}

TEST(DefinitionSetup, AReplyAndAVolumeFormatAreStoredInTheirFields) {
  ProjectorDefinition projector;
  TakeAsExpectedReply(projector, kVideoSlot, Characters("ok"));
  EXPECT_EQ(projector.Strings[kVideoReplySlot], Characters("ok"));
  EXPECT_EQ(projector.RequiresReply[4], kFlagSet);
  for (const LevelFormat format :
       {LevelFormat::HexInAscii, LevelFormat::DecimalInAscii, LevelFormat::RawBytes}) {
    const VolumeFormat stored{100, -2, 3, 50, format == LevelFormat::RawBytes, 4, format, true};
    StoreVolumeFormat(projector, stored);
    EXPECT_EQ(VolumeFormatOf(projector), stored);
  }
}

}  // namespace
}  // namespace qdm
