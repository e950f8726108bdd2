#include "config/panel_configuration.h"

#include "config/audio_routing.h"
#include "projectors/difference_text.h"
#include "projectors/record_difference.h"
#include "support/distinct_configuration.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {
using testing::ElementsAre;

TEST(ConfigurationRecord, EveryFieldHasItsPlaceInTheStoredForm) {
  Bytes expected(3161);
  const auto putWord = [&expected](std::size_t offset) {
    expected[offset] = static_cast<std::uint8_t>(DistinctWord(offset) & 0xFF);
    expected[offset + 1] = static_cast<std::uint8_t>(DistinctWord(offset) >> 8 & 0xFF);
  };
  const Bytes projector = DistinctProjectorBytes();
  std::copy(projector.begin(), projector.end(), expected.begin() + 20);
  for (const auto& word : kConfigurationWords) putWord(word.Offset);
  for (std::size_t offset = 2116; offset < 2124; offset += 2) putWord(offset);
  for (std::size_t offset = 2154; offset < 3161; ++offset) expected[offset] = DistinctByte(offset);

  EXPECT_EQ(Encode(DistinctConfiguration()), expected);
  PanelConfiguration decoded;
  Decode(expected, decoded);
  EXPECT_EQ(decoded, DistinctConfiguration());
}

TEST(ConfigurationRecord, DifferencesReachIntoTheEmbeddedProjector) {
  PanelConfiguration first;
  PanelConfiguration second;
  second.Projector.Reserved[1] = 5;
  second.LockSequence[3] = 4;
  second.Spare[1006] = 0x1F;
  second.UsePC1 = 1;  // exact: not what is stored for true
  EXPECT_THAT(TextsOf(Differences(first, second)),
              ElementsAre(DifferenceText{"Projector.Reserved[1]", "0", "5"},
                          DifferenceText{"LockSequence[3]", "2", "4"}, DifferenceText{"UsePC1", "true", "1"},
                          DifferenceText{"Spare[1006]", "00h", "1Fh"}));
}

TEST(AudioRouting, PacksOneSourceAnInputInFourBits) {
  EXPECT_EQ(PackAudioRouting(kFrontAudioJack, kRearPcInput, kRearVideoInput), 0x210);
  EXPECT_EQ(PackAudioRouting(kNoAudioSource, kNoAudioSource, kNoAudioSource), 0x333);
  const struct {
    int Routing;
    int PC1, PC2, Video;
  } cases[] = {
      {0x0210, 0, 1, 2},
      // Bit 12 passes all three masks and is shifted down with the field; bits 13..15 pass none.
      {0x1000, 0x1000, 0x100, 0x10},
      {-1, 0x100F, 0x10F, 0x1F},
  };
  for (const auto& c : cases) {
    const auto routing = static_cast<std::int16_t>(c.Routing);
    EXPECT_EQ(AudioSourceOf(routing, ProjectorInput::PC1), c.PC1) << std::hex << c.Routing;
    EXPECT_EQ(AudioSourceOf(routing, ProjectorInput::PC2), c.PC2) << std::hex << c.Routing;
    EXPECT_EQ(AudioSourceOf(routing, ProjectorInput::Video), c.Video) << std::hex << c.Routing;
  }
}

TEST(AudioRouting, OnlyAnEditorOfThe11SeriesConvertsTheOldFlag) {
  EXPECT_EQ(MigrateAudioRouting(-1, 1, 1), 513);
  EXPECT_EQ(MigrateAudioRouting(0, 1, 1), 528);
  EXPECT_EQ(MigrateAudioRouting(0x333, 1, 1), 528);
  EXPECT_EQ(MigrateAudioRouting(-1, 1, 2), -1);
  EXPECT_EQ(MigrateAudioRouting(0x333, 2, 1), 0x333);
}

}  // namespace
}  // namespace qdm
