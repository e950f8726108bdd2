#include "manuals/functions.h"

#include "manuals/page.h"
#include "manuals/vocabulary.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qdm {
namespace {

// What stands on a label, word by word.
struct Seen {
  std::array<int, static_cast<std::size_t>(Word::Count)> Times{};
  std::vector<int> Numbers;
  std::size_t Unknown = 0;
  std::size_t Words = 0;
  Word Last = Word::Count;
  int NumberOfInput = 0;
  int Channel = 0;

  int& operator[](Word word) { return Times[static_cast<std::size_t>(word)]; }
  bool Has(Word word) const { return Times[static_cast<std::size_t>(word)] > 0; }
  void Add(Word word) {
    ++(*this)[word];
    ++Words;
    Last = word;
  }
};

bool NamesInput(Word word) {
  return word == Word::Computer || word == Word::Digital || word == Word::Video || word == Word::SVideo ||
         word == Word::Component || word == Word::Input || word == Word::Analog;
}

// A long word without blanks that is made of known words: "turnsonthepower".
bool AddGluedWords(std::u16string_view word, Seen& seen) {
  constexpr std::size_t kShortest = 6;
  constexpr std::size_t kLongest = 48;
  if (word.size() < kShortest || word.size() > kLongest) return false;
  const Vocabulary& known = KnownWords();
  // The fewest words that make up what lies before each place.
  std::array<std::size_t, kLongest + 1> fewest;
  std::array<std::size_t, kLongest + 1> begin{};
  fewest.fill(kLongest);
  fewest[0] = 0;
  for (std::size_t end = 1; end <= word.size(); ++end) {
    for (std::size_t from = 0; from < end; ++from) {
      if (fewest[from] + 1 > fewest[end] || !known.contains(word.substr(from, end - from))) continue;
      fewest[end] = fewest[from] + 1;
      begin[end] = from;
    }
  }
  if (fewest[word.size()] > word.size() / 3) return false;
  for (std::size_t end = word.size(); end > 0; end = begin[end]) {
    seen.Add(known.at(word.substr(begin[end], end - begin[end])));
  }
  return true;
}

bool NumberFollows(std::u16string_view text, std::size_t at) {
  if (at < text.size() && text[at] == u' ') ++at;
  return at < text.size() && IsDigit(text[at]);
}

// The name of an input from which extraction has lost a letter: "VA1". Never plain.
bool AddWordWithLoss(std::u16string_view word, bool numbered, Seen& seen) {
  constexpr std::u16string_view kInputs[] = {u"vga",    u"rgb",      u"hdmi",      u"dvi",      u"video",
                                             u"svideo", u"computer", u"component", u"composite"};
  if (word.size() < 2 || (word.size() < 4 && !numbered)) return false;
  for (const std::u16string_view input : kInputs) {
    if (word.size() + 1 != input.size()) continue;
    const auto differs = std::mismatch(word.begin(), word.end(), input.begin());
    if (!std::equal(differs.first, word.end(), differs.second + 1)) continue;
    seen.Add(KnownWords().at(input));
    ++seen.Unknown;
    return true;
  }
  return false;
}

std::size_t AddNumber(std::u16string_view text, std::size_t at, Seen& seen) {
  std::size_t end = at;
  int value = 0;
  while (end < text.size() && IsDigit(text[end])) {
    value = std::min(9999, value * 10 + (text[end] - u'0'));
    ++end;
  }
  seen.Numbers.push_back(value);
  const bool ofKind = seen.Has(Word::Computer) || seen.Has(Word::Digital) || seen.Has(Word::Video) ||
                      seen.Has(Word::SVideo) || seen.Has(Word::Component) || seen.Has(Word::Analog);
  if (seen.Last == Word::Input && !ofKind && seen.Channel == 0)
    seen.Channel = value;
  else if (NamesInput(seen.Last) && seen.NumberOfInput == 0)
    seen.NumberOfInput = value;
  return end;
}

// "Input B", "VGA B": 2; 0 where no socket has a letter.
int SocketLetter(std::u16string_view text, std::size_t at, const Seen& seen) {
  const char16_t c = text[at];
  const bool socket = seen.Last == Word::Input || seen.Last == Word::Computer;
  if (!socket || seen.Channel > 0 || seen.NumberOfInput > 0 || c < u'a' || c > u'd') return 0;
  const bool alone =
      !IsLatin(text[at - 1]) && (at + 1 >= text.size() || text[at + 1] == u' ' || text[at + 1] == u')');
  return alone ? c - u'a' + 1 : 0;
}

Seen Look(std::u16string_view label) {
  constexpr std::size_t kLongestLabel = 160;
  std::u16string text(label.substr(0, kLongestLabel));
  // "DataPOWER ON": two cells have run together.
  for (std::size_t at = 3; at + 1 < text.size(); ++at) {
    const bool runs = IsLower(text[at - 1]) && IsLower(text[at - 2]) && IsLower(text[at - 3]) &&
                      IsUpper(text[at]) && IsUpper(text[at + 1]);
    if (runs) text.insert(at, 1, u' ');
  }
  text = FoldLetters(text);
  Seen seen;
  std::size_t at = 0;
  while (at < text.size()) {
    const char16_t c = text[at];
    if (const int socket = SocketLetter(text, at, seen)) {
      (seen.Last == Word::Computer ? seen.NumberOfInput : seen.Channel) = socket;
      ++at;
      continue;
    }
    const bool wordBegins = at == 0 || !IsLatin(text[at - 1]) || !IsLatin(c);
    Word meaning{};
    if (const std::size_t length = wordBegins && c != u' ' ? PhraseAt(text, at, meaning) : 0) {
      seen.Add(meaning);
      at += length;
    } else if (IsDigit(c)) {
      at = AddNumber(text, at, seen);
    } else if (IsLatin(c)) {
      std::size_t end = at;
      while (end < text.size() && IsLatin(text[end])) ++end;
      const std::u16string_view word = std::u16string_view(text).substr(at, end - at);
      // "s-videoinput"
      if (word.size() == 1 && end + 1 < text.size() && text[end] == u'-' && IsLatin(text[end + 1])) {
        std::size_t behind = end + 1;
        while (behind < text.size() && IsLatin(text[behind])) ++behind;
        if (AddGluedWords(std::u16string_view(text).substr(at, behind - at), seen)) {
          at = behind;
          continue;
        }
      }
      if (!AddGluedWords(word, seen) && !AddWordWithLoss(word, NumberFollows(text, end), seen)) {
        ++seen.Unknown;
        ++seen.Words;
        seen.Last = Word::Count;
      }
      at = end;
    } else {
      if (c > 0x2E80) ++seen.Unknown;
      if (c == u'-' && seen.Last == Word::Volume) seen.Add(Word::Down);
      if (c == u'-' && text.substr(at + 1, 4) == u" vol") seen.Add(Word::Down);
      ++at;
    }
  }
  return seen;
}

// "Picture off", not "Mute on (picture off)".
bool IsPictureAlone(const Seen& seen) {
  const bool dark =
      seen.Has(Word::Blank) || seen.Has(Word::Shutter) || seen.Has(Word::Mute) || seen.Has(Word::Unmute);
  return !dark && seen.Has(Word::PictureOn) != seen.Has(Word::PictureOff);
}

// "S-Video MUTE ON": the rows of two functions have run together.
bool NamesTwo(const Seen& seen) {
  const bool input = seen.Has(Word::SVideo) || seen.Has(Word::Computer) || seen.Has(Word::Digital);
  const bool dark = seen.Has(Word::Blank) || seen.Has(Word::Shutter);
  return (input && (dark || seen.Has(Word::Volume))) || (dark && seen.Has(Word::Sound));
}

State StateOf(const Seen& seen, Subject what) {
  const bool on = seen.Has(Word::On) || seen.Has(Word::PowerOn);
  const bool off = seen.Has(Word::Off) || seen.Has(Word::PowerOff) || seen.Has(Word::Unmute);
  if (what == Subject::Blank && seen.Has(Word::Shutter)) {
    if (seen.Has(Word::Close) && !seen.Has(Word::Open)) return State::On;
    if (seen.Has(Word::Open) && !seen.Has(Word::Close)) return State::Off;
  }
  if (what == Subject::Blank && IsPictureAlone(seen))
    return seen.Has(Word::PictureOff) ? State::On : State::Off;
  if (what == Subject::Volume) {
    const bool up = seen.Has(Word::Up) || seen.Has(Word::Louder);
    if (up == (seen.Has(Word::Down) || seen.Has(Word::Quieter))) return State::None;
    return up ? State::Up : State::Down;
  }
  if (on == off) {
    const bool open = seen.Has(Word::Open);
    if (on || open == seen.Has(Word::Close)) return State::None;
    return open ? State::Open : State::Close;
  }
  return on ? State::On : State::Off;
}

Subject PictureOrSound(const Seen& seen) {
  if (seen.Has(Word::Sound)) return seen.Has(Word::Blank) ? Subject::Blank : Subject::Sound;
  if (seen.Has(Word::Blank) || seen.Has(Word::Shutter)) return Subject::Blank;
  if (seen.Has(Word::Volume)) return seen.Has(Word::Mute) ? Subject::Sound : Subject::Volume;
  if (seen.Has(Word::Louder) || seen.Has(Word::Quieter)) return Subject::Volume;
  if (seen.Has(Word::Mute) || seen.Has(Word::Unmute)) {
    return seen.Has(Word::Video) || seen.Has(Word::Picture) || seen.Has(Word::PictureOn) ||
                   seen.Has(Word::PictureOff)
               ? Subject::Blank
               : Subject::Mute;
  }
  return Subject::None;
}

Subject SubjectOf(const Seen& seen) {
  if (seen.Has(Word::Other) || seen.Has(Word::Query)) return Subject::Other;
  if (const Subject dark = PictureOrSound(seen); dark != Subject::None) return dark;
  if (seen.Has(Word::SVideo)) return Subject::SVideo;
  if (seen.Has(Word::Computer)) return Subject::Computer;
  if (seen.Has(Word::Digital)) return Subject::Digital;
  if (seen.Has(Word::Component)) return Subject::Component;
  if (seen.Has(Word::Video)) return Subject::Video;
  if (seen.Has(Word::Analog)) return Subject::Computer;
  if (seen.Has(Word::Power) || seen.Has(Word::PowerOn) || seen.Has(Word::PowerOff)) return Subject::Power;
  if (seen.Has(Word::PictureOn) != seen.Has(Word::PictureOff)) return Subject::Blank;
  const bool state = seen.Has(Word::On) || seen.Has(Word::Off);
  if (state && seen.Has(Word::Device)) return Subject::Power;
  if (seen.Has(Word::Input)) return Subject::Input;
  return Subject::None;
}

}  // namespace

Function ClassifyLabel(std::u16string_view label) {
  const Seen seen = Look(label);
  Function function;
  function.What = SubjectOf(seen);
  function.To = StateOf(seen, function.What);
  function.Confirms = seen.Has(Word::Confirm) && !seen.Has(Word::AtOnce);
  function.AtOnce = seen.Has(Word::AtOnce);
  function.Both = seen.Has(Word::Toggle) || (seen.Has(Word::On) && seen.Has(Word::Off)) ||
                  (seen.Has(Word::PowerOn) && seen.Has(Word::PowerOff));
  if (function.Both) function.To = State::None;
  function.Unsupported = seen.Has(Word::Unsupported);
  function.DigitalSide = seen.Has(Word::Digital) && seen.Has(Word::Computer);
  // "Shutter on" could be the dark picture or the light one.
  const bool opensOrCloses = seen.Has(Word::Open) || seen.Has(Word::Close);
  const bool unclear = seen.Has(Word::Shutter) && !opensOrCloses;
  function.AlsoComponent = seen.Has(Word::Component) && function.What == Subject::Computer;
  function.Switches = seen.Has(Word::Action) || seen.Has(Word::Input);
  const std::u16string folded = FoldLetters(label);
  for (const std::u16string_view word : {u"power", u"lamp", u"netz", u"电源", u"電源", u"aliment"})
    function.NamesPower |= folded.find(word) != std::u16string::npos;
  function.Unknown = seen.Unknown;
  function.Words = seen.Words;
  function.Number = seen.NumberOfInput;
  if (function.What == Subject::Input || function.What == Subject::None) {
    if (function.Number == 0) function.Number = seen.Channel;
  } else {
    function.Channel = seen.Channel;
  }
  // The last of the digital inputs that an installer would take.
  constexpr int kLastDigital = 5;
  if (function.Number == 0 && folded.find(u"hdbaset") != std::u16string::npos) function.Number = kLastDigital;
  if (function.Number == 0 && function.What == Subject::None && seen.Words == 0 && seen.Numbers.size() == 1) {
    function.Number = seen.Numbers.front();
  }
  function.Plain =
      seen.Unknown == 0 && !function.AlsoComponent && !unclear && !IsPictureAlone(seen) && !NamesTwo(seen);
  return function;
}

Function InContext(const Function& label, const Function& above) {
  Function joined = label;
  const bool stateAlone = label.What == Subject::None && label.To != State::None;
  // "Standby", "Einschalten" below a title.
  const bool powerWord = label.What == Subject::Power && label.Words == 1 && !label.NamesPower &&
                         above.To == State::None && above.Unknown == 0 &&
                         (above.What == Subject::Blank || above.What == Subject::Mute ||
                          above.What == Subject::Sound || above.What == Subject::Other);
  if (stateAlone || powerWord) {
    joined.What = above.What == Subject::None ? Subject::None : above.What;
    joined.Plain = label.Plain && above.Plain;
    // A shutter that is closed makes the picture dark.
    if (joined.What == Subject::Blank && label.To == State::Close) joined.To = State::On;
    if (joined.What == Subject::Blank && label.To == State::Open) joined.To = State::Off;
    joined.Confirms |= above.Confirms;
    joined.AtOnce |= above.AtOnce;
  }
  return joined;
}

std::optional<int> SlotOf(const Function& function) {
  if (function.Unsupported || function.Both) return std::nullopt;
  const bool on = function.To == State::On;
  const bool off = function.To == State::Off;
  switch (function.What) {
    case Subject::Power:
      return on ? std::optional(kPowerOnSlot) : off ? std::optional(kPowerOffSlot) : std::nullopt;
    case Subject::Blank:
      return on ? std::optional(kBlankOnSlot) : off ? std::optional(kBlankOffSlot) : std::nullopt;
    case Subject::Volume:
      if (function.To == State::None) return std::nullopt;
      return function.To == State::Up ? kVolumeUpSlot : kVolumeDownSlot;
    case Subject::Computer:
      return off ? std::nullopt : std::optional(function.Number > 1 ? kSecondDataSlot : kDataSlot);
    case Subject::Digital:
      return off ? std::nullopt : std::optional(kSecondDataSlot);
    case Subject::Video:
      return off ? std::nullopt : std::optional(function.Number > 1 ? kSecondVideoSlot : kVideoSlot);
    case Subject::SVideo:
      return off ? std::nullopt : std::optional(kSecondVideoSlot);
    default:
      return std::nullopt;
  }
}

}  // namespace qdm
