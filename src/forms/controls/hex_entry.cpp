#include "forms/controls/hex_entry.h"

#include "serial_strings/serial_string.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace qdm {
namespace {

constexpr qsizetype kWordDigits = 4;
constexpr qsizetype kLongDigits = 8;

}  // namespace

HEXentry::HEXentry(QWidget* parent) : SpinEntry(parent) {
  SetValue(0);
  ShowRange();
}

void HEXentry::SetValue(int value) { SetCurrent(value); }
int HEXentry::Value() const { return static_cast<int>(Current()); }

double HEXentry::Limited(double value) const {
  return std::clamp(value, static_cast<double>(kLowest), static_cast<double>(kHighest));
}

QString HEXentry::TextOf(double value) const {
  return QString::fromStdString(HexWord(static_cast<std::int16_t>(value)));
}

// Up to four digits are a 16-bit word, up to eight a 32-bit one, both in two's complement; what is longer is
// too large.
std::optional<double> HEXentry::Parse(const QString& text) const {
  static const QRegularExpression kHex(QStringLiteral("^(?:&[Hh])?0*([0-9A-Fa-f]+)$"));
  const QRegularExpressionMatch match = kHex.match(text);
  if (!match.hasMatch()) return std::nullopt;
  const QString digits = match.captured(1);
  if (digits.size() > kLongDigits) return kHighest;
  const std::uint32_t bits = digits.toUInt(nullptr, 16);
  if (digits.size() <= kWordDigits) return static_cast<std::int16_t>(static_cast<std::uint16_t>(bits));
  return Limited(static_cast<std::int32_t>(bits));
}

QString HEXentry::RangeText() const { return tr("hexadecimal, 0 to FFFF"); }

QString HEXentry::WidestText() const { return QStringLiteral("DDDDD"); }

SpinEntry::Steps HEXentry::StepRule() const { return {1, kLowest, kHighest}; }

}  // namespace qdm
