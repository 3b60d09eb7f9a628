// The memory is as in the program `qlx`.
#include <benchmark/benchmark.h>

#include "MCPlatform.h"

int main(int argc, char** argv) {
  qlx::PreferLargePages();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
