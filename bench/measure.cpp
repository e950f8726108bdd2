#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <utility>

#include <time.h>

namespace qdm::bench {
namespace {

// With as many digits as say something.
std::string Digits(double value) {
  std::ostringstream text;
  text << std::setprecision(4) << value;
  return text.str();
}

// "1.25 ms"
std::string Time(double seconds) {
  const auto [factor, unit] = seconds >= 1      ? std::pair(1.0, " s")
                              : seconds >= 1e-3 ? std::pair(1e3, " ms")
                              : seconds >= 1e-6 ? std::pair(1e6, " us")
                                                : std::pair(1e9, " ns");
  return Digits(seconds * factor) + unit;
}

}  // namespace

double WallSeconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double ProcessorSeconds(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double Turns::Ratio() const {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < Ours.size(); ++i) ratios.push_back(Ours[i] / Theirs[i]);
  return Median(std::move(ratios));
}

Turns TakeTurns(int count, const std::function<double()>& ours, const std::function<double()>& theirs) {
  theirs();
  ours();
  Turns turns;
  for (int i = 0; i < count; ++i) {
    turns.Theirs.push_back(theirs());
    turns.Ours.push_back(ours());
  }
  return turns;
}

void Table::Ratio(const std::string& figure, const std::string& against, const Turns& turns, double limit) {
  const double ratio = turns.Ratio();
  Add({figure, Time(Median(turns.Ours)), against + ": " + Time(Median(turns.Theirs)), Digits(ratio) + " x",
       Digits(limit) + " x", ratio <= limit});
}

void Table::Value(const std::string& figure, double value, const std::string& unit, double limit) {
  Add({figure, "", "", Digits(value) + " " + unit, Digits(limit) + " " + unit, value <= limit});
}

// Told at once too: a run takes minutes.
void Table::Add(Row row) {
  std::cerr << row.Figure << ": " << row.Value << (row.Within ? "" : "  MISSED") << std::endl;
  rows_.push_back(std::move(row));
}

void Table::Print() const {
  std::printf("%-60s %9s  %-40s %10s %8s\n", "figure", "time", "against", "result", "limit");
  for (const Row& row : rows_) {
    std::printf("%-60s %9s  %-40s %10s %8s%s\n", row.Figure.c_str(), row.Ours.c_str(), row.Against.c_str(),
                row.Value.c_str(), row.Limit.c_str(), row.Within ? "" : "  MISSED");
  }
}

bool Table::WithinLimits() const {
  return std::all_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.Within; });
}

}  // namespace qdm::bench
