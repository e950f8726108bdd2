#include "base/code_page.h"

#include <gmock/gmock.h>

#include <set>

namespace qdm {
namespace {

TEST(CodePage, EveryByteHasACharacterOfItsOwnAndComesBack) {
  std::set<char16_t> characters;
  for (int i = 0; i < 256; ++i) {
    const auto byte = static_cast<std::uint8_t>(i);
    characters.insert(CharacterOf(byte));
    EXPECT_EQ(ByteOf(CharacterOf(byte)), byte) << i;
  }
  EXPECT_EQ(characters.size(), 256U);
}

TEST(CodePage, BytesStandForTheCharactersOfWindows1252) {
  // 80..9F as the page has them; the undefined five (81, 8D, 8F, 90, 9D) for themselves.
  const std::u16string expected =
      u"\u20AC\x81\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\x8D\u017D\x8F"
      u"\x90\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\x9D\u017E\u0178";
  std::u16string upper;
  for (int byte = 0x80; byte < 0xA0; ++byte) upper += CharacterOf(static_cast<std::uint8_t>(byte));
  EXPECT_EQ(upper, expected);
  EXPECT_EQ(CharacterOf(0xFC), u'\u00FC');
}

TEST(CodePage, ACharacterWithoutACodeIsStoredAsAQuestionMark) {
  for (const char16_t character : {u'\u03A9', u'\u0080', u'\u0100', char16_t{0xD83D}}) {
    EXPECT_EQ(StoredByteOf(character), '?');
  }
}

TEST(CodePage, UpperCaseStaysWithinThePage) {
  EXPECT_EQ(UpperCase(u"az{`\u00E0\u00FE\u00FF\u0161\u0153\u017E\u00DF\u00B5\u0192\u00F7"),
            u"AZ{`\u00C0\u00DE\u0178\u0160\u0152\u017D\u00DF\u00B5\u0192\u00F7");
}

TEST(CodePage, Utf8IsReadAndWrittenStrictly) {
  // Cut, overlong, a surrogate, beyond the last code point, stray: replaced, and what follows is kept.
  for (const std::string bad : {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0", "\xE0\x80\x80", "\xED\xA0\x80",
                                "\xF4\x90\x80\x80", "\x80"}) {
    const std::u16string text = FromUtf8(bad + "x");
    EXPECT_EQ(text.front(), u'\uFFFD') << testing::PrintToString(bad);
    EXPECT_EQ(text.back(), u'x') << testing::PrintToString(bad);
  }
  EXPECT_EQ(FromUtf8(ToUtf8(u"\u0080\u07FF\u0800\uFFFF\U0010FFFF")), u"\u0080\u07FF\u0800\uFFFF\U0010FFFF");
  EXPECT_EQ(ToUtf8(std::u16string(u"\xD800x\xDC00")), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

}  // namespace
}  // namespace qdm
