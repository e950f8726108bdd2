// qdm_bench [--check] [GROUP...]: measures all groups of figures, or those named, and prints one table. With
// --check the exit status is 1 when a limit was missed.
#include "app/resources.h"
#include "measure.h"
#include "support/temp_folder.h"

#include <QApplication>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  using namespace qdm::bench;
  const struct {
    const char* Name;
    void (*Measure)(Table& table);
  } groups[] = {{"start", MeasureStart},       {"library", MeasureLibrary}, {"names", MeasureNames},
                {"selector", MeasureSelector}, {"log", MeasureWorkLog},     {"qdm", MeasureQdm},
                {"records", MeasureRecords},   {"search", MeasureSearch}};
  const qdm::TempFolder home;  // nobody's settings, here and in what is started
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
    ::setenv(variable, home.Path().c_str(), 1);
  const QApplication application(argc, argv);
  qdm::InitialiseResources();
  std::vector<std::string> asked(argv + 1, argv + argc);
  const bool check = std::erase(asked, "--check") > 0;
  Table table;
  for (const auto& group : groups) {
    if (asked.empty() || std::find(asked.begin(), asked.end(), group.Name) != asked.end())
      group.Measure(table);
  }
  table.Print();
  return check && !table.WithinLimits() ? 1 : 0;
}
