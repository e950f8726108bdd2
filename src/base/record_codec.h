// Records to their stored bytes and back. A record lists its fields once, in stored order, in a function
//   Fields(Visitor&, Record&...)
// that calls Text, Integer, Integers, Flag, Flags, Record, Records and Block on the visitor, each with the
// field's name and that field of every record given: of one for the reader, the writer, the size and the text
// form elsewhere, of two for the comparison.
// Stored integers are 16-bit little-endian two's complement, texts Windows-1252; there is no padding. Byte
// order and code page live here alone.
#pragma once

#include "base/code_page.h"
#include "base/fixed_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace qdm {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// A field as its record lists it. Where only the name counts, it is one.
struct FieldName {
  using ElementNaming = std::string_view (*)(std::size_t index);

  // A caption is for fields that people choose between; "%1" in it is the element's own name.
  constexpr FieldName(const char* name, std::string_view caption = {}, ElementNaming elements = nullptr)
      : Name(name), Caption(caption), Elements(elements) {}
  constexpr operator std::string_view() const { return Name; }

  std::string_view Name;
  std::string_view Caption;
  ElementNaming Elements;
};

// One or more records of a type, each of them constant or not.
template <class Record, class... Visited>
concept RecordsOf = (sizeof...(Visited) > 0) && (std::is_same_v<std::remove_const_t<Visited>, Record> && ...);

template <class Record>
constexpr std::size_t StoredSize();

class RecordReader {
 public:
  // `stored` must hold at least the record's stored size.
  explicit RecordReader(const std::uint8_t* stored) : at_(stored) {}

  template <std::size_t N>
  void Text(std::string_view, FixedText<N>& text) {
    ToCharacters(at_, text.Characters);
    at_ += N;
  }
  void Integer(std::string_view, std::int16_t& value) {
    value = static_cast<std::int16_t>(static_cast<std::uint16_t>(at_[0] | at_[1] << 8));
    at_ += 2;
  }
  void Flag(std::string_view name, std::int16_t& value) { Integer(name, value); }
  template <std::size_t N>
  void Integers(std::string_view name, std::array<std::int16_t, N>& values) {
    for (std::int16_t& value : values) Integer(name, value);
  }
  template <std::size_t N>
  void Flags(std::string_view name, std::array<std::int16_t, N>& values) {
    Integers(name, values);
  }
  template <std::size_t N>
  void Block(std::string_view, std::array<std::uint8_t, N>& bytes) {
    std::memcpy(bytes.data(), at_, N);
    at_ += N;
  }
  template <class Nested>
  void Record(std::string_view, Nested& record) {
    Fields(*this, record);
  }
  template <class Nested, std::size_t N>
  void Records(std::string_view, std::array<Nested, N>& records) {
    for (Nested& record : records) Fields(*this, record);
  }

 private:
  const std::uint8_t* at_;
};

class RecordWriter {
 public:
  // `stored` must have room for the record's stored size.
  explicit RecordWriter(std::uint8_t* stored) : at_(stored) {}

  template <std::size_t N>
  void Text(std::string_view, const FixedText<N>& text) {
    ToStoredBytes(text.Characters, at_);
    at_ += N;
  }
  void Integer(std::string_view, const std::int16_t& value) {
    const auto bits = static_cast<std::uint16_t>(value);
    *at_++ = static_cast<std::uint8_t>(bits & 0xFF);
    *at_++ = static_cast<std::uint8_t>(bits >> 8);
  }
  void Flag(std::string_view name, const std::int16_t& value) { Integer(name, value); }
  template <std::size_t N>
  void Integers(std::string_view name, const std::array<std::int16_t, N>& values) {
    for (const std::int16_t& value : values) Integer(name, value);
  }
  template <std::size_t N>
  void Flags(std::string_view name, const std::array<std::int16_t, N>& values) {
    Integers(name, values);
  }
  template <std::size_t N>
  void Block(std::string_view, const std::array<std::uint8_t, N>& bytes) {
    std::memcpy(at_, bytes.data(), N);
    at_ += N;
  }
  template <class Nested>
  void Record(std::string_view, const Nested& record) {
    Fields(*this, record);
  }
  template <class Nested, std::size_t N>
  void Records(std::string_view, const std::array<Nested, N>& records) {
    for (const Nested& record : records) Fields(*this, record);
  }

 private:
  std::uint8_t* at_;
};

// Adds up the stored size of the fields that it is shown; their values are never read.
class RecordSizer {
 public:
  template <std::size_t N>
  constexpr void Text(std::string_view, const FixedText<N>&) {
    size_ += N;
  }
  constexpr void Integer(std::string_view, const std::int16_t&) { size_ += 2; }
  constexpr void Flag(std::string_view, const std::int16_t&) { size_ += 2; }
  template <std::size_t N>
  constexpr void Integers(std::string_view, const std::array<std::int16_t, N>&) {
    size_ += 2 * N;
  }
  template <std::size_t N>
  constexpr void Flags(std::string_view, const std::array<std::int16_t, N>&) {
    size_ += 2 * N;
  }
  template <std::size_t N>
  constexpr void Block(std::string_view, const std::array<std::uint8_t, N>&) {
    size_ += N;
  }
  template <class Nested>
  constexpr void Record(std::string_view, const Nested&) {
    size_ += StoredSize<Nested>();
  }
  template <class Nested, std::size_t N>
  constexpr void Records(std::string_view, const std::array<Nested, N>&) {
    size_ += N * StoredSize<Nested>();
  }

  constexpr std::size_t Size() const { return size_; }

 private:
  std::size_t size_ = 0;
};

template <class Record>
constexpr std::size_t StoredSize() {
  RecordSizer sizer;
  const Record record{};
  Fields(sizer, record);
  return sizer.Size();
}

template <class Record>
Bytes Encode(const Record& record) {
  Bytes stored(StoredSize<Record>());
  RecordWriter writer(stored.data());
  Fields(writer, record);
  return stored;
}

// `stored` must hold at least StoredSize<Record>() bytes: a shorter one is read past its end, so whoever
// reads a file compares its length first. What lies behind is not looked at. Any bits make a record: counts
// and indexes in it are the caller's to check.
template <class Record>
void Decode(ByteView stored, Record& record) {
  RecordReader reader(stored.data());
  Fields(reader, record);
}

}  // namespace qdm
