#include "command_line/json_reader.h"

#include "command_line/json_writer.h"
#include "serial_strings/serial_string.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace qdm {
namespace {

using Json = nlohmann::json;

// What a value of the text is meant for.
struct Whole {};    // the text itself
struct Ignored {};  // and whatever it holds
struct Format {};
struct Version {};
struct Text {
  std::span<char16_t> Characters;
};
struct Word {
  std::int16_t* Value;
  bool IsFlag;
};
struct Words {
  std::span<std::int16_t> Values;
  bool AreFlags;
};
struct Byte {
  std::uint8_t* Value;
  bool IsKind;
};
struct ByteList {
  std::span<std::uint8_t> Bytes;
  bool AreKinds;
};
struct HexBytes {
  std::span<std::uint8_t> Bytes;
};
using Place = std::variant<Whole, Ignored, Format, Version, Text, Word, Words, Byte, ByteList, HexBytes,
                           SerialString*, std::span<SerialString>, PanelConfiguration*, ProjectorDefinition*,
                           std::vector<ProjectorDefinition>*>;

template <class... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Match(Cases...) -> Match<Cases...>;

struct Member {
  Place Where;
  std::size_t Number;  // in its object, for finding repeated keys
};

// Looks a field up by name in a record's field list.
class FieldFinder {
 public:
  explicit FieldFinder(std::string_view wanted) : wanted_(wanted) {}

  template <std::size_t N>
  void Text(std::string_view name, FixedText<N>& text) {
    if (Is(name)) Found(qdm::Text{text.Characters});
  }
  void Integer(std::string_view name, std::int16_t& value) {
    if (Is(name)) Found(Word{&value, false});
  }
  void Flag(std::string_view name, std::int16_t& value) {
    if (Is(name)) Found(Word{&value, true});
  }
  template <std::size_t N>
  void Integers(std::string_view name, std::array<std::int16_t, N>& values) {
    if (Is(name)) Found(Words{values, false});
  }
  template <std::size_t N>
  void Flags(std::string_view name, std::array<std::int16_t, N>& values) {
    if (Is(name)) Found(Words{values, true});
  }
  template <std::size_t N>
  void Records(std::string_view name, std::array<SerialString, N>& strings) {
    if (Is(name)) Found(std::span<SerialString>(strings));
  }
  template <std::size_t N>
  void Block(std::string_view name, std::array<std::uint8_t, N>& bytes) {
    if (Is(name)) Found(HexBytes{bytes});
  }
  template <class Nested>
  void Record(std::string_view name, Nested& record) {
    if (Is(name)) Found(&record);
  }

  std::optional<Member> Take() const { return found_; }

 private:
  bool Is(std::string_view name) {
    ++number_;
    return name == wanted_;
  }
  void Found(Place place) { found_ = Member{place, number_}; }

  std::string_view wanted_;
  std::size_t number_ = 0;
  std::optional<Member> found_;
};

template <class Record>
std::optional<Member> FieldOf(Record& record, std::string_view name) {
  FieldFinder finder(name);
  Fields(finder, record);
  return finder.Take();
}

std::optional<Member> MemberOf(SerialString& string, std::string_view name) {
  if (name == "Text") return Member{Ignored{}, 0};
  if (name == "Count") return Member{Word{&string.Count, false}, 1};
  if (name == "Values") return Member{ByteList{string.Values, false}, 2};
  if (name == "Kinds") return Member{ByteList{string.Kinds, true}, 3};
  return std::nullopt;
}

std::optional<std::uint8_t> KindOfLabel(std::string_view label) {
  for (std::uint8_t kind = 0; kind < kByteKinds; ++kind) {
    if (KindLabel(kind) == label) return kind;
  }
  return std::nullopt;
}

std::optional<unsigned> HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  return std::nullopt;
}

// Cut to a length that leaves a message readable, not in the middle of a character.
std::string Shortened(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) return std::string(text);
  while ((static_cast<unsigned char>(text[longest]) & 0xC0) == 0x80) --longest;
  return std::string(text.substr(0, longest)) + "...";
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::string quoted;
  AppendQuoted(quoted, Shortened(text, kLongest));
  return quoted;
}

// A field's name as it is, any other key as JSON shows it.
std::string KeyInPath(const std::string& key) {
  const bool plain = std::all_of(key.begin(), key.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
  return plain && !key.empty() ? key : Quoted(key);
}

// What is expected of a value at a place.
std::string Demand(const Place& place) {
  constexpr const char* kWord = "a whole number from -32768 to 32767";
  return std::visit<std::string>(
      Match{[](const Format&) { return Quoted(kConfigurationFormat) + " or " + Quoted(kProjectorsFormat); },
            [](const Version&) { return std::to_string(kFormatVersion); },
            [](const Text& text) {
              return "a text of up to " + std::to_string(text.Characters.size()) + " characters";
            },
            [](const Word& word) {
              return (word.IsFlag ? std::string("true, false or ") : std::string()) + kWord;
            },
            [](const Byte& byte) {
              return byte.IsKind ? "\"ASC\", \"HEX\", \"DEC\", \"BIN\", \"CNT\", \"VAR\", \"IGN\" or a whole "
                                   "number from 0 to 255"
                                 : "a whole number from 0 to 255";
            },
            [](const HexBytes& block) {
              return "a text of up to " + std::to_string(block.Bytes.size()) + " hexadecimal pairs";
            },
            [](const Words&) { return "a list"; }, [](const ByteList&) { return "a list"; },
            [](const std::span<SerialString>&) { return "a list"; },
            [](const std::vector<ProjectorDefinition>*) { return "a list"; },
            [](const auto&) { return "an object"; }},
      place);
}

// Takes the parser's events and keeps the way from the outermost value to the present one.
class RecordBuilder : public nlohmann::json_sax<Json> {
 public:
  RecordFile Take();

  bool null() override { return Refuse("null"); }
  bool boolean(bool value) override;
  bool number_integer(number_integer_t value) override { return Integer(value); }
  bool number_unsigned(number_unsigned_t value) override {
    constexpr auto kMost = std::numeric_limits<number_integer_t>::max();
    return Integer(static_cast<number_integer_t>(std::min<number_unsigned_t>(value, kMost)));
  }
  bool number_float(number_float_t, const string_t& digits) override { return Refuse(Shortened(digits, 30)); }
  bool string(string_t& text) override;
  bool binary(binary_t&) override { return Refuse("binary data"); }
  bool start_object(std::size_t) override;
  bool key(string_t& name) override;
  bool end_object() override { return Leave(); }
  bool start_array(std::size_t) override;
  bool end_array() override;
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override;

 private:
  struct Level {
    Place Container;
    bool IsList;
    Place Next;            // object: where the value of the present key goes
    std::string Key;       // object
    std::size_t Index{};   // list: values so far
    std::uint64_t Seen{};  // object: a bit for each key so far, by Member::Number
  };

  // The place of the value that begins now; moves a list on.
  Place NextPlace();
  Place Element(const Level& list);
  std::optional<Member> MemberNamed(Level& object, std::string_view name);
  std::optional<Member> PartNamed(std::string_view name);
  bool Enter(const Place& container, bool isList);
  bool Leave();
  bool Integer(std::int64_t value);
  void StoreText(const Text& place, std::string_view text) const;
  void StoreHex(const HexBytes& place, std::string_view digits) const;

  bool Refuse(const std::string& value);
  [[noreturn]] void Complain(const std::string& why) const;
  std::string Path() const;

  std::vector<Level> levels_;
  std::string format_;
  bool hasVersion_ = false;
  std::optional<PanelConfiguration> configuration_;
  std::optional<std::vector<ProjectorDefinition>> projectors_;
};

std::string RecordBuilder::Path() const {
  std::string path;
  for (const Level& level : levels_) {
    if (level.IsList) {
      path += "[" + std::to_string(level.Index - 1) + "]";
    } else {
      path += (path.empty() ? "" : ".") + KeyInPath(level.Key);
    }
  }
  return path;
}

void RecordBuilder::Complain(const std::string& why) const {
  const std::string path = Path();
  throw JsonError(path.empty() ? why : path + ": " + why);
}

bool RecordBuilder::Refuse(const std::string& value) {
  const Place place = NextPlace();
  if (!std::holds_alternative<Ignored>(place)) Complain(value + " is not " + Demand(place));
  return true;
}

Place RecordBuilder::Element(const Level& list) {
  const std::size_t index = list.Index - 1;
  const auto checked = [&](auto span) -> auto& {
    if (index >= span.size()) {
      levels_.pop_back();
      Complain("more than " + std::to_string(span.size()) + " entries");
    }
    return span[index];
  };
  return std::visit(Match{[&](const Words& words) -> Place {
                            return Word{&checked(words.Values), words.AreFlags};
                          },
                          [&](const ByteList& bytes) -> Place {
                            return Byte{&checked(bytes.Bytes), bytes.AreKinds};
                          },
                          [&](const std::span<SerialString>& strings) -> Place { return &checked(strings); },
                          [&](std::vector<ProjectorDefinition>* projectors) -> Place {
                            return &projectors->emplace_back();
                          },
                          [](const auto&) -> Place { return Ignored{}; }},
                    list.Container);
}

Place RecordBuilder::NextPlace() {
  if (levels_.empty()) return Whole{};
  Level& level = levels_.back();
  if (!level.IsList) return level.Next;
  ++level.Index;
  return Element(level);
}

std::optional<Member> RecordBuilder::PartNamed(std::string_view name) {
  if (name == "format") return Member{Format{}, 0};
  if (name == "version") return Member{Version{}, 1};
  if (name == "configuration") return Member{&configuration_.emplace(), 2};
  if (name == "projectors") return Member{&projectors_.emplace(), 3};
  return std::nullopt;
}

std::optional<Member> RecordBuilder::MemberNamed(Level& object, std::string_view name) {
  return std::visit(Match{[&](const Whole&) { return PartNamed(name); },
                          [&](PanelConfiguration* record) { return FieldOf(*record, name); },
                          [&](ProjectorDefinition* record) { return FieldOf(*record, name); },
                          [&](SerialString* string) { return MemberOf(*string, name); },
                          [](const auto&) -> std::optional<Member> {
                            return Member{Ignored{}, 0};
                          }},
                    object.Container);
}

bool RecordBuilder::key(string_t& name) {
  Level& level = levels_.back();
  const std::optional<Member> member = MemberNamed(level, name);
  level.Key = std::move(name);
  if (std::holds_alternative<Ignored>(level.Container)) return true;
  if (!member) Complain("unknown key");
  const std::uint64_t bit = std::uint64_t{1} << member->Number;
  if ((level.Seen & bit) != 0) Complain("the key is there twice");
  level.Seen |= bit;
  level.Next = member->Where;
  return true;
}

bool RecordBuilder::Enter(const Place& container, bool isList) {
  levels_.push_back({.Container = container, .IsList = isList, .Next = Ignored{}, .Key = {}});
  return true;
}

bool RecordBuilder::Leave() {
  levels_.pop_back();
  return true;
}

bool RecordBuilder::start_object(std::size_t) {
  const Place place = NextPlace();
  const bool isObject =
      std::visit(Match{[](const Whole&) { return true; }, [](const Ignored&) { return true; },
                       [](SerialString*) { return true; }, [](PanelConfiguration*) { return true; },
                       [](ProjectorDefinition*) { return true; }, [](const auto&) { return false; }},
                 place);
  if (!isObject) Complain("an object is not " + Demand(place));
  return Enter(place, false);
}

bool RecordBuilder::start_array(std::size_t) {
  const Place place = NextPlace();
  const bool isList = std::visit(
      Match{[](const Ignored&) { return true; }, [](const Words&) { return true; },
            [](const ByteList&) { return true; }, [](const std::span<SerialString>&) { return true; },
            [](std::vector<ProjectorDefinition>*) { return true; }, [](const auto&) { return false; }},
      place);
  if (!isList) Complain("a list is not " + Demand(place));
  return Enter(place, true);
}

bool RecordBuilder::end_array() {
  const Level list = std::move(levels_.back());
  levels_.pop_back();
  const auto demandAll = [&](std::size_t length) {
    if (list.Index != length) {
      Complain(std::to_string(list.Index) + " entries instead of " + std::to_string(length));
    }
  };
  std::visit(
      Match{[&](const Words& words) { demandAll(words.Values.size()); },
            [&](const std::span<SerialString>& strings) { demandAll(strings.size()); }, [](const auto&) {}},
      list.Container);
  return true;
}

bool RecordBuilder::boolean(bool value) {
  const Place place = NextPlace();
  if (std::holds_alternative<Ignored>(place)) return true;
  const Word* word = std::get_if<Word>(&place);
  if (word == nullptr || !word->IsFlag) {
    Complain(std::string(value ? "true" : "false") + " is not " + Demand(place));
  }
  *word->Value = FlagOf(value);
  return true;
}

bool RecordBuilder::Integer(std::int64_t value) {
  const Place place = NextPlace();
  const auto demand = [&](bool fits) {
    if (!fits) Complain(std::to_string(value) + " is not " + Demand(place));
  };
  std::visit(Match{[&](const Word& word) {
                     demand(value >= -0x8000 && value <= 0x7FFF);
                     *word.Value = static_cast<std::int16_t>(value);
                   },
                   [&](const Byte& byte) {
                     demand(value >= 0 && value <= 0xFF);
                     *byte.Value = static_cast<std::uint8_t>(value);
                   },
                   [&](const Version&) {
                     demand(value == kFormatVersion);
                     hasVersion_ = true;
                   },
                   [](const Ignored&) {}, [&](const auto&) { demand(false); }},
             place);
  return true;
}

void RecordBuilder::StoreText(const Text& place, std::string_view text) const {
  const std::u16string characters = FromUtf8(text);
  if (characters.size() > place.Characters.size()) {
    Complain(std::to_string(characters.size()) + " characters, there is room for " +
             std::to_string(place.Characters.size()));
  }
  for (std::size_t i = 0; i < characters.size(); ++i) {
    if (ByteOf(characters[i])) continue;
    // Both halves of a character beyond the first 65,536.
    const bool isPair = characters[i] >= 0xD800 && characters[i] < 0xDC00 && i + 1 < characters.size();
    Complain("the character " + Quoted(ToUtf8(std::u16string_view(characters).substr(i, isPair ? 2 : 1))) +
             " is not in the code page Windows-1252");
  }
  std::fill(std::copy(characters.begin(), characters.end(), place.Characters.begin()), place.Characters.end(),
            u' ');
}

void RecordBuilder::StoreHex(const HexBytes& place, std::string_view digits) const {
  if (digits.size() > 2 * place.Bytes.size()) {
    Complain(std::to_string(digits.size() / 2) + " bytes, there is room for " +
             std::to_string(place.Bytes.size()));
  }
  if (digits.size() % 2 != 0) Complain("half a hexadecimal pair at the end");
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const std::optional<unsigned> high = HexDigit(digits[i]);
    const std::optional<unsigned> low = HexDigit(digits[i + 1]);
    if (!high || !low) Complain(Quoted(digits.substr(i, 2)) + " is not a hexadecimal pair");
    place.Bytes[i / 2] = static_cast<std::uint8_t>(*high << 4 | *low);
  }
}

bool RecordBuilder::string(string_t& text) {
  const Place place = NextPlace();
  std::visit(
      Match{[&](const Text& field) { StoreText(field, text); },
            [&](const HexBytes& field) { StoreHex(field, text); },
            [&](const Byte& byte) {
              const std::optional<std::uint8_t> kind = byte.IsKind ? KindOfLabel(text) : std::nullopt;
              if (!kind) Complain(Quoted(text) + " is not " + Demand(place));
              *byte.Value = *kind;
            },
            [&](const Format&) {
              if (text != kConfigurationFormat && text != kProjectorsFormat) {
                Complain(Quoted(text) + " is not " + Demand(place));
              }
              format_ = text;
            },
            [](const Ignored&) {}, [&](const auto&) { Complain(Quoted(text) + " is not " + Demand(place)); }},
      place);
  return true;
}

bool RecordBuilder::parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
  // "[json.exception.parse_error.101] parse error at line 3, column 5: ..."
  std::string_view text = error.what();
  if (const std::size_t label = text.find("] "); label != std::string_view::npos)
    text.remove_prefix(label + 2);
  throw JsonError("not JSON: " + Shortened(text, 200));
}

RecordFile RecordBuilder::Take() {
  if (format_.empty()) throw JsonError("format: missing");
  if (!hasVersion_) throw JsonError("version: missing");
  const bool isConfiguration = format_ == kConfigurationFormat;
  const char* const wanted = isConfiguration ? "configuration" : "projectors";
  const char* const other = isConfiguration ? "projectors" : "configuration";
  if (isConfiguration ? projectors_.has_value() : configuration_.has_value()) {
    throw JsonError(std::string(other) + ": does not belong into the format " + Quoted(format_));
  }
  if (isConfiguration ? !configuration_ : !projectors_) throw JsonError(std::string(wanted) + ": missing");
  if (isConfiguration) return *configuration_;
  return std::move(*projectors_);
}

}  // namespace

RecordFile ReadJson(std::string_view text) {
  RecordBuilder builder;
  Json::sax_parse(text.begin(), text.end(), &builder);
  return builder.Take();
}

}  // namespace qdm
