#include "projector_bench/wrong_settings.h"

#include "base/words.h"
#include "line/speeds_and_parities.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace qdm {
namespace {

constexpr int kDataBits = 8;

LineParity ParityOf(const LineSettings& settings) { return settings.Parity.value_or(LineParity::None); }
double BitTime(const LineSettings& settings) { return 1.0 / settings.Speed.value_or(9600); }

// One level for each bit time; the idle line is true.
std::vector<bool> Levels(ByteView sent, const LineSettings& at) {
  std::vector<bool> levels;
  for (const std::uint8_t byte : sent) {
    levels.push_back(false);
    for (int bit = 0; bit < kDataBits; ++bit) levels.push_back((byte >> bit & 1) != 0);
    const bool odd = std::popcount(byte) % 2 != 0;
    if (ParityOf(at) != LineParity::None) levels.push_back(odd == (ParityOf(at) == LineParity::Even));
    levels.insert(levels.end(), static_cast<std::size_t>(at.StopBits.value_or(1)), true);
  }
  return levels;
}

Bytes BytesOf(const LineCommand& command) {
  Bytes bytes;
  for (const PatternByte& byte : command.Pattern) bytes.push_back(byte.Value);
  return bytes;
}

bool IsStrange(std::uint8_t byte) { return byte >= 0x80 || byte == 0; }

bool AnyIsStrange(const std::vector<LineCommand>& commands) {
  return std::any_of(commands.begin(), commands.end(), [](const LineCommand& command) {
    return std::any_of(command.Pattern.begin(), command.Pattern.end(),
                       [](const PatternByte& byte) { return !byte.Any && IsStrange(byte.Value); });
  });
}

std::string LooksLike(const LineCommand& command, const std::string& settings) {
  return Say("looks like \"%1\" at %2", {Say(NameOfSlot(command.Place)), settings});
}

}  // namespace

Bytes HeardAs(ByteView sent, const LineSettings& sentAt, const LineSettings& heardAt) {
  const std::vector<bool> levels = Levels(sent, sentAt);
  const double end = static_cast<double>(levels.size()) * BitTime(sentAt);
  const auto level = [&](double when) {
    const auto bit = static_cast<std::size_t>(when / BitTime(sentAt) + 1e-9);
    return bit >= levels.size() || levels[bit];
  };
  const double bit = BitTime(heardAt);
  const double step = std::min(bit, BitTime(sentAt)) / 16;
  const int frameBits = kDataBits + (ParityOf(heardAt) == LineParity::None ? 0 : 1);
  Bytes heard;
  for (double when = 0; when < end;) {
    while (when < end && level(when)) when += step;
    if (when >= end) break;
    unsigned byte = 0;
    for (int i = 0; i < kDataBits; ++i) byte |= level(when + (i + 1.5) * bit) ? 1U << i : 0U;
    heard.push_back(static_cast<std::uint8_t>(byte));
    when += (frameBits + 1.5) * bit;  // the middle of the stop bit
    while (when < end && !level(when)) when += step;
  }
  return heard;
}

std::optional<std::string> WrongSettingsRemark(ByteView bytes, const std::vector<LineCommand>& commands,
                                               const LineSettings& heardAt) {
  for (const LineCommand& command : commands) {
    for (const LineSpeed& speed : LineSpeeds) {
      for (const ParityChoice& parity : LineParities) {
        const std::string settings = std::string(speed.Digits) + "," + std::string(parity.Letter) + ",8,1";
        const Bytes seen = HeardAs(BytesOf(command), ParseLineSettings(settings), heardAt);
        if (std::equal(seen.begin(), seen.end(), bytes.begin(), bytes.end()))
          return LooksLike(command, settings);
      }
    }
    Bytes sevenBits(bytes.begin(), bytes.end());
    for (std::uint8_t& byte : sevenBits) byte &= 0x7F;
    if (Matches(sevenBits, command.Pattern)) return LooksLike(command, Say("7 data bits with parity"));
  }
  const auto strange = std::count_if(bytes.begin(), bytes.end(), IsStrange);
  if (strange * 2 < static_cast<std::ptrdiff_t>(bytes.size()) || bytes.empty() || AnyIsStrange(commands))
    return std::nullopt;
  return Say("looks like a wrong speed or parity");
}

}  // namespace qdm
