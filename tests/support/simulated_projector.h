// A projector that answers from its own definition: when the bytes of a command have come, it sends the reply
// that is expected after it. A VAR byte stands for one byte of any value, an IGN byte of a reply is sent as
// it is stored.
#pragma once

#include "projectors/definition_setup.h"

#include <algorithm>
#include <optional>

namespace qdm {

class SimulatedProjector {
 public:
  explicit SimulatedProjector(const ProjectorDefinition& projector) : projector_(projector) {}

  Bytes Received;

  // The reply to what is complete with these bytes; mostly nothing.
  Bytes Receive(ByteView bytes) {
    Bytes replies;
    for (const std::uint8_t byte : bytes) {
      Received.push_back(byte);
      command_.push_back(byte);
      const std::optional<std::size_t> command = Recognised();
      if (!command) continue;
      command_.clear();
      const SerialString& reply = projector_.Strings[*ReplySlotOf(*command)];
      replies.insert(replies.end(), reply.Values.begin(),
                     reply.Values.begin() + static_cast<std::ptrdiff_t>(reply.BytesInUse()));
    }
    return replies;
  }

 private:
  std::optional<std::size_t> Recognised() const {
    for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
      if (ReplySlotOf(slot) && IsCommand(projector_.Strings[slot])) return slot;
    }
    return std::nullopt;
  }
  bool IsCommand(const SerialString& string) const {
    if (string.BytesInUse() == 0 || command_.size() != string.BytesInUse()) return false;
    for (std::size_t i = 0; i < command_.size(); ++i) {
      const bool any = string.Kinds[i] == static_cast<std::uint8_t>(ByteKind::VAR);
      if (!any && command_[i] != string.Values[i]) return false;
    }
    return true;
  }

  ProjectorDefinition projector_;
  Bytes command_;  // as far as it has come
};

}  // namespace qdm
