#ifndef OVUI_BENCH_PAIR_REPORTER_H_
#define OVUI_BENCH_PAIR_REPORTER_H_

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

// Prints Google Benchmark's usual lines, then one table that pairs each
// case's ovui run with its Qt counterpart. Benchmarks are named
// "<case>/ovui", "<case>/qt" or "<case>/floor" (hand-written C++, the
// lowest cost possible); memory cases report a "bytes" counter.
class PairReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  struct Sides {
    std::map<std::string, double> ns;     // side -> nanoseconds per iteration
    std::map<std::string, double> bytes;  // side -> bytes
  };
  std::vector<std::string> order;
  std::map<std::string, Sides> cases;
};

}  // namespace bench

#endif  // OVUI_BENCH_PAIR_REPORTER_H_
