#include "projectors/manual_draft.h"

#include "base/words.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace qdm {
namespace {

ManualCandidate CandidateOf(const ManualCommand& command) {
  ManualCandidate candidate{command.String, command.Function, command.ReadAs, command.CodeRanges};
  candidate.Ranges.insert(candidate.Ranges.end(), command.LabelRanges.begin(), command.LabelRanges.end());
  return candidate;
}

std::string MeaningOf(const ManualCandidate& candidate) {
  const std::string bytes = CompactText(candidate.String) + " (" + HexBytes(candidate.String) + ")";
  return candidate.Function.empty() ? bytes : "\"" + candidate.Function + "\": " + bytes;
}

std::size_t PlaceOf(const ManualRow& row, const SerialString& string) {
  const auto found =
      std::find_if(row.Candidates.begin(), row.Candidates.end(),
                   [&](const ManualCandidate& candidate) { return candidate.String == string; });
  return static_cast<std::size_t>(found - row.Candidates.begin());
}

auto OrderOf(std::size_t slot) { return std::pair(SlotHasIgnoreMask(slot), slot); }

}  // namespace

void ManualDraft::Read(std::u16string_view text) {
  text_ = text;
  reading_ = ReadManual(text_);
  rows_.clear();
  AddFound();
  AddMarked();
  ApplyDecisions();
  std::sort(rows_.begin(), rows_.end(),
            [](const ManualRow& a, const ManualRow& b) { return OrderOf(a.Slot) < OrderOf(b.Slot); });
  CollectPieces();
}

const ManualRow* ManualDraft::RowOf(std::size_t slot) const {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const ManualRow& each) { return each.Slot == slot; });
  return row == rows_.end() ? nullptr : &*row;
}

ManualRow& ManualDraft::Row(std::size_t slot) {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const ManualRow& each) { return each.Slot == slot; });
  if (row != rows_.end()) return *row;
  ManualRow fresh;
  fresh.Slot = slot;
  return rows_.emplace_back(std::move(fresh));
}

void ManualDraft::AddFound() {
  for (const ManualSlot& slot : reading_.Slots) {
    ManualRow& row = Row(static_cast<std::size_t>(slot.Slot));
    row.Candidates.push_back(CandidateOf(reading_.Commands[slot.Choice]));
    for (const std::size_t other : slot.Alternatives)
      row.Candidates.push_back(CandidateOf(reading_.Commands[other]));
    row.Sure = row.Ticked = slot.Sure;
    row.Doubt = slot.Doubt;
  }
  for (const ManualReply& reply : reading_.Replies) {
    ManualRow& row = Row(static_cast<std::size_t>(reply.Slot));
    row.Candidates.push_back({reply.String, {}, {}, reply.Ranges});
    row.Sure = row.Ticked = reply.Sure;
  }
}

void ManualDraft::AddMarked() {
  for (auto mark = marked_.begin(); mark != marked_.end();) {
    auto& [slot, marked] = *mark;
    if (text_.compare(std::min(marked.From, text_.size()), marked.Text.size(), marked.Text) != 0)
      marked.From = text_.find(marked.Text);
    const bool read = marked.From != std::u16string::npos && AddPiece(slot, marked, nullptr);
    mark = read ? std::next(mark) : marked_.erase(mark);
  }
}

// The rest of the page tells the notation; where it does not, the piece is read as pasted text is.
bool ManualDraft::AddPiece(std::size_t slot, const Marked& marked, std::string* problem) {
  const std::vector<ManualRange> ranges = RangesOf(marked.From, marked.Text.size());
  std::vector<ManualCandidate> candidates;
  const ParsedText parsed = ParseSerialText(marked.Text);
  const std::optional<SerialString> likeThePage = ReadManualPiece(reading_, marked.Text);
  if (likeThePage)
    candidates.push_back({*likeThePage, {}, qdm::Marked("read as the rest of the page"), ranges});
  for (const TextReading& reading : parsed.Readings)
    candidates.push_back({reading.String, {}, reading.As, ranges});
  if (candidates.empty()) {
    if (problem != nullptr)
      *problem = parsed.Problem ? ProblemText(*parsed.Problem) : Say("This cannot be read as a command");
    return false;
  }
  ManualRow& row = Row(slot);
  std::move(row.Candidates.begin(), row.Candidates.end(), std::back_inserter(candidates));
  row.Candidates.clear();
  for (ManualCandidate& candidate : candidates) {
    if (PlaceOf(row, candidate.String) == row.Candidates.size())
      row.Candidates.push_back(std::move(candidate));
  }
  row.Chosen = 0;
  row.Marked = true;
  row.Sure = false;
  row.Ticked = likeThePage || !parsed.NeedsChoice();
  row.Doubt = row.Ticked ? "" : qdm::Marked("it can be read in more than one way");
  return true;
}

void ManualDraft::ApplyDecisions() {
  std::erase_if(decisions_, [&](const auto& entry) {
    const std::size_t slot = entry.first;
    const Decision& decision = entry.second;
    const auto command =
        std::find_if(reading_.Commands.begin(), reading_.Commands.end(),
                     [&](const ManualCommand& each) { return each.String == decision.String; });
    const ManualRow* known = RowOf(slot);
    const bool listed = known != nullptr && PlaceOf(*known, decision.String) < known->Candidates.size();
    if (!listed && command == reading_.Commands.end()) return true;
    ManualRow& row = Row(slot);
    if (!listed) row.Candidates.push_back(CandidateOf(*command));
    row.Chosen = PlaceOf(row, decision.String);
    row.Ticked = decision.Ticked;
    return false;
  });
}

void ManualDraft::CollectPieces() {
  pieces_.clear();
  const auto add = [&](const std::vector<ManualRange>& ranges, std::optional<std::size_t> slot,
                       const std::string& meaning) {
    for (const ManualRange& range : ranges) pieces_.push_back({range, slot, meaning});
  };
  for (const ManualRow& row : rows_) add(row.Candidate().Ranges, row.Slot, MeaningOf(row.Candidate()));
  for (const ManualRow& row : rows_) {
    for (const ManualCandidate& candidate : row.Candidates)
      add(candidate.Ranges, row.Slot, MeaningOf(candidate));
  }
  for (const ManualCommand& command : reading_.Commands) {
    const ManualCandidate candidate = CandidateOf(command);
    std::optional<std::size_t> slot;
    if (command.Slot) slot = static_cast<std::size_t>(*command.Slot);
    add(candidate.Ranges, slot, MeaningOf(candidate));
  }
  add(reading_.Line.Ranges, std::nullopt, Say("line settings"));
}

std::vector<std::size_t> ManualDraft::NotFound() const {
  std::vector<std::size_t> missing;
  for (const SlotFacts& slot : kSlots) {
    const bool usual = slot.Role == SlotRole::Command && slot.ShownWith != kSerialEnableSlot;
    if (usual && RowOf(slot.Place) == nullptr) missing.push_back(slot.Place);
  }
  return missing;
}

void ManualDraft::Tick(std::size_t slot, bool ticked) {
  ManualRow& row = Row(slot);
  row.Ticked = ticked;
  decisions_.insert_or_assign(slot, Decision{row.Candidate().String, ticked});
}

void ManualDraft::Choose(std::size_t slot, std::size_t candidate) {
  ManualRow& row = Row(slot);
  row.Chosen = std::min(candidate, row.Candidates.size() - 1);
  Tick(slot, true);
  CollectPieces();
}

std::optional<std::string> ManualDraft::Mark(std::size_t slot, std::size_t from, std::size_t length) {
  const Marked marked{text_.substr(from, length), from};
  std::string problem;
  if (!AddPiece(slot, marked, &problem)) return problem;
  marked_.insert_or_assign(slot, marked);
  decisions_.erase(slot);
  Read(std::u16string(text_));
  return std::nullopt;
}

ManualChoices ManualDraft::Choices() const {
  ManualChoices choices{reading_.Line, {}};
  for (const ManualRow& row : rows_) {
    if (row.Ticked) choices.Strings.push_back({row.Slot, row.Candidate().String});
  }
  return choices;
}

std::vector<ManualRange> ManualDraft::RangesOf(std::size_t from, std::size_t length) const {
  std::vector<ManualRange> ranges;
  const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(from);
  std::size_t line = 1 + static_cast<std::size_t>(std::count(text_.begin(), begin, u'\n'));
  std::size_t lineStart = from == 0 ? 0 : text_.rfind(u'\n', from - 1) + 1;
  const std::size_t end = from + length;
  while (lineStart < end) {
    const std::size_t lineEnd = std::min(text_.find(u'\n', lineStart), text_.size());
    ranges.push_back({line++, std::max(from, lineStart) - lineStart, std::min(end, lineEnd) - lineStart});
    lineStart = lineEnd + 1;
  }
  return ranges;
}

bool BetterReading(const ManualReading& a, const ManualReading& b) {
  const auto worth = [](const ManualReading& reading) {
    const auto sure = std::count_if(reading.Slots.begin(), reading.Slots.end(),
                                    [](const ManualSlot& slot) { return slot.Sure; });
    return std::tuple(sure, reading.Slots.size(), reading.Commands.size());
  };
  return worth(a) > worth(b);
}

}  // namespace qdm
