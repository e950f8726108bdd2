#include "serial_strings/byte_list.h"

#include "base/words.h"
#include "serial_strings/code_notation.h"
#include "serial_strings/coded_text.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr Text kTightSeparators = u"-:./|_";  // between two digits each, with no blank or one behind

bool IsOneOf(char16_t c, Text set) { return set.find(c) != Text::npos; }
bool IsComma(char16_t c) { return c == u',' || c == u';'; }
bool IsQuotationMark(char16_t c) { return c == u'"' || c == u'\'' || c == u'`'; }

class ListReader {
 public:
  ListReader(Text text, Unmarked unmarked) : text_(text), unmarked_(unmarked) {}

  ByteList Read() {
    for (std::size_t at = 0; at < text_.size();) at = Step(at);
    CheckTightSeparators();
    const bool mostlyBytes = list_.Bytes >= 2 && 2 * list_.Bytes >= list_.Items;
    const bool beginsAsByte =
        text_.size() > 2 && text_[0] == u'0' && IsHexDigit(text_[1]) && IsBlank(text_[2]);
    list_.Read.Meant = list_.Marked > 0 || mostlyBytes || beginsAsByte;
    return list_;
  }

 private:
  std::size_t Step(std::size_t at) {
    const char16_t c = text_[at];
    if (IsBlank(c)) {
      apart_ = true;
      return at + 1;
    }
    if (IsComma(c)) {
      // A closing semicolon is a programmer's.
      if (afterComma_ && !(c == u';' && list_.Items > 0))
        list_.Read.Fail(at, Say("nothing before the comma"));
      afterComma_ = apart_ = true;
      return at + 1;
    }
    if (list_.Items > 0 && IsOperator(at)) {
      apart_ = true;
      return at + 1;
    }
    if (list_.Items > 0 && IsTightSeparator(at)) {
      list_.Tight = apart_ = true;
      return at + 1;
    }
    if (!apart_ && !joined_ && !IsOneOf(c, kOpeningBrackets) && !IsQuotationMark(c) && c != u'\\' &&
        c != u'#') {
      list_.Read.Fail(at, Say("a blank or a comma is missing"));
    }
    ++list_.Items;
    afterComma_ = apart_ = false;
    return ReadItem(at);
  }

  bool IsOperator(std::size_t at) const {
    if (at + 1 >= text_.size()) return false;
    if (text_[at] == u'&') return text_[at + 1] != u'H' && text_[at + 1] != u'h' && text_[at + 1] != u'#';
    return text_[at] == u'+';
  }

  bool IsTightSeparator(std::size_t at) const {
    if (!IsOneOf(text_[at], kTightSeparators) || at + 1 >= text_.size()) return false;
    const bool blankBefore = IsBlank(text_[at - 1]);
    const bool blankAfter = IsBlank(text_[at + 1]);
    return (blankAfter || !blankBefore) && !IsOneOf(text_[at - 1], kTightSeparators);
  }

  std::size_t ReadItem(std::size_t at) {
    if (IsQuotationMark(text_[at])) return ReadQuotation(at);
    // In brackets a name comes first: "<FF>" is a form feed.
    const Unmarked inBrackets = unmarked_ == Unmarked::Hexadecimal && IsOneOf(text_[at], kOpeningBrackets)
                                    ? Unmarked::HexadecimalAfterNames
                                    : unmarked_;
    if (const auto code = ReadCode(text_, at, inBrackets, true); code && EndsItem(code->End)) {
      for (std::size_t i = 0; i < code->Count; ++i) list_.Read.Add(at, code->Bytes[i]);
      Count(code->Certain ? Notation::Certain : Notation::Marked);
      joined_ = true;
      return code->End;
    }
    std::size_t end = at;
    while (end < text_.size() && !EndsWord(end)) ++end;
    if (end == at) ++end;
    const Text word = text_.substr(at, end - at);
    if (end < text_.size() && IsQuotationMark(text_[end]) && word.size() == 1) {
      --list_.Items;
      return ReadPrefixedQuotation(word[0], end);
    }
    if (!AddWord(at, word)) {
      // The item as the user sees it, with what a separator cut off.
      while (end < text_.size() && !IsBlank(text_[end]) && !IsComma(text_[end])) ++end;
      list_.Read.Fail(at, Say("%1 is not a byte", {Quoted(text_.substr(at, end - at))}));
    }
    joined_ = false;
    return end;
  }

  bool EndsWord(std::size_t at) const {
    const char16_t c = text_[at];
    return IsBlank(c) || IsComma(c) || IsQuotationMark(c) || IsOneOf(c, kOpeningBrackets) || c == u'+' ||
           c == u'#' || IsOneOf(c, kTightSeparators);
  }

  bool EndsItem(std::size_t end) const {
    if (end >= text_.size() || !IsWordPart(text_[end]) || IsOneOf(text_[end - 1], kClosingBrackets))
      return true;
    return text_[end] == u'0' && end + 1 < text_.size() && (text_[end + 1] | 0x20) == u'x';
  }

  bool AddWord(std::size_t at, Text word) {
    if (const auto byte = ReadByte(word, unmarked_)) {
      list_.Read.Add(at, *byte);
      if (!byte->Marked) unmarkedLengths_ |= word.size() == 2 ? 1U : 2U;
      Count(byte->Marked ? Notation::Marked : Notation::Plain);
      return true;
    }
    if (const auto names = ReadCodeNames(word)) {
      for (std::size_t i = 0; i < names->Count; ++i) list_.Read.Add(at, names->Bytes[i]);
      Count(Notation::Plain);
      return true;
    }
    return unmarked_ == Unmarked::Hexadecimal &&
           (AddLettered(at, word) || AddSuffixed(at, word) || AddMisread(at, word) || AddPacked(at, word));
  }

  // "x0D", "H0D": half a mark.
  bool AddLettered(std::size_t at, Text word) {
    const bool lettered = word.size() == 3 && ((word[0] | 0x20) == u'x' || (word[0] | 0x20) == u'h');
    const auto byte = lettered ? ReadNumber(word.substr(1), Unmarked::Hexadecimal) : std::nullopt;
    if (!byte) return false;
    list_.Read.Add(at, *byte);
    Count(Notation::Marked);
    return true;
  }

  // "02h50h0Dh".
  bool AddSuffixed(std::size_t at, Text word) {
    constexpr std::size_t kLength = 3;
    if (word.size() < 2 * kLength || word.size() % kLength != 0) return false;
    for (std::size_t i = 0; i < word.size(); i += kLength) {
      const bool suffix = (word[i + 2] | 0x20) == u'h';
      if (!suffix || !IsHexDigit(word[i]) || !IsHexDigit(word[i + 1])) return false;
    }
    for (std::size_t i = 0; i < word.size(); i += kLength) {
      list_.Read.Add(at + i, *ReadNumber(word.substr(i, 2), Unmarked::Hexadecimal));
    }
    Count(Notation::Marked);
    return true;
  }

  // "OD", "l0": letters that a scanned page has for digits.
  bool AddMisread(std::size_t at, Text word) {
    if (word.size() != 2) return false;
    std::u16string digits(word);
    for (char16_t& c : digits) {
      if (c == u'O' || c == u'o') c = u'0';
      if (c == u'I' || c == u'l') c = u'1';
    }
    const auto byte = ReadNumber(digits, Unmarked::Hexadecimal);
    if (!byte) return false;
    list_.Read.Add(at, *byte);
    list_.Misread = true;
    Count(Notation::Plain);
    return true;
  }

  // "3A52540D", "0x3A52540D", "3A52540Dh".
  bool AddPacked(std::size_t at, Text word) {
    const bool prefix = word.starts_with(u"0x") || word.starts_with(u"0X");
    const bool suffix = !prefix && !word.empty() && (word.back() | 0x20) == u'h';
    if (prefix) word.remove_prefix(2);
    if (suffix) word.remove_suffix(1);
    if (word.size() < 4 || word.size() % 2 != 0 || !std::all_of(word.begin(), word.end(), IsHexDigit)) {
      return false;
    }
    for (std::size_t i = 0; i < word.size(); i += 2) {
      list_.Read.Add(at + i, *ReadNumber(word.substr(i, 2), Unmarked::Hexadecimal));
    }
    list_.Packed = true;
    Count(prefix || suffix ? Notation::Marked : Notation::Plain);
    return true;
  }

  // x'02 50' holds digits; in b'..', u'..', r'..' the letter is the programming language's.
  std::size_t ReadPrefixedQuotation(char16_t prefix, std::size_t at) {
    const char16_t letter = prefix | 0x20;
    const std::size_t end = std::min(text_.find(text_[at], at + 1), text_.size());
    if (letter == u'x' || letter == u'h' || letter == u'$') {
      ++list_.Items;
      ListReader inner(text_.substr(at + 1, end - at - 1), Unmarked::Hexadecimal);
      const ByteList bytes = inner.Read();
      if (bytes.Read.Problem || end == text_.size())
        list_.Read.Fail(at, Say("no bytes in the quotation marks"));
      for (std::size_t i = 0; i < bytes.Read.String.BytesInUse(); ++i) {
        list_.Read.Add(at, bytes.Read.String.Values[i], ByteKind::HEX);
      }
      Count(Notation::Certain);
      joined_ = true;
      return std::min(end + 1, text_.size());
    }
    constexpr Text kStringLetters = u"bBuUrRL@$";
    if (!IsOneOf(prefix, kStringLetters)) {
      list_.Read.Fail(at - 1, Say("%1 is not a byte", {Quoted(Text(&prefix, 1))}));
    }
    ++list_.Items;
    return ReadQuotation(at);
  }

  // A text in quotation marks, opened at `at`; gives the place behind it.
  std::size_t ReadQuotation(std::size_t at) {
    std::size_t end = at + 1;
    while (end < text_.size() && text_[end] != text_[at]) end += text_[end] == u'\\' ? 2U : 1U;
    if (end >= text_.size()) {
      list_.Read.Fail(at, Say("the quotation mark is not closed"));
      return text_.size();
    }
    AddQuotedText(text_.substr(at + 1, end - at - 1), at + 1, list_.Read);
    Count(Notation::Marked);
    joined_ = true;
    return end + 1;
  }

  // How far an item says itself that it is a byte: "10" could be text, "0x10" hardly, "<CR>" not at all.
  enum class Notation { Plain, Marked, Certain };
  void Count(Notation notation) {
    ++list_.Bytes;
    list_.Marked += notation != Notation::Plain ? 1U : 0U;
    list_.Certain += notation == Notation::Certain ? 1U : 0U;
  }

  // "3A-52" is a list, "1-8" a range, "VOL 1.5" a number.
  void CheckTightSeparators() {
    if (!list_.Tight || unmarkedLengths_ <= 1U) return;
    if (unmarked_ == Unmarked::Decimal && list_.Items >= 3) return;
    if (!list_.Packed) list_.Read.Fail(0, Say("bytes without a blank or comma have two digits"));
  }

  Text text_;
  Unmarked unmarked_;
  ByteList list_;
  bool afterComma_ = true;        // or at the beginning
  bool apart_ = true;             // a separator or the beginning comes before
  bool joined_ = false;           // brackets or quotation marks come before
  unsigned unmarkedLengths_ = 0;  // bit 0: numbers of two digits, bit 1: others
};

}  // namespace

ByteList ReadByteList(Text text, Unmarked unmarked) { return ListReader(text, unmarked).Read(); }

bool IsByteList(const ByteList& list, Text text) {
  if (list.Read.Problem || list.Read.String.Count == 0) return false;
  const auto first = static_cast<ByteKind>(list.Read.String.Kinds[0]);
  const bool isNumber = first == ByteKind::HEX || first == ByteKind::DEC || first == ByteKind::BIN;
  // "OO II" are words; with a digit among them they are bytes.
  if (list.Misread && (list.Items < 2 || std::none_of(text.begin(), text.end(), IsDigit))) return false;
  return list.Items > 1 || list.Marked > 0 || list.Packed ||
         (isNumber && (text.size() <= 2 || first == ByteKind::BIN));
}

}  // namespace qdm
