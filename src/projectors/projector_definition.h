// One projector model as far as the wall panel needs it: names, line settings, delays and times, the 25
// command and reply strings with their flags, and the format of its volume command. The same fixed-size
// record is the element of the library, the record of an exported file, the working copy of the setup dialog
// and part of every configuration. Working form 2,404 bytes in memory, stored form 2,084 bytes. Records come
// from files: any field may hold any bits.
#pragma once

#include "base/fixed_text.h"
#include "base/record_codec.h"
#include "projectors/slots.h"
#include "serial_strings/string_record.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace qdm {

// A stored flag: 0 is no, anything else yes; yes is written as -1.
inline constexpr std::int16_t kFlagSet = -1;
inline constexpr std::int16_t kFlagClear = 0;
constexpr std::int16_t FlagOf(bool set) { return set ? kFlagSet : kFlagClear; }

// The panel's room for the strings of one projector, in bytes.
inline constexpr int kSerialByteBudget = 460;
// What a received string costs besides its own bytes: its ignore mask.
inline constexpr int kIgnoreMaskBytes = 4;

struct ProjectorDefinition {
  FixedText<32> Manufacturer;  // upper case in the library
  FixedText<32> Model;
  FixedText<256> Notes;
  std::array<std::int16_t, kCommandSlots> Available{};
  std::array<std::int16_t, kReceivedSlots> RequiresReply{};
  std::array<SerialString, kCommandSlots> Strings{};
  std::int16_t MaximumLevel = 1;
  std::int16_t MinimumLevel = 0;
  std::int16_t MessageFormat = 0;  // 0 "HEX in ASCII", 1 "Decimal in ASCII", 2 "Raw byte(s)"
  std::int16_t FirstByteIsHigh = 0;
  std::int16_t NumberOfBytes = 1;  // 1..4
  std::int16_t UseLevels = 0;
  std::int16_t LevelStep = 1;        // levels for each press of Up or Down
  std::int16_t FixedStartLevel = 0;  // the level sent at power-up
  std::int16_t UsePowerDown = 0;
  std::array<std::int16_t, 2> Reserved{};
  std::int16_t Baudrate = 0;           // code of a speed, line/speeds_and_parities.h
  std::int16_t InterCommandDelay = 0;  // as the panel counts, 0..255
  std::int16_t InterByteDelay = 0;     // milliseconds, 0..10
  std::int16_t WarmUpTime = 1;         // as the panel counts, 1..255
  std::int16_t CoolDownTime = 1;       // as the panel counts, 1..255
  std::int16_t VolumeBytePosition =
      -1;                     // 1-based place of the VAR byte in "Volume up"; 0 none, -1 not yet determined
  std::int16_t Parity = 0;    // code of a parity, line/speeds_and_parities.h
  std::int16_t Stopbits = 0;  // 0 one, anything else two

  friend bool operator==(const ProjectorDefinition&, const ProjectorDefinition&) = default;
};

// The record's fields, in stored order. Stored on disk: never reorder.
template <class Visitor, class... Definition>
requires RecordsOf<ProjectorDefinition, Definition...>
constexpr void Fields(Visitor& v, Definition&... d) {
  v.Text(FieldName("Manufacturer", "Manufacturer"), d.Manufacturer...);
  v.Text(FieldName("Model", "Model"), d.Model...);
  v.Text(FieldName("Notes", "Notes"), d.Notes...);
  v.Flags(FieldName("Available", "%1: available", NameOfSlot), d.Available...);
  v.Flags(FieldName("RequiresReply", "%1: requires reply", NameOfReplysCommand), d.RequiresReply...);
  v.Records(FieldName("Strings", "%1", NameOfSlot), d.Strings...);
  v.Integer(FieldName("MaximumLevel", "Maximum volume level"), d.MaximumLevel...);
  v.Integer(FieldName("MinimumLevel", "Minimum volume level"), d.MinimumLevel...);
  v.Integer(FieldName("MessageFormat", "Volume message format"), d.MessageFormat...);
  v.Flag(FieldName("FirstByteIsHigh", "Volume: first byte is"), d.FirstByteIsHigh...);
  v.Integer(FieldName("NumberOfBytes", "Number of serial bytes for volume value"), d.NumberOfBytes...);
  v.Flag(FieldName("UseLevels", "Uses levels"), d.UseLevels...);
  v.Integer(FieldName("LevelStep", "Volume step"), d.LevelStep...);
  v.Integer(FieldName("FixedStartLevel", "Power up volume"), d.FixedStartLevel...);
  v.Flag(FieldName("UsePowerDown", "Use power-down level"), d.UsePowerDown...);
  v.Integers("Reserved", d.Reserved...);
  v.Integer(FieldName("Baudrate", "Speed"), d.Baudrate...);
  v.Integer(FieldName("InterCommandDelay", "Minimum delay between serial commands"), d.InterCommandDelay...);
  v.Integer(FieldName("InterByteDelay", "Minimum delay between serial bytes"), d.InterByteDelay...);
  v.Integer(FieldName("WarmUpTime", "Warm up time"), d.WarmUpTime...);
  v.Integer(FieldName("CoolDownTime", "Cool down time"), d.CoolDownTime...);
  v.Integer(FieldName("VolumeBytePosition", "Position of the volume byte"), d.VolumeBytePosition...);
  v.Integer(FieldName("Parity", "Parity"), d.Parity...);
  v.Integer(FieldName("Stopbits", "Stop bits"), d.Stopbits...);
}

inline constexpr std::size_t kStoredProjectorSize = 2084;
static_assert(std::is_trivially_copyable_v<ProjectorDefinition>);
static_assert(sizeof(ProjectorDefinition) == 2404);
static_assert(StoredSize<ProjectorDefinition>() == kStoredProjectorSize);

// Back to the defaults of a new definition; `Baudrate` and `UsePowerDown` are left as they were.
void ClearProjector(ProjectorDefinition& projector);

// A name as it is kept: what no name may hold removed, then blanks at both ends.
void CleanName(FixedText<32>& name);

// What a record goes through when it comes into the library: both names cleaned, the manufacturer in upper
// case. False when a name is blank: such a record is not kept.
bool CleanNames(ProjectorDefinition& projector);

bool HasBothNames(const ProjectorDefinition& projector);

// Bytes that the strings of the shown slots take in the panel, of kSerialByteBudget: each string's count, and
// the mask of each received string that is not empty.
int SerialBytesUsed(const ProjectorDefinition& projector, const std::array<bool, kCommandSlots>& shown);
// The same over the slots marked `Available`.
int SerialBytesUsed(const ProjectorDefinition& projector);

}  // namespace qdm
