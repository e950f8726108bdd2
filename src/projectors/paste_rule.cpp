#include "projectors/paste_rule.h"

#include "base/words.h"
#include "projectors/slots.h"

#include <algorithm>
#include <cstdint>

namespace qdm {

std::optional<Message> CheckPaste(std::size_t slot, const SerialString& string) {
  if (SlotTakesIgnore(slot)) return std::nullopt;
  const auto end = string.Kinds.begin() + static_cast<std::ptrdiff_t>(string.BytesInUse());
  const bool ignores = std::find(string.Kinds.begin(), end, static_cast<std::uint8_t>(ByteKind::IGN)) != end;
  if (!ignores) return std::nullopt;
  return Message{Say("Sorry cannot paste here as serial string conatins an 'ignore' byte!"), Say("sorry!"),
                 MessageIcon::Exclamation};
}

std::optional<Message> CheckRoomForPaste(std::size_t first, const SerialString& string) {
  if (first + string.BytesInUse() <= kMaximumStringBytes) return std::nullopt;
  return Message{Say("Sorry cannot paste here as the message would be more than 32 bytes!"), Say("Sorry!"),
                 MessageIcon::Exclamation};
}

}  // namespace qdm
