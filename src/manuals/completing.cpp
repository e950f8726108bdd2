#include "manuals/completing.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace qdm {
namespace {

// The words that the characters of a command are made of: "POWER ON" for "POWER=ON<CR>".
std::u16string WordsOf(const CodeBytes& bytes) {
  std::u16string words;
  for (const CodeByte& byte : bytes) {
    const auto c = static_cast<char16_t>(byte.Value);
    words += byte.Value < 0x7F && IsWordPart(c) ? c : byte.Value == '?' || byte.Value == '-' ? c : u' ';
  }
  return words;
}

// "IVED", "VID": the input whose name holds all these letters.
Function NamedByLetters(std::u16string_view word) {
  constexpr std::u16string_view kInputs[] = {u"video", u"svideo", u"rgb", u"hdmi", u"component"};
  constexpr std::size_t kFewest = 3;
  const std::u16string folded = FoldLetters(word);
  for (const std::u16string_view input : kInputs) {
    const bool within = folded.find_first_not_of(input) == std::u16string::npos;
    if (folded.size() >= kFewest && within && folded[0] == input[0]) return ClassifyLabel(input);
  }
  return {};
}

Function NamedByWord(std::u16string_view word) {
  std::size_t letters = 0;
  while (letters < word.size() && IsLetter(word[letters])) ++letters;
  const Function named = ClassifyLabel(word);
  if (SlotOf(named) || letters < 2) return named;
  const Function inside = ClassifyLabel(word.substr(1));  // "IRGB"
  if (SlotOf(inside)) return inside;
  const Function shortened = NamedByLetters(word.substr(0, letters));
  return SlotOf(shortened) ? shortened : NamedByLetters(word.substr(1, letters - 1));
}

// An input that has only a number on the page: its kind as a word in the characters of its command names it.
void NameInput(Finding& finding) {
  Function& function = finding.For;
  if (function.What != Subject::Input || function.Number == 0) return;
  const std::u16string words = WordsOf(finding.What.Bytes);
  for (std::size_t from = 0; from < words.size(); ++from) {
    if (!IsLetter(words[from])) continue;
    std::size_t to = from;
    while (to < words.size() && IsWordPart(words[to])) ++to;
    const Function named = NamedByWord(std::u16string_view(words).substr(from, to - from));
    from = to;
    if (!SlotOf(named) || named.To != State::None) continue;
    function.What = named.What;
    const char16_t last = words[words.find_last_not_of(u' ')];
    function.Number = last >= u'1' && last <= u'9' ? last - u'0' : 0;
    function.Plain = false;
    ++function.Unknown;
    return;
  }
}

// "GET POWER", "PWR?"
bool IsQuery(std::u16string_view words) {
  while (!words.empty() && words.back() == u' ') words.remove_suffix(1);
  while (!words.empty() && words.front() == u' ') words.remove_prefix(1);
  const std::u16string first = FoldLetters(words.substr(0, words.find(u' ')));
  return (!words.empty() && words.back() == u'?') || first == u"get" || first == u"read" ||
         first == u"query" || first == u"ask";
}

bool IsOnOrOff(State state) { return state == State::On || state == State::Off; }

bool IsInput(Subject subject) {
  return subject == Subject::Computer || subject == Subject::Digital || subject == Subject::Video ||
         subject == Subject::SVideo || subject == Subject::Component;
}

// What the characters of a command spell out: it completes a label that says less, stands for one that is
// lost, and makes one doubtful that says something else.
void HeedCharacters(Finding& finding) {
  if (finding.What.How != Notation::Characters && !finding.What.Confirmed) return;
  const std::u16string words = WordsOf(finding.What.Bytes);
  const Function spelt = ClassifyLabel(words);
  if (IsQuery(words)) {
    finding.For.What = Subject::Other;
    return;
  }
  Function& function = finding.For;
  const auto doubt = [&](const char* why) {
    function.Plain = false;
    ++function.Unknown;
    finding.Settled = false;
    finding.Doubt = why;
  };
  const bool silent = function.What == Subject::None && function.To == State::None;
  // A label of another row is a guess.
  const bool guessed = !finding.Settled && !SlotOf(function) && !finding.Label.empty() &&
                       finding.Label.back().Line != finding.What.Begin().Line;
  if ((silent || guessed) && SlotOf(spelt)) {
    function = spelt;
    doubt("only its own characters name its function");
  } else if (!SlotOf(function) && IsOnOrOff(spelt.To) && function.To == State::None &&
             (function.What == Subject::Power || function.What == Subject::Blank)) {
    // What else it spells out is another function's, whose label is lost.
    if (spelt.What != function.What && SlotOf(spelt)) function = spelt;
    function.To = spelt.To;
    function.Both = false;
    doubt("only its own characters say on or off");
  } else if (SlotOf(function)) {
    const bool otherState = IsOnOrOff(function.To) && IsOnOrOff(spelt.To) && function.To != spelt.To &&
                            (spelt.What == Subject::None || function.What == spelt.What);
    const bool otherInput = IsInput(function.What) && IsInput(spelt.What) && SlotOf(spelt) &&
                            function.What != spelt.What && function.What != Subject::Component;
    const bool sound = function.What == Subject::Blank && spelt.What == Subject::Sound;
    if (otherState || otherInput || sound) doubt("its own characters say something else than its label");
  }
}

// A page whose first rows are only "On" and "Off" means the power, unless another command does.
void ReadBareStates(std::vector<Finding>& findings) {
  const auto bare = [](const Finding& finding) {
    return finding.For.What == Subject::None && IsOnOrOff(finding.For.To) && !finding.Label.empty();
  };
  std::vector<Finding*> found;
  for (Finding& finding : findings) {
    if (finding.For.What == Subject::Power && IsOnOrOff(finding.For.To)) return;
    if (bare(finding)) found.push_back(&finding);
  }
  if (found.size() != 2 || found[0]->For.To == found[1]->For.To) return;
  for (Finding* finding : found) {
    finding->For.What = Subject::Power;
    finding->For.Plain = false;
  }
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

}  // namespace

void CompleteFunctions(std::vector<Finding>& findings) {
  for (Finding& finding : findings) {
    NameInput(finding);
    HeedCharacters(finding);
  }
  ReadBareStates(findings);
  CountChannels(findings);
  CompletePairs(findings);
}

}  // namespace qdm
