#include "serial_strings/string_edit.h"

#include <algorithm>

namespace qdm {
namespace {

constexpr auto kAscii = static_cast<std::uint8_t>(ByteKind::ASC);
constexpr auto kHex = static_cast<std::uint8_t>(ByteKind::HEX);
constexpr auto kVariable = static_cast<std::uint8_t>(ByteKind::VAR);

bool IsByte(std::int16_t value) { return value >= 0 && value <= 255; }

}  // namespace

StringEdit::StringEdit(const SerialString& string) : count_(string.BytesInUse()), kinds_(string.Kinds) {
  std::copy(string.Values.begin(), string.Values.end(), values_.begin());
}

SerialString StringEdit::StoredOver(const SerialString& before) const {
  SerialString string = before;
  string.Count = static_cast<std::int16_t>(count_);
  string.Kinds = kinds_;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (IsByte(values_[i])) string.Values[i] = static_cast<std::uint8_t>(values_[i]);
  }
  return string;
}

std::optional<std::size_t> StringEdit::FirstTooLarge() const {
  for (std::size_t i = 0; i < count_; ++i) {
    if (!IsByte(values_[i])) return i;
  }
  return std::nullopt;
}

void StringEdit::SetCount(std::size_t count) { count_ = std::min(count, kMaximumStringBytes); }

void StringEdit::SetValue(std::size_t index, std::int16_t value) { values_.at(index) = value; }

void StringEdit::SetKind(std::size_t index, std::uint8_t kind) {
  if (kind == kVariable) MakeUnusedFixed();
  kinds_.at(index) = kind;
}

void StringEdit::MakeUnusedFixed() {
  std::replace(kinds_.begin() + static_cast<std::ptrdiff_t>(count_), kinds_.end(), kVariable, kHex);
}

void StringEdit::MakeAllAscii() { std::fill_n(kinds_.begin(), count_, kAscii); }

void StringEdit::Write(std::size_t first, const SerialString& string) {
  const std::size_t end = first + string.BytesInUse();
  for (std::size_t i = first; i < end; ++i) {
    values_.at(i) = string.Values[i - first];
    kinds_.at(i) = string.Kinds[i - first];
  }
  count_ = std::max(count_, end);
}

void StringEdit::Replace(const SerialString& string) {
  Write(0, string);
  count_ = string.BytesInUse();
  MakeUnusedFixed();
}

bool StringEdit::Insert(std::size_t index) {
  if (count_ == kMaximumStringBytes || index > count_) return false;
  for (std::size_t i = count_; i > index; --i) {
    values_[i] = values_[i - 1];
    kinds_[i] = kinds_[i - 1];
  }
  ++count_;
  if (kinds_[index] == kVariable) kinds_[index] = kHex;
  values_[index] = kinds_[index] == kAscii ? ' ' : 0;
  return true;
}

bool StringEdit::Remove(std::size_t index) {
  if (index >= count_) return false;
  --count_;
  for (std::size_t i = index; i < count_; ++i) {
    values_[i] = values_[i + 1];
    kinds_[i] = kinds_[i + 1];
  }
  values_[count_] = 0;
  kinds_[count_] = kAscii;
  return true;
}

}  // namespace qdm
