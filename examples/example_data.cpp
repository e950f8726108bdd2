#include "examples/example_data.h"

#include "config/audio_routing.h"
#include "projectors/projector_files.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <numeric>
#include <span>
#include <stdexcept>

namespace qdm::examples {
namespace {

constexpr Slot ReplyTo(Slot command) { return ReplySlotOf(command).value(); }

enum Speed : std::int16_t { k9600 = 0, k19200 = 1, k38400 = 2, k57600 = 3, k115200 = 4 };
enum ParityLetter : std::int16_t { kNone = 0, kEven = 1, kOdd = 2 };
enum StopbitCount : std::int16_t { kOne = 0, kTwo = 1 };
enum LevelFormat : std::int16_t { kHexText = 0, kDecimalText = 1, kRawBytes = 2 };

struct SlotForm {
  Slot Place;
  std::string_view Form;
};
using Protocol = std::vector<SlotForm>;

struct LineAndTimes {
  Speed Baudrate;
  ParityLetter Parity;
  StopbitCount Stopbits;
  std::int16_t InterCommandDelay;
  std::int16_t InterByteDelay;
  std::int16_t WarmUpTime;
  std::int16_t CoolDownTime;
};

// How the level goes into the VAR byte of the volume command.
struct Levels {
  LevelFormat Format;
  std::int16_t Bytes;
  std::int16_t Minimum;
  std::int16_t Maximum;
  std::int16_t Step;
  std::int16_t Start;
  bool StartsAtPowerDownLevel = false;
  bool FirstByteIsHigh = false;
};

struct Example {
  std::string_view Manufacturer;
  std::string_view Model;
  std::string_view Notes;
  LineAndTimes Line;
  Protocol Strings;
  std::vector<Levels> Volume = {};  // none or one
};

Protocol operator+(Protocol protocol, const Protocol& more) {
  protocol.insert(protocol.end(), more.begin(), more.end());
  return protocol;
}

// Plain words closed by a carriage return, answered by a colon.
const Protocol kBrackenlight = {
    {kPowerOnSlot, "POWER ON{CR}"},   {ReplyTo(kPowerOnSlot), ":ON{CR}"},  {kPowerOffSlot, "POWER OFF{CR}"},
    {kData1Slot, "SOURCE RGB1{CR}"},  {kData2Slot, "SOURCE RGB2{CR}"},     {kVideoSlot, "SOURCE VIDEO{CR}"},
    {kBlankSlot, "MUTE PICTURE{CR}"}, {kBlankOffSlot, "SHOW PICTURE{CR}"},
};

// Frames of hexadecimal bytes: length, command, data, sum. The reply repeats the frame with bit 7 of the
// command set and a status byte that says nothing of use.
const Protocol kCorvane = {
    {kPowerOnSlot, "{A5h 03h 10h 01h sum}"},  {ReplyTo(kPowerOnSlot), "{A5h 03h 90h IGN IGN}"},
    {kPowerOffSlot, "{A5h 03h 10h 00h sum}"}, {ReplyTo(kPowerOffSlot), "{A5h 03h 90h IGN IGN}"},
    {kData1Slot, "{A5h 03h 21h 00h sum}"},    {kData2Slot, "{A5h 03h 21h 01h sum}"},
    {kVideoSlot, "{A5h 03h 21h 08h sum}"},    {kVideo2Slot, "{A5h 03h 21h 09h sum}"},
    {kBlankSlot, "{A5h 03h 35h 01h sum}"},    {kBlankOffSlot, "{A5h 03h 35h 00h sum}"},
};

// Text between STX and ETX with an exclusive-or check, switched to remote control first.
const Protocol kDunmoor = {
    {kSerialEnableSlot, "{STX}REM1{ETX xor}"},  {ReplyTo(kSerialEnableSlot), "{ACK}"},
    {kSerialDisableSlot, "{STX}REM0{ETX xor}"}, {kPowerOnSlot, "{STX}PON{ETX xor}"},
    {ReplyTo(kPowerOnSlot), "{ACK}"},           {kPowerOffSlot, "{STX}POF{ETX xor}"},
    {ReplyTo(kPowerOffSlot), "{ACK}"},          {kData1Slot, "{STX}IN1{ETX xor}"},
    {kData2Slot, "{STX}IN2{ETX xor}"},          {kVideoSlot, "{STX}IN5{ETX xor}"},
};

// One number after an escape; replies carry the projector's address, which differs from set to set.
const Protocol kHalversund = {
    {kPowerOnSlot, "{ESC 011d}"},        {ReplyTo(kPowerOnSlot), "{ESC IGN 011d}"},
    {kPowerOffSlot, "{ESC 010d}"},       {ReplyTo(kPowerOffSlot), "{ESC IGN 010d}"},
    {kData1Slot, "{ESC 021d}"},          {ReplyTo(kData1Slot), "{ESC IGN 021d}"},
    {kVideoSlot, "{ESC 024d}"},          {ReplyTo(kVideoSlot), "{ESC IGN 024d}"},
    {kExternalOnSlot, "{ESC IGN 111d}"}, {kExternalOffSlot, "{ESC IGN 110d}"},
};

// One byte: bit 7 a command, bits 6..4 what is switched, bits 3..0 to what.
const Protocol kOstrel = {
    {kPowerOnSlot, "{10000001b}"}, {kPowerOffSlot, "{10000000b}"}, {kData1Slot, "{10010001b}"},
    {kData2Slot, "{10010010b}"},   {kVideoSlot, "{10010100b}"},    {kVideo2Slot, "{10011000b}"},
};

// Address, equals sign, setting; the projector repeats what it was told and may add a digit of its own.
const Protocol kTarnbeam = {
    {kPowerOnSlot, "#A1=PW,1{CR LF}"},  {ReplyTo(kPowerOnSlot), "#A1:PW,1{IGN CR LF}"},
    {kPowerOffSlot, "#A1=PW,0{CR LF}"}, {ReplyTo(kPowerOffSlot), "#A1:PW,0{IGN CR LF}"},
    {kData1Slot, "#A1=SR,1{CR LF}"},    {kData2Slot, "#A1=SR,2{CR LF}"},
    {kVideoSlot, "#A1=SR,6{CR LF}"},
};

const Protocol kVisora = {
    {kPowerOnSlot, "<P1>"},  {ReplyTo(kPowerOnSlot), "<P1{IGN}>"},
    {kPowerOffSlot, "<P0>"}, {ReplyTo(kPowerOffSlot), "<P0{IGN}>"},
    {kData1Slot, "<S1>"},    {kData2Slot, "<S2>"},
    {kVideoSlot, "<S7>"},    {kVideo2Slot, "<S8>"},
    {kBlankSlot, "<B1>"},    {kBlankOffSlot, "<B0>"},
};

std::vector<Example> Examples() {
  return {
      {"BRACKENLIGHT",
       "BL-220",
       "Desk model. Needs the null-modem cable.",
       {k9600, kNone, kOne, 5, 0, 30, 90},
       kBrackenlight},
      {"BRACKENLIGHT",
       "BL-340",
       "",
       {k9600, kNone, kOne, 5, 0, 30, 90},
       kBrackenlight + Protocol{{kVolumeUpSlot, "VOLUME +{CR}"}, {kVolumeDownSlot, "VOLUME -{CR}"}}},
      {"BRACKENLIGHT",
       "BL-900 Theatre",
       "Set REMOTE to RS-232 in the service menu.",
       {k19200, kNone, kOne, 5, 0, 60, 180},
       kBrackenlight + Protocol{{kVolumeUpSlot, "VOLUME {VAR CR}"}, {kVolumeDownSlot, "VOLUME {VAR CR}"}},
       {{kDecimalText, 3, 0, 100, 5, 40}}},

      {"CORVANE", "C10", "", {k19200, kEven, kOne, 2, 0, 45, 120}, kCorvane},
      {"CORVANE", "C10 Short Throw", "", {k19200, kEven, kOne, 2, 0, 45, 120}, kCorvane},
      {"CORVANE",
       "C32",
       "Answers every command twice while it warms up.",
       {k38400, kEven, kOne, 2, 0, 40, 100},
       kCorvane +
           Protocol{{kVolumeUpSlot, "{A5h 03h 40h 01h sum}"}, {kVolumeDownSlot, "{A5h 03h 40h 00h sum}"}}},
      // Volume frames of this one carry no sum: nobody could compute it for a byte that varies.
      {"CORVANE",
       "C32 Laser",
       "",
       {k115200, kNone, kOne, 1, 0, 5, 5},
       kCorvane + Protocol{{kVolumeUpSlot, "{A6h 02h 40h VAR}"}, {kVolumeDownSlot, "{A6h 02h 40h VAR}"}},
       {{kRawBytes, 1, 0, 63, 1, 20}}},

      {"DUNMOOR", "Ridge 1", "", {k9600, kOdd, kOne, 10, 2, 40, 120}, kDunmoor},
      {"DUNMOOR",
       "Ridge 2",
       "",
       {k9600, kOdd, kOne, 10, 2, 40, 120},
       kDunmoor + Protocol{{kBlankSlot, "{STX}SH1{ETX xor}"},
                           {ReplyTo(kBlankSlot), "{ACK}"},
                           {kBlankOffSlot, "{STX}SH0{ETX xor}"},
                           {ReplyTo(kBlankOffSlot), "{ACK}"}}},
      {"DUNMOOR",
       "Summit",
       "Two lamps: off only after both have cooled.",
       {k9600, kOdd, kTwo, 10, 2, 75, 240},
       kDunmoor + Protocol{{kVolumeUpSlot, "{STX}VOL{VAR ETX}"}, {kVolumeDownSlot, "{STX}VOL{VAR ETX}"}},
       {{kHexText, 2, 0, 0x3F, 3, 0x18}}},

      {"HALVERSUND",
       "Fjord 2",
       "Reports power changes made with its own remote control.",
       {k9600, kNone, kTwo, 8, 5, 60, 150},
       kHalversund},
      {"HALVERSUND",
       "Fjord 4",
       "",
       {k9600, kNone, kTwo, 8, 5, 60, 150},
       kHalversund + Protocol{{kData2Slot, "{ESC 022d}"}, {ReplyTo(kData2Slot), "{ESC IGN 022d}"}}},
      {"HALVERSUND",
       "Nordsj\u00F6 300",
       "Bass and treble stay as set on the projector.",
       {k9600, kNone, kTwo, 8, 5, 90, 200},
       kHalversund + Protocol{{kVolumeUpSlot, "{ESC 040d VAR}"}, {kVolumeDownSlot, "{ESC 040d VAR}"}},
       {{kRawBytes, 2, -600, 120, 20, 0, true, true}}},

      {"OSTREL", "Mono", "", {k9600, kNone, kOne, 50, 0, 20, 60}, kOstrel},
      {"OSTREL",
       "Duo",
       "",
       {k9600, kNone, kOne, 50, 0, 20, 60},
       kOstrel + Protocol{{kBlankSlot, "{10100001b}"}, {kBlankOffSlot, "{10100000b}"}}},

      {"TARNBEAM", "T5", "", {k57600, kNone, kOne, 0, 0, 35, 100}, kTarnbeam},
      {"TARNBEAM",
       "T5W",
       "Wide panel.",
       {k57600, kNone, kOne, 0, 0, 35, 100},
       kTarnbeam + Protocol{{kBlankSlot, "#A1=MU,1{CR LF}"}, {kBlankOffSlot, "#A1=MU,0{CR LF}"}}},
      {"TARNBEAM",
       "T7 Install",
       "Audio level relative to the line input, in dB.",
       {k57600, kNone, kOne, 0, 0, 50, 140},
       kTarnbeam + Protocol{{kBlankSlot, "#A1=MU,1{CR LF}"},
                            {kBlankOffSlot, "#A1=MU,0{CR LF}"},
                            {kVolumeUpSlot, "#A1=VL,{VAR CR LF}"},
                            {kVolumeDownSlot, "#A1=VL,{VAR CR LF}"}},
       {{kDecimalText, 3, -60, 12, 3, -20}}},

      {"VISORA", "Compact", "", {k9600, kEven, kOne, 3, 1, 25, 75}, kVisora},
      {"VISORA",
       "Compact Plus",
       "",
       {k9600, kEven, kOne, 3, 1, 25, 75},
       kVisora + Protocol{{kVolumeUpSlot, "<V+>"}, {kVolumeDownSlot, "<V->"}}},
      {"VISORA",
       "Grand",
       "Keeps its volume through a power cycle.",
       {k19200, kEven, kTwo, 3, 1, 55, 160},
       kVisora + Protocol{{kVolumeUpSlot, "<V{VAR}>"},
                          {ReplyTo(kVolumeUpSlot), "<V{IGN IGN}>"},
                          {kVolumeDownSlot, "<V{VAR}>"},
                          {ReplyTo(kVolumeDownSlot), "<V{IGN IGN}>"}},
       {{kHexText, 2, 0, 0xFF, 8, 0, true}}},
  };
}

int NumberIn(std::string_view digits, int base) {
  int number = -1;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  if (error != std::errc() || end != digits.data() + digits.size() || number < 0 || number > 255) {
    throw std::invalid_argument("not a byte: " + std::string(digits));
  }
  return number;
}

void Put(SerialString& string, int value, ByteKind kind) {
  const std::size_t at = string.BytesInUse();
  if (at == kMaximumStringBytes) throw std::invalid_argument("more than 32 bytes");
  string.Values[at] = static_cast<std::uint8_t>(value);
  string.Kinds[at] = static_cast<std::uint8_t>(kind);
  ++string.Count;
}

void PutWord(SerialString& string, std::string_view word) {
  const std::string_view digits = word.substr(0, word.size() - 1);
  const std::span<const std::uint8_t> before(string.Values.data(), string.BytesInUse());
  if (word == "VAR") return Put(string, 0, ByteKind::VAR);
  if (word == "IGN") return Put(string, 0, ByteKind::IGN);
  if (word == "sum") return Put(string, std::accumulate(before.begin(), before.end(), 0), ByteKind::HEX);
  if (word == "xor") {
    return Put(string, std::accumulate(before.begin(), before.end(), 0, std::bit_xor<>()), ByteKind::HEX);
  }
  const auto* const code = std::find(ControlCodeNames.begin(), ControlCodeNames.end(), word);
  if (code != ControlCodeNames.end()) {
    return Put(string, static_cast<int>(code - ControlCodeNames.begin()), ByteKind::CNT);
  }
  switch (word.back()) {
    case 'h':
      return Put(string, NumberIn(digits, 16), ByteKind::HEX);
    case 'd':
      return Put(string, NumberIn(digits, 10), ByteKind::DEC);
    case 'b':
      return Put(string, NumberIn(digits, 2), ByteKind::BIN);
    default:
      throw std::invalid_argument("not a byte: " + std::string(word));
  }
}

// 0 when there is no variable byte.
std::int16_t VariablePlace(const SerialString& string) {
  const auto* const end = string.Kinds.begin() + string.Count;
  const auto* const found = std::find(string.Kinds.begin(), end, static_cast<std::uint8_t>(ByteKind::VAR));
  return static_cast<std::int16_t>(found == end ? 0 : found - string.Kinds.begin() + 1);
}

void SetLevels(ProjectorDefinition& projector, const Levels& levels) {
  projector.UseLevels = kFlagSet;
  projector.MessageFormat = levels.Format;
  projector.NumberOfBytes = levels.Bytes;
  projector.MinimumLevel = levels.Minimum;
  projector.MaximumLevel = levels.Maximum;
  projector.LevelStep = levels.Step;
  projector.FixedStartLevel = levels.Start;
  projector.UsePowerDown = FlagOf(levels.StartsAtPowerDownLevel);
  projector.FirstByteIsHigh = FlagOf(levels.FirstByteIsHigh);
}

ProjectorDefinition DefinitionOf(const Example& example) {
  ProjectorDefinition projector;
  projector.Manufacturer.AssignUtf8(example.Manufacturer);
  projector.Model.AssignUtf8(example.Model);
  projector.Notes.AssignUtf8(example.Notes);
  projector.Baudrate = example.Line.Baudrate;
  projector.Parity = example.Line.Parity;
  projector.Stopbits = example.Line.Stopbits;
  projector.InterCommandDelay = example.Line.InterCommandDelay;
  projector.InterByteDelay = example.Line.InterByteDelay;
  projector.WarmUpTime = example.Line.WarmUpTime;
  projector.CoolDownTime = example.Line.CoolDownTime;
  for (const SlotForm& string : example.Strings) {
    projector.Strings[string.Place] = StringOf(string.Form);
    projector.Available[string.Place] = kFlagSet;
    if (SlotHasIgnoreMask(string.Place)) projector.RequiresReply[ReceivedIndex(string.Place)] = kFlagSet;
  }
  for (const Levels& levels : example.Volume) SetLevels(projector, levels);
  projector.VolumeBytePosition = VariablePlace(projector.Strings[kVolumeUpSlot]);
  return projector;
}

ProjectorDefinition Named(std::string_view model) {
  for (const ProjectorDefinition& projector : Library()) {
    if (projector.Model.TrimmedUtf8() == model) return projector;
  }
  throw std::invalid_argument("no such example: " + std::string(model));
}

PanelConfiguration ConfigurationFor(ControllerTypeValue type, std::string_view model) {
  PanelConfiguration configuration;
  configuration.ControllerType = type;
  configuration.Projector = Named(model);
  configuration.EditorMajor = 2;
  configuration.EditorMinor = 0;
  return configuration;
}

// A motorised screen; a movement sensor switches everything off and locks the panel when the room is empty.
PanelConfiguration Boardroom() {
  PanelConfiguration c = ConfigurationFor(kQdm7, "T7 Install");
  c.OutputsOption = kOutputsScreen;
  c.UpTime = 25;
  c.DownTime = 22;
  c.ScreenUseVolume = kFlagSet;
  c.ControlInputOption = kControlInputRoomPir;
  c.ControlInputActiveHigh = kFlagSet;
  c.ThresholdVoltage = 153;  // 3.0 V
  c.RoomTimeout = 20;
  c.LockOnRoomEmpty = kFlagSet;
  c.LockAfterRoomEmptyPeriod = 5;
  c.LockUsingButtons = kFlagSet;
  c.LockSequence = {0, 1, 4, 5};
  return c;
}

// The teacher's key switches the panel on; a forgotten projector goes off by itself.
PanelConfiguration Classroom() {
  PanelConfiguration c = ConfigurationFor(kQdm6, "Ridge 2");
  c.OutputsOption = kOutputsVolume;
  c.AllowVolumeWhenOff = kFlagSet;
  c.ControlInputOption = kControlInputKeyswitch;
  c.NoButtonPowerDown = 4;
  c.LockOnNoButton = kFlagSet;
  c.LockOnFrontPanel = kFlagSet;
  c.LockAfterProjectorOffPeriod = 10;
  return c;
}

// The outputs switch the projector's mains and the screen; the building's alarm system turns it off.
PanelConfiguration MeetingRoom() {
  PanelConfiguration c = ConfigurationFor(kQdm4, "Compact");
  c.OutputsOption = kOutputsPowerAndScreen;
  c.UpTime = 18;
  c.DownTime = 4;
  c.ControlInputOption = kControlInputExternalPowerDown;
  c.LockOnExternalPowerDown = kFlagSet;
  c.LockOnFrontPanel = kFlagSet;
  c.LockAfterProjectorOffPeriod = 0;
  c.LockUsingButtons = kFlagSet;
  c.LockSequence = {2, 3, 2, 4};
  return c;
}

// The amplifier: three sources, a limited volume range, on while there is sound.
PanelConfiguration Auditorium() {
  PanelConfiguration c = ConfigurationFor(kTlVox, "BL-900 Theatre");
  c.VolumeMin = -30;
  c.VolumeMax = 6;
  c.VolumeStep = 2;
  c.PowerUpVolume = -6;
  c.TLVOXpowerDownTime = 12;
  c.AudioRouting = PackAudioRouting(kFrontAudioJack, kRearPcInput, kRearVideoInput);
  c.UsePC2 = kFlagClear;
  c.NoButtonPowerDown = 8;
  c.LockUsingButtons = kFlagSet;
  c.LockSequence = {0, 0, 1, 2};
  return c;
}

// The same as in the library, and one that an installer has changed.
std::vector<ProjectorDefinition> VisoraDefinitions() {
  std::vector<ProjectorDefinition> definitions = {Named("Compact"), Named("Grand")};
  definitions[1].Baudrate = k38400;
  definitions[1].WarmUpTime = 70;
  definitions[1].Strings[kVideoSlot] = StringOf("<S9>");
  return definitions;
}

}  // namespace

SerialString StringOf(std::string_view form) {
  SerialString string;
  while (!form.empty()) {
    if (form.front() != '{') {
      Put(string, static_cast<unsigned char>(form.front()), ByteKind::ASC);
      form.remove_prefix(1);
      continue;
    }
    const std::size_t end = form.find('}');
    if (end == std::string_view::npos) throw std::invalid_argument("no closing brace: " + std::string(form));
    std::string_view words = form.substr(1, end - 1);
    form.remove_prefix(end + 1);
    while (!words.empty()) {
      const std::size_t blank = std::min(words.find(' '), words.size());
      PutWord(string, words.substr(0, blank));
      words.remove_prefix(std::min(blank + 1, words.size()));
    }
  }
  return string;
}

std::vector<ProjectorDefinition> Library() {
  std::vector<ProjectorDefinition> library;
  for (const Example& example : Examples()) library.push_back(DefinitionOf(example));
  return library;
}

std::vector<ExampleFile> Files() {
  return {
      {"Projectors.DEF", EncodeDefinitions(Library())},
      {"Visora.BVD", EncodeDefinitions(VisoraDefinitions())},
      {"Boardroom QDM7.BVC", Encode(Boardroom())},
      {"Classroom QDM6.BVC", Encode(Classroom())},
      {"Meeting room QDM4.BVC", Encode(MeetingRoom())},
      {"Auditorium TL-VOX.BVC", Encode(Auditorium())},
  };
}

}  // namespace qdm::examples
