// A 16-bit word, shown and typed in hexadecimal. FFFF is -1.
#pragma once

#include "forms/controls/spin_entry.h"

#include <optional>

namespace qdm {

class HEXentry : public SpinEntry {
  Q_OBJECT

 public:
  explicit HEXentry(QWidget* parent = nullptr);

  void SetValue(int value);
  int Value() const;

 protected:
  double Limited(double value) const override;
  QString TextOf(double value) const override;
  std::optional<double> Parse(const QString& text) const override;
  QString RangeText() const override;
  QString WidestText() const override;
  Steps StepRule() const override;
};

}  // namespace qdm
