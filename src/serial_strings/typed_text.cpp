#include "serial_strings/typed_text.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace qdm {
namespace {

struct DigitRule {
  ByteKind Kind;
  std::string_view Digits;
  std::size_t Room;
};
constexpr DigitRule kDigitRules[] = {
    {ByteKind::HEX, "0123456789ABCDEF", 2},
    {ByteKind::DEC, "0123456789", 3},
    {ByteKind::BIN, "01", 8},
};

const DigitRule* RuleOf(std::uint8_t kind) {
  for (const DigitRule& rule : kDigitRules) {
    if (static_cast<std::uint8_t>(rule.Kind) == kind) return &rule;
  }
  return nullptr;
}

std::int16_t Number(std::string_view digits, int base) {
  std::int16_t value = 0;  // an empty text is 0
  std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  return value;
}

}  // namespace

void TypedText::Set(std::int16_t value, std::uint8_t kind) {
  value_ = value;
  kind_ = kind;
  Rebuild();
  caret_ = text_.size();
}

void TypedText::Complete() {
  const std::size_t behind = text_.size() - caret_;
  Rebuild();
  caret_ = text_.size() - std::min(behind, text_.size());
}

bool TypedText::HasDigits() const { return RuleOf(kind_) != nullptr; }

void TypedText::SetCaret(std::size_t caret) { caret_ = HasDigits() ? std::min(caret, text_.size()) : caret_; }

bool TypedText::Type(char16_t key) {
  if (HasDigits()) return TypeDigit(key);
  if (kind_ != static_cast<std::uint8_t>(ByteKind::ASC) || key < 32) return false;
  const auto byte = ByteOf(key);
  if (!byte) return false;
  Set(*byte, kind_);
  return true;
}

bool TypedText::TypeDigit(char16_t key) {
  const DigitRule& rule = *RuleOf(kind_);
  const char16_t digit = UpperCase(key);
  if (digit >= 0x80 || rule.Digits.find(static_cast<char>(digit)) == std::string_view::npos) return false;

  // A leading zero makes room. Binary digits stand always eight in a row: without that none could be typed.
  if (text_.size() == rule.Room && text_.front() == '0') {
    text_.erase(0, 1);
    caret_ -= std::min<std::size_t>(caret_, 1);
  }
  if (text_.size() >= rule.Room) return false;

  text_.insert(caret_, 1, static_cast<char>(digit));
  ++caret_;
  value_ = Reading();
  Complete();
  return true;
}

bool TypedText::Edit(EditKey key) {
  if (!HasDigits()) return false;
  const std::size_t before = caret_;
  switch (key) {
    case EditKey::Home:
      caret_ = 0;
      break;
    case EditKey::End:
      caret_ = text_.size();
      break;
    case EditKey::Left:
      if (caret_ > 0) --caret_;
      break;
    case EditKey::Right:
      if (caret_ < text_.size()) ++caret_;
      break;
    case EditKey::Delete:
      return Remove(caret_);
    case EditKey::Backspace:
      if (caret_ == 0) return false;
      --caret_;
      return Remove(caret_);
  }
  return caret_ != before;
}

bool TypedText::Remove(std::size_t at) {
  if (at >= text_.size()) return false;
  text_.erase(at, 1);
  value_ = Reading();
  error_ = value_ > 255;
  return true;
}

void TypedText::Rebuild() {
  EditText shown = EditByteText(value_, kind_);
  text_ = std::move(shown.Text);
  error_ = shown.Error;
}

std::int16_t TypedText::Reading() const {
  switch (static_cast<ByteKind>(kind_)) {
    case ByteKind::HEX:
      return Number(text_, 16);
    case ByteKind::BIN:
      return ParseBinary(text_);
    default:
      return Number(text_, 10);
  }
}

}  // namespace qdm
