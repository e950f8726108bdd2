#include "serial_strings/volume_format.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

namespace qdm {
namespace {

using enum LevelFormat;

constexpr std::string_view kTooFew = "Error Not Enough Bytes For Message";

VolumeFormat Range(int minimum, int maximum, int bytes, LevelFormat format) {
  VolumeFormat settings;
  settings.MinimumLevel = static_cast<std::int16_t>(minimum);
  settings.MaximumLevel = static_cast<std::int16_t>(maximum);
  settings.FixedStartLevel = settings.MinimumLevel;
  settings.NumberOfBytes = static_cast<std::int16_t>(bytes);
  settings.MessageFormat = format;
  return settings;
}

std::string Sent(const VolumeFormat& format, int level) {
  std::string text;
  for (const std::uint8_t byte : LevelBytes(format, static_cast<std::int16_t>(level))) {
    text.push_back(static_cast<char>(byte));
  }
  return text;
}

// Every rule is broken; mending them in order shows the next.
TEST(VolumeFormat, RulesAreCheckedInTheirOrder) {
  VolumeFormat format = Range(0, 0, 0, HexInAscii);
  format.VolumeStep = 0;
  format.FixedStartLevel = 2000;
  EXPECT_EQ(VolumeFormatError(format), "Error Max = Min Volume");
  format.MaximumLevel = -1;
  EXPECT_EQ(VolumeFormatError(format), "Error Max < Min Volume");
  format.MaximumLevel = 1000;
  EXPECT_EQ(VolumeFormatError(format), "Error Volume Step = 0");
  format.VolumeStep = 1001;
  EXPECT_EQ(VolumeFormatError(format), "Error Volume Step < Level Range");
  format.VolumeStep = 1000;
  EXPECT_EQ(VolumeFormatError(format), "Error Start > Max level");
  format.FixedStartLevel = -1;
  EXPECT_EQ(VolumeFormatError(format), "Error Start < Min level");
  format.UsePowerDown = true;
  EXPECT_EQ(VolumeFormatError(format), "Number Of Byte Not Defined");
  format.NumberOfBytes = 2;
  EXPECT_EQ(VolumeFormatError(format), kTooFew);
  format.NumberOfBytes = 3;
  EXPECT_EQ(VolumeFormatError(format), "");
}

TEST(VolumeFormat, WholeRangeOfLevelsIsNoOverflow) {
  VolumeFormat format = Range(-32768, 32767, 2, RawBytes);
  format.VolumeStep = 32767;
  EXPECT_EQ(VolumeFormatError(format), "");
  EXPECT_EQ(LevelUp(format, 32000), 32767);
  EXPECT_EQ(LevelDown(format, -32000), -32768);
}

TEST(VolumeFormat, BytesMustCarryTheLongestLevel) {
  struct {
    int Minimum, Maximum;
    LevelFormat Format;
    int Needed;  // bytes; 5: more than there are
  } const cases[] = {
      {0, 255, RawBytes, 1},         {0, 256, RawBytes, 2},          {-128, 127, RawBytes, 1},
      {-1, 128, RawBytes, 2},        {-129, 0, RawBytes, 2},         {-32768, 32767, RawBytes, 2},
      {0, 9, DecimalInAscii, 1},     {0, 10, DecimalInAscii, 2},     {-10, 100, DecimalInAscii, 4},
      {-9, 9, DecimalInAscii, 2},    {-100, 9, DecimalInAscii, 4},   {0, 9999, DecimalInAscii, 4},
      {0, 10000, DecimalInAscii, 5}, {-999, 999, DecimalInAscii, 4}, {-1000, 0, DecimalInAscii, 5},
      {0, 15, HexInAscii, 1},        {0, 16, HexInAscii, 2},         {0, 32767, HexInAscii, 4},
      {-1, 15, HexInAscii, 2},       {-16, 15, HexInAscii, 3},       {-4095, 4095, HexInAscii, 4},
      {-4096, 0, HexInAscii, 5},
  };
  for (const auto& c : cases) {
    for (int bytes = 1; bytes <= 4; ++bytes) {
      EXPECT_EQ(VolumeFormatError(Range(c.Minimum, c.Maximum, bytes, c.Format)),
                bytes < c.Needed ? kTooFew : "")
          << c.Minimum << ".." << c.Maximum << " in " << bytes;
    }
  }
}

TEST(VolumeFormat, LevelsBecomeTheirBytes) {
  VolumeFormat format = Range(0, 255, 2, HexInAscii);
  EXPECT_EQ(Sent(format, 10), "0A");
  EXPECT_EQ(Sent(Range(-15, 15, 2, HexInAscii), -1), "FF");
  EXPECT_EQ(Sent(Range(0, 255, 4, HexInAscii), 255), "00FF");
  EXPECT_EQ(Sent(Range(0, 9, 3, DecimalInAscii), 7), "007");
  EXPECT_EQ(Sent(Range(0, 1000, 3, DecimalInAscii), 1000), "1000") << "longer than its bytes: not cut";
  EXPECT_EQ(Sent(Range(-10, 10, 4, DecimalInAscii), 7), "+007");
  EXPECT_EQ(Sent(Range(-10, 10, 4, DecimalInAscii), -7), "-007");
  EXPECT_EQ(Sent(Range(-10, 10, 4, DecimalInAscii), 0), "+000");

  format = Range(0, 1000, 2, RawBytes);
  EXPECT_EQ(Sent(format, 0x1FE), "\xFE\x01");
  format.FirstByteIsHigh = true;
  EXPECT_EQ(Sent(format, 0x1FE), "\x01\xFE");
  format.NumberOfBytes = 1;
  EXPECT_EQ(Sent(format, 0x1FE), "\xFE");
  format.NumberOfBytes = 4;
  EXPECT_EQ(Sent(format, 0x1FE), std::string("\0\0\x01\xFE", 4));
  format.FirstByteIsHigh = false;
  EXPECT_EQ(Sent(format, -2), "\xFE\xFF\xFF\xFF");
}

// Whatever passes the check: as many bytes as chosen, and no two levels alike.
TEST(VolumeFormat, AcceptedSettingsTellTheirLevelsApart) {
  int accepted = 0;
  for (const LevelFormat messageFormat : {HexInAscii, DecimalInAscii, RawBytes}) {
    for (const auto& [minimum, maximum] :
         {std::pair{0, 9}, {0, 300}, {-9, 9}, {-15, 4}, {-300, 300}, {-128, 127}}) {
      for (int bytes = 1; bytes <= 4; ++bytes) {
        const VolumeFormat format = Range(minimum, maximum, bytes, messageFormat);
        if (!VolumeFormatError(format).empty()) continue;
        ++accepted;
        std::set<std::string> seen;
        for (int level = minimum; level <= maximum; ++level) {
          EXPECT_EQ(Sent(format, level).size(), static_cast<std::size_t>(bytes));
          EXPECT_TRUE(seen.insert(Sent(format, level)).second) << level << " looks like another level";
        }
      }
    }
  }
  EXPECT_GT(accepted, 30);
}

TEST(VolumeFormat, PreviewShowsWhatIsSent) {
  VolumeFormat format = Range(-1, 300, 4, RawBytes);
  EXPECT_EQ(PreviewLevel(format, -1).DemoText, "255,255,255,255 or FF,FF,FF,FF");
  EXPECT_EQ(PreviewLevel(format, -1).Label4, "Value = -1 or FFFF in Hex");
  EXPECT_EQ(PreviewLevel(Range(-1, 300, 4, DecimalInAscii), 12).DemoText, "\"+012\"");
  format.MaximumLevel = -1;
  EXPECT_EQ(PreviewLevel(format, 0).DemoText, "ERROR");
  EXPECT_EQ(FirstTrialLevel({100, 5, 1, 50, false}), 50);
  EXPECT_EQ(FirstTrialLevel({100, 5, 1, 50, true}), 5);
}

}  // namespace
}  // namespace qdm
