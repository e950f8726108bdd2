#include "manuals/pairing.h"

#include "base/words.h"
#include "manuals/chains.h"
#include "manuals/columns.h"
#include "manuals/prose.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

// Every place in `pieces` that is a code, with the texts around it.
class LabelSeeker {
 public:
  LabelSeeker(const ManualPage& page, const std::vector<Code>& codes)
      : page_(page), codes_(codes), pieces_(MakePieces(page, codes)) {
    CountSides();
  }

  std::vector<Finding> Seek();
  const std::vector<Piece>& Pieces() const { return pieces_; }

 private:
  bool SameLine(std::size_t a, std::size_t b) const { return LineAt(a, true) == LineAt(b, false); }
  // Where the piece ends (or begins).
  std::size_t LineAt(std::size_t piece, bool end) const {
    const Piece& p = pieces_[piece];
    if (p.IsText()) return p.Where.Line;
    return end ? codes_[p.Code].End().Line : codes_[p.Code].Begin().Line;
  }
  // Where the page's labels stand, and whether it leaves a doubt about that.
  struct Habits {
    Side Row = Side::Left;
    Side Cell = Side::Above;
    bool RowClear = false;
    bool CellClear = false;
  };
  Habits HabitsOfPage() const;
  Finding Seek(std::size_t at, const Habits& habits) const;
  std::optional<std::size_t> TextAt(std::size_t code, Side side, bool pastHeadings = true) const;
  bool CouldLabel(std::size_t code, Side side) const;
  void CountSides();
  std::optional<Finding> SecondInRow(std::size_t at) const;
  std::optional<Finding> StateInRow(std::size_t at) const;
  std::optional<Finding> OneOfSeveral(std::size_t at) const;
  bool IsSilent(std::size_t text) const;
  std::optional<std::size_t> TextInstead(std::size_t at, std::size_t text, Side row) const;
  void SpreadStackedHeadings(std::vector<Finding>& findings) const;
  void HeedRows(std::size_t at, Finding& finding) const;
  void HeedMarks(std::vector<Finding>& findings) const;
  bool BelowOtherTitle(std::size_t at) const;
  std::u16string MarksOf(std::size_t at) const;
  bool OnRow(std::size_t code) const {
    return TextAt(code, Side::Left).has_value() || TextAt(code, Side::Right).has_value();
  }
  Span WithoutCode(Span label, const Code& code) const;
  Finding Label(std::size_t code, std::size_t text, Side side) const;

  // What stands behind the code where the table has a column for what the model supports.
  std::u16string SupportOf(std::size_t code) const {
    const auto text = TextAt(code, Side::Right);
    return text ? FoldLetters(page_.At(pieces_[*text].Where)) : std::u16string();
  }

  const ManualPage& page_;
  const std::vector<Code>& codes_;
  std::vector<Piece> pieces_;
  Chains chains_;
  bool supportColumn_ = false;
  std::size_t rows_ = 0;   // codes with a label on their line
  std::size_t cells_ = 0;  // codes with one above or below
  std::array<int, kSides> votes_{};
  std::array<int, kSides> chances_{};  // codes that could have their labels there
};

// The nearest text on that side with no code between.
std::optional<std::size_t> LabelSeeker::TextAt(std::size_t code, Side side, bool pastHeadings) const {
  const bool back = side == Side::Left || side == Side::Above;
  constexpr std::size_t kFarthest = 4;
  std::size_t at = code;
  for (std::size_t steps = 0; steps < kFarthest; ++steps) {
    if (back ? at == 0 : at + 1 >= pieces_.size()) return std::nullopt;
    at = back ? at - 1 : at + 1;
    if (!pieces_[at].IsText() || pieces_[at].Sentence) return std::nullopt;
    const bool row = back ? SameLine(at, code) : SameLine(code, at);
    if (row != (side == Side::Left || side == Side::Right)) {
      if (!row) return std::nullopt;
      continue;
    }
    if (!pieces_[at].Heading) return at;
    if (!pastHeadings) return std::nullopt;
  }
  return std::nullopt;
}

// Whether a cell above or below names a function, past cells that say nothing ("none").
bool LabelSeeker::CouldLabel(std::size_t code, Side side) const {
  constexpr std::size_t kFarthest = 3;
  std::size_t at = code;
  for (std::size_t steps = 0; steps < kFarthest; ++steps) {
    if (side == Side::Above ? at == 0 : at + 1 >= pieces_.size()) return false;
    at = side == Side::Above ? at - 1 : at + 1;
    const Piece& piece = pieces_[at];
    if (!piece.IsText() || piece.Sentence || (piece.Heading && !piece.Caption)) return false;
    if (piece.Says.What != Subject::None) return true;
  }
  return false;
}

void LabelSeeker::CountSides() {
  for (std::size_t at = 0; at < pieces_.size(); ++at) {
    if (pieces_[at].IsText()) continue;
    for (const Side side : {Side::Left, Side::Right}) {
      const auto text = TextAt(at, side);
      if (!text) continue;
      const Function& says = pieces_[*text].Says;
      int& votes = votes_[static_cast<std::size_t>(side)];
      if (says.What != Subject::None) ++votes;
      if (SlotOf(says)) votes += 2;
    }
    ++(OnRow(at) ? rows_ : cells_);
    supportColumn_ |= SupportOf(at) == u"yes";
  }
  for (std::size_t at = 0; at < pieces_.size(); ++at) {
    if (pieces_[at].IsText() || OnRow(at)) continue;
    for (const Side side : {Side::Above, Side::Below}) {
      const auto text = TextAt(at, side, false);
      if (CouldLabel(at, side)) ++chances_[static_cast<std::size_t>(side)];
      if (text && pieces_[*text].Says.What != Subject::None) votes_[static_cast<std::size_t>(side)] += 2;
    }
  }
  chains_ = FindChains(page_, codes_, pieces_);
  for (std::size_t side = 0; side < kSides; ++side) votes_[side] += chains_.Votes[side];
}

// "Power On PWR1" before "@PWR1": the label ends before what the code repeats.
Span LabelSeeker::WithoutCode(Span label, const Code& code) const {
  const Text text = page_.At(label);
  const std::size_t blank = text.rfind(u' ');
  if (blank == Text::npos || text.size() - blank < 4) return label;
  const Function last = ClassifyLabel(text.substr(blank + 1));
  if (last.What != Subject::None || last.To != State::None || last.Unknown == 0) return label;
  std::u16string characters;
  for (const CodeByte& byte : code.Bytes) characters += static_cast<char16_t>(byte.Value);
  if (characters.find(text.substr(blank + 1)) == std::u16string::npos) return label;
  return Trim(page_, {label.Line, label.From, label.From + blank});
}

// The label with what belongs to it: a bracket on the next line, the subject that stands above it.
Finding LabelSeeker::Label(std::size_t code, std::size_t text, Side side) const {
  Finding finding;
  finding.What = codes_[pieces_[code].Code];
  finding.For = pieces_[text].Says;
  finding.Label = {WithoutCode(pieces_[text].Where, finding.What)};
  if (finding.Label.front() != pieces_[text].Where)
    finding.For = ClassifyLabel(page_.At(finding.Label.front()));
  if (side == Side::Below && text + 1 < pieces_.size() && pieces_[text + 1].IsText()) {
    const Piece& next = pieces_[text + 1];
    if (next.Bracketed) {
      finding.For.AtOnce |= next.Says.AtOnce;
      finding.For.Confirms |= next.Says.Confirms;
      finding.Label.push_back(next.Where);
    }
  }
  const auto subjectless = [](const Function& f) {
    return f.What == Subject::None || f.What == Subject::Power;
  };
  if (!subjectless(finding.For) || finding.For.To == State::None) return finding;
  // The subject of a bare "Off" is that of the nearest label above that has one.
  constexpr std::size_t kFarthest = 10;
  for (std::size_t back = 1; back <= kFarthest && back <= text; ++back) {
    const Piece& above = pieces_[text - back];
    if (!above.IsText() || above.Heading) continue;
    if (above.Says.What == Subject::None && above.Says.Unknown == 0) continue;
    Function context = above.Says;
    if (context.What == Subject::None && above.Says.To == State::None) {
      const bool behindCode = text - back > 0 && !pieces_[text - back - 1].IsText();
      if (!behindCode && (above.Says.Words == 0 || page_.At(above.Where).size() < 8)) continue;
      context.What = Subject::Other;
    }
    context.Plain = true;
    const Function joined = InContext(finding.For, context);
    if (joined.What != finding.For.What) finding.Label.insert(finding.Label.begin(), above.Where);
    finding.For = joined;
    constexpr std::size_t kNear = 4;
    if (back > kNear) finding.For.Plain = false;
    break;
  }
  return finding;
}

bool LabelSeeker::IsSilent(std::size_t text) const {
  return pieces_[text].Says.What == Subject::None && pieces_[text].Says.To == State::None;
}

// What stands beside the code says nothing: perhaps what stands on its other side or above does.
std::optional<std::size_t> LabelSeeker::TextInstead(std::size_t at, std::size_t text, Side row) const {
  const auto other = TextAt(at, row == Side::Left ? Side::Right : Side::Left);
  if (other && SlotOf(pieces_[*other].Says)) return other;
  if (text > 0 && pieces_[text - 1].IsText() && SlotOf(pieces_[text - 1].Says)) return text - 1;
  const auto up = TextAt(at, Side::Above);
  return up && SlotOf(pieces_[*up].Says) ? up : std::nullopt;
}

LabelSeeker::Habits LabelSeeker::HabitsOfPage() const {
  const auto clear = [this](std::size_t a, std::size_t b) {
    const int most = std::max(votes_[a], votes_[b]);
    return most >= 3 && most >= 2 * std::min(votes_[a], votes_[b]);
  };
  Habits habits;
  habits.Row = votes_[0] >= votes_[1] ? Side::Left : Side::Right;
  habits.Cell = votes_[2] >= votes_[3] ? Side::Above : Side::Below;
  // Rows where the page has cells are labels that have run into the code of the next row.
  habits.RowClear = clear(0, 1) && rows_ * 2 >= cells_;
  habits.CellClear =
      clear(2, 3) && std::max(chances_[2], chances_[3]) >= 2 * std::min(chances_[2], chances_[3]);
  return habits;
}

std::vector<Finding> LabelSeeker::Seek() {
  const Habits habits = HabitsOfPage();
  std::vector<Finding> findings(codes_.size());
  for (std::size_t at = 0; at < pieces_.size(); ++at) {
    if (pieces_[at].IsText()) continue;
    auto found = StateInRow(at);
    if (!found) found = SecondInRow(at);
    if (!found) found = OneOfSeveral(at);
    findings[pieces_[at].Code] = found ? std::move(*found) : Seek(at, habits);
  }
  SpreadStackedHeadings(findings);
  HeedMarks(findings);
  return findings;
}

Finding LabelSeeker::Seek(std::size_t at, const Habits& habits) const {
  const Code& code = codes_[pieces_[at].Code];
  Finding finding;
  finding.What = code;
  const bool onRow = OnRow(at);
  // Right behind another code it is no cell of its own.
  if (!onRow && at > 0 && !pieces_[at - 1].IsText() && SameLine(at - 1, at)) return finding;
  const auto above = TextAt(at, Side::Above, false);
  const bool leadsOver = !onRow && above && pieces_[*above].LeadsOver;
  const Side ofCell = leadsOver ? Side::Above : chains_.Sides[at].value_or(habits.Cell);
  Side side = code.LeadsLabel ? Side::Right : onRow ? habits.Row : ofCell;
  auto text = TextAt(at, side);
  bool asRest = true;
  if (onRow && text && IsSilent(*text)) {
    if (const auto other = TextInstead(at, *text, habits.Row)) {
      text = other;
      asRest = false;
    }
  }
  if (!text && onRow) {  // the page's side is empty here
    side = side == Side::Left ? Side::Right : Side::Left;
    text = TextAt(at, side);
    asRest = false;
  }
  if (!text && onRow) {
    side = habits.Cell;
    text = TextAt(at, side);
  }
  if (!text) return finding;
  finding = Label(at, *text, side);
  if (supportColumn_ && SupportOf(at).substr(0, 3) == u"no") finding.For.Unsupported = true;
  if (onRow) HeedRows(at, finding);
  const bool cellClear = leadsOver || chains_.Clear[at] || (side == habits.Cell && habits.CellClear);
  finding.Settled =
      asRest && finding.Doubt.empty() && !finding.What.LeadsLabel && (onRow ? habits.RowClear : cellClear);
  if (!finding.Settled && finding.Doubt.empty())
    finding.Doubt = Marked("which label belongs to which code is not certain");
  return finding;
}

// What else stands on the row: that the model does not have it, or a title of other things ("Picture mode").
void LabelSeeker::HeedRows(std::size_t at, Finding& finding) const {
  for (std::size_t next = at + 1; next < pieces_.size() && pieces_[next].IsText() && SameLine(at, next);
       ++next)
    finding.For.Unsupported |= pieces_[next].Says.Unsupported;
  const Subject what = finding.For.What;
  const bool input = what == Subject::Computer || what == Subject::Digital || what == Subject::Video ||
                     what == Subject::SVideo;
  if (input && !finding.For.Switches && BelowOtherTitle(at))
    finding.Doubt = Marked("it stands below a title of something else");
}

// Rows of a group: its title stands on a line of its own or left of the label of its first row.
bool LabelSeeker::BelowOtherTitle(std::size_t at) const {
  constexpr std::size_t kFarthest = 60;
  std::size_t line = pieces_[at].Where.Line;
  std::size_t texts = 0;
  bool code = true;
  for (std::size_t back = 1; back <= kFarthest && back <= at; ++back) {
    const Piece& piece = pieces_[at - back];
    if (piece.Where.Line != line) {
      line = piece.Where.Line;
      texts = 0;
      code = false;
    }
    code |= !piece.IsText();
    if (!piece.IsText()) continue;
    ++texts;
    const bool leftmost = back == at || pieces_[at - back - 1].Where.Line != line;
    const bool title = leftmost && (code ? texts >= 2 : texts == 1);
    constexpr std::size_t kLongestTitle = 30;
    if (title && !piece.Heading && page_.At(piece.Where).size() <= kLongestTitle)
      return piece.Says.What == Subject::Other;
  }
  return false;
}

// "o  -", "yes", "x": what stands behind the code for the models of the page; empty where it is something
// else.
std::u16string LabelSeeker::MarksOf(std::size_t at) const {
  const Code& code = codes_[pieces_[at].Code];
  const Text rest = Text(page_.Lines[code.End().Line]).substr(code.End().To);
  constexpr std::size_t kLongest = 60;
  std::u16string marks;
  if (rest.size() > kLongest) return marks;
  const std::u16string folded = FoldLetters(rest);
  for (std::size_t from = 0; from < folded.size();) {
    const std::size_t begin = folded.find_first_not_of(u" \t|", from);
    if (begin == Text::npos) break;
    const std::size_t end = std::min(folded.find_first_of(u" \t|", begin), folded.size());
    const Text token = Text(folded).substr(begin, end - begin);
    const bool sign = token.size() == 1 && (Text(u"oxyn-*+").find(token[0]) != Text::npos ||
                                            (token[0] > 0xBF && token[0] < 0x2E80));
    if (!sign && token != u"yes" && token != u"no" && token != u"--" && token != u"n/a") return {};
    marks += token;
    marks += u' ';
    from = end;
  }
  return marks;
}

// A row that is marked unlike most others could be missing on this model.
void LabelSeeker::HeedMarks(std::vector<Finding>& findings) const {
  constexpr std::size_t kFewest = 3;
  std::map<std::u16string, std::vector<std::size_t>> marked;
  for (std::size_t at = 0; at < pieces_.size(); ++at) {
    if (pieces_[at].IsText()) continue;
    if (std::u16string marks = MarksOf(at); !marks.empty())
      marked[std::move(marks)].push_back(pieces_[at].Code);
  }
  std::size_t most = 0;
  for (const auto& [marks, rows] : marked) most = std::max(most, rows.size());
  if (most < kFewest || marked.size() < 2) return;
  for (const auto& [marks, rows] : marked) {
    for (const std::size_t row : rows) {
      if (rows.size() == most) continue;
      findings[row].Settled = false;
      findings[row].Doubt = Marked("its row is marked unlike the others");
    }
  }
}

// The second code of a row is for the second input that the head of the table names: "Computer1 | Computer2".
std::optional<Finding> LabelSeeker::SecondInRow(std::size_t at) const {
  if (at < 2 || pieces_[at - 1].IsText() || !SameLine(at - 1, at) || !pieces_[at - 2].IsText() ||
      !SameLine(at - 2, at))
    return std::nullopt;
  constexpr std::size_t kFarthest = 40;
  for (std::size_t back = 3; back <= kFarthest && back < at; ++back) {
    const Piece& second = pieces_[at - back + 1];
    const Piece& first = pieces_[at - back];
    if (!first.IsText() || !second.IsText() || first.Where.Line != second.Where.Line) continue;
    if (first.Says.Number != 1 || second.Says.Number != 2 || first.Says.What != second.Says.What) continue;
    Finding finding = Label(at, at - 2, Side::Left);
    if (finding.For.What != second.Says.What) return std::nullopt;
    finding.For.Number = 2;
    finding.Label.push_back(second.Where);
    finding.Doubt = Marked("the table has a column for each input");
    return finding;
  }
  return std::nullopt;
}

// Commands side by side behind one label: which is the model's, or which is the answer, the row does not say.
std::optional<Finding> LabelSeeker::OneOfSeveral(std::size_t at) const {
  const auto codeAt = [&](std::size_t i) { return i < pieces_.size() && !pieces_[i].IsText(); };
  constexpr std::size_t kMost = 4;  // a row with more is no row
  std::size_t first = at;
  while (first > 0 && at - first < kMost && codeAt(first - 1) && SameLine(first - 1, first)) --first;
  const bool several = first < at || (codeAt(at + 1) && SameLine(at, at + 1));
  const auto column = [&](std::size_t i) {
    const Span& code = codes_[pieces_[i].Code].End();
    const Text line = page_.Lines[code.Line];
    const std::size_t end = code.To;
    return line.substr(end, pieces_[i + 1].Where.From - end).find_first_of(u"|\t") != Text::npos ||
           line.substr(end, 2) == u"  ";
  };
  if (!several || !column(first) || first == 0 || !pieces_[first - 1].IsText() || !SameLine(first - 1, first))
    return std::nullopt;
  const Code& one = codes_[pieces_[first].Code];
  const Code& other = codes_[pieces_[first + 1].Code];
  const bool alike = one.How == other.How && one.Bytes.size() == other.Bytes.size();
  if (!SlotOf(pieces_[first - 1].Says) || (!alike && first == at)) return std::nullopt;
  if (!alike) {  // the answer, or another form of the first: it has no label of its own
    Finding answer;
    answer.What = codes_[pieces_[at].Code];
    return answer;
  }
  Finding finding = Label(at, first - 1, Side::Left);
  finding.Doubt = Marked("its row has several commands");
  return finding;
}

// "Power" with two codes below the headings "On" and "Off".
std::optional<Finding> LabelSeeker::StateInRow(std::size_t at) const {
  const auto code = [&](std::size_t i) { return i < pieces_.size() && !pieces_[i].IsText(); };
  const bool second = at > 0 && code(at - 1) && SameLine(at - 1, at);
  const std::size_t first = second ? at - 1 : at;
  const bool pair = first > 0 && code(first + 1) && SameLine(first, first + 1) &&
                    !(code(first + 2) && SameLine(first, first + 2));
  if (!pair || !pieces_[first - 1].IsText() || !SameLine(first - 1, first)) return std::nullopt;
  const Function& label = pieces_[first - 1].Says;
  if (label.What == Subject::None || label.To != State::None) return std::nullopt;
  constexpr std::size_t kFarthest = 60;
  for (std::size_t back = 2; back <= kFarthest && back < first; ++back) {
    const Piece& right = pieces_[first - back + 1];
    const Piece& left = pieces_[first - back];
    if (!left.IsText() || !right.IsText() || left.Where.Line != right.Where.Line) continue;
    const auto state = [](const Piece& piece) {
      const bool alone = piece.Says.Words == 1 && (piece.Says.To == State::On || piece.Says.To == State::Off);
      return alone ? piece.Says.To : State::None;
    };
    if (state(left) == State::None || state(right) == State::None || state(left) == state(right)) continue;
    Finding finding = Label(at, first - 1, Side::Left);
    finding.For = label;
    finding.For.To = state(second ? right : left);
    finding.Label.push_back((second ? right : left).Where);
    finding.Doubt = Marked("the table has a column for each state");
    return finding;
  }
  return std::nullopt;
}

// Headings that stand together before the first of their sections belong to the codes that follow, in turn.
void LabelSeeker::SpreadStackedHeadings(std::vector<Finding>& findings) const {
  std::size_t at = 0;
  while (at < pieces_.size()) {
    std::size_t end = at;
    while (end < pieces_.size() && pieces_[end].Numbered && SlotOf(pieces_[end].Says)) ++end;
    const std::size_t stacked = end - at;
    std::vector<std::size_t> codes;
    for (std::size_t next = end; next < pieces_.size() && codes.size() < stacked; ++next) {
      const bool another = pieces_[next].IsText() && SlotOf(pieces_[next].Says) && codes.empty();
      if (another) break;
      if (!pieces_[next].IsText()) codes.push_back(next);
    }
    // In a list of codes with their labels nothing is stacked.
    const bool apart = codes.size() == stacked && stacked >= 2 && codes[1] - codes[0] >= 4;
    for (std::size_t i = 0; apart && i < stacked; ++i) {
      Finding& finding = findings[pieces_[codes[i]].Code];
      finding.For = pieces_[at + i].Says;
      finding.Label = {pieces_[at + i].Where};
      finding.Settled = false;
      finding.Doubt = Marked("the headings stand apart from their commands");
    }
    at = std::max(end, at + 1);
  }
}

}  // namespace

std::vector<Finding> PairLabels(const ManualPage& page, const std::vector<Code>& codes) {
  LabelSeeker seeker(page, codes);
  std::vector<Finding> findings = seeker.Seek();
  AlignColumns(seeker.Pieces(), findings);
  LabelProse(page, findings);
  return findings;
}

}  // namespace qdm
