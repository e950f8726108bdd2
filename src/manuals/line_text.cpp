#include "manuals/line_text.h"

#include "manuals/line_words.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using namespace line_words;

constexpr std::size_t kLineReach = 60;  // characters between a label and its value

bool IsWordEnd(Text text, std::size_t at) {
  return at >= text.size() || !(IsWordPart(text[at]) || (text[at] >= 0xDF && text[at] < 0x250));
}
bool IsWordBegin(Text text, std::size_t at) { return at == 0 || IsWordEnd(text, at - 1); }

template <std::size_t N>
std::size_t FirstOf(Text text, const Text (&words)[N]) {
  std::size_t first = Text::npos;
  for (const Text word : words) first = std::min(first, text.find(word));
  return first;
}

// A usual speed, "9600", "9,600", "19.2k".
std::optional<int> SpeedAt(Text text, std::size_t at, std::size_t& end) {
  // "Baudrate9600": the blank is lost.
  const bool glued = at >= 4 && (text.substr(at - 4, 4) == u"rate" || text.substr(at - 4, 4) == u"baud");
  if ((!IsWordBegin(text, at) && !glued) || (at > 0 && (text[at - 1] == u'.' || text[at - 1] == u',')))
    return std::nullopt;
  int value = 0;
  end = at;
  std::size_t digits = 0;
  while (end < text.size() && digits < 7) {
    const bool grouped = (text[end] == u',' || text[end] == u'.' || text[end] == u' ') && digits > 0 &&
                         digits < 4 && end + 3 < text.size() && IsDigit(text[end + 1]) &&
                         IsDigit(text[end + 2]) && IsDigit(text[end + 3]) &&
                         (end + 4 >= text.size() || !IsDigit(text[end + 4]));
    if (!IsDigit(text[end]) && !grouped) break;
    if (!grouped) {
      value = value * 10 + (text[end] - u'0');
      ++digits;
    }
    ++end;
  }
  constexpr std::pair<Text, int> kShort[] = {{u"19.2k", 19200},   {u"38.4k", 38400},    {u"57.6k", 57600},
                                             {u"115.2k", 115200}, {u"9.6k", 9600},      {u"19k2", 19200},
                                             {u"38k4", 38400},    {u"19.2 k", 19200},   {u"38.4 k", 38400},
                                             {u"57.6 k", 57600},  {u"115.2 k", 115200}, {u"9.6 k", 9600}};
  for (const auto& [word, speed] : kShort) {
    if (text.substr(at, word.size()) != word) continue;
    end = at + word.size();
    return speed;
  }
  if (end < text.size() && IsDigit(text[end])) return std::nullopt;
  if (end < text.size() && IsWordPart(text[end]) && text.substr(end, 1) != u"b" &&
      text.substr(end, 1) != u"n" && text.substr(end, 1) != u"8")
    return std::nullopt;
  if (std::find(kSpeeds.begin(), kSpeeds.end(), value) == kSpeeds.end()) return std::nullopt;
  return value;
}

std::optional<LineParity> ParityAt(Text text, std::size_t at, std::size_t& end) {
  for (const ParityWord& parity : kParities) {
    if (text.substr(at, parity.Word.size()) != parity.Word) continue;
    end = at + parity.Word.size();
    if (parity.Word.front() > 0x2000 || IsWordEnd(text, end)) return parity.Means;
  }
  return std::nullopt;
}

std::optional<int> StopAt(Text text, std::size_t at, std::size_t& end) {
  end = at + 1;
  if (text[at] == u'1' || text[at] == u'2') {
    const bool fraction =
        end + 1 < text.size() && (text[end] == u'.' || text[end] == u',') && IsDigit(text[end + 1]);
    if (!fraction && (IsWordEnd(text, end) || text[end] == u'b')) return text[at] - u'0';
    return std::nullopt;
  }
  for (const NumberWord& number : kNumberWords) {
    end = at + number.Word.size();
    if (text.substr(at, number.Word.size()) == number.Word && IsWordEnd(text, end)) return number.Value;
  }
  return std::nullopt;
}

class LineReader {
 public:
  explicit LineReader(const ManualPage& page) : page_(page), text_(page.Folded) {
    std::size_t begin = 0;
    for (const std::u16string& line : page.Lines) {
      begins_.push_back(begin);
      begin += line.size() + 1;
    }
  }

  ManualLineSettings Read() {
    FindSpeeds();
    Find(kParityWords, parities_, ParityAt, &LineReader::ParityBefore);
    Find(kStopWords, stops_, StopAt, &LineReader::StopBefore);
    FindShortForms();
    FindBareStop();
    if (parities_.empty() || stops_.empty()) FindValueBlock();
    ManualLineSettings line;
    line.Speed = Only(speeds_);
    line.Parity = Only(parities_);
    line.StopBits = Only(stops_);
    line.Ranges = std::move(ranges_);
    return line;
  }

 private:
  template <class Value>
  static std::optional<Value> Only(const std::set<Value>& values) {
    return values.size() == 1 ? std::optional(*values.begin()) : std::nullopt;
  }
  void Mark(std::size_t from, std::size_t to) {
    const auto behind = std::upper_bound(begins_.begin(), begins_.end(), from);
    const auto line = static_cast<std::size_t>(behind - begins_.begin()) - 1;
    ranges_.push_back({page_.Numbers[line], from - begins_[line], to - begins_[line]});
  }
  // What may hold the value of a label that ends at `from`: up to the next label.
  Text Reach(std::size_t from) const {
    Text reach = text_.substr(from, kLineReach);
    reach = reach.substr(0, FirstOf(reach, kSpeedWords));
    reach = reach.substr(0, FirstOf(reach, kStopWords));
    reach = reach.substr(0, FirstOf(reach, kOtherWords));
    return reach.substr(0, FirstOf(reach, kParityWords));
  }

  // "Start bit 1 Stop bit: 2": a value of its own wins over the number before.
  bool ValueFollows(std::size_t at) const {
    while (at < text_.size() && IsLower(text_[at])) ++at;
    while (at < text_.size() &&
           (text_[at] == u' ' || text_[at] == u':' || text_[at] == u'=' || text_[at] == u'.'))
      ++at;
    return at < text_.size() && (text_[at] == u'1' || text_[at] == u'2') && IsWordEnd(text_, at + 1);
  }
  bool IsStandard(std::size_t from, std::size_t to) const;
  bool OneOfSeveral(int speed, std::size_t at) const;
  bool IsStarred(std::size_t at) const;
  bool StarMeansStandard() const;
  void FindSpeeds();
  void FindShortForms();
  void TakeSpeedBefore(std::size_t at);
  void FindBareStop();
  void FindValueBlock();
  bool ParityBefore(std::size_t at);
  bool StopBefore(std::size_t at);

  template <std::size_t N, class Value>
  void Find(const Text (&words)[N], std::set<Value>& values,
            std::optional<Value> (*valueAt)(Text, std::size_t, std::size_t&),
            bool (LineReader::*before)(std::size_t));

  const ManualPage& page_;
  Text text_;
  std::vector<std::size_t> begins_;  // of the lines in the text
  std::set<int> speeds_;
  std::set<LineParity> parities_;
  std::set<int> stops_;
  std::vector<ManualRange> ranges_;
};

template <std::size_t N, class Value>
void LineReader::Find(const Text (&words)[N], std::set<Value>& values,
                      std::optional<Value> (*valueAt)(Text, std::size_t, std::size_t&),
                      bool (LineReader::*before)(std::size_t)) {
  for (const Text word : words) {
    for (std::size_t at = text_.find(word); at != Text::npos; at = text_.find(word, at + 1)) {
      if (!ValueFollows(at + word.size()) && (this->*before)(at)) continue;
      std::size_t from = at + word.size();
      while (from < text_.size() && IsLower(text_[from])) {
        // "paritynone": the blank is lost.
        std::size_t end = 0;
        const auto glued = from - at > word.size() ? valueAt(text_, from, end) : std::nullopt;
        if (glued && end - from > 2 && IsWordEnd(text_, end)) {
          values.insert(*glued);
          Mark(from, end);
        }
        ++from;
      }
      const Text reach = Reach(from);
      for (std::size_t i = 0; i < reach.size(); ++i) {
        std::size_t end = 0;
        if (reach[i] < 0x2000 && !IsWordBegin(reach, i)) continue;
        const auto value = valueAt(reach, i, end);
        if (!value) continue;
        values.insert(*value);
        Mark(from + i, from + end);
        break;
      }
    }
  }
}

// "no parity", "even parity".
bool LineReader::ParityBefore(std::size_t at) {
  constexpr std::pair<char16_t, LineParity> kSigns[] = {{u'无', LineParity::None},
                                                        {u'無', LineParity::None},
                                                        {u'偶', LineParity::Even},
                                                        {u'奇', LineParity::Odd}};
  for (const auto& [sign, parity] : kSigns) {
    if (at == 0 || text_[at - 1] != sign ||
        (at > 1 && (text_[at - 2] == u'奇' || text_[at - 2] == u'无' || text_[at - 2] == u'無')))
      continue;
    if (parity == LineParity::Odd && text_[at] == u'偶') continue;
    parities_.insert(parity);
    Mark(at - 1, at);
    return true;
  }
  std::size_t from = at;
  while (from > 0 && (text_[from - 1] == u' ' || text_[from - 1] == u'-')) --from;
  std::size_t begin = from;
  while (begin > 0 && IsLower(text_[begin - 1])) --begin;
  std::size_t end = 0;
  if (begin == from) return false;
  const auto parity = ParityAt(text_, begin, end);
  if (!parity || end != from || begin + 1 == end) return false;
  parities_.insert(*parity);
  Mark(begin, at);
  return true;
}

// "1 stop bit", "one stop bit".
bool LineReader::StopBefore(std::size_t at) {
  std::size_t from = at;
  while (from > 0 && (text_[from - 1] == u' ' || text_[from - 1] == u'-')) --from;
  if (from > 1 && (text_[from - 1] == u'位' || text_[from - 1] == u'个') && IsDigit(text_[from - 2])) --from;
  std::size_t begin = from;
  while (begin > 0 && (IsWordPart(text_[begin - 1]))) --begin;
  if (begin == from) return false;
  std::size_t end = 0;
  const auto stop = StopAt(text_, begin, end);
  if (!stop || end != from) return false;
  stops_.insert(*stop);
  Mark(begin, at);
  return true;
}

// "9600 (default)", "default: 9600".
bool LineReader::IsStandard(std::size_t from, std::size_t to) const {
  constexpr std::size_t kNear = 16;
  constexpr std::size_t kNearBefore = 24;
  const auto digit = [](char16_t c) { return IsDigit(c); };
  // "38400 (default 9600)": what leads over to another number is said of that one.
  Text behind = text_.substr(to, kNear + kNearBefore);
  const std::size_t next = behind.find_first_of(u"0123456789");
  behind = behind.substr(0, next == Text::npos ? kNear : next);
  if (next != Text::npos && behind.find_first_of(u"),;/\n", FirstOf(behind, kStandardWords)) == Text::npos)
    behind = {};
  behind = behind.substr(0, kNear);
  Text before = text_.substr(from - std::min(from, kNearBefore), std::min(from, kNearBefore));
  const auto last = std::find_if(before.rbegin(), before.rend(), digit);
  before = before.substr(static_cast<std::size_t>(before.rend() - last));
  if (before.find_first_of(u",;)") != Text::npos) before = {};  // belongs to another
  return FirstOf(behind, kStandardWords) != Text::npos || FirstOf(before, kStandardWords) != Text::npos;
}

// "19200bps*"
bool LineReader::IsStarred(std::size_t at) const {
  while (at < text_.size() && (IsLetter(text_[at]) || text_[at] == u' ' || text_[at] == u'/')) ++at;
  return at < text_.size() && text_[at] == u'*';
}

// "* Factory setting"
bool LineReader::StarMeansStandard() const {
  constexpr std::size_t kNote = 24;
  for (std::size_t at = text_.find(u'*'); at != Text::npos; at = text_.find(u'*', at + 1)) {
    if (FirstOf(text_.substr(at, kNote), kStandardWords) != Text::npos) return true;
  }
  return false;
}

// "2400 to 38400", "4800 / 9600": the slowest is no more likely than the others.
bool LineReader::OneOfSeveral(int speed, std::size_t at) const {
  constexpr int kUsual = 9600;
  constexpr std::size_t kNear = 12;
  const Text behind = text_.substr(at, kNear);
  const Text between = behind.substr(0, behind.find_first_of(u"0123456789"));
  if (between.size() == behind.size()) return false;
  if (speed < kUsual && between.find(u'/') != Text::npos) return true;
  return std::any_of(std::begin(kBetweenSpeeds), std::end(kBetweenSpeeds),
                     [between](Text word) { return between.find(word) != Text::npos; });
}

// Speeds near a word that says so; where there is only one speed on a page that speaks of speeds, that one.
void LineReader::FindSpeeds() {
  std::vector<std::size_t> words;
  for (const Text word : kSpeedWords) {
    for (std::size_t at = text_.find(word); at != Text::npos; at = text_.find(word, at + 1))
      words.push_back(at);
  }
  if (words.empty()) return;
  std::sort(words.begin(), words.end());
  std::set<int> near;
  std::set<int> all;
  std::set<int> standard;
  const bool starred = StarMeansStandard();
  std::optional<int> first;  // right behind its label: the others are for special cases
  for (std::size_t at = 0; at < text_.size(); ++at) {
    std::size_t end = 0;
    if (!IsDigit(text_[at])) continue;
    const auto speed = SpeedAt(text_, at, end);
    if (!speed) continue;
    all.insert(*speed);
    const auto next = std::lower_bound(words.begin(), words.end(), at);
    const bool before = next != words.begin() && at - *std::prev(next) < kLineReach + 20;
    const bool behind = next != words.end() && *next - at < 12;
    constexpr std::size_t kLabel = 14;  // "baud rate ... "
    if (before && !first && !OneOfSeveral(*speed, end) && at - *std::prev(next) <= kLabel &&
        text_.substr(*std::prev(next), 3) != u"bps")
      first = speed;
    if (before || behind) {
      near.insert(*speed);
      Mark(at, end);
    }
    if (IsStandard(at, end) || (starred && IsStarred(end))) standard.insert(*speed);
  }
  // A number that stands alone could be something else.
  std::erase_if(all, [](int speed) { return speed < 9600; });
  speeds_ = near.empty() ? all : near;
  if (speeds_.size() > 1 && standard.size() == 1) speeds_ = standard;
  if (speeds_.size() > 1 && first) speeds_ = {*first};
}

// "8N1", "8-N-1", "N,8,1", "9600 N 8 1".
void LineReader::FindShortForms() {
  const auto skip = [this](std::size_t at) {
    while (at < text_.size() && (text_[at] == u' ' || text_[at] == u',' || text_[at] == u'-' ||
                                 text_[at] == u'/' || text_[at] == u';' || text_[at] == u'.'))
      ++at;
    return at;
  };
  const auto letter = [](char16_t c) -> std::optional<LineParity> {
    if (c == u'n') return LineParity::None;
    if (c == u'e') return LineParity::Even;
    return c == u'o' ? std::optional(LineParity::Odd) : std::nullopt;
  };
  for (std::size_t at = 0; at + 2 < text_.size(); ++at) {
    const bool bits = text_[at] == u'8' || text_[at] == u'7';
    if ((!bits && !letter(text_[at])) || !IsWordBegin(text_, at)) continue;
    const std::size_t second = skip(at + 1);
    const std::size_t third = second < text_.size() ? skip(second + 1) : second;
    if (second - at > 4 || third - second > 4 || second >= text_.size()) continue;
    const bool otherBits = text_[second] == u'8' || text_[second] == u'7';
    if (bits == otherBits) continue;
    const auto parity = letter(text_[bits ? second : at]);
    if (!parity) continue;
    const bool stop =
        third < text_.size() && (text_[third] == u'1' || text_[third] == u'2') && IsWordEnd(text_, third + 1);
    if (!stop && (third < text_.size() && third == second + 1 && IsWordPart(text_[third]))) continue;
    if (!stop && !(bits && second == at + 1)) continue;
    // "7E 30" is a list of bytes.
    if (*parity != LineParity::None && (!stop || (third != second + 1) == (second == at + 1))) continue;
    if (!stop && text_[at] != u'8') continue;
    parities_.insert(*parity);
    if (stop) stops_.insert(text_[third] - u'0');
    Mark(at, third);
    if (stop) TakeSpeedBefore(at);
  }
}

// "Stop 1", "Stop" above "1 bit": the number at once.
void LineReader::FindBareStop() {
  constexpr Text kStop = u"stop";
  if (!stops_.empty()) return;
  for (std::size_t at = text_.find(kStop); at != Text::npos; at = text_.find(kStop, at + 1)) {
    const std::size_t value = text_.find_first_not_of(u" :=\n\t", at + kStop.size());
    if (value == Text::npos || value == at + kStop.size() || !IsWordBegin(text_, at)) continue;
    if ((text_[value] != u'1' && text_[value] != u'2') || !IsWordEnd(text_, value + 1)) continue;
    stops_.insert(text_[value] - u'0');
    Mark(value, value + 1);
  }
}

// "9600/8/N/1" without a word for the speed.
void LineReader::TakeSpeedBefore(std::size_t at) {
  constexpr std::size_t kGap = 4;
  std::size_t from = at;
  while (from > 0 && at - from < kGap && !IsWordPart(text_[from - 1]) && text_[from - 1] != u'\n') --from;
  while (from > 0 && IsDigit(text_[from - 1])) --from;
  std::size_t end = 0;
  const auto speed = from < at && IsDigit(text_[from]) ? SpeedAt(text_, from, end) : std::nullopt;
  if (!speed || !speeds_.empty()) return;
  speeds_.insert(*speed);
  Mark(from, end);
}

// The values of a torn table: a speed, then within a few words a parity, eight, and one or two.
void LineReader::FindValueBlock() {
  if (speeds_.size() != 1) return;
  const std::u16string speed = [this] {
    std::u16string digits;
    for (const char c : std::to_string(*speeds_.begin())) digits += static_cast<char16_t>(c);
    return digits;
  }();
  for (std::size_t at = text_.find(speed); at != Text::npos; at = text_.find(speed, at + 1)) {
    const Text block = text_.substr(at + speed.size(), kLineReach);
    std::optional<LineParity> parity;
    std::optional<int> stop;
    bool bits = false;
    for (std::size_t i = 0; i < block.size(); ++i) {
      if (!IsWordBegin(block, i)) continue;
      std::size_t end = 0;
      if (!parity && !(i > 0 && block[i - 1] == u'奇')) parity = ParityAt(block, i, end);
      if (!bits) {
        bits = (block[i] == u'8' || block[i] == u'7') && (IsWordEnd(block, i + 1) || block[i + 1] == u'b');
      } else if (!stop) {
        stop = StopAt(block, i, end);
      }
    }
    if (!parity || !bits || !stop) continue;
    if (parities_.empty()) parities_.insert(*parity);
    if (stops_.empty()) stops_.insert(*stop);
    Mark(at, at + speed.size());
    return;
  }
}

}  // namespace

ManualLineSettings ReadLineSettings(const ManualPage& page) { return LineReader(page).Read(); }

}  // namespace qdm
