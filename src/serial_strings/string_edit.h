// A string while it is edited: all 32 bytes, whether in use or not, and how many are in use. Values are wider
// than a byte, since what is typed out of range is kept and shown as an error. Copying it is how an editor
// remembers a step.
#pragma once

#include "serial_strings/string_record.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace qdm {

class StringEdit {
 public:
  StringEdit() = default;
  explicit StringEdit(const SerialString& string);

  std::size_t Count() const { return count_; }
  std::int16_t Value(std::size_t index) const { return values_.at(index); }
  std::uint8_t Kind(std::size_t index) const { return kinds_.at(index); }

  // As it is stored over `before`: where a value is no byte, the byte of `before` stays.
  SerialString StoredOver(const SerialString& before) const;
  // The first byte in use that cannot be stored.
  std::optional<std::size_t> FirstTooLarge() const;

  void SetCount(std::size_t count);
  void SetValue(std::size_t index, std::int16_t value);
  // A string has one variable byte at most: one that is not in use gives way to a new one.
  void SetKind(std::size_t index, std::uint8_t kind);
  // Of the bytes in use.
  void MakeAllAscii();
  // Overwrites from `first` on, which must leave room for all of it; the string grows where it has to.
  void Write(std::size_t first, const SerialString& string);
  // What is not in use any more stays where it is, but is no variable byte.
  void Replace(const SerialString& string);
  // A new byte of the kind of the one that moves on. False when all 32 are in use.
  bool Insert(std::size_t index);
  // False for a byte that is not in use.
  bool Remove(std::size_t index);

  friend bool operator==(const StringEdit&, const StringEdit&) = default;

 private:
  void MakeUnusedFixed();

  std::size_t count_ = 0;
  std::array<std::int16_t, kMaximumStringBytes> values_{};
  std::array<std::uint8_t, kMaximumStringBytes> kinds_{};
};

}  // namespace qdm
