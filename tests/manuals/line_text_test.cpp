#include "manuals/line_text.h"

#include "base/code_page.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

// "9600 none 1", "-" for what the page does not say.
std::string Read(std::string_view page) {
  const ManualLineSettings line = ReadLineSettings(MakePage(FromUtf8(page)));
  const char* const kParities[] = {"none", "even", "odd"};
  return (line.Speed ? std::to_string(*line.Speed) : "-") + " " +
         (line.Parity ? kParities[static_cast<int>(*line.Parity)] : "-") + " " +
         (line.StopBits ? std::to_string(*line.StopBits) : "-");
}

TEST(ReadLineSettings, UnderstandsListsSentencesAndShortForms) {
  const std::pair<const char*, const char*> pages[] = {
      {"9600 / 8 / N / 1", "9600 none 1"},
      {"19.2 kBaud, even parity, stop 2", "19200 even 2"},
      {"Baudrate9600bps Databit8bit Paritynone Stopbit1bit", "9600 none 1"},
      {"Baud rate 9600bps / 19200bps*\n* Factory setting", "19200 - -"},
      {"Velocidad: 9600 / 19200 bps (ajuste de fábrica: 19200)", "19200 - -"},
      {"Baud rate 2400 to 38400 (default 9600)", "9600 - -"},
      {"Baud rate 2400 to 38400", "- - -"},
      {"Bit rate\n4800 bps\nStop\n1 bit", "4800 - 1"},
      {"Baud rate ....... 19200 bps\nParity ....... No parity\nStop bit ....... One bit", "19200 none 1"},
      {"no parity, 8 data bits, 2 stop bits. Baud rate 38400", "38400 none 2"},
      {"RS-232C 9,600 bps, even parity, Stop bit: 1 bit", "9600 even 1"},
      {"Baudrate 115200 Bit/s (Standard)\nDatenlänge 8 Bit\nParitätsprüfung Kein\nStopp-Bit 1 Bit",
       "115200 none 1"},
      {"波特率: 9600 N 8 1", "9600 none 1"},
      {"波特率 19200 数据位 8 无校验 停止位 1", "19200 none 1"},
      {"Vitesse 9600\nParité: impaire\nBits d'arrêt: 2", "9600 odd 2"},
      {"Baud rate:\nParity\ncheck:\nData bit:\nStop bit:\nOther words\n9600\nNone\n8\n1\nNone",
       "9600 none 1"},
      {"Baud rate: 38400 bps (long cables: 9600 bps)", "38400 - -"},
      {"9600 bps or 19200 bps", "- - -"},
      {"Baud rate 9600 (default), 19200, 38400", "9600 - -"},
      {"Setting 9200bps, 8N", "- none -"},
      {"Start bit: 1 Stop bit: 2", "- - 2"},
      {"Brightness 2400 lumens. Baud rate see page 4", "- - -"},
      {"", "- - -"},
  };
  for (const auto& [page, expected] : pages) EXPECT_EQ(Read(page), expected) << page;
}

}  // namespace
}  // namespace qdm
