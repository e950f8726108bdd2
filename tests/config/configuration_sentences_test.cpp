#include "config/configuration_sentences.h"

#include "base/file_access.h"
#include "config/audio_routing.h"
#include "config/configuration_file.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace qdm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using P = PanelConfiguration;

struct Option {
  std::string Name;
  std::function<std::int16_t&(P&)> Field;
  std::vector<int> Values;
};

// Every value that an option's control can give, the ends of numbers, and one that no control gives.
const std::vector<Option> kOptions = {
    {"OutputsOption", &P::OutputsOption, {0, 1, 2, 3, 4, 5}}, {"UpTime", &P::UpTime, {1, 255}},
    {"DownTime", &P::DownTime, {1, 255}}, {"ScreenUseVolume", &P::ScreenUseVolume, {0, -1}},
    {"AllowVolumeWhenOff", &P::AllowVolumeWhenOff, {0, -1}},
    {"ControlInputOption", &P::ControlInputOption, {0, 1, 2, 3, 4}},
    {"ControlInputActiveHigh", &P::ControlInputActiveHigh, {0, -1, 7}},
    {"RoomTimeout", &P::RoomTimeout, {1, 255}}, {"ThresholdVoltage", &P::ThresholdVoltage, {0, 128, 255}},
    {"LockOnFrontPanel", &P::LockOnFrontPanel, {0, -1}},
    {"LockOnExternalPowerDown", &P::LockOnExternalPowerDown, {0, -1}},
    {"LockOnRoomEmpty", &P::LockOnRoomEmpty, {0, -1}}, {"LockUsingButtons", &P::LockUsingButtons, {0, -1}},
    {"LockAfterProjectorOffPeriod", &P::LockAfterProjectorOffPeriod, {0, 255}},
    {"LockAfterRoomEmptyPeriod", &P::LockAfterRoomEmptyPeriod, {0, 255}},
    {"NoButtonPowerDown", &P::NoButtonPowerDown, {0, 1, 10}}, {"LockOnNoButton", &P::LockOnNoButton, {0, -1}},
    {"VolumeMin", &P::VolumeMin, {-45, 18}}, {"VolumeMax", &P::VolumeMax, {-6, 18}},
    {"VolumeStep", &P::VolumeStep, {1, 6}}, {"PowerUpVolume", &P::PowerUpVolume, {-6, 18}},
    {"AudioTurnsOnAmplifier", &P::AudioTurnsOnAmplifier, {0, -1}},
    {"TLVOXpowerDownTime", &P::TLVOXpowerDownTime, {1, 15}},
    {"AudioRouting",
     &P::AudioRouting,
     {PackAudioRouting(0, 0, 0), PackAudioRouting(1, 1, 1), PackAudioRouting(2, 2, 2),
      PackAudioRouting(3, 3, 3)}},
    {"LockSequence", [](P& c) -> auto& {return c.LockSequence[1];
}  // namespace
, { 0, 1, 2, 3, 4, 5, 6 }
}  // namespace qdm
, {"Baudrate", [](P& c) -> auto& {return c.Projector.Baudrate;
}
, { 0, 1, 2, 3, 4, 5 }
}
, {"Parity", [](P& c) -> auto& {return c.Projector.Parity;
}
, { 0, 1, 2, 3 }
}
, {"Stopbits", [](P& c) -> auto& {return c.Projector.Stopbits;
}
, { 0, -1 }
}
, {"InterCommandDelay", [](P& c) -> auto& {return c.Projector.InterCommandDelay;
}
, { 0, 255 }
}
, {"WarmUpTime", [](P& c) -> auto& {return c.Projector.WarmUpTime;
}
, { 0, 255 }
}
, {"CoolDownTime", [](P& c) -> auto& {return c.Projector.CoolDownTime;
}
, { 0, 255 }
}
, {"UsePC1", &P::UsePC1, {0, -1}}, {"UsePC2", &P::UsePC2, {0, -1}}, {"UseVideo", &P::UseVideo, {0, -1}},
}
;

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
    for (const Option& option : kOptions) {
      for (const int value : option.Values) {
        const bool ofOther = option.Name == "AllowVolumeWhenOff";
        PanelConfiguration changed = ofOther ? other : base;
        std::vector<std::string> before = InWords(changed).Sentences;
        std::ranges::copy(InWords(changed).Remarks, std::back_inserter(before));
        option.Field(changed) = static_cast<std::int16_t>(value);
        const std::string words = Listed(InWords(changed), before);
        text += option.Name + " = " + std::to_string(value) + "\n" + words;
      }
    }
  }
  return text;
}

// QDM_WRITE_GOLDEN=1 writes the file anew; read the difference before committing it.
TEST(ConfigurationSentences, OfEveryOptionValueOfEveryTypeAreThoseThatWereRead) {
  const std::filesystem::path golden = PathFromUtf8(QDM_SOURCE_DIR "/tests/config/golden/words.txt");
  const std::string words = AllWords();
  if (std::getenv("QDM_WRITE_GOLDEN") != nullptr) WriteFileSafely(golden, Bytes(words.begin(), words.end()));
  const Bytes read = ReadWholeFile(golden);
  EXPECT_EQ(words, std::string(read.begin(), read.end()));
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
