#include "projectors/field_captions.h"

#include "base/words.h"
#include "line/speeds_and_parities.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <variant>

namespace qdm {
namespace {

using Naming = std::string_view (*)(int value);

std::string_view SpeedName(int value) { return SpeedOf(value).Digits; }

std::string_view ParityName(int value) {
  const ParityChoice* parity = ParityWithCode(value);
  return parity != nullptr ? parity->Caption : "";
}

std::string_view StopBitsName(int value) { return value == 0 ? "1" : "2"; }

std::string_view MessageFormatName(int value) {
  return value == 0   ? Marked("HEX in ASCII")
         : value == 1 ? Marked("Decimal in ASCII")
         : value == 2 ? Marked("Raw byte(s)")
                      : "";
}

std::string_view ByteOrderName(int value) { return value == 0 ? Marked("Low") : Marked("High"); }

std::string_view YesOrNo(int value) { return value == kFlagClear ? Marked("No") : Marked("Yes"); }

constexpr struct {
  std::string_view Field;
  Naming Name;
} kNamings[] = {
    {"MessageFormat", MessageFormatName},
    {"FirstByteIsHigh", ByteOrderName},
    {"Baudrate", SpeedName},
    {"Parity", ParityName},
    {"Stopbits", StopBitsName},
};

// How the values of a field are named; nothing for plain numbers, texts and strings.
Naming NamingOf(const FieldDifference& difference) {
  for (const auto& naming : kNamings) {
    if (naming.Field == difference.Place.Field.Name) return naming.Name;
  }
  return std::holds_alternative<FlagValue>(difference.First) ? YesOrNo : nullptr;
}

int NumberOf(const FieldValue& value) {
  const auto* flag = std::get_if<FlagValue>(&value);
  return flag != nullptr ? flag->Flag : std::get<NumberValue>(value).Number;
}

std::string NamedValue(Naming naming, int value, bool tellApart) {
  const std::string name = Say(naming(value));
  if (name.empty()) return std::to_string(value);
  return tellApart ? name : name + " (" + std::to_string(value) + ")";
}

DifferenceText InWords(const FieldDifference& difference) {
  DifferenceText text = TextOf(difference);
  text.Field = CaptionOf(difference.Place);
  if (const Naming naming = NamingOf(difference)) {
    const int first = NumberOf(difference.First);
    const int second = NumberOf(difference.Second);
    const bool tellApart = naming(first) != naming(second);
    text.First = NamedValue(naming, first, tellApart);
    text.Second = NamedValue(naming, second, tellApart);
  }
  return text;
}

}  // namespace

std::string CaptionOf(const FieldPlace& place) {
  if (place.Field.Caption.empty()) return PathOf(place);
  return place.Index ? Say(place.Field.Caption, {Say(place.Field.Elements(*place.Index))})
                     : Say(place.Field.Caption);
}

std::vector<DifferenceText> DifferencesInWords(const ProjectorDefinition& first,
                                               const ProjectorDefinition& second) {
  const std::vector<FieldDifference> differences = ProjectorDifferences(first, second);
  std::vector<DifferenceText> texts;
  texts.reserve(differences.size());
  std::transform(differences.begin(), differences.end(), std::back_inserter(texts), InWords);
  return texts;
}

}  // namespace qdm
