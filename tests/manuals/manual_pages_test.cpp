// Whole pages, a habit of real manuals each, with all that is read on them: golden/pages.txt. The makers,
// models and codes are made up.
#include "manuals/reading_of.h"
#include "support/files.h"

#include <sstream>

namespace qdm {
namespace {

void Put(std::ostream& out, const std::vector<ManualRange>& ranges) {
  for (const ManualRange& range : ranges) out << " " << range.Line << ":" << range.From << "-" << range.To;
}

// "=> 1 05 00 11 16 sure" for each string of the definition, after what leads to it.
void Put(std::ostream& out, const ManualReading& reading) {
  const ManualLineSettings& line = reading.Line;
  out << "line " << line.Speed.value_or(0) << "," << (line.Parity ? static_cast<int>(*line.Parity) : -1)
      << "," << line.StopBits.value_or(0);
  Put(out, line.Ranges);
  out << "; frame";
  for (const int byte : reading.Frame.Before) out << " " << byte;
  out << " ..";
  for (const int byte : reading.Frame.Behind) out << " " << byte;
  for (const ManualCommand& command : reading.Commands) {
    out << "\n" << command.Slot.value_or(-1) << " \"" << command.Function << "\"";
    Put(out, command.LabelRanges);
    out << ": " << HexBytes(command.String) << " (" << command.ReadAs << ")";
    Put(out, command.CodeRanges);
  }
  for (const ManualReply& reply : reading.Replies) {
    out << "\n<= " << reply.Slot << " " << HexBytes(reply.String) << (reply.Sure ? " sure" : "");
    Put(out, reply.Ranges);
  }
  const std::vector<std::string> slots = SlotsOf(reading);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    out << "\n=> " << slots[i];
    for (const std::size_t other : reading.Slots[i].Alternatives)
      out << " or " << HexBytes(reading.Commands[other].String);
    if (!reading.Slots[i].Doubt.empty()) out << "; " << reading.Slots[i].Doubt;
  }
  out << "\n";
}

// A page stands between its title and a line of dashes; see ExpectGolden.
TEST(ManualPages, AreReadAsTheyAlwaysHaveBeen) {
  constexpr const char* kFile = "manuals/golden/pages.txt";
  std::istringstream lines(TextOfFile(PathFromUtf8(QDM_SOURCE_DIR "/tests") / kFile));
  std::ostringstream told;
  std::string page;
  bool inPage = false;
  for (std::string line; std::getline(lines, line);) {
    const bool title = line.starts_with("==== ");
    if (title || inPage) told << line << "\n";
    if (title) page.clear();
    if (inPage && line == "----") Put(told, ReadManual(FromUtf8(page)));
    inPage = title || (inPage && line != "----");
    if (inPage && !title) page += line + "\n";
  }
  ExpectGolden(kFile, told.str());
}

TEST(ManualReading, NamesThePlacesOfWhatItUnderstood) {
  const ManualReading reading = ReadManual(u"Codes\n\nPower On: 02 50 4F 4E 03\n");
  ASSERT_EQ(reading.Commands.size(), 1U);
  EXPECT_EQ(reading.Commands[0].Function, "Power On");
  EXPECT_EQ(reading.Commands[0].Slot, 1);
  EXPECT_THAT(reading.Commands[0].CodeRanges, testing::ElementsAre(ManualRange{3, 10, 24}));
  EXPECT_THAT(reading.Commands[0].LabelRanges, testing::ElementsAre(ManualRange{3, 0, 8}));
}

TEST(ManualReading, TakesPagesThatBelongTogether) {
  const ManualReading reading = ReadManual(std::vector<std::u16string>{
      u"Baud rate: 19200\nParity: even\nStop bits: 2\nA carriage return closes each command.",
      u"Power ON PWR ON\nPower OFF PWR OFF\nVideo SOURCE 41"});
  EXPECT_EQ(reading.Line.Speed, 19200);
  EXPECT_THAT(SlotsOf(reading), testing::Contains("1 50 57 52 20 4F 4E 0D sure"));
  EXPECT_EQ(reading.Commands[0].CodeRanges[0].Line, 5U);
}

TEST(ManualReading, ReadsAMarkedPieceWithTheFrameOfThePage) {
  const ManualReading reading = ReadManual(u"A carriage return closes each command.\nPower ON: PWR ON");
  const auto read = [&](std::u16string_view piece) {
    const auto string = ReadManualPiece(reading, piece);
    return string ? HexBytes(*string) : "nothing";
  };
  EXPECT_EQ(read(u"PWR OFF"), "50 57 52 20 4F 46 46 0D");
  EXPECT_EQ(read(u"\"PWR OFF\"[CR]"), "50 57 52 20 4F 46 46 0D");
  EXPECT_EQ(read(u"0x02 0x10\n0x12"), "02 10 12");
  EXPECT_EQ(read(u" "), "nothing");
}

}  // namespace
}  // namespace qdm
