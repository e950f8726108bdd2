#include "download/panel_image.h"

#include "support/distinct_configuration.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <initializer_list>

namespace qdm {
namespace {

using testing::HasSubstr;

using Change = std::function<void(PanelConfiguration&)>;

// A configuration that becomes an image in either layout.
PanelConfiguration Buildable(std::int16_t controllerType) {
  PanelConfiguration c;
  c.ControllerType = controllerType;
  c.Projector.VolumeBytePosition = 0;
  return c;
}

PanelImage ImageOf(std::int16_t controllerType, const Change& change) {
  PanelConfiguration c = Buildable(controllerType);
  change(c);
  return BuildPanelImage(c);
}

void ExpectBytes(const PanelImage& image, std::size_t at, std::initializer_list<int> expected) {
  for (const int byte : expected) {
    EXPECT_EQ(int{image[at]}, byte) << "byte " << at;
    ++at;
  }
}

SerialString StringOf(const std::vector<std::uint8_t>& bytes, ByteKind kind = ByteKind::HEX) {
  SerialString string;
  string.Count = static_cast<std::int16_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), string.Values.begin());
  std::fill_n(string.Kinds.begin(), bytes.size(), static_cast<std::uint8_t>(kind));
  return string;
}

void Use(PanelConfiguration& c, std::size_t slot, const SerialString& string) {
  c.Projector.Available[slot] = -1;
  c.Projector.Strings[slot] = string;
}

// All fields apart, so that a wrong source shows.
PanelConfiguration Distinct(std::int16_t controllerType) {
  PanelConfiguration c = Buildable(controllerType);
  c.OutputsOption = kOutputsLift;
  c.UpTime = 41;
  c.DownTime = 42;
  c.ControlInputOption = kControlInputRoomPir;
  c.ControlInputActiveHigh = -1;
  c.RoomTimeout = 43;
  c.ThresholdVoltage = 44;
  c.LockOnFrontPanel = -1;
  c.LockOnRoomEmpty = 1;
  c.LockAfterProjectorOffPeriod = 45;
  c.LockAfterRoomEmptyPeriod = 46;
  c.LockSequence = {0, 1, 2, 4};
  c.NoButtonPowerDown = 10;
  c.VolumeMin = -45;
  c.VolumeMax = 10;
  c.VolumeStep = 6;
  c.PowerUpVolume = -6;
  c.TLVOXpowerDownTime = 15;
  c.AudioRouting = 0x0201;
  c.UsePC2 = 0;
  ProjectorDefinition& p = c.Projector;
  p.Parity = 2;
  p.Baudrate = 4;
  p.Stopbits = 1;
  p.InterCommandDelay = 51;
  p.InterByteDelay = 7;
  p.WarmUpTime = 52;
  p.CoolDownTime = 53;
  p.MaximumLevel = 0x1234;
  p.MinimumLevel = -2;
  p.LevelStep = 0x0102;
  p.FixedStartLevel = 0x0A0B;
  p.NumberOfBytes = 3;
  p.UseLevels = -1;
  p.MessageFormat = 1;
  p.VolumeBytePosition = 5;
  return c;
}

TEST(PanelImage, QdmLayoutHasEveryFieldInItsPlace) {
  const PanelImage image = BuildQdmImage(Distinct(kQdm7));
  ExpectBytes(image, 0,
              {16, 41, 42, 3 + 16, 44, 43, 1 + 4 + 160, 45, 46, 0x67, 0x42, 32 + 4 + 64, 51, 7, 52, 53});
  ExpectBytes(image, 16, {0x34, 0x12, 0xFE, 0xFF, 0x02, 0x01, 0x0B, 0x0A, 2 + 4 + 32 + 64, 5, 0});
}

TEST(PanelImage, TlvoxLayoutHasEveryFieldInItsPlace) {
  const PanelImage image = BuildPanelImage(Distinct(kTlVox));
  ExpectBytes(image, 0,
              {1 + 2 + 8 + 16 + 32, 15, 1 + 160, 45, 0x54, 0x02, 32 + 4 + 64, 51, 7, 52, 53, 8, 63, 6, 24});
  ExpectBytes(image, 15, {1 + 17, 2 + 1, 255, 255, 255, 255, 255, 255, 255, 255, 255, 0});
}

TEST(PanelImage, OutputsByUse) {
  struct Case {
    std::int16_t Use;
    std::int16_t ScreenUseVolume;
    std::int16_t AllowVolumeWhenOff;
    std::int16_t LockOnNoButton;
    std::initializer_list<int> Bytes;
  };
  const Case cases[] = {
      {0, -1, -1, 0, {0, 255, 255}}, {0, 0, 0, -1, {64, 255, 255}},   {1, 0, -1, 0, {1, 7, 9}},
      {1, -1, 0, 0, {3, 7, 9}},      {2, -1, 0, 0, {4, 255, 255}},    {2, 0, -1, 0, {12, 255, 255}},
      {2, 0, 0, 5, {68, 255, 255}},  {3, -1, -1, 0, {16, 7, 9}},      {4, -1, -1, 0, {16, 7, 9}},
      {4, 0, 0, 1, {80, 7, 9}},      {5, -1, -1, 0, {255, 255, 255}}, {-1, 0, 0, 0, {255, 255, 255}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Use);
    ExpectBytes(ImageOf(kQdm6,
                        [&c](PanelConfiguration& configuration) {
                          configuration.OutputsOption = c.Use;
                          configuration.UpTime = 7;
                          configuration.DownTime = 9;
                          configuration.ScreenUseVolume = c.ScreenUseVolume;
                          configuration.AllowVolumeWhenOff = c.AllowVolumeWhenOff;
                          configuration.LockOnNoButton = c.LockOnNoButton;
                        }),
                0, c.Bytes);
  }
}

TEST(PanelImage, ButtonCodes) {
  const std::array<int, 7> indexes = {0, 1, 2, 3, 4, 5, -1};
  const std::array<int, 7> qdm = {7, 6, 2, 3, 4, 0, 0};
  const std::array<int, 7> tlvox = {4, 5, 2, 3, 0, 0, 0};
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    EXPECT_EQ(QdmInputCode(indexes[i]), qdm[i]);
    EXPECT_EQ(TlvoxInputCode(indexes[i]), tlvox[i]);
  }
}

TEST(PanelImage, VolumeFormatFlags) {
  const auto byte24 = [](const Change& change) { return int{ImageOf(kQdm7, change)[24]}; };
  EXPECT_EQ(byte24([](PanelConfiguration&) {}), 0);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.UseLevels = 3; }), 4);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.FirstByteIsHigh = -1; }), 16);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.MinimumLevel = -1; }), 32);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.MessageFormat = 2; }), 128);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.MessageFormat = 3; }), 0);
  EXPECT_EQ(byte24([](PanelConfiguration& c) { c.Projector.NumberOfBytes = 256; }), 255);

  const PanelImage powerDown = ImageOf(kQdm7, [](PanelConfiguration& c) {
    c.Projector.UsePowerDown = 1;
    c.Projector.MinimumLevel = -1;
    c.Projector.FixedStartLevel = 77;
  });
  ExpectBytes(powerDown, 18, {0xFF, 0xFF});
  ExpectBytes(powerDown, 22, {0xFF, 0xFF, 8 + 32});
}

TEST(PanelImage, AmplifierAudioAndLevels) {
  struct Case {
    std::int16_t Routing;
    int Flag;
    int Low;
    int High;
  };
  for (const Case& c :
       {Case{0, 0, 17, 1}, Case{0x0105, 1, 22, 2}, Case{0x00EE, 1, 255, 1}, Case{-256, 1, 17, 32}}) {
    const PanelImage image = ImageOf(kTlVox, [&c](PanelConfiguration& configuration) {
      configuration.AudioRouting = c.Routing;
      configuration.UsePC1 = configuration.UsePC2 = configuration.UseVideo = 0;
      configuration.AudioTurnsOnAmplifier = 0;
    });
    EXPECT_EQ(image[0], 32 + c.Flag);
    EXPECT_EQ(image[15], c.Low);
    EXPECT_EQ(image[16], c.High);
  }
}

TEST(PanelImage, StringsStandInThePanelsOrderRepliesWithTheirMask) {
  // Each used slot has one byte, the slot's number plus 100.
  const PanelImage image = ImageOf(kQdm7, [](PanelConfiguration& c) {
    for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
      Use(c, slot, StringOf({static_cast<std::uint8_t>(slot + 100)}));
    }
  });
  std::size_t at = kStringTableStart;
  for (const int slot :
       {0, 1, 2, 3, 4, 23, 5, 24, 6, 7, 8, 9, 10, 11, 12, 13, 14, 21, 15, 22, 16, 17, 18, 19, 20}) {
    const bool masked = slot >= 10 && slot <= 22;
    ExpectBytes(image, at,
                masked ? std::initializer_list<int>{1, 0, 0, 0, 0, slot + 100}
                       : std::initializer_list<int>{1, slot + 100});
    at += masked ? 6 : 2;
  }
  EXPECT_EQ(at, 26u + 25 * 2 + 13 * 4);
  EXPECT_EQ(image[at], 255);
}

TEST(PanelImage, AMaskCoversAllPositionsWhateverTheCount) {
  const PanelImage image = ImageOf(kTlVox, [](PanelConfiguration& c) {
    SerialString string = StringOf({1, 2, 3});
    for (const std::size_t ignored : {0u, 9u, 23u, 31u}) {
      string.Kinds[ignored] = static_cast<std::uint8_t>(ByteKind::IGN);
    }
    Use(c, 10, string);
    Use(c, 1, string);
  });
  ExpectBytes(image, 26, {0, 3, 1, 2, 3, 0, 0, 0});
  ExpectBytes(image, 26 + 1 + 4 + 10, {3, 0x01, 0x02, 0x80, 0x80, 1, 2, 3, 0});
}

TEST(PanelImage, TheTableMayEndAtTheLastByteAndNotBehindIt) {
  const std::vector<std::uint8_t> longest(32, 0x33);
  // 26 + 11 commands of 33 bytes + slot 9 + 2 replies of 37 + 10 unused = 473 and slot 9; slot 20 takes 37.
  const auto withSlot9 = [&longest](std::size_t bytes) {
    return [&longest, bytes](PanelConfiguration& c) {
      for (const std::size_t slot : {0u, 1u, 2u, 3u, 4u, 23u, 5u, 24u, 6u, 7u, 8u, 10u, 11u, 20u}) {
        Use(c, slot, StringOf(longest));
      }
      Use(c, 9, StringOf(std::vector<std::uint8_t>(bytes, 0x66)));
    };
  };
  const PanelImage almost = ImageOf(kQdm7, withSlot9(0));
  EXPECT_EQ(almost[510], 0x33);
  EXPECT_EQ(almost[511], 0xFF);
  EXPECT_EQ(ImageOf(kQdm7, withSlot9(1))[511], 0x33);
  EXPECT_THROW(ImageOf(kQdm7, withSlot9(2)), ImageError);
}

void ExpectRefused(std::int16_t controllerType, const std::string& field, int value, const Change& change,
                   ImageError::Kind kind = ImageError::Kind::Overflow) {
  try {
    ImageOf(controllerType, change);
    ADD_FAILURE() << field << " = " << value << " was taken";
  } catch (const ImageError& error) {
    EXPECT_EQ(error.Field(), field);
    EXPECT_EQ(error.Value(), value);
    EXPECT_EQ(error.Failure(), kind) << field;
    EXPECT_THAT(error.what(), HasSubstr(field + " = " + std::to_string(value) + ": "));
  }
}

// All values that are looked at only in some uses are in use.
Change Set(const std::string& field, std::int16_t value) {
  return [field, value](PanelConfiguration& c) {
    c.OutputsOption = kOutputsScreen;
    c.ControlInputOption = kControlInputRoomPir;
    for (const auto& word : kConfigurationWords) {
      if (word.Name == field) c.*word.Member = value;
    }
    for (const auto& word : kProjectorWords) {
      if ("Projector." + std::string(word.Name) == field) c.Projector.*word.Member = value;
    }
  };
}

TEST(PanelImage, AValueThatLeavesItsRangeIsRefusedByName) {
  using Words = std::vector<std::int16_t>;
  const Words qdm = {kQdm7};
  const Words tlvox = {kTlVox};
  const Words both = {kQdm7, kTlVox};
  const Words noBytes = {-1, 256, -32768, 32767};
  const struct {
    Words Types;
    std::vector<std::string> Fields;
    Words Taken;
    Words Refused;
  } cases[] = {{both,
                {"LockAfterProjectorOffPeriod", "Projector.InterCommandDelay", "Projector.InterByteDelay",
                 "Projector.WarmUpTime", "Projector.CoolDownTime", "Projector.Baudrate"},
                {0, 255},
                noBytes},
               {qdm,
                {"UpTime", "DownTime", "ThresholdVoltage", "RoomTimeout", "ControlInputOption",
                 "LockAfterRoomEmptyPeriod", "Projector.VolumeBytePosition"},
                {0, 255},
                noBytes},
               {tlvox, {"TLVOXpowerDownTime", "VolumeStep"}, {0, 255}, noBytes},
               {tlvox, {"UpTime", "ThresholdVoltage", "RoomTimeout"}, noBytes, {}},  // not in this layout
               {qdm, {"VolumeMax", "AudioRouting"}, {30000, 0x00FF}, {}},
               {both, {"NoButtonPowerDown", "Projector.Parity"}, {0}, {16, -1, 2048, 4096, -4096}},
               {qdm, {"Projector.NumberOfBytes"}, {1, 256}, {0, 257, -32768}},
               {tlvox, {"VolumeMax", "VolumeMin", "PowerUpVolume"}, {}, {-238, 274, -32768, 32767}},
               {tlvox, {"AudioRouting"}, {0x00EE}, {0x00EF, -1}}};
  for (const auto& c : cases) {
    for (const std::int16_t type : c.Types) {
      for (const std::string& field : c.Fields) {
        for (const auto value : c.Taken) EXPECT_NO_THROW(ImageOf(type, Set(field, value))) << field << value;
        for (const auto value : c.Refused) ExpectRefused(type, field, value, Set(field, value));
      }
    }
  }
}

TEST(PanelImage, StringsWithImpossibleCountsAreRefusedAndNeverReadBeyond) {
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    for (const int value : {-1, 256, -32768, 32767, 33, 255}) {
      const Change change = [value](PanelConfiguration& c) {
        c.Projector.Available[10] = 1;
        c.Projector.Strings[10].Count = static_cast<std::int16_t>(value);
      };
      const bool isByte = value == 33 || value == 255;
      ExpectRefused(type, "Projector.Strings[10].Count (Serial enable reply)", value, change,
                    isByte ? ImageError::Kind::Subscript : ImageError::Kind::Overflow);
    }
  }
}

TEST(PanelImage, TheFirstFailureIsReported) {
  // A count that is no byte, in a slot that has no room any more: the value is converted before it is stored.
  const Change full = [](PanelConfiguration& c) {
    for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
      Use(c, slot, StringOf(std::vector<std::uint8_t>(32, 0x33)));
    }
  };
  // 26 + 12 x 33 = 422; 459 and 496 behind slots 10 and 11: slot 12 runs out.
  constexpr const char* kSlot12 = "Projector.Strings[12].Count (Data 1 reply)";
  ExpectRefused(kQdm7, kSlot12, 32, full, ImageError::Kind::Subscript);
  const Change fullAndNoByte = [&full](PanelConfiguration& c) {
    full(c);
    c.Projector.Strings[12].Count = 300;
  };
  ExpectRefused(kQdm7, kSlot12, 300, fullAndNoByte);
  const Change severalFields = [](PanelConfiguration& c) {
    c.RoomTimeout = 300;
    c.NoButtonPowerDown = 16;
    c.Projector.Parity = 2048;
    Use(c, 0, StringOf({1}));
    c.Projector.Strings[0].Count = -1;
  };
  ExpectRefused(kQdm7, "RoomTimeout", 300, severalFields);
  const Change noUse = [](PanelConfiguration& c) {
    c.OutputsOption = 5;
    c.LockOnNoButton = -1;
  };
  ExpectRefused(kQdm7, "OutputsOption", 5, noUse);
}

}  // namespace
}  // namespace qdm
