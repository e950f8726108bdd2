#include "projectors/field_captions.h"

#include <array>
#include <charconv>
#include <optional>

namespace qdm {
namespace {

using Naming = std::string_view (*)(int value);

std::string_view SpeedName(int value) {
  constexpr std::array<std::string_view, 5> kSpeeds = {"9600", "19200", "38400", "57600", "115200"};
  return value >= 1 && value <= 4 ? kSpeeds[static_cast<std::size_t>(value)] : kSpeeds[0];
}

std::string_view ParityName(int value) {
  return value == 0 ? "None" : value == 1 ? "Even" : value == 2 ? "Odd" : "";
}

std::string_view StopBitsName(int value) { return value == 0 ? "1" : "2"; }

std::string_view MessageFormatName(int value) {
  return value == 0 ? "HEX in ASCII" : value == 1 ? "Decimal in ASCII" : value == 2 ? "Raw byte(s)" : "";
}

std::string_view ByteOrderName(int value) { return value == 0 ? "Low" : "High"; }

struct Caption {
  std::string_view Field;
  std::string_view Words;
  Naming Name = nullptr;  // of a value; nothing for a plain number, text or flag
};

constexpr Caption kCaptions[] = {
    {"MaximumLevel", "Maximum volume level"},
    {"MinimumLevel", "Minimum volume level"},
    {"MessageFormat", "Volume message format", MessageFormatName},
    {"FirstByteIsHigh", "Volume: first byte is", ByteOrderName},
    {"NumberOfBytes", "Number of serial bytes for volume value"},
    {"UseLevels", "Uses levels"},
    {"LevelStep", "Volume step"},
    {"FixedStartLevel", "Power up volume"},
    {"UsePowerDown", "Use power-down level"},
    {"Baudrate", "Speed", SpeedName},
    {"InterCommandDelay", "Minimum delay between serial commands"},
    {"InterByteDelay", "Minimum delay between serial bytes"},
    {"WarmUpTime", "Warm up time"},
    {"CoolDownTime", "Cool down time"},
    {"VolumeBytePosition", "Position of the volume byte"},
    {"Parity", "Parity", ParityName},
    {"Stopbits", "Stop bits", StopBitsName},
};

const Caption* CaptionOf(std::string_view field) {
  for (const Caption& caption : kCaptions) {
    if (caption.Field == field) return &caption;
  }
  return nullptr;
}

struct Element {
  std::string_view Field;
  std::size_t Index;
};

// "Strings[6]" taken apart.
std::optional<Element> ElementOf(std::string_view path) {
  const std::size_t bracket = path.find('[');
  if (bracket == std::string_view::npos) return std::nullopt;
  std::size_t index = 0;
  std::from_chars(path.data() + bracket + 1, path.data() + path.size(), index);
  return Element{path.substr(0, bracket), index};
}

// Replies are named after their command, which the setup dialog shows beside the box.
std::string_view CommandOfReply(std::size_t reply) {
  const SlotFacts& slot = kSlots.at(ReceivedSlot(reply));
  return CommandSlotNames.at(slot.ReplyTo.value_or(slot.Place));
}

std::optional<int> NumberIn(const std::string& text) {
  if (text == "true") return kFlagSet;
  if (text == "false") return kFlagClear;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool IsFlag(const FieldDifference& difference) {
  return difference.First == "false" || difference.Second == "false";
}

void NameValues(FieldDifference& difference) {
  const std::optional<int> first = NumberIn(difference.First);
  const std::optional<int> second = NumberIn(difference.Second);
  if (!first || !second) return;
  const Caption* caption = CaptionOf(difference.Path);
  if (caption != nullptr && caption->Name != nullptr) {
    const std::string firstName(caption->Name(*first));
    const std::string secondName(caption->Name(*second));
    const bool tellApart = firstName != secondName;
    const auto text = [tellApart](const std::string& name, int number) {
      if (name.empty()) return std::to_string(number);
      return tellApart ? name : name + " (" + std::to_string(number) + ")";
    };
    difference.First = text(firstName, *first);
    difference.Second = text(secondName, *second);
  } else if (IsFlag(difference)) {
    difference.First = *first != 0 ? "Yes" : "No";
    difference.Second = *second != 0 ? "Yes" : "No";
  }
}

}  // namespace

std::string FieldCaption(std::string_view path) {
  if (const Caption* caption = CaptionOf(path)) return std::string(caption->Words);
  const std::optional<Element> element = ElementOf(path);
  if (element && element->Field == "Strings" && element->Index < kCommandSlots) {
    return std::string(CommandSlotNames[element->Index]);
  }
  if (element && element->Field == "Available" && element->Index < kCommandSlots) {
    return std::string(CommandSlotNames[element->Index]) + ": available";
  }
  if (element && element->Field == "RequiresReply" && element->Index < kReceivedSlots) {
    return std::string(CommandOfReply(element->Index)) + ": requires reply";
  }
  return std::string(path);
}

std::vector<FieldDifference> DifferencesInWords(const ProjectorDefinition& first,
                                                const ProjectorDefinition& second) {
  std::vector<FieldDifference> differences = ProjectorDifferences(first, second);
  for (FieldDifference& difference : differences) {
    NameValues(difference);
    difference.Path = FieldCaption(difference.Path);
  }
  return differences;
}

}  // namespace qdm
