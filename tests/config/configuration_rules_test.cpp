#include "config/configuration_rules.h"

#include "support/distinct_projector.h"

#include <gmock/gmock.h>

#include <functional>
#include <utility>

namespace qdm {
namespace {

TEST(CheckConfiguration, RefusesInItsOrder) {
  constexpr const char* kNoProjector = "Cannot proceed, no projector has been defined!";
  constexpr const char* kMaximum = "Cannot proceed, Maximum volume is less than or equal to minimum!";
  constexpr const char* kPowerUpHigh = "Cannot proceed, Power up volume is more than maximum!";
  constexpr const char* kPowerUpLow = "Cannot proceed, Power up volume is less than minimum!";
  const struct {
    std::int16_t Type;
    std::int16_t Minimum, Maximum, PowerUp;
    const char* Model;
    const char* Refusal;
  } cases[] = {
      {kTlVox, -45, 18, 12, "One", nullptr},     {kTlVox, -6, 18, 18, "One", nullptr},
      {kQdm6, -45, 18, 12, "", kNoProjector},    {kQdm6, 18, -6, 30, "One", nullptr},
      {kQdm7, 18, -6, 30, "One", nullptr},       {kQdm4, 18, -6, 30, "One", nullptr},
      {kTlVox, 18, -6, 30, "One", kMaximum},     {kTlVox, 5, 5, 5, "One", kMaximum},
      {kTlVox, -6, 18, 19, "One", kPowerUpHigh}, {kTlVox, -6, 18, -7, "One", kPowerUpLow},
  };
  for (const auto& c : cases) {
    PanelConfiguration configuration;
    configuration.Projector = NamedProjector("ACME", c.Model);
    configuration.ControllerType = c.Type;
    configuration.VolumeMin = c.Minimum;
    configuration.VolumeMax = c.Maximum;
    configuration.PowerUpVolume = c.PowerUp;
    std::optional<Message> expected;
    if (c.Refusal != nullptr) expected = Message{c.Refusal, "Sorry", MessageIcon::Exclamation};
    EXPECT_EQ(CheckConfiguration(configuration), expected)
        << c.Type << " " << c.Minimum << ".." << c.Maximum << " " << c.PowerUp;
  }
}

// The selections that differ from "everything off, nothing selected" and the states that they switch on.
TEST(OptionStates, FollowTheSelections) {
  using Select = std::function<void(OptionSelections&)>;
  using Expect = std::function<void(OptionStates&)>;
  const struct {
    const char* Case;
    Select Selected;
    Expect Expected;
  } cases[] = {
      {"nothing", [](auto&) {}, [](auto&) {}},
      {"no button", [](auto& s) { s.TurnOffNoButton = true; },
       [](auto& e) { e.NoButtonTimeOut = e.LockNoButton = true; }},
      {"TL-VOX", [](auto& s) { s.ControllerType = kTlVox; },
       [](auto& e) {
         e.AmplifierLayout = true;
         e.LockButtons = {true, true, true, true, false, false};
       }},
      {"QDM 4", [](auto& s) { s.ControllerType = kQdm4; },
       [](auto& e) { e.LockButtons = {false, false, true, true, true, true}; }},
      {"audio turns on", [](auto& s) { s.AudioTurnsOn = true; }, [](auto& e) { e.PowerDownTime = true; }},
      {"screen", [](auto& s) { s.OutputsOption = 1; },
       [](auto& e) { e.ScreenTimes = e.ScreenUseVolume = true; }},
      {"volume", [](auto& s) { s.OutputsOption = 2; }, [](auto& e) { e.AllowVolumeWhenOff = true; }},
      {"lift", [](auto& s) { s.OutputsOption = 3; }, [](auto& e) { e.LiftTimes = true; }},
      {"power and screen", [](auto& s) { s.OutputsOption = 4; },
       [](auto& e) { e.PowerAndScreenTimes = true; }},
      {"room sensor", [](auto& s) { s.ControlInputOption = 3; }, [](auto& e) { e.RoomSensor = true; }},
      {"room sensor with lock",
       [](auto& s) {
         s.ControlInputOption = 3;
         s.LockOnRoomEmpty = true;
       },
       [](auto& e) { e.RoomSensor = e.LockOnRoomEmptyPeriod = true; }},
      {"front panel lock", [](auto& s) { s.LockOnFrontPanel = true; },
       [](auto& e) { e.LockOnFrontPanelPeriod = true; }},
      {"PC 1", [](auto& s) { s.UsePC1 = true; }, [](auto& e) { e.PC1Audio = true; }},
      {"PC 2", [](auto& s) { s.UsePC2 = true; }, [](auto& e) { e.PC2Audio = true; }},
      {"video", [](auto& s) { s.UseVideo = true; }, [](auto& e) { e.VideoAudio = true; }},
  };
  for (const auto& c : cases) {
    OptionSelections selected;
    selected.OutputsOption = selected.ControlInputOption = -1;
    c.Selected(selected);
    OptionStates expected;
    expected.LockButtons.fill(true);
    c.Expected(expected);
    EXPECT_EQ(StatesFor(selected), expected) << c.Case;
  }
}

TEST(OptionStates, SayWhatTheyNeedInTheOrderInWhichItIsChosen) {
  OptionSelections selected;
  selected.OutputsOption = selected.ControlInputOption = -1;
  const std::pair<bool OptionStates::*, const char*> needs[] = {
      {&OptionStates::NoButtonTimeOut, "Turn off after no button presses for"},
      {&OptionStates::LockNoButton, "Turn off after no button presses for"},
      {&OptionStates::PowerDownTime, "Audio input turns on amplifier."},
      {&OptionStates::ScreenTimes, "Use to control screen"},
      {&OptionStates::ScreenUseVolume, "Use to control screen"},
      {&OptionStates::LiftTimes, "Use to control projector lift      and screen"},
      {&OptionStates::PowerAndScreenTimes, "Use to control projector power and screen"},
      {&OptionStates::AllowVolumeWhenOff, "Use to control volume using ZRB-LX or similar"},
      {&OptionStates::RoomSensor, "Use as room PIR power down"},
      {&OptionStates::LockOnFrontPanelPeriod, "Lock on front panel off"},
      {&OptionStates::PC1Audio, "PC 1 (Data 1) in use"},
      {&OptionStates::PC2Audio, "PC 2 (Data 2) in use"},
      {&OptionStates::VideoAudio, "Video in use"}};
  for (const auto& [option, caption] : needs) EXPECT_EQ(NeedOf(StatesFor(selected), option), caption);
  const auto need = [&] { return NeedOf(StatesFor(selected), &OptionStates::LockOnRoomEmptyPeriod); };
  EXPECT_EQ(need(), "Use as room PIR power down");
  selected.ControlInputOption = kControlInputRoomPir;
  EXPECT_EQ(need(), "Lock on room empty");
  selected.LockOnRoomEmpty = true;
  EXPECT_EQ(need(), "");
}

}  // namespace
}  // namespace qdm
