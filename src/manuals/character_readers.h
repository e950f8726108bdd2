// What the readers of commands in characters share. Internal to them.
#pragma once

#include "manuals/codes.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace qdm::characters {

using Text = std::u16string_view;

inline constexpr std::size_t kLongestText = 30;

// Words in capitals that no command consists of.
bool IsNoCommand(Text token);

// What stands between blanks and bars.
std::vector<Span> TokensOf(Text line, std::size_t number);

inline bool Any(Text text, bool (*is)(char16_t)) { return std::any_of(text.begin(), text.end(), is); }
inline bool All(Text text, bool (*is)(char16_t)) { return std::all_of(text.begin(), text.end(), is); }
inline bool IsPrintable(char16_t c) { return c >= 32 && c < 127; }
// The capitals that a text begins with.
std::size_t LettersOf(Text text);

Code TextCode(const ManualPage& page, Span where);

// Before a printed terminator, and in parentheses.
void AddTerminated(const ManualPage& page, std::vector<Code>& codes);
void AddParenthesised(const ManualPage& page, std::vector<Code>& codes);

// A word and its value in capitals behind a label: "Power on  PWR ON".
void AddNamedValues(const ManualPage& page, std::vector<Code>& codes);
// A word led by a sign and a value behind it, where the page has more than one value for the word: ":POWR 1".
void AddSignedValues(const ManualPage& page, std::vector<Code>& codes);
// "lamp on  Strikes the lamp", "PWR ON Einschalten": rows that begin with words of one case, at least two of
// a name.
void AddWordRows(const ManualPage& page, std::vector<Code>& codes);
void AddCapitalRows(const ManualPage& page, std::vector<Code>& codes);
// Between labels in ideographs.
void AddBetweenIdeographs(const ManualPage& page, std::vector<Code>& codes);
// In quotation marks or behind a colon, in rows with labels.
void AddMarkedRows(const ManualPage& page, std::vector<Code>& codes);
// A name and its value in cells of their own, where the page draws how they are joined.
void AddCellPairs(const ManualPage& page, std::vector<Code>& codes);
// A letter and two digits that have run into their labels: "C00POWER ONC01POWER OFF".
void AddGluedRows(const ManualPage& page, std::vector<Code>& codes);
// Tokens that begin as all characters do which the page also gives as numbers: "00!" and "00_d1" for 30 30 21
// 0D and 30 30 5F 64 31 0D.
void AddShownByNumbers(const ManualPage& page, const std::vector<Code>& numbers, std::vector<Code>& codes);
// Tokens that look alike, three and more.
void AddFamilies(const ManualPage& page, std::vector<Code>& codes);

}  // namespace qdm::characters
