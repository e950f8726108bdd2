#include "projector_bench/code_check.h"

#include "projector_bench/bench_line.h"
#include "projector_bench/command_pattern.h"
#include "projector_bench/stand_in.h"
#include "projectors/definition_setup.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <array>
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
  constexpr std::array<std::string_view, 13> kWords = {"no",   "one",    "two",   "three", "four",
                                                       "five", "six",    "seven", "eight", "nine",
                                                       "ten",  "eleven", "twelve"};
  return number < kWords.size() ? std::string(kWords[number]) : std::to_string(number);
}

std::string OthersWord(std::size_t others) { return "the other " + NumberWord(others); }

// "last byte is", "byte 3 is", "bytes 4 to 5 are".
std::string PlaceText(std::size_t at, std::size_t width, std::size_t length) {
  if (width > 1) return "bytes " + std::to_string(at + 1) + " to " + std::to_string(at + width) + " are";
  return at + 1 == length ? "last byte is" : "byte " + std::to_string(at + 1) + " is";
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
    result_.Findings.push_back({place, fault, std::string(NameOfSlot(place)) + ": " + text, corrected});
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
            "does not end with " + HexText(terminator) + ", as " + OthersWord(with) + " do",
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
      Add(member->Place, CodeFault::BlankAtEnd, "a blank stands at the end of the text",
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
      Add(fixed[index]->Place, CodeFault::CheckSum,
          PlaceText(at, 1, data.size()) + " " + HexByte(data[at]) + ", " + OthersWord(fixed.size() - 1) +
              " have " + HexByte(*common),
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
                 "too short for the check sum that " + OthersWord(others) + " have");
    }
    const std::size_t at = PartsOf(rule, member.Data.size())->SumAt;
    const std::string them = sum->size() > 1 ? " make them " : " make it ";
    Add(member.Place, CodeFault::CheckSum,
        PlaceText(at, sum->size(), member.Data.size()) + " " +
            HexText(ByteView(member.Data).subspan(at, sum->size())) + ", " + OthersWord(others) + them +
            HexText(*sum),
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
          "the same as " + std::string(NameOfSlot(same->Place)));
    }
  }

  void FindLongReplies() {
    const SlotSet shown = ShownSlots(projector_);
    for (const SlotFacts& slot : kSlots) {
      if (slot.Role != SlotRole::Reply || !shown[slot.Place]) continue;
      const std::size_t length = projector_.Strings[slot.Place].BytesInUse();
      if (length < kMaximumStringBytes) continue;
      Add(slot.Place, CodeFault::LongReply,
          "a reply of " + std::to_string(length) + " bytes is longer than can be waited for (" +
              std::to_string(kMaximumStringBytes - 1) + ")");
    }
  }

  const ProjectorDefinition& projector_;
  const std::vector<Member> members_;
  CodeCheckResult result_;
};

std::string RangeText(const SumRule& rule) {
  std::string text = rule.InFront ? "the bytes behind it" : "the bytes before it";
  if (!rule.InFront && rule.Start > 0) text += " from byte " + std::to_string(rule.Start + 1) + " on";
  if (rule.Uncovered > 0) text += " without the last " + NumberWord(rule.Uncovered);
  return text;
}

std::string SumPlaceText(const SumRule& rule) {
  const std::size_t width = rule.Width();
  const std::string bytes = width == 1 ? "byte" : NumberWord(width) + " bytes";
  if (rule.InFront) {
    return width == 1
               ? "byte " + std::to_string(rule.Place + 1)
               : "bytes " + std::to_string(rule.Place + 1) + " to " + std::to_string(rule.Place + width);
  }
  if (rule.Place == 0) return "the last " + bytes;
  return "the " + bytes + " before the last " + (rule.Place == 1 ? "one" : NumberWord(rule.Place));
}

}  // namespace

CodeCheckResult CheckCodes(const ProjectorDefinition& projector) { return Check(projector).Run(); }

std::vector<std::string> FamilyText(const CodeFamily& family) {
  std::vector<std::string> sentences;
  const std::string all = "All " + NumberWord(family.Members.size()) + " commands ";
  if (!family.Head.empty()) sentences.push_back(all + "begin with " + HexText(family.Head) + ".");
  if (!family.Tail.empty()) sentences.push_back(all + "end with " + HexText(family.Tail) + ".");
  if (!family.Sum) return sentences;
  const SumRule& rule = *family.Sum;
  const std::string form = rule.Form.Name();
  sentences.push_back("In each command " + SumPlaceText(rule) +
                      (rule.Width() == 1 ? " is the " : " are the ") + rule.Method.Name() + " of " +
                      RangeText(rule) + (form.empty() ? "" : ", " + form) + "; " + NumberWord(family.Proven) +
                      " commands prove it.");
  return sentences;
}

std::optional<SerialString> WithSum(const SerialString& string, const SumRule& rule) {
  const ByteView bytes = ByteView(string.Values).first(string.BytesInUse());
  const auto sum = ComputedSum(rule, bytes);
  if (!sum) return std::nullopt;
  return WithBytes(string, PartsOf(rule, bytes.size())->SumAt, *sum);
}

}  // namespace qdm
