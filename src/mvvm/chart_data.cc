#include "mvvm/chart_data.h"

#include <algorithm>

namespace vm {

namespace {
unsigned long long g_next_series_id = 0;
}  // namespace

std::string ChartSeries::GenerateID() {
  return std::to_string(g_next_series_id++);
}

ChartSeriesData& ChartData::AddSeries(const std::string& name, ChartSeriesData::Kind kind) {
  this->series.emplace_back();
  ChartSeriesData& added = this->series.back();
  added.id = ChartSeries::GenerateID();
  added.name = name;
  added.kind = kind;
  return added;
}

ChartSeriesData* ChartData::FindSeries(const std::string& id) {
  auto it = std::find_if(this->series.begin(), this->series.end(),
                         [&id](const ChartSeriesData& s) { return s.id == id; });
  return it == this->series.end() ? nullptr : &*it;
}

const ChartSeriesData* ChartData::FindSeries(const std::string& id) const {
  return const_cast<ChartData*>(this)->FindSeries(id);
}

bool ChartData::RemoveSeries(const std::string& id) {
  auto it = std::find_if(this->series.begin(), this->series.end(),
                         [&id](const ChartSeriesData& s) { return s.id == id; });
  if (it == this->series.end()) return false;
  this->series.erase(it);
  return true;
}

}  // namespace vm
