#include "manuals/value_rows.h"

#include "base/words.h"
#include "manuals/framing.h"
#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr std::size_t kLongestRow = 160;

// The cells of a row: parted by two blanks, tabs or bars.
std::vector<Span> CellsOf(const ManualPage& page, std::size_t number) {
  const Text line = page.Lines[number];
  std::vector<Span> cells;
  if (line.size() > kLongestRow) return cells;
  std::size_t from = 0;
  for (std::size_t at = 0; at <= line.size(); ++at) {
    const bool parts =
        at == line.size() || line[at] == u'|' || line[at] == u'\t' || line.substr(at, 2) == u"  ";
    if (!parts) continue;
    const Span cell = Trim(page, {number, from, at});
    if (cell.From < cell.To) cells.push_back(cell);
    from = at + 1;
  }
  return cells;
}

// A name in capitals, perhaps with a sign before it: "KP", "%1POWR".
bool IsName(Text text) {
  constexpr std::size_t kShortest = 2;
  constexpr std::size_t kLongest = 8;
  constexpr Text kSigns = u"%#*:@!$&~>/";
  if (text.size() < kShortest || text.size() > kLongest) return false;
  const bool sign = kSigns.find(text[0]) != Text::npos;
  const Text letters = text.substr(sign ? 1 : 0);
  const bool capitals =
      std::all_of(letters.begin(), letters.end(), [](char16_t c) { return IsUpper(c) || IsDigit(c); });
  return capitals && std::any_of(letters.begin(), letters.end(), IsUpper) &&
         (sign || !SlotOf(ClassifyLabel(text)));
}

bool IsValue(Text text) {
  constexpr std::size_t kLongest = 3;
  return !text.empty() && text.size() <= kLongest && std::all_of(text.begin(), text.end(), IsDigit);
}

struct Row {
  Span Name;
  Span Value;
  Span Label;
  Function Says;
};

// "00 off, 01 on"
void AddInlineValues(const ManualPage& page, const Span& name, const Function& title, const Span& cell,
                     std::vector<Row>& rows) {
  const Text line = page.Lines[cell.Line];
  std::vector<Row> found;
  for (std::size_t from = cell.From; from < cell.To;) {
    const std::size_t comma = std::min({line.find(u',', from), line.find(u';', from), cell.To});
    const Span part = Trim(page, {cell.Line, from, comma});
    const std::size_t blank = std::min(line.find(u' ', part.From), part.To);
    const Span value{cell.Line, part.From, blank};
    const Span label = Trim(page, {cell.Line, blank, part.To});
    if (!IsValue(page.At(value)) || label.From == label.To) return;
    found.push_back({name, value, label, InContext(ClassifyLabel(page.At(label)), title)});
    from = comma + 1;
  }
  if (found.size() < 2) return;
  rows.insert(rows.end(), found.begin(), found.end());
}

std::vector<Row> RowsOf(const ManualPage& page) {
  std::vector<Row> rows;
  std::optional<Span> name;
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    std::vector<Span> cells = CellsOf(page, line);
    if (cells.size() < 2) {
      name.reset();
      continue;
    }
    const bool named = IsName(page.At(cells[0]));
    if (named) {
      name = cells[0];
      cells.erase(cells.begin());
    }
    if (name && cells.size() == 2 && IsValue(page.At(cells[0]))) {
      rows.push_back({*name, cells[0], cells[1], ClassifyLabel(page.At(cells[1]))});
    } else if (named && cells.size() == 2) {
      AddInlineValues(page, *name, ClassifyLabel(page.At(cells[0])), cells[1], rows);
      name.reset();
    }
  }
  return rows;
}

}  // namespace

std::vector<Finding> ComposeByValueRows(const ManualPage& page, const std::vector<Code>& codes) {
  std::vector<Finding> findings;
  const std::vector<Row> rows = RowsOf(page);
  std::set<int> slots;
  for (const Row& row : rows) {
    if (const auto slot = SlotOf(row.Says)) slots.insert(*slot);
  }
  constexpr std::size_t kFewest = 2;
  if (slots.size() < kFewest) return findings;
  const Frame frame = FrameOfText(page);
  const bool blank = Says(page.Folded, {u"a blank", u"a space", u"one space", u"blank,", u"space,",
                                        u"leerzeichen", u"espace", u"espacio", u"<sp>", u"[sp]"});
  for (const Row& row : rows) {
    const bool known = std::any_of(codes.begin(), codes.end(), [&](const Code& code) {
      return code.Begin().Line == row.Value.Line && code.Begin().From < row.Value.To &&
             row.Value.From < code.End().To;
    });
    if (!SlotOf(row.Says) || known) continue;
    Finding finding;
    Code& code = finding.What;
    code.How = Notation::Characters;
    code.Bytes = frame.Before;
    for (const Text text : {page.At(row.Name), Text(blank ? u" " : u""), page.At(row.Value)}) {
      const CodeBytes bytes = Characters(text);
      code.Bytes.insert(code.Bytes.end(), bytes.begin(), bytes.end());
    }
    code.Bytes.insert(code.Bytes.end(), frame.Behind.begin(), frame.Behind.end());
    code.Where = {row.Name, row.Value};
    code.Composed = true;
    code.Framed = frame.Settled;
    finding.For = row.Says;
    finding.Label = {row.Label};
    finding.Doubt = Marked("put together from a name and its value");
    findings.push_back(std::move(finding));
  }
  return findings;
}

}  // namespace qdm
