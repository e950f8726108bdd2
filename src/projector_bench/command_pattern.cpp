#include "projector_bench/command_pattern.h"

#include "projectors/projector_volume.h"

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
  command.LevelAt = variable - 1;
  command.LevelBytes = LevelBytes(VolumeFormatOf(projector), projector.MaximumLevel).size();
  const auto place =
      command.Pattern.erase(command.Pattern.begin() + static_cast<std::ptrdiff_t>(command.LevelAt));
  command.Pattern.insert(place, command.LevelBytes, PatternByte{.Value = 0, .Any = true});
  return command;
}

std::string Text(std::uint8_t byte) { return HexByte(byte); }

// Changes, insertions and deletions that turn the first i bytes into the first j of the pattern.
class EditTable {
 public:
  EditTable(ByteView bytes, const BytePattern& pattern)
      : bytes_(bytes), pattern_(pattern), cells_((bytes.size() + 1) * (pattern.size() + 1)) {
    for (std::size_t i = bytes.size() + 1; i-- > 0;) {
      for (std::size_t j = pattern.size() + 1; j-- > 0;) Cell(i, j) = Cost(i, j);
    }
  }

  // Between everything from byte i and everything from pattern byte j on.
  std::size_t Distance() { return Cell(0, 0); }

  std::string FirstDifference() {
    std::size_t at = 0;
    while (at < bytes_.size() && at < pattern_.size() && Fits(bytes_[at], pattern_[at]) &&
           Cell(at, at) == Cell(at + 1, at + 1)) {
      ++at;
    }
    const std::string byte = "byte " + std::to_string(at + 1);
    if (at == bytes_.size()) return byte + " (" + Text(pattern_[at].Value) + ") is missing";
    if (at == pattern_.size()) return byte + " (" + Text(bytes_[at]) + ") is one too many";
    if (Cell(at, at) == Cell(at + 1, at + 1) + 1)
      return byte + " is " + Text(bytes_[at]) + " instead of " + Text(pattern_[at].Value);
    if (Cell(at, at) == Cell(at, at + 1) + 1) return byte + " (" + Text(pattern_[at].Value) + ") is missing";
    return byte + " (" + Text(bytes_[at]) + ") is one too many";
  }

 private:
  std::size_t& Cell(std::size_t i, std::size_t j) { return cells_[i * (pattern_.size() + 1) + j]; }
  std::size_t Cost(std::size_t i, std::size_t j) {
    if (i == bytes_.size()) return pattern_.size() - j;
    if (j == pattern_.size()) return bytes_.size() - i;
    const std::size_t change = Cell(i + 1, j + 1) + (Fits(bytes_[i], pattern_[j]) ? 0 : 1);
    return std::min({change, Cell(i + 1, j) + 1, Cell(i, j + 1) + 1});
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
  if (form.LevelBytes == 0) return std::nullopt;
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
    if (distance == 0 || distance * 2 > std::max(bytes.size(), command.Pattern.size())) continue;
    if (nearest && distance >= least) continue;
    least = distance;
    nearest = NearestCommand{command.Place, edits.FirstDifference()};
  }
  return nearest;
}

}  // namespace qdm
