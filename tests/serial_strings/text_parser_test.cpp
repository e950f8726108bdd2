#include "serial_strings/text_parser.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"
#include "support/files.h"
#include "support/seeded_random.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

namespace qdm {
namespace {

using enum ByteKind;

// "PON,CRc = 50 4F 4E 0D (characters and codes) | ...": every reading, "~" for a doubtful one; then "?" where
// the user has to choose, the problem and the notes.
std::string Told(const ParsedText& parsed) {
  std::string told;
  for (const TextReading& reading : parsed.Readings) {
    told += (told.empty() ? "" : " | ") + CompactText(reading.String) + " = " + HexBytes(reading.String) +
            " (" + reading.As + ")" + (reading.Part.empty() ? "" : " of " + reading.Part) +
            (reading.Doubtful ? " ~" : "");
  }
  if (parsed.NeedsChoice()) told += parsed.OnlyDoubtful() ? " ?~" : " ?";
  if (parsed.Problem) told += " ! " + ProblemText(*parsed.Problem);
  for (const std::string& note : parsed.Notes) told += "; " + note;
  return told;
}

// Tabs and line ends are drawn.
std::u16string Pasted(const std::string& drawn) {
  std::u16string text = FromUtf8(drawn);
  for (const auto& [sign, meant] : {std::pair(u'\u21E5', u'\t'), {u'\u23CE', u'\n'}})
    std::replace(text.begin(), text.end(), sign, meant);
  return text;
}

// A text is added to the file with nothing behind its arrow; then see ExpectGolden.
TEST(TextParser, ReadsEveryTextAsItAlwaysHas) {
  constexpr std::string_view kArrow = "  =>  ";
  constexpr const char* kFile = "serial_strings/golden/readings.txt";
  std::istringstream lines(TextOfFile(PathFromUtf8(QDM_SOURCE_DIR "/tests") / kFile));
  std::string told;
  for (std::string line; std::getline(lines, line); told += line + "\n") {
    const std::size_t arrow = line.find(kArrow);
    if (arrow == std::string::npos) continue;
    line.resize(arrow + kArrow.size());
    line += Told(ParseSerialText(Pasted(line.substr(0, arrow))));
  }
  ExpectGolden(kFile, told);
}

// Any bytes, with what a text cannot tell left out: values of VAR and IGN bytes, characters and control codes
// without a text of their own.
TEST(TextParser, CompactTextGivesItsStringBack) {
  SeededRandom random;
  for (int round = 0; round < 1'000; ++round) {
    // The letters i to r form no byte and no control code's name, as "us" does: with them alone the first
    // reading must be the string.
    const bool plain = round % 2 == 0;
    SerialString string;
    string.Count = static_cast<std::int16_t>(1 + random() % 32);
    for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
      const auto kind = static_cast<ByteKind>(random() % kByteKinds);
      const unsigned letters = plain ? 10 : 95;
      const unsigned end = kind == ASC ? letters : kind == CNT ? 32 : kind == VAR || kind == IGN ? 1 : 256;
      const unsigned first = kind != ASC ? 0 : plain ? 105 : 32;  // "i", blank
      string.Values[i] = static_cast<std::uint8_t>(first + random() % end);
      string.Kinds[i] = static_cast<std::uint8_t>(kind);
    }
    const std::string text = CompactText(string);
    const auto sameText = [&text](const TextReading& reading) { return CompactText(reading.String) == text; };
    const auto readings = ParseSerialText(FromUtf8(text)).Readings;
    ASSERT_THAT(readings, testing::Contains(testing::Truly(sameText))) << text;
    if (plain) {
      ASSERT_EQ(readings.front().String, string);
    }
  }
}

}  // namespace
}  // namespace qdm
