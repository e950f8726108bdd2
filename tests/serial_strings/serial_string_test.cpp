#include "serial_strings/serial_string.h"

#include "support/strings.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {
using testing::ElementsAre;

using enum ByteKind;

TEST(SerialString, CompactTextFollowsTheKindsWithCommasBetweenAllButNeighbouringCharacters) {
  const struct {
    SerialString Bytes;
    std::string Text;
  } cases[] = {
      {String({{'P'}, {' '}, {0}, {31}, {128}, {255}}), "P \x7F\x7F\u20AC\u00FF"},
      {String({{13, HEX}, {255, HEX}, {5, DEC}, {255, DEC}, {0, BIN}, {13, BIN}}),
       "0Dh,FFh,005d,255d,0b,1101b"},
      {String({{13, CNT}, {0, CNT}, {31, CNT}, {32, CNT}}), "CRc,NULc,USc,ERRORc"},
      {String({{'A'}, {9, VAR}, {9, IGN}, {'X'}, {'Y'}}), "A,Variable,Ignore,XY"},
      {String({{65, static_cast<ByteKind>(7)}}), ""},
      {String({}), ""},
  };
  for (const auto& c : cases) EXPECT_EQ(CompactText(c.Bytes), c.Text);
}

TEST(SerialString, EditingTextShowsAndFlagsWhatIsOutOfRange) {
  const auto shown = [](ByteKind kind, std::initializer_list<int> values) {
    std::string texts;
    for (const int value : values) {
      const EditText text = EditByteText(static_cast<std::int16_t>(value), static_cast<std::uint8_t>(kind));
      texts += (texts.empty() ? "" : " ") + text.Text + (text.Error ? "!" : "");
    }
    return texts;
  };
  EXPECT_EQ(shown(ASC, {-1, 31, 127, 129, 144, 147, 160, 256}),
            "Invisible! Invisible! Invisible! Invisible! Invisible! Invisible! Invisible! Invisible!");
  EXPECT_EQ(shown(ASC, {32, 33, 126, 128, 145, 146, 161, 255}),
            "Space ! ~ \u20AC \u2018 \u2019 \u00A1 \u00FF");
  EXPECT_EQ(shown(HEX, {10, 255, 256, 32767, -1}), "0A FF 100! 7FFF! !");
  EXPECT_EQ(shown(DEC, {5, 255, 256, -1}), "5 255 256! !");
  EXPECT_EQ(shown(BIN, {0, 13, 300, -1}), "00000000 00001101 11111111! !");
  EXPECT_EQ(shown(CNT, {19, 31, 32, -1}), "DC3 US Error! Error!");
  EXPECT_EQ(shown(VAR, {999}) + shown(IGN, {-9}) + shown(static_cast<ByteKind>(7), {65}), "VariableIgnore");
}

TEST(SerialString, IgnoreMaskExaminesAllPositionsWhateverTheCount) {
  SerialString reply;
  for (const std::size_t at : {0U, 9U, 31U}) reply.Kinds[at] = static_cast<std::uint8_t>(IGN);
  for (const int count : {0, 5, 32, -1, 32767}) {
    reply.Count = static_cast<std::int16_t>(count);
    EXPECT_THAT(IgnoreMask(reply), ElementsAre(0x01, 0x02, 0x00, 0x80));
  }
}

TEST(SerialString, AHostileCountNeverReachesBeyondTheString) {
  SerialString string;
  string.Values.fill('x');
  for (const auto& [count, used] : {std::pair{-32768, 0U}, {-1, 0U}, {32, 32U}, {33, 32U}, {32767, 32U}}) {
    string.Count = static_cast<std::int16_t>(count);
    EXPECT_EQ(CompactText(string), std::string(used, 'x'));
  }
}

}  // namespace
}  // namespace qdm
