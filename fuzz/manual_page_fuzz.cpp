// Any text as a page of a manual: it is read in bounded time, and what is sure stands on the page.
#include "base/code_page.h"
#include "fuzz/fuzzing.h"
#include "manuals/manual_reading.h"
#include "manuals/page.h"
#include "projectors/manual_draft.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qdm {
namespace {

std::vector<std::u16string> LinesOf(const ManualPage& page) {
  std::vector<std::u16string> lines(page.Numbers.empty() ? 0 : page.Numbers.back());
  for (std::size_t i = 0; i < page.Lines.size(); ++i) lines[page.Numbers[i] - 1] = page.Lines[i];
  return lines;
}

void StandsIn(const std::vector<std::u16string>& lines, const std::vector<ManualRange>& ranges) {
  for (const ManualRange& range : ranges) {
    Demand(range.Line >= 1 && range.Line <= lines.size(), "a piece stands on one of the page's lines");
    Demand(range.From < range.To && range.To <= lines[range.Line - 1].size(), "a piece stands in its line");
  }
}

// As a character, in one of the notations for numbers, or by a name.
bool IsPrinted(std::uint8_t byte, const std::u16string& page) {
  constexpr std::u16string_view kDigits = u"0123456789abcdef";
  const std::u16string hex = {kDigits[byte >> 4], kDigits[byte & 15]};
  const std::u16string decimal = FromUtf8(std::to_string(byte));
  return page.find(FoldLetter(CharacterOf(byte))) != std::u16string::npos ||
         page.find(hex) != std::u16string::npos || page.find(decimal) != std::u16string::npos ||
         (byte < 16 && page.find(hex[1]) != std::u16string::npos);
}

void IsOnThePage(const ManualReading& reading, const ManualCommand& command, const std::u16string& page) {
  const auto framed = [&](std::uint8_t byte) {
    const auto in = [byte](const auto& bytes) {
      return std::find(bytes.begin(), bytes.end(), byte) != bytes.end();
    };
    return in(reading.Frame.Before) || in(reading.Frame.Behind);
  };
  Demand(!command.CodeRanges.empty() && !command.LabelRanges.empty(), "a sure command has its places");
  for (std::size_t i = 0; i < command.String.BytesInUse(); ++i) {
    const std::uint8_t byte = command.String.Values[i];
    Demand(byte < 32 || framed(byte) || IsPrinted(byte, page), "a sure command stands on the page");
  }
}

void Look(std::string_view utf8) {
  const std::u16string text = FromUtf8(utf8);
  ManualDraft draft;
  draft.Read(text);
  const ManualReading& reading = draft.Reading();
  const ManualPage page = MakePage(text);
  const std::vector<std::u16string> lines = LinesOf(page);
  StandsIn(lines, reading.Line.Ranges);
  for (const ManualCommand& command : reading.Commands) {
    StandsIn(lines, command.CodeRanges);
    StandsIn(lines, command.LabelRanges);
    Demand(command.String.Count >= 1 && command.String.Count <= 32, "a command has 1 to 32 bytes");
  }
  for (const ManualReply& reply : reading.Replies) StandsIn(lines, reply.Ranges);
  for (const ManualSlot& slot : reading.Slots) {
    Demand(slot.Choice < reading.Commands.size() && slot.Sure == slot.Doubt.empty(),
           "what is not sure says why");
    if (slot.Sure) IsOnThePage(reading, reading.Commands[slot.Choice], page.Folded);
  }
  for (const ManualRow& row : draft.Rows())
    Demand(!row.Ticked || row.Sure, "what is not sure is never taken");
}

}  // namespace
}  // namespace qdm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qdm::Look({reinterpret_cast<const char*>(data), size});
  return 0;
}
