#include "command_line/message_text.h"

#include "base/file_access.h"

#include "command_line/json_writer.h"

#include <algorithm>

namespace qdm {

std::string TextOf(const Message& message) {
  std::string text = message.Text;
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

std::string TextOf(const FileError& error) {
  const std::string file = PathToUtf8(error.Path()) + ": ";
  if (dynamic_cast<const InUseError*>(&error) != nullptr) return file + error.Reason();
  return file + "cannot " + error.Operation() + ": " + error.Reason();
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char character : text) {
    if (static_cast<unsigned char>(character) >= 0x20) {
      line += character;
    } else {
      std::string quoted;
      AppendQuoted(quoted, {&character, 1});
      line += quoted.substr(1, quoted.size() - 2);
    }
  }
  return line;
}

}  // namespace qdm
