#include "app/resources.h"
#include "start_window.h"

#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (const auto window = qdm::FirstPaintArgument(argc, argv)) {
    const QApplication application(argc, argv);
    return qdm::RunUntilFirstPaint(*window);
  }
  benchmark::Initialize(&argc, argv);
  const QApplication application(argc, argv);
  qdm::InitialiseResources();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
