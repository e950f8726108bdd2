#include "config/configuration_file.h"

namespace qdm {
namespace {

#ifdef _WIN32
constexpr const char* kSeparators = "\\/";
#else
constexpr const char* kSeparators = "/";
#endif
constexpr std::size_t kExtensionLength = 4;

}  // namespace

PanelConfiguration ReadConfiguration(const std::filesystem::path& file) {
  const Bytes stored = ReadWholeFile(file);
  if (stored.size() < kStoredConfigurationSize) {
    throw FileError(file, "read",
                    "a configuration has " + std::to_string(kStoredConfigurationSize) +
                        " bytes, this file has " + std::to_string(stored.size()));
  }
  PanelConfiguration configuration;
  Decode(stored, configuration);
  return configuration;
}

void WriteConfiguration(const std::filesystem::path& file, const PanelConfiguration& configuration,
                        OldTail tail) {
  WriteFileSafely(file, Encode(configuration), tail);
}

std::string TitleOfFile(std::string_view fileName) {
  const std::size_t separator = fileName.find_last_of(kSeparators);
  const std::string_view base = fileName.substr(separator == std::string_view::npos ? 1 : separator + 1);
  return std::string(base.substr(0, base.size() - std::min(base.size(), kExtensionLength)));
}

std::string ProjectorLabelText(const ProjectorDefinition& projector) {
  return "Manufacturer = " + projector.Manufacturer.TrimmedUtf8() +
         "\nModel = " + projector.Model.TrimmedUtf8();
}

}  // namespace qdm
