// A whole number between two limits. Values from outside and typed ones are brought within the limits.
#pragma once

#include "forms/controls/spin_entry.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace qdm {

class IntegerEntry : public SpinEntry {
  Q_OBJECT

 public:
  explicit IntegerEntry(QWidget* parent = nullptr);

  // Both included. The present value is brought within them.
  void SetLimits(int low, int high);
  void Bind(int value, int low, int high, const QString& label);
  void SetValue(int value);
  int Value() const;

 protected:
  double Limited(double value) const override;
  QString TextOf(double value) const override;
  std::optional<double> Parse(const QString& text) const override;
  QString RangeText() const override;
  QString WidestText() const override;
  Steps StepRule() const override;

 private:
  int low_ = std::numeric_limits<std::int16_t>::min();
  int high_ = std::numeric_limits<std::int16_t>::max();
};

}  // namespace qdm
