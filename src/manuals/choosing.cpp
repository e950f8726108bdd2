#include "manuals/choosing.h"

#include "base/code_page.h"
#include "base/words.h"
#include "manuals/completing.h"
#include "manuals/doubts.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {
namespace {

std::vector<ManualRange> RangesOf(const ManualPage& page, const std::vector<Span>& spans) {
  std::vector<ManualRange> ranges;
  ranges.reserve(spans.size());
  for (const Span& span : spans) ranges.push_back({page.Numbers[span.Line], span.From, span.To});
  return ranges;
}

std::string TextOf(const ManualPage& page, const std::vector<Span>& spans) {
  std::u16string text;
  for (const Span& span : spans) {
    if (!text.empty()) text += u' ';
    text += page.At(span);
  }
  return ToUtf8(text);
}

std::string HowRead(const Code& code) {
  std::string how = code.Confirmed                      ? Marked("characters and hexadecimal")
                    : code.How == Notation::Hexadecimal ? Marked("hexadecimal")
                                                        : Marked("characters");
  const auto remark = [&how](const char* what) { how.append(", ").append(what); };
  if (code.Composed) remark(Marked("put together"));
  if (code.Computed) remark(Marked("check sum computed"));
  if (code.Proven && !code.Computed) remark(Marked("check sum right"));
  if (code.Repaired) remark(Marked("letter O read as 0"));
  return how;
}

// The lower, the better for the slot.
int RankFor(int slot, const Function& function) {
  int rank = function.Plain ? 0 : 2 + static_cast<int>(function.Unknown);
  switch (slot) {
    case kPowerOffSlot:
      rank += function.Confirms ? 20 : function.AtOnce ? -3 : 0;
      break;
    case kDataSlot:
      rank += function.Number > 1 ? 8 : function.Number == 1 ? 0 : 1;
      if (function.DigitalSide) rank += 6;
      break;
    case kSecondDataSlot:
      if (function.What == Subject::Computer)
        rank += std::max(0, function.Number - 2) + (function.DigitalSide ? 1 : 0);
      if (function.AlsoComponent) rank += 4;
      if (function.What == Subject::Digital) rank += 10 + function.Number;
      break;
    case kVideoSlot:
      rank += function.Number;
      break;
    case kSecondVideoSlot:
      if (function.What == Subject::Video) rank += 8 + function.Number;
      break;
    default:
      break;
  }
  return rank;
}

struct Candidate {
  std::size_t Command;
  int Rank;
};

bool Usable(const Finding& finding) {
  return !finding.What.Broken && !finding.What.Bytes.empty() && finding.What.Bytes.size() <= kLongestCode;
}

// Commands of one page look alike: most begin or end with the same byte, or have the same length.
bool OfTheFamily(const Finding& best, const std::vector<Finding>& findings) {
  const CodeBytes& bytes = best.What.Bytes;
  std::size_t alike = 0;
  std::size_t others = 0;
  for (const Finding& other : findings) {
    if (&other == &best || !Usable(other) || SameValues(other.What.Bytes, bytes)) continue;
    ++others;
    const bool begin = other.What.Bytes.front().Value == bytes.front().Value;
    const bool end = other.What.Bytes.back().Value == bytes.back().Value;
    const bool length = other.What.Bytes.size() == bytes.size();
    if (length || begin || (end && bytes.back().Value < 0x20)) ++alike;
  }
  return others == 0 || alike * 3 >= others * 2;
}

// Few bytes in numbers that nothing closes or repeats.
bool TooShort(const Code& code) {
  constexpr std::size_t kShortest = 4;
  const bool digits = std::all_of(code.Bytes.begin(), code.Bytes.end(), [](const CodeByte& byte) {
    return byte.Value < 0x20 || (byte.Value >= '0' && byte.Value <= '9');
  });
  if (code.How == Notation::Characters && digits && !code.Confirmed) return true;
  return code.How == Notation::Hexadecimal && code.Bytes.size() < kShortest && !code.Confirmed &&
         !code.Composed;
}

void ChooseFor(int slot, const std::vector<Finding>& findings, ManualReading& reading) {
  std::vector<Candidate> candidates;
  for (std::size_t i = 0; i < findings.size(); ++i) {
    if (SlotOf(findings[i].For) != slot || !Usable(findings[i])) continue;
    int rank = RankFor(slot, findings[i].For) + (findings[i].Settled ? 0 : 4);
    if (!findings[i].What.Framed || TooShort(findings[i].What)) rank += 5;
    candidates.push_back({i, rank});
  }
  if (candidates.empty()) return;
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.Rank < b.Rank; });
  ManualSlot chosen;
  chosen.Slot = slot;
  chosen.Choice = candidates.front().Command;
  const Finding& best = findings[chosen.Choice];
  bool rival = false;
  for (const Candidate& other : candidates) {
    constexpr std::size_t kMostAlternatives = 12;
    if (chosen.Alternatives.size() == kMostAlternatives) break;
    if (SameValues(findings[other.Command].What.Bytes, best.What.Bytes)) continue;
    const auto same = [&](std::size_t known) {
      return SameValues(findings[known].What.Bytes, findings[other.Command].What.Bytes);
    };
    if (std::any_of(chosen.Alternatives.begin(), chosen.Alternatives.end(), same)) continue;
    chosen.Alternatives.push_back(other.Command);
    rival |= other.Rank <= candidates.front().Rank + 1;
  }
  if (rival) {
    chosen.Doubt = Marked("the page gives more than one command for it");
  } else if (!best.Settled) {
    chosen.Doubt = best.Doubt;
  } else if (!best.What.Framed) {
    chosen.Doubt = Marked("how the command ends is not said");
  } else if (TooShort(best.What)) {
    chosen.Doubt = Marked("it could be a part of the command");
  } else if (best.What.Wrapped && !best.What.Proven && !best.What.Confirmed) {
    chosen.Doubt = Marked("the command runs over several lines");
  } else if (best.What.Assembled) {
    chosen.Doubt = Marked("it is put together from columns of the page");
  } else if (best.What.Computed) {
    chosen.Doubt = Marked("its check sum is not printed but computed");
  } else if (best.What.Gapped && !best.What.Proven && !best.What.Confirmed) {
    chosen.Doubt = Marked("its bytes stand in several columns");
  } else if (best.What.Beside) {
    chosen.Doubt = Marked("what stands beside it could belong to it");
  } else if (best.What.Open) {
    chosen.Doubt = Marked("it holds the projector's number or another value to choose");
  } else if (!OfTheFamily(best, findings)) {
    chosen.Doubt = Marked("it does not look like the other commands of the page");
  } else if (!best.For.Plain) {
    chosen.Doubt = Marked("the label could mean something else");
  } else if (best.For.Confirms) {
    chosen.Doubt = Marked("it asks before it switches off");
  } else if (best.What.Repaired && !best.What.Confirmed && !best.What.Proven) {
    chosen.Doubt = Marked("a letter O was read as 0");
  }
  chosen.Sure = chosen.Doubt.empty();
  reading.Slots.push_back(std::move(chosen));
}

// The same bytes for two functions: one of the two is wrong.
void DoubtTwins(ManualReading& reading) {
  for (ManualSlot& slot : reading.Slots) {
    for (const ManualSlot& other : reading.Slots) {
      if (other.Slot == slot.Slot) continue;
      if (reading.Commands[other.Choice].String.Values == reading.Commands[slot.Choice].String.Values) {
        slot.Sure = false;
        slot.Doubt = Marked("another function has the same command");
      }
    }
  }
}

ManualSlot* SlotIn(ManualReading& reading, int slot) {
  const auto found = std::find_if(reading.Slots.begin(), reading.Slots.end(),
                                  [slot](const ManualSlot& known) { return known.Slot == slot; });
  return found == reading.Slots.end() ? nullptr : &*found;
}

// Whether two commands differ first in a single digit, 0 in the one for "on": 1 is on nearly everywhere.
bool LookSwapped(const SerialString& on, const SerialString& off) {
  if (on.Count != off.Count) return false;
  const auto differs = std::mismatch(on.Values.begin(), on.Values.end(), off.Values.begin());
  if (differs.first == on.Values.end() || *differs.first != '0' || *differs.second != '1') return false;
  if (differs.first == on.Values.begin()) return true;
  const auto before = static_cast<char16_t>(*std::prev(differs.first));
  return HexDigit(before) < 0 || before > u'9';
}

bool States(const ManualPage& page, std::initializer_list<std::u16string_view> sentences) {
  return std::any_of(sentences.begin(), sentences.end(), [&](std::u16string_view stated) {
    const std::size_t at = page.Folded.find(stated);
    return at != std::u16string::npos && (at == 0 || !IsWordPart(page.Folded[at - 1])) &&
           !IsWordPart(page.Folded[at + stated.size()]);  // all lines end with a line feed
  });
}

// A table may have swapped what the page says in words: "0 is off and 1 is on".
void HeedStatedValues(const ManualPage& page, int on, int off, ManualReading& reading) {
  ManualSlot* const first = SlotIn(reading, on);
  ManualSlot* const second = SlotIn(reading, off);
  if (!first || !second) return;
  if (!LookSwapped(reading.Commands[first->Choice].String, reading.Commands[second->Choice].String)) return;
  const bool stated =
      States(page, {u"0 is off", u"1 is on", u"0 = off", u"1 = on", u"0=off", u"1=on", u"0: off", u"1: on"});
  if (stated && on == kPowerOnSlot) std::swap(first->Choice, second->Choice);
  first->Sure = second->Sure = false;
  first->Doubt = second->Doubt = stated ? Marked("the table and the text of the page contradict each other")
                                        : Marked("on and off could be swapped: 1 is on nearly everywhere");
}

}  // namespace

void ChooseCommands(const ManualPage& page, std::vector<Finding> findings, ManualReading& reading) {
  CompleteFunctions(findings);
  DoubtFindings(page, findings);
  for (const Finding& finding : findings) {
    ManualCommand command;
    command.Function = TextOf(page, finding.Label);
    command.ReadAs = HowRead(finding.What);
    command.String = SerialStringOf(finding.What.Bytes);
    command.CodeRanges = RangesOf(page, finding.What.Where);
    command.Answer = SerialStringOf(finding.What.Answer);
    command.AnswerRanges = RangesOf(page, finding.What.AnswerAt);
    command.AnswerWhole = !finding.What.Composed;
    command.LabelRanges = RangesOf(page, finding.Label);
    if (Usable(finding)) command.Slot = SlotOf(finding.For);
    reading.Commands.push_back(std::move(command));
  }
  for (const int slot : kManualSlots) ChooseFor(slot, findings, reading);
  HeedStatedValues(page, kPowerOnSlot, kPowerOffSlot, reading);
  HeedStatedValues(page, kBlankOnSlot, kBlankOffSlot, reading);
  DoubtTwins(reading);
}

}  // namespace qdm
