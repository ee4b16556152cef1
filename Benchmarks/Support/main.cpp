// Runs the rows that --benchmark_filter picks; ./kelvane bench calls it and report.py reads what it writes. With --avx2
// as the last argument our side runs a second time, held at AVX2.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <string_view>

#include "Platform/Foundation/NSLog.h"
#include "Support/InstructionSet.h"
#include "Support/Subjects.h"
#include "Support/TemporaryFolder.h"

int main(int argc, char** argv) {
  // Preferences and whatever else is kept for the user must not meet the user's own.
  const kelvane::TemporaryFolder home;
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
    setenv(variable, home.path().c_str(), 1);

  benchmark::Initialize(&argc, argv);
  if (argc > 1 && argv[argc - 1] == std::string_view("--avx2")) {
    --argc;
    if (!kelvane::bench::compareWithAVX2()) std::fputs("no AVX-512 here, so nothing is held at AVX2\n", stderr);
  }
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  // Each row that shows the system log puts it back for itself.
  kelvane::setSystemLogSink([](kelvane::TextView) {});
  for (const auto makeRows : kelvane::bench::subjects()) makeRows();
  if (benchmark::RunSpecifiedBenchmarks() == 0) {
    std::fputs("no row has such a name\n", stderr);
    return 1;
  }
  benchmark::Shutdown();
  return 0;
}
