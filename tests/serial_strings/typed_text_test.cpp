#include "serial_strings/typed_text.h"

#include "serial_strings/serial_string.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

using enum ByteKind;

TypedText Start(int value, ByteKind kind) {
  TypedText text;
  text.Set(static_cast<std::int16_t>(value), static_cast<std::uint8_t>(kind));
  return text;
}

// Keys to press: characters, and "<" ">" Left and Right, "[" "]" Home and End, "~" Delete, "!" Backspace.
void Press(TypedText& text, std::u16string_view keys) {
  constexpr std::u16string_view kEditing = u"[]<>~!";
  constexpr EditKey kKeys[] = {EditKey::Home,  EditKey::End,    EditKey::Left,
                               EditKey::Right, EditKey::Delete, EditKey::Backspace};
  for (const char16_t key : keys) {
    const std::size_t which = kEditing.find(key);
    which == std::u16string_view::npos ? text.Type(key) : text.Edit(kKeys[which]);
  }
}

struct Case {
  int Value;
  ByteKind Kind;
  std::u16string_view Keys;
  int Expected;
  std::string_view Text;
  std::size_t Caret;
  bool Error;
};

TEST(TypedText, ValueFollowsTheDigits) {
  const Case cases[] = {
      // Typing: at the caret, upper case, a leading zero makes room, a full box takes no more.
      {0, HEX, u"1f", 0x1F, "1F", 2, false},
      {0x0A, HEX, u"5", 0xA5, "A5", 2, false},
      {0x0A, HEX, u"[5", 0x5A, "5A", 1, false},
      {0x12, HEX, u"3", 0x12, "12", 2, false},
      {0x12, HEX, u"g h", 0x12, "12", 2, false},
      {0, DEC, u"205", 205, "205", 3, false},
      {5, DEC, u"[1", 15, "15", 1, false},
      {25, DEC, u"6", 256, "256", 3, true},
      {99, DEC, u"9", 999, "999", 3, true},
      {255, DEC, u"0", 255, "255", 3, false},
      {0, BIN, u"1101", 13, "00001101", 8, false},
      {13, BIN, u"[1", 0x8D, "10001101", 1, false},
      {255, BIN, u"0", 255, "11111111", 8, false},
      {0, BIN, u"2", 0, "00000000", 8, false},
      // Removing: what remains is read anew.
      {0x5A, HEX, u"!", 5, "5", 1, false},
      {0x5A, HEX, u"[~", 10, "A", 0, false},
      {0x5A, HEX, u"!!", 0, "", 0, false},
      {0x5A, HEX, u"!!!~c", 12, "0C", 2, false},
      {205, DEC, u"<!", 25, "25", 1, false},
      {999, DEC, u"!", 99, "99", 2, false},
      {105, DEC, u"[~", 5, "05", 0, false},
      {13, BIN, u"!", 6, "0000110", 7, false},
      {128, BIN, u"[~", 0, "0000000", 0, false},
      // Moving: within the digits.
      {0x5A, HEX, u"<<<", 0x5A, "5A", 0, false},
      {0x5A, HEX, u"[>]>", 0x5A, "5A", 2, false},
      // What another kind left behind stays until digits are removed.
      {300, HEX, u"1", 300, "12C", 3, true},
      {300, HEX, u"!", 0x12, "12", 2, false},
      {300, BIN, u"!", 127, "1111111", 7, false},
      {-1, DEC, u"7", 7, "7", 1, false},
  };
  for (const Case& c : cases) {
    TypedText text = Start(c.Value, c.Kind);
    Press(text, c.Keys);
    const auto at = &c - cases;
    EXPECT_EQ(text.Value(), c.Expected) << "case " << at;
    EXPECT_EQ(text.Text(), c.Text) << "case " << at;
    EXPECT_EQ(text.Caret(), c.Caret) << "case " << at;
    EXPECT_EQ(text.Error(), c.Error) << "case " << at;
  }
}

TEST(TypedText, CharacterIsTheByteOfTheCodePage) {
  TypedText text = Start('A', ASC);
  EXPECT_TRUE(text.Type(u'€'));
  EXPECT_EQ(text.Value(), 0x80);
  EXPECT_FALSE(text.Error());
  EXPECT_TRUE(text.Type(u' '));
  EXPECT_EQ(text.Text(), "Space");
  EXPECT_TRUE(text.Type(u'\x7F'));
  EXPECT_EQ(text.Text(), "Invisible");
  EXPECT_TRUE(text.Error());
  EXPECT_FALSE(text.Type(u'☃')) << "no code of one byte";
  EXPECT_FALSE(text.Type(u'\r'));
  EXPECT_FALSE(text.Edit(EditKey::Backspace));
  EXPECT_EQ(text.Value(), 127);
}

TEST(TypedText, ChosenKindsTakeNoKeys) {
  for (const ByteKind kind : {CNT, VAR, IGN}) {
    TypedText text = Start(13, kind);
    Press(text, u"1A![~");
    EXPECT_EQ(text.Value(), 13);
  }
}

TEST(TypedText, EveryByteIsTypedBackFromItsDigits) {
  for (const ByteKind kind : {HEX, DEC, BIN}) {
    for (int value = 0; value < 256; ++value) {
      TypedText text = Start(0, kind);
      const std::string digits =
          EditByteText(static_cast<std::int16_t>(value), static_cast<std::uint8_t>(kind)).Text;
      Press(text, std::u16string(digits.begin(), digits.end()));
      EXPECT_EQ(text.Value(), value);
      EXPECT_EQ(text.Text(), digits);
    }
  }
}

TEST(TypedText, LeavingTheByteCompletesItsText) {
  TypedText text = Start(0x5A, HEX);
  Press(text, u"!<");
  text.Complete();
  EXPECT_EQ(text.Text(), "05");
  EXPECT_EQ(text.Caret(), 1U) << "before the same digit";
}

}  // namespace
}  // namespace qdm
