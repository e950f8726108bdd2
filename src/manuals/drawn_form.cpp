#include "manuals/drawn_form.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

struct DrawnPart {
  enum class Kind { Literal, Place, Sum, Unclear } What = Kind::Unclear;
  CodeBytes Bytes;
};

Text Bare(Text text) {
  const auto mark = [](char16_t c) {
    return c == u' ' || c == u'\t' || c == u'"' || c == u'\'' || c == u'[' || c == u']' || c == u'<' ||
           c == u'>' || c == u'.';
  };
  while (!text.empty() && mark(text.front())) text.remove_prefix(1);
  while (!text.empty() && mark(text.back())) text.remove_suffix(1);
  return text;
}

bool IsSymbol(Text text) { return text.size() == 1 && text[0] > 32 && text[0] < 127 && !IsWordPart(text[0]); }

CodeBytes NumbersIn(Text text, std::size_t from = 0) {
  CodeBytes bytes;
  for (std::size_t at = from; at < text.size();) {
    const auto number = NumberAt(text, at);
    if (number) bytes.push_back(number->Byte);
    at = number ? number->End : at + 1;
  }
  return bytes;
}

bool IsSumName(Text folded) {
  return folded == u"bcc" || folded == u"lrc" || folded == u"sum" || folded == u"cs" ||
         Says(folded, {u"check", u"chk", u"cks", u"prufsumme", u"somme de contr", u"suma de", u"校验"});
}

bool IsPlaceName(Text folded) {
  constexpr std::size_t kLongestPlace = 20;
  return folded.size() <= kLongestPlace &&
         Says(folded, {u"command", u"code",  u"function", u"data",     u"param",  u"value",  u"cmd",
                       u"befehl",  u"daten", u"wert",     u"commande", u"donnee", u"valeur", u"comando",
                       u"valor",   u"dato",  u"命令",     u"参数",     u"数据",   u"指令"});
}

DrawnPart ReadPart(Text text, bool first) {
  using enum DrawnPart::Kind;
  text = Bare(text);
  if (text.empty()) return {};
  if (IsSymbol(text)) return {Literal, Characters(text)};
  if (const auto control = ControlAt(text, 0); control && control->End == text.size())
    return {Literal, {control->Byte}};
  const std::u16string folded = FoldLetters(text);
  const CodeBytes numbers = NumbersIn(text);
  // "ESC (1Bh)"
  if (const auto control = ControlAt(text, 0);
      control && numbers.size() == 1 && numbers.front().Value == control->Byte.Value)
    return {Literal, {control->Byte}};
  if (!numbers.empty()) return {Literal, numbers};
  if (IsSumName(folded)) return {Sum, {}};
  const std::size_t blank = text.rfind(u' ');
  if (first && blank != Text::npos && IsSymbol(Bare(text.substr(blank))))
    return {Literal, Characters(Bare(text.substr(blank)))};
  if (IsPlaceName(folded)) return {Place, {}};
  return {};
}

// "A + B + C", "A | B | C", "[A] [B] [C]"; commas where nothing else parts.
std::vector<Text> PartsOf(Text line) {
  const auto parts = [line](auto separates) {
    std::vector<Text> found;
    std::size_t from = 0;
    for (std::size_t at = 0; at <= line.size(); ++at) {
      if (at < line.size() && !separates(at)) continue;
      if (at > from) found.push_back(line.substr(from, at - from));
      from = at + 1;
    }
    std::erase_if(found, [](Text part) { return Bare(part).empty(); });
    return found;
  };
  constexpr char16_t kMarks[] = {u'+', u'|', u']', u','};
  for (const char16_t mark : kMarks) {
    std::vector<Text> found = parts([&](std::size_t at) { return line[at] == mark; });
    if (found.size() >= 3) return found;
  }
  // "STX Command ETX BCC": blanks part names of which each is known.
  std::vector<Text> found = parts([&](std::size_t at) { return IsBlank(line[at]); });
  constexpr std::size_t kFewest = 3;
  constexpr std::size_t kMostPlaces = 8;
  const bool names =
      found.size() >= kFewest && found.size() <= kMostPlaces &&
      std::all_of(found.begin(), found.end(), [](Text name) {
        const std::u16string folded = FoldLetters(name);
        const auto control = ControlAt(name, 0);
        return (control && control->End == name.size()) || IsSumName(folded) || IsPlaceName(folded);
      });
  return names ? found : std::vector<Text>();
}

std::optional<DrawnForm> FormOn(Text line) {
  constexpr std::size_t kLongest = 200;
  if (line.size() > kLongest) return std::nullopt;
  if (const std::size_t colon = line.find(u':'); colon != Text::npos && colon + 1 < line.size())
    line = line.substr(colon + 1);
  DrawnForm form;
  CodeBytes pending;
  bool first = true;
  for (const Text text : PartsOf(line)) {
    const DrawnPart part = ReadPart(text, first);
    first = false;
    switch (part.What) {
      case DrawnPart::Kind::Unclear:
        return std::nullopt;
      case DrawnPart::Kind::Place:
        (form.Places == 0 ? form.Before : form.Between) = pending;
        pending.clear();
        ++form.Places;
        break;
      case DrawnPart::Kind::Sum:
        if (form.Places == 0) return std::nullopt;
        pending.push_back({0, ByteKind::VAR});
        break;
      case DrawnPart::Kind::Literal:
        pending.insert(pending.end(), part.Bytes.begin(), part.Bytes.end());
        break;
    }
  }
  form.Behind = pending;
  const std::size_t round = form.Before.size() + form.Behind.size();
  return form.Places > 0 && !form.Before.empty() && round <= kLongestCode / 2 ? std::optional(form)
                                                                              : std::nullopt;
}

// "begins with the header BB 00 and ends with 0D".
std::optional<DrawnForm> StatedForm(Text line) {
  constexpr std::size_t kReach = 30;
  const std::u16string folded = FoldLetters(line);
  const auto numbersBehind = [&](std::initializer_list<Text> words) {
    for (const Text word : words) {
      const std::size_t at = folded.find(word);
      if (at == Text::npos) continue;
      std::size_t from = at + word.size();
      const std::size_t limit = std::min(line.size(), from + kReach);
      while (from < limit && !NumberAt(line, from)) ++from;
      CodeBytes bytes;
      for (auto number = NumberAt(line, from); from < limit && number; number = NumberAt(line, from)) {
        bytes.push_back(number->Byte);
        from = number->End;
        while (from < line.size() && (line[from] == u' ' || line[from] == u',')) ++from;
      }
      return bytes;
    }
    return CodeBytes();
  };
  DrawnForm form;
  form.Before = numbersBehind({u"begins with", u"begin with", u"starts with", u"start with", u"preceded by",
                               u"header is", u"beginnt mit", u"beginnen mit", u"commence par",
                               u"commencent par", u"comienza con", u"empieza con", u"inizia con"});
  form.Behind = numbersBehind({u"ends with", u"end with", u"closed by", u"terminated with", u"terminated by",
                               u"followed by", u"endet mit", u"enden mit", u"termine par", u"terminent par",
                               u"termina con", u"finisce con"});
  form.Places = 1;
  return form.Before.empty() ? std::nullopt : std::optional(form);
}

bool DescribesReply(Text line) {
  return Says(FoldLetters(line), {u"respon", u"reply", u"answer", u"antwort", u"repons", u"respuesta"});
}

}  // namespace

std::optional<DrawnForm> FindDrawnForm(const ManualPage& page) {
  for (const std::u16string& line : page.Lines) {
    if (DescribesReply(line)) continue;
    if (auto form = FormOn(line)) return form;
    if (auto form = StatedForm(line)) return form;
  }
  return std::nullopt;
}

}  // namespace qdm
