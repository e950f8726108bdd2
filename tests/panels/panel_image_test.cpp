#include "panels/panel_image.h"

#include "config/panel_configuration.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <initializer_list>

namespace qdm {
namespace {

using testing::Each;
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

TEST(PanelImage, ControlInputByUse) {
  struct Case {
    std::int16_t Use;
    std::int16_t ActiveHigh;
    std::initializer_list<int> Bytes;
  };
  const Case cases[] = {{0, -1, {0, 128}}, {1, 0, {17, 128}}, {2, -1, {2, 128}},    {3, 0, {3, 99}},
                        {3, -1, {19, 99}}, {3, 7, {19, 99}},  {255, -1, {255, 128}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Use);
    ExpectBytes(ImageOf(kQdm4,
                        [&c](PanelConfiguration& configuration) {
                          configuration.ControlInputOption = c.Use;
                          configuration.ControlInputActiveHigh = c.ActiveHigh;
                          configuration.ThresholdVoltage = 99;
                        }),
                3, c.Bytes);
  }
}

TEST(PanelImage, LockBytes) {
  const Change all = [](PanelConfiguration& c) {
    c.LockOnFrontPanel = c.LockOnExternalPowerDown = c.LockOnRoomEmpty = c.LockUsingButtons =
        c.LockOnNoButton = -1;
    c.NoButtonPowerDown = 15;
  };
  EXPECT_EQ(ImageOf(kQdm7, all)[6], 0xFF);
  EXPECT_EQ(ImageOf(kTlVox, all)[2], 0xFB) << "the amplifier has no bit 4";
  EXPECT_EQ(ImageOf(kQdm7, [](PanelConfiguration& c) { c.LockOnExternalPowerDown = 2; })[6], 2);
  EXPECT_EQ(ImageOf(kQdm7, [](PanelConfiguration& c) { c.LockUsingButtons = 2; })[6], 8);
  EXPECT_EQ(ImageOf(kTlVox, [](PanelConfiguration& c) { c.LockOnNoButton = 9; })[2], 2);
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
  for (const std::int16_t level : {std::int16_t{10}, std::int16_t{26}}) {
    EXPECT_EQ(ImageOf(kTlVox, [level](PanelConfiguration& c) { c.VolumeMax = level; })[11], 8);
  }
  EXPECT_EQ(ImageOf(kTlVox, [](PanelConfiguration& c) { c.Projector.VolumeBytePosition = -1; })[25], 255)
      << "has no place in this layout";
}

TEST(PanelImage, ATableWithoutStringsIsTwentyFiveZeros) {
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    const PanelImage image = ImageOf(type, [](PanelConfiguration& c) { c.Projector.Strings[3].Count = 900; });
    EXPECT_THAT(std::vector<int>(image.begin() + 26, image.begin() + 51), Each(0));
    EXPECT_THAT(std::vector<int>(image.begin() + 51, image.end()), Each(255));
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

struct Refusal {
  const char* Field;
  int Value;
  Change Make;
  ImageError::Kind Kind = ImageError::Kind::Overflow;
};

void ExpectRefused(std::int16_t controllerType, const Refusal& refusal) {
  try {
    ImageOf(controllerType, refusal.Make);
    ADD_FAILURE() << refusal.Field << " = " << refusal.Value << " was taken";
  } catch (const ImageError& error) {
    EXPECT_EQ(error.Field(), refusal.Field);
    EXPECT_EQ(error.Value(), refusal.Value);
    EXPECT_EQ(error.Failure(), refusal.Kind) << refusal.Field;
    EXPECT_THAT(error.what(),
                HasSubstr(std::string(refusal.Field) + " = " + std::to_string(refusal.Value) + ": "));
    EXPECT_THAT(error.what(), testing::Not(HasSubstr("\n")));
  }
}

using Words = std::initializer_list<std::int16_t>;

template <class Member>
Change Set(Member member, std::int16_t value) {
  return [member, value](PanelConfiguration& c) {
    if constexpr (std::is_invocable_v<Member, PanelConfiguration&>) {
      std::invoke(member, c) = value;
    } else {
      std::invoke(member, c.Projector) = value;
    }
  };
}

TEST(PanelImage, AValueThatIsNoByteIsRefusedByName) {
  using C = PanelConfiguration;
  using P = ProjectorDefinition;
  struct ByteField {
    const char* Name;
    std::function<Change(std::int16_t)> To;
  };
  const auto field = [](const char* name, auto member) {
    return ByteField{name, [member](std::int16_t value) { return Set(member, value); }};
  };
  const ByteField both[] = {field("LockAfterProjectorOffPeriod", &C::LockAfterProjectorOffPeriod),
                            field("Projector.InterCommandDelay", &P::InterCommandDelay),
                            field("Projector.InterByteDelay", &P::InterByteDelay),
                            field("Projector.WarmUpTime", &P::WarmUpTime),
                            field("Projector.CoolDownTime", &P::CoolDownTime),
                            field("Projector.Baudrate", &P::Baudrate)};
  const ByteField qdm[] = {field("RoomTimeout", &C::RoomTimeout),
                           field("ControlInputOption", &C::ControlInputOption),
                           field("LockAfterRoomEmptyPeriod", &C::LockAfterRoomEmptyPeriod),
                           field("Projector.VolumeBytePosition", &P::VolumeBytePosition)};
  const ByteField tlvox[] = {field("TLVOXpowerDownTime", &C::TLVOXpowerDownTime),
                             field("VolumeStep", &C::VolumeStep)};
  const auto expectByte = [](std::int16_t type, const ByteField& f) {
    for (const int value : {0, 255}) {
      EXPECT_NO_THROW(ImageOf(type, f.To(static_cast<std::int16_t>(value)))) << f.Name << value;
    }
    for (const int value : {-1, 256, -32768, 32767}) {
      ExpectRefused(type, {f.Name, value, f.To(static_cast<std::int16_t>(value))});
    }
  };
  for (const ByteField& f : both) {
    expectByte(kQdm7, f);
    expectByte(kTlVox, f);
  }
  for (const ByteField& f : qdm) expectByte(kQdm7, f);
  for (const ByteField& f : tlvox) expectByte(kTlVox, f);
}

TEST(PanelImage, AFormulaThatLeavesItsRangeIsRefused) {
  using C = PanelConfiguration;
  using P = ProjectorDefinition;
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    for (const std::int16_t value : Words{16, -1, 2048, 4096, -4096}) {
      ExpectRefused(type, {"NoButtonPowerDown", value, Set(&C::NoButtonPowerDown, value)});
      ExpectRefused(type, {"Projector.Parity", value, Set(&P::Parity, value)});
    }
    // 2048 x 16 leaves 16 bits, whatever is added to it.
    ExpectRefused(type, {"Projector.Parity", 2048, [](C& c) {
                           c.Projector.Parity = 2048;
                           c.Projector.Baudrate = -32768;
                         }});
    ExpectRefused(type, {"Projector.Baudrate", 32767, [](C& c) {
                           c.Projector.Parity = 15;
                           c.Projector.Baudrate = 32767;
                         }});
  }
  for (const std::int16_t value : Words{0, 257, -32768}) {
    ExpectRefused(kQdm7, {"Projector.NumberOfBytes", value, Set(&P::NumberOfBytes, value)});
  }
  ExpectRefused(kQdm7, {"OutputsOption", 5, [](C& c) {
                          c.OutputsOption = 5;
                          c.LockOnNoButton = -1;
                        }});
  for (const std::int16_t level : Words{-238, 274, -32768, 32767}) {
    ExpectRefused(kTlVox, {"VolumeMax", level, Set(&C::VolumeMax, level)});
    ExpectRefused(kTlVox, {"VolumeMin", level, Set(&C::VolumeMin, level)});
    ExpectRefused(kTlVox, {"PowerUpVolume", level, Set(&C::PowerUpVolume, level)});
  }
  ExpectRefused(kTlVox, {"AudioRouting", 0x00EF, Set(&C::AudioRouting, 0x00EF)});
  ExpectRefused(kTlVox, {"AudioRouting", -1, Set(&C::AudioRouting, -1)});
}

TEST(PanelImage, OnlyFieldsThatTheUseNeedsAreLookedAt) {
  const Change unused = [](PanelConfiguration& c) {
    c.UpTime = c.DownTime = c.ThresholdVoltage = -5;
    c.VolumeMax = 30000;
    c.AudioRouting = 0x00FF;
  };
  EXPECT_NO_THROW(ImageOf(kQdm7, unused));
  for (const std::int16_t use : {kOutputsScreen, kOutputsLift, kOutputsPowerAndScreen}) {
    ExpectRefused(kQdm7, {"DownTime", 256, [use](PanelConfiguration& c) {
                            c.OutputsOption = use;
                            c.DownTime = 256;
                          }});
  }
  ExpectRefused(kQdm7, {"ThresholdVoltage", 300, [](PanelConfiguration& c) {
                          c.ControlInputOption = kControlInputRoomPir;
                          c.ThresholdVoltage = 300;
                        }});
}

TEST(PanelImage, AVolumePositionThatWasNeverDeterminedSaysWhatToDo) {
  try {
    ImageOf(kQdm7, [](PanelConfiguration& c) { c.Projector.VolumeBytePosition = -1; });
    ADD_FAILURE() << "was taken";
  } catch (const ImageError& error) {
    EXPECT_THAT(error.what(), HasSubstr("open the projector in the setup dialog and press Done"));
  }
}

TEST(PanelImage, StringsWithImpossibleCountsAreRefusedAndNeverReadBeyond) {
  const auto count = [](std::size_t slot, std::int16_t value) {
    return [slot, value](PanelConfiguration& c) {
      c.Projector.Available[slot] = 1;
      c.Projector.Strings[slot].Count = value;
    };
  };
  constexpr const char* kReply = "Projector.Strings[10].Count (Serial enable reply)";
  for (const std::int16_t type : {kQdm7, kTlVox}) {
    for (const std::int16_t value : Words{-1, 256, -32768, 32767})
      ExpectRefused(type, {kReply, value, count(10, value)});
    for (const std::int16_t value : Words{33, 255}) {
      ExpectRefused(type, {kReply, value, count(10, value), ImageError::Kind::Subscript});
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
  ExpectRefused(kQdm7, {"Projector.Strings[12].Count (Data 1 reply)", 32, full, ImageError::Kind::Subscript});
  ExpectRefused(kQdm7, {"Projector.Strings[12].Count (Data 1 reply)", 300, [&full](PanelConfiguration& c) {
                          full(c);
                          c.Projector.Strings[12].Count = 300;
                        }});
  ExpectRefused(kQdm7, {"RoomTimeout", 300, [](PanelConfiguration& c) {
                          c.RoomTimeout = 300;
                          c.NoButtonPowerDown = 16;
                          c.Projector.Available[0] = 1;
                          c.Projector.Strings[0].Count = -1;
                        }});
}

}  // namespace
}  // namespace qdm
