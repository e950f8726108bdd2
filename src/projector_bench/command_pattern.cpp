#include "projector_bench/command_pattern.h"

#include "base/words.h"
#include "projectors/projector_volume.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <utility>

namespace qdm {
namespace {

bool IsKind(const SerialString& string, std::size_t at, ByteKind kind) {
  return string.Kinds[at] == static_cast<std::uint8_t>(kind);
}

bool Fits(std::uint8_t byte, const PatternByte& wanted) { return wanted.Any || byte == wanted.Value; }

LineCommand CommandIn(const ProjectorDefinition& projector, Slot slot) {
  const SerialString& string = projector.Strings[slot];
  LineCommand command{.Place = slot, .InUse = projector.Available[slot] != kFlagClear, .Pattern = {}};
  command.Pattern = PatternOf(string);
  const auto variable = static_cast<std::size_t>(VariableBytePositionOf(string));
  if (variable == 0 || variable > string.BytesInUse()) return command;
  command.Stored = command.Pattern;
  command.Stored[variable - 1].Any = false;
  command.LevelAt = variable - 1;
  command.LevelBytes = LevelBytes(VolumeFormatOf(projector), projector.MaximumLevel).size();
  const auto place =
      command.Pattern.erase(command.Pattern.begin() + static_cast<std::ptrdiff_t>(command.LevelAt));
  command.Pattern.insert(place, command.LevelBytes, PatternByte{.Value = 0, .Any = true});
  return command;
}

// What it costs that a byte is wrong, missing or one too many, and that it fits only because anything does.
constexpr std::size_t kChange = 2;
constexpr std::size_t kAnything = 1;

std::size_t CostOf(std::uint8_t byte, const PatternByte& wanted) {
  return wanted.Any ? kAnything : byte == wanted.Value ? 0 : kChange;
}

// What it costs to turn bytes into a pattern, from every place in both to their ends.
class EditTable {
 public:
  EditTable(ByteView bytes, const BytePattern& pattern)
      : bytes_(bytes), pattern_(pattern), cells_((bytes.size() + 1) * (pattern.size() + 1)) {
    for (std::size_t i = bytes.size() + 1; i-- > 0;) {
      for (std::size_t j = pattern.size() + 1; j-- > 0;) Cell(i, j) = Cost(i, j);
    }
  }

  std::size_t Distance() { return Cell(0, 0); }

  std::string FirstDifference() {
    std::size_t at = 0;
    while (IsChangedAt(at) && Fits(bytes_[at], pattern_[at])) ++at;
    const std::string place = std::to_string(at + 1);
    if (IsChangedAt(at))
      return Say("byte %1 is %2 instead of %3", {place, HexByte(bytes_[at]), HexByte(pattern_[at].Value)});
    const bool missing =
        at == bytes_.size() || (at < pattern_.size() && Cell(at, at) == Cell(at, at + 1) + kChange);
    if (missing) return Say("byte %1 (%2) is missing", {place, HexByte(pattern_[at].Value)});
    return Say("byte %1 (%2) is one too many", {place, HexByte(bytes_[at])});
  }

 private:
  std::size_t& Cell(std::size_t i, std::size_t j) { return cells_[i * (pattern_.size() + 1) + j]; }
  std::size_t Cost(std::size_t i, std::size_t j) {
    if (i == bytes_.size()) return kChange * (pattern_.size() - j);
    if (j == pattern_.size()) return kChange * (bytes_.size() - i);
    return std::min({Cell(i + 1, j + 1) + CostOf(bytes_[i], pattern_[j]), Cell(i + 1, j) + kChange,
                     Cell(i, j + 1) + kChange});
  }
  // The byte at that place stands for the pattern's there, rightly or not.
  bool IsChangedAt(std::size_t at) {
    return at < bytes_.size() && at < pattern_.size() &&
           Cell(at, at) == Cell(at + 1, at + 1) + CostOf(bytes_[at], pattern_[at]);
  }

  ByteView bytes_;
  const BytePattern& pattern_;
  std::vector<std::size_t> cells_;
};

}  // namespace

BytePattern PatternOf(const SerialString& string) {
  BytePattern pattern;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    pattern.push_back(
        {string.Values[i], IsKind(string, i, ByteKind::VAR) || IsKind(string, i, ByteKind::IGN)});
  }
  return pattern;
}

bool Matches(ByteView bytes, const BytePattern& pattern) {
  return std::equal(bytes.begin(), bytes.end(), pattern.begin(), pattern.end(), Fits);
}

bool Begins(ByteView bytes, const BytePattern& pattern) {
  return bytes.size() < pattern.size() && std::equal(bytes.begin(), bytes.end(), pattern.begin(), Fits);
}

bool Matches(ByteView bytes, const LineCommand& command) {
  return Matches(bytes, command.Pattern) || (!command.Stored.empty() && Matches(bytes, command.Stored));
}

bool Begins(ByteView bytes, const LineCommand& command) {
  return Begins(bytes, command.Pattern) || Begins(bytes, command.Stored);
}

int Occurrences(ByteView bytes, const BytePattern& pattern) {
  int found = 0;
  while (!pattern.empty() && bytes.size() >= pattern.size()) {
    const bool here = Matches(bytes.first(pattern.size()), pattern);
    if (here) ++found;
    bytes = bytes.subspan(here ? pattern.size() : 1);
  }
  return found;
}

std::vector<LineCommand> CommandsOnLine(const ProjectorDefinition& projector) {
  std::vector<LineCommand> commands;
  for (const SlotFacts& slot : kSlots) {
    if (slot.Role != SlotRole::Command || projector.Strings[slot.Place].BytesInUse() == 0) continue;
    commands.push_back(CommandIn(projector, slot.Place));
  }
  const bool none =
      std::none_of(commands.begin(), commands.end(), [](const LineCommand& c) { return c.InUse; });
  for (LineCommand& command : commands) command.InUse = command.InUse || none;
  return commands;
}

std::optional<std::int16_t> LevelIn(ByteView command, const LineCommand& form,
                                    const ProjectorDefinition& projector) {
  if (form.LevelBytes == 0 || !Matches(command, form.Pattern)) return std::nullopt;
  const ByteView carried = command.subspan(form.LevelAt, form.LevelBytes);
  const VolumeFormat format = VolumeFormatOf(projector);
  for (int level = format.MinimumLevel; level <= format.MaximumLevel; ++level) {
    const auto bytes = LevelBytes(format, static_cast<std::int16_t>(level));
    if (std::equal(bytes.begin(), bytes.end(), carried.begin(), carried.end()))
      return static_cast<std::int16_t>(level);
  }
  return std::nullopt;
}

std::optional<NearestCommand> FindNearest(ByteView bytes, const std::vector<LineCommand>& commands) {
  std::optional<NearestCommand> nearest;
  std::size_t least = 0;
  for (const LineCommand& command : commands) {
    EditTable edits(bytes, command.Pattern);
    const std::size_t distance = edits.Distance();
    if (distance == 0 || distance > std::max(bytes.size(), command.Pattern.size())) continue;
    if (nearest && distance >= least) continue;
    least = distance;
    nearest = NearestCommand{command.Place, edits.FirstDifference()};
  }
  return nearest;
}

}  // namespace qdm
