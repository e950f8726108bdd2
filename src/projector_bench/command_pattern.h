// What strings look like on the line: bytes that must be so and bytes that may be anything (an ignored byte
// of a reply, the level in a volume command), and the commands of a definition in that form.
#pragma once

#include "projectors/projector_definition.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qdm {

struct PatternByte {
  std::uint8_t Value = 0;
  bool Any = false;
};
using BytePattern = std::vector<PatternByte>;

// Each byte in use; VAR and IGN bytes may be anything.
BytePattern PatternOf(const SerialString& string);
bool Matches(ByteView bytes, const BytePattern& pattern);
// `bytes` is shorter than the pattern and fits it so far.
bool Begins(ByteView bytes, const BytePattern& pattern);
// How many times the pattern stands in `bytes`, none overlapping another.
int Occurrences(ByteView bytes, const BytePattern& pattern);

// A command as the panel sends it: the last VAR byte stands for all bytes of the level.
struct LineCommand {
  Slot Place = kSerialEnableSlot;
  bool InUse = false;  // the panel is programmed with it
  BytePattern Pattern;
  BytePattern Stored{};  // without a level, as an amplifier sends it; empty where there is none
  std::size_t LevelAt = 0;
  std::size_t LevelBytes = 0;  // 0: carries no level
};

bool Matches(ByteView bytes, const LineCommand& command);
bool Begins(ByteView bytes, const LineCommand& command);

// Every command slot that has bytes, in use or not, in the order of the slots. Where no slot is marked as in
// use, all count as in use.
std::vector<LineCommand> CommandsOnLine(const ProjectorDefinition& projector);

// The level that a volume command carries; nothing when its bytes are none of the definition's levels.
std::optional<std::int16_t> LevelIn(ByteView command, const LineCommand& form,
                                    const ProjectorDefinition& projector);

// The nearest command to bytes that are none, and the first place where it differs; nothing when more than
// half would have to change.
struct NearestCommand {
  Slot Place;
  std::string Difference;  // "byte 4 is 32 instead of 31"
};
std::optional<NearestCommand> FindNearest(ByteView bytes, const std::vector<LineCommand>& commands);

}  // namespace qdm
