#include "manuals/templates.h"

#include "base/words.h"
#include "manuals/framing.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

// A form: bytes with one place for the value.
struct Form {
  CodeBytes Before;
  CodeBytes Behind;
  Span Where;
  std::u16string Skeleton;  // a letter for each bracket
  bool Framed = false;
};

struct Value {
  std::u16string Characters;
  Span Where;
  Span Label;
  Function Says;
};

constexpr Text kReplyWords[] = {u"ack",     u"response", u"reply",     u"answer",  u"return",
                                u"antwort", u"reponse",  u"respuesta", u"risposta"};

bool SpeaksOfReply(Text text) {
  const std::u16string folded = FoldLetters(text);
  return std::any_of(std::begin(kReplyWords), std::end(kReplyWords),
                     [&](Text word) { return folded.find(word) != Text::npos; });
}

void Append(CodeBytes& bytes, Text characters) {
  const CodeBytes more = Characters(characters);
  bytes.insert(bytes.end(), more.begin(), more.end());
}

// --- Brackets: "[k][a][ ][Set ID][ ][Data][Cr]"
// -------------------------------------------------------------

struct Bracket {
  Text Inside;
  std::size_t From;
  std::size_t To;
};

std::vector<Bracket> BracketsOf(Text line) {
  std::vector<Bracket> brackets;
  for (std::size_t at = line.find(u'['); at != Text::npos; at = line.find(u'[', at)) {
    const std::size_t close = line.find(u']', at);
    if (close == Text::npos || close - at > 24) break;
    if (!brackets.empty() && at - brackets.back().To > 2) break;
    brackets.push_back({line.substr(at + 1, close - at - 1), at, close + 1});
    at = close + 1;
  }
  return brackets;
}

char16_t KindOf(Text inside, Text line, const Bracket& bracket) {
  const std::u16string folded = FoldLetters(inside);
  if (folded.find_first_not_of(u' ') == Text::npos) return u'_';
  if (inside.size() == 1) return u'L';
  if (ControlAt(line, bracket.From)) return u'C';
  if (Says(folded, {u"id", u"address", u"adresse"})) return u'I';
  if (Says(folded, {u"data", u"value", u"param", u"wert", u"xx"})) return u'D';
  return u'?';
}

std::optional<Form> BracketForm(const ManualPage& page, std::size_t number) {
  const Text line = page.Lines[number];
  if (line.size() > 300) return std::nullopt;
  const std::vector<Bracket> brackets = BracketsOf(line);
  if (brackets.size() < 4 || SpeaksOfReply(line.substr(0, brackets.front().From))) return std::nullopt;
  Form form;
  form.Where = {number, brackets.front().From, brackets.back().To};
  for (const Bracket& bracket : brackets) form.Skeleton += KindOf(bracket.Inside, line, bracket);
  const bool usable = form.Skeleton.find(u'?') == Text::npos && form.Skeleton.find(u'D') != Text::npos &&
                      form.Skeleton.find(u'L') != Text::npos;
  return usable ? std::optional(form) : std::nullopt;
}

// The bytes of a form in the shape that most forms of the page have: a bracket may have been lost in this
// one.
void FillForm(const ManualPage& page, const std::u16string& usual, Form& form) {
  const Text line = page.Lines[form.Where.Line];
  const std::vector<Bracket> brackets = BracketsOf(line);
  std::u16string literals;
  CodeBytes controls;
  for (std::size_t i = 0; i < brackets.size() && i < form.Skeleton.size(); ++i) {
    if (form.Skeleton[i] == u'L') literals += brackets[i].Inside;
    if (form.Skeleton[i] == u'C') controls.push_back(ControlAt(line, brackets[i].From)->Byte);
  }
  const auto count = [](const std::u16string& skeleton, char16_t kind) {
    return std::count(skeleton.begin(), skeleton.end(), kind);
  };
  const bool alike = count(usual, u'L') == count(form.Skeleton, u'L') &&
                     count(usual, u'C') == count(form.Skeleton, u'C') && count(usual, u'D') == 1;
  std::size_t literal = 0;
  std::size_t control = 0;
  CodeBytes* bytes = &form.Before;
  for (const char16_t kind : alike ? usual : form.Skeleton) {
    if (kind == u'D') bytes = &form.Behind;
    if (kind == u'L') Append(*bytes, Text(literals).substr(literal++, 1));
    if (kind == u'_') Append(*bytes, u" ");
    if (kind == u'I') Append(*bytes, u"01");
    if (kind == u'C') bytes->push_back(controls[control++]);
  }
  form.Framed = !controls.empty();
}

std::vector<Form> BracketForms(const ManualPage& page) {
  std::vector<Form> forms;
  std::map<std::u16string, std::size_t> skeletons;
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    if (auto form = BracketForm(page, line)) {
      ++skeletons[form->Skeleton];
      forms.push_back(std::move(*form));
    }
  }
  std::u16string usual;
  std::size_t most = 0;
  for (const auto& [skeleton, times] : skeletons) {
    if (times <= most) continue;
    most = times;
    usual = skeleton;
  }
  for (Form& form : forms) FillForm(page, usual, form);
  return forms;
}

// --- A name and a place: "~XX00 n", "set input=[field]" ---------------------------------------------------

bool IsPlace(Text token) {
  if (token == u"n" || token == u"x" || token == u"N" || token == u"nn" || token == u"<n>" ||
      token == u"[n]" || token == u"p" || token == u"<x>")
    return true;
  const bool angles = token.size() > 2 && ((token.front() == u'<' && token.back() == u'>') ||
                                           (token.front() == u'[' && token.back() == u']'));
  return angles && FoldLetters(token).find_first_of(u"cr") != 1;
}

// The characters before a place at the end of the line's first words.
std::optional<Form> NamedForm(const ManualPage& page, std::size_t number) {
  const Text line = page.Lines[number];
  if (line.size() > 200) return std::nullopt;
  const Span whole = Trim(page, {number, 0, line.size()});
  for (std::size_t at = whole.From; at < whole.To; ++at) {
    const char16_t c = line[at];
    const bool bracket = c == u'[' || c == u'<';
    const bool alone = (at == whole.From || line[at - 1] == u' ') &&
                       (at + 1 == whole.To || line[at + 1] == u' ') && IsPlace(line.substr(at, 1));
    if (!bracket && !alone) continue;
    std::size_t end = at + 1;
    if (bracket) {
      end = line.find(c == u'[' ? u']' : u'>', at);
      if (end == Text::npos || ++end - at > 16 || !IsPlace(line.substr(at, end - at)) || ControlAt(line, at))
        return std::nullopt;
    }
    const Text name = line.substr(whole.From, at - whole.From);
    const bool sign = name.find_first_of(u"~*#:=%@!") != Text::npos;
    if (name.size() < 3 || name.size() > 24 || !sign || name.find(u'"') != Text::npos) return std::nullopt;
    if (std::count(name.begin(), name.end(), u' ') > 2 || FoldLetters(name).find(u"get") != Text::npos)
      return std::nullopt;
    Form form;
    form.Before = Characters(name);
    form.Where = {number, whole.From, end};
    return form;
  }
  return std::nullopt;
}

// --- Values
// --------------------------------------------------------------------------------------------------

bool IsValueCharacters(Text token) {
  return !token.empty() && token.size() <= 4 && std::all_of(token.begin(), token.end(), IsWordPart) &&
         std::any_of(token.begin(), token.end(), IsDigit);
}

// "01 : Power On", "0 = off", all that stand on the line; a label that is missing stands on the next line.
std::vector<Value> ValuesOn(const ManualPage& page, std::size_t number) {
  const Text line = page.Lines[number];
  std::vector<Value> values;
  if (line.size() > 300) return values;
  std::size_t at = 0;
  while (at < line.size()) {
    if (!IsWordPart(line[at]) || (at > 0 && (IsWordPart(line[at - 1]) || line[at - 1] == u'.'))) {
      ++at;
      continue;
    }
    std::size_t end = at;
    while (end < line.size() && IsWordPart(line[end])) ++end;
    std::size_t mark = end;
    while (mark < line.size() && (line[mark] == u' ' || line[mark] == u'"' || line[mark] == u'\'')) ++mark;
    const bool marked = mark < line.size() && (line[mark] == u':' || line[mark] == u'=') &&
                        IsValueCharacters(line.substr(at, end - at));
    if (!marked) {
      at = end;
      continue;
    }
    if (!values.empty()) values.back().Label.To = at;
    values.push_back(
        {std::u16string(line.substr(at, end - at)), {number, at, end}, {number, mark + 1, line.size()}, {}});
    at = mark + 1;
  }
  for (Value& value : values) {
    value.Label = Trim(page, value.Label);
    if (value.Label.From >= value.Label.To && number + 1 < page.Lines.size()) {
      value.Label = Trim(page, {number + 1, 0, page.Lines[number + 1].size()});
    }
    value.Says = ClassifyLabel(page.At(value.Label));
  }
  return values;
}

// What the nearest line above says that has a function.
Function SubjectAbove(const ManualPage& page, std::size_t line, std::size_t reach) {
  for (std::size_t back = 1; back <= reach && back <= line; ++back) {
    const Text text = page.Lines[line - back];
    if (text.empty() || text.size() > 60) continue;
    Function says = ClassifyLabel(text);
    if (says.What != Subject::None) return says;
  }
  return {};
}

class TemplateComposer {
 public:
  TemplateComposer(const ManualPage& page, const std::vector<Code>& codes)
      : page_(page), codes_(codes), frame_(FrameOfText(page)) {}

  std::vector<Finding> Compose() {
    const std::vector<Form> brackets = BracketForms(page_);
    for (std::size_t i = 0; i < brackets.size(); ++i) {
      const std::size_t end = i + 1 < brackets.size() ? brackets[i + 1].Where.Line : page_.Lines.size();
      UseValuesBelow(brackets[i], end);
    }
    for (std::size_t line = 0; line < page_.Lines.size(); ++line) {
      if (const auto form = NamedForm(page_, line)) {
        UseValuesBelow(*form, line + kReach);
        UseFields(*form);
      }
    }
    for (const Code& code : codes_) UseHole(code);
    UseNamesBelowValues();
    return std::move(findings_);
  }

 private:
  static constexpr std::size_t kReach = 12;  // lines between a form and its values

  void Add(const Form& form, const Value& value, const Function& says) {
    if (!SlotOf(says)) return;
    Finding finding;
    finding.What.How = Notation::Characters;
    finding.What.Bytes = form.Before;
    Append(finding.What.Bytes, value.Characters);
    finding.What.Bytes.insert(finding.What.Bytes.end(), form.Behind.begin(), form.Behind.end());
    finding.What.Where = {form.Where, value.Where};
    finding.What.Composed = true;
    finding.What.Framed = form.Framed;
    if (!form.Framed) {
      finding.What.Bytes.insert(finding.What.Bytes.begin(), frame_.Before.begin(), frame_.Before.end());
      finding.What.Bytes.insert(finding.What.Bytes.end(), frame_.Behind.begin(), frame_.Behind.end());
      finding.What.Framed = frame_.Settled;
    }
    ResolveAddress(page_, finding.What);
    finding.For = says;
    finding.Label = {value.Label};
    finding.Doubt = Marked("put together from a form and a list of values");
    findings_.push_back(std::move(finding));
  }

  void UseValuesBelow(const Form& form, std::size_t end) {
    const Function above = SubjectAbove(page_, form.Where.Line + 1, 6);
    for (std::size_t line = form.Where.Line;
         line < std::min({end, page_.Lines.size(), form.Where.Line + kReach}); ++line) {
      if (line > form.Where.Line && SpeaksOfReply(page_.Lines[line])) break;
      for (const Value& value : ValuesOn(page_, line)) {
        Add(form, value, InContext(value.Says, above));
      }
    }
  }

  // "7E 30 a 0D  n = 1 Power ON (a=31)": what stands for the byte is printed behind each label.
  void UseHole(const Code& code) {
    const auto hole = std::find_if(code.Bytes.begin(), code.Bytes.end(),
                                   [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; });
    if (!code.Broken || hole == code.Bytes.end()) return;
    const char16_t letter = hole->Value;
    constexpr std::size_t kLines = 4;
    const std::size_t first = code.End().Line;
    for (std::size_t line = first; line < std::min(page_.Lines.size(), first + kLines); ++line) {
      const Text text = page_.Lines[line];
      std::size_t from = line == first ? code.End().To : 0;
      if (line > first && !FindNumberCodes(MakePage(text)).empty()) return;
      for (std::size_t at = from; at + 3 < text.size(); ++at) {
        if (text[at] != letter || text[at + 1] != u'=' || IsWordPart(text[at - std::min<std::size_t>(at, 1)]))
          continue;
        const auto value = NumberAt(text, at + 2);
        if (!value) continue;
        AddWithHole(code, static_cast<std::size_t>(hole - code.Bytes.begin()), value->Byte, {line, from, at});
        from = value->End;
      }
    }
  }

  void AddWithHole(const Code& code, std::size_t hole, const CodeByte& value, Span label) {
    // "n = 1 Power ON (": the label begins behind the value and ends before the bracket.
    const Text text = page_.At(label);
    const std::size_t mark = text.rfind(u'=');
    if (mark != Text::npos) label.From += mark + 1;
    if (label.To > label.From && page_.Lines[label.Line][label.To - 1] == u'(') --label.To;
    label = Trim(page_, label);
    const Function says = ClassifyLabel(page_.At(label));
    if (!SlotOf(says)) return;
    Finding finding;
    finding.What = code;
    finding.What.Bytes[hole] = value;
    finding.What.Broken = false;
    finding.What.Composed = true;
    finding.For = says;
    finding.Label = {label};
    finding.Doubt = Marked("put together from a form and a list of values");
    findings_.push_back(std::move(finding));
  }

  // "Field  Description": rows that begin with what goes into the place.
  void UseFields(const Form& form) {
    const std::u16string name = FoldLetters(page_.At(form.Where));
    if (!Says(name, {u"input", u"sour", u"src", u"select", u"eingang", u"entr"})) return;
    std::vector<Value> fields;
    for (std::size_t line = form.Where.Line + 1; line < std::min(page_.Lines.size(), form.Where.Line + 30);
         ++line) {
      const Span whole = Trim(page_, {line, 0, page_.Lines[line].size()});
      const Text text = page_.At(whole);
      const std::size_t end = std::min(text.find(u' '), text.size());
      if (end == 0 || end == text.size() || end > 16) continue;
      const Span field{line, whole.From, whole.From + end};
      Value value{std::u16string(text.substr(0, end)), field, field, ClassifyLabel(text.substr(0, end))};
      const bool repeated =
          FoldLetters(text.substr(end)).find(FoldLetters(text.substr(0, std::min<std::size_t>(end, 3)))) !=
          Text::npos;
      if (SlotOf(value.Says) && repeated && value.Says.What != Subject::Power)
        fields.push_back(std::move(value));
    }
    if (fields.size() < 2) return;
    for (const Value& value : fields) Add(form, value, value.Says);
  }

  // A title, a list of values, then the name that takes them, in the shape of the examples: "(PWR1)".
  void UseNamesBelowValues() {
    const auto example = std::find_if(codes_.begin(), codes_.end(), [](const Code& code) {
      const std::size_t size = code.Bytes.size();
      return size > 4 && code.Bytes.front().Value == '(' && code.Bytes.back().Value == ')' &&
             code.Bytes[size - 2].Value >= '0' && code.Bytes[size - 2].Value <= '9' &&
             IsUpper(code.Bytes[size - 3].Value);
    });
    if (example == codes_.end()) return;
    std::vector<Value> list;
    for (std::size_t line = 0; line < page_.Lines.size(); ++line) {
      std::vector<Value> values = ValuesOn(page_, line);
      if (!values.empty()) {
        std::move(values.begin(), values.end(), std::back_inserter(list));
        continue;
      }
      if (list.empty()) continue;
      const Span whole = Trim(page_, {line, 0, page_.Lines[line].size()});
      const Text text = page_.At(whole);
      std::size_t letters = 0;
      while (letters < text.size() && IsUpper(text[letters])) ++letters;
      const bool name = letters >= 2 && letters <= 6 && (letters == text.size() || text[letters] == u' ');
      if (name && list.front().Where.Line > 0) {
        Form form;
        form.Before = Characters(u"(");
        Append(form.Before, text.substr(0, letters));
        form.Behind = Characters(u")");
        form.Where = {line, whole.From, whole.From + letters};
        form.Framed = true;
        const Function above = SubjectAbove(page_, list.front().Where.Line, 1);
        for (const Value& value : list) Add(form, value, InContext(value.Says, above));
      }
      list.clear();
    }
  }

  const ManualPage& page_;
  const std::vector<Code>& codes_;
  Frame frame_;
  std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> ComposeCommands(const ManualPage& page, const std::vector<Code>& codes) {
  return TemplateComposer(page, codes).Compose();
}

}  // namespace qdm
