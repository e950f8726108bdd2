#include "config/panel_configuration.h"

#include "config/audio_routing.h"
#include "projectors/difference_text.h"
#include "projectors/record_difference.h"
#include "support/distinct_configuration.h"
#include "support/random_seed.h"

#include <gmock/gmock.h>

#include <map>

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

TEST(ConfigurationRecord, AnyBytesComeBackAsTheyWere) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  for (int round = 0; round < 200; ++round) {
    const Bytes stored = RandomBytes(random, 3161);
    PanelConfiguration configuration;
    Decode(stored, configuration);
    ASSERT_EQ(Encode(configuration), stored);
  }
}

TEST(ConfigurationRecord, NewResetsTheOptionsAndTheNamesAndNothingElse) {
  PanelConfiguration configuration = DistinctConfiguration();
  ResetToDefaults(configuration);

  std::map<std::string_view, int> defaults;  // 0 where not named
  defaults = {{"UpTime", 1},
              {"DownTime", 1},
              {"RoomTimeout", 1},
              {"ThresholdVoltage", 128},
              {"LockAfterProjectorOffPeriod", 1},
              {"LockAfterRoomEmptyPeriod", 1},
              {"Reserved1", DistinctWord(2128)},
              {"VolumeMin", -45},
              {"VolumeMax", 18},
              {"VolumeStep", 1},
              {"PowerUpVolume", 12},
              {"AudioTurnsOnAmplifier", -1},
              {"TLVOXpowerDownTime", 10},
              {"AudioRouting", 513},
              {"UsePC1", -1},
              {"UsePC2", -1},
              {"UseVideo", -1}};
  for (const auto& word : kConfigurationWords) {
    EXPECT_EQ(configuration.*word.Member, defaults[word.Name]) << word.Name;
  }
  EXPECT_THAT(configuration.LockSequence, ElementsAre(2, 2, 2, 2));
  EXPECT_EQ(configuration.Spare, DistinctConfiguration().Spare);
  ProjectorDefinition projector = DistinctProjector();
  projector.Manufacturer = {};
  projector.Model = {};
  EXPECT_EQ(configuration.Projector, projector);
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
