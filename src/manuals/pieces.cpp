#include "manuals/pairing.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr Text kHeadings[] = {u"note",           u"notes",        u"remark",
                              u"remarks",        u"comment",      u"comments",
                              u"command",        u"commands",     u"function",
                              u"functions",      u"item",         u"items",
                              u"option",         u"code",         u"codes",
                              u"operation",      u"data",         u"description",
                              u"ascii",          u"hex",          u"hexadecimal",
                              u"value",          u"control",      u"code data",
                              u"command data",   u"names",        u"action",
                              u"type",           u"format",       u"details",
                              u"character",      u"transmission", u"control contents",
                              u"ascii code",     u"hex code",     u"function description",
                              u"funktion",       u"befehl",       u"fonction",
                              u"commande",       u"funcion",      u"comando",
                              u"funzione",       u"response",     u"parameter",
                              u"selection",      u"adjustment",   u"items/status",
                              u"classification", u"parameters",   u"return",
                              u"return value",   u"set",          u"string",
                              u"send",           u"key",          u"button"};

constexpr std::size_t kLongestLabel = 48;

bool IsHeading(Text text) {
  std::u16string folded = FoldLetters(text);
  const auto letter = [](char16_t c) { return IsWordPart(c) || c > 0x7F; };
  while (!folded.empty() && !letter(folded.back())) folded.pop_back();
  while (!folded.empty() && !letter(folded.front())) folded.erase(folded.begin());
  return std::find(std::begin(kHeadings), std::end(kHeadings), folded) != std::end(kHeadings);
}

bool SaysSomething(Text text) {
  return std::any_of(text.begin(), text.end(),
                     [](char16_t c) { return IsWordPart(c) || c > 0xBF || c == u'?'; });
}

void AddText(const ManualPage& page, Span span, std::vector<Piece>& pieces) {
  span = Trim(page, span);
  // A label keeps no mark that only leads over to its code.
  const Text line = page.Lines[span.Line];
  const auto leads = [](char16_t c) { return c == u':' || c == u'=' || c == u'.' || c == u',' || c == u'"'; };
  while (span.To > span.From && (leads(line[span.To - 1]) || IsBlank(line[span.To - 1]))) --span.To;
  while (span.From < span.To && (leads(line[span.From]) || IsBlank(line[span.From]))) ++span.From;
  const Text text = page.At(span);
  if (!SaysSomething(text)) return;
  Piece piece;
  piece.Where = span;
  piece.Says = ClassifyLabel(text);
  piece.Heading = IsHeading(text);
  piece.Numbered = IsDigit(text[0]);
  piece.LeadsOver = span.To < line.size() && line[span.To] == u':';
  const bool opened = span.Line > 0 && TrimSpace(page.Lines[span.Line - 1]) == u"(";  // on a line of its own
  piece.Bracketed = opened || (span.From < line.size() && line[span.From] == u'(');
  constexpr std::size_t kShortestSentence = 5;
  const bool stop = span.To < line.size() && line[span.To] == u'.';
  piece.Sentence = text.size() > kLongestLabel ||
                   (stop && piece.Says.Words >= kShortestSentence && piece.Says.Unknown > 1);
  pieces.push_back(piece);
}

// A long text is split where its sentences end, so that a label at its end is not lost in it.
void AddLongText(const ManualPage& page, Span span, std::vector<Piece>& pieces) {
  if (span.To - span.From <= kLongestLabel) return AddText(page, span, pieces);
  const Text line = page.Lines[span.Line];
  std::size_t from = span.From;
  for (std::size_t at = span.From; at + 1 < span.To; ++at) {
    const bool ends = (line[at] == u'.' || line[at] == u')' || line[at] == u';') && line[at + 1] == u' ';
    const bool bracketLabel = line[at] == u')' && at - from < kLongestLabel;
    if (!ends || bracketLabel) continue;
    AddText(page, {span.Line, from, at}, pieces);
    from = at + 1;
  }
  // Of what is still long, the words right before the code, more of them where those name no function.
  constexpr std::size_t kTail = 36;
  const bool codeFollows = span.To < line.size();
  if (codeFollows && span.To - from > kLongestLabel) {
    constexpr std::size_t kLongestClause = 110;
    // "Stop bits: 1 Power On": the words before it belong to something else.
    const std::size_t tail = span.To - kTail;
    const bool whole = SlotOf(ClassifyLabel(line.substr(tail, kTail))).has_value();
    for (std::size_t at = tail; at < span.To && !whole; ++at) {
      const Function says = ClassifyLabel(line.substr(at, span.To - at));
      if (line[at - 1] != u' ' || !SlotOf(says) || !says.Plain) continue;
      AddText(page, {span.Line, from, at}, pieces);
      AddText(page, {span.Line, at, span.To}, pieces);
      pieces.back().Says.Plain = false;
      return;
    }
    const std::size_t least = std::max(from, span.To - std::min(span.To, kLongestClause));
    for (std::size_t at = span.To - kTail; at > least; --at) {
      if (line[at - 1] != u' ' || !SlotOf(ClassifyLabel(line.substr(at, span.To - at)))) continue;
      AddText(page, {span.Line, from, at}, pieces);
      AddText(page, {span.Line, at, span.To}, pieces);
      pieces.back().Sentence = false;
      pieces.back().Says.Plain = false;
      return;
    }
    std::size_t cut = line.find(u' ', span.To - kTail);
    if (cut < span.To) {
      AddText(page, {span.Line, from, cut}, pieces);
      from = cut;
    }
  }
  AddText(page, {span.Line, from, span.To}, pieces);
}

// Cells are split by bars, tabs and long gaps.
void AddTexts(const ManualPage& page, Span span, std::vector<Piece>& pieces) {
  const Text line = page.Lines[span.Line];
  std::size_t from = span.From;
  for (std::size_t at = span.From; at < span.To; ++at) {
    const bool gap = line.substr(at, 3) == u"   ";
    if (line[at] != u'|' && line[at] != u'\t' && !gap) continue;
    AddLongText(page, {span.Line, from, at}, pieces);
    from = at + 1;
  }
  AddLongText(page, {span.Line, from, span.To}, pieces);
}

// A text that says nothing and stands again and again ("Send string", "Return value") is a caption, not a
// label.
void FindCaptions(const ManualPage& page, std::vector<Piece>& pieces) {
  std::map<std::u16string, std::vector<std::size_t>> captions;
  const auto apart = [&](std::size_t a, std::size_t b) {
    return pieces[a].Where.Line != pieces[b].Where.Line;
  };
  for (std::size_t at = 0; at + 1 < pieces.size(); ++at) {
    const Piece& piece = pieces[at];
    const bool alone = apart(at, at + 1) && (at == 0 || apart(at - 1, at));
    if (!piece.IsText() || piece.Says.What != Subject::None || piece.Says.To != State::None) continue;
    if (pieces[at + 1].IsText() && !alone) continue;
    captions[FoldLetters(page.At(piece.Where))].push_back(at);
  }
  constexpr std::size_t kOften = 3;
  for (const auto& [text, places] : captions) {
    if (places.size() < kOften) continue;
    for (const std::size_t at : places) pieces[at].Heading = pieces[at].Caption = true;
  }
}

// A column of the same text again and again ("OK or ERR") is no column of labels.
void BreakAtRepeats(const ManualPage& page, std::vector<Piece>& pieces) {
  for (std::size_t at = 2; at < pieces.size(); ++at) {
    const bool texts = pieces[at].IsText() && pieces[at - 1].IsText() && pieces[at - 2].IsText();
    if (!texts || page.At(pieces[at].Where) != page.At(pieces[at - 1].Where) ||
        page.At(pieces[at].Where) != page.At(pieces[at - 2].Where)) {
      continue;
    }
    pieces[at].Sentence = pieces[at - 1].Sentence = pieces[at - 2].Sentence = true;
  }
}

}  // namespace

std::vector<Piece> MakePieces(const ManualPage& page, const std::vector<Code>& codes) {
  struct Taken {
    Span Where;
    std::size_t Code;
    bool First;
  };
  std::vector<Taken> taken;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    for (std::size_t j = 0; j < codes[i].Where.size(); ++j) taken.push_back({codes[i].Where[j], i, j == 0});
    for (const Span& answer : codes[i].AnswerAt) taken.push_back({answer, i, false});
  }
  std::sort(taken.begin(), taken.end(), [](const Taken& a, const Taken& b) {
    return std::pair(a.Where.Line, a.Where.From) < std::pair(b.Where.Line, b.Where.From);
  });
  std::vector<Piece> pieces;
  auto next = taken.begin();
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    std::size_t from = 0;
    for (; next != taken.end() && next->Where.Line == line; ++next) {
      if (next->Where.From > from) AddTexts(page, {line, from, next->Where.From}, pieces);
      from = std::max(from, next->Where.To);
      if (!next->First) continue;
      Piece piece;
      piece.Code = next->Code;
      piece.Where = next->Where;
      pieces.push_back(piece);
    }
    if (from < page.Lines[line].size()) AddTexts(page, {line, from, page.Lines[line].size()}, pieces);
  }
  BreakAtRepeats(page, pieces);
  FindCaptions(page, pieces);
  return pieces;
}

}  // namespace qdm
