#include "manuals/grammar_lists.h"

#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qdm::grammar {
namespace {

using Text = std::u16string_view;

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
    TakeValueOf(name);
    names_.push_back(std::move(name));
    begun_ = number;
    return true;
  }

  // "1 Power on" behind the name.
  void TakeValueOf(Name& name) const {
    constexpr std::size_t kLongest = 3;
    const Text text = page_.At(name.Label);
    const std::size_t blank = text.find(u' ');
    if (pairs_ || blank == Text::npos || blank == 0 || blank > kLongest) return;
    const Text token = text.substr(0, blank);
    const bool sign = token == u"+" || token == u"-";
    if (!sign && !std::all_of(token.begin(), token.end(), IsDigit)) return;
    const Span at{name.Label.Line, name.Label.From, name.Label.From + blank};
    const Span label = Trim(page_, {at.Line, at.To, name.Label.To});
    const Function says = ClassifyLabel(page_.At(label));
    if (!SlotOf(says)) return;
    name.Values.push_back({Characters(token), at, label, says});
    name.Says = {};
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

}  // namespace

std::vector<Name> ReadNames(const ManualPage& page, bool pairs, const std::vector<Finding>& findings) {
  return NameList(page, pairs).Read(findings);
}

}  // namespace qdm::grammar
