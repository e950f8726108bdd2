// A definition with a distinct value in every field, and the places where the stored form has the fields. The
// places are written down here from the description of the files, not taken from the code.
#pragma once

#include "projectors/projector_definition.h"

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

template <class Record>
struct WordPlace {
  std::size_t Offset;
  std::string_view Name;
  std::int16_t Record::*Member;
  bool IsFlag = false;
};

inline const std::vector<WordPlace<ProjectorDefinition>> kProjectorWords = {
    {2046, "MaximumLevel", &ProjectorDefinition::MaximumLevel},
    {2048, "MinimumLevel", &ProjectorDefinition::MinimumLevel},
    {2050, "MessageFormat", &ProjectorDefinition::MessageFormat},
    {2052, "FirstByteIsHigh", &ProjectorDefinition::FirstByteIsHigh, true},
    {2054, "NumberOfBytes", &ProjectorDefinition::NumberOfBytes},
    {2056, "UseLevels", &ProjectorDefinition::UseLevels, true},
    {2058, "LevelStep", &ProjectorDefinition::LevelStep},
    {2060, "FixedStartLevel", &ProjectorDefinition::FixedStartLevel},
    {2062, "UsePowerDown", &ProjectorDefinition::UsePowerDown, true},
    {2068, "Baudrate", &ProjectorDefinition::Baudrate},
    {2070, "InterCommandDelay", &ProjectorDefinition::InterCommandDelay},
    {2072, "InterByteDelay", &ProjectorDefinition::InterByteDelay},
    {2074, "WarmUpTime", &ProjectorDefinition::WarmUpTime},
    {2076, "CoolDownTime", &ProjectorDefinition::CoolDownTime},
    {2078, "VolumeBytePosition", &ProjectorDefinition::VolumeBytePosition},
    {2080, "Parity", &ProjectorDefinition::Parity},
    {2082, "Stopbits", &ProjectorDefinition::Stopbits},
};

// The word that the distinct records hold at a stored offset: never 0, both signs, both bytes in use.
constexpr std::int16_t DistinctWord(std::size_t offset) {
  return static_cast<std::int16_t>((static_cast<int>(offset) * 7 + 301) * (offset % 4 == 0 ? 1 : -1));
}
constexpr std::uint8_t DistinctByte(std::size_t offset) {
  return static_cast<std::uint8_t>(offset * 31 + offset / 256 + 1);
}

template <std::size_t N>
void FillDistinct(FixedText<N>& text, std::size_t offset) {
  for (std::size_t i = 0; i < N; ++i) text.Characters[i] = CharacterOf(DistinctByte(offset + i));
}

inline ProjectorDefinition DistinctProjector() {
  ProjectorDefinition projector;
  FillDistinct(projector.Manufacturer, 0);
  FillDistinct(projector.Model, 32);
  FillDistinct(projector.Notes, 64);
  for (std::size_t i = 0; i < 25; ++i) projector.Available[i] = DistinctWord(320 + 2 * i);
  for (std::size_t i = 0; i < 13; ++i) projector.RequiresReply[i] = DistinctWord(370 + 2 * i);
  for (std::size_t slot = 0; slot < 25; ++slot) {
    SerialString& string = projector.Strings[slot];
    const std::size_t offset = 396 + 66 * slot;
    string.Count = DistinctWord(offset);
    for (std::size_t i = 0; i < 32; ++i) {
      string.Values[i] = DistinctByte(offset + 2 + i);
      string.Kinds[i] = DistinctByte(offset + 34 + i);
    }
  }
  projector.Reserved = {DistinctWord(2064), DistinctWord(2066)};
  for (const auto& word : kProjectorWords) projector.*word.Member = DistinctWord(word.Offset);
  return projector;
}

// The stored form of DistinctProjector(), laid out by offset.
inline Bytes DistinctProjectorBytes() {
  Bytes bytes(2084);
  const auto putWord = [&bytes](std::size_t offset) {
    bytes[offset] = static_cast<std::uint8_t>(DistinctWord(offset) & 0xFF);
    bytes[offset + 1] = static_cast<std::uint8_t>(DistinctWord(offset) >> 8 & 0xFF);
  };
  for (std::size_t offset = 0; offset < 320; ++offset) bytes[offset] = DistinctByte(offset);
  for (std::size_t offset = 320; offset < 396; offset += 2) putWord(offset);
  for (std::size_t offset = 396; offset < 2046; offset += 66) {
    putWord(offset);
    for (std::size_t i = 2; i < 66; ++i) bytes[offset + i] = DistinctByte(offset + i);
  }
  for (std::size_t offset = 2046; offset < 2084; offset += 2) putWord(offset);
  return bytes;
}

inline Bytes RandomBytes(std::mt19937& random, std::size_t size) {
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
  return bytes;
}

// A plain valid definition.
inline ProjectorDefinition NamedProjector(std::string_view manufacturer, std::string_view model) {
  ProjectorDefinition projector;
  projector.Manufacturer.AssignUtf8(manufacturer);
  projector.Model.AssignUtf8(model);
  return projector;
}

// One of ACME's, told from its namesakes by the warm-up time; and a library of such: "One 5".
inline ProjectorDefinition Timed(std::string_view model, int warmUp) {
  ProjectorDefinition projector = NamedProjector("ACME", model);
  projector.WarmUpTime = static_cast<std::int16_t>(warmUp);
  return projector;
}
inline std::vector<std::string> TimedModels(const std::vector<ProjectorDefinition>& library) {
  std::vector<std::string> models;
  for (const ProjectorDefinition& p : library)
    models.push_back(p.Model.TrimmedUtf8() + " " + std::to_string(p.WarmUpTime));
  return models;
}

// In use, with those bytes.
inline void Define(ProjectorDefinition& projector, std::size_t slot, const SerialString& string) {
  projector.Available[slot] = kFlagSet;
  projector.Strings[slot] = string;
}

}  // namespace qdm
