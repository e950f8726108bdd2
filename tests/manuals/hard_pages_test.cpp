// Pages that leave something unsaid, and pages that contradict what looks right. The makers, models and codes
// are made up.
#include "manuals/reading_of.h"

#include <ostream>
#include <span>

namespace qdm {
namespace {

struct Page {
  const char* Habit;
  const char* Text;
  std::vector<std::string> Slots;

  friend void PrintTo(const Page& page, std::ostream* out) { *out << page.Habit; }
};

class HardPages : public testing::TestWithParam<Page> {};

TEST_P(HardPages, GiveTheirCommandsWithTheirDoubts) { EXPECT_EQ(SlotsOf(GetParam().Text), GetParam().Slots); }

const Page kDoubts[] = {
    {"what stands before command after command belongs to them",
     "Power on   * 0 KY 001\n"
     "Power off  * 0 KY 002\n"
     "Video      * 0 KY 019\n"
     "A carriage return ends each.\n",
     {"1 2A 20 30 20 4B 59 20 30 30 31 0D", "4 2A 20 30 20 4B 59 20 30 31 39 0D",
      "8 2A 20 30 20 4B 59 20 30 30 32 0D"}},
    {"a row that the model does not have",
     "Power on   B1h 01h 01h B3h\n"
     "Power off  B1h 01h 00h B2h\n"
     "Video      B1h 02h 03h B6h\n"
     "S-Video    B1h 02h 04h B7h   not available\n",
     {"1 B1 01 01 B3 sure", "4 B1 02 03 B6 sure", "8 B1 01 00 B2 sure"}},
    {"rows that are marked unlike the others",
     "Power on   B1 01 01 B3   o  o\n"
     "Power off  B1 01 00 B2   o  o\n"
     "Video      B1 02 03 B6   o  o\n"
     "S-Video    B1 02 04 B7   o  -\n",
     {"1 B1 01 01 B3 sure", "4 B1 02 03 B6 sure", "8 B1 01 00 B2 sure", "23 B1 02 04 B7"}},
    {"a check sum that is spoken of and not found",
     "Each message ends with a checksum.\n"
     "Power on   61 01 10 00\n"
     "Power off  61 01 10 01\n"
     "Video      61 01 20 03\n",
     {"1 61 01 10 00", "4 61 01 20 03", "8 61 01 10 01"}},
    {"a beginning that is spoken of and lacks",
     "Every command starts with #.\n"
     "PWN1  Power on\n"
     "PWN0  Power off\n"
     "INP3  Video\n"
     "INP1  RGB\n"
     "A carriage return ends each.\n",
     {"1 50 57 4E 31 0D", "2 49 4E 50 31 0D", "4 49 4E 50 33 0D", "8 50 57 4E 30 0D"}},
    {"a beginning that is named in words",
     "Every command starts with a colon.\n"
     ":PWN1  Power on\n"
     ":PWN0  Power off\n"
     ":INP3  Video\n"
     "A carriage return ends each.\n",
     {"1 3A 50 57 4E 31 0D sure", "4 3A 49 4E 50 33 0D sure", "8 3A 50 57 4E 30 0D sure"}},
    {"a column for each model",
     "Function   M1            M2\n"
     "Power on   01 50 31 0D   01 70 31 0D\n"
     "Power off  01 50 30 0D   01 70 30 0D\n"
     "Video      01 53 34 0D   01 73 34 0D\n",
     {"1 01 50 31 0D", "4 01 53 34 0D", "8 01 50 30 0D"}},
    {"a title of other things",
     "Picture mode\n"
     "Video     VM 1\n"
     "Computer  VM 2\n"
     "Power\n"
     "On        PW 1\n"
     "Off       PW 0\n"
     "A carriage return ends each.\n",
     {"1 50 57 20 31 0D sure", "2 56 4D 20 32 0D", "4 56 4D 20 31 0D", "8 50 57 20 30 0D sure"}},
    {"on and off that look swapped",
     "PW=1   Turns the projector off\n"
     "PW=0   Turns the projector on\n"
     "SC=4   Selects video\n"
     "A carriage return ends each.\n",
     {"1 50 57 3D 30 0D", "4 53 43 3D 34 0D sure", "8 50 57 3D 31 0D"}},
    {"characters that contradict their label",
     "Power on   PWR=OFF<CR>\n"
     "Video      SRC=VGA<CR>\n"
     "Blank on   SOUND=1<CR>\n",
     {"1 50 57 52 3D 4F 46 46 0D", "4 53 52 43 3D 56 47 41 0D", "5 53 4F 55 4E 44 3D 31 0D"}},
    {"a value behind what looks whole",
     "Blank on    BLNK 1\n"
     "Power on    PWON\n"
     "Power off   PWOF\n"
     "Video       VIDE\n"
     "Freeze      FREZ\n"
     "A carriage return ends each.\n",
     {"1 50 57 4F 4E 0D sure", "4 56 49 44 45 0D sure", "5 42 4C 4E 4B 0D", "8 50 57 4F 46 0D sure"}},
    {"answers in a column of their own",
     "Function   Command        Response\n"
     "Power on   4B 31 0D       4F 4B 31 0D\n"
     "Power off  4B 30 0D       4F 4B 30 0D\n"
     "RGB        4C 31 0D       4F 4C 31 0D\n",
     {"1 4B 31 0D", "2 4C 31 0D", "8 4B 30 0D"}},
    {"a name before a value that is closed",
     "SRC A<CR>   RGB\n"
     "SRC D<CR>   DVI\n"
     "PWR ON<CR>  Power on\n",
     {"1 50 57 52 20 4F 4E 0D sure", "2 53 52 43 20 41 0D", "3 53 52 43 20 44 0D"}},
    {"a key that is called like a verb",
     "ENTER   7E 01 12 91\n"
     "VOL+    7E 01 16 95\n"
     "VOL-    7E 01 17 96\n"
     "VIDEO   7E 01 21 A0\n",
     {"4 7E 01 21 A0 sure", "6 7E 01 16 95 sure", "7 7E 01 17 96 sure"}},
    {"queries",
     "Power on   PWR1<CR>\n"
     "Power      GET PWR<CR>\n"
     "Power on?  PWR?<CR>\n",
     {"1 50 57 52 31 0D sure"}},
};
INSTANTIATE_TEST_SUITE_P(Doubts, HardPages, testing::ValuesIn(kDoubts));

const Page kCompleted[] = {
    {"the CRC that only an example shows",
     "Each message closes with a CRC-16 over all bytes before it.\n"
     "Example, power on: 01 06 00 10 00 01 49 CF\n"
     "Power on   01 06 00 10 00 01\n"
     "Power off  01 06 00 10 00 00\n"
     "Video      01 06 00 11 00 03\n",
     {"1 01 06 00 10 00 01 49 CF", "4 01 06 00 11 00 03 99 CE", "8 01 06 00 10 00 00 88 0F"}},
    {"a CRC in words",
     "CRC-16/CCITT, polynomial 1021, start FFFF, high byte first.\n"
     "Power on   21 05 01 CRC\n"
     "Power off  21 05 00 CRC\n",
     {"1 21 05 01 92 BE", "8 21 05 00 82 9F"}},
    {"a sum of all but the first byte",
     "CHK is the sum of all bytes except the first.\n"
     "Power on   0xAA 0x11 0x01 0x01 CHK\n"
     "Power off  0xAA 0x11 0x01 0x00 CHK\n",
     {"1 AA 11 01 01 13", "8 AA 11 01 00 12"}},
    {"blanks where the sum of the others stands",
     "Lamp status  A5 03 01 01 A6\n"
     "RGB      A5 03 02 00 A4\n"
     "DVI      A5 03 02 01 A5\n"
     "Video    A5 03 02 02 __\n",
     {"2 A5 03 02 00 A4 sure", "3 A5 03 02 01 A5 sure", "4 A5 03 02 02 A6"}},
    {"a drawn frame with a check sum",
     "STX  Command  ETX  BCC\n"
     "BCC: exclusive or of the bytes without STX\n"
     "PON   Power on\n"
     "POF   Power off\n"
     "IV1   Video\n"
     "VUP   Volume up\n"
     "VDN   Volume down\n"
     "FRZ   Freeze\n",
     {"1 02 50 4F 4E 03 52", "4 02 49 56 31 03 2D", "6 02 56 55 50 03 50", "7 02 56 44 4E 03 5F",
      "8 02 50 4F 46 03 5A"}},
    {"the projector's number",
     "nn : number of the projector, 00 reaches all\n"
     "Power on   >nnPOW1[CR]\n"
     "Power off  >nnPOW0[CR]\n",
     {"1 3E 30 30 50 4F 57 31 0D", "8 3E 30 30 50 4F 57 30 0D"}},
    {"states that only the characters tell, a label lost",
     "Power   POWER=ON<CR>\n"
     "        POWER=OFF<CR>\n",
     {"1 50 4F 57 45 52 3D 4F 4E 0D", "8 50 4F 57 45 52 3D 4F 46 46 0D"}},
    {"sockets with letters",
     "Input A (RGB)  B1 02 01 B4\n"
     "Input B (RGB)  B1 02 02 B5\n"
     "Input C (Video)  B1 02 03 B6\n",
     {"2 B1 02 01 B4 sure", "3 B1 02 02 B5 sure", "4 B1 02 03 B6 sure"}},
    {"parts in their order, values torn from their meanings",
     "Header ID SP Command SP Parameter CR\n"
     "Header: tells the kind.\n"
     "! (21h): Control command\n"
     "? (3Fh): Query command\n"
     "ID: 7 (fixed)\n"
     "Function\n"
     "Command\n"
     "OPERATE\n"
     "V0F\n"
     "HIDE\n"
     "V00\n"
     "Input\n"
     "V1A\n"
     "Keystone\n"
     "V40\n"
     "Character\n"
     "\"0\"\n"
     "30\n"
     "\"1\"\n"
     "31\n"
     "Character\n"
     "\"0\"\n"
     "\"1\"\n"
     "\"3\"\n"
     "Meaning\n"
     "OFF\n"
     "ON\n"
     "Meaning\n"
     "Y/C\n"
     "VIDEO\n"
     "PC1\n",
     {"1 21 37 20 56 30 46 20 31 0D", "2 21 37 20 56 31 41 20 33 0D", "4 21 37 20 56 31 41 20 31 0D",
      "5 21 37 20 56 30 30 20 31 0D", "8 21 37 20 56 30 46 20 30 0D", "23 21 37 20 56 31 41 20 30 0D",
      "24 21 37 20 56 30 30 20 30 0D"}},
    {"parts with their sizes, blanks lost",
     "Header(1byte),UnitID(2bytes),Command(2bytes),Data(nbytes),End(1byte)\n"
     "Header\n"
     "31 Operatingcommand\n"
     "3F Referencecommand\n"
     "UnitID\n"
     "Thebinarycodeisalways\"7902\".\n"
     "5157 Power\n"
     "Duringstandby\n"
     "31:Turnsonthepower\n"
     "30:Turnsoffthepower\n"
     "4951 Input\n"
     "32:COMP.\n"
     "33:PC\n"
     "36:HDMI1\n"
     "End\n"
     "Thebinarycodeisalways\"0A\".\n",
     {"1 31 79 02 51 57 31 0A", "2 31 79 02 49 51 33 0A", "3 31 79 02 49 51 36 0A",
      "8 31 79 02 51 57 30 0A"}},
    {"parts with signs, names with their values in a text",
     "Change a setting *command=value<CR>\n"
     "Start an action *command<CR>\n"
     "SRQ\n"
     "? Reads the active source:\n"
     "3=composite video, 4=S-video\n"
     "RSRQ\n"
     "3,4,8,? Asks for a source, or reads it:\n"
     "3=composite video, 4=S-video, 8=DVI.\n"
     "SHDN None Cool-down, then standby.\n"
     "W or WAKE None Warm-up, then on.\n"
     "VOLM 0 to 31, +, -, ? Sets or reads the volume.\n",
     {"1 2A 57 0D", "3 2A 52 53 52 51 3D 38 0D", "4 2A 52 53 52 51 3D 33 0D", "6 2A 56 4F 4C 4D 3D 2B 0D",
      "7 2A 56 4F 4C 4D 3D 2D 0D", "8 2A 53 48 44 4E 0D", "23 2A 52 53 52 51 3D 34 0D"}},
    {"rows that name only the next value",
     "Four letters, a blank, the value, CR.\n"
     "&POWR   0   Power off\n"
     "        1   Power on\n"
     "&INPT   11  RGB 1\n"
     "        21  Video\n",
     {"1 26 50 4F 57 52 20 31 0D", "2 26 49 4E 50 54 20 31 31 0D", "4 26 49 4E 50 54 20 32 31 0D",
      "8 26 50 4F 57 52 20 30 0D"}},
    {"values in one cell",
     "The code, two digits and LF.\n"
     "KP   Power   00 off, 01 on\n"
     "KI   Input   00 Video, 02 Computer 1\n",
     {"1 4B 50 30 31 0A", "2 4B 49 30 32 0A", "4 4B 49 30 30 0A", "8 4B 50 30 30 0A"}},
    {"running text",
     "To switch the projector on, send \"LAMP=1\" and a carriage return. To switch it off send \"LAMP=0\"\n"
     "and a carriage return. Send \"IN=RGB\" for the computer input, \"IN=VID\" for composite video.\n",
     {"1 4C 41 4D 50 3D 31 0D", "2 49 4E 3D 52 47 42 0D", "4 49 4E 3D 56 49 44 0D",
      "8 4C 41 4D 50 3D 30 0D"}},
    {"rows that begin with capitals",
     "SET PWR ON    Met le projecteur sous tension\n"
     "SET PWR OFF   Met le projecteur hors tension\n"
     "SET SRC VGA   Sélectionne l'entrée VGA\n"
     "SET SRC SVID  Sélectionne l'entrée S-vidéo\n"
     "Terminateur <CR><LF>\n",
     {"1 53 45 54 20 50 57 52 20 4F 4E 0D 0A", "2 53 45 54 20 53 52 43 20 56 47 41 0D 0A sure",
      "8 53 45 54 20 50 57 52 20 4F 46 46 0D 0A", "23 53 45 54 20 53 52 43 20 53 56 49 44 0D 0A sure"}},
    {"characters as the numbers begin",
     "POWER ON\n"
     "77!\n"
     "POWER OFF\n"
     "77\"\n"
     "Video\n"
     "77_v1\n"
     "( Hex Values:\n"
     "37 37 21 0D\n"
     ")\n"
     "( Hex Values:\n"
     "37 37 22 0D\n"
     ")\n",
     {"1 37 37 21 0D", "4 37 37 5F 76 31 0D", "8 37 37 22 0D"}},
    {"a label behind other words on one line",
     "Remote codes Baud rate: 9600 Data bits: 8 Parity: None Stop bits: 1 Power On 38 30 31 73 21 0D Power "
     "Off 38 30 31 73 20 0D Freeze 38 30 31 73 25 0D\n",
     {"1 38 30 31 73 21 0D", "8 38 30 31 73 20 0D"}},
    {"letters and digits that begin alike",
     "CMDP0N  Power on\n"
     "CMDP0F  Power off\n"
     "CMDV1D  Video\n"
     "CMDB1K  Blank on\n"
     "A carriage return ends each.\n",
     {"1 43 4D 44 50 30 4E 0D sure", "4 43 4D 44 56 31 44 0D sure", "5 43 4D 44 42 31 4B 0D sure",
      "8 43 4D 44 50 30 46 0D sure"}},
};
INSTANTIATE_TEST_SUITE_P(Completed, HardPages, testing::ValuesIn(kCompleted));

TEST(HardPagesInPieces, NeverGiveWhatIsTooLongOrMissing) {
  for (const auto& pages : {std::span<const Page>(kDoubts), std::span<const Page>(kCompleted)}) {
    for (const Page& page : pages) {
      const std::u16string text = FromUtf8(page.Text);
      for (std::size_t cut = 0; cut < text.size(); cut += 11) {
        for (const ManualReading& reading : {ReadManual(text.substr(cut)), ReadManual(text.substr(0, cut))}) {
          for (const ManualCommand& command : reading.Commands) EXPECT_LE(command.String.Count, 32);
          for (const ManualSlot& slot : reading.Slots) EXPECT_LT(slot.Choice, reading.Commands.size());
        }
      }
    }
  }
}

}  // namespace
}  // namespace qdm
