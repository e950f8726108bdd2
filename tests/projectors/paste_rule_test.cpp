#include "projectors/paste_rule.h"

#include "support/strings.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using enum ByteKind;

TEST(PasteRule, NothingGoesBeyondTheThirtySecondByte) {
  EXPECT_EQ(CheckRoomForPaste(30, Characters("ab")), std::nullopt);
  EXPECT_EQ(CheckRoomForPaste(31, Characters("ab")).value_or(Message{}).Text,
            "Sorry cannot paste here as the message would be more than 32 bytes!");
}

TEST(PasteRule, CommandsOfSlots0To9HaveNoIgnoredBytes) {
  const SerialString string = String({{'A'}, {0, IGN}});
  for (const std::size_t slot : {9U, 10U}) EXPECT_EQ(CheckPaste(slot, string).has_value(), slot < 10);
}

}  // namespace
}  // namespace qdm
