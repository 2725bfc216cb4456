#include "mvvm/chart_data.h"

#include <gtest/gtest.h>

#include <set>

// A view model keeps references to its series while it fills them; adding
// or removing other series must not move them.
TEST(ChartDataTest, SeriesKeepTheirIdentityAndAddressUntilRemoved) {
  vm::ChartData data;
  vm::ChartSeriesData& line = data.AddSeries("Revenue", vm::ChartSeriesData::LINE);
  vm::ChartSeriesData& bars = data.AddSeries("Units", vm::ChartSeriesData::BAR);
  for (int i = 0; i < 20; ++i)
    data.AddSeries("filler", vm::ChartSeriesData::PIE);
  line.points.emplace_back(1, 2);
  bars.values.emplace_back("a", 3);

  std::set<std::string> ids;
  for (const vm::ChartSeriesData& s : data.GetSeries())
    ids.insert(s.id);
  EXPECT_EQ(ids.size(), data.GetSeries().size());
  EXPECT_EQ(data.FindSeries(line.id), &line);
  EXPECT_TRUE(line.IsXY());
  EXPECT_FALSE(bars.IsXY());

  const std::string gone = line.id;
  EXPECT_TRUE(data.RemoveSeries(gone));
  EXPECT_FALSE(data.RemoveSeries(gone));
  EXPECT_EQ(data.FindSeries(gone), nullptr);
  EXPECT_EQ(bars.values.at(0), vm::KeyValueSample("a", 3));
  EXPECT_EQ(data.GetSeries().front().name, "Units");
  const vm::ChartData& read_only = data;
  EXPECT_EQ(read_only.FindSeries(bars.id), &bars);
}
