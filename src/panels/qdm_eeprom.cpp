// The QDM panels' layout of the bytes before the table of strings.
#include "base/words.h"
#include "panels/image_fields.h"

#include <cstdint>

namespace qdm {
namespace {

using C = PanelConfiguration;
using P = ProjectorDefinition;

constexpr InputCodes QdmInputCode = {7, 6, 2, 3, 4};

constexpr std::uint16_t kUnused = 0xFF;

int UseOfOutputs(const C& c) {
  switch (c.OutputsOption) {
    case kOutputsDisabled:
      return 0;
    case kOutputsScreen:
      return 1 | Bit(c.ScreenUseVolume, 2);
    case kOutputsVolume:
      return 4 | Bit(c.AllowVolumeWhenOff, 8);
    case kOutputsLift:
    case kOutputsPowerAndScreen:
      return 16;
    default:
      return kUnused;
  }
}

// A use that is unknown is 255, which has no room for the 64.
std::uint16_t Outputs(const ImageField& field, const C& c) {
  return FittingByte(field.Name, c.OutputsOption, UseOfOutputs(c) + Bit(c.LockOnNoButton, 64));
}

template <std::int16_t C::*Seconds>
std::uint16_t OutputTime(const ImageField& field, const C& c) {
  const bool moves = c.OutputsOption == kOutputsScreen || c.OutputsOption == kOutputsLift ||
                     c.OutputsOption == kOutputsPowerAndScreen;
  return moves ? FittingByte(field.Name, c.*Seconds, c.*Seconds) : kUnused;
}

std::uint16_t ControlInput(const ImageField& field, const C& c) {
  const std::uint8_t use = FittingByte(field.Name, c.ControlInputOption, c.ControlInputOption);
  const bool activeHigh = c.ControlInputOption == kControlInputKeyswitch ||
                          (c.ControlInputOption == kControlInputRoomPir && c.ControlInputActiveHigh != 0);
  return static_cast<std::uint16_t>(use | (activeHigh ? 16 : 0));
}

std::uint16_t Threshold(const ImageField& field, const C& c) {
  constexpr std::uint16_t kWithoutSensor = 128;
  return c.ControlInputOption == kControlInputRoomPir
             ? FittingByte(field.Name, c.ThresholdVoltage, c.ThresholdVoltage)
             : kWithoutSensor;
}

std::uint16_t QdmLocks(const ImageField&, const C& c) {
  return LockByte(Bit(c.LockOnFrontPanel, 1) | Bit(c.LockOnExternalPowerDown, 2) | Bit(c.LockOnRoomEmpty, 4) |
                      Bit(c.LockUsingButtons, 8),
                  c);
}

std::uint16_t StartLevel(const ImageField&, const C& c) {
  const P& p = c.Projector;
  return static_cast<std::uint16_t>(p.UsePowerDown != 0 ? p.MinimumLevel : p.FixedStartLevel);
}

std::uint16_t VolumeFormat(const ImageField& field, const C& c) {
  const P& p = c.Projector;
  const int flags = Bit(p.UseLevels, 4) | Bit(p.UsePowerDown, 8) | Bit(p.FirstByteIsHigh, 16) |
                    (p.MinimumLevel < 0 ? 32 : 0) | (p.MessageFormat == 1 ? 64 : 0) |
                    (p.MessageFormat == 2 ? 128 : 0);
  const int lessOne = FittingWord(field.Name, p.NumberOfBytes, p.NumberOfBytes - 1);
  return static_cast<std::uint16_t>(FittingByte(field.Name, p.NumberOfBytes, lessOne) | flags);
}

std::uint16_t VolumeBytePosition(const ImageField& field, const C& c) {
  const std::int16_t position = c.Projector.VolumeBytePosition;
  if (position == -1) {
    throw ImageError(field.Name, position,
                     Say("not yet determined; open the projector in the setup dialog and press Done"));
  }
  return FittingByte(field.Name, position, position);
}

constexpr ImageRow kQdmRows[] = {
    {0,
     {1, "OutputsOption", "use of the outputs (+ 64 lock without a button press)",
      "OutputsOption, ScreenUseVolume, AllowVolumeWhenOff, LockOnNoButton", Outputs}},
    {1, {1, "UpTime", "output up time in s", "UpTime, OutputsOption", OutputTime<&C::UpTime>}},
    {2, {1, "DownTime", "output down time in s", "DownTime, OutputsOption", OutputTime<&C::DownTime>}},
    {3,
     {1, "ControlInputOption", "use of the control input (+ 16 active when high)",
      "ControlInputOption, ControlInputActiveHigh", ControlInput}},
    {4,
     {1, "ThresholdVoltage", "threshold of the room sensor in counts of 5 V / 255",
      "ThresholdVoltage, ControlInputOption", Threshold}},
    {5, PlainByte<&C::RoomTimeout>("RoomTimeout", "room empty timeout in minutes")},
    {6,
     {1, "NoButtonPowerDown", "locks (1 front panel, 2 external, 4 room, 8 buttons); time out x 16",
      "LockOnFrontPanel, LockOnExternalPowerDown, LockOnRoomEmpty, LockUsingButtons, NoButtonPowerDown",
      QdmLocks}},
    {7, kLockAfterProjectorOff},
    {8, PlainByte<&C::LockAfterRoomEmptyPeriod>("LockAfterRoomEmptyPeriod", "lock timeout after room empty")},
    {9, kFirstButtons<QdmInputCode>},
    {10, kLastButtons<QdmInputCode>},
    {11, kProjectorLineField},
    {12, kInterCommandDelay},
    {13, kInterByteDelay},
    {14, kWarmUpTime},
    {15, kCoolDownTime},
    {16, PlainWord<&P::MaximumLevel>("Projector.MaximumLevel", "volume: highest level")},
    {18, PlainWord<&P::MinimumLevel>("Projector.MinimumLevel", "volume: lowest level")},
    {20, PlainWord<&P::LevelStep>("Projector.LevelStep", "volume: step")},
    {22,
     {2, "Projector.FixedStartLevel", "volume: level at power up",
      "Projector.FixedStartLevel, Projector.MinimumLevel, Projector.UsePowerDown", StartLevel}},
    {24,
     {1, "Projector.NumberOfBytes", "volume: bytes - 1 (+ 4 levels, 8 off, 16 high, 32 < 0, 64 dec, 128 raw)",
      "Projector.NumberOfBytes, Projector.UseLevels, Projector.UsePowerDown, Projector.FirstByteIsHigh, "
      "Projector.MinimumLevel, Projector.MessageFormat",
      VolumeFormat}},
    {25,
     {1, "Projector.VolumeBytePosition", "volume: place of the variable byte", "Projector.VolumeBytePosition",
      VolumeBytePosition}},
};
static_assert(StandApart(kQdmRows));

}  // namespace

constexpr ImageLayout kQdmLayout = kQdmRows;

}  // namespace qdm
