#include "manuals/grammar.h"

#include "manuals/functions.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr std::size_t kLongestLine = 200;

bool Says(Text folded, std::initializer_list<Text> words) {
  return std::any_of(words.begin(), words.end(), [&](Text word) { return folded.find(word) != Text::npos; });
}

bool IsSpaceOrMark(char16_t c) { return !IsWordPart(c) && c < 0x80; }

// A name as it is compared: letters and digits in lower case.
std::u16string NameOf(Text text) {
  std::u16string name = FoldLetters(text);
  std::erase_if(name, IsSpaceOrMark);
  return name;
}

struct Part {
  enum class Kind { Name, Value, Fixed } What = Kind::Fixed;
  std::u16string Named;  // what the page has to explain
  CodeBytes Bytes;
};
using Grammar = std::vector<Part>;

bool IsName(const Part& part) { return part.What == Part::Kind::Name; }

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
std::optional<Part> PartOf(Text text) {
  Part part;
  const auto control = ControlAt(text, 0);
  if (control && control->End == text.size()) {
    part.Bytes = {control->Byte};
    return part;
  }
  const std::u16string name = NameOf(text);
  const Kind kind = KindOf(name);
  if (kind == Kind::Unknown) return std::nullopt;
  part.What = kind == Kind::Place   ? Part::Kind::Name
              : kind == Kind::Value ? Part::Kind::Value
                                    : Part::Kind::Fixed;
  if (kind == Kind::Frame) part.Named = name;
  return part;
}

bool IsUsable(const Grammar& grammar) {
  const auto count = [&](Part::Kind what) {
    return std::count_if(grammar.begin(), grammar.end(),
                         [what](const Part& part) { return part.What == what; });
  };
  return count(Part::Kind::Name) == 1 && count(Part::Kind::Value) <= 1 && grammar.size() >= 3 &&
         grammar.front().What == Part::Kind::Fixed;
}

// "Header ID SP Command SP Parameter CR"
Grammar DrawnWithBlanks(Text line) {
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
      grammar.push_back({Part::Kind::Fixed, {}, {control->Byte}});
      at = control->End;
      if (at < line.size()) return {};
    } else if (IsLetter(line[at])) {
      std::size_t end = at;
      while (end < line.size() && IsLetter(line[end])) ++end;
      const auto part = PartOf(line.substr(at, end - at));
      if (!part || part->What == Part::Kind::Fixed) return {};
      grammar.push_back(*part);
      at = end;
    } else if (kSigns.find(line[at]) != Text::npos) {
      grammar.push_back({Part::Kind::Fixed, {}, Characters(line.substr(at, 1))});
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
      if (text.size() > kLongestLine) continue;
      const std::size_t colon = std::min(text.find(u':'), text.size());
      if (NameOf(text.substr(0, colon)) != name) continue;
      if (auto bytes = Stated(text.substr(std::min(colon + 1, text.size())))) return bytes;
      if (auto bytes = InRowsBelow(line + 1)) return bytes;
    }
    return std::nullopt;
  }

 private:
  // "1 (fixed)", "always "8901"".
  static std::optional<CodeBytes> Stated(Text text) {
    const std::u16string folded = FoldLetters(text);
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
      const std::u16string folded = FoldLetters(text.substr(0, kLongestLine));
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

struct Value {
  CodeBytes Bytes;
  Span Where;
  Span Label;
  Function Says;
};

struct Name {
  CodeBytes Bytes;
  Span Where;
  Span Label;
  Function Says;
  std::vector<Value> Values;
  bool Alone = false;    // takes no value
  bool UpDown = false;   // takes + and -
  bool Queries = false;  // only reads
};

// "31:Turnsonthepower", "3=composite video, 4=S-video": a short value and its meaning, up to the next mark.
std::vector<Value> ValuesOn(const ManualPage& page, std::size_t number, std::size_t from, bool pairs) {
  const Text line = page.Lines[number];
  std::vector<Value> values;
  for (std::size_t at = from; at < line.size(); ++at) {
    if (!IsWordPart(line[at]) || (at > 0 && IsWordPart(line[at - 1]))) continue;
    std::size_t end = at;
    while (end < line.size() && IsWordPart(line[end])) ++end;
    constexpr std::size_t kLongest = 3;
    const bool mark = end < line.size() && (line[end] == u':' || line[end] == u'=');
    if (!mark || end - at > kLongest || !IsDigit(line[at])) continue;
    std::size_t to = end + 1;
    while (to < line.size() && line[to] != u',' && line[to] != u';' && line[to] != u'.') ++to;
    Value value;
    value.Where = {number, at, end};
    value.Label = Trim(page, {number, end + 1, to});
    value.Bytes = Characters(page.At(value.Where));
    if (pairs) {
      const auto byte = end - at == 2 ? NumberAt(line, at) : std::nullopt;
      if (!byte) continue;
      value.Bytes = {byte->Byte};
    }
    value.Says = ClassifyLabel(page.At(value.Label));
    values.push_back(std::move(value));
  }
  return values;
}

// The page's list of commands and their values.
class NameList {
 public:
  NameList(const ManualPage& page, bool pairs) : page_(page), pairs_(pairs) {}

  std::vector<Name> Read(const std::vector<Finding>& findings) {
    if (TakeLabelled(findings)) return std::move(names_);
    for (std::size_t line = 0; line < page_.Lines.size(); ++line) {
      if (page_.Lines[line].size() > kLongestLine) continue;
      if (!StartName(line)) GoOn(line);
    }
    return std::move(names_);
  }

 private:
  // Names that have found their labels already, with lists of values that stand apart.
  bool TakeLabelled(const std::vector<Finding>& findings) {
    constexpr std::size_t kFewest = 2;
    for (const Finding& finding : findings) {
      const Span& where = finding.What.Begin();
      const bool token = finding.What.How == Notation::Characters && !pairs_ && IsToken(page_.At(where));
      if (!token || finding.Label.empty() || finding.For.What == Subject::None) continue;
      Name name;
      name.Where = where;
      name.Label = finding.Label.front();
      name.Bytes = Characters(page_.At(where));
      name.Says = finding.For;
      names_.push_back(std::move(name));
    }
    if (names_.size() >= kFewest) UseTornLists();
    const bool used =
        std::any_of(names_.begin(), names_.end(), [](const Name& name) { return !name.Values.empty(); });
    if (!used) names_.clear();
    return used;
  }

  bool IsToken(Text token) const {
    constexpr std::size_t kShortest = 2;
    constexpr std::size_t kLongest = 6;
    const auto digit = [](char16_t c) { return HexDigit(c) >= 0; };
    if (pairs_) return token.size() == 4 && std::all_of(token.begin(), token.end(), digit);
    return token.size() >= kShortest && token.size() <= kLongest &&
           std::all_of(token.begin(), token.end(), [](char16_t c) { return IsUpper(c) || IsDigit(c); }) &&
           IsUpper(token[0]);
  }

  // The token at the beginning of a line or, behind its label, at the end.
  bool StartName(std::size_t number) {
    const Span whole = Trim(page_, {number, 0, page_.Lines[number].size()});
    const Text text = page_.At(whole);
    const std::size_t blank = std::min(text.find(u' '), text.size());
    const std::size_t last = text.rfind(u' ');
    Span token{number, whole.From, whole.From + blank};
    const bool letter =
        blank == 1 && IsUpper(text[0]) && text.substr(blank).starts_with(u" or ");  // "W or WAKE"
    Span label = Trim(page_, {number, token.To, whole.To});
    if (!letter && !IsToken(page_.At(token)) && last != Text::npos) {
      token = {number, whole.From + last + 1, whole.To};
      label = {number, whole.From, whole.From + last};
    }
    const Text characters = page_.At(token);
    if ((!letter && !IsToken(characters)) || (!pairs_ && SlotOf(ClassifyLabel(characters)))) return false;
    Name name;
    name.Where = token;
    name.Label = label;
    name.Bytes = pairs_ ? PairsOf(characters) : Characters(characters);
    Explain(name, page_.At(label));
    names_.push_back(std::move(name));
    begun_ = number;
    return true;
  }

  static CodeBytes PairsOf(Text digits) {
    CodeBytes bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
      bytes.push_back(
          {static_cast<std::uint8_t>(HexDigit(digits[at]) * 16 + HexDigit(digits[at + 1])), ByteKind::HEX});
    }
    return bytes;
  }

  static void Explain(Name& name, Text text) {
    const std::u16string folded = FoldLetters(text);
    const bool first = name.Says.What == Subject::None;
    name.Alone |= (u' ' + folded).find(u" none ") != std::u16string::npos;
    name.UpDown |= folded.find(u"+, -") != std::u16string::npos;
    name.Queries |= first && Says(folded, {u"reads", u"returns"}) &&
                    !Says(folded, {u"sets", u"asks for", u"selects", u"changes", u"switches"});
    if (!first) return;
    name.Says = ClassifyLabel(text.substr(0, text.find(u' ')));
    if (name.Says.What == Subject::None) name.Says = ClassifyLabel(text);
    if (name.Says.What != Subject::Other) return;
    // "Sets or reads the volume"
    if (Says(folded, {u"source", u"input", u"eingang", u"entree", u"entrada"}))
      name.Says = {.What = Subject::Input};
    if (Says(folded, {u"volume", u"lautst"})) name.Says = {.What = Subject::Volume};
  }

  // A line below a command: its values, or more of what it does.
  void GoOn(std::size_t number) {
    constexpr std::size_t kReach = 12;
    if (names_.empty() || number > begun_ + kReach) return;
    Name& name = names_.back();
    std::vector<Value> values = ValuesOn(page_, number, 0, pairs_);
    if (values.empty() && number <= begun_ + 2) Explain(name, page_.Lines[number]);
    std::move(values.begin(), values.end(), std::back_inserter(name.Values));
  }

  // Lists of values and lists of their meanings stand apart: those of the same length belong together, in
  // their order.
  void UseTornLists() {
    std::vector<std::vector<Value>> values;
    std::vector<std::vector<Span>> meanings;
    bool inValues = false;
    bool inMeanings = false;
    for (std::size_t line = 0; line < page_.Lines.size(); ++line) {
      const Span whole = Trim(page_, {line, 0, page_.Lines[line].size()});
      const Text text = page_.At(whole);
      const std::u16string folded = FoldLetters(text.substr(0, kLongestLine));
      if (folded == u"character" || folded == u"value") {
        values.emplace_back();
        inValues = true;
        inMeanings = false;
      } else if (folded == u"meaning" || folded == u"description") {
        meanings.emplace_back();
        inMeanings = true;
        inValues = false;
      } else if (inMeanings) {
        constexpr std::size_t kLongestMeaning = 20;
        inMeanings = text.size() <= kLongestMeaning;
        if (inMeanings) meanings.back().push_back(whole);
      } else if (inValues && text.size() == 3 && text[0] == u'"' && text[2] == u'"') {
        values.back().push_back(
            {Characters(text.substr(1, 1)), {line, whole.From + 1, whole.From + 2}, {}, {}});
      }
    }
    std::erase_if(values, [](const auto& list) { return list.empty(); });
    std::erase_if(meanings, [](const auto& list) { return list.empty(); });
    if (values.size() != meanings.size()) return;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i].size() != meanings[i].size()) return;
      for (std::size_t j = 0; j < values[i].size(); ++j) {
        values[i][j].Label = meanings[i][j];
        values[i][j].Says = ClassifyLabel(page_.At(meanings[i][j]));
      }
    }
    for (Name& name : names_) {
      const bool input = name.Says.What == Subject::Input;
      for (const std::vector<Value>& list : values) {
        const bool states = list.front().Says.What == Subject::None && list.front().Says.To != State::None;
        if (states != input) name.Values.insert(name.Values.end(), list.begin(), list.end());
      }
    }
  }

  const ManualPage& page_;
  bool pairs_;
  std::size_t begun_ = 0;
  std::vector<Name> names_;
};

class Composer {
 public:
  Composer(const ManualPage& page, std::vector<Finding>& findings) : page_(page), findings_(findings) {}

  void Compose() {
    FindGrammars();
    if (!withValue_ && !alone_) return;
    const Grammar& any = withValue_ ? *withValue_ : *alone_;
    const auto first =
        std::find_if(any.begin(), any.end(), [](const Part& part) { return !part.Bytes.empty(); });
    const bool pairs = first != any.end() && first->Bytes.front().Kind == ByteKind::HEX;
    const std::size_t known = findings_.size();
    for (const Name& name : NameList(page_, pairs).Read(findings_)) UseName(name);
    for (std::size_t i = 0; i < known && findings_.size() > known; ++i) {
      const bool begins = !findings_[i].What.Bytes.empty() &&
                          findings_[i].What.Bytes.front().Value == findings_.back().What.Bytes.front().Value;
      if (begins) continue;
      constexpr std::size_t kFar = 9;  // behind everything that fits
      findings_[i].Settled = findings_[i].For.Plain = false;
      findings_[i].For.Unknown += kFar;
      findings_[i].Doubt = "it does not begin as the page says that commands do";
    }
  }

 private:
  void FindGrammars() {
    const Explanations explanations(page_);
    for (const std::u16string& line : page_.Lines) {
      if (line.size() > kLongestLine || Says(FoldLetters(line), {u"respon", u"answer", u"notif", u"reply"}))
        continue;
      for (Grammar (*read)(Text) : {DrawnWithBlanks, DrawnWithSizes, DrawnWithSigns}) {
        Grammar grammar = read(TrimSpace(line));
        if (!IsUsable(grammar) || !Resolve(explanations, grammar)) continue;
        const bool valued = std::any_of(grammar.begin(), grammar.end(),
                                        [](const Part& part) { return part.What == Part::Kind::Value; });
        auto& place = valued ? withValue_ : alone_;
        // "*command=+<CR>" has a value, only no place for it.
        const bool signs =
            !valued &&
            std::any_of(std::next(std::find_if(grammar.begin(), grammar.end(), IsName)), grammar.end(),
                        [](const Part& part) { return part.Bytes.front().Kind == ByteKind::ASC; });
        if (!place && !signs) place = std::move(grammar);
      }
    }
  }

  static bool Resolve(const Explanations& explanations, Grammar& grammar) {
    for (Part& part : grammar) {
      if (part.Named.empty()) continue;
      const auto bytes = explanations.BytesOf(part.Named);
      if (!bytes) return false;
      part.Bytes = *bytes;
    }
    return true;
  }

  void UseName(const Name& name) {
    if (name.Queries) return;
    if (withValue_) {
      for (const Value& value : name.Values) {
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

  void Add(const Grammar& grammar, const Name& name, const Value& value, const Function& says) {
    if (!SlotOf(says)) return;
    Finding finding;
    Code& code = finding.What;
    for (const Part& part : grammar) {
      const CodeBytes& bytes = part.What == Part::Kind::Name    ? name.Bytes
                               : part.What == Part::Kind::Value ? value.Bytes
                                                                : part.Bytes;
      code.Bytes.insert(code.Bytes.end(), bytes.begin(), bytes.end());
    }
    code.How = name.Bytes.front().Kind == ByteKind::HEX ? Notation::Hexadecimal : Notation::Characters;
    code.Where = {name.Where};
    if (value.Where != name.Label) code.Where.push_back(value.Where);
    code.Composed = code.Framed = true;
    finding.For = says;
    finding.Label = {value.Label};
    finding.Doubt = "put together as the page describes its commands";
    findings_.push_back(std::move(finding));
  }

  const ManualPage& page_;
  std::optional<Grammar> withValue_;
  std::optional<Grammar> alone_;
  std::vector<Finding>& findings_;
};

}  // namespace

void ComposeByGrammar(const ManualPage& page, std::vector<Finding>& findings) {
  Composer(page, findings).Compose();
}

}  // namespace qdm
