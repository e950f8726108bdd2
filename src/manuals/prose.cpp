#include "manuals/prose.h"

#include "base/words.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr const char* kInProse = Marked("it is read from running text");

// What stands on the page between two places, as one line.
std::u16string TextBetween(const ManualPage& page, const Span& before, const Span& behind) {
  constexpr std::size_t kMostLines = 3;
  std::u16string text;
  if (behind.Line - before.Line > kMostLines) return text;
  for (std::size_t line = before.Line; line <= behind.Line; ++line) {
    const std::size_t from = line == before.Line ? before.To : 0;
    const std::size_t to = line == behind.Line ? behind.From : page.Lines[line].size();
    if (from < to) text.append(page.Lines[line], from, to - from);
    text += u' ';
  }
  return text;
}

// The last sentence of a text, folded, without the marks at its ends.
std::u16string LastSentence(Text text) {
  for (const Text end : {u". ", u"; ", u"! "}) {
    if (const std::size_t at = text.rfind(end); at != Text::npos) text = text.substr(at + 2);
  }
  std::u16string folded = FoldLetters(text);
  std::erase_if(folded, [](char16_t c) { return c == u'"' || c == u'\''; });
  return std::u16string(TrimSpace(folded));
}

Text FirstSentence(Text text) {
  for (const Text end : {u". ", u"; ", u", ", u"! "}) text = text.substr(0, text.find(end));
  return text;
}

// Where the verb of sending stands with which the text ends, but for a few words; npos where it does not.
std::size_t SendingAt(Text folded) {
  constexpr Text kVerbs[] = {u"send",  u"sends",  u"type",    u"enter",   u"issue",   u"transmit",
                             u"use",   u"senden", u"sende",   u"envoyez", u"envoyer", u"tapez",
                             u"envie", u"enviar", u"inviare", u"digitare"};
  constexpr std::size_t kMostWords = 3;  // "senden Sie die Zeichenfolge"
  std::size_t end = folded.size();
  for (std::size_t words = 0; words <= kMostWords && end > 0; ++words) {
    const std::size_t blank = folded.rfind(u' ', end - 1);
    const std::size_t from = blank == Text::npos ? 0 : blank + 1;
    const Text word = folded.substr(from, end - from);
    if (std::find(std::begin(kVerbs), std::end(kVerbs), word) != std::end(kVerbs)) return from;
    if (from == 0) break;
    end = from - 1;
  }
  return Text::npos;
}

std::size_t SmallWords(Text text) {
  std::size_t words = 0;
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    const bool begins = at == 0 || text[at - 1] == u' ';
    if (begins && IsLower(text[at]) && IsLower(text[at + 1])) ++words;
  }
  return words;
}

bool IsQuoted(const ManualPage& page, const Code& code) {
  const Text line = page.Lines[code.Begin().Line];
  const std::size_t from = code.Begin().From;
  return line[from] == u'"' || (from > 0 && line[from - 1] == u'"');
}

// In quotation marks, with words before and behind it on its line.
bool InSentence(const ManualPage& page, const Code& code) {
  constexpr std::size_t kReach = 60;
  constexpr std::size_t kFewest = 2;
  const Text line = page.Lines[code.Begin().Line];
  const std::size_t from = code.Begin().From;
  const std::size_t to = code.End().Line == code.Begin().Line ? code.End().To : line.size();
  const std::size_t begin = from - std::min(from, kReach);
  return IsQuoted(page, code) && SmallWords(line.substr(begin, from - begin)) >= kFewest &&
         SmallWords(line.substr(to, kReach)) >= kFewest;
}

}  // namespace

void LabelProse(const ManualPage& page, std::vector<Finding>& findings) {
  bool behind = false;  // in this sentence labels follow their commands: 'Send "A" for this, "B" for that'
  for (std::size_t i = 0; i < findings.size(); ++i) {
    Finding& finding = findings[i];
    const Span& where = finding.What.Begin();
    constexpr std::size_t kLinesBack = 2;
    const std::size_t first = where.Line > kLinesBack ? where.Line - kLinesBack : 0;
    const bool follows = i > 0 && findings[i - 1].What.End().Line >= first;
    const Span start = follows ? findings[i - 1].What.End() : Span{first, 0, 0};
    const std::u16string before = TextBetween(page, start, where);
    const std::u16string sentence = LastSentence(before);
    const bool sameSentence = follows && before.find(u". ") == std::u16string::npos;
    behind = behind && sameSentence;
    const std::size_t verb = SendingAt(sentence);
    if (InSentence(page, finding.What)) {
      finding.Settled = false;
      finding.Doubt = kInProse;
    }
    if (verb == std::u16string::npos && !behind) continue;
    // "ENTER" is a key in a table.
    if (finding.Settled && !IsQuoted(page, finding.What)) continue;
    Function says = ClassifyLabel(Text(sentence).substr(0, std::min(verb, sentence.size())));
    if (verb == 0 || behind) {
      const Span end{std::min(where.Line + 1, page.Lines.size() - 1),
                     page.Lines[std::min(where.Line + 1, page.Lines.size() - 1)].size(), 0};
      const Span next = i + 1 < findings.size() && findings[i + 1].What.Begin().Line <= where.Line + 1
                            ? findings[i + 1].What.Begin()
                            : end;
      says = ClassifyLabel(FirstSentence(TextBetween(page, finding.What.End(), next)));
      behind = true;
    }
    finding.Settled = false;
    finding.Doubt = kInProse;
    if (!SlotOf(says)) continue;
    finding.For = says;
    finding.For.Plain = false;
    finding.Label = {Trim(page, {where.Line, 0, where.From})};
    if (finding.Label.front().From == finding.Label.front().To) finding.Label = {where};
  }
}

}  // namespace qdm
