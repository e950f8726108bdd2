#include "config/configuration_rules.h"

#include "support/distinct_projector.h"

#include <gmock/gmock.h>

#include <functional>

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
      {kTlVox, -6, 18, -6, "One", nullptr},      {kTlVox, 18, -6, 30, " ", kNoProjector},
      {kQdm6, -45, 18, 12, "", kNoProjector},    {kQdm6, 18, -6, 30, "One", nullptr},
      {kQdm7, 18, -6, 30, "One", nullptr},       {kQdm4, 18, -6, 30, "One", nullptr},
      {-1, 18, -6, 30, "One", nullptr},          {4, 18, -6, 30, "One", nullptr},
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
    const std::optional<Message> refusal = CheckConfiguration(configuration);
    const std::optional<Message> expected =
        c.Refusal == nullptr ? std::nullopt
                             : std::optional(Message{c.Refusal, "Sorry", MessageIcon::Exclamation});
    EXPECT_EQ(refusal, expected) << c.Type << " " << c.Minimum << ".." << c.Maximum << " " << c.PowerUp;
  }
}

TEST(CheckConfiguration, StoresTheTrimmedNames) {
  PanelConfiguration configuration;
  configuration.Projector = NamedProjector("  ACME", " One two");
  EXPECT_EQ(CheckConfiguration(configuration), std::nullopt);
  EXPECT_EQ(configuration.Projector.Manufacturer.Unpadded(), u"ACME");
  EXPECT_EQ(configuration.Projector.Model.Unpadded(), u"One two");
  configuration.Projector.Manufacturer = {};
  EXPECT_NE(CheckConfiguration(configuration), std::nullopt);
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
         e.LockFrameTwips = 1935;
       }},
      {"QDM 4", [](auto& s) { s.ControllerType = kQdm4; }, [](auto&) {}},
      {"audio turns on", [](auto& s) { s.AudioTurnsOn = true; }, [](auto& e) { e.PowerDownTime = true; }},
      {"screen", [](auto& s) { s.OutputsOption = 1; },
       [](auto& e) { e.ScreenTimes = e.ScreenUseVolume = true; }},
      {"volume", [](auto& s) { s.OutputsOption = 2; }, [](auto& e) { e.AllowVolumeWhenOff = true; }},
      {"lift", [](auto& s) { s.OutputsOption = 3; }, [](auto& e) { e.LiftTimes = true; }},
      {"power and screen", [](auto& s) { s.OutputsOption = 4; },
       [](auto& e) { e.PowerAndScreenTimes = true; }},
      {"keyswitch with room-empty lock",
       [](auto& s) {
         s.ControlInputOption = 1;
         s.LockOnRoomEmpty = true;
       },
       [](auto&) {}},
      {"room sensor", [](auto& s) { s.ControlInputOption = 3; }, [](auto& e) { e.RoomSensor = true; }},
      {"room sensor with lock",
       [](auto& s) {
         s.ControlInputOption = 3;
         s.LockOnRoomEmpty = true;
       },
       [](auto& e) { e.RoomSensor = e.LockOnRoomEmptyPeriod = true; }},
      {"front panel lock", [](auto& s) { s.LockOnFrontPanel = true; },
       [](auto& e) { e.LockOnFrontPanelPeriod = true; }},
  };
  for (const auto& c : cases) {
    OptionSelections selected;
    selected.OutputsOption = selected.ControlInputOption = -1;
    c.Selected(selected);
    OptionStates expected;
    expected.LockFrameTwips = 3135;
    c.Expected(expected);
    EXPECT_EQ(StatesFor(selected), expected) << c.Case;
  }
}

TEST(OutputTimeLabels, DifferBetweenShowingAndEditingOnlyForTheLift) {
  const struct {
    int Option;
    std::string_view Up, Down, EditedUp;
  } cases[] = {
      {1, "Screen rise time", "Sreen lower time", "Screen rise time"},
      {3, "Lift/screen raise time", "Lift lower time", "Lift/Screen raise time"},
      {4, "Screen rise time", "Projector power up time", "Screen rise time"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LabelsWhenShown(c.Option).Up, c.Up);
    EXPECT_EQ(LabelsWhenShown(c.Option).Down, c.Down);
    EXPECT_EQ(LabelsWhenEdited(c.Option).Up, c.EditedUp);
    EXPECT_EQ(LabelsWhenEdited(c.Option).Down, c.Down);
  }
}

}  // namespace
}  // namespace qdm
