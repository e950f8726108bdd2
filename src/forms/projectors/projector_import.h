// The import of a *.BVD file into the library, from the selector and from the command line of the editor.
#pragma once

#include <QString>

#include <cstddef>
#include <filesystem>
#include <optional>

class QWidget;

namespace qdm {

struct Globals;
class UserPrompts;

struct ImportedFile {
  std::optional<std::size_t> LastTaken;  // the element that was added or replaced last
  QString Told;  // "12 added, 3 replaced, 2 kept, 400 were there already"; may be empty
};

// A file that does not look like one of definitions is asked about first, and then each definition that
// differs from the library's of the same name; a file that cannot be read is reported. Nothing is saved to
// disk here.
ImportedFile ImportProjectorFile(Globals& globals, UserPrompts& prompts, QWidget* parent,
                                 const std::filesystem::path& file);

}  // namespace qdm
