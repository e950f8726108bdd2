#include "manuals/codes.h"
#include "serial_strings/check_sums.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

// How the last bytes of a code come from those before them.
struct Way {
  SumMethod Method;
  bool LowFirst = false;
  std::size_t Start = 0;  // bytes that are not covered

  std::size_t Width() const { return static_cast<std::size_t>(Method.Bits / 8); }
};

Bytes SumBy(const Way& way, ByteView body) {
  if (body.size() <= way.Start) return {};
  return Written(SumOf(way.Method, body.subspan(way.Start)), {SumForm::Digits::Raw, way.LowFirst},
                 way.Method.Bits);
}

bool EndsBy(const Way& way, ByteView code) {
  constexpr std::size_t kShortestBody = 3;
  if (code.size() < kShortestBody + way.Width()) return false;
  const ByteView body = code.first(code.size() - way.Width());
  const Bytes sum = SumBy(way, body);
  return std::equal(sum.begin(), sum.end(), code.end() - static_cast<std::ptrdiff_t>(sum.size()));
}

std::vector<Way> MakeWays() {
  std::vector<Way> ways;
  for (const std::size_t start : {std::size_t{0}, std::size_t{1}}) {
    for (const SumKind kind : {SumKind::Sum, SumKind::NegatedSum, SumKind::ExclusiveOr, SumKind::InvertedSum})
      ways.push_back({{.Kind = kind}, false, start});
  }
  for (const std::size_t start : {std::size_t{0}, std::size_t{1}}) {
    for (const bool lowFirst : {true, false}) {
      for (const SumMethod& method : SumMethods()) {
        if (method.Kind == SumKind::Crc && method.Bits == 16) ways.push_back({method, lowFirst, start});
      }
    }
  }
  return ways;
}
const std::vector<Way>& Ways() {
  static const std::vector<Way> ways = MakeWays();
  return ways;
}

bool IsSumHole(const CodeByte& byte) { return byte.Kind == ByteKind::VAR && byte.Value == 0; }

// One place for a sum that is not printed, of one byte or of two together.
bool LacksSum(const Code& code) {
  const auto first = std::find_if(code.Bytes.begin(), code.Bytes.end(), IsSumHole);
  const auto end = std::find_if_not(first, code.Bytes.end(), IsSumHole);
  const auto holes = std::count_if(code.Bytes.begin(), code.Bytes.end(),
                                   [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; });
  constexpr std::ptrdiff_t kWidest = 2;
  return code.Broken && first != code.Bytes.end() && end - first == holes && holes <= kWidest;
}

bool IsWhole(const Code& code) { return code.How == Notation::Hexadecimal && !code.Broken; }

// The whole codes of the page, each once; more of them would prove nothing more.
std::vector<Bytes> WholeCodes(const std::vector<Code>& codes) {
  constexpr std::size_t kMost = 64;
  std::set<Bytes> all;
  for (const Code& code : codes) {
    if (IsWhole(code) && all.size() < kMost) all.insert(Values(code.Bytes));
  }
  return {all.begin(), all.end()};
}

// What the whole codes of the page end with.
std::optional<Way> ShownWay(const std::vector<Code>& codes) {
  constexpr std::ptrdiff_t kFewest = 3;
  const std::vector<Bytes> whole = WholeCodes(codes);
  for (const Way& way : Ways()) {
    const auto right =
        std::count_if(whole.begin(), whole.end(), [&](const Bytes& code) { return EndsBy(way, code); });
    if (right >= kFewest) return way;
  }
  return std::nullopt;
}

// One code stands twice on the page, with its sum in an example and without it in the table.
std::optional<Way> ExampleWay(const std::vector<Code>& codes) {
  const std::vector<Bytes> all = WholeCodes(codes);  // sorted
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    for (std::size_t j = i + 1; j < all.size() && all[j].size() >= all[i].size(); ++j) {
      if (!std::equal(all[i].begin(), all[i].end(), all[j].begin())) break;
      for (const Way& way : Ways()) {
        if (all[j].size() == all[i].size() + way.Width() && EndsBy(way, all[j])) return way;
      }
    }
  }
  return std::nullopt;
}

std::optional<Way> StatedCrc(const ManualPage& page) {
  Way way;
  way.Method = {.Kind = SumKind::Crc, .Bits = 16, .Reflected = true};
  if (Says(page.Folded, {u"a001", u"8005", u"modbus", u"crc-16-ibm", u"crc16-ibm"})) {
    way.Method.Polynomial = 0x8005;
  } else if (Says(page.Folded, {u"1021", u"ccitt", u"xmodem"})) {
    way.Method.Polynomial = 0x1021;
    way.Method.Reflected = false;
  } else {
    return std::nullopt;
  }
  way.Method.Start = Says(page.Folded, {u"ffff", u"modbus"}) ? 0xFFFF : 0;
  way.LowFirst = Says(page.Folded, {u"low byte first", u"lsb first", u"low first", u"modbus", u"crc_low",
                                    u"crcl", u"crc low"}) &&
                 !Says(page.Folded, {u"high byte first", u"msb first"});
  return way;
}

std::optional<Way> StatedWay(const ManualPage& page) {
  const bool fromSecond =
      Says(page.Folded,
           {u"header excluded",   u"without the header", u"except the header", u"excluding the header",
            u"excluding header",  u"from the second",    u"except the first",  u"without the first",
            u"except 0x",         u"except stx",         u"without stx",       u"excluding stx",
            u"not included",      u"bytes 2 to",         u"byte 2 to",         u"starting with byte 2",
            u"from byte 2",       u"ohne das erste",     u"ab dem zweiten",    u"sauf le premier",
            u"excepto el primer", u"except the start"});
  const std::size_t start = fromSecond ? 1 : 0;
  if (Says(page.Folded, {u"exclusive", u"exclusif", u"exclusiv", u"xor", u"ex-or", u"异或"}))
    return Way{{.Kind = SumKind::ExclusiveOr}, false, start};
  if (Says(page.Folded, {u"two's compl", u"2's compl", u"twos compl", u"zweierkompl", u"complement a deux",
                         u"complemento a dos", u"complemento a due", u"补码"}))
    return Way{{.Kind = SumKind::NegatedSum}, false, start};
  if (Says(page.Folded, {u"one's compl", u"1's compl", u"einerkompl", u"inverted sum"}))
    return Way{{.Kind = SumKind::InvertedSum}, false, start};
  if (Says(page.Folded, {u"crc"})) return StatedCrc(page);
  if (Says(page.Folded, {u"sum of", u"somme", u"summe", u"suma ", u"somma", u"adding", u"added", u"addition",
                         u"total", u"累加", u"求和", u"校验和"}) ||
      fromSecond)
    return Way{{.Kind = SumKind::Sum}, false, start};
  return std::nullopt;
}

// "__" as the last byte of codes whose like end with a sum.
void TakeBlanksForSums(std::vector<Code>& codes) {
  for (Code& code : codes) {
    const auto holes = std::count_if(code.Bytes.begin(), code.Bytes.end(),
                                     [](const CodeByte& byte) { return byte.Kind == ByteKind::VAR; });
    if (code.Broken && holes == 1 && code.Bytes.back().Kind == ByteKind::VAR) code.Bytes.back().Value = 0;
  }
}

void FillHole(const Way& way, Code& code) {
  const auto hole = std::find_if(code.Bytes.begin(), code.Bytes.end(), IsSumHole);
  const auto end = std::find_if_not(hole, code.Bytes.end(), IsSumHole);
  CodeBytes bytes{code.Bytes.begin(), hole};
  const Bytes sum = SumBy(way, Values(bytes));
  if (sum.empty()) return;
  for (const std::uint8_t value : sum) bytes.push_back({value, ByteKind::HEX});
  bytes.insert(bytes.end(), end, code.Bytes.end());
  code.Bytes = std::move(bytes);
  code.Broken = false;
  code.Computed = true;
}

}  // namespace

void CompleteCheckSums(const ManualPage& page, std::vector<Code>& codes) {
  const bool named =
      Says(page.Folded, {u"checksum", u"check sum", u"crc", u"bcc", u"lrc", u"prufsumme", u"somme de contr"});
  const bool broken = std::any_of(codes.begin(), codes.end(), [](const Code& code) { return code.Broken; });
  if (broken && ShownWay(codes)) TakeBlanksForSums(codes);
  const bool lacking = std::any_of(codes.begin(), codes.end(), LacksSum);
  if (!named && !lacking) return;
  const auto example = named ? ExampleWay(codes) : std::nullopt;
  auto way = example;
  if (!way && lacking) way = ShownWay(codes);
  if (!way && lacking) way = StatedWay(page);
  if (!way) return;
  for (Code& code : codes) {
    if (LacksSum(code)) {
      FillHole(*way, code);
    } else if (example && IsWhole(code) && code.Bytes.size() > way->Width() &&
               !EndsBy(*way, Values(code.Bytes))) {
      code.Bytes.resize(code.Bytes.size() + way->Width(), {0, ByteKind::VAR});
      FillHole(*way, code);
    }
  }
}

}  // namespace qdm
