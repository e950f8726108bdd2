// The clipboard of serial strings, which all displays and the editor share. Copying also puts the compact
// text on the system's clipboard; text that comes from elsewhere is read as a string, and where it can be
// read in several ways the user chooses.
#pragma once

#include "serial_strings/string_record.h"

#include <cstddef>
#include <optional>

class QWidget;

namespace qdm {

struct Globals;
struct SerialString;
class UserPrompts;

void CopyString(Globals& globals, const SerialString& string);

// What is to be pasted into `slot`; nothing when it cannot be (the user has been told why) or was not wanted.
std::optional<SerialString> StringToPaste(QWidget* parent, Globals& globals, UserPrompts& prompts,
                                          std::size_t slot);

}  // namespace qdm
