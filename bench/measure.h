// How figures are taken and told. What is compared is measured in turns, so that what else the machine does
// meets both alike, and the figure is the median over the turns. At the end stands one table: figure, what it
// is measured against, ratio or value, limit.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace qdm::bench {

// Seconds on the wall, and of this process's processor time, that `work` takes.
double WallSeconds(const std::function<void()>& work);
double ProcessorSeconds(const std::function<void()>& work);

double Median(std::vector<double> values);

// Seconds of both sides, a turn each.
struct Turns {
  std::vector<double> Ours;
  std::vector<double> Theirs;

  // The median of the turns' ratios.
  double Ratio() const;
};
// Each side answers its seconds. A first turn that warms everything up does not count.
Turns TakeTurns(int count, const std::function<double()>& ours, const std::function<double()>& theirs);

class Table {
 public:
  // `against` says what the other half did.
  void Ratio(const std::string& figure, const std::string& against, const Turns& turns, double limit);
  void Value(const std::string& figure, double value, const std::string& unit, double limit);

  void Print() const;
  bool WithinLimits() const;

 private:
  struct Row {
    std::string Figure;
    std::string Ours;
    std::string Against;
    std::string Value;
    std::string Limit;
    bool Within;
  };
  void Add(Row row);

  std::vector<Row> rows_;
};

// The groups of figures.
void MeasureStart(Table& table);
void MeasureLibrary(Table& table);
void MeasureNames(Table& table);
void MeasureSelector(Table& table);
void MeasureWorkLog(Table& table);
void MeasureQdm(Table& table);
void MeasureSearch(Table& table);
void MeasureRecords(Table& table);

}  // namespace qdm::bench
