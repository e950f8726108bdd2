// The selector with 10,000 models: from the command to its painted tree, and a key typed into its filter to
// the painted result.

#include "app/qt_prompts.h"
#include "forms/controls/filter_box.h"
#include "forms/projectors/projector_selector.h"
#include "forms/shared/globals.h"

#include <QCoreApplication>
#include <QPixmap>

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>

namespace qdm {
namespace {

constexpr int kManufacturers = 100;
constexpr int kModels = 100;

void FillLibrary(Globals& globals) {
  ProjectorDefinition projector;
  for (int model = 0; model < kModels; ++model) {
    for (int manufacturer = 0; manufacturer < kManufacturers; ++manufacturer) {
      projector.Manufacturer.AssignUtf8("MANUFACTURER " + std::to_string(manufacturer));
      projector.Model.AssignUtf8("Model " + std::to_string(manufacturer * kModels + model));
      globals.ProjectorDatabase.Append(projector);
    }
  }
}

class OpenSelector {
 public:
  explicit OpenSelector(Globals& globals) : form_(globals, prompts_, nullptr) {
    form_.show();
    Paint();
  }
  void Filter(const QString& text) {
    form_.findChild<FilterBox*>()->setText(text);
    Paint();
  }

 private:
  void Paint() {
    QCoreApplication::processEvents();
    benchmark::DoNotOptimize(form_.grab());
  }

  QtPrompts prompts_;
  ProjectorSelector form_;
};

void ShowSelector(benchmark::State& state) {
  Globals globals;
  FillLibrary(globals);
  for ([[maybe_unused]] auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const OpenSelector selector(globals);
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
}
BENCHMARK(ShowSelector)->UseManualTime()->Unit(benchmark::kMillisecond);

// A turn types "model 77" and empties the box again: nine changes.
void TypeIntoFilter(benchmark::State& state) {
  Globals globals;
  FillLibrary(globals);
  OpenSelector selector(globals);
  const QString typed = QStringLiteral("model 77");
  for ([[maybe_unused]] auto _ : state) {
    for (qsizetype length = 1; length <= typed.size(); ++length) selector.Filter(typed.left(length));
    selector.Filter({});
  }
  state.counters["per_key"] =
      benchmark::Counter(static_cast<double>(typed.size() + 1),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(TypeIntoFilter)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qdm
