#include "serial_strings/typed_text.h"

#include "serial_strings/string_record.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

using enum ByteKind;

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

TEST(TypedText, ValueFollowsTheDigits) {
  const struct {
    std::int16_t Value;
    ByteKind Kind;
    std::u16string_view Keys;
    int Expected;
    std::string_view Text;
    std::size_t Caret;
  } cases[] = {
      // Typing: at the caret, upper case, a leading zero makes room, a full box takes no more.
      {0x0A, HEX, u"[5", 0x5A, "5A", 1},
      {0, DEC, u"205", 205, "205", 3},
      {25, DEC, u"6", 256, "256", 3},
      {0, BIN, u"1101", 13, "00001101", 8},
      {13, BIN, u"[1", 0x8D, "10001101", 1},
      {0, BIN, u"2", 0, "00000000", 8},
      // Removing: what remains is read anew.
      {0x5A, HEX, u"!!!~c", 12, "0C", 2},
      {105, DEC, u"[~", 5, "05", 0},
      {13, BIN, u"!", 6, "0000110", 7},
      // Moving: within the digits.
      {0x5A, HEX, u"[>]>", 0x5A, "5A", 2},
      // What another kind left behind stays until digits are removed.
      {300, HEX, u"!", 0x12, "12", 2},
      {300, BIN, u"!", 127, "1111111", 7},
  };
  for (const auto& c : cases) {
    TypedText text;
    text.Set(c.Value, static_cast<std::uint8_t>(c.Kind));
    Press(text, c.Keys);
    const auto at = &c - cases;
    EXPECT_EQ(text.Value(), c.Expected) << "case " << at;
    EXPECT_EQ(text.Text(), c.Text) << "case " << at;
    EXPECT_EQ(text.Caret(), c.Caret) << "case " << at;
  }
}

TEST(TypedText, CharacterIsTheByteOfTheCodePage) {
  TypedText text;
  text.Set('A', static_cast<std::uint8_t>(ASC));
  EXPECT_TRUE(text.Type(u'€'));
  EXPECT_EQ(text.Value(), 0x80);
  EXPECT_FALSE(text.Type(u'☃')) << "no code of one byte";
  EXPECT_FALSE(text.Type(u'\r'));
}

}  // namespace
}  // namespace qdm
