// What is understood of the text of a projector manual's page: the line settings, every command that was
// found with its function in the page's own words, and for each string of a projector definition the best
// candidate, its alternatives and whether it is sure. Sure means sure: one function matched one command,
// terminator and wrapper are settled, the check sum is right where the page has one, nothing was shifted.
// Everything else is for somebody to look at. Pages come out of extraction, with torn columns, lost letters
// and rows run together; any text is read, in time linear in its length, and nothing is ever refused.
#pragma once

#include "line/line_settings.h"
#include "serial_strings/string_record.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

// A piece of the text as it was given: a line, counted from 1, and columns in UTF-16 units from 0, `To`
// behind the last one.
struct ManualRange {
  std::size_t Line = 0;
  std::size_t From = 0;
  std::size_t To = 0;

  friend bool operator==(const ManualRange&, const ManualRange&) = default;
};

// What the page says of the serial line; nothing where it does not, or where it says two things.
struct ManualLineSettings {
  std::optional<int> Speed;
  std::optional<LineParity> Parity;
  std::optional<int> StopBits;
  std::vector<ManualRange> Ranges;
};

struct ManualCommand {
  std::string Function;  // in the page's own words, UTF-8
  std::string ReadAs;    // "hexadecimal", "characters, CR added"
  SerialString String;
  std::vector<ManualRange> CodeRanges;   // where its bytes stand, in their order
  std::vector<ManualRange> LabelRanges;  // where its function stands
  SerialString Answer;                   // printed beside it, IGN where it varies; empty where there is none
  std::vector<ManualRange> AnswerRanges;
  bool AnswerWhole = false;  // printed with its end
  // The string of a definition that it could be for: 1 for power on; nothing for all other functions.
  std::optional<int> Slot;
};

// One string of the definition. `Choice` and `Alternatives` are places in `ManualReading::Commands`.
struct ManualSlot {
  int Slot = 0;
  std::size_t Choice = 0;
  std::vector<std::size_t> Alternatives;  // with other bytes than the choice, the likely ones first
  bool Sure = false;
  std::string Doubt;  // why it is not sure: a sentence without its end, UTF-8
};

struct ManualReply {
  int Slot = 0;
  SerialString String;
  std::vector<ManualRange> Ranges;
  bool Sure = false;
};

// What is put round the characters that the page prints for a command.
struct ManualFrame {
  std::vector<std::uint8_t> Before;
  std::vector<std::uint8_t> Behind;
};

struct ManualReading {
  ManualLineSettings Line;
  std::vector<ManualCommand> Commands;  // in the page's order
  std::vector<ManualSlot> Slots;        // in the order of the definition, those with a candidate
  std::vector<ManualReply> Replies;     // in the order of the definition
  ManualFrame Frame;

  bool Empty() const { return Commands.empty() && !Line.Speed && !Line.Parity && !Line.StopBits; }
};

ManualReading ReadManual(std::u16string_view text);
// Pages that belong together, in their order: what one says of the line or of a terminator holds for all.
// Lines count through, as in the pages joined by line feeds.
ManualReading ReadManual(const std::vector<std::u16string>& pages);

// A piece of the page that somebody has marked as a command, read with the notation of the rest.
std::optional<SerialString> ReadManualPiece(const ManualReading& reading, std::u16string_view piece);

}  // namespace qdm
