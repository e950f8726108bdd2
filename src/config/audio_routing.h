// `AudioRouting` packs the audio source of each projector input into 4-bit fields: bits 0-3 PC 1, 4-7 PC 2,
// 8-11 Video.
#pragma once

#include <array>
#include <cstdint>

namespace qdm {

enum class ProjectorInput { PC1 = 0, PC2 = 1, Video = 2 };
inline constexpr int kProjectorInputs = 3;

enum AudioSource : int { kFrontAudioJack = 0, kRearPcInput = 1, kRearVideoInput = 2, kNoAudioSource = 3 };

// The field of one input, masked as the panel's makers do it: bit 12 is let through and shifted down with the
// rest, so a record with odd high bits gives a value that selects no source.
constexpr int AudioSourceOf(std::int16_t routing, ProjectorInput input) {
  constexpr std::array<unsigned, kProjectorInputs> kMasks = {0x100F, 0x10F0, 0x1F00};
  const auto index = static_cast<unsigned>(input);
  return static_cast<int>((static_cast<std::uint16_t>(routing) & kMasks[index]) >> (4 * index));
}

constexpr std::int16_t PackAudioRouting(int pc1, int pc2, int video) {
  return static_cast<std::int16_t>((pc1 & 0xF) | (pc2 & 0xF) << 4 | (video & 0xF) << 8);
}

// Editors of the 1.1 series kept a single flag in this word.
constexpr std::int16_t MigrateAudioRouting(std::int16_t routing, std::int16_t editorMajor,
                                           std::int16_t editorMinor) {
  if (editorMajor != 1 || editorMinor != 1) return routing;
  return routing == -1 ? PackAudioRouting(kRearPcInput, kFrontAudioJack, kRearVideoInput)
                       : PackAudioRouting(kFrontAudioJack, kRearPcInput, kRearVideoInput);
}

}  // namespace qdm
