#include "manuals/grammar.h"

#include "base/words.h"
#include "manuals/functions.h"
#include "manuals/grammar_lists.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;

bool IsSpaceOrMark(char16_t c) { return !IsWordPart(c) && c < 0x80; }

// A name as it is compared: letters and digits in lower case.
std::u16string NameOf(Text text) {
  std::u16string name = FoldLetters(text);
  std::erase_if(name, IsSpaceOrMark);
  return name;
}

struct NamedPart {
  enum class Kind { Name, Value, Fixed } What = Kind::Fixed;
  std::u16string Named;  // what the page has to explain
  CodeBytes Bytes;
};
using Grammar = std::vector<NamedPart>;

bool IsName(const NamedPart& part) { return part.What == NamedPart::Kind::Name; }

enum class Kind { Unknown, Place, Value, Frame };

// What the parts of a command are called.
Kind KindOf(const std::u16string& name) {
  for (const Text word :
       {u"command", u"cmd", u"commandcode", u"function", u"befehl", u"commande", u"comando"}) {
    if (name == word) return Kind::Place;
  }
  for (const Text word :
       {u"parameter", u"data", u"value", u"param", u"option", u"daten", u"wert", u"valeur"}) {
    if (name == word) return Kind::Value;
  }
  for (const Text word :
       {u"header", u"id", u"unitid", u"setid", u"address", u"end", u"start", u"terminator", u"prefix",
        u"delimiter", u"endcode", u"headercode", u"startcode", u"class", u"separator"}) {
    if (name == word) return Kind::Frame;
  }
  return Kind::Unknown;
}

// One part of a drawn command; nothing where the word is no such part.
std::optional<NamedPart> PartOf(Text text) {
  NamedPart part;
  const auto control = ControlAt(text, 0);
  if (control && control->End == text.size()) {
    part.Bytes = {control->Byte};
    return part;
  }
  if (text.size() == 1 && text[0] > 32 && text[0] < 127 && !IsWordPart(text[0])) {
    part.Bytes = Characters(text);
    return part;
  }
  const std::u16string name = NameOf(text);
  const Kind kind = KindOf(name);
  if (kind == Kind::Unknown) return std::nullopt;
  part.What = kind == Kind::Place   ? NamedPart::Kind::Name
              : kind == Kind::Value ? NamedPart::Kind::Value
                                    : NamedPart::Kind::Fixed;
  if (kind == Kind::Frame) part.Named = name;
  return part;
}

bool IsUsable(const Grammar& grammar) {
  const auto count = [&](NamedPart::Kind what) {
    return std::count_if(grammar.begin(), grammar.end(),
                         [what](const NamedPart& part) { return part.What == what; });
  };
  return count(NamedPart::Kind::Name) == 1 && count(NamedPart::Kind::Value) <= 1 && grammar.size() >= 3 &&
         grammar.front().What == NamedPart::Kind::Fixed;
}

// "Header ID SP Command SP Parameter CR"
Grammar DrawnWithBlanks(Text line) {
  // "Format of a command: * ID SP command"
  if (const std::size_t colon = line.find(u": "); colon != Text::npos) line = line.substr(colon + 2);
  Grammar grammar;
  for (std::size_t from = 0; from < line.size();) {
    const std::size_t begin = std::min(line.find_first_not_of(u" \t", from), line.size());
    const std::size_t end = std::min(line.find_first_of(u" \t", begin), line.size());
    if (begin == end) break;
    const auto part = PartOf(line.substr(begin, end - begin));
    if (!part) return {};
    grammar.push_back(*part);
    from = end;
  }
  return grammar;
}

// "Header(1byte),UnitID(2bytes),Command(2bytes),Data(nbytes),End(1byte)"
Grammar DrawnWithSizes(Text line) {
  Grammar grammar;
  std::size_t from = 0;
  while (from < line.size()) {
    const std::size_t open = line.find(u'(', from);
    const std::size_t close = open == Text::npos ? open : line.find(u')', open);
    if (close == Text::npos ||
        FoldLetters(line.substr(open, close - open)).find(u"byte") == std::u16string::npos)
      return {};
    const auto part = PartOf(line.substr(from, open - from));
    if (!part) return {};
    grammar.push_back(*part);
    from = std::min(line.find_first_not_of(u" ,+", close + 1), line.size());
  }
  return grammar;
}

// "*command=value<CR>": signs and control codes round two words.
Grammar DrawnWithSigns(Text line) {
  constexpr Text kSigns = u"*#:@!$%&~>/=+-";
  const std::size_t first = line.find_first_of(kSigns.substr(0, 11));
  Grammar grammar;
  for (std::size_t at = first; at < line.size();) {
    if (const auto control = ControlAt(line, at)) {
      grammar.push_back({NamedPart::Kind::Fixed, {}, {control->Byte}});
      at = control->End;
      if (at < line.size()) return {};
    } else if (IsLetter(line[at])) {
      std::size_t end = at;
      while (end < line.size() && IsLetter(line[end])) ++end;
      const auto part = PartOf(line.substr(at, end - at));
      if (!part || part->What == NamedPart::Kind::Fixed) return {};
      grammar.push_back(*part);
      at = end;
    } else if (kSigns.find(line[at]) != Text::npos) {
      grammar.push_back({NamedPart::Kind::Fixed, {}, Characters(line.substr(at, 1))});
      ++at;
    } else {
      return {};
    }
  }
  return grammar;
}

// The rows that explain a part: "Header: ...", then "! (21h): Control command" or "21 Operatingcommand".
class Explanations {
 public:
  explicit Explanations(const ManualPage& page) : page_(page) {}

  // The fixed bytes of the part with that name; nothing where the page does not say, or says two things.
  std::optional<CodeBytes> BytesOf(const std::u16string& name) const {
    for (std::size_t line = 0; line < page_.Lines.size(); ++line) {
      const Text text = page_.Lines[line];
      if (text.size() > grammar::kLongestLine) continue;
      const std::size_t colon = std::min(text.find(u':'), text.size());
      if (NameOf(text.substr(0, colon)) != name) continue;
      if (auto bytes = Stated(text.substr(std::min(colon + 1, text.size())))) return bytes;
      if (auto bytes = InRowsBelow(line + 1)) return bytes;
    }
    return std::nullopt;
  }

 private:
  // "1 (fixed)", "always "8901"", "00 = all projectors".
  static std::optional<CodeBytes> Stated(Text text) {
    const std::u16string folded = FoldLetters(text);
    if (const std::size_t zeros = folded.find(u"00"); zeros != Text::npos) {
      const Text behind = Text(folded).substr(zeros + 2, 16);
      const bool alone =
          (zeros == 0 || !IsWordPart(folded[zeros - 1])) && (behind.empty() || !IsWordPart(behind[0]));
      if (alone && Says(behind, {u"all", u"every", u"broadcast", u"tous", u"todos", u"tutti"}))
        return Characters(u"00");
    }
    const bool fixed =
        Says(folded, {u"fixed", u"always", u"fest", u"immer", u"fixe", u"toujours", u"fijo", u"siempre"});
    if (!fixed) return std::nullopt;
    if (const std::size_t quote = text.find(u'"'); quote != Text::npos) {
      const std::size_t close = std::min(text.find(u'"', quote + 1), text.size());
      const Text inside = text.substr(quote + 1, close - quote - 1);
      if (Says(folded, {u"binary", u"hex"})) return Pairs(inside);
      return inside.empty() ? std::nullopt : std::optional(Characters(inside));
    }
    const std::size_t begin = text.find_first_not_of(u' ');
    const std::size_t end = std::min(text.find(u' ', begin), text.size());
    constexpr std::size_t kLongest = 3;
    if (begin == Text::npos || end - begin > kLongest) return std::nullopt;
    return Characters(text.substr(begin, end - begin));
  }

  // "8901" as two bytes.
  static std::optional<CodeBytes> Pairs(Text digits) {
    CodeBytes bytes;
    if (digits.empty() || digits.size() % 2 != 0) return std::nullopt;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
      const int high = HexDigit(digits[at]);
      const int low = HexDigit(digits[at + 1]);
      if (high < 0 || low < 0) return std::nullopt;
      bytes.push_back({static_cast<std::uint8_t>(high * 16 + low), ByteKind::HEX});
    }
    return bytes;
  }

  std::optional<CodeBytes> InRowsBelow(std::size_t line) const {
    constexpr std::size_t kReach = 10;
    for (std::size_t at = line; at < std::min(page_.Lines.size(), line + kReach); ++at) {
      const Text text = page_.Lines[at];
      const std::u16string folded = FoldLetters(text.substr(0, grammar::kLongestLine));
      if (KindOf(NameOf(Text(folded).substr(0, folded.find(u':')))) != Kind::Unknown) return std::nullopt;
      if (auto bytes = Stated(text)) return bytes;
      const bool command = Says(folded, {u"control command", u"operatingcommand", u"operating command",
                                         u"set command", u"command to", u"write"}) &&
                           !Says(folded, {u"query", u"asking", u"reference", u"read"});
      if (!command) continue;
      const std::size_t end = std::min(text.find(u' '), text.size());
      const Text token = text.substr(0, end);
      // "! (21h)": a sign, and the same as a number.
      const auto number =
          end + 2 < text.size() && text[end + 1] == u'(' ? NumberAt(text, end + 2) : std::nullopt;
      if (token.size() == 1 && number && number->Byte.Value == token[0]) return Characters(token);
      if (token.size() == 2) return Pairs(token);
    }
    return std::nullopt;
  }

  const ManualPage& page_;
};

class GrammarComposer {
 public:
  GrammarComposer(const ManualPage& page, std::vector<Finding>& findings)
      : page_(page), findings_(findings) {}

  void Compose() {
    FindGrammars();
    if (!withValue_ && !alone_) return;
    const Grammar& any = withValue_ ? *withValue_ : *alone_;
    const auto first =
        std::find_if(any.begin(), any.end(), [](const NamedPart& part) { return !part.Bytes.empty(); });
    const bool pairs = first != any.end() && first->Bytes.front().Kind == ByteKind::HEX;
    const std::size_t known = findings_.size();
    for (const grammar::Name& name : grammar::ReadNames(page_, pairs, findings_)) UseName(name);
    for (std::size_t i = 0; i < known && findings_.size() > known; ++i) {
      const bool begins = !findings_[i].What.Bytes.empty() &&
                          findings_[i].What.Bytes.front().Value == findings_.back().What.Bytes.front().Value;
      if (begins) continue;
      constexpr std::size_t kFar = 9;  // behind everything that fits
      findings_[i].Settled = findings_[i].For.Plain = false;
      findings_[i].For.Unknown += kFar;
      findings_[i].Doubt = Marked("it does not begin as the page says that commands do");
    }
  }

 private:
  void FindGrammars() {
    const Explanations explanations(page_);
    for (const std::u16string& line : page_.Lines) {
      if (line.size() > grammar::kLongestLine ||
          Says(FoldLetters(line), {u"respon", u"answer", u"notif", u"reply"}))
        continue;
      for (Grammar (*read)(Text) : {DrawnWithBlanks, DrawnWithSizes, DrawnWithSigns}) {
        Grammar grammar = read(TrimSpace(line));
        if (!IsUsable(grammar) || !Resolve(explanations, grammar)) continue;
        const bool valued = std::any_of(grammar.begin(), grammar.end(), [](const NamedPart& part) {
          return part.What == NamedPart::Kind::Value;
        });
        auto& place = valued ? withValue_ : alone_;
        // "*command=+<CR>" has a value, only no place for it.
        const bool signs =
            !valued &&
            std::any_of(std::next(std::find_if(grammar.begin(), grammar.end(), IsName)), grammar.end(),
                        [](const NamedPart& part) { return part.Bytes.front().Kind == ByteKind::ASC; });
        if (!place && !signs) place = std::move(grammar);
      }
    }
  }

  static bool Resolve(const Explanations& explanations, Grammar& grammar) {
    for (NamedPart& part : grammar) {
      if (part.Named.empty()) continue;
      const auto bytes = explanations.BytesOf(part.Named);
      if (!bytes) return false;
      part.Bytes = *bytes;
    }
    return true;
  }

  void UseName(const grammar::Name& name) {
    if (name.Queries) return;
    if (withValue_) {
      for (const grammar::Value& value : name.Values) {
        const Subject above = name.Says.What;
        // The meanings of a value of something else are no inputs.
        const bool input = value.Says.What != Subject::None && above != Subject::Input &&
                           above != Subject::None && above != value.Says.What;
        if (!input) Add(*withValue_, name, value, InContext(value.Says, name.Says));
      }
      if (name.UpDown && name.Says.What == Subject::Volume) {
        for (const auto& [sign, state] : {std::pair(u"+", State::Up), std::pair(u"-", State::Down)}) {
          Function says = name.Says;
          says.To = state;
          Add(*withValue_, name, {Characters(sign), name.Label, name.Label, says}, says);
        }
      }
    }
    if (alone_ && name.Alone) Add(*alone_, name, {{}, name.Label, name.Label, name.Says}, name.Says);
  }

  void Add(const Grammar& grammar, const grammar::Name& name, const grammar::Value& value,
           const Function& says) {
    if (!SlotOf(says)) return;
    Finding finding;
    Code& code = finding.What;
    for (const NamedPart& part : grammar) {
      const CodeBytes& bytes = part.What == NamedPart::Kind::Name    ? name.Bytes
                               : part.What == NamedPart::Kind::Value ? value.Bytes
                                                                     : part.Bytes;
      code.Bytes.insert(code.Bytes.end(), bytes.begin(), bytes.end());
    }
    code.How = name.Bytes.front().Kind == ByteKind::HEX ? Notation::Hexadecimal : Notation::Characters;
    code.Where = {name.Where};
    if (value.Where != name.Label) code.Where.push_back(value.Where);
    code.Composed = code.Framed = true;
    finding.For = says;
    finding.Label = {value.Label};
    finding.Doubt = Marked("put together as the page describes its commands");
    findings_.push_back(std::move(finding));
  }

  const ManualPage& page_;
  std::optional<Grammar> withValue_;
  std::optional<Grammar> alone_;
  std::vector<Finding>& findings_;
};

}  // namespace

void ComposeByGrammar(const ManualPage& page, std::vector<Finding>& findings) {
  GrammarComposer(page, findings).Compose();
}

}  // namespace qdm
