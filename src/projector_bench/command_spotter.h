// Takes a stream of bytes with their times apart into commands of a definition and what is none. A command
// ends with its last byte; one that could still become a longer one, and bytes that are no command, end with
// a silence. Knows no clock: whoever feeds it says what time it is.
#pragma once

#include "line/waiting.h"
#include "projector_bench/command_pattern.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qdm {

struct SpottedBytes {
  const LineCommand* Command = nullptr;  // null: no command of the definition
  Bytes Data;
  Microseconds Begin{};   // of the first byte
  Microseconds End{};     // of the last
  bool InBlocks = false;  // some of them were handed over together: when each came is not known
};

class CommandSpotter {
 public:
  // Bytes that cannot become a command are given up after the first, the beginning of one after the second.
  static constexpr Microseconds kSilence = std::chrono::milliseconds(50);
  static constexpr Microseconds kPatience = std::chrono::milliseconds(500);

  // `commands` must outlive this.
  explicit CommandSpotter(const std::vector<LineCommand>& commands) : commands_(commands) {}

  void Receive(std::uint8_t byte, Microseconds when, std::vector<SpottedBytes>& spotted);
  // What a silence has ended by then.
  void Advance(Microseconds now, std::vector<SpottedBytes>& spotted);
  // When a silence would end what has come; nothing when nothing waits.
  std::optional<Microseconds> NextTime() const;

 private:
  const LineCommand* CommandAt(std::size_t first, std::size_t end) const;
  bool CanBecomeCommand(std::size_t first) const;
  void Settle(std::vector<SpottedBytes>& spotted);
  void Emit(std::size_t count, const LineCommand* command, std::vector<SpottedBytes>& spotted);

  const std::vector<LineCommand>& commands_;
  Bytes bytes_;                      // not yet decided
  std::vector<Microseconds> times_;  // of each of them
};

}  // namespace qdm
