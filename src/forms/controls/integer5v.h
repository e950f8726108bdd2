// A voltage of 0 to 5 V, entered in steps of one count of an 8-bit converter (5 V / 255) and shown with two
// decimals. A value that is set above 5 V becomes 4.75 V, one below 0 V becomes 0.25 V.
#pragma once

#include "forms/controls/spin_entry.h"

#include <optional>

namespace qdm {

class Integer5V : public SpinEntry {
  Q_OBJECT

 public:
  explicit Integer5V(QWidget* parent = nullptr);

  void SetValue(float volts);
  float Value() const;
  // In counts of the converter, 0..255. A count from outside becomes a voltage and is brought in like one.
  void SetCount(int count);
  int Count() const;

 protected:
  double Limited(double volts) const override;
  QString TextOf(double volts) const override;
  std::optional<double> Parse(const QString& text) const override;
  QString RangeText() const override;
  QString WidestText() const override;
  Steps StepRule() const override;
};

}  // namespace qdm
