#include "projector_bench/command_spotter.h"

#include <algorithm>
#include <cstdint>

namespace qdm {

// Of several that fit, one that is in use, and one without bytes that may be anything.
const LineCommand* CommandSpotter::CommandAt(std::size_t first, std::size_t end) const {
  const ByteView bytes = ByteView(bytes_).subspan(first, end - first);
  const LineCommand* best = nullptr;
  const auto rank = [](const LineCommand& c) { return (c.InUse ? 2 : 0) + (c.LevelBytes == 0 ? 1 : 0); };
  for (const LineCommand& command : commands_) {
    if (Matches(bytes, command) && (best == nullptr || rank(command) > rank(*best))) best = &command;
  }
  return best;
}

bool CommandSpotter::CanBecomeCommand(std::size_t first) const {
  const ByteView bytes = ByteView(bytes_).subspan(first);
  return std::any_of(commands_.begin(), commands_.end(),
                     [&](const LineCommand& command) { return Begins(bytes, command); });
}

void CommandSpotter::Emit(std::size_t count, const LineCommand* command, std::vector<SpottedBytes>& spotted) {
  if (count == 0) return;
  const auto end = static_cast<std::ptrdiff_t>(count);
  const bool inBlocks = std::adjacent_find(times_.begin(), times_.begin() + end) != times_.begin() + end;
  spotted.push_back(
      {command, Bytes(bytes_.begin(), bytes_.begin() + end), times_.front(), times_[count - 1], inBlocks});
  bytes_.erase(bytes_.begin(), bytes_.begin() + end);
  times_.erase(times_.begin(), times_.begin() + end);
}

void CommandSpotter::Receive(std::uint8_t byte, Microseconds when, std::vector<SpottedBytes>& spotted) {
  Advance(when, spotted);
  bytes_.push_back(byte);
  times_.push_back(when);
  Settle(spotted);
}

// The first and longest run of bytes that is a command; what stands before it is none. It may end before the
// last byte: then that has shown that it was not to become a longer one.
void CommandSpotter::Settle(std::vector<SpottedBytes>& spotted) {
  if (CanBecomeCommand(0)) return;
  for (std::size_t first = 0; first < bytes_.size(); ++first) {
    for (std::size_t end = bytes_.size(); end > first; --end) {
      const LineCommand* command = CommandAt(first, end);
      if (command == nullptr) continue;
      if (end == bytes_.size() && CanBecomeCommand(first)) return;
      Emit(first, nullptr, spotted);
      Emit(end - first, command, spotted);
      return Settle(spotted);
    }
  }
}

std::optional<Microseconds> CommandSpotter::NextTime() const {
  if (bytes_.empty()) return std::nullopt;
  bool beginning = false;
  for (std::size_t first = 0; first < bytes_.size(); ++first) {
    if (CommandAt(first, bytes_.size()) != nullptr) return times_.back() + kSilence;
    beginning = beginning || CanBecomeCommand(first);
  }
  return times_.back() + (beginning ? kPatience : kSilence);
}

void CommandSpotter::Advance(Microseconds now, std::vector<SpottedBytes>& spotted) {
  const auto due = NextTime();
  if (!due || now < *due) return;
  for (std::size_t first = 0; first < bytes_.size(); ++first) {
    const LineCommand* command = CommandAt(first, bytes_.size());
    if (command == nullptr) continue;
    Emit(first, nullptr, spotted);
    Emit(bytes_.size(), command, spotted);
  }
  Emit(bytes_.size(), nullptr, spotted);
}

}  // namespace qdm
