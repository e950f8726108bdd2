#include "config/configuration_file.h"

#include "base/words.h"

#include <cstddef>
#include <string_view>

namespace qdm {
namespace {

#ifdef _WIN32
constexpr const char16_t* kSeparators = u"\\/";
#else
constexpr const char16_t* kSeparators = u"/";
#endif
constexpr std::size_t kExtensionLength = 4;

}  // namespace

PanelConfiguration ReadConfiguration(const std::filesystem::path& file) {
  const Bytes stored = ReadBeginning(file, kStoredConfigurationSize);
  if (stored.size() < kStoredConfigurationSize) {
    throw FileError(file, "read",
                    Say("a configuration has %1 bytes, this file has %2",
                        {std::to_string(kStoredConfigurationSize), std::to_string(stored.size())}));
  }
  PanelConfiguration configuration;
  Decode(stored, configuration);
  return configuration;
}

void WriteConfiguration(const std::filesystem::path& file, const PanelConfiguration& configuration,
                        OldTail tail) {
  WriteFileSafely(file, Encode(configuration), tail);
}

ConfigurationOnDisk LookAgain(const std::filesystem::path& file, const PanelConfiguration& asItWas) {
  using State = ConfigurationOnDisk::State;
  try {
    if (!FileExists(file)) return {State::Gone};
    const PanelConfiguration theirs = ReadConfiguration(file);
    // As stored: a character that has no code is another one on the disk.
    return {Encode(theirs) == Encode(asItWas) ? State::AsItWas : State::Changed, theirs};
  } catch (const FileError&) {
    return {State::NoConfiguration};
  }
}

std::string TitleOfFile(std::string_view fileName) {
  const std::u16string name = FromUtf8(fileName);
  const std::size_t separator = name.find_last_of(kSeparators);
  const std::size_t start = separator == std::u16string::npos ? 1 : separator + 1;
  if (start + kExtensionLength >= name.size()) return {};
  return ToUtf8(std::u16string_view(name).substr(start, name.size() - kExtensionLength - start));
}

std::string ProjectorLabelText(const ProjectorDefinition& projector) {
  return Say("Manufacturer = %1\nModel = %2",
             {projector.Manufacturer.TrimmedUtf8(), projector.Model.TrimmedUtf8()});
}

}  // namespace qdm
