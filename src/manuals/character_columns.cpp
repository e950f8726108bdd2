#include "manuals/character_columns.h"

#include "manuals/columns.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace qdm {
namespace {

using CharacterRun = std::vector<Span>;

// Lines that hold one character, one below the other.
// With `blanks`, an empty line between them is a cell that is empty.
std::vector<CharacterRun> SingleCharacters(const ManualPage& page, bool blanks) {
  constexpr std::size_t kShortest = 12;
  constexpr std::size_t kLongest = 2000;
  std::vector<CharacterRun> runs;
  CharacterRun run;
  for (std::size_t line = 0; line <= page.Lines.size(); ++line) {
    const bool inside = line < page.Lines.size();
    const Span span = inside ? Trim(page, {line, 0, page.Lines[line].size()}) : Span{};
    const std::size_t length = span.To - span.From;
    if (inside && length == 1 && page.At(span)[0] > 32 && page.At(span)[0] < 127) {
      constexpr std::size_t kMostBlanks = 64;
      const std::size_t missing = run.empty() ? 0 : page.Numbers[line] - page.Numbers[line - 1] - 1;
      for (std::size_t i = 0; blanks && i < std::min(missing, kMostBlanks); ++i) run.push_back({line, 0, 0});
      run.push_back(span);
      continue;
    }
    if (run.size() >= kShortest && run.size() <= kLongest) runs.push_back(run);
    run.clear();
  }
  return runs;
}

std::vector<Code> RowsOf(const ManualPage& page, const CharacterRun& run, std::size_t width) {
  const std::size_t rows = run.size() / width;
  std::vector<Code> codes(rows);
  for (std::size_t row = 0; row < rows; ++row) {
    Code& code = codes[row];
    code.How = Notation::Characters;
    code.Composed = true;
    for (std::size_t column = 0; column < width; ++column) {
      const Span& cell = run[column * rows + row];
      char16_t character = cell.From == cell.To ? u' ' : page.At(cell)[0];
      code.Broken |= character == u'*' || character == u'?';
      if (character == u'_') character = u' ';  // an empty cell
      if (cell.From < cell.To) code.Where.push_back(cell);
      code.Bytes.push_back({static_cast<std::uint8_t>(character), ByteKind::ASC});
    }
  }
  return codes;
}

std::vector<Code> AllRows(const ManualPage& page, const std::vector<CharacterRun>& runs, std::size_t width) {
  std::vector<Code> codes;
  for (const CharacterRun& run : runs) {
    if (run.size() % width != 0) continue;
    for (Code& code : RowsOf(page, run, width)) codes.push_back(std::move(code));
  }
  return codes;
}

}  // namespace

void AddCharacterColumns(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kNarrowest = 3;
  constexpr std::size_t kWidest = 12;
  int best = 0;
  std::vector<Code> found;
  for (const bool blanks : {false, true}) {
    const std::vector<CharacterRun> runs = SingleCharacters(page, blanks);
    for (std::size_t width = kNarrowest; width <= kWidest && !runs.empty(); ++width) {
      std::vector<Code> rows = AllRows(page, runs, width);
      std::erase_if(rows, [](const Code& row) { return row.Where.empty(); });
      if (rows.empty()) continue;
      const int fit = ColumnFit(MakePieces(page, rows));
      if (fit <= best) continue;
      best = fit;
      found = std::move(rows);
    }
  }
  std::move(found.begin(), found.end(), std::back_inserter(codes));
}

}  // namespace qdm
