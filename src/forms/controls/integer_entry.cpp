#include "forms/controls/integer_entry.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace qdm {
IntegerEntry::IntegerEntry(QWidget* parent) : SpinEntry(parent) {
  SetValue(0);
  ShowRange();
}

void IntegerEntry::SetLimits(int low, int high) {
  Q_ASSERT(low <= high);
  low_ = std::clamp(low, kLowest, kHighest);
  high_ = std::clamp(high, kLowest, kHighest);
  SetValue(Value());
  ShowRange();
}

void IntegerEntry::Bind(int value, int low, int high, const QString& label) {
  SetLimits(low, high);
  SetLabel(label);
  SetValue(value);
}

void IntegerEntry::SetValue(int value) { SetCurrent(value); }
int IntegerEntry::Value() const { return static_cast<int>(Current()); }

double IntegerEntry::Limited(double value) const {
  return std::clamp(value, static_cast<double>(low_), static_cast<double>(high_));
}

QString IntegerEntry::TextOf(double value) const { return QString::number(static_cast<int>(value)); }

std::optional<double> IntegerEntry::Parse(const QString& text) const {
  static const QRegularExpression kWhole(QStringLiteral("^[+-]?[0-9]+$"));
  if (!kWhole.match(text).hasMatch()) return std::nullopt;
  return std::clamp(text.toDouble(), static_cast<double>(kLowest), static_cast<double>(kHighest));
}

QString IntegerEntry::RangeText() const { return tr("%1 to %2").arg(low_).arg(high_); }

QString IntegerEntry::WidestText() const { return QStringLiteral("-00000"); }

SpinEntry::Steps IntegerEntry::StepRule() const { return {1, kLowest, kHighest}; }

}  // namespace qdm
