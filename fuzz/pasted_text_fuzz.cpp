// Any text that is pasted as a command, and the string's own text forms.
#include "base/code_page.h"
#include "fuzz/fuzzing.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

namespace qdm {
namespace {

void Look(std::string_view utf8) {
  const std::u16string text = FromUtf8(utf8);
  const ParsedText parsed = ParseSerialText(text);
  Demand(parsed.Problem || !parsed.Readings.empty() || text.empty(), "a text is read or refused");
  if (parsed.Problem) Demand(parsed.Problem->Position <= text.size(), "a problem stands in the text");
  for (const TextReading& reading : parsed.Readings) {
    Demand(reading.String.Count >= 1 && reading.String.Count <= 32, "a reading has 1 to 32 bytes");
    for (const std::uint8_t kind : reading.String.Kinds)
      Demand(kind < kByteKinds, "a reading has real kinds");
    static_cast<void>(CompactText(reading.String));
  }
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({reinterpret_cast<const char*>(data), size});
  return 0;
}
