#include "manuals/framing.h"

#include "manuals/code_sums.h"
#include "manuals/drawn_form.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;
using Values8 = std::vector<std::uint8_t>;

constexpr CodeByte Control(std::uint8_t value) { return {value, ByteKind::CNT}; }

// What a line says of answers is not said of commands.
bool SpeaksOfAnswers(Text folded) {
  return Says(folded, {u"respon", u"repl", u"answer", u"antwort", u"reponse", u"respuesta", u"rispost",
                       u"acknowl", u"sends back", u"notif", u"返回", u"应答", u"回答"});
}

// The control codes that the page names, in brackets or alone; those behind ACK and NAK close answers.
std::map<std::uint8_t, int> NamedControls(const ManualPage& page, bool ofAnswers) {
  std::map<std::uint8_t, int> named;
  for (const std::u16string& line : page.Lines) {
    std::map<std::uint8_t, int> onLine;
    for (std::size_t at = 0; at < line.size(); ++at) {
      if (const auto control = ControlAt(line, at)) {
        ++onLine[control->Byte.Value];
        at = control->End - 1;
      }
    }
    if (!ofAnswers && (onLine[6] > 0 || onLine[21] > 0)) continue;
    for (const auto& [value, times] : onLine) named[value] += times;
  }
  return named;
}

bool LineFeedFollows(Text folded) {
  std::size_t from = 0;
  while (from < folded.size()) {
    const std::size_t end = std::min(folded.find(u'\n', from), folded.size());
    const Text line = folded.substr(from, end - from);
    from = end + 1;
    const bool pair = Says(
        line, {u"cr+lf", u"crlf", u"cr lf", u"<cr><lf>", u"[cr][lf]", u"cr/lf", u"cr, lf", u"cr + lf",
               u"cr and lf", u"line feed", u"0dh 0ah", u"0d 0a", u"0x0d 0x0a", u"\\r\\n", u"0x0d, 0x0a"});
    if (pair && !SpeaksOfAnswers(line)) return true;
  }
  return false;
}

}  // namespace

Frame FrameOfText(const ManualPage& page) {
  const Text folded = page.Folded;
  auto named = NamedControls(page, true);
  Frame frame;
  if (named[2] > 0 && named[3] > 0) {
    frame.Before = {Control(2)};
    frame.Behind = {Control(3)};
    frame.Settled = true;
    return frame;
  }
  const bool inWords = Says(
      folded, {u"carriage return", u"[carriage", u"wagenrucklauf", u"retour chariot", u"回车", u"キャリッジ",
               u"retorno de carro", u"ritorno a capo", u"return code (", u"return code\n(0d"});
  const bool key = Says(folded, {u"press enter", u"<enter>", u"[enter]", u"enter key", u"press return",
                                 u"press\nenter", u"enter-taste"});
  const bool feed =
      Says(folded, {u"line feed", u"linefeed", u"zeilenvorschub", u"saut de ligne", u"avance de linea"});
  if (named[13] == 0 && !inWords && !key && !Says(folded, {u"0dh", u"0x0d"})) {
    if (named[10] == 0 && !feed) return frame;
    frame.Behind = {Control(10)};
    frame.Settled = named[10] > 0;
    return frame;
  }
  frame.Behind = {Control(13)};
  if (LineFeedFollows(folded)) frame.Behind.push_back(Control(10));
  frame.Settled = NamedControls(page, false)[13] > 0 || inWords;
  return frame;
}

namespace {

// Behind another list of numbers on its row: rather what the projector answers to it.
bool IsBesideAnother(const ManualPage& page, const Code& before, const Code& code) {
  const Span& end = before.End();
  const Span& begin = code.Begin();
  if (before.How != code.How || end.Line != begin.Line || begin.From < end.To) return false;
  const Text between = Text(page.Lines[end.Line]).substr(end.To, begin.From - end.To);
  return between.find_first_not_of(u" \t|") == Text::npos;
}

}  // namespace

Frame FrameOfExamples(const ManualPage& page, const std::vector<Code>& codes) {
  constexpr std::size_t kMost = 300;
  using Packed = std::u16string;  // one a byte: compares well
  const auto textOf = [](const Code& code) {
    const std::vector<std::uint8_t> values = Values(code.Bytes);
    return Packed(values.begin(), values.end());
  };
  std::set<Packed> all;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const Code& code = codes[i];
    if (i > 0 && IsBesideAnother(page, codes[i - 1], code)) continue;
    if (!code.Broken && code.Bytes.size() <= kLongestCode && all.size() < kMost) all.insert(textOf(code));
  }
  std::map<std::pair<Packed, Packed>, std::set<Packed>> frames;
  for (const Packed& longer : all) {
    for (const Packed& shorter : all) {
      if (shorter.size() >= longer.size() || longer.size() < 4) continue;
      const auto found = std::search(longer.begin(), longer.end(), shorter.begin(), shorter.end());
      if (found == longer.end()) continue;
      const Packed before(longer.begin(), found);
      const Packed behind(found + static_cast<std::ptrdiff_t>(shorter.size()), longer.end());
      // What is sent back closed by a line feed is an answer, not an example.
      if (before.empty() && behind == u"\n" && shorter.back() == u'\r') continue;
      // "AMUTE" is another word than "MUTE".
      const bool word = (!before.empty() && IsLetter(before.back()) && IsLetter(shorter.front())) ||
                        (!behind.empty() && IsLetter(behind.front()) && IsLetter(shorter.back()));
      if (word) continue;
      frames[{before, behind}].insert(shorter);
    }
  }
  Frame best;
  std::size_t most = 1;
  for (const auto& [round, shorts] : frames) {
    if (shorts.size() <= most) continue;
    most = shorts.size();
    best = {};
    for (const char16_t value : round.first)
      best.Before.push_back({static_cast<std::uint8_t>(value), ByteKind::HEX});
    for (const char16_t value : round.second)
      best.Behind.push_back({static_cast<std::uint8_t>(value), ByteKind::HEX});
    best.Settled = true;
  }
  return best;
}

namespace {

bool Has(const Frame& frame, const CodeBytes& bytes) {
  const std::size_t round = frame.Before.size() + frame.Behind.size();
  if (bytes.size() < round) return false;
  const auto back = static_cast<std::ptrdiff_t>(frame.Behind.size());
  return SameValues({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(frame.Before.size())},
                    frame.Before) &&
         SameValues({bytes.end() - back, bytes.end()}, frame.Behind);
}

void Put(const Frame& frame, Code& code) {
  if (Has(frame, code.Bytes)) {
    code.Framed = true;
    return;
  }
  for (CodeBytes* bytes : {&code.Bytes, &code.Answer}) {
    if (bytes->empty()) continue;
    bytes->insert(bytes->begin(), frame.Before.begin(), frame.Before.end());
    bytes->insert(bytes->end(), frame.Behind.begin(), frame.Behind.end());
  }
  code.Composed = true;
  code.Framed = frame.Settled;
}

}  // namespace

// Numbers that only repeat characters have their terminator elsewhere, like the characters.
bool OnlyCharacters(const Code& code, std::ptrdiff_t but = 0) {
  return std::all_of(code.Bytes.begin(), code.Bytes.end() - but,
                     [](const CodeByte& byte) { return byte.Value >= 0x20 && byte.Value < 0x7F; });
}

// Codes that fill the places of a form that the page draws; nothing where codes are printed whole.
bool PutDrawnForm(const ManualPage& page, std::vector<Code>& codes) {
  const auto form = FindDrawnForm(page);
  if (!form) return false;
  const auto isSum = [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; };
  const bool control = form->Before.front().Kind == ByteKind::CNT;
  // STX and ETX alone are found without a drawing.
  const bool stxAlone = form->Before.front().Value == 2 && form->Before.size() == 1;
  if (stxAlone && control && std::none_of(form->Behind.begin(), form->Behind.end(), isSum)) return false;
  const auto begins = [&](const Code& code) {
    return code.Bytes.size() >= form->Before.size() &&
           SameValues(
               {code.Bytes.begin(), code.Bytes.begin() + static_cast<std::ptrdiff_t>(form->Before.size())},
               form->Before);
  };
  const auto whole = std::count_if(codes.begin(), codes.end(), [&](const Code& code) {
    return begins(code) && code.Bytes.size() > form->Before.size() + form->Behind.size();
  });
  if (static_cast<std::size_t>(whole) * 3 > codes.size()) return false;
  const bool characters =
      control || std::any_of(form->Before.begin(), form->Before.end(),
                             [](const CodeByte& byte) { return byte.Kind == ByteKind::ASC; });
  for (Code& code : codes) {
    const bool ofForm = characters == (code.How == Notation::Characters);
    if (!ofForm || begins(code) || code.Broken) continue;
    Put({form->Before, form->Behind, false}, code);
    code.Broken = std::any_of(code.Bytes.begin(), code.Bytes.end(), isSum);
  }
  return true;
}

// What whole codes that end with their check sum have round the short ones, the sum as a VAR of value 0:
// "10 01" in a table and A5 04 10 01 B0 as an example.
std::optional<Frame> FrameOfSums(const std::vector<Code>& codes, std::size_t size) {
  constexpr std::size_t kLongestTail = 2;
  constexpr std::size_t kProof = 3;  // so many sums are no chance
  std::set<Values8> shorts;
  std::set<Values8> longer;
  for (const Code& code : codes) {
    if (code.How != Notation::Hexadecimal || code.Broken) continue;
    if (code.Bytes.size() == size) shorts.insert(Values(code.Bytes));
    if (code.Bytes.size() > size + 1 && code.Bytes.size() <= kLongestCode) longer.insert(Values(code.Bytes));
  }
  if (longer.empty()) return std::nullopt;
  const std::size_t length = longer.begin()->size();
  for (std::size_t tail = 0; tail <= kLongestTail && size + 1 + tail < length; ++tail) {
    const auto before = static_cast<std::ptrdiff_t>(length - size - 1 - tail);
    const Values8& like = *longer.begin();
    const auto fits = [&](const Values8& code) {
      return code.size() == length && std::equal(code.begin(), code.begin() + before, like.begin()) &&
             std::equal(code.end() - static_cast<std::ptrdiff_t>(tail), code.end(),
                        like.end() - static_cast<std::ptrdiff_t>(tail));
    };
    if (!std::all_of(longer.begin(), longer.end(), fits)) continue;
    const auto known = [&](const Values8& code) {
      return shorts.contains(
          Values8(code.begin() + before, code.begin() + before + static_cast<std::ptrdiff_t>(size)));
    };
    if (longer.size() < kProof && !std::all_of(longer.begin(), longer.end(), known)) continue;
    for (const CheckSum check : kCheckSums) {
      const bool right = std::all_of(longer.begin(), longer.end(), [&](const Values8& code) {
        return IsRight(check, {code.data(), length - tail});
      });
      if (!right) continue;
      Frame frame;
      for (auto value = like.begin(); value != like.begin() + before; ++value)
        frame.Before.push_back({*value, ByteKind::HEX});
      frame.Behind.push_back({0, ByteKind::VAR});
      for (std::size_t i = length - tail; i < length; ++i) frame.Behind.push_back({like[i], ByteKind::HEX});
      return frame;
    }
  }
  return std::nullopt;
}

// Short lists of numbers that all have one length; false where examples do not show what is round them.
bool PutFrameOfSums(std::vector<Code>& codes) {
  constexpr std::size_t kShortest = 2;
  constexpr std::size_t kLongest = 4;
  for (std::size_t size = kShortest; size <= kLongest; ++size) {
    const auto frame = FrameOfSums(codes, size);
    if (!frame) continue;
    for (Code& code : codes) {
      if (code.How != Notation::Hexadecimal || code.Broken || code.Bytes.size() != size) continue;
      Put(*frame, code);
      code.Broken = true;
    }
    return true;
  }
  return false;
}

void PutFrames(const ManualPage& page, std::vector<Code>& codes) {
  if (PutFrameOfSums(codes)) return;
  if (PutDrawnForm(page, codes)) return;
  const Frame examples = FrameOfExamples(page, codes);
  const Frame text = FrameOfText(page);
  const bool bare = std::all_of(codes.begin(), codes.end(), [](const Code& code) {
    return code.How == Notation::Characters || code.Bytes.size() < 2 || OnlyCharacters(code);
  });
  const bool closed = std::any_of(codes.begin(), codes.end(), [](const Code& code) {
    return code.How == Notation::Hexadecimal && code.Bytes.size() > 2 && code.Bytes.back().Value < 0x20 &&
           OnlyCharacters(code, 1);
  });
  for (Code& code : codes) {
    const bool number = code.How == Notation::Hexadecimal;
    if (number && closed && OnlyCharacters(code)) code.Framed = false;
    // The page names a terminator that this code does not have: perhaps it is printed without.
    if (number && (bare || (text.Settled && !Has(text, code.Bytes)))) code.Framed = false;
    if (number && !bare && !code.Framed) {
      if (!examples.Empty()) Put(examples, code);
      continue;
    }
    if (!examples.Empty() && (number || !code.Framed)) {
      Put(examples, code);
    } else if (!code.Framed && !text.Empty()) {
      Put(text, code);
    }
  }
}

}  // namespace qdm
