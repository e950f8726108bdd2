#include "projector_bench/code_check.h"

#include "base/words.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/command_pattern.h"
#include "projector_bench/stand_in.h"
#include "projectors/definition_setup.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace qdm {
namespace {

constexpr std::size_t kFewestOthers = 3;
constexpr std::uint8_t kCarriageReturn = 0x0D;
constexpr std::uint8_t kLineFeed = 0x0A;
constexpr std::uint8_t kStartOfText = 0x02;
constexpr std::uint8_t kEndOfText = 0x03;

struct Member {
  Slot Place;
  Bytes Data;
  bool Fixed;  // no byte of it varies
};

std::vector<Member> MembersOf(const ProjectorDefinition& projector) {
  std::vector<Member> members;
  for (const LineCommand& command : CommandsOnLine(projector)) {
    if (!command.InUse) continue;
    const SerialString& string = projector.Strings[command.Place];
    members.push_back({command.Place, BytesIn(string),
                       std::none_of(command.Pattern.begin(), command.Pattern.end(),
                                    [](const PatternByte& byte) { return byte.Any; })});
  }
  return members;
}

std::string NumberWord(std::size_t number) {
  constexpr std::array<std::string_view, 13> kWords = {
      Marked("no"),   Marked("one"),    Marked("two"),   Marked("three"), Marked("four"),
      Marked("five"), Marked("six"),    Marked("seven"), Marked("eight"), Marked("nine"),
      Marked("ten"),  Marked("eleven"), Marked("twelve")};
  return number < kWords.size() ? Say(kWords[number]) : std::to_string(number);
}

std::string Number(std::size_t number) { return std::to_string(number); }

std::string OddByteText(std::size_t at, ByteView data, std::uint8_t common, std::size_t others) {
  if (at + 1 == data.size()) {
    return Say("last byte is %1, the other %2 have %3",
               {HexByte(data[at]), NumberWord(others), HexByte(common)});
  }
  return Say("byte %1 is %2, the other %3 have %4",
             {Number(at + 1), HexByte(data[at]), NumberWord(others), HexByte(common)});
}

std::string WrongSumText(std::size_t at, ByteView data, ByteView sum, std::size_t others) {
  const std::string held = HexText(data.subspan(at, sum.size()));
  if (sum.size() > 1) {
    return Say("bytes %1 to %2 are %3, the other %4 make them %5",
               {Number(at + 1), Number(at + sum.size()), held, NumberWord(others), HexText(sum)});
  }
  if (at + 1 == data.size()) {
    return Say("last byte is %1, the other %2 make it %3", {held, NumberWord(others), HexText(sum)});
  }
  return Say("byte %1 is %2, the other %3 make it %4",
             {Number(at + 1), held, NumberWord(others), HexText(sum)});
}

SerialString WithBytes(const SerialString& string, std::size_t at, ByteView bytes) {
  SerialString changed = string;
  std::copy(bytes.begin(), bytes.end(), changed.Values.begin() + static_cast<std::ptrdiff_t>(at));
  return changed;
}

bool EndsWith(ByteView bytes, ByteView end) {
  return bytes.size() >= end.size() &&
         std::equal(end.begin(), end.end(), bytes.end() - static_cast<std::ptrdiff_t>(end.size()));
}

class Check {
 public:
  explicit Check(const ProjectorDefinition& projector)
      : projector_(projector), members_(MembersOf(projector)) {}

  CodeCheckResult Run() {
    FindCommonEnds();
    FindTerminators();
    FindSums();
    FindBlanks();
    FindSame();
    FindLongReplies();
    std::stable_sort(result_.Findings.begin(), result_.Findings.end(),
                     [](const CodeFinding& a, const CodeFinding& b) { return a.Place < b.Place; });
    return std::move(result_);
  }

 private:
  void Add(Slot place, CodeFault fault, const std::string& text,
           const std::optional<SerialString>& corrected = std::nullopt) {
    result_.Findings.push_back({place, fault, Say("%1: %2", {Say(NameOfSlot(place)), text}), corrected});
  }
  bool IsFlagged(Slot place) const {
    return std::any_of(result_.Findings.begin(), result_.Findings.end(),
                       [place](const CodeFinding& finding) { return finding.Place == place; });
  }

  void FindCommonEnds() {
    CodeFamily& family = result_.Family;
    for (const Member& member : members_) {
      family.Members.push_back(member.Place);
      if (family.Members.size() == 1) family.Head = family.Tail = member.Data;
      const auto head =
          std::mismatch(family.Head.begin(), family.Head.end(), member.Data.begin(), member.Data.end());
      family.Head.erase(head.first, family.Head.end());
      const auto tail =
          std::mismatch(family.Tail.rbegin(), family.Tail.rend(), member.Data.rbegin(), member.Data.rend());
      family.Tail.erase(family.Tail.begin(), tail.first.base());
    }
    if (members_.size() < 2) family.Head = family.Tail = {};
  }

  void FindTerminators() {
    const bool framed = std::all_of(members_.begin(), members_.end(),
                                    [](const Member& member) { return member.Data.front() == kStartOfText; });
    std::vector<Bytes> terminators = {{kCarriageReturn, kLineFeed}, {kCarriageReturn}, {kLineFeed}};
    if (framed) terminators.push_back({kEndOfText});
    for (const Bytes& terminator : terminators) {
      std::vector<const Member*> without;
      for (const Member& member : members_) {
        if (!EndsWith(member.Data, terminator)) without.push_back(&member);
      }
      const std::size_t with = members_.size() - without.size();
      if (without.empty()) return;
      if (with < kFewestOthers || without.size() > std::max<std::size_t>(1, members_.size() / 4)) continue;
      for (const Member* member : without) {
        Add(member->Place, CodeFault::Terminator,
            Say("does not end with %1, as the other %2 do", {HexText(terminator), NumberWord(with)}),
            Terminated(projector_.Strings[member->Place], terminator));
      }
      return;
    }
  }

  static std::optional<SerialString> Terminated(SerialString string, const Bytes& terminator) {
    while (string.Count > 0) {
      const std::uint8_t last = string.Values[string.BytesInUse() - 1];
      if (last != kCarriageReturn && last != kLineFeed) break;
      --string.Count;
    }
    for (const std::uint8_t byte : terminator) {
      if (string.BytesInUse() == kMaximumStringBytes) return std::nullopt;
      string.Values[string.BytesInUse()] = byte;
      string.Kinds[string.BytesInUse()] = static_cast<std::uint8_t>(ByteKind::CNT);
      ++string.Count;
    }
    return string;
  }

  // Where a command's text ends, before what closes it.
  static std::size_t TextEnd(const Member& member) {
    std::size_t end = member.Data.size();
    while (end > 0 && member.Data[end - 1] < ' ') --end;
    return end;
  }
  static bool IsText(const Member& member) {
    const auto closes = [](std::uint8_t byte) {
      return byte == kCarriageReturn || byte == kLineFeed || byte == kStartOfText || byte == kEndOfText;
    };
    return std::all_of(member.Data.begin(), member.Data.end(),
                       [&](std::uint8_t byte) { return (byte >= ' ' && byte <= '~') || closes(byte); });
  }

  // Only in a family of texts: elsewhere, and in a check sum, 20 is a value like any other.
  void FindBlanks() {
    if (result_.Family.Sum || members_.size() <= kFewestOthers ||
        !std::all_of(members_.begin(), members_.end(), IsText))
      return;
    std::vector<const Member*> blank;
    for (const Member& member : members_) {
      const std::size_t end = TextEnd(member);
      if (end > 1 && member.Data[end - 1] == ' ' && member.Fixed) blank.push_back(&member);
    }
    if (blank.size() * 4 > members_.size()) return;
    for (const Member* member : blank) {
      Add(member->Place, CodeFault::BlankAtEnd, Say("a blank stands at the end of the text"),
          WithoutBlanks(projector_.Strings[member->Place], TextEnd(*member)));
    }
  }

  static SerialString WithoutBlanks(SerialString string, std::size_t end) {
    std::size_t first = end;
    while (first > 0 && string.Values[first - 1] == ' ') --first;
    const auto close = [&](auto& bytes) {
      std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(end), bytes.end(),
                bytes.begin() + static_cast<std::ptrdiff_t>(first));
    };
    close(string.Values);
    close(string.Kinds);
    string.Count = static_cast<std::int16_t>(string.BytesInUse() - (end - first));
    return string;
  }

  void FindSums() {
    std::vector<const Member*> fixed;
    std::vector<Bytes> data;
    for (const Member& member : members_) {
      if (!member.Fixed) continue;
      fixed.push_back(&member);
      data.push_back(member.Data);
    }
    const auto found = FindSum(data);
    if (!found) return;
    result_.Family.Sum = found->Rule;
    result_.Family.Proven =
        static_cast<std::size_t>(std::count(found->Keeps.begin(), found->Keeps.end(), true));
    for (std::size_t i = 0; i < fixed.size(); ++i) {
      if (IsFlagged(fixed[i]->Place)) continue;
      if (AddOddByte(i, fixed, *found)) continue;
      if (!found->Keeps[i]) AddSum(*fixed[i], found->Rule);
    }
  }

  // A byte outside of the sum, or one that sets the sum right, which all the others have alike.
  bool AddOddByte(std::size_t index, const std::vector<const Member*>& fixed, const FoundSum& found) {
    const Bytes& data = fixed[index]->Data;
    for (std::size_t at = 0; at < data.size(); ++at) {
      const auto common = CommonByte(at, index, fixed);
      if (!common || *common == data[at]) continue;
      if (found.Keeps[index] && !StandsOutside(found.Rule, at, data.size())) continue;
      Bytes repaired = data;
      repaired[at] = *common;
      const auto parts = PartsOf(found.Rule, data.size());
      const auto sum = ComputedSum(found.Rule, repaired);
      if (!sum ||
          !std::equal(sum->begin(), sum->end(), repaired.begin() + static_cast<std::ptrdiff_t>(parts->SumAt)))
        continue;
      Add(fixed[index]->Place, CodeFault::CheckSum, OddByteText(at, data, *common, fixed.size() - 1),
          WithBytes(projector_.Strings[fixed[index]->Place], at, {&repaired[at], 1}));
      return true;
    }
    return false;
  }

  // Neither covered nor the sum.
  static bool StandsOutside(const SumRule& rule, std::size_t at, std::size_t length) {
    const auto parts = PartsOf(rule, length);
    const auto within = [at](std::size_t from, std::size_t to) { return at >= from && at < to; };
    return parts && !within(parts->CoverFrom, parts->CoverTo) &&
           !within(parts->SumAt, parts->SumAt + rule.Width());
  }

  // The byte that all the others of the same length have at that place.
  static std::optional<std::uint8_t> CommonByte(std::size_t at, std::size_t except,
                                                const std::vector<const Member*>& fixed) {
    if (fixed.size() <= kFewestOthers) return std::nullopt;
    std::optional<std::uint8_t> common;
    for (std::size_t i = 0; i < fixed.size(); ++i) {
      if (i == except) continue;
      const Bytes& data = fixed[i]->Data;
      if (data.size() != fixed[except]->Data.size() || (common && *common != data[at])) return std::nullopt;
      common = data[at];
    }
    return common;
  }

  void AddSum(const Member& member, const SumRule& rule) {
    const auto sum = ComputedSum(rule, member.Data);
    const std::size_t others = result_.Family.Proven;
    if (!sum) {
      return Add(member.Place, CodeFault::CheckSum,
                 Say("too short for the check sum that the other %1 have", {NumberWord(others)}));
    }
    const std::size_t at = PartsOf(rule, member.Data.size())->SumAt;
    Add(member.Place, CodeFault::CheckSum, WrongSumText(at, member.Data, *sum, others),
        WithBytes(projector_.Strings[member.Place], at, *sum));
  }

  void FindSame() {
    constexpr std::array<std::pair<Slot, Slot>, 3> kOnAndOff = {{{kPowerOnSlot, kPowerOffSlot},
                                                                 {kBlankSlot, kBlankOffSlot},
                                                                 {kSerialEnableSlot, kSerialDisableSlot}}};
    for (auto later = members_.begin(); later != members_.end(); ++later) {
      // A level says by itself whether it goes up or down.
      const auto same = std::find_if(members_.begin(), later, [&](const Member& member) {
        return member.Data == later->Data && member.Fixed && later->Fixed;
      });
      if (same == later) continue;
      const bool onAndOff = std::find(kOnAndOff.begin(), kOnAndOff.end(),
                                      std::pair(same->Place, later->Place)) != kOnAndOff.end();
      Add(later->Place, onAndOff ? CodeFault::SameOnAndOff : CodeFault::SameCommand,
          Say("the same as %1", {Say(NameOfSlot(same->Place))}));
    }
  }

  void FindLongReplies() {
    const SlotSet shown = ShownSlots(projector_);
    for (const SlotFacts& slot : kSlots) {
      if (slot.Role != SlotRole::Reply || !shown[slot.Place]) continue;
      const std::size_t length = projector_.Strings[slot.Place].BytesInUse();
      if (length < kMaximumStringBytes) continue;
      Add(slot.Place, CodeFault::LongReply,
          Say("a reply of %1 bytes is longer than can be waited for (%2)",
              {Number(length), Number(kMaximumStringBytes - 1)}));
    }
  }

  const ProjectorDefinition& projector_;
  const std::vector<Member> members_;
  CodeCheckResult result_;
};

// What the sum is over.
std::string RangeText(const SumRule& rule) {
  const std::string start = Number(rule.Start + 1);
  const std::string last = NumberWord(rule.Uncovered);
  if (rule.InFront) {
    return rule.Uncovered > 0 ? Say("the bytes behind it without the last %1", {last})
                              : Say("the bytes behind it");
  }
  if (rule.Start > 0) {
    return rule.Uncovered > 0 ? Say("the bytes before it from byte %1 on without the last %2", {start, last})
                              : Say("the bytes before it from byte %1 on", {start});
  }
  return rule.Uncovered > 0 ? Say("the bytes before it without the last %1", {last})
                            : Say("the bytes before it");
}

std::string SumPlaceText(const SumRule& rule) {
  const std::size_t width = rule.Width();
  const std::string bytes = NumberWord(width);
  const std::string behind = NumberWord(rule.Place);
  if (rule.InFront) {
    return width == 1 ? Say("byte %1", {Number(rule.Place + 1)})
                      : Say("bytes %1 to %2", {Number(rule.Place + 1), Number(rule.Place + width)});
  }
  if (rule.Place == 0) return width == 1 ? Say("the last byte") : Say("the last %1 bytes", {bytes});
  if (rule.Place == 1) {
    return width == 1 ? Say("the byte before the last one")
                      : Say("the %1 bytes before the last one", {bytes});
  }
  return width == 1 ? Say("the byte before the last %1", {behind})
                    : Say("the %1 bytes before the last %2", {bytes, behind});
}

}  // namespace

CodeCheckResult CheckCodes(const ProjectorDefinition& projector) { return Check(projector).Run(); }

std::vector<std::string> FamilyText(const CodeFamily& family) {
  std::vector<std::string> sentences;
  const std::string all = NumberWord(family.Members.size());
  if (!family.Head.empty()) {
    sentences.push_back(Say("All %1 commands begin with %2.", {all, HexText(family.Head)}));
  }
  if (!family.Tail.empty()) {
    sentences.push_back(Say("All %1 commands end with %2.", {all, HexText(family.Tail)}));
  }
  if (!family.Sum) return sentences;
  const SumRule& rule = *family.Sum;
  std::string covered = RangeText(rule);
  if (const std::string form = rule.Form.Name(); !form.empty()) covered += ", " + form;
  sentences.push_back(Say(rule.Width() == 1
                              ? Marked("In each command %1 is the %2 of %3; %4 commands prove it.")
                              : Marked("In each command %1 are the %2 of %3; %4 commands prove it."),
                          {SumPlaceText(rule), rule.Method.Name(), covered, NumberWord(family.Proven)}));
  return sentences;
}

std::optional<SerialString> WithSum(const SerialString& string, const SumRule& rule) {
  const ByteView bytes = ByteView(string.Values).first(string.BytesInUse());
  const auto sum = ComputedSum(rule, bytes);
  if (!sum) return std::nullopt;
  return WithBytes(string, PartsOf(rule, bytes.size())->SumAt, *sum);
}

}  // namespace qdm
