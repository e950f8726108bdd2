#include "projectors/paste_rule.h"

#include "support/strings.h"

#include <gmock/gmock.h>

namespace qdm {
namespace {

using enum ByteKind;

TEST(PasteRule, CommandsOfSlots0To9HaveNoIgnoredBytes) {
  const SerialString string = String({{'A'}, {0, IGN}});
  for (const std::size_t slot : {9U, 10U}) EXPECT_EQ(CheckPaste(slot, string).has_value(), slot < 10);
}

}  // namespace
}  // namespace qdm
