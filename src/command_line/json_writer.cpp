#include "command_line/json_writer.h"

#include "serial_strings/serial_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace qdm {
namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

void AppendInteger(std::string& json, int value) {
  std::array<char, 12> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  json.append(digits.data(), end);
}

void AppendFlag(std::string& json, std::int16_t flag) {
  if (flag == kFlagSet) {
    json += "true";
  } else if (flag == kFlagClear) {
    json += "false";
  } else {
    AppendInteger(json, flag);
  }
}

void AppendKind(std::string& json, std::uint8_t kind) {
  const std::string_view label = KindLabel(kind);
  if (label.empty()) return AppendInteger(json, kind);
  json.append("\"").append(label).append("\"");
}

template <class Values, class AppendOne>
void AppendList(std::string& json, const Values& values, AppendOne appendOne) {
  json += '[';
  for (const auto& value : values) {
    if (&value != values.data()) json += ',';
    appendOne(json, value);
  }
  json += ']';
}

ByteView WithoutTrailingZeros(ByteView bytes) {
  const auto last = std::find_if(bytes.rbegin(), bytes.rend(), [](std::uint8_t byte) { return byte != 0; });
  return bytes.first(static_cast<std::size_t>(bytes.rend() - last));
}

void AppendString(std::string& json, const SerialString& string) {
  json += "{\"Text\": ";
  AppendQuoted(json, CompactText(string));
  json += ", \"Count\": ";
  AppendInteger(json, string.Count);
  json += ", \"Values\": ";
  AppendList(json, WithoutTrailingZeros(string.Values), AppendInteger);
  json += ", \"Kinds\": ";
  AppendList(json, WithoutTrailingZeros(string.Kinds), AppendKind);
  json += '}';
}

// A line a field, at the depth where the record begins.
class JsonFieldWriter {
 public:
  JsonFieldWriter(std::string& json, int depth) : json_(json), depth_(depth) {}

  template <std::size_t N>
  void Text(std::string_view name, const FixedText<N>& text) {
    Key(name);
    AppendQuoted(json_, ToUtf8(text.Unpadded()));
  }
  void Integer(std::string_view name, const std::int16_t& value) {
    Key(name);
    AppendInteger(json_, value);
  }
  void Flag(std::string_view name, const std::int16_t& value) {
    Key(name);
    AppendFlag(json_, value);
  }
  template <std::size_t N>
  void Integers(std::string_view name, const std::array<std::int16_t, N>& values) {
    Key(name);
    AppendList(json_, values, AppendInteger);
  }
  template <std::size_t N>
  void Flags(std::string_view name, const std::array<std::int16_t, N>& values) {
    Key(name);
    AppendList(json_, values, AppendFlag);
  }
  template <std::size_t N>
  void Records(std::string_view name, const std::array<SerialString, N>& strings) {
    Key(name);
    json_ += '[';
    for (const SerialString& string : strings) {
      if (&string != strings.data()) json_ += ',';
      NewLine(depth_ + 2);
      AppendString(json_, string);
    }
    NewLine(depth_ + 1);
    json_ += ']';
  }
  template <std::size_t N>
  void Block(std::string_view name, const std::array<std::uint8_t, N>& bytes) {
    Key(name);
    json_ += '"';
    for (const std::uint8_t byte : WithoutTrailingZeros(bytes)) {
      json_ += kHexDigits[byte >> 4];
      json_ += kHexDigits[byte & 0xF];
    }
    json_ += '"';
  }
  template <class Nested>
  void Record(std::string_view name, const Nested& record) {
    Key(name);
    Object(depth_ + 1, record);
  }

  template <class Written>
  void Object(int depth, const Written& record) {
    json_ += '{';
    JsonFieldWriter fields(json_, depth);
    Fields(fields, record);
    NewLine(depth);
    json_ += '}';
  }

 private:
  void NewLine(int depth) { json_.append(1, '\n').append(2 * static_cast<std::size_t>(depth), ' '); }
  void Key(std::string_view name) {
    if (!first_) json_ += ',';
    first_ = false;
    NewLine(depth_ + 1);
    json_.append("\"").append(name).append("\": ");
  }

  std::string& json_;
  int depth_;
  bool first_ = true;
};

std::string Heading(std::string_view format, std::string_view content) {
  return "{\n  \"format\": \"" + std::string(format) +
         "\",\n  \"version\": " + std::to_string(kFormatVersion) + ",\n  \"" + std::string(content) + "\": ";
}

}  // namespace

void AppendQuoted(std::string& json, std::string_view text) {
  json += '"';
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20) {
      json.append("\\u00").append({kHexDigits[code >> 4], kHexDigits[code & 0xF]});
    } else {
      if (character == '"' || character == '\\') json += '\\';
      json += character;
    }
  }
  json += '"';
}

std::string ConfigurationToJson(const PanelConfiguration& configuration) {
  std::string json = Heading(kConfigurationFormat, "configuration");
  JsonFieldWriter(json, 0).Object(1, configuration);
  return json += "\n}\n";
}

std::string ProjectorsToJson(const std::vector<ProjectorDefinition>& projectors) {
  std::string json = Heading(kProjectorsFormat, "projectors");
  json += '[';
  for (const ProjectorDefinition& projector : projectors) {
    json += &projector == projectors.data() ? "\n    " : ",\n    ";
    JsonFieldWriter(json, 0).Object(2, projector);
  }
  return json += projectors.empty() ? "]\n}\n" : "\n  ]\n}\n";
}

}  // namespace qdm
