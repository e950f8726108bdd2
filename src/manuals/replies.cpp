#include "manuals/replies.h"

#include "manuals/codes.h"
#include "manuals/functions.h"
#include "manuals/reply_forms.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

struct Answer {
  CodeBytes Bytes;
  Span Where;
  bool Sure = true;
};

constexpr Text kAnswerWords[] = {u"respon",   u"repl",   u"answer",     u"return",   u"acknowledg",
                                 u"receive",  u"pass",   u"sends",      u"rucklauf", u"antwort",
                                 u"ruckmeld", u"repons", u"respuesta",  u"risposta", u"应答",
                                 u"回答",     u"返回",   u"successful", u"echo"};
constexpr Text kFailureWords[] = {u"fail", u"error", u"unsuccess", u"invalid", u"ng",
                                  u"fehl", u"not ",  u"problem",   u"erreur",  u"illegal"};

template <std::size_t N>
bool Has(Text text, const Text (&words)[N]) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](Text word) { return text.find(word) != Text::npos; });
}

// The line with the two above it, folded: what an answer is introduced by.
std::u16string Around(const ManualPage& page, std::size_t line) {
  std::u16string around;
  for (std::size_t at = line >= 2 ? line - 2 : 0; at <= line; ++at) {
    around += FoldLetters(Text(page.Lines[at]).substr(0, 300));
    around += u' ';
  }
  return around;
}

// "ACK: 0x06, 0x0D": the list of numbers that begins with it.
CodeBytes NumbersFrom(Text text, std::size_t from) {
  constexpr std::size_t kFarthest = 30;
  CodeBytes bytes;
  for (std::size_t at = from; at < std::min(text.size(), from + kFarthest); ++at) {
    auto number = NumberAt(text, at);
    if (!number) continue;
    while (number && number->Marked && bytes.size() < kLongestCode) {
      bytes.push_back(number->Byte);
      at = number->End;
      while (at < text.size() && (text[at] == u' ' || text[at] == u',')) ++at;
      number = NumberAt(text, at);
    }
    break;
  }
  return !bytes.empty() && bytes.front().Value == 6 ? bytes : CodeBytes();
}

// ACK, with the CR that follows it at once, on the next line where cells have a line each.
std::optional<Answer> AcknowledgeCode(const ManualPage& page) {
  std::optional<Answer> found;
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    const Text text = page.Lines[line];
    for (std::size_t at = 0; at < text.size(); ++at) {
      const auto control = ControlAt(text, at);
      if (!control || control->Byte.Value != 6) continue;
      Answer answer{{control->Byte}, {line, at, control->End}, true};
      std::size_t next = control->End;
      while (next < text.size() &&
             (text[next] == u' ' || text[next] == u'+' || text[next] == u'"' || text[next] == u'\''))
        ++next;
      auto behind = ControlAt(text, next);
      if (!behind && next >= text.size() && line + 1 < page.Lines.size())
        behind = ControlAt(page.Lines[line + 1], 0);
      if (behind && behind->Byte.Value == 13) answer.Bytes.push_back(behind->Byte);
      if (const CodeBytes numbers = NumbersFrom(text, control->End); numbers.size() > answer.Bytes.size())
        answer.Bytes = numbers;
      if (!found || answer.Bytes.size() > found->Bytes.size()) found = answer;
    }
  }
  return found;
}

// 'Reply: "OK" <CR><LF>, or "ERR"': the first text in quotation marks and what closes it.
std::optional<Answer> AcknowledgeQuoted(const ManualPage& page) {
  constexpr std::size_t kLongest = 8;
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    const Text text = Text(page.Lines[line]).substr(0, 300);
    const std::size_t open = text.find(u'"');
    const std::size_t close = open == Text::npos ? open : text.find(u'"', open + 1);
    if (close == Text::npos || close - open < 2 || close - open > kLongest) continue;
    const std::u16string before = FoldLetters(text.substr(0, open));
    const bool answers = Has(Text(before), {u"reply", u"replies", u"response", u"answer", u"antwort",
                                            u"reponse", u"respuesta", u"risposta", u"acknowledg"});
    if (!answers || Has(Text(before), kFailureWords)) continue;
    Answer answer{Characters(text.substr(open + 1, close - open - 1)), {line, open + 1, close}, true};
    for (std::size_t at = close + 1; at < text.size();) {
      const auto control = ControlAt(text, at);
      if (!control && !IsBlank(text[at]) && text[at] != u'+') break;
      if (control) answer.Bytes.push_back(control->Byte);
      at = answer.Where.To = control ? control->End : at + 1;
    }
    if (answer.Bytes.back().Value < 0x20) return answer;
  }
  return std::nullopt;
}

// "the projector sends ":"", "Return (Pass): P", "Normal response O K Return code (0DH)".
std::optional<Answer> AcknowledgeText(const ManualPage& page) {
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    const Text text = page.Lines[line];
    const std::u16string folded = FoldLetters(text.substr(0, 300));
    const Text view = folded;
    const std::size_t pass = std::min(
        {view.find(u"(pass)"), view.find(u"(ok)"), view.find(u"(bestanden)"), view.find(u"(success)")});
    if (pass != Text::npos) {
      std::size_t at = view.find(u')', pass) + 1;
      while (at < text.size() && (text[at] == u':' || text[at] == u' ' || text[at] == u'=')) ++at;
      const std::size_t from = at;
      while (at < text.size() && IsWordPart(text[at])) ++at;
      if (at > from && at - from <= 4) {
        Answer answer{Characters(text.substr(from, at - from)), {line, from, at}, true};
        while (at < text.size() && (text[at] == u' ' || text[at] == u'+')) ++at;
        const auto end = ControlAt(text, at);
        if (end && end->Byte.Value == 13) answer.Bytes.push_back(end->Byte);
        return answer;
      }
    }
    const std::size_t quote = text.find(u'"');
    const bool sends = view.find(u"sends \"") != Text::npos || view.find(u"returns \"") != Text::npos ||
                       view.find(u"replies \"") != Text::npos || view.find(u"answers \"") != Text::npos ||
                       view.find(u"answered with \"") != Text::npos;
    if (sends && quote != Text::npos && !Has(view, kFailureWords)) {
      const std::size_t close = text.find(u'"', quote + 1);
      const std::size_t length = close == Text::npos ? 0 : close - quote - 1;
      if (length >= 1 && length <= 4)
        return Answer{Characters(text.substr(quote + 1, length)), {line, quote + 1, close}, true};
    }
    const Span whole = Trim(page, {line, 0, text.size()});
    std::u16string joined;
    for (const char16_t c : page.At(whole)) {
      if (c != u' ') joined += c;
    }
    if (joined == u"OK" && line + 1 < page.Lines.size() && line > 0) {
      const std::u16string next = FoldLetters(page.Lines[line + 1]);
      const std::u16string before = FoldLetters(page.Lines[line - 1]);
      const bool ends =
          next.find(u"0dh") != Text::npos || next.find(u"cr") == 0 || next.find(u"<cr>") != Text::npos;
      if (ends && Has(before, kAnswerWords)) {
        Answer answer{Characters(u"OK"), whole, true};
        answer.Bytes.push_back({13, ByteKind::CNT});
        return answer;
      }
    }
  }
  return std::nullopt;
}

bool SaysEcho(const ManualPage& page) {
  for (const Text word : {Text(u"echo"), Text(u"callback"), Text(u"call back")}) {
    const std::size_t at = page.Folded.find(word);
    if (at == std::u16string::npos) continue;
    const Text around = Text(page.Folded).substr(at > 40 ? at - 40 : 0, 100);
    if (around.find(u"no echo") == Text::npos && around.find(u"illegal") == Text::npos &&
        around.find(u"unsupported") == Text::npos && around.find(u"not ") == Text::npos &&
        around.find(u"block") == Text::npos && around.find(u"wrong") == Text::npos) {
      return true;
    }
  }
  return false;
}

// "ACKCR": the two names have run together.
std::optional<Answer> AcknowledgeGlued(const ManualPage& page) {
  constexpr Text kGlued = u"ACKCR";
  for (std::size_t line = 0; line < page.Lines.size(); ++line) {
    const std::size_t at = page.Lines[line].find(kGlued);
    if (at == Text::npos) continue;
    return Answer{{{6, ByteKind::CNT}, {13, ByteKind::CNT}}, {line, at, at + kGlued.size()}, true};
  }
  return std::nullopt;
}

// "Response" and below it "06".
std::optional<Answer> AcknowledgeBelow(const ManualPage& page) {
  for (std::size_t line = 0; line + 1 < page.Lines.size(); ++line) {
    const std::u16string title = FoldLetters(TrimSpace(page.Lines[line]));
    const Span below = Trim(page, {line + 1, 0, page.Lines[line + 1].size()});
    if ((title == u"response" || title == u"reply" || title == u"answer") && page.At(below) == u"06")
      return Answer{{{6, ByteKind::HEX}}, below, true};
  }
  return std::nullopt;
}

std::vector<std::uint8_t> BytesOf(const ManualCommand& command) {
  const auto begin = command.String.Values.begin();
  return {begin, begin + static_cast<std::ptrdiff_t>(command.String.BytesInUse())};
}

// "Receive successfully" with the characters of a command below it.
bool EchoesByExample(const ManualPage& page, const ManualReading& reading) {
  for (std::size_t line = 0; line + 1 < page.Lines.size(); ++line) {
    const std::u16string folded = FoldLetters(Text(page.Lines[line]).substr(0, 300));
    if (folded.find(u"successful") == Text::npos || folded.find(u"unsuccess") != Text::npos) continue;
    Text below = TrimSpace(page.Lines[line + 1]);
    constexpr std::size_t kShortest = 4;
    if (below.size() < kShortest || below.front() != u'"' || below.back() != u'"') continue;
    const std::vector<std::uint8_t> inside = Values(Characters(below.substr(1, below.size() - 2)));
    for (const ManualCommand& command : reading.Commands) {
      const std::vector<std::uint8_t> bytes = BytesOf(command);
      if (bytes.size() > inside.size() && std::equal(inside.begin(), inside.end(), bytes.begin()))
        return true;
    }
  }
  return false;
}

// What answers that are echoes have behind the command: "*NXT<CR>" and below it "*NXT<CR><LF>".
std::vector<std::uint8_t> EchoSuffix(const ManualReading& reading) {
  constexpr std::size_t kFewest = 2;
  std::size_t pairs = 0;
  std::vector<std::uint8_t> suffix;
  for (std::size_t i = 0; i + 1 < reading.Commands.size(); ++i) {
    const std::vector<std::uint8_t> sent = BytesOf(reading.Commands[i]);
    const std::vector<std::uint8_t> answer = BytesOf(reading.Commands[i + 1]);
    if (answer.size() != sent.size() + 1 || !std::equal(sent.begin(), sent.end(), answer.begin())) continue;
    if (answer.back() != 0x0A) continue;
    suffix = {0x0A};
    ++pairs;
  }
  return pairs >= kFewest ? suffix : std::vector<std::uint8_t>();
}

// "ACK (06h) CR Data", a header that a whole answer follows: what is found is not all of it.
bool GoesOn(const ManualPage& page, const Answer& answer) {
  const Text text = page.Lines[answer.Where.Line];
  const std::u16string folded = FoldLetters(text.substr(std::min(text.size(), answer.Where.To)));
  for (const Text word : {u"data", u"parameter", u"status", u"value", u"[command", u"checksum"}) {
    const std::size_t at = folded.find(word);
    constexpr std::size_t kNear = 24;
    if (at < kNear && Text(folded).substr(0, at).find_first_of(u".;:") == Text::npos) return true;
  }
  constexpr std::size_t kBack = 12;
  for (std::size_t back = 1; back <= kBack && back <= answer.Where.Line; ++back) {
    const std::u16string title = FoldLetters(TrimSpace(page.Lines[answer.Where.Line - back]));
    if (title == u"header" || title == u"header code") return true;
  }
  return false;
}

std::optional<int> ReplySlot(int slot) {
  constexpr int kReplyOf = 10;
  constexpr int kBlankOffReply = 22;
  if (slot == kBlankOffSlot) return kBlankOffReply;
  return slot == kSecondVideoSlot ? std::nullopt : std::optional(slot + kReplyOf);
}

}  // namespace

namespace {

// One answer for all commands, where the page fixes one.
std::optional<Answer> CommonAnswer(const ManualPage& page) {
  auto answer = AcknowledgeText(page);
  if (!answer) answer = AcknowledgeQuoted(page);
  if (!answer) answer = AcknowledgeGlued(page);
  if (!answer) answer = AcknowledgeCode(page);
  if (!answer) answer = AcknowledgeBelow(page);
  if (!answer) return std::nullopt;
  if (GoesOn(page, *answer)) return std::nullopt;
  answer->Sure = Has(Text(Around(page, answer->Where.Line)), kAnswerWords);
  return answer;
}

CodeBytes SentBy(const ManualCommand& command) {
  CodeBytes bytes;
  for (std::size_t i = 0; i < command.String.BytesInUse(); ++i)
    bytes.push_back({command.String.Values[i], static_cast<ByteKind>(command.String.Kinds[i])});
  return bytes;
}

std::optional<std::size_t> LineOf(const ManualPage& page, const ManualCommand& command) {
  if (command.CodeRanges.empty()) return std::nullopt;
  const auto number = std::find(page.Numbers.begin(), page.Numbers.end(), command.CodeRanges.front().Line);
  if (number == page.Numbers.end()) return std::nullopt;
  return static_cast<std::size_t>(number - page.Numbers.begin());
}

// What the page draws as the answer to this command.
std::optional<ManualReply> DrawnAnswer(const ManualPage& page, const ManualCommand& command) {
  const auto line = LineOf(page, command);
  const auto drawn = line ? FindDrawnReply(page, BytesOf(command), *line) : std::nullopt;
  if (!drawn) return std::nullopt;
  ManualReply reply;
  reply.String = SerialStringOf(drawn->Bytes);
  reply.Ranges = {{page.Numbers[drawn->Where.Line], drawn->Where.From, drawn->Where.To}};
  return reply;
}

}  // namespace

void FindReplies(const ManualPage& page, ManualReading& reading) {
  const bool echo = SaysEcho(page) || EchoesByExample(page, reading);
  const std::vector<std::uint8_t> suffix = echo ? EchoSuffix(reading) : std::vector<std::uint8_t>();
  const std::optional<Answer> common = echo ? std::nullopt : CommonAnswer(page);
  for (const ManualSlot& slot : reading.Slots) {
    const auto to = ReplySlot(slot.Slot);
    if (!to) continue;
    const ManualCommand& command = reading.Commands[slot.Choice];
    ManualReply reply;
    if (command.Answer.BytesInUse() > 0) {
      reply = {0, command.Answer, command.AnswerRanges, slot.Sure && command.AnswerWhole};
    } else if (echo) {
      CodeBytes bytes = SentBy(command);
      for (const std::uint8_t value : suffix) bytes.push_back({value, ByteKind::CNT});
      reply = {0, SerialStringOf(bytes), command.CodeRanges, slot.Sure};
    } else if (common) {
      const Span& where = common->Where;
      reply = {
          0, SerialStringOf(common->Bytes), {{page.Numbers[where.Line], where.From, where.To}}, common->Sure};
    } else if (const auto drawn = DrawnAnswer(page, command)) {
      reply = *drawn;
    } else {
      continue;
    }
    reply.Slot = *to;
    reading.Replies.push_back(std::move(reply));
  }
  std::sort(reading.Replies.begin(), reading.Replies.end(),
            [](const ManualReply& a, const ManualReply& b) { return a.Slot < b.Slot; });
}

}  // namespace qdm
