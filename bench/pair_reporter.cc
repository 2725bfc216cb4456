#include "pair_reporter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

std::string Time(double ns) {
  char buf[32];
  if (ns < 1e3) {
    std::snprintf(buf, sizeof(buf), "%.1f ns", ns);
  } else if (ns < 1e6) {
    std::snprintf(buf, sizeof(buf), "%.1f us", ns / 1e3);
  } else {
    std::snprintf(buf, sizeof(buf), "%.1f ms", ns / 1e6);
  }
  return buf;
}

std::string Bytes(double b) {
  char buf[32];
  std::snprintf(buf, sizeof(buf), "%.0f B", b);
  return buf;
}

}  // namespace

void PairReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    const std::string& name = run.run_name.function_name;
    const size_t slash = name.rfind('/');
    if (slash == std::string::npos) continue;
    const std::string id = name.substr(0, slash), side = name.substr(slash + 1);
    if (!cases.count(id)) order.push_back(id);
    Sides& s = cases[id];
    s.ns[side] = run.GetAdjustedRealTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
    auto bytes = run.counters.find("bytes");
    if (bytes != run.counters.end()) s.bytes[side] = bytes->second;
  }
}

void PairReporter::Finalize() {
  ConsoleReporter::Finalize();
  // By case number: the program's files register their cases in file order.
  std::stable_sort(order.begin(), order.end(), [](const std::string& a, const std::string& b) {
    return std::strtol(a.c_str(), nullptr, 10) < std::strtol(b.c_str(), nullptr, 10);
  });
  int width = 4;
  for (const std::string& id : order)
    width = std::max(width, static_cast<int>(id.size()));
  std::printf("\n%-*s %12s %12s %9s   %s\n", width, "case", "ovui", "Qt", "ovui/Qt", "C++ floor");
  std::printf("%s\n", std::string(width + 50, '-').c_str());
  for (const std::string& id : order) {
    const Sides& s = cases[id];
    const bool memory = !s.bytes.empty();
    const auto& values = memory ? s.bytes : s.ns;
    auto text = [&](const char* side) -> std::string {
      auto it = values.find(side);
      if (it == values.end()) return "-";
      return memory ? Bytes(it->second) : Time(it->second);
    };
    std::string ratio = "-";
    auto ovui = values.find("ovui"), qt = values.find("qt");
    if (ovui != values.end() && qt != values.end() && qt->second > 0) {
      char buf[16];
      const double r = ovui->second / qt->second;
      std::snprintf(buf, sizeof(buf), r < 0.1 ? "%.3f" : "%.2f", r);  // two digits that count
      ratio = buf;
    }
    // The floor column also says how far above it ovui is.
    std::string floor = text("floor");
    auto lowest = values.find("floor");
    if (ovui != values.end() && lowest != values.end() && lowest->second > 0) {
      char buf[24];
      std::snprintf(buf, sizeof(buf), " (ovui %.2fx)", ovui->second / lowest->second);
      floor += buf;
    }
    std::printf("%-*s %12s %12s %9s   %s\n", width, id.c_str(), text("ovui").c_str(),
                text("qt").c_str(), ratio.c_str(), floor.c_str());
  }
}

}  // namespace bench
