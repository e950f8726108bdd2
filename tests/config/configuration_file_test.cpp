#include "config/configuration_file.h"

#include "support/distinct_configuration.h"
#include "support/files.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

TEST(ConfigurationFile, SaveLeavesNoTailAndSaveAsKeepsIt) {
  const TempFolder folder;
  const auto file = folder / "x.BVC";
  Bytes longer(4000, 0x55);
  WriteFileSafely(file, longer);

  WriteConfiguration(file, DistinctConfiguration(), OldTail::Kept);
  const Bytes record = Encode(DistinctConfiguration());
  std::copy(record.begin(), record.end(), longer.begin());
  EXPECT_EQ(ReadWholeFile(file), longer);
  EXPECT_EQ(ReadConfiguration(file), DistinctConfiguration());

  WriteConfiguration(file, DistinctConfiguration(), OldTail::Dropped);
  EXPECT_EQ(ReadWholeFile(file), record);
}

TEST(ConfigurationFile, AnyShorterFileIsRefusedWithBothSizes) {
  const TempFolder folder;
  const auto file = folder / "x.BVC";
  const Bytes record = Encode(DistinctConfiguration());
  WriteAndFlush(file, record);
  for (std::size_t length = record.size() - 1; length > 0; --length) {
    std::filesystem::resize_file(file, length);
    ASSERT_THROW(ReadConfiguration(file), FileError) << length;
  }
  EXPECT_EQ(FailureOf([&] { ReadConfiguration(file); }),
            "cannot read " + PathToUtf8(file) + ": a configuration has 3161 bytes, this file has 1");
  EXPECT_THROW(ReadConfiguration(folder / "none.BVC"), FileError);
}

TEST(ConfigurationFile, TheTitleIsTheNameWithoutFolderAndEnding) {
  const std::pair<const char*, const char*> cases[] = {
      {"/home/a/Room 4.BVC", "Room 4"},
      {"/a.b/c.d.bvc", "c.d"},
      {"/x/H\u00F6rsaal.BVC", "H\u00F6rsaal"},
      // Four characters go, whatever they are, and the first one where no folder stands before the name.
      {"/x/Raum\u00E4\u00F6\u00FC\u00DF", "Raum"},
      {"Room.BVC", "oom"},
      {"/x/BVC", ""},
      {"", ""},
  };
  for (const auto& [file, title] : cases) EXPECT_EQ(TitleOfFile(file), title);
}

TEST(ConfigurationFile, LookedAtAgainTellsWhatOthersDid) {
  using State = ConfigurationOnDisk::State;
  const TempFolder folder;
  const auto file = folder / "x.BVC";
  PanelConfiguration opened;
  const auto state = [&] { return LookAgain(file, opened).Is; };
  EXPECT_EQ(state(), State::Gone);
  WriteConfiguration(file, opened, OldTail::Dropped);
  EXPECT_EQ(state(), State::AsItWas);
  opened.UpTime = 9;
  EXPECT_EQ(state(), State::Changed);
  EXPECT_EQ(LookAgain(file, opened).Theirs, PanelConfiguration());
  WriteAndFlush(file, Bytes{1});
  EXPECT_EQ(state(), State::NoConfiguration);
}

}  // namespace
}  // namespace qdm
