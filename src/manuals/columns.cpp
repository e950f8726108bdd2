#include "manuals/columns.h"

#include "base/words.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace qdm {
namespace {

constexpr const char* kInColumns = Marked("labels and commands stand in separate columns");
constexpr std::size_t kShortestColumn = 3;
constexpr std::size_t kShortestCodeColumn = 2;

struct Column {
  std::size_t From = 0;  // places among the pieces
  std::size_t To = 0;
  std::vector<std::size_t> Cells;
};

class ColumnMaker {
 public:
  bool Empty() const { return column_.Cells.empty(); }
  void Take(std::size_t at) {
    if (Empty()) column_.From = at;
    column_.Cells.push_back(at);
  }
  // A column that is too short is none.
  void Close(std::size_t at) {
    column_.To = at;
    if (column_.Cells.size() >= kShortestCodeColumn) made_.push_back(column_);
    column_ = {};
  }
  std::vector<Column> Made() && { return std::move(made_); }

 private:
  Column column_;
  std::vector<Column> made_;
};

bool IsCell(const Piece& piece) { return piece.IsText() && !piece.Heading && !piece.Sentence; }

// Codes on lines of their own that follow each other with nothing between.
std::vector<Column> CodeColumns(const std::vector<Piece>& pieces) {
  ColumnMaker columns;
  std::size_t rowOfLabel = Piece::kText;
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    if (pieces[at].IsText()) {
      columns.Close(at);
      rowOfLabel = pieces[at].Where.Line;
    } else if (pieces[at].Where.Line != rowOfLabel) {
      columns.Take(at);
    }
  }
  columns.Close(pieces.size());
  return std::move(columns).Made();
}

// "Power" above "On" and "Off", "Input" above its kinds.
bool IsTitle(const Piece& piece, const Piece& next) {
  if (piece.Says.To != State::None) return false;
  if (piece.Says.What == Subject::Input) return piece.Says.Number == 0;
  return next.Says.What == Subject::None && next.Says.To != State::None;
}

// Texts between codes, headings and sentences; a bracket belongs to the cell before it.
std::vector<Column> LabelColumns(const std::vector<Piece>& pieces, bool titles) {
  ColumnMaker columns;
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    if (!IsCell(pieces[at])) {
      columns.Close(at);
    } else if (!pieces[at].Bracketed || columns.Empty()) {
      if (!titles && at + 1 < pieces.size() && IsTitle(pieces[at], pieces[at + 1])) continue;
      columns.Take(at);
    }
  }
  columns.Close(pieces.size());
  return std::move(columns).Made();
}

// The state below a title is that of the title's function.
Function SaysInColumn(const std::vector<Piece>& pieces, std::size_t cell) {
  const Function& says = pieces[cell].Says;
  if (says.What != Subject::None || says.To == State::None) return says;
  constexpr std::size_t kFarthest = 4;
  for (std::size_t back = 1; back <= kFarthest && back <= cell; ++back) {
    const Piece& above = pieces[cell - back];
    if (!above.IsText()) break;
    if (above.Says.What == Subject::None && above.Says.To != State::None) continue;
    return above.Says.What == Subject::None ? says : InContext(says, above.Says);
  }
  return says;
}

struct Window {
  const Column* In = nullptr;
  std::size_t First = 0;
  int Score = 0;
  bool Whole = false;
};

int ScoreOf(const std::vector<Piece>& pieces, const Column& labels, std::size_t first, std::size_t count) {
  int score = 0;
  for (std::size_t i = first; i < first + count; ++i) {
    if (SlotOf(SaysInColumn(pieces, labels.Cells[i])))
      score += 4;
    else if (pieces[labels.Cells[i]].Says.What != Subject::None)
      score += 1;
  }
  if (score == 0) return 0;
  if (SlotOf(pieces[labels.Cells[first]].Says)) score += 2;
  if (first == 0) score += 3;
  if (first + count == labels.Cells.size()) score += 3;
  // A column of the same length is hardly a part of a longer one.
  constexpr int kWhole = 20;
  if (count == labels.Cells.size()) score += kWhole;
  return score;
}

// The one place where labels fit best; nothing when two fit alike.
std::optional<Window> FittingLabels(const std::vector<Piece>& pieces, const std::vector<Column>& labels,
                                    std::size_t count) {
  Window best;
  bool twice = false;
  for (const Column& column : labels) {
    for (std::size_t first = 0; first + count <= column.Cells.size(); ++first) {
      const int score = ScoreOf(pieces, column, first, count);
      if (score == 0 || score < best.Score) continue;
      twice = score == best.Score;
      best = {&column, first, score, column.Cells.size() == count};
    }
  }
  if (!best.In || twice) return std::nullopt;
  return best;
}

// Two codes are taken only for two labels that both have a function.
bool BothFilled(const std::vector<Piece>& pieces, const Window& window) {
  return window.Whole && SlotOf(pieces[window.In->Cells[0]].Says) &&
         SlotOf(SaysInColumn(pieces, window.In->Cells[1]));
}

constexpr std::size_t kMostCells = 4000;  // beyond that a page is no table

}  // namespace

int ColumnFit(const std::vector<Piece>& pieces) {
  if (pieces.size() > kMostCells) return 0;
  const std::vector<Column> labels = LabelColumns(pieces, true);
  const std::vector<Column> plain = LabelColumns(pieces, false);
  int fit = 0;
  for (const Column& column : CodeColumns(pieces)) {
    const auto titled = FittingLabels(pieces, labels, column.Cells.size());
    const auto untitled = FittingLabels(pieces, plain, column.Cells.size());
    fit += std::max(titled ? titled->Score : 0, untitled ? untitled->Score : 0);
  }
  return fit;
}

void AlignColumns(const std::vector<Piece>& pieces, std::vector<Finding>& findings) {
  const std::vector<Column> codes = CodeColumns(pieces);
  if (codes.empty()) return;
  const std::vector<Column> labels = LabelColumns(pieces, true);
  const std::vector<Column> plain = LabelColumns(pieces, false);
  if (pieces.size() > kMostCells) return;
  for (const Column& column : codes) {
    auto fitting = FittingLabels(pieces, labels, column.Cells.size());
    const auto untitled = FittingLabels(pieces, plain, column.Cells.size());
    if (untitled && (!fitting || untitled->Score > fitting->Score)) fitting = untitled;
    for (std::size_t i = 0; i < column.Cells.size(); ++i) {
      Finding& finding = findings[pieces[column.Cells[i]].Code];
      finding.Settled = false;
      finding.Doubt = kInColumns;
      if (!fitting || (column.Cells.size() < kShortestColumn && !BothFilled(pieces, *fitting))) continue;
      const Piece& label = pieces[fitting->In->Cells[fitting->First + i]];
      finding.For = SaysInColumn(pieces, fitting->In->Cells[fitting->First + i]);
      finding.Label = {label.Where};
      // Without a second column that says the same, a lost row would shift all that follow.
      finding.Settled = fitting->Whole && finding.What.Confirmed;
    }
  }
}

}  // namespace qdm
