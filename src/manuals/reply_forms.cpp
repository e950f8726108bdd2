#include "manuals/reply_forms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

using Text = std::u16string_view;
using SentBytes = std::vector<std::uint8_t>;

struct ReplyPart {
  enum class Kind { Literal, Address, Sent, Varies } What = Kind::Literal;
  CodeBytes Bytes;
  std::u16string Name;
};
using ReplyForm = std::vector<ReplyPart>;

bool Among(Text word, std::initializer_list<Text> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// What one place of the drawing is called.
std::optional<ReplyPart> ReplyPartOf(Text text) {
  using enum ReplyPart::Kind;
  text = TrimSpace(text);
  std::u16string name = FoldLetters(text);
  if (text.empty() || Among(name, {u"sp", u"space"})) return ReplyPart{Literal, Characters(u" "), {}};
  if (const auto control = ControlAt(text, 0); control && control->End == text.size())
    return ReplyPart{Literal, {control->Byte}, {}};
  if (name == u"cr") return ReplyPart{Literal, {{13, ByteKind::CNT}}, {}};
  if (const auto number = NumberAt(text, 0); number && number->End == text.size())
    return ReplyPart{Literal, {number->Byte}, {}};
  if (Among(name, {u"ok", u"ok/ng", u"ok / ng"})) return ReplyPart{Literal, Characters(u"OK"), {}};
  if (text.size() == 1 && text[0] > 32 && text[0] < 127) return ReplyPart{Literal, Characters(text), {}};
  if (Among(name, {u"set id", u"setid", u"id", u"address", u"addr", u"adr", u"unit id", u"device id"}))
    return ReplyPart{Address, {}, std::move(name)};
  if (Among(name,
            {u"command", u"cmd", u"data", u"parameter", u"param", u"value", u"befehl", u"daten", u"wert"}))
    return ReplyPart{Sent, {}, std::move(name)};
  if (Among(name,
            {u"status", u"result", u"state", u"check", u"checksum", u"sum", u"bcc", u"lrc", u"cks", u"cs"}))
    return ReplyPart{Varies, {}, std::move(name)};
  return std::nullopt;
}

// The parts of a drawing up to the line's end; empty where one of them is unknown.
ReplyForm ReadForm(Text line, std::size_t at) {
  constexpr Text kBetween = u" \t+|,:.";
  ReplyForm form;
  while (at < line.size()) {
    if (kBetween.find(line[at]) != Text::npos) {
      ++at;
      continue;
    }
    const char16_t close = line[at] == u'['   ? u']'
                           : line[at] == u'<' ? u'>'
                           : line[at] == u'"' ? u'"'
                                              : u'\0';
    const std::size_t end = close != u'\0' ? line.find(close, at + 1) : line.find_first_of(u" \t+|,[<", at);
    if (close != u'\0' && end == Text::npos) return {};
    const std::size_t from = close != u'\0' ? at + 1 : at;
    Text inside = line.substr(from, end == Text::npos ? Text::npos : end - from);
    while (close == u'\0' && !inside.empty() && inside.back() == u'.') inside.remove_suffix(1);
    const auto part =
        close == u'"' ? ReplyPart{ReplyPart::Kind::Literal, Characters(inside), {}} : ReplyPartOf(inside);
    if (!part) return {};
    form.push_back(*part);
    at = end == Text::npos ? line.size() : end + (close != u'\0' ? 1 : 0);
  }
  return form;
}

// A drawing behind a word for an answer.
ReplyForm ReplyFormOn(Text line) {
  constexpr std::size_t kReach = 60;
  constexpr std::size_t kFewest = 3;
  constexpr Text kAnswers[] = {u"ack",     u"reply",     u"response", u"answer",  u"antwort",
                               u"reponse", u"respuesta", u"return",   u"risposta"};
  const std::u16string folded = FoldLetters(line.substr(0, kReach));
  std::size_t at = Text::npos;
  for (const Text word : kAnswers) {
    const std::size_t found = folded.find(word);
    if (found != Text::npos) at = std::min(at, found + word.size());
  }
  if (at == Text::npos) return {};
  const std::size_t with = std::min(folded.find(u" with ", at), folded.find(u" mit ", at));
  if (with != Text::npos) at = folded.find(u' ', with + 1);
  while (at < line.size() && IsLower(line[at])) ++at;  // "answers"
  ReplyForm form = ReadForm(line, at);
  const bool places = std::any_of(
      form.begin(), form.end(), [](const ReplyPart& part) { return part.What != ReplyPart::Kind::Literal; });
  const bool fixed = !form.empty() && form.front().What == ReplyPart::Kind::Literal;
  return form.size() >= kFewest && places && fixed ? form : ReplyForm();
}

// How the bytes of a command fill the places of its drawing; more than one way is none.
class Filling {
 public:
  Filling(const ReplyForm& form, const SentBytes& sent) : form_(form), sent_(sent) {
    const auto places = std::count_if(form.begin(), form.end(), [](const ReplyPart& part) {
      return part.What != ReplyPart::Kind::Literal;
    });
    if (places <= kMostPlaces && form.size() <= kMostParts) Try(0, 0);
  }

  // What was sent for the part of that name.
  std::optional<CodeBytes> Of(const std::u16string& name) const {
    if (ways_ != 1) return std::nullopt;
    for (std::size_t i = 0; i < form_.size(); ++i) {
      if (form_[i].Name != name || form_[i].What == ReplyPart::Kind::Literal) continue;
      CodeBytes bytes;
      for (std::size_t at = found_[i]; at < found_[i + 1]; ++at) bytes.push_back({sent_[at], ByteKind::ASC});
      return bytes;
    }
    return std::nullopt;
  }

 private:
  static constexpr std::size_t kMostParts = 16;
  static constexpr std::ptrdiff_t kMostPlaces = 6;

  void Try(std::size_t part, std::size_t at) {
    if (ways_ > 1) return;
    begins_[part] = at;
    if (part == form_.size()) {
      if (at != sent_.size()) return;
      ++ways_;
      found_ = begins_;
      return;
    }
    if (form_[part].What == ReplyPart::Kind::Literal) {
      const SentBytes literal = Values(form_[part].Bytes);
      const bool here =
          sent_.size() - at >= literal.size() &&
          std::equal(literal.begin(), literal.end(), sent_.begin() + static_cast<std::ptrdiff_t>(at));
      if (here) Try(part + 1, at + literal.size());
      return;
    }
    constexpr std::size_t kLongest = 4;
    for (std::size_t length = 1; length <= kLongest && at + length <= sent_.size(); ++length)
      Try(part + 1, at + length);
  }

  const ReplyForm& form_;
  const SentBytes& sent_;
  std::array<std::size_t, kMostParts + 1> begins_{};
  std::array<std::size_t, kMostParts + 1> found_{};
  int ways_ = 0;
};

bool InNumbers(const ReplyForm& form) {
  return std::all_of(form.begin(), form.end(), [](const ReplyPart& part) {
    return std::all_of(part.Bytes.begin(), part.Bytes.end(),
                       [](const CodeByte& byte) { return byte.Kind == ByteKind::HEX; });
  });
}

// "00" in an address reaches all; the answer carries the projector's own.
bool IsBroadcast(const CodeBytes& address) {
  return std::all_of(address.begin(), address.end(),
                     [](const CodeByte& byte) { return byte.Value == '0' || byte.Value == 0; });
}

std::optional<CodeBytes> Fill(const ReplyForm& form, const Filling& sent) {
  CodeBytes bytes;
  for (const ReplyPart& part : form) {
    if (part.What == ReplyPart::Kind::Literal) {
      bytes.insert(bytes.end(), part.Bytes.begin(), part.Bytes.end());
      continue;
    }
    auto known = part.What == ReplyPart::Kind::Varies ? std::nullopt : sent.Of(part.Name);
    if (known && part.What == ReplyPart::Kind::Address && IsBroadcast(*known))
      std::fill(known->begin(), known->end(), CodeByte{0, ByteKind::IGN});
    // Among numbers a place is one byte; among characters its width is open.
    if (!known && !InNumbers(form)) return std::nullopt;
    if (!known) known = CodeBytes{{0, ByteKind::IGN}};
    bytes.insert(bytes.end(), known->begin(), known->end());
  }
  return bytes.size() <= kLongestCode ? std::optional(bytes) : std::nullopt;
}

}  // namespace

std::optional<DrawnReply> FindDrawnReply(const ManualPage& page, const SentBytes& sent, std::size_t line) {
  constexpr std::size_t kReach = 12;
  std::optional<DrawnReply> found;
  const std::size_t bracket = page.Lines[line].find(u'[');
  const ReplyForm drawn = bracket == Text::npos ? ReplyForm() : ReadForm(page.Lines[line], bracket);
  const Filling filling(drawn, sent);
  for (std::size_t at = 0; at < page.Lines.size(); ++at) {
    const ReplyForm form = ReplyFormOn(page.Lines[at]);
    if (form.empty()) continue;
    // What a command's own drawing explains holds for it alone.
    if (!drawn.empty() && (at < line || at > line + kReach)) continue;
    const auto bytes = Fill(form, filling);
    if (!bytes) continue;
    if (found && !SameValues(found->Bytes, *bytes)) return std::nullopt;
    if (!found) found = DrawnReply{*bytes, {at, 0, page.Lines[at].size()}};
    if (!drawn.empty()) break;
  }
  return found;
}

}  // namespace qdm
