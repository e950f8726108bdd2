// The shared records of the editor: one struct, owned by main and handed to the forms by reference.
#pragma once

#include "config/panel_configuration.h"
#include "panels/panel_image.h"
#include "projectors/projector_library.h"
#include "serial_strings/string_record.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace qdm {

struct Globals {
  std::filesystem::path DataFolder;     // where Projectors.DEF lives
  std::filesystem::path ProgramFolder;  // help file, licence text

  ProjectorLibrary ProjectorDatabase;
  // Why the library could not be saved when the selector closed, where nothing is lost by that; else empty.
  std::string LibraryNotice;
  // The definition that the selector, the setup dialog and the replace dialogs pass to one another.
  ProjectorDefinition CurrentProjector;
  // What the setup dialog holds and has not stored; no function while there is none.
  std::function<std::optional<ProjectorDefinition>()> UnstoredProjector;
  // The program ends: what is not saved has been kept, and nobody is there to be asked.
  bool Leaving = false;
  // The last definition that was copied or cut; blank names until then.
  ProjectorDefinition ClipboardProjector;

  // The string slot of CurrentProjector that the string editor and the test console work on, 0..24.
  std::int16_t CurrentSlot = 0;
  SerialString ClipboardString;
  SerialString ReceivedReply;
  // 1-based place of the VAR byte in the string being edited; 0 none, -1 not yet determined.
  std::int16_t VariableBytePosition = -1;

  PanelImage Image{};
};

}  // namespace qdm
