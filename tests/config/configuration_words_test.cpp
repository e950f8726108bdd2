#include "config/configuration_words.h"

#include "support/distinct_configuration.h"

#include <gmock/gmock.h>

#include <functional>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Lines(const PanelConfiguration& first, const PanelConfiguration& second) {
  std::vector<std::string> lines;
  for (const DifferenceText& difference : DifferencesInWords(first, second))
    lines.push_back(LineOf(difference));
  return lines;
}

TEST(ConfigurationsInWords, DifferInTheWordsOfTheWindow) {
  PanelConfiguration before;
  before.Projector = NamedProjector("ACME", "X 1");
  const struct {
    std::function<void(PanelConfiguration&)> Change;
    std::string Line;
  } cases[] = {
      {[](auto& c) { c.ControllerType = kTlVox; }, "Controller type: QDM 7 -> TL-VOX"},
      {[](auto& c) { c.ControllerType = 7; }, "Controller type: QDM 7 -> 7"},
      {[](auto& c) { c.OutputsOption = 4; },
       "Outputs: Disabled -> Use to control projector power and screen"},
      {[](auto& c) { c.ControlInputOption = 2; }, "Control input: Disabled -> Use as external power down"},
      {[](auto& c) { c.ControlInputActiveHigh = -1; }, "Input state when room occupied: Low -> High"},
      {[](auto& c) { c.VolumeMax = 300; }, "Maximum volume: 18 -> 300"},
      {[](auto& c) { c.NoButtonPowerDown = 3; }, "Turn off after no button presses for: off -> 3"},
      {[](auto& c) { c.UsePC1 = 0; }, "PC 1 (Data 1) in use: Yes -> No"},
      {[](auto& c) { c.LockSequence[1] = 5; }, "Second button of the unlock sequence: PC 1 -> Power"},
      {[](auto& c) { c.AudioRouting = 0x0230; },
       "Audio inputs: PC 1: rear PC input, PC 2: front audio jack, Video: rear Video input -> "
       "PC 1: front audio jack, PC 2: none, Video: rear Video input"},
      {[](auto& c) { c.AudioRouting = 0x2201; }, "AudioRouting: 513 -> 8705"},
      {[](auto& c) { c.Projector = NamedProjector("ACME", "X 2"); }, "Projector: ACME X 1 -> ACME X 2"},
      {[](auto& c) { c.Projector.Model = {}; }, "Projector: ACME X 1 -> none"},
      {[](auto& c) { c.Projector.Baudrate = 1; }, "Projector, Speed: 9600 -> 19200"},
      {[](auto& c) { c.Projector.Notes.AssignUtf8("new"); }, "Projector, Notes:  -> new"},
  };
  for (const auto& c : cases) {
    PanelConfiguration after = before;
    c.Change(after);
    EXPECT_THAT(Lines(before, after), ElementsAre(c.Line));
  }
  PanelConfiguration same = before;
  same.UsePC1 = 17;  // yes in other bits
  same.EditorMajor = 9;
  same.Spare[5] = 1;
  EXPECT_THAT(Lines(before, same), IsEmpty());
}

TEST(Warnings, NameButtonsThatThePanelDoesNotHave) {
  PanelConfiguration configuration;
  configuration.LockSequence = {kVolumeUpButton, kPc1Button, kPowerButton, 9};
  EXPECT_THAT(WarningsAbout(configuration),
              ElementsAre("Fourth button of the unlock sequence: button 9: not on a QDM 7"));
  configuration.LockSequence[3] = kVideoButton;
  EXPECT_EQ(WhyNotUnlocked(configuration), "");
  configuration.ControllerType = kQdm4;
  EXPECT_THAT(WarningsAbout(configuration),
              ElementsAre("First button of the unlock sequence: Volume up: not on a QDM 4"));
  EXPECT_EQ(WhyNotUnlocked(configuration), "The unlock sequence cannot be pressed on a QDM 4");
  configuration.ControllerType = kTlVox;
  EXPECT_EQ(WarningsAbout(configuration).size(), 2U) << "neither Video nor power";
}

}  // namespace
}  // namespace qdm
