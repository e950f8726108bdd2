#include "forms/controls/integer5v.h"

#include <QLocale>

#include <cmath>
#include <optional>

namespace qdm {
namespace {

constexpr double kFullScale = 5.0;  // volts
constexpr double kCounts = 255;
constexpr double kStep = 0.0196;  // one count
// What a value from outside becomes: clearly inside, not the end itself.
constexpr double kInsteadOfTooHigh = 4.75;
constexpr double kInsteadOfTooLow = 0.25;

}  // namespace

Integer5V::Integer5V(QWidget* parent) : SpinEntry(parent) {
  SetValue(0);
  ShowRange();
}

void Integer5V::SetValue(float volts) { SetCurrent(static_cast<double>(volts)); }
float Integer5V::Value() const { return static_cast<float>(Current()); }

void Integer5V::SetCount(int count) { SetCurrent(count * kFullScale / kCounts); }
int Integer5V::Count() const { return static_cast<int>(std::lround(Current() * kCounts / kFullScale)); }

double Integer5V::Limited(double volts) const {
  if (volts > kFullScale) return kInsteadOfTooHigh;
  if (volts < 0) return kInsteadOfTooLow;
  return static_cast<double>(static_cast<float>(volts));
}

QString Integer5V::TextOf(double volts) const { return QString::number(volts, 'f', 2); }

std::optional<double> Integer5V::Parse(const QString& text) const {
  bool readable = false;
  const double volts =
      QLocale::c().toDouble(QString(text).replace(QLatin1Char(','), QLatin1Char('.')), &readable);
  if (!readable || !std::isfinite(volts)) return std::nullopt;
  return static_cast<double>(static_cast<float>(volts));
}

QString Integer5V::RangeText() const { return tr("0.00 to 5.00"); }

QString Integer5V::WidestText() const { return QStringLiteral("-0.000"); }

SpinEntry::Steps Integer5V::StepRule() const { return {kStep, 0, kFullScale}; }

}  // namespace qdm
