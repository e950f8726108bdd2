// The import of a *.BVD file into the library, from the selector and from the command line of the editor.
#pragma once

#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"

#include <cstddef>
#include <filesystem>
#include <optional>

class QWidget;

namespace qdm {

struct Globals;
class UserPrompts;

// Each definition that differs from the library's of the same name is asked about; a file that cannot be read
// is reported. Nothing is saved to disk here. The index of the element that was added or replaced last.
std::optional<std::size_t> ImportProjectorFile(Globals& globals, UserPrompts& prompts, QWidget* parent,
                                               const std::filesystem::path& file);

}  // namespace qdm
