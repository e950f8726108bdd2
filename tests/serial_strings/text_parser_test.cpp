#include "serial_strings/text_parser.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"
#include "support/random_seed.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace qdm {
namespace {

using enum ByteKind;

ParsedText Parse(std::string_view utf8) { return ParseSerialText(FromUtf8(utf8)); }

// "02 0D | 30 32": the bytes of each reading, the likely one first.
std::string Readings(std::string_view utf8) {
  std::string text;
  for (const TextReading& reading : Parse(utf8).Readings) {
    text += (text.empty() ? "" : " | ") + HexBytes(reading.String);
  }
  return text;
}

SerialString Likely(std::string_view utf8) {
  const ParsedText parsed = Parse(utf8);
  return parsed.Readings.empty() ? SerialString{} : parsed.Readings.front().String;
}

TEST(TextParser, ReadsTheNotationsOfManuals) {
  const std::pair<const char*, SerialString> cases[] = {
      {"0x02,0x0D", String({{2, HEX}, {13, HEX}})},
      {"$02 &H0d 0FFh", String({{2, HEX}, {13, HEX}, {255, HEX}})},
      {"0b101 1101b 013d", String({{5, BIN}, {13, BIN}, {13, DEC}})},
      {"\"PWR\" 0D", String({{'P'}, {'W'}, {'R'}, {13, HEX}})},
      {"'A\\r',0x03", String({{'A'}, {13, CNT}, {3, HEX}})},
      {"\\x02PWR\\r", String({{2, HEX}, {'P'}, {'W'}, {'R'}, {13, CNT}})},
      {"<on>[CR]{LF}<0A>", String({{'<'}, {'o'}, {'n'}, {'>'}, {13, CNT}, {10, CNT}, {10, HEX}})},
      {"VOL,Variable,Ignore", String({{'V'}, {'O'}, {'L'}, {0, VAR}, {0, IGN}})},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(Likely(text), expected) << text;
}

struct Notation {
  const char* Text;
  const char* Bytes;  // of the likely reading
};

TEST(TextParser, TakesWithoutAQuestionWhatCanBeMeantInOneWayOnly) {
  const Notation cases[] = {
      {"0x02,0x0D", "02 0D"},
      {"02H 00H 0DH", "02 00 0D"},
      {"0x3A-0x3B-0x0D", "3A 3B 0D"},
      {"[0x02][0x0D]", "02 0D"},
      {"PWR ON<CR>", "50 57 52 20 4F 4E 0D"},
      {"\\x02PON\\x03", "02 50 4F 4E 03"},
      {"PON<CR+LF>", "50 4F 4E 0D 0A"},
      {"[STX]PON[ETX]", "02 50 4F 4E 03"},
      {"\xE2\x90\x82PON\xE2\x90\x83", "02 50 4F 4E 03"},
      {"%1POWR   1\\r\r\n", "25 31 50 4F 57 52 20 20 20 31 0D"},
      {"(PWR1)", "28 50 57 52 31 29"},
      {"PON<CR> ", "50 4F 4E 0D"},
  };
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(Readings(text), bytes) << text;
    EXPECT_FALSE(Parse(text).NeedsChoice()) << text;
  }
}

TEST(TextParser, AsksForTheRestTheMeantReadingFirst) {
  const Notation cases[] = {
      // bytes and what parts them
      {"3A52540D", "3A 52 54 0D"},
      {"3A.52:54-0D", "3A 52 54 0D"},
      {"02\t00\t0D", "02 00 0D"},
      {"x02 H00 (0Dh)", "02 00 0D"},
      {"byte on[] = { 0x02, 0x0D };", "02 0D"},
      {"2 80 79 78 13", "02 50 4F 4E 0D"},
      {"254 1 200", "FE 01 C8"},
      {"00000010 01010000", "02 50"},
      {"x'02 50',0D", "02 50 0D"},
      {"O2 5O OD", "02 50 0D"},
      // codes beside characters
      {"^BPON^C", "02 50 4F 4E 03"},
      {"STX P O N ETX", "02 50 4F 4E 03"},
      {"<STX> PON <ETX>", "02 50 4F 4E 03"},
      {"PON 0x0D", "50 4F 4E 0D"},
      {"PON(CR) (0Dh)", "50 4F 4E 0D"},
      {"PON [0D]", "50 4F 4E 0D"},
      {"PON<13>", "50 4F 4E 0D"},
      {"PON\\15", "50 4F 4E 0D"},
      {"PON + CR/LF", "50 4F 4E 0D 0A"},
      {"VOL+<CR>", "56 4F 4C 2B 0D"},
      {"%1AVMT 31\\r", "25 31 41 56 4D 54 20 33 31 0D"},
      {"CHR$(2)+\"PON\" & Chr(&H0D)", "02 50 4F 4E 0D"},
      {"\"'PON',$0D\"", "50 4F 4E 0D"},
      {"'PON'#13", "50 4F 4E 0D"},
      {"Send(\"PON\\r\");", "50 4F 4E 0D"},
      // what stands beside the command
      {"Hex: 02 10", "02 10"},
      {"Decimal: 02 10", "02 0A"},
      {"Power on: PON<CR>  // on", "50 4F 4E 0D"},
      {"Power on\tPON<CR>", "50 4F 4E 0D"},
      {"Power on 02 50 0D", "02 50 0D"},
      {"50 4F 4E (PON)", "50 4F 4E"},
      {"PON<CR> switches it on", "50 4F 4E 0D"},
      {"e.g. PON<CR>", "50 4F 4E 0D"},
      {"// 02 50 0D", "02 50 0D"},
      {"50 0D\n51 0D", "50 0D"},
      {"50\n0D", "50 0D"},
      {" PON ", "50 4F 4E"},
  };
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(HexBytes(Likely(text)), bytes) << text;
    EXPECT_TRUE(Parse(text).NeedsChoice()) << text;
    EXPECT_FALSE(Parse(text).OnlyDoubtful()) << text;
  }
}

TEST(TextParser, FoldsTypographyAndSaysSo) {
  const Notation cases[] = {
      {"02\u00a000\u200b 0D", "02 00 0D"},
      {"02\u201300\u2013\u00ad0D", "02 00 0D"},
      {"\u201cPON\u201d<CR>", "50 4F 4E 0D"},
      {"\uff30\uff2f\uff2e", "50 4F 4E"},
      {"\u041e\ufb00", "4F 66 66"},
      {"P\u2423N&lt;CR&gt;", "50 20 4E 0D"},
      {"0\u00d70D,0x02", "0D 02"},
      {"\u00a5x02PON", "02 50 4F 4E"},
  };
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(HexBytes(Likely(text)), bytes) << text;
    EXPECT_FALSE(Parse(text).Notes.empty()) << text;
    EXPECT_TRUE(Parse(text).NeedsChoice()) << text;
  }
}

TEST(TextParser, DoubtsWhatStandsForSomethingElse) {
  for (const char* text : {"BE EF XX XX 01",
                           "VOL nn<CR>",
                           "VOLn<CR>",
                           "<STX><CMD><ETX>",
                           "<STX>PON<ETX>CS",
                           "~XX00 1<CR>",
                           "VOL%02d\\r",
                           "0xAA,ID,DATA,0x0D",
                           "PWR ON/OFF<CR>",
                           "VOL 0-100",
                           "PON or POFF",
                           "02 50 ...",
                           "VOL [level]\\r",
                           "Turn it on",
                           "0x02 0x??",
                           "caf\u00e9",
                           "PON*1",
                           "PON=0D",
                           "n.a.",
                           "VOL $1\\r",
                           "$%&"}) {
    EXPECT_TRUE(Parse(text).OnlyDoubtful() && Parse(text).NeedsChoice()) << text;
  }
  EXPECT_EQ(ProblemText(Parse("\ufb00 XX").Problem.value()),
            "Character 3: \"XX\" seems to stand for something else.")
      << "counted in the text as it was";
}

TEST(TextParser, GivesEveryReadingTheLikelyOneFirst) {
  EXPECT_EQ(Readings("0Dh"), "0D | 30 44 68");
  EXPECT_EQ(Readings("10"), "31 30 | 10 | 0A");
  EXPECT_EQ(Readings("123"), "31 32 33") << "three digits alone are no byte";
  EXPECT_EQ(Readings("<FF>"), "0C | FF | 3C 46 46 3E");
  EXPECT_EQ(Readings("02,00,0Dh"), "02 00 0D | 30 32 2C 30 30 0D | 30 32 2C 30 30 2C 30 44 68");
}

TEST(TextParser, SaysAtWhichCharacterAndWhyItCannotRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "Character 1: there is no text."},
      {"02 0G 03", "Character 4: \"0G\" is not a byte."},
      {"0x02 0x100", "Character 6: \"0x100\" is not a byte."},
      {"A\\xG", "Character 2: \"\\x\" needs one or two hexadecimal digits."},
      {"CRc,ERRORc", "Character 5: \"ERRORc\" stands for a control code without a name."},
      {"PWR\xE2\x98\x83", "Character 4: the character has no code of one byte."},
      {"PWR\x01X", "Character 4: a control character (01h)."},
      {"123456789012345678901234567890123", "Character 33: more than 32 bytes."},
  };
  for (const auto& [text, problem] : cases) {
    const ParsedText parsed = Parse(text);
    ASSERT_TRUE(parsed.Problem) << text;
    EXPECT_EQ(ProblemText(*parsed.Problem), problem);
    EXPECT_TRUE(parsed.Readings.empty() || parsed.NeedsChoice()) << "never taken unseen: " << text;
  }
}

// Any bytes, with what a text cannot tell left out: values of VAR and IGN bytes, characters and control codes
// without a text of their own.
TEST(TextParser, CompactTextGivesItsStringBack) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
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
    ASSERT_THAT(Parse(text).Readings, testing::Contains(testing::Truly(sameText))) << text;
    if (plain) {
      ASSERT_EQ(Likely(text), string);
    }
  }
}

// Texts put together from pieces of every notation.
TEST(TextParser, SurvivesAnything) {
  constexpr std::u16string_view kPieces[] = {
      u"0",    u"9",  u"F",   u"g",     u"h",        u"d",      u"b",      u"0x",
      u"$",    u"&H", u"\\x", u"\\7",   u"<",        u">",      u"[",      u"]",
      u"<CR>", u"{",  u"STX", u"CRc",   u"Variable", u"Ignore", u"ERRORc", u",",
      u" ",    u"\t", u"\"",  u"'",     u"0Dh,",     u"€",      u"\xD800", u"(",
      u")",    u"#",  u"^M",  u"CHR$(", u"\n",       u"–",      u"PON ",   u"|",
      u"+",    u": ", u"XX",  u"&#",    u"%",        u"\\",     u"-",      std::u16string_view(u"\0", 1)};
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  std::u16string text;
  std::size_t accepted = 0;
  for (int i = 0; i < 20'000; ++i) {
    text.clear();
    for (std::size_t pieces = random() % 10; pieces > 0; --pieces)
      text += kPieces[random() % std::size(kPieces)];
    if (i % 1000 == 0) text.resize(random() % 2000, static_cast<char16_t>(random()));
    const ParsedText parsed = ParseSerialText(text);
    ASSERT_TRUE(parsed.Problem || !parsed.Readings.empty()) << ToUtf8(text);
    ASSERT_LE(parsed.Problem.value_or(TextProblem{}).Position, text.size()) << ToUtf8(text);
    for (const TextReading& reading : parsed.Readings) {
      ASSERT_TRUE(reading.String.Count >= 1 && reading.String.Count <= 32) << ToUtf8(text);
      ASSERT_LT(*std::max_element(reading.String.Kinds.begin(), reading.String.Kinds.end()), kByteKinds);
    }
    accepted += parsed.Readings.size();
  }
  EXPECT_GT(accepted, 2'000U) << "the texts are not all nonsense";
}

}  // namespace
}  // namespace qdm
