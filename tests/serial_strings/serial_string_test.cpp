#include "serial_strings/serial_string.h"

#include <gmock/gmock.h>

#include <initializer_list>

namespace qdm {
namespace {
using testing::ElementsAre;

constexpr std::uint8_t kAsc = 0, kHex = 1, kDec = 2, kBin = 3, kCnt = 4, kVar = 5, kIgn = 6;

struct OneByte {
  int Value;
  std::uint8_t Kind;
};

SerialString StringOf(std::initializer_list<OneByte> bytes) {
  SerialString string;
  for (const OneByte& byte : bytes) {
    const auto at = static_cast<std::size_t>(string.Count++);
    string.Values[at] = static_cast<std::uint8_t>(byte.Value);
    string.Kinds[at] = byte.Kind;
  }
  return string;
}

TEST(SerialString, CompactTextOfOneByteFollowsItsKind) {
  const struct {
    OneByte Byte;
    std::string Text;
  } cases[] = {
      {{'P', kAsc}, "P"},      {{' ', kAsc}, " "},      {{0, kAsc}, "\x7F"},     {{31, kAsc}, "\x7F"},
      {{128, kAsc}, "\u20AC"}, {{255, kAsc}, "\u00FF"}, {{13, kHex}, "0Dh"},     {{255, kHex}, "FFh"},
      {{5, kDec}, "005d"},     {{13, kDec}, "013d"},    {{255, kDec}, "255d"},   {{0, kBin}, "0b"},
      {{13, kBin}, "1101b"},   {{13, kCnt}, "CRc"},     {{0, kCnt}, "NULc"},     {{31, kCnt}, "USc"},
      {{32, kCnt}, "ERRORc"},  {{200, kCnt}, "ERRORc"}, {{9, kVar}, "Variable"}, {{9, kIgn}, "Ignore"},
      {{65, 7}, ""},           {{65, 255}, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(CompactText(StringOf({c.Byte})), c.Text);
}

TEST(SerialString, CommasStandBetweenAllButNeighbouringCharacters) {
  EXPECT_EQ(CompactText(StringOf({})), "");
  EXPECT_EQ(CompactText(StringOf({{'P', kAsc}, {'W', kAsc}, {'R', kAsc}, {13, kCnt}})), "PWR,CRc");
  EXPECT_EQ(CompactText(StringOf({{2, kHex}, {50, kDec}, {3, kHex}})), "02h,050d,03h");
  EXPECT_EQ(
      CompactText(StringOf({{'A', kAsc}, {'B', kAsc}, {'C', kAsc}, {13, kHex}, {'X', kAsc}, {'Y', kAsc}})),
      "ABC,0Dh,XY");
}

TEST(SerialString, EditingTextShowsAndFlagsWhatIsOutOfRange) {
  const struct {
    std::int16_t Value;
    std::uint8_t Kind;
    std::string Text;
    bool Error;
  } cases[] = {
      {-1, kAsc, "Invisible", true},
      {31, kAsc, "Invisible", true},
      {32, kAsc, "Space", false},
      {33, kAsc, "!", false},
      {126, kAsc, "~", false},
      {127, kAsc, "Invisible", true},
      {128, kAsc, "\u20AC", false},
      {129, kAsc, "Invisible", true},
      {144, kAsc, "Invisible", true},
      {145, kAsc, "\u2018", false},
      {146, kAsc, "\u2019", false},
      {147, kAsc, "Invisible", true},
      {160, kAsc, "Invisible", true},
      {161, kAsc, "\u00A1", false},
      {255, kAsc, "\u00FF", false},
      {256, kAsc, "Invisible", true},
      {10, kHex, "0A", false},
      {255, kHex, "FF", false},
      {256, kHex, "100", true},
      {32767, kHex, "7FFF", true},
      {-1, kHex, "", true},
      {5, kDec, "5", false},
      {256, kDec, "256", true},
      {-1, kDec, "", true},
      {0, kBin, "00000000", false},
      {13, kBin, "00001101", false},
      {300, kBin, "11111111", true},
      {-1, kBin, "", true},
      {19, kCnt, "DC3", false},
      {31, kCnt, "US", false},
      {32, kCnt, "Error", true},
      {-1, kCnt, "Error", true},
      {999, kVar, "Variable", false},
      {-9, kIgn, "Ignore", false},
      {65, 7, "", false},
      {65, 255, "", false},
  };
  for (const auto& c : cases) {
    const EditText text = EditByteText(c.Value, c.Kind);
    EXPECT_EQ(text.Text, c.Text) << c.Value << " of kind " << int{c.Kind};
    EXPECT_EQ(text.Error, c.Error) << c.Value << " of kind " << int{c.Kind};
  }
}

TEST(SerialString, NumbersBecomeDigitsAndBack) {
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    EXPECT_EQ(ParseBinary(FormatBinary(byte)), byte);
    EXPECT_EQ(std::stoi(FormatBinary(byte), nullptr, 2), value);
    EXPECT_EQ(std::stoi(HexByte(byte), nullptr, 16), value);
    EXPECT_EQ(HexByte(byte).size(), 2U);
  }
  EXPECT_EQ(FormatBinary(13), "1101");
  EXPECT_EQ(ParseBinary(""), 0);
  EXPECT_EQ(ParseBinary("2"), 0);
  EXPECT_EQ(ParseBinary("1x1"), 5);
  EXPECT_EQ(ParseBinary("100000001"), 1);
  EXPECT_EQ(HexWord(10), "A");
  EXPECT_EQ(HexWord(0x1ABC), "1ABC");
  EXPECT_EQ(HexWord(-1), "FFFF");
  EXPECT_EQ(HexByte(-32768), "8000");
}

TEST(SerialString, KindsHaveLabelsAndColours) {
  std::string labels;
  for (int kind = 0; kind < 256; ++kind) labels += KindLabel(static_cast<std::uint8_t>(kind));
  EXPECT_EQ(labels, "ASCHEXDECBINCNTVARIGN");
  EXPECT_EQ(KindColour(kHex), 0xFF0000U);
  EXPECT_EQ(KindColour(kIgn), 0xC04000U);
  EXPECT_EQ(KindColour(7), 0U);
}

TEST(SerialString, IgnoreMaskExaminesAllPositionsWhateverTheCount) {
  SerialString reply;
  for (const std::size_t at : {0U, 9U, 31U}) reply.Kinds[at] = kIgn;
  for (const int count : {0, 5, 32, -1, 32767}) {
    reply.Count = static_cast<std::int16_t>(count);
    EXPECT_THAT(IgnoreMask(reply), ElementsAre(0x01, 0x02, 0x00, 0x80));
  }
  reply.Kinds.fill(kIgn);
  EXPECT_THAT(IgnoreMask(reply), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
}

TEST(SerialString, AHostileCountNeverReachesBeyondTheString) {
  SerialString string;
  string.Values.fill('x');
  const struct {
    int Count;
    std::size_t InUse;
  } cases[] = {{-32768, 0}, {-1, 0}, {0, 0}, {1, 1}, {32, 32}, {33, 32}, {32767, 32}};
  for (const auto& c : cases) {
    string.Count = static_cast<std::int16_t>(c.Count);
    EXPECT_EQ(string.BytesInUse(), c.InUse);
    EXPECT_EQ(CompactText(string), std::string(c.InUse, 'x'));
  }
  EXPECT_THROW(static_cast<void>(CompactSeparator(string, 32)), std::out_of_range);
}

}  // namespace
}  // namespace qdm
