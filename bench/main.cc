#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>

#include "pair_reporter.h"

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);  // the form and view cases build widgets
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  bench::PairReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
