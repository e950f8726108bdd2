// The amplifier's layout of the bytes before the table of strings.
#include "panels/image_fields.h"

#include "config/panel_configuration.h"

#include <cstdint>
#include <cstdlib>

namespace qdm {
namespace {

using C = PanelConfiguration;

constexpr InputCodes TlvoxInputCode = {4, 5, 2, 3, 0};

std::uint16_t AudioInputs(const ImageField&, const C& c) {
  return static_cast<std::uint16_t>(Bit(c.AudioRouting, 1) | Bit(c.UsePC1, 2) | Bit(c.UsePC2, 4) |
                                    Bit(c.UseVideo, 8) | Bit(c.AudioTurnsOnAmplifier, 16) | 32);
}

std::uint16_t SourcesOfThePCs(const ImageField& field, const C& c) {
  return FittingByte(field.Name, c.AudioRouting, (c.AudioRouting & 0x00FF) + 17);
}

std::uint16_t SourceOfVideo(const ImageField&, const C& c) {
  return static_cast<std::uint16_t>(((c.AudioRouting & 0x1F00) >> 8) + 1);
}

// The amplifier counts its levels down from 18 dB and drops the sign.
template <std::int16_t C::*Decibels>
std::uint16_t Level(const ImageField& field, const C& c) {
  const int below = FittingWord(field.Name, c.*Decibels, c.*Decibels - 18);
  return FittingByte(field.Name, c.*Decibels, std::abs(below));
}

std::uint16_t TlvoxLocks(const ImageField&, const C& c) {
  return LockByte(Bit(c.LockOnFrontPanel, 1) | Bit(c.LockOnNoButton, 2) | Bit(c.LockUsingButtons, 8), c);
}

constexpr ImageRow kTlvoxRows[] = {
    {0,
     {1, "AudioInputs", "32 (+ 1 routed, 2 PC 1, 4 PC 2, 8 Video, 16 audio turns on)",
      "AudioRouting, UsePC1, UsePC2, UseVideo, AudioTurnsOnAmplifier", AudioInputs}},
    {15,
     {1, "AudioRouting", "audio sources of PC 1 and, x 16, of PC 2, each plus one", "AudioRouting",
      SourcesOfThePCs}},
    {16, {1, "AudioRouting of Video", "audio source of Video, plus one", "AudioRouting", SourceOfVideo}},
    {1, PlainByte<&C::TLVOXpowerDownTime>("TLVOXpowerDownTime", "power down time without audio")},
    {11, {1, "VolumeMax", "maximum volume in dB away from 18", "VolumeMax", Level<&C::VolumeMax>}},
    {12, {1, "VolumeMin", "minimum volume in dB away from 18", "VolumeMin", Level<&C::VolumeMin>}},
    {13, PlainByte<&C::VolumeStep>("VolumeStep", "volume step in dB")},
    {14,
     {1, "PowerUpVolume", "power up volume in dB away from 18", "PowerUpVolume", Level<&C::PowerUpVolume>}},
    {2,
     {1, "NoButtonPowerDown", "locks (1 front panel, 2 no button, 8 buttons); time out x 16",
      "LockOnFrontPanel, LockOnNoButton, LockUsingButtons, NoButtonPowerDown", TlvoxLocks}},
    {3, kLockAfterProjectorOff},
    {4, kFirstButtons<TlvoxInputCode>},
    {5, kLastButtons<TlvoxInputCode>},
    {6, kProjectorLineField},
    {7, kInterCommandDelay},
    {8, kInterByteDelay},
    {9, kWarmUpTime},
    {10, kCoolDownTime},
};
static_assert(StandApart(kTlvoxRows));

}  // namespace

constexpr ImageLayout kTlvoxLayout = kTlvoxRows;

}  // namespace qdm
