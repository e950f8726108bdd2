// Libraries and rooms to measure with: definitions as installers have them, with strings and notes.
#pragma once

#include "config/panel_configuration.h"
#include "projectors/projector_library.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qdm::bench {

inline ProjectorDefinition Definition(std::size_t number, std::size_t manufacturers) {
  ProjectorDefinition projector;
  projector.Manufacturer.AssignUtf8("MANUFACTURER " + std::to_string(number % manufacturers));
  projector.Model.AssignUtf8("Model " + std::to_string(number));
  projector.Notes.AssignUtf8("Lens shift and zoom by hand; the lamp cools for two minutes.");
  for (SerialString& string : projector.Strings) {
    string.Count = 8;
    string.Values.fill(static_cast<std::uint8_t>(number));
  }
  return projector;
}

inline std::vector<ProjectorDefinition> Definitions(std::size_t first, std::size_t count,
                                                    std::size_t manufacturers) {
  std::vector<ProjectorDefinition> definitions;
  definitions.reserve(count);
  for (std::size_t i = 0; i < count; ++i) definitions.push_back(Definition(first + i, manufacturers));
  return definitions;
}

inline ProjectorLibrary LibraryOf(std::size_t count, std::size_t manufacturers = 100) {
  ProjectorLibrary library;
  library.Reserve(count);
  for (std::size_t i = 0; i < count; ++i) library.Append(Definition(i, manufacturers));
  return library;
}

// Every record of its image is sent.
inline PanelConfiguration FullRoom() {
  PanelConfiguration room;
  room.ControllerType = kQdm7;
  room.Projector.Manufacturer.AssignUtf8("ACME");
  room.Projector.Model.AssignUtf8("X 100");
  room.Projector.VolumeBytePosition = 0;
  room.Projector.Available.fill(kFlagSet);
  for (SerialString& string : room.Projector.Strings) {
    string.Count = 16;
    string.Values.fill(0x41);
  }
  for (std::size_t slot = 0; slot < 2; ++slot) room.Projector.Strings[slot].Count = 0;
  return room;
}

}  // namespace qdm::bench
