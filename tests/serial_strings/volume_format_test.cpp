#include "serial_strings/volume_format.h"

#include <gtest/gtest.h>

#include <array>
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
  const struct {
    std::int16_t VolumeFormat::*Member;
    std::int16_t Value;
    std::string_view Error;
  } steps[] = {{&VolumeFormat::MaximumLevel, -1, "Error Max < Min Volume"},
               {&VolumeFormat::MaximumLevel, 1000, "Error Volume Step = 0"},
               {&VolumeFormat::VolumeStep, 1001, "Error Volume Step < Level Range"},
               {&VolumeFormat::VolumeStep, 1000, "Error Start > Max level"},
               {&VolumeFormat::FixedStartLevel, -1, "Error Start < Min level"},
               {&VolumeFormat::FixedStartLevel, 0, "Number Of Byte Not Defined"},
               {&VolumeFormat::NumberOfBytes, 2, kTooFew},
               {&VolumeFormat::NumberOfBytes, 3, ""}};
  for (const auto& step : steps) {
    format.*step.Member = step.Value;
    EXPECT_EQ(VolumeFormatError(format), step.Error);
  }
}

TEST(VolumeFormat, BytesMustCarryTheLongestLevel) {
  const auto needs = [](int bytes, int minimum, int maximum, LevelFormat format) {
    EXPECT_EQ(VolumeFormatError(Range(minimum, maximum, bytes - 1, format)),
              bytes == 1 ? "Number Of Byte Not Defined" : kTooFew);
    EXPECT_EQ(VolumeFormatError(Range(minimum, maximum, bytes, format)), "") << minimum << ".." << maximum;
  };
  for (const auto& [minimum, maximum, bytes] :
       {std::array{0, 255, 1}, {0, 256, 2}, {-128, 127, 1}, {-1, 128, 2}, {-129, 0, 2}})
    needs(bytes, minimum, maximum, RawBytes);
  for (const auto& [minimum, maximum, bytes] :
       {std::array{0, 9, 1}, {0, 10, 2}, {-9, 9, 2}, {-10, 100, 4}, {0, 9999, 4}})
    needs(bytes, minimum, maximum, DecimalInAscii);
  for (const auto& [minimum, maximum, bytes] :
       {std::array{0, 15, 1}, {0, 16, 2}, {-1, 15, 2}, {-16, 15, 3}, {-4095, 0, 4}})
    needs(bytes, minimum, maximum, HexInAscii);
}

TEST(VolumeFormat, LevelsBecomeTheirBytes) {
  EXPECT_EQ(Sent(Range(0, 255, 2, HexInAscii), 10), "0A");
  EXPECT_EQ(Sent(Range(-15, 15, 2, HexInAscii), -1), "FF");
  EXPECT_EQ(Sent(Range(0, 1000, 3, DecimalInAscii), 7), "007");
  EXPECT_EQ(Sent(Range(0, 1000, 3, DecimalInAscii), 1000), "1000") << "longer than its bytes: not cut";
  EXPECT_EQ(Sent(Range(-10, 10, 4, DecimalInAscii), 7), "+007");
  EXPECT_EQ(Sent(Range(-10, 10, 4, DecimalInAscii), -7), "-007");
  EXPECT_EQ(Sent(Range(0, 1000, 2, RawBytes), 0x1FE), "\xFE\x01");
  EXPECT_EQ(Sent(Range(0, 1000, 4, RawBytes), -2), "\xFE\xFF\xFF\xFF");
  VolumeFormat highFirst = Range(0, 1000, 2, RawBytes);
  highFirst.FirstByteIsHigh = true;
  EXPECT_EQ(Sent(highFirst, 0x1FE), "\x01\xFE");
}

TEST(VolumeFormat, StepsStayWithinTheRangeAndWithinAWord) {
  VolumeFormat format = Range(-5, 20, 2, DecimalInAscii);
  format.VolumeStep = 8;
  EXPECT_EQ(LevelUp(format, 4), 12);
  EXPECT_EQ(LevelUp(format, 15), 20);
  EXPECT_EQ(LevelDown(format, 4), -4);
  EXPECT_EQ(LevelDown(format, 2), -5);
  format.VolumeStep = -1;  // walks the other way, as ever
  EXPECT_EQ(LevelUp(format, -32768), -32768);
  EXPECT_EQ(LevelDown(format, 32767), 32767);
}

TEST(VolumeFormat, PreviewShowsWhatIsSent) {
  VolumeFormat format = Range(-1, 300, 4, RawBytes);
  EXPECT_EQ(PreviewLevel(format, -1).DemoText, "255,255,255,255 or FF,FF,FF,FF");
  EXPECT_EQ(PreviewLevel(format, -1).Label4, "Value = -1 or FFFF in Hex");
  format.MaximumLevel = -1;
  EXPECT_EQ(PreviewLevel(format, 0).DemoText, "ERROR");
  EXPECT_EQ(FirstTrialLevel({100, 5, 1, 50, false}), 50);
  EXPECT_EQ(FirstTrialLevel({100, 5, 1, 50, true}), 5);
}

}  // namespace
}  // namespace qdm
