#include "manuals/codes.h"
#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

bool IsSign(char16_t c) { return c > 0x20 && c < 0x7F && !IsWordPart(c); }

// What stands one blank before `at` in the same cell; empty where the cell begins there.
Span LeadAt(const ManualPage& page, const Code& code, std::size_t from) {
  const Text line = page.Lines[code.Begin().Line];
  const std::size_t at = code.Begin().From;
  Span lead{code.Begin().Line, at, at};
  if (at < from + 2 || line[at - 1] != u' ' || IsBlank(line[at - 2])) return lead;
  lead.To = lead.From = at - 1;
  while (lead.From > from && line[lead.From - 1] != u'|' && line[lead.From - 1] != u'\t' &&
         !(line[lead.From - 1] == u' ' && lead.From > from + 1 && line[lead.From - 2] == u' '))
    --lead.From;
  return Trim(page, lead);
}

// Nothing that a label or the mark before a list could be: "* 0", "op".
bool CouldBelong(Text text) {
  constexpr std::size_t kLongest = 12;
  if (text.empty() || text.size() > kLongest || text.back() == u':' || text.back() == u'=') return false;
  const Function says = ClassifyLabel(text);
  const bool known =
      says.What != Subject::None || says.To != State::None || (says.Unknown == 0 && says.Words > 0);
  const bool letters = std::any_of(text.begin(), text.end(), IsWordPart);
  const bool plain = std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= 0x20 && c < 0x7F; });
  return !known && letters && plain && text.find_first_of(u"\"'().,") == Text::npos;
}

// "POWR 1": a value right behind what was taken for the whole command.
bool ValueFollows(Text line, const Code& code) {
  const std::size_t end = code.End().To;
  if (code.Framed || end + 1 >= line.size() || line[end] != u' ' || IsBlank(line[end + 1])) return false;
  const Text token = line.substr(end + 1, line.find_first_of(u" \t|", end + 1) - end - 1);
  const bool number = !token.empty() && std::all_of(token.begin(), token.end(), IsDigit);
  const bool sign =
      token.size() == 1 && (IsSign(token[0]) && token[0] != u'-' && token[0] != u'(' && token[0] != u'/');
  const Function says = ClassifyLabel(token);  // "PWR ON"
  const bool state = says.What == Subject::None && says.To != State::None && says.Unknown == 0 &&
                     std::all_of(token.begin(), token.end(), IsUpper);
  return number || sign || state;
}

}  // namespace

void TakeLeads(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kOften = 3;
  constexpr std::size_t kShortest = 3;  // with the terminator
  std::map<std::u16string, std::vector<std::pair<Code*, Span>>> leads;
  std::size_t line = 0;
  std::size_t from = 0;  // behind the code before on the line
  for (Code& code : codes) {
    if (code.Begin().Line != line) from = 0;
    line = code.End().Line;
    if (code.How == Notation::Characters && code.Where.size() == 1) {
      code.Beside = ValueFollows(page.Lines[line], code);
      const Span lead = LeadAt(page, code, from);
      if (CouldBelong(page.At(lead))) leads[std::u16string(page.At(lead))].push_back({&code, lead});
    }
    from = code.End().To;
  }
  for (const auto& [text, places] : leads) {
    // "SRC A<CR>", "SRC D<CR>": a name in capitals, what is left of the commands would be no more than its
    // value.
    const bool name = text.size() > 1 && std::all_of(text.begin(), text.end(), IsUpper);
    if (name) {
      for (const auto& [code, lead] : places) code->Beside = true;
    }
    if (places.size() < kOften &&
        !(name && places.size() > 1 && places.front().first->Bytes.size() <= kShortest))
      continue;
    for (const auto& [code, lead] : places) {
      CodeBytes bytes = Characters(page.Lines[lead.Line].substr(lead.From, code->Begin().From - lead.From));
      // What stands before an STX is no part of the command.
      if (code->Bytes.front().Value < 0x20 || bytes.size() + code->Bytes.size() > kLongestCode) continue;
      code->Bytes.insert(code->Bytes.begin(), bytes.begin(), bytes.end());
      code->Where.front().From = lead.From;
      code->Beside = true;
    }
  }
}

}  // namespace qdm
