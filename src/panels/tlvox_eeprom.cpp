// The amplifier's layout of bytes 0..25. Bytes 17..25 stay 0xFF.
#include "panels/image_layout.h"

#include "config/panel_configuration.h"

#include <cstdlib>

namespace qdm {
namespace {

// The amplifier counts its levels down from 18 dB and drops the sign.
std::uint8_t LevelByte(std::string_view field, std::int16_t decibels) {
  const int below = FittingWord(field, decibels, decibels - 18);
  return FittingByte(field, decibels, std::abs(below));
}

std::uint8_t InputSources(std::int16_t routing) {
  return FittingByte("AudioRouting", routing, (routing & 0x00FF) + 17);
}

}  // namespace

PanelImage BuildTlvoxImage(const PanelConfiguration& c) {
  const ProjectorDefinition& p = c.Projector;
  PanelImage image;
  image.fill(0xFF);
  image[0] = static_cast<std::uint8_t>(Bit(c.AudioRouting, 1) | Bit(c.UsePC1, 2) | Bit(c.UsePC2, 4) |
                                       Bit(c.UseVideo, 8) | Bit(c.AudioTurnsOnAmplifier, 16) | 32);
  image[15] = InputSources(c.AudioRouting);
  image[16] = static_cast<std::uint8_t>(((c.AudioRouting & 0x1F00) >> 8) + 1);
  image[1] = FittingByte("TLVOXpowerDownTime", c.TLVOXpowerDownTime);
  image[11] = LevelByte("VolumeMax", c.VolumeMax);
  image[12] = LevelByte("VolumeMin", c.VolumeMin);
  image[13] = FittingByte("VolumeStep", c.VolumeStep);
  image[14] = LevelByte("PowerUpVolume", c.PowerUpVolume);
  image[2] = LockByte(Bit(c.LockOnFrontPanel, 1) | Bit(c.LockOnNoButton, 2) | Bit(c.LockUsingButtons, 8), c);
  image[3] = FittingByte("LockAfterProjectorOffPeriod", c.LockAfterProjectorOffPeriod);
  image[4] = ButtonPair(TlvoxInputCode(c.LockSequence[0]), TlvoxInputCode(c.LockSequence[1]));
  image[5] = ButtonPair(TlvoxInputCode(c.LockSequence[2]), TlvoxInputCode(c.LockSequence[3]));
  image[6] = ProjectorLineByte(p);
  image[7] = FittingByte("Projector.InterCommandDelay", p.InterCommandDelay);
  image[8] = FittingByte("Projector.InterByteDelay", p.InterByteDelay);
  image[9] = FittingByte("Projector.WarmUpTime", p.WarmUpTime);
  image[10] = FittingByte("Projector.CoolDownTime", p.CoolDownTime);
  WriteStringTable(image, p);
  return image;
}

}  // namespace qdm
