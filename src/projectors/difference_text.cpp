#include "projectors/difference_text.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <variant>

namespace qdm {
namespace {

std::string Text(const std::u16string& text) { return ToUtf8(text); }
std::string Text(NumberValue value) { return std::to_string(value.Number); }
std::string Text(FlagValue value) {
  if (value.Flag == kFlagSet) return "true";
  return value.Flag == kFlagClear ? "false" : std::to_string(value.Flag);
}
std::string Text(ByteValue value) { return HexByte(value.Byte) + "h"; }
std::string Text(const SerialString& string) { return "\"" + CompactText(string) + "\""; }

// Everything of a string that its compact text may leave out.
std::string Exactly(const SerialString& string) {
  std::string text = Text(string) + " Count " + std::to_string(string.Count) + " Values";
  for (const std::uint8_t value : string.Values) text += " " + HexByte(value);
  text += " Kinds";
  for (const std::uint8_t kind : string.Kinds) text += " " + std::to_string(kind);
  return text;
}

std::string ValueText(const FieldValue& value) {
  return std::visit([](const auto& held) { return Text(held); }, value);
}

}  // namespace

std::string PathOf(const FieldPlace& place) {
  std::string path(place.Record);
  if (!path.empty()) path += ".";
  path += place.Field.Name;
  if (place.Index) path += "[" + std::to_string(*place.Index) + "]";
  return path;
}

DifferenceText TextOf(const FieldDifference& difference) {
  DifferenceText text{PathOf(difference.Place), ValueText(difference.First), ValueText(difference.Second)};
  const auto* first = std::get_if<SerialString>(&difference.First);
  const auto* second = std::get_if<SerialString>(&difference.Second);
  if (first != nullptr && second != nullptr && text.First == text.Second) {
    text.First = Exactly(*first);
    text.Second = Exactly(*second);
  }
  return text;
}

std::vector<DifferenceText> TextsOf(const std::vector<FieldDifference>& differences) {
  std::vector<DifferenceText> texts;
  texts.reserve(differences.size());
  std::transform(differences.begin(), differences.end(), std::back_inserter(texts), TextOf);
  return texts;
}

}  // namespace qdm
