#include "mvvm/chart_data.h"

namespace vm {

namespace {
unsigned long long g_next_series_id = 0;
}  // namespace

std::string ChartSeries::GenerateID() {
  return std::to_string(g_next_series_id++);
}

}  // namespace vm
