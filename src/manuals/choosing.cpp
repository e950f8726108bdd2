#include "manuals/choosing.h"

#include "base/code_page.h"
#include "manuals/check_sums.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

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
  std::string how = code.How == Notation::Hexadecimal ? "hexadecimal" : "characters";
  if (code.Confirmed) how = "characters and hexadecimal";
  if (code.Composed) how += ", put together";
  if (code.Computed) how += ", check sum computed";
  if (code.Proven && !code.Computed) how += ", check sum right";
  if (code.Repaired) how += ", letter O read as 0";
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
    if (!findings[i].What.Framed) rank += 5;
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
    chosen.Doubt = "the page gives more than one command for it";
  } else if (!best.Settled) {
    chosen.Doubt = best.Doubt;
  } else if (!best.What.Framed) {
    chosen.Doubt = "how the command ends is not said";
  } else if (TooShort(best.What)) {
    chosen.Doubt = "it could be a part of the command";
  } else if (best.What.Wrapped && !best.What.Proven && !best.What.Confirmed) {
    chosen.Doubt = "the command runs over several lines";
  } else if (best.What.Assembled) {
    chosen.Doubt = "it is put together from columns of the page";
  } else if (best.What.Computed) {
    chosen.Doubt = "its check sum is not printed but computed";
  } else if (best.What.Open) {
    chosen.Doubt = "it holds the projector's number or another value to choose";
  } else if (!OfTheFamily(best, findings)) {
    chosen.Doubt = "it does not look like the other commands of the page";
  } else if (!best.For.Plain) {
    chosen.Doubt = "the label could mean something else";
  } else if (best.For.Confirms) {
    chosen.Doubt = "it asks before it switches off";
  } else if (best.What.Repaired && !best.What.Confirmed && !best.What.Proven) {
    chosen.Doubt = "a letter O was read as 0";
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
        slot.Doubt = "another function has the same command";
      }
    }
  }
}

ManualSlot* SlotIn(ManualReading& reading, int slot) {
  const auto found = std::find_if(reading.Slots.begin(), reading.Slots.end(),
                                  [slot](const ManualSlot& known) { return known.Slot == slot; });
  return found == reading.Slots.end() ? nullptr : &*found;
}

// A table may have swapped what the page says in words: "0 is off and 1 is on".
void HeedStatedValues(const ManualPage& page, int on, int off, ManualReading& reading) {
  ManualSlot* const first = SlotIn(reading, on);
  ManualSlot* const second = SlotIn(reading, off);
  if (!first || !second) return;
  const SerialString& onString = reading.Commands[first->Choice].String;
  const SerialString& offString = reading.Commands[second->Choice].String;
  if (onString.Count != offString.Count) return;
  const auto differs =
      std::mismatch(onString.Values.begin(), onString.Values.end(), offString.Values.begin());
  if (differs.first == onString.Values.end() || *differs.first != '0' || *differs.second != '1') return;
  for (const std::u16string_view stated :
       {u"0 is off", u"1 is on", u"0 = off", u"1 = on", u"0=off", u"1=on"}) {
    const std::size_t at = page.Folded.find(stated);
    if (at == std::u16string::npos || (at > 0 && IsWordPart(page.Folded[at - 1]))) continue;
    if (IsWordPart(page.Folded[at + stated.size()])) continue;  // all lines end with a line feed
    std::swap(first->Choice, second->Choice);
    first->Sure = second->Sure = false;
    first->Doubt = second->Doubt = "the table and the text of the page contradict each other";
    return;
  }
}

}  // namespace

namespace {

// An input that has only a number on the page: its kind as a word in the characters of its command names it.
Function ByCharacters(const Finding& finding) {
  Function function = finding.For;
  if (function.What != Subject::Input || function.Number == 0) return function;
  std::u16string characters;
  for (const CodeByte& byte : finding.What.Bytes) {
    const bool printed = byte.Value > 0x20 && byte.Value < 0x7F;
    characters += printed ? static_cast<char16_t>(byte.Value) : u' ';
  }
  for (std::size_t from = 0; from < characters.size(); ++from) {
    if (!IsLetter(characters[from])) continue;
    std::size_t to = from;
    while (to < characters.size() && (IsWordPart(characters[to]))) ++to;
    const std::u16string_view word = std::u16string_view(characters).substr(from, to - from);
    Function named = ClassifyLabel(word);
    if (!SlotOf(named)) named = ClassifyLabel(word.substr(1));  // "IRGB"
    from = to;
    if (!SlotOf(named) || named.To != State::None) continue;
    function.What = named.What;
    const char16_t last = characters[characters.find_last_not_of(u' ')];
    function.Number = last >= u'1' && last <= u'9' ? last - u'0' : 0;
    function.Plain = false;
    ++function.Unknown;
    break;
  }
  return function;
}

// "Input 2 (Video)", "Input 4 (Video)": inputs that only their sockets number are counted within their kind.
void CountChannels(std::vector<Finding>& findings) {
  std::map<Subject, std::set<int>> channels;
  for (const Finding& finding : findings) {
    if (finding.For.Channel > 0 && finding.For.Number == 0)
      channels[finding.For.What].insert(finding.For.Channel);
  }
  for (Finding& finding : findings) {
    if (finding.For.Channel == 0 || finding.For.Number > 0) continue;
    const std::set<int>& known = channels[finding.For.What];
    finding.For.Number = 1 + static_cast<int>(std::distance(known.begin(), known.find(finding.For.Channel)));
  }
}

// "Mute picture" beside "Unmute picture" is the state that the other ends.
void CompletePairs(std::vector<Finding>& findings) {
  const auto has = [&](int slot) {
    return std::any_of(findings.begin(), findings.end(),
                       [slot](const Finding& finding) { return SlotOf(finding.For) == slot; });
  };
  if (!has(kBlankOffSlot) || has(kBlankOnSlot)) return;
  for (Finding& finding : findings) {
    if (finding.For.What != Subject::Blank || finding.For.To != State::None || finding.For.Both) continue;
    finding.For.To = State::On;
    finding.For.Plain = false;
  }
}

// Where most codes end with their check sum, one that does not is misprinted or only a part.
void HeedCheckSums(std::vector<Finding>& findings) {
  constexpr std::size_t kFewest = 3;
  for (const CheckSum check : kCheckSums) {
    std::vector<bool> right;
    std::size_t counted = 0;
    std::size_t passed = 0;
    for (const Finding& finding : findings) {
      const std::vector<std::uint8_t> values = Values(finding.What.Bytes);
      right.push_back(IsRight(check, values));
      if (finding.What.How != Notation::Hexadecimal || values.size() < 4) continue;
      ++counted;
      if (right.back()) ++passed;
    }
    if (passed < kFewest || passed * 10 < counted * 6) continue;
    for (std::size_t i = 0; i < findings.size(); ++i) {
      Finding& finding = findings[i];
      if (finding.What.How != Notation::Hexadecimal) continue;
      finding.What.Proven = right[i];
      if (right[i]) continue;
      finding.Settled = false;
      finding.Doubt = "its check sum is wrong";
    }
    return;
  }
}

// Pairs of digits alone on a page that speaks of decimal numbers.
void DoubtDecimals(const ManualPage& page, std::vector<Finding>& findings) {
  bool decimal = false;
  for (const std::u16string_view word : {u"decimal", u"dezimal", u"十进制"}) {
    for (std::size_t at = page.Folded.find(word); at != std::u16string::npos;
         at = page.Folded.find(word, at + 1)) {
      const std::u16string_view before = std::u16string_view(page.Folded).substr(at < 4 ? 0 : at - 4, 4);
      decimal |= before.find(u"hexa") == std::u16string_view::npos;
    }
  }
  if (!decimal) return;
  const bool alone = page.Folded.find(u"hex") == std::u16string::npos;
  const auto decimalDigits = [](const Finding& finding) {
    return std::all_of(finding.What.Bytes.begin(), finding.What.Bytes.end(),
                       [](const CodeByte& byte) { return byte.Value < 0x9A && (byte.Value & 0x0F) < 10; });
  };
  for (Finding& finding : findings) {
    if (finding.What.How != Notation::Hexadecimal || finding.What.Marked || !decimalDigits(finding)) continue;
    for (CodeByte& byte : finding.What.Bytes) {
      const int digits = (byte.Value >> 4) * 10 + (byte.Value & 0x0F);
      if (alone) byte.Value = static_cast<std::uint8_t>(digits);
    }
    finding.Settled = false;
    finding.Doubt = alone ? "the numbers are read as decimal" : "the numbers could be decimal";
  }
}

// Many numbers without a label: the page is torn, and what has a label may be a part only.
void DoubtTornPages(std::vector<Finding>& findings) {
  std::size_t labelled = 0;
  std::size_t orphans = 0;
  const auto counts = [](const Finding& finding) {
    return finding.What.How == Notation::Hexadecimal && !finding.What.Proven;
  };
  for (const Finding& finding : findings) {
    if (counts(finding)) ++(finding.Label.empty() ? orphans : labelled);
  }
  if (orphans * 3 < labelled || orphans == 0) return;
  for (Finding& finding : findings) {
    if (!counts(finding) || finding.What.Confirmed) continue;
    finding.Settled = false;
    finding.Doubt = "many bytes on the page have no label: it may be only a part of the command";
  }
}

}  // namespace

void ChooseCommands(const ManualPage& page, std::vector<Finding> findings, ManualReading& reading) {
  for (Finding& finding : findings) finding.For = ByCharacters(finding);
  CountChannels(findings);
  CompletePairs(findings);
  DoubtTornPages(findings);
  HeedCheckSums(findings);
  DoubtDecimals(page, findings);
  for (const Finding& finding : findings) {
    ManualCommand command;
    command.Function = TextOf(page, finding.Label);
    command.ReadAs = HowRead(finding.What);
    command.String = SerialStringOf(finding.What.Bytes);
    command.CodeRanges = RangesOf(page, finding.What.Where);
    command.LabelRanges = RangesOf(page, finding.Label);
    if (Usable(finding)) command.Slot = SlotOf(finding.For);
    reading.Commands.push_back(std::move(command));
  }
  for (const int slot : kManualSlots) ChooseFor(slot, findings, reading);
  HeedStatedValues(page, kPowerOnSlot, kPowerOffSlot, reading);
  DoubtTwins(reading);
}

}  // namespace qdm
