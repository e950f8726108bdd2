#include "projector_bench/typed_command.h"

#include "base/words.h"
#include "serial_strings/text_parser.h"

namespace qdm {
namespace {

std::string Words(const TextReading& reading) {
  return HexBytes(reading.String) + " (" + SayEach(reading.As) + ")";
}

std::string WhyRefused(const ParsedText& parsed) {
  if (parsed.Problem) return ProblemText(*parsed.Problem);
  if (parsed.Readings.size() > 1) {
    return Say("can be read as %1 or as %2: write PWR<CR> for characters, 0x50 0x57 0x0D for bytes",
               {Words(parsed.Readings[0]), Words(parsed.Readings[1])});
  }
  return Say("doubtful: %1",
             {parsed.Notes.empty() ? Words(parsed.Readings.front()) : Say(parsed.Notes.front())});
}

}  // namespace

TypedCommand ReadTypedCommand(std::u16string_view text) {
  const ParsedText parsed = ParseSerialText(text);
  if (parsed.Readings.empty() || parsed.NeedsChoice()) return {std::nullopt, WhyRefused(parsed)};
  return {parsed.Readings.front().String, Words(parsed.Readings.front())};
}

}  // namespace qdm
