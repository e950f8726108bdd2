// *.BVC: one stored PanelConfiguration, nothing else. What a longer file holds behind the record is ignored.
// File trouble, a file shorter than one record included, is a FileError.
#pragma once

#include "base/file_access.h"
#include "base/words.h"
#include "config/panel_configuration.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace qdm {

inline constexpr const char* kConfigurationFileFilter = Marked("Brevan QDM Configuration (*.BVC)|*.BVC");

PanelConfiguration ReadConfiguration(const std::filesystem::path& file);

// Save writes a file of exactly one record; Save As over a longer file keeps the bytes behind it.
void WriteConfiguration(const std::filesystem::path& file, const PanelConfiguration& configuration,
                        OldTail tail);

// What became of a configuration's file since it was read or saved as `asItWas`.
struct ConfigurationOnDisk {
  enum class State { AsItWas, Changed, Gone, NoConfiguration };
  State Is = State::AsItWas;
  PanelConfiguration Theirs{};  // what it holds where it was changed
};
ConfigurationOnDisk LookAgain(const std::filesystem::path& file, const PanelConfiguration& asItWas);

// What the title bar shows of a file name: the text after the last separator without its last four
// characters. A name without a separator loses its first character. UTF-8.
std::string TitleOfFile(std::string_view fileName);

// Projector, "Manufacturer = ...", line feed, "Model = ...".
std::string ProjectorLabelText(const ProjectorDefinition& projector);

}  // namespace qdm
