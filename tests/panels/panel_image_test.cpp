#include "panels/panel_image.h"

#include "config/panel_configuration.h"
#include "panels/image_layout.h"
#include "support/distinct_configuration.h"
#include "support/files.h"
#include "support/strings.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace qdm {
namespace {

using testing::StartsWith;

// A configuration that becomes an image in either layout, with fields set: "UpTime=7 Projector.WarmUpTime=5".
PanelConfiguration With(std::int16_t controllerType, const std::string& fields) {
  PanelConfiguration c;
  c.ControllerType = controllerType;
  c.Projector.VolumeBytePosition = 0;
  std::istringstream text(fields);
  for (std::string field; text >> field;) {
    const std::size_t equals = field.find('=');
    WordNamed(c, field.substr(0, equals)) =
        static_cast<std::int16_t>(std::stoi(field.substr(equals + 1), nullptr, 0));
  }
  return c;
}

std::vector<int> BytesOf(const PanelImage& image, std::size_t at, std::size_t count) {
  const auto from = image.begin() + static_cast<std::ptrdiff_t>(at);
  return {from, from + static_cast<std::ptrdiff_t>(count)};
}

struct Placed {
  std::int16_t Type;
  const char* Fields;
  std::size_t At;
  std::vector<int> Bytes;
};

TEST(PanelImage, EachFieldIsInItsPlaceAsItsUseWantsIt) {
  constexpr const char* kBoth =
      "LockOnFrontPanel=-1 NoButtonPowerDown=10 LockAfterProjectorOffPeriod=45 Projector.Parity=2 "
      "Projector.Baudrate=4 Projector.Stopbits=1 Projector.InterCommandDelay=51 Projector.InterByteDelay=7 "
      "Projector.WarmUpTime=52 Projector.CoolDownTime=53 ";
  const std::string qdm = std::string(kBoth) +
                          "OutputsOption=3 UpTime=41 DownTime=42 ControlInputOption=3 "
                          "ControlInputActiveHigh=7 RoomTimeout=43 ThresholdVoltage=44 LockOnRoomEmpty=1 "
                          "LockAfterRoomEmptyPeriod=46 Projector.MaximumLevel=0x1234 "
                          "Projector.MinimumLevel=-2 Projector.LevelStep=0x0102 "
                          "Projector.FixedStartLevel=0x0A0B Projector.NumberOfBytes=3 "
                          "Projector.UseLevels=-1 Projector.MessageFormat=1 Projector.VolumeBytePosition=5";
  const std::string tlvox = std::string(kBoth) +
                            "VolumeMin=-45 VolumeMax=10 VolumeStep=6 PowerUpVolume=-6 TLVOXpowerDownTime=15 "
                            "UsePC2=0 Projector.VolumeBytePosition=-1";
  const Placed cases[] = {
      {kQdm7, qdm.c_str(), 0, {16, 41, 42, 19,   44,   43,   165,  45,   46,   0x22, 0x22, 100, 51,
                               7,  52, 53, 0x34, 0x12, 0xFE, 0xFF, 0x02, 0x01, 0x0B, 0x0A, 102, 5}},
      {kTlVox, tlvox.c_str(), 0, {59, 15, 161, 45, 0x22, 0x22, 100, 51,  7,   52,  53,  8,   63,
                                  6,  24, 18,  3,  255,  255,  255, 255, 255, 255, 255, 255, 255}},
      {kQdm6, "OutputsOption=0 ScreenUseVolume=1 AllowVolumeWhenOff=1", 0, {0, 255, 255}},
      {kQdm6, "OutputsOption=0 LockOnNoButton=5", 0, {64, 255, 255}},
      {kQdm6, "OutputsOption=1 UpTime=7 DownTime=9 AllowVolumeWhenOff=1", 0, {1, 7, 9}},
      {kQdm6, "OutputsOption=1 UpTime=7 DownTime=9 ScreenUseVolume=2", 0, {3, 7, 9}},
      {kQdm6, "OutputsOption=2 UpTime=-5 ScreenUseVolume=1", 0, {4, 255, 255}},
      {kQdm6, "OutputsOption=2 DownTime=-5 AllowVolumeWhenOff=1", 0, {12, 255, 255}},
      {kQdm6, "OutputsOption=2 LockOnNoButton=-1", 0, {68, 255, 255}},
      {kQdm6, "OutputsOption=4 UpTime=7 DownTime=9 LockOnNoButton=1", 0, {80, 7, 9}},
      {kQdm6, "OutputsOption=5 UpTime=7", 0, {255, 255, 255}},
      {kQdm6, "OutputsOption=-1 UpTime=7", 0, {255, 255, 255}},
      {kQdm4, "ControlInputOption=0 ControlInputActiveHigh=-1 ThresholdVoltage=-5", 3, {0, 128}},
      {kQdm4, "ControlInputOption=1 ThresholdVoltage=99", 3, {17, 128}},
      {kQdm4, "ControlInputOption=2 ControlInputActiveHigh=-1", 3, {2, 128}},
      {kQdm4, "ControlInputOption=3 ThresholdVoltage=99", 3, {3, 99}},
      {kQdm7, "LockOnExternalPowerDown=2", 6, {2}},
      {kQdm7, "LockUsingButtons=2 LockOnNoButton=1", 6, {8}},
      {kTlVox, "LockOnNoButton=9", 2, {2}},
      {kTlVox, "LockUsingButtons=1 LockOnExternalPowerDown=1 LockOnRoomEmpty=1", 2, {8}},
      {kQdm7, "Projector.FirstByteIsHigh=-1", 24, {16}},
      {kQdm7, "Projector.MessageFormat=2", 24, {128}},
      {kQdm7, "Projector.MessageFormat=3", 24, {0}},
      {kQdm7, "Projector.NumberOfBytes=256", 24, {255}},
      {kQdm7,
       "Projector.UsePowerDown=1 Projector.MinimumLevel=-1 Projector.FixedStartLevel=77",
       22,
       {255, 255, 40}},
      {kTlVox, "AudioRouting=0 UsePC1=0 UsePC2=0 UseVideo=0 AudioTurnsOnAmplifier=0", 0, {32}},
      {kTlVox, "AudioRouting=0", 15, {17, 1}},
      {kTlVox, "AudioRouting=0x0105", 15, {22, 2}},
      {kTlVox, "AudioRouting=0x00EE", 15, {255, 1}},
      {kTlVox, "AudioRouting=-256", 15, {17, 32}},
      {kTlVox, "VolumeMax=26", 11, {8}}};
  for (const Placed& c : cases) {
    EXPECT_EQ(BytesOf(BuildPanelImage(With(c.Type, c.Fields)), c.At, c.Bytes.size()), c.Bytes) << c.Fields;
  }
}

TEST(PanelImage, ButtonsHaveTheCodesOfTheirPanelTheFirstInTheLowHalf) {
  const auto codes = [](std::int16_t type, std::size_t at, std::array<std::int16_t, 4> buttons) {
    PanelConfiguration c = With(type, "");
    c.LockSequence = buttons;
    return BytesOf(BuildPanelImage(c), at, 2);
  };
  EXPECT_EQ(codes(kQdm7, 9, {0, 1, 2, 3}), (std::vector<int>{0x67, 0x32}));
  EXPECT_EQ(codes(kQdm7, 9, {4, 5, -1, 0}), (std::vector<int>{0x04, 0x70}));
  EXPECT_EQ(codes(kTlVox, 4, {0, 1, 2, 3}), (std::vector<int>{0x54, 0x32}));
  EXPECT_EQ(codes(kTlVox, 4, {4, 5, -1, 0}), (std::vector<int>{0x00, 0x40}));
}

TEST(PanelImage, TheProjectorsLineIsWhereThePanelReadsIt) {
  for (const int type : {kQdm7, kQdm6, kQdm4}) EXPECT_EQ(OffsetOf(LayoutOf(type), kProjectorLine), 11U);
  EXPECT_EQ(OffsetOf(LayoutOf(kTlVox), kProjectorLine), 6U);
}

TEST(PanelImage, StringsStandInThePanelsOrderRepliesWithTheirMask) {
  // Each used slot has one byte, the slot's number plus 100, and ignores places 0 (used), 9, 23 and 31.
  PanelConfiguration c = With(kQdm7, "");
  std::vector<int> expected;
  for (const int slot :
       {0, 1, 2, 3, 4, 23, 5, 24, 6, 7, 8, 9, 10, 11, 12, 13, 14, 21, 15, 22, 16, 17, 18, 19, 20}) {
    SerialString string = StringOf(Bytes{static_cast<std::uint8_t>(slot + 100)});
    for (const std::size_t place : {0U, 9U, 23U, 31U}) {
      string.Kinds[place] = static_cast<std::uint8_t>(ByteKind::IGN);
    }
    expected.push_back(slot == 3 ? 0 : 1);
    if (slot == 3) continue;  // not in use
    Define(c.Projector, static_cast<std::size_t>(slot), string);
    if (slot >= 10 && slot <= 22) expected.insert(expected.end(), {0x01, 0x02, 0x80, 0x80});
    expected.push_back(slot + 100);
  }
  expected.resize(kPanelImageSize - kStringTableStart, 255);
  EXPECT_EQ(BytesOf(BuildPanelImage(c), kStringTableStart, expected.size()), expected);
}

std::string Refusal(const PanelConfiguration& c) {
  return FailureOf([&] { BuildPanelImage(c); });
}

TEST(PanelImage, AValueThatIsNoByteIsRefusedByName) {
  const std::vector<std::string> both = {"LockAfterProjectorOffPeriod", "Projector.InterCommandDelay",
                                         "Projector.InterByteDelay",    "Projector.WarmUpTime",
                                         "Projector.CoolDownTime",      "Projector.Baudrate"};
  const auto expectByte = [](std::int16_t type, const std::string& name, const std::string& use = "") {
    for (const char* value : {"0", "255"})
      EXPECT_EQ(Refusal(With(type, use + name + "=" + value)), "no failure");
    // -1 as a place means that it was never determined.
    for (const char* value : {"-2", "256", "-32768", "32767"}) {
      EXPECT_THAT(Refusal(With(type, use + name + "=" + value)),
                  StartsWith(name + " = " + value + ": outside"));
    }
  };
  for (const std::string& name : both) {
    expectByte(kQdm7, name);
    expectByte(kTlVox, name);
  }
  for (const char* name :
       {"RoomTimeout", "ControlInputOption", "LockAfterRoomEmptyPeriod", "Projector.VolumeBytePosition"}) {
    expectByte(kQdm7, name);
  }
  for (const char* name : {"TLVOXpowerDownTime", "VolumeStep"}) expectByte(kTlVox, name);
  for (const char* use : {"OutputsOption=1 ", "OutputsOption=3 ", "OutputsOption=4 "}) {
    expectByte(kQdm7, "UpTime", use);
    expectByte(kQdm7, "DownTime", use);
  }
  expectByte(kQdm7, "ThresholdVoltage", "ControlInputOption=3 ");
}

TEST(PanelImage, AFormulaThatLeavesItsRangeIsRefused) {
  struct Case {
    std::int16_t Type;
    const char* Fields;
    const char* Refusal;
  };
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    for (const char* value : {"16", "-1", "2048", "4096", "-4096"}) {
      for (const std::string name : {"NoButtonPowerDown", "Projector.Parity"}) {
        EXPECT_THAT(Refusal(With(type, name + "=" + value)), StartsWith(name + " = " + value + ": makes"));
      }
    }
  }
  const Case cases[] = {
      // 2048 x 16 leaves 16 bits, whatever is added to it.
      {kQdm7, "Projector.Parity=2048 Projector.Baudrate=-32768", "Projector.Parity = 2048: makes 32768, "},
      {kQdm7, "Projector.Parity=15 Projector.Baudrate=32767", "Projector.Baudrate = 32767: makes 33007, "},
      {kQdm7, "Projector.NumberOfBytes=0", "Projector.NumberOfBytes = 0: makes -1, "},
      {kQdm7, "Projector.NumberOfBytes=257", "Projector.NumberOfBytes = 257: makes 256, "},
      {kQdm7, "Projector.NumberOfBytes=-32768", "Projector.NumberOfBytes = -32768: makes -32769, "},
      {kQdm7, "OutputsOption=5 LockOnNoButton=-1", "OutputsOption = 5: makes 319, "},
      {kQdm7, "Projector.VolumeBytePosition=-1",
       "Projector.VolumeBytePosition = -1: not yet determined; open the projector in the setup dialog and "
       "press "
       "Done"},
      {kTlVox, "VolumeMax=-238", "VolumeMax = -238: makes 256, "},
      {kTlVox, "VolumeMax=-32768", "VolumeMax = -32768: makes -32786, "},
      {kTlVox, "VolumeMin=274", "VolumeMin = 274: makes 256, "},
      {kTlVox, "PowerUpVolume=274", "PowerUpVolume = 274: makes 256, "},
      {kTlVox, "AudioRouting=0x00EF", "AudioRouting = 239: makes 256, "},
      // The first failure is told, in the order in which the panel's makers reckon.
      {kQdm7, "RoomTimeout=300 NoButtonPowerDown=16 Projector.WarmUpTime=300", "RoomTimeout = 300: "},
      {kTlVox, "AudioRouting=-1 TLVOXpowerDownTime=-1 VolumeMax=300", "AudioRouting = -1: makes 272, "},
      {kTlVox, "TLVOXpowerDownTime=-1 VolumeMax=300 NoButtonPowerDown=16", "TLVOXpowerDownTime = -1: "},
      {kTlVox, "PowerUpVolume=300 NoButtonPowerDown=16", "PowerUpVolume = 300: "}};
  for (const Case& c : cases) {
    EXPECT_THAT(Refusal(With(c.Type, c.Fields)), StartsWith(c.Refusal)) << c.Fields;
  }
}

TEST(PanelImage, StringsWithImpossibleCountsAreRefusedAndNeverReadBeyond) {
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    for (const auto& [count, why] : {std::pair{-1, "outside 0..255"},
                                     {256, "outside 0..255"},
                                     {33, "a string has no more than 32 bytes"},
                                     {255, "a string has no more than 32 bytes"}}) {
      PanelConfiguration c = With(type, "");
      Define(c.Projector, 10, SerialString{.Count = static_cast<std::int16_t>(count)});
      EXPECT_THAT(Refusal(c), StartsWith("Projector.Strings[10].Count (Serial enable reply) = " +
                                         std::to_string(count) + ": " + why));
    }
  }
}

TEST(PanelImage, TheTableMayEndAtTheLastByteAndNotBehindIt) {
  // 26 + 11 commands of 33 bytes + slot 9 + 2 replies of 37 + 10 unused = 473 and slot 9; slot 20 takes 37.
  PanelConfiguration c = With(kQdm7, "");
  for (const std::size_t slot : {0U, 1U, 2U, 3U, 4U, 23U, 5U, 24U, 6U, 7U, 8U, 10U, 11U, 20U}) {
    Define(c.Projector, slot, StringOf(Bytes(32, 0x33)));
  }
  const auto withSlot9 = [&c](std::size_t bytes) -> PanelConfiguration& {
    Define(c.Projector, 9, StringOf(Bytes(bytes, 0x66)));
    return c;
  };
  EXPECT_EQ(BytesOf(BuildPanelImage(withSlot9(0)), 510, 2), (std::vector<int>{0x33, 0xFF}));
  EXPECT_EQ(BuildPanelImage(withSlot9(1))[511], 0x33);
  EXPECT_THAT(Refusal(withSlot9(2)),
              StartsWith("Projector.Strings[20].Count (External on) = 32: the command strings run past"));
  // A count that is no byte, in a slot that has no room any more: it is converted before it is stored.
  c.Projector.Strings[20].Count = 300;
  EXPECT_THAT(Refusal(withSlot9(32)), StartsWith("Projector.Strings[20].Count (External on) = 300: outside"));
  // An unused slot takes a byte: 464 + 9 + slot 12's 37 leave two.
  Define(c.Projector, 12, StringOf(Bytes(32, 0x44)));
  EXPECT_THAT(Refusal(withSlot9(9)),
              StartsWith("Projector.Available[21] (External off) = 0: the command strings run past"));
}

}  // namespace
}  // namespace qdm
