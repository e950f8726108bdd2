#include "config/configuration_sentences.h"

#include "config/configuration_file.h"
#include "support/distinct_configuration.h"
#include "support/files.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every value that an option's control can give, the ends of numbers, and one that no control gives.
const std::pair<std::string, std::vector<int>> kOptions[] = {
    {"OutputsOption", {0, 1, 2, 3, 4, 5}},
    {"UpTime", {1, 255}},
    {"DownTime", {1, 255}},
    {"ScreenUseVolume", {0, -1}},
    {"AllowVolumeWhenOff", {0, -1}},
    {"ControlInputOption", {0, 1, 2, 3, 4}},
    {"ControlInputActiveHigh", {0, -1, 7}},
    {"RoomTimeout", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 255}},
    {"ThresholdVoltage", {0, 128, 255}},
    {"LockOnFrontPanel", {0, -1}},
    {"LockOnExternalPowerDown", {0, -1}},
    {"LockOnRoomEmpty", {0, -1}},
    {"LockUsingButtons", {0, -1}},
    {"LockAfterProjectorOffPeriod", {0, 255}},
    {"LockAfterRoomEmptyPeriod", {0, 255}},
    {"NoButtonPowerDown", {0, 1, 10}},
    {"LockOnNoButton", {0, -1}},
    {"VolumeMin", {-45, 18}},
    {"VolumeMax", {-6, 18}},
    {"VolumeStep", {1, 6}},
    {"PowerUpVolume", {-6, 18}},
    {"AudioTurnsOnAmplifier", {0, -1}},
    {"TLVOXpowerDownTime", {1, 15}},
    {"AudioRouting", {0x000, 0x111, 0x222, 0x333}},
    {"LockSequence[1]", {0, 1, 2, 3, 4, 5, 6}},
    {"Projector.Baudrate", {0, 1, 2, 3, 4, 5}},
    {"Projector.Parity", {0, 1, 2, 3}},
    {"Projector.Stopbits", {0, -1}},
    {"Projector.InterCommandDelay", {0, 255}},
    {"Projector.WarmUpTime", {0, 255}},
    {"Projector.CoolDownTime", {0, 255}},
    {"UsePC1", {0, -1}},
    {"UsePC2", {0, -1}},
    {"UseVideo", {0, -1}},
};

// With everything switched on, so that each option has its say.
PanelConfiguration EverythingOn(std::int16_t type, std::int16_t outputs, std::int16_t input) {
  PanelConfiguration c = ReadConfiguration(PathFromUtf8(QDM_SOURCE_DIR "/examples/Boardroom QDM7.BVC"));
  c.ControllerType = type;
  c.OutputsOption = outputs;
  c.ControlInputOption = input;
  c.LockOnFrontPanel = c.LockOnExternalPowerDown = c.LockOnRoomEmpty = c.LockUsingButtons = kFlagSet;
  c.LockOnNoButton = c.ScreenUseVolume = c.AllowVolumeWhenOff = kFlagSet;
  c.NoButtonPowerDown = 5;
  c.LockSequence = {2, 3, 2, 3};
  return c;
}

std::string Listed(const ConfigurationWords& words, const std::vector<std::string>& without = {}) {
  std::string text;
  const auto list = [&](const std::vector<std::string>& lines, const std::string& mark) {
    for (const std::string& line : lines) {
      if (std::find(without.begin(), without.end(), line) == without.end()) text += mark + line + "\n";
    }
  };
  list(words.Sentences, "  ");
  list(words.Remarks, "  ! ");
  return text;
}

// What each value of each option changes in the words, for every type.
std::string AllWords() {
  std::string text;
  for (const std::int16_t type : {kQdm7, kQdm6, kQdm4, kTlVox, ControllerTypeValue(9)}) {
    const PanelConfiguration base = EverythingOn(type, kOutputsScreen, kControlInputRoomPir);
    const PanelConfiguration other = EverythingOn(type, kOutputsVolume, kControlInputExternalPowerDown);
    text += "== type " + std::to_string(type) + "\n" + Listed(InWords(base)) + "-- other uses\n" +
            Listed(InWords(other), InWords(base).Sentences);
    for (const auto& [option, values] : kOptions) {
      for (const int value : values) {
        PanelConfiguration changed = option == "AllowVolumeWhenOff" ? other : base;
        std::vector<std::string> before = InWords(changed).Sentences;
        std::ranges::copy(InWords(changed).Remarks, std::back_inserter(before));
        (option == "LockSequence[1]" ? changed.LockSequence[1] : WordNamed(changed, option)) =
            static_cast<std::int16_t>(value);
        text += option + " = " + std::to_string(value) + "\n" + Listed(InWords(changed), before);
      }
    }
  }
  return text;
}

TEST(ConfigurationSentences, OfEveryOptionValueOfEveryTypeAreThoseThatWereRead) {
  ExpectGolden("config/golden/words.txt", AllWords());
}

TEST(ConfigurationSentences, RemarkOnWhatMakesNoSenseTogether) {
  const PanelConfiguration sound =
      ReadConfiguration(PathFromUtf8(QDM_SOURCE_DIR "/examples/Boardroom QDM7.BVC"));
  const auto remarks = [&](auto change) {
    PanelConfiguration c = sound;
    change(c);
    return InWords(c).Remarks;
  };
  EXPECT_THAT(InWords(sound).Remarks, IsEmpty());
  EXPECT_THAT(remarks([](auto& c) {
                c.ControllerType = kQdm4, c.ScreenUseVolume = 0, c.LockSequence[1] = kPc1Button;
              }),
              ElementsAre("The unlock sequence cannot be pressed on a QDM 4. First button of the unlock "
                          "sequence: Volume up: not on a QDM 4."));
  EXPECT_THAT(remarks([](auto& c) { c.ControllerType = kQdm4, c.LockUsingButtons = 0; }),
              ElementsAre("The volume buttons are to raise and lower the screen, but a QDM 4 has none."));
  EXPECT_THAT(remarks([](auto& c) { c.LockSequence[3] = 6, c.LockUsingButtons = 0; }), IsEmpty());
  EXPECT_THAT(remarks([](auto& c) { c.ControlInputOption = 0, c.LockOnRoomEmpty = 0; }),
              ElementsAre("A room sensor threshold of 3.00 V is set, but the control input is disabled."));
  EXPECT_THAT(remarks([](auto& c) { c.UsePC1 = -1, c.Projector.Available[kData1Slot] = 0; }),
              ElementsAre("PC 1 is in use, but the projector has no command \"Data 1\"."));
  EXPECT_THAT(remarks([](auto& c) { c.Projector.WarmUpTime = 0; }),
              ElementsAre("The projector's warm-up time is 0, which no projector has."));
  EXPECT_THAT(remarks([](auto& c) { c.Projector.Model = {}; }),
              ElementsAre("Cannot proceed, no projector has been defined!"));
}

}  // namespace
}  // namespace qdm
