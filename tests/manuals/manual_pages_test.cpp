// Whole pages, a habit of real manuals each. The makers, models and codes are made up.
#include "manuals/reading_of.h"

#include <ostream>

namespace qdm {
namespace {

struct Page {
  const char* Habit;
  const char* Text;
  std::vector<std::string> Slots;

  friend void PrintTo(const Page& page, std::ostream* out) { *out << page.Habit; }
};

class ManualPages : public testing::TestWithParam<Page> {};

TEST_P(ManualPages, GiveTheirCommands) { EXPECT_EQ(SlotsOf(GetParam().Text), GetParam().Slots); }

const Page kNotations[] = {
    {"0x, the label left",
     "To switch the projector on, send the string: 0x05,0x00,0x11,0x16\n"
     "To switch the projector off, send the string: 0x05,0x01,0x11,0x17\n"
     "Blank on - send 0x05,0x07,0x11,0x1D\n",
     {"1 05 00 11 16 sure", "5 05 07 11 1D sure", "8 05 01 11 17 sure"}},
    {"bare pairs, the label right, the characters with a placeholder",
     "#XX10 1 23 30 31 31 30 20 31 0D Power ON\n"
     "#XX10 0 23 30 31 31 30 20 30 0D Power OFF\n"
     "#XX12 1 23 30 31 31 32 20 31 0D AV Mute On\n"
     "#XX12 0 23 30 31 31 32 20 30 0D Off\n"
     "#XX13 1 23 30 31 31 33 20 31 0D Mute On\n",
     {"1 23 30 31 31 30 20 31 0D sure", "5 23 30 31 31 32 20 31 0D sure", "8 23 30 31 31 30 20 30 0D sure",
      "24 23 30 31 31 32 20 30 0D sure"}},
    {"rows run together",
     "POWER ON07H00H00H07HPOWER OFF07H01H00H08H\n"
     "INPUT SELECT COMPUTER 107H03H01H0BH\n"
     "INPUT SELECT VIDEO07H03H06H10H PICTURE MUTE ON 07H10H00H17H\n",
     {"1 07 00 00 07 sure", "2 07 03 01 0B sure", "4 07 03 06 10 sure", "5 07 10 00 17 sure",
      "8 07 01 00 08 sure"}},
    {"a code over two lines",
     "Einschalten 0x09 0x01 0x02 0x03 0x10\n"
     "Ausschalten 0x09 0x01 0x02 0x04 0x11\n"
     "Bild stumm ein 0x09 0x01 0x02 0x05\n0x12\n",
     {"1 09 01 02 03 10 sure", "5 09 01 02 05 12", "8 09 01 02 04 11 sure"}},
    {"a byte a line, Chinese", "举例 开机命令\n--> 0xB1\n0xEF\n0x10\n0x05\n0xC6\n", {"1 B1 EF 10 05 C6"}},
    {"characters and numbers confirm each other",
     "POWER ON\n[STX] P O N [ETX]\n02h 50h 4Fh 4Eh 03h\nPOWER OFF\n[STX] P O F [ETX]\n02h 50h 4Fh 46h 03h\n"
     "INPUT VIDEO\n[STX] V I D [ETX]\n02h 56h 49h 44h 03h\n",
     {"1 02 50 4F 4E 03 sure", "4 02 56 49 44 03 sure", "8 02 50 4F 46 03 sure"}},
    {"a capital letter O for a digit",
     "Function Command\nPower (PWRO) Turns power off\nPower (PWR1) Turns power on\n",
     {"1 28 50 57 52 31 29 sure", "8 28 50 57 52 30 29"}},
};
INSTANTIATE_TEST_SUITE_P(Notations, ManualPages, testing::ValuesIn(kNotations));

const Page kCharacters[] = {
    {"terminator in a footnote, characters beside numbers",
     "Function ASCII HEX\nPower On PON 50 4F 4E\nPower Off POF 50 4F 46\nVideo IVD 49 56 44\n"
     "S-Video ISV 49 53 56\nPicture Mute On PMl 50 4D 31\nSound Mute On SM1 53 4D 31\n"
     "Every command is followed by a carriage return (0Dh).\n",
     {"1 50 4F 4E 0D sure", "4 49 56 44 0D sure", "5 50 4D 31 0D", "8 50 4F 46 0D sure",
      "23 49 53 56 0D sure"}},
    {"words and values behind their labels",
     "Power ON PWR ON\nPower OFF PWR OFF\nInput Computer SOURCE 11\nInput Video SOURCE 41\n"
     "A/V Mute On MUTE ON\nVolume Up VOL INC\nEach command is terminated with a carriage return.\n",
     {"1 50 57 52 20 4F 4E 0D sure", "2 53 4F 55 52 43 45 20 31 31 0D sure",
      "4 53 4F 55 52 43 45 20 34 31 0D sure", "5 4D 55 54 45 20 4F 4E 0D sure",
      "6 56 4F 4C 20 49 4E 43 0D sure", "8 50 57 52 20 4F 46 46 0D sure"}},
    {"a leading CR, and rows that the model does not have",
     "Write Power On <CR>!pw=on%<CR> YES\nWrite Power off <CR>!pw=off%<CR> YES\n"
     "Write COMPUTER <CR>!in=RGB%<CR> NO\nRead Power Status <CR>!pw=?%<CR> YES\n",
     {"1 0D 21 70 77 3D 6F 6E 25 0D sure", "8 0D 21 70 77 3D 6F 66 66 25 0D sure"}},
    {"STX and ETX with their numbers",
     "POWER ON: STX(02h) PON ETX(03h)\nPOWER OFF: STX(02h) POF ETX(03h)\nVIDEO: STX(02h) VID ETX(03h)\n",
     {"1 02 50 4F 4E 03 sure", "4 02 56 49 44 03 sure", "8 02 50 4F 46 03 sure"}},
    {"a number behind quoted characters",
     "Power on: \"PON\" 0Dh\nPower off: 'P' 'O' 'F' 0Dh\nVideo input: \"VID\", 0x0D\n",
     {"1 50 4F 4E 0D sure", "4 56 49 44 0D sure", "8 50 4F 46 0D sure"}},
    {"between ideographs",
     "开机PWR ON关机PWR OFF电脑1:SRC 11 视频 SRC 41 S视频 SRC 42\n命令以回车结束 (0DH)\n",
     {"1 50 57 52 20 4F 4E 0D", "2 53 52 43 20 31 31 0D", "4 53 52 43 20 34 31 0D",
      "8 50 57 52 20 4F 46 46 0D", "23 53 52 43 20 34 32 0D"}},
    {"behind a colon, in lower case",
     "Power On: op lamp.on\nPower Off: op lamp.off\nBlank On: op dark.on\nAll commands are terminated by "
     "<CR>\n",
     {"1 6F 70 20 6C 61 6D 70 2E 6F 6E 0D sure", "5 6F 70 20 64 61 72 6B 2E 6F 6E 0D sure",
      "8 6F 70 20 6C 61 6D 70 2E 6F 66 66 0D sure"}},
    {"a caption before code after code",
     "Power ON\nSend string: 02,10,00,12\nPower OFF\nSend string: 02,11,00,13\nVideo\nSend string: "
     "02,13,06,1B\n",
     {"1 02 10 00 12", "4 02 13 06 1B", "8 02 11 00 13"}},
    {"blanks inside quotation marks",
     "Command \"POWR   1\"[CR] Power On\nCommand \"POWR   0\"[CR] Power Off\n",
     {"1 50 4F 57 52 20 20 20 31 0D sure", "8 50 4F 57 52 20 20 20 30 0D sure"}},
    {"a sign in front, a value, the same as its answer, queries",
     "%7POWR 1 %7POWR 1 Power On\n%7POWR 0 %7POWR 0 Power Off\n%7POWR ? %7POWR n\n%7DARK 31 %7DARK 31 AV "
     "Mute On\n%7DARK 30 %7DARK 30 AV Mute Off\nEach command ends with CR (0Dh).\n",
     {"1 25 37 50 4F 57 52 20 31 0D sure", "5 25 37 44 41 52 4B 20 33 31 0D",
      "8 25 37 50 4F 57 52 20 30 0D sure", "24 25 37 44 41 52 4B 20 33 30 0D sure"}},
    {"answers beside the commands",
     "Power on: *POWER=ON<CR>  reply *ACK\nPower off: *POWER=OFF<CR> reply *ACK\nRGB: *INPUT=RGB<CR>\n",
     {"1 2A 50 4F 57 45 52 3D 4F 4E 0D sure", "2 2A 49 4E 50 55 54 3D 52 47 42 0D sure",
      "8 2A 50 4F 57 45 52 3D 4F 46 46 0D sure"}},
    {"in a sentence",
     "Type a command and press <Enter>; for example, type ON<Enter> to start the system.\n",
     {"1 4F 4E 0D sure"}},
    {"a prefix that only the examples show",
     "[Example] Switch on\n37 37 21 0D\nCommand received\nMake RGB the input\n37 37 5F 72 31 0D\nCommand "
     "received\n"
     "Names ASCII HEX\nPOWER ON\n!\n21h\nPOWER OFF\n\"\n22h\nINPUT RGB1\n_r1\n5Fh\n72h\n31h\nINPUT "
     "VIDEO1\n_v1\n"
     "5Fh\n76h\n31h\n",
     {"1 37 37 21 0D", "2 37 37 5F 72 31 0D", "4 37 37 5F 76 31 0D", "8 37 37 22 0D"}},
};
INSTANTIATE_TEST_SUITE_P(Characters, ManualPages, testing::ValuesIn(kCharacters));

const Page kTornPages[] = {
    {"all labels, then all codes, with titles among the labels",
     "Power\nOn\nOff\nShutter\nOpen\nClose\nInput\nRGB\nVideo\n"
     "\\x05\\x01\\x00\\x06\n\\x05\\x02\\x00\\x07\n\\x05\\x10\\x00\\x15\n\\x05\\x11\\x00\\x16\n"
     "\\x05\\x20\\x01\\x26\n\\x05\\x20\\x02\\x27\n",
     {"1 05 01 00 06", "2 05 20 01 26", "4 05 20 02 27", "5 05 11 00 16", "8 05 02 00 07", "24 05 10 00 15"}},
    {"codes in one run, told apart by their check sums",
     "POWER ON\nPOWER OFF\nPICTURE MUTE ON\nPICTURE MUTE OFF\n"
     "07H00H00H07H07H01H00H08H\n07H10H00H17H07H11H00H18H\n",
     {"1 07 00 00 07", "5 07 10 00 17", "8 07 01 00 08", "24 07 11 00 18"}},
    {"cells, the code first, a label lost",
     "Command\nFunction\nK00\nTurn the projector ON\nK01\nTurn the projector OFF\n(immediately OFF)\nK02\n"
     "Turn the projector OFF\nK05\nSelect Computer 1\nK09\nK0A\nVolume -\nK0B\nSound mute ON\nK0D\nVideo "
     "mute ON\n"
     "A carriage return closes each command.\n",
     {"1 4B 30 30 0D sure", "2 4B 30 35 0D sure", "5 4B 30 44 0D", "7 4B 30 41 0D", "8 4B 30 31 0D sure"}},
    {"one character a line, column by column",
     "CONTROL CONTENTS\nPOWER ON\nPOWER OFF\nBLACK SCREEN ON\nBLACK SCREEN OFF\nOK OR ERR\nOK OR ERR\nOK OR "
     "ERR\n"
     "OK OR ERR\nP\nP\nD\nD\nW\nW\nR\nR\n_\n_\n_\n_\n1\n0\n1\n0\nReturn code (0DH)\n",
     {"1 50 57 20 31 0D", "5 44 52 20 31 0D", "8 50 57 20 30 0D", "24 44 52 20 30 0D"}},
    {"headings in front of the first of their sections",
     "2.1 POWER ON\n2.2 POWER OFF (immediate)\n"
     "Command “K00”[CR] (Hex: 4B 30 30 0d)\nDetails\nNothing happens when it runs\nReturn\nOK\n[ACK] [CR]\n"
     "Command “K01”[CR] (Hex: 4B 30 31 0d)\nDetails\nThe fan keeps going\nReturn\nOK\n[ACK] [CR]\n",
     {"1 4B 30 30 0D", "8 4B 30 31 0D"}},
};
INSTANTIATE_TEST_SUITE_P(Torn, ManualPages, testing::ValuesIn(kTornPages));

const Page kForms[] = {
    {"brackets, one lost",
     "01. Power (Command: m a)\nTransmission [m][a][ ][Set ID][ ][Data][Cr]\nData\n00:\nPower Off\n01 "
     ":\nPower On\n"
     "Ack [a][ ][Set ID][ ][OK][Data][x]\n02. Aspect\nTransmission [m][c][ ][Set ID][ ][Data][Cr]\n03. Blank "
     "Image\n"
     "Transmission [m][d][ ][Set ID][Data][Cr]\nData 00:\nScreen Mute Off\n01:\nScreen Mute On\n",
     {"1 6D 61 20 30 31 20 30 31 0D", "5 6D 64 20 30 31 20 30 31 0D", "8 6D 61 20 30 31 20 30 30 0D",
      "24 6D 64 20 30 31 20 30 30 0D"}},
    {"a name below its values, the shape from examples",
     "Power (PWR0) Turns power off\nPower (PWR1) Turns power on\nBlank\n0: off\n1: on\nBLK at RW 0 1 0\n",
     {"1 28 50 57 52 31 29 sure", "5 28 42 4C 4B 31 29", "8 28 50 57 52 30 29 sure", "24 28 42 4C 4B 30 29"}},
    {"a byte left open, its values behind the labels",
     "#XX00 n 23 30 30 20 a 0D Power Control n = 1 Power ON (a=31)\n2 Power OFF (a=32)\n"
     "#XX01 1 23 30 31 20 31 0D Resync\n",
     {"1 23 30 30 20 31 0D", "8 23 30 30 20 32 0D"}},
    {"a field",
     "Type the command and press <Enter>.\nCommand Response\nset input=[field] input=[field] No\nField "
     "Description\n"
     "VGA1 Switches to the VGA 1 connector.\nComposite Switches to the Composite connector.\n",
     {"2 73 65 74 20 69 6E 70 75 74 3D 56 47 41 31 0D",
      "4 73 65 74 20 69 6E 70 75 74 3D 43 6F 6D 70 6F 73 69 74 65 0D"}},
};
INSTANTIATE_TEST_SUITE_P(Forms, ManualPages, testing::ValuesIn(kForms));

const Page kComposed[] = {
    {"a check sum that is named and explained",
     "Power on   7C 02 10 01 CHK\nPower off  7C 02 10 00 CHK\nVideo      7C 02 20 03 CHK\n"
     "CHK is the exclusive or of all bytes before it.\n",
     {"1 7C 02 10 01 6F", "4 7C 02 20 03 5D", "8 7C 02 10 00 6E"}},
    {"a check sum as the other codes show it",
     "Power on 3D 01 10 4E\nPower off 3D 01 11 4F\nVideo 3D 02 21 60\nS-Video 3D 02 22 <CKS>\n",
     {"1 3D 01 10 4E sure", "4 3D 02 21 60 sure", "8 3D 01 11 4F sure", "23 3D 02 22 61"}},
    {"a prefix that is drawn, name and value in cells",
     "A command is ! + code + parameter + CR.\nPW  1  Power on\nPW  0  Power off\nIN  3  Video\n"
     "BK  1  Blank on\n",
     {"1 21 50 57 31 0D", "4 21 49 4E 33 0D", "5 21 42 4B 31 0D", "8 21 50 57 30 0D"}},
    {"start and check sum that are drawn",
     "Structure: start byte 0xE2, address 0x01, command, value, checksum\nThe checksum is the sum of all "
     "bytes.\n0x30  0x01  Power on\n0x30  0x00  Power off\n0x31  0x02  Video\n",
     {"1 E2 01 30 01 14", "4 E2 01 31 02 16", "8 E2 01 30 00 13"}},
    {"a header in words",
     "Commands begin with the header BB 00 and end with 0D.\nPower on   11 01\nPower off  11 00\nVideo      "
     "12 03\n",
     {"1 BB 00 11 01 0D", "4 BB 00 12 03 0D", "8 BB 00 11 00 0D"}},
    {"heads and data torn, joined by their CRC",
     "Power on\nA1 B2\nPower off\nA1 B2\nRGB1\nA1 B2\nVideo\nA1 B2\nS-Video\nA1 B2\nCRC\n04\nD8 36\n04\n19 "
     "F6\n04\n28 36\n"
     "04\nE9 F6\n04\n6A A4\nData\n01 00\n60 01\n01 00\n60 00\n01 00\n20 00\n01 00\n20 01\n01 00\n25 07\n",
     {"1 A1 B2 04 D8 36 01 00 60 01", "2 A1 B2 04 28 36 01 00 20 00", "4 A1 B2 04 E9 F6 01 00 20 01",
      "8 A1 B2 04 19 F6 01 00 60 00", "23 A1 B2 04 6A A4 01 00 25 07"}},
    {"short codes and one whole example",
     "Example: power on is A5 04 10 01 B0\nPower on 10 01\nPower off 10 00\nVideo 20 03\nThe last byte is "
     "the "
     "exclusive or of all others.\n",
     {"1 A5 04 10 01 B0", "4 A5 04 20 03 82", "8 A5 04 10 00 B1"}},
    {"heads above tails, joined by their sums",
     "Power on\nPower off\nRGB\nVideo\nCode\n02H\n00H\n00H\n02H\n01H\n00H\n02H\n03H\n00H\n03H\n00H\n"
     "00H\n02H\n01H\n04H\n01H\n02H\n08H\n01H\n06H\n0CH\n",
     {"1 02 00 00 00 02", "2 02 03 00 01 02 08", "4 02 03 00 01 06 0C", "8 02 01 00 01 04"}},
    {"a column for each state",
     "Function     On              Off\nPower        FE 01 01 00     FE 01 02 FF\n"
     "Blank        FE 02 01 01     FE 02 02 00\nSound mute   FE 03 01 02     FE 03 02 01\n",
     {"1 FE 01 01 00", "5 FE 02 01 01", "8 FE 01 02 FF", "24 FE 02 02 00"}},
    {"codes that have run into their labels",
     "CodeItemK00POWER ONK06VGA2\nK01POWER OFFK33Video K05VGA1\nA carriage return ends each.\n",
     {"1 4B 30 30 0D", "2 4B 30 35 0D", "3 4B 30 36 0D", "4 4B 33 33 0D", "8 4B 30 31 0D"}},
    {"dotted rows of plain words",
     "power on ....... pwr on\npower off ...... pwr off\nselect video .... input video\n"
     "A carriage return ends each line.\n",
     {"1 70 77 72 20 6F 6E 0D sure", "4 69 6E 70 75 74 20 76 69 64 65 6F 0D sure",
      "8 70 77 72 20 6F 66 66 0D sure"}},
    {"names of one shape, each with few values",
     "POWR1  Power on\nPOWR0  Power off\nINPT1  RGB 1\nINPT2  Video\nA carriage return ends each.\n",
     {"1 50 4F 57 52 31 0D sure", "2 49 4E 50 54 31 0D sure", "4 49 4E 50 54 32 0D sure",
      "8 50 4F 57 52 30 0D sure"}},
    {"pairs of digits that are characters",
     "Power\nOn\nqa 01 01[CR]\nOff\nqa 01 00[CR]\nSource\nRGB\nqb 01 02[CR]\n",
     {"1 71 61 20 30 31 20 30 31 0D", "2 71 62 20 30 31 20 30 32 0D", "8 71 61 20 30 31 20 30 30 0D"}},
};
INSTANTIATE_TEST_SUITE_P(Composed, ManualPages, testing::ValuesIn(kComposed));

const Page kTraps[] = {
    {"one command toggles",
     "Power On/Off 02 11 22 33\nBlank toggle 02 11 23 34\nFreeze On 02 11 24 35\n",
     {}},
    {"sound mute alone", "Mute On 0x02 0x10 0x11 0x12\nMute Off 0x02 0x10 0x12 0x13\n", {}},
    {"the table against the text",
     "Power is the exception: there 0 is off and 1 is on.\nPower (PWR0) Turns power on\nPower (PWR1) Turns "
     "power off\n",
     {"1 28 50 57 52 31 29", "8 28 50 57 52 30 29"}},
    {"an off that asks",
     "Power On 02 50 4F 4E 03\nOff (with confirmation message) 02 50 4F 46 03\n"
     "Power Off without confirmation 02 50 53 44 03\n",
     {"1 02 50 4F 4E 03 sure", "8 02 50 53 44 03 sure"}},
    {"a check sum that is wrong",
     "Power On 02 10 00 12\nPower Off 02 11 00 13\nVideo 02 12 00 14\nS-Video 02 13 00 16\n",
     {"1 02 10 00 12 sure", "4 02 12 00 14 sure", "8 02 11 00 13 sure", "23 02 13 00 16"}},
    {"a lost digit",
     "Power On 7E 30 31 20 3 0D\nPower Off 7E 30 31 20 30 0D\nVideo 7E 30 32 20 31 0D\n",
     {"4 7E 30 32 20 31 0D sure", "8 7E 30 31 20 30 0D sure"}},
    {"a check sum that nothing explains", "Power On A9 17 2E 01 CHK\nPower Off A9 17 2F 01 CHK\n", {}},
    {"decimal numbers",
     "Power on: 60,48,49,13 (decimal)\nPower off: 60,48,50,13 (decimal)\n",
     {"1 3C 30 31 0D", "8 3C 30 32 0D"}},
    {"a function of its own below one that is off",
     "SHUTTER CLOSED  CF 13 01 E3\nSHUTTER OFF  CF 13 00 E2\nPOWER ON  CF 10 01 E0\n",
     {"1 CF 10 01 E0 sure", "5 CF 13 01 E3 sure", "24 CF 13 00 E2"}},
    {"sockets that are numbered, not their kinds",
     "Input 1 (VGA): in 1<CR>\nInput 2 (Video): in 2<CR>\nMute picture: mu 1<CR>\nUnmute picture: mu 0<CR>\n",
     {"2 69 6E 20 31 0D sure", "4 69 6E 20 32 0D sure", "5 6D 75 20 31 0D", "24 6D 75 20 30 0D sure"}},
    {"another word round a command",
     "PWR ON Einschalten\nPWR OFF Ausschalten\nMUTE ON Bild dunkel\nMUTE OFF Bild wieder ein\nAMUTE ON Ton "
     "aus\nAMUTE OFF Ton ein\nCR closes each.\n",
     {"1 50 57 52 20 4F 4E 0D sure", "5 4D 55 54 45 20 4F 4E 0D", "8 50 57 52 20 4F 46 46 0D sure",
      "24 4D 55 54 45 20 4F 46 46 0D"}},
    {"a line feed that only answers have",
     "PWN1 Power on\nPWN0 Power off\nINP1 VGA\nINP3 Video\nEach command ends with CR.\n"
     "The projector answers OK<CR><LF>.\n",
     {"1 50 57 4E 31 0D sure", "2 49 4E 50 31 0D sure", "4 49 4E 50 33 0D sure", "8 50 57 4E 30 0D sure"}},
    {"columns of answers",
     "Power on 3C 50 31 3E 3C 41 31 3E 3C 4E 3E\nPower off 3C 50 30 3E 3C 41 30 3E 3C 4E 3E\n"
     "Video 3C 49 33 3E 3C 41 33 3E 3C 4E 3E\n",
     {"1 3C 50 31 3E", "4 3C 49 33 3E", "8 3C 50 30 3E"}},
    {"a format without commands",
     "Header B1 + EF + 03 + 06 + 00 + CRC_low + CRC_high\nSetting code low high\n",
     {}},
};
INSTANTIATE_TEST_SUITE_P(Traps, ManualPages, testing::ValuesIn(kTraps));

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

// Whatever is cut off a page, what is left is read without harm, and nothing appears that the page never had.
TEST(ManualReading, ReadsAnyPieceOfAPage) {
  for (const auto& pages :
       {std::span<const Page>(kNotations), std::span<const Page>(kCharacters),
        std::span<const Page>(kTornPages), std::span<const Page>(kForms), std::span<const Page>(kComposed)}) {
    for (const Page& page : pages) {
      const std::u16string text = FromUtf8(page.Text);
      for (std::size_t cut = 0; cut < text.size(); cut += 7) {
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
