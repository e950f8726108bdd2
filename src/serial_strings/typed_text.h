// One byte while it is being typed: its value and kind, the digits on show, the caret among them and the
// error flag. The value is wider than a byte: what is typed out of range is kept and flagged, never refused.
// Digits of HEX, DEC and BIN are typed at the caret; an ASC byte takes the character; the others are chosen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qdm {

enum class EditKey { Home, End, Left, Right, Delete, Backspace };

class TypedText {
 public:
  // The text is built anew, the caret goes behind it.
  void Set(std::int16_t value, std::uint8_t kind);

  std::int16_t Value() const { return value_; }
  std::uint8_t Kind() const { return kind_; }
  // UTF-8. After a digit was removed: the digits that remain, until the next digit or `Complete`.
  const std::string& Text() const { return text_; }
  bool Error() const { return error_; }
  // 0..length; always at the end where no digits are typed.
  std::size_t Caret() const { return caret_; }
  void SetCaret(std::size_t caret);

  // True when digits are typed at a caret: HEX, DEC and BIN.
  bool HasDigits() const;

  // False when the kind does not take the key, or there is no room for it: nothing has changed then.
  bool Type(char16_t key);
  // For HEX, DEC and BIN only. False when nothing has changed.
  bool Edit(EditKey key);
  // The full text of the value again, as when the byte is left.
  void Complete();

 private:
  bool TypeDigit(char16_t key);
  bool Remove(std::size_t at);
  void Rebuild();
  std::int16_t Reading() const;

  std::int16_t value_ = 0;
  std::uint8_t kind_ = 0;
  std::string text_;
  std::size_t caret_ = 0;
  bool error_ = false;
};

}  // namespace qdm
