#include "app/resources.h"

#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  benchmark::Initialize(&argc, argv);
  const QApplication application(argc, argv);
  qdm::InitialiseResources();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
