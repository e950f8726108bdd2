// The words that labels of manuals are made of, in the languages that manuals are written in.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace qdm {

enum class Word {
  Filler,
  Action,
  Device,
  Power,
  On,
  Off,
  PowerOn,
  PowerOff,
  Input,
  Computer,
  Analog,
  Digital,
  Component,
  Video,
  SVideo,
  Blank,
  Shutter,
  Picture,
  PictureOn,
  PictureOff,
  Open,
  Close,
  Mute,
  Unmute,
  Sound,
  Volume,
  Up,
  Down,
  Louder,
  Quieter,
  Other,
  Query,
  Toggle,
  Confirm,
  AtOnce,
  Unsupported,
  Count
};

using Vocabulary = std::unordered_map<std::u16string_view, Word>;
// Folded words and phrases.
const Vocabulary& KnownWords();

// The longest phrase at `at` of a folded text that ends where a word ends; its length, 0 for none.
std::size_t PhraseAt(std::u16string_view text, std::size_t at, Word& meaning);

// A folded letter of a Latin script.
inline bool IsLatin(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= 0xDF && c < 0x250); }

}  // namespace qdm
