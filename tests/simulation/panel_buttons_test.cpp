// The whole road on one desk: configuration, panel memory, command on the projector's line, reply.
#include "simulation/panel_buttons.h"

#include "config/configuration_file.h"
#include "panels/image_reading.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/stand_in.h"
#include "projectors/projector_volume.h"
#include "support/bench_lines.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace qdm {
namespace {

std::vector<PanelConfiguration> Examples() {
  std::vector<PanelConfiguration> examples;
  for (const auto& entry : std::filesystem::directory_iterator(QDM_SOURCE_DIR "/examples")) {
    if (entry.path().extension() == ".BVC") examples.push_back(ReadConfiguration(entry.path()));
  }
  return examples;
}

TEST(PanelButtons, EveryCommandOfEveryExampleArrivesAsTheDefinitionHasIt) {
  const std::vector<PanelConfiguration> examples = Examples();
  ASSERT_EQ(examples.size(), 4U);
  for (const PanelConfiguration& example : examples) {
    const ProjectorDefinition& projector = example.Projector;
    auto buttons = PanelButtons::Of(BuildPanelImage(example), example.ControllerType);
    ASSERT_TRUE(buttons);
    EXPECT_EQ(buttons->LineSettings(), BenchLineSettings(projector));
    VirtualTime time;
    StandIn standIn(projector);
    BenchLine line(time, [&](std::uint8_t byte, const std::string&) {
      standIn.Receive({&byte, 1}, time.Now());
      return std::pair(standIn.TakeAnswers(time.Now()), Microseconds(0));
    });
    buttons->Press(standIn.Expected(), line, time, {});
    standIn.Advance(time.Now() + std::chrono::seconds(1));
    EXPECT_TRUE(standIn.Missing().empty()) << ChecklistText(standIn);
    EXPECT_EQ(standIn.Expected(), buttons->Available());
    for (const HeardCommand& heard : standIn.Heard()) {
      ASSERT_TRUE(heard.Command) << HexText(heard.Data);
      EXPECT_FALSE(heard.TooSoon || heard.BytesTooClose) << NameOf(heard);
      const SerialString& string = projector.Strings[*heard.Command];
      StringTrial trial = TrialOf(projector, string);
      trial.Level.reset();
      if (heard.Level) trial.Level = LevelBytes(VolumeFormatOf(projector), *heard.Level);
      EXPECT_EQ(heard.Data, BytesOnLine(trial));
    }
  }
}

TEST(PanelButtons, AMemoryWithoutStringsHasNone) {
  PanelImage memory;
  memory.fill(0xFF);
  EXPECT_FALSE(PanelButtons::Of(memory, kQdm7));
  memory.fill(1);
  memory[511] = 32;
  EXPECT_TRUE(ProjectorInImage(memory, kTlVox));
}

}  // namespace
}  // namespace qdm
