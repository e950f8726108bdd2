#include "serial_strings/string_edit.h"

#include "serial_strings/command_text.h"
#include "serial_strings/text_parser.h"
#include "support/strings.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

using enum ByteKind;

TEST(StringEdit, InsertsAndRemovesInTheMiddleAndKeepsWhatCannotBeStored) {
  const SerialString before = String({{'A'}, {7, VAR}, {13, CNT}});
  StringEdit edit(before);
  ASSERT_TRUE(edit.Insert(1));
  EXPECT_EQ(edit.StoredOver(before), String({{'A'}, {0, HEX}, {7, VAR}, {13, CNT}})) << "one variable byte";
  ASSERT_TRUE(edit.Insert(0));
  EXPECT_EQ(edit.Value(0), ' ');
  ASSERT_TRUE(edit.Remove(0) && edit.Remove(1));
  EXPECT_EQ(edit.StoredOver(before), before);

  edit.SetValue(2, 300);
  EXPECT_EQ(edit.FirstTooLarge(), 2U);
  EXPECT_EQ(edit.StoredOver(before).Values[2], 13);
  EXPECT_FALSE(edit.Remove(3));
  edit.SetCount(32);
  EXPECT_FALSE(edit.Insert(0));
}

TEST(StringEdit, VariableByteBehindTheEndGivesWay) {
  StringEdit edit(String({{'V'}, {0, VAR}}));
  edit.Replace(Characters("V"));
  EXPECT_EQ(edit.Kind(1), static_cast<std::uint8_t>(HEX));
}

TEST(CommandText, IsThePlainestNotationThatReadsBackTheSameBytes) {
  const std::pair<SerialString, const char*> cases[] = {
      {String({{'O'}, {'N'}, {13, CNT}}), "ON<CR>"},
      {String({{2, CNT}, {'O'}, {'N'}, {3, CNT}}), "<STX>ON<ETX>"},
      {String({{2, HEX}, {5, HEX}}), "02h,05h"},
      {{}, ""},
  };
  for (const auto& [string, text] : cases) EXPECT_EQ(CommandText(string), text);

  for (const SerialString& string :
       {String({{2, HEX}, {5, DEC}, {3, BIN}}), String({{'V'}, {0, VAR}, {0, IGN}}), Characters("10"),
        Characters("PON "), String({{'<'}, {'"'}, {13, CNT}}), String({{'P'}, {13, HEX}})}) {
    const std::string text = CommandText(string);
    const std::u16string wide(text.begin(), text.end());
    const ParsedText parsed = ParseSerialText(wide);
    ASSERT_FALSE(parsed.Readings.empty()) << text;
    EXPECT_EQ(parsed.Readings[0].String, string) << text;
  }
}

}  // namespace
}  // namespace qdm
