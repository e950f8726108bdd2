#include "serial_strings/text_parser.h"

#include "serial_strings/code_page.h"
#include "serial_strings/paste_rule.h"
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
  struct {
    const char* Text;
    SerialString Expected;
  } const cases[] = {
      {"02 00 0Dh", String({{2, HEX}, {0, HEX}, {13, HEX}})},
      {"0x02,0x0D", String({{2, HEX}, {13, HEX}})},
      {"0x02, 0x0D;", String({{2, HEX}, {13, HEX}})},
      {"$02 &H0d 0FFh", String({{2, HEX}, {13, HEX}, {255, HEX}})},
      {"be 02 ef", String({{0xBE, HEX}, {2, HEX}, {0xEF, HEX}})},
      {"128 255", String({{128, DEC}, {255, DEC}})},
      {"0b101 1101b 013d", String({{5, BIN}, {13, BIN}, {13, DEC}})},
      {"STX 30 31 ETX", String({{2, CNT}, {0x30, HEX}, {0x31, HEX}, {3, CNT}})},
      {"<STX>\t30\r\n<etx>\r\n", String({{2, CNT}, {0x30, HEX}, {3, CNT}})},
      {"\"PWR ON\" 0D", String({{'P'}, {'W'}, {'R'}, {' '}, {'O'}, {'N'}, {13, HEX}})},
      {"'A\\r',0x03", String({{'A'}, {13, CNT}, {3, HEX}})},
      {"\\x02PWR\\r", String({{2, HEX}, {'P'}, {'W'}, {'R'}, {13, CNT}})},
      {"\\x2G\\015\\\\", String({{2, HEX}, {'G'}, {13, HEX}, {'\\'}})},
      {"PWR ON<CR>", String({{'P'}, {'W'}, {'R'}, {' '}, {'O'}, {'N'}, {13, CNT}})},
      {"<on>[CR]{LF}<0A>", String({{'<'}, {'o'}, {'n'}, {'>'}, {13, CNT}, {10, CNT}, {10, HEX}})},
      {"PWR,CRc", String({{'P'}, {'W'}, {'R'}, {13, CNT}})},
      {"VOL,Variable,Ignore", String({{'V'}, {'O'}, {'L'}, {0, VAR}, {0, IGN}})},
      {"PWR ON", Characters("PWR ON")},
      {"PWR ON\r\n", Characters("PWR ON")},
      {" ", Characters(" ")},
      {"*1%", Characters("*1%")},
  };
  for (const auto& c : cases) EXPECT_EQ(Likely(c.Text), c.Expected) << c.Text;
}

TEST(TextParser, GivesEveryReadingTheLikelyOneFirst) {
  EXPECT_EQ(Readings("0Dh"), "0D | 30 44 68");
  EXPECT_EQ(Readings("10 20"), "10 20 | 0A 14 | 31 30 20 32 30");
  EXPECT_EQ(Readings("10"), "31 30 | 10 | 0A");
  EXPECT_EQ(Readings("<FF>"), "0C | FF | 3C 46 46 3E");
  EXPECT_EQ(Readings("<13>"), "13 | 0D | 3C 31 33 3E");
  EXPECT_EQ(Readings("02,00,0Dh"), "02 00 0D | 30 32 2C 30 30 0D | 30 32 2C 30 30 2C 30 44 68");
  EXPECT_EQ(Readings("12,CRc"), "31 32 0D | 12 0D | 0C 0D | 31 32 2C 43 52 63");
  EXPECT_EQ(Readings("1b,02h"), "01 02 | 1B 02 | 31 62 2C 30 32 68");
  EXPECT_EQ(Readings("POWER"), "50 4F 57 45 52");
  EXPECT_FALSE(Parse("POWER").NeedsChoice());
  EXPECT_TRUE(Parse("0Dh").NeedsChoice());
}

TEST(TextParser, SaysAtWhichCharacterAndWhyItCannotRead) {
  struct {
    const char* Text;
    const char* Problem;
  } const cases[] = {
      {"", "Character 1: there is no text."},
      {"02 0G 03", "Character 4: \"0G\" is not a byte."},
      {"0x02 0x100", "Character 6: \"0x100\" is not a byte."},
      {"02h 300d", "Character 5: \"300d\" is not a byte."},
      {"0x02,,0x03", "Character 6: nothing before the comma."},
      {"0x02 \"PWR", "Character 6: the quotation mark is not closed."},
      {"0x02 \"A\"03", "Character 9: a blank or a comma is missing."},
      {"A\\xG", "Character 2: \"\\x\" needs one or two hexadecimal digits."},
      {"C:\\dir", "Character 3: \"\\d\" is not an escape."},
      {"\\777", "Character 1: \"\\777\" is more than 255."},
      {"A\\", "Character 2: \"\\\" is not an escape."},
      {"02h,ERRORc", "Character 5: \"ERRORc\" stands for a control code without a name."},
      {"PWR\xE2\x98\x83", "Character 4: the character has no code of one byte."},
      {"PWR\x01X", "Character 4: a control character (01h)."},
      {"PWR\x7F", "Character 4: the display writes every control character like this one."},
      {"123456789012345678901234567890123", "Character 33: more than 32 bytes."},
  };
  for (const auto& c : cases) {
    const ParsedText parsed = Parse(c.Text);
    ASSERT_TRUE(parsed.Problem) << c.Text;
    EXPECT_EQ(ProblemText(*parsed.Problem), c.Problem) << c.Text;
    EXPECT_TRUE(parsed.Readings.empty() || parsed.NeedsChoice())
        << "a text with a problem is never taken unseen";
  }
  EXPECT_EQ(Readings("02 0G"), "30 32 20 30 47");
}

TEST(TextParser, BytesAreCountedNotCharacters) {
  std::string list;
  for (int i = 0; i < 32; ++i) list += "<STX> ";
  EXPECT_EQ(Likely(list).Count, 32);
  list += "0x03";
  EXPECT_TRUE(Parse(list).Readings.empty());
  EXPECT_EQ(ProblemText(*Parse(list).Problem), "Character 193: more than 32 bytes.");
}

// A random string, with what its text cannot tell left out: values of VAR and IGN bytes, characters and
// control codes that have no text of their own.
SerialString RandomString(std::mt19937& random, std::string_view characters) {
  const auto below = [&random](std::size_t end) { return random() % end; };
  SerialString string;
  string.Count = static_cast<std::int16_t>(1 + below(32));
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const auto kind = static_cast<ByteKind>(below(kByteKinds));
    string.Kinds[i] = static_cast<std::uint8_t>(kind);
    const std::size_t value = kind == ASC   ? static_cast<std::uint8_t>(characters[below(characters.size())])
                              : kind == CNT ? below(32)
                              : kind == VAR || kind == IGN ? 0
                                                           : below(256);
    string.Values[i] = static_cast<std::uint8_t>(value);
  }
  return string;
}

std::string AllCharacters() {
  std::string characters;
  for (int code = 32; code < 256; ++code) {
    if (code != 127) characters.push_back(static_cast<char>(code));
  }
  return characters;
}

TEST(TextParser, CompactTextGivesItsStringBack) {
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  // Lower-case letters form no byte and no escape, so there the first reading must be the string.
  constexpr std::string_view kPlain = "gijklmnopqrstuvwxyz";
  const std::string all = AllCharacters();
  for (int i = 0; i < 5000; ++i) {
    const SerialString plain = RandomString(random, kPlain);
    ASSERT_EQ(Likely(CompactText(plain)), plain);

    const SerialString any = RandomString(random, all);
    const auto sameText = [&any](const TextReading& reading) {
      return CompactText(reading.String) == CompactText(any);
    };
    const ParsedText parsed = Parse(CompactText(any));
    ASSERT_THAT(parsed.Readings, testing::Contains(testing::Truly(sameText))) << CompactText(any);
    if (parsed.NeedsChoice()) continue;
    ASSERT_EQ(parsed.Readings.front().String, any) << CompactText(any);
  }
}

TEST(TextParser, EveryByteOfEveryKindComesBack) {
  for (const ByteKind kind : {ASC, HEX, DEC, BIN, CNT}) {
    for (int value = kind == ASC ? 32 : 0; value < (kind == CNT ? 32 : 256); ++value) {
      const SerialString string = String({{'x'}, {value, kind}});
      EXPECT_EQ(Likely(CompactText(string)), string) << CompactText(string);
    }
  }
}

// A million texts, put together from pieces of every notation.
TEST(TextParser, SurvivesAnything) {
  constexpr std::u16string_view kPieces[] = {
      u"0",   u"1",    u"9",   u"F",      u"g",        u"h",      u"d",      u"b",
      u"c",   u"x",    u"0x",  u"0b",     u"$",        u"&H",     u"\\",     u"\\x",
      u"\\r", u"\\7",  u"<",   u">",      u"[",        u"]",      u"{",      u"}",
      u"CR",  u"<CR>", u"STX", u"CRc",    u"Variable", u"Ignore", u"ERRORc", u",",
      u";",   u" ",    u"\t",  u"\r\n",   u"\"",       u"'",      u"02 ",    u"0Dh,",
      u"é",   u"€",    u"☃",   u"\xD800", u"\xDC00",   u"\x7F",   u"\x01",   std::u16string_view(u"\0", 1)};
  const RandomSeed seed;
  SCOPED_TRACE(seed.Text());
  std::mt19937 random(seed.Value());
  std::u16string text;
  std::size_t accepted = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    text.clear();
    for (std::size_t pieces = random() % 10; pieces > 0; --pieces)
      text += kPieces[random() % std::size(kPieces)];
    if (i % 1000 == 0) text.resize(random() % 2000, static_cast<char16_t>(random()));
    const ParsedText parsed = ParseSerialText(text);
    ASSERT_TRUE(parsed.Problem || !parsed.Readings.empty()) << ToUtf8(text);
    ASSERT_LE(parsed.Problem.value_or(TextProblem{}).Position, text.size()) << ToUtf8(text);
    for (const TextReading& reading : parsed.Readings) {
      const std::int16_t count = reading.String.Count;
      ASSERT_TRUE(count >= 1 && count <= 32) << ToUtf8(text);
      ASSERT_LT(*std::max_element(reading.String.Kinds.begin(), reading.String.Kinds.end()), kByteKinds);
    }
    accepted += parsed.Readings.size();
  }
  EXPECT_GT(accepted, 100'000U) << "the texts are not all nonsense";
}

TEST(PasteRule, CommandsOfSlots0To9HaveNoIgnoredBytes) {
  SerialString string = String({{'A'}, {0, IGN}});
  EXPECT_TRUE(CheckPaste(0, string));
  EXPECT_TRUE(CheckPaste(9, string));
  EXPECT_FALSE(CheckPaste(10, string));
  EXPECT_FALSE(CheckPaste(24, string));
  string.Count = 1;
  EXPECT_FALSE(CheckPaste(0, string)) << "the ignored byte is not in use";
}

}  // namespace
}  // namespace qdm
