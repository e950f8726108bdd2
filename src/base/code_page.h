// Windows-1252, the code page of every stored text. All 256 bytes have a character and come back as the same
// byte: the five codes that the page leaves undefined (81, 8D, 8F, 90, 9D hexadecimal) stand for themselves.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qdm {

char16_t CharacterOf(std::uint8_t byte);

// Nothing when the page has no code for the character.
std::optional<std::uint8_t> ByteOf(char16_t character);

// The stored byte of a character: "?" stands for one that the page has no code for.
std::uint8_t StoredByteOf(char16_t character);

// `characters.size()` of them from or to as many stored bytes.
void ToCharacters(const std::uint8_t* stored, std::span<char16_t> characters);
void ToStoredBytes(std::span<const char16_t> characters, std::uint8_t* stored);

// Upper case within the page, so that a name stays as long as it was; letters without a capital in it stay.
char16_t UpperCase(char16_t character);
std::u16string UpperCase(std::u16string_view text);

std::string ToUtf8(std::u16string_view text);
// A malformed sequence gives U+FFFD.
std::u16string FromUtf8(std::string_view text);

// Blanks at both ends removed.
std::u16string_view TrimBlanks(std::u16string_view text);

// True for what a name may hold: printable, and a byte of the code page.
bool IsNameCharacter(char16_t character);

}  // namespace qdm
