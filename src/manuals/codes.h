// The pieces of a page that are bytes: lists of numbers in any notation, names of control codes, characters
// that stand where only a command can stand.
#pragma once

#include "manuals/page.h"
#include "serial_strings/string_record.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qdm {

enum class Notation { Hexadecimal, Characters };

struct CodeByte {
  std::uint8_t Value = 0;
  ByteKind Kind = ByteKind::ASC;

  friend bool operator==(const CodeByte&, const CodeByte&) = default;
};
using CodeBytes = std::vector<CodeByte>;

struct Code {
  Notation How = Notation::Hexadecimal;
  std::vector<Span> Where;
  CodeBytes Bytes;
  std::vector<std::size_t> Places;  // of the bytes of a run on its line, as long as it is whole
  bool Framed = false;              // its own terminator, wrapper or parentheses are printed
  bool Marked = false;              // the notation itself says that these are bytes
  bool Broken = false;              // a placeholder or a lost digit in it
  bool Wrapped = false;             // over two lines
  bool Open = false;                // with a value that the installer has to choose
  bool Repaired = false;            // a letter O read as 0
  bool Confirmed = false;           // characters and numbers side by side say the same
  bool Composed = false;            // put together from several places of the page
  bool Proven = false;              // by its check sum
  bool LeadsLabel = false;          // its label has run into it from the right
  bool Assembled = false;           // of columns that only their check sums join
  bool Computed = false;            // its check sum is not printed, only how it is made
  bool Gapped = false;              // its bytes stand in several columns
  bool Beside = false;              // what stands beside it could belong to it
  CodeBytes Answer;            // what is printed beside it as the projector's answer, IGN where it varies
  std::vector<Span> AnswerAt;  // no labels

  const Span& Begin() const { return Where.front(); }
  const Span& End() const { return Where.back(); }
};

inline constexpr std::size_t kLongestCode = 32;

// On the page.
inline bool StandsBefore(const Code& a, const Code& b) {
  return std::pair(a.Begin().Line, a.Begin().From) < std::pair(b.Begin().Line, b.Begin().From);
}

// A byte as the page writes it: where it ends, and whether a mark ("0x", "h") makes it one.
struct WrittenByte {
  CodeByte Byte;
  std::size_t End = 0;
  bool Marked = false;
  bool Repaired = false;
  bool Glued = false;  // the next byte may follow without a blank
};
std::optional<WrittenByte> NumberAt(std::u16string_view line, std::size_t at);
// "<CR>", "[STX]", "(LF)", "ETX", "<Enter>".
std::optional<WrittenByte> ControlAt(std::u16string_view line, std::size_t at);

// Runs of at least two bytes that stand as numbers, in the page's order. Single marked bytes come too.
std::vector<Code> FindNumberCodes(const ManualPage& page);

// Bytes that stand alone on their lines, one below the other, as one code; columns that are too long for one
// code stay as they are.
void JoinVertical(const ManualPage& page, std::vector<Code>& codes);

// Heads that end with the CRC of bytes elsewhere on the page are joined with them.
void JoinByCrc(const ManualPage& page, std::vector<Code>& codes);

// Columns of single bytes, the heads of all codes before all their tails, are joined where their check sums
// leave one way to do so.
void JoinBySums(const ManualPage& page, std::vector<Code>& codes);

// The rest of a code that has run over its line is joined to it.
void JoinWrapped(const ManualPage& page, std::vector<Code>& codes);

// Runs of several codes without a label between are taken apart where their check sums prove it.
void SplitRuns(std::vector<Code>& codes);

// Numbers of the column beside it are cut off a code that does not begin like the others.
void CutNeighbours(std::vector<Code>& codes);
void CutRepeats(std::vector<Code>& codes);

// Of a row's codes that are closed alike the first is sent; what the projector answers stands behind it.
void KeepFirstColumn(const ManualPage& page, std::vector<Code>& codes);
void KeepFirstCell(const ManualPage& page, std::vector<Code>& codes);

// Commands that are written as characters: before a printed terminator, in parentheses, in quotation marks,
// or as members of a family of like tokens.
std::vector<Code> FindCharacterCodes(const ManualPage& page, const std::vector<Code>& numbers);

// The same bytes behind code after code, and a row's own again, are what the projector answers.
void TakeAnswers(const ManualPage& page, std::vector<Code>& codes);

// What stands before command after command in the same cell belongs to them ("* 0 IR 001"); what else could
// is noted.
void TakeLeads(const ManualPage& page, std::vector<Code>& codes);

// Check sums that the page only names are computed where it says how or where other codes show it.
void CompleteCheckSums(const ManualPage& page, std::vector<Code>& codes);

// "XX" in a command stands for the projector's number: 00 where the page says that it reaches all.
void ResolveAddress(const ManualPage& page, Code& code);

CodeBytes Characters(std::u16string_view text);
// The first 32.
SerialString SerialStringOf(const CodeBytes& bytes);
std::vector<std::uint8_t> Values(const CodeBytes& bytes);
bool SameValues(const CodeBytes& a, const CodeBytes& b);

}  // namespace qdm
