// Lists of 100,000 rows: filling, sorting and filtering, against a
// QStandardItemModel and a QSortFilterProxyModel holding the same data.
#include <benchmark/benchmark.h>

#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include "rows.h"

namespace {

using bench::FillOvui;
using bench::FillQt;
using bench::Rows;

void FillListOvui(benchmark::State& state) {
  for (auto _ : state) {
    Rows* rows = FillOvui();
    state.PauseTiming();
    rows->Release();
    state.ResumeTiming();
  }
}

void FillListQt(benchmark::State& state) {
  for (auto _ : state) {
    QStandardItemModel* model = FillQt();
    state.PauseTiming();
    delete model;
    state.ResumeTiming();
  }
}

BENCHMARK(FillListOvui)->Name("4 fill 100k rows/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(FillListQt)->Name("4 fill 100k rows/qt")->Unit(benchmark::kMillisecond);

// Sorts by `key` from a shuffled order every time.
void SortOvui(benchmark::State& state, const char* rule) {
  Rows* rows = FillOvui();
  for (auto _ : state) {
    state.PauseTiming();
    rows->Sort("1:shuffle");
    state.ResumeTiming();
    rows->Sort(rule);
  }
  rows->Release();
}

void SortQt(benchmark::State& state, int column) {
  QStandardItemModel* model = FillQt();
  QSortFilterProxyModel proxy;
  proxy.setSourceModel(model);
  for (auto _ : state) {
    state.PauseTiming();
    proxy.sort(2);
    state.ResumeTiming();
    proxy.sort(column);
  }
  delete model;
}

void SortIntOvui(benchmark::State& state) {
  SortOvui(state, "1:number");
}
void SortIntQt(benchmark::State& state) {
  SortQt(state, 0);
}
void SortStringOvui(benchmark::State& state) {
  SortOvui(state, "1:word");
}
void SortStringQt(benchmark::State& state) {
  SortQt(state, 1);
}
BENCHMARK(SortIntOvui)->Name("5 sort 100k by int/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(SortIntQt)->Name("5 sort 100k by int/qt")->Unit(benchmark::kMillisecond);
BENCHMARK(SortStringOvui)->Name("5 sort 100k by string/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(SortStringQt)->Name("5 sort 100k by string/qt")->Unit(benchmark::kMillisecond);

// Filters with a substring, or clears a filter that was set.
void FilterOvui(benchmark::State& state, bool clear) {
  Rows* rows = FillOvui();
  for (auto _ : state) {
    state.PauseTiming();
    rows->Filter(clear ? "77" : "");
    state.ResumeTiming();
    rows->Filter(clear ? "" : "77");
  }
  rows->Release();
}

void FilterQt(benchmark::State& state, bool clear) {
  QStandardItemModel* model = FillQt();
  QSortFilterProxyModel proxy;
  proxy.setSourceModel(model);
  proxy.setFilterKeyColumn(1);
  for (auto _ : state) {
    state.PauseTiming();
    proxy.setFilterFixedString(clear ? "77" : "");
    state.ResumeTiming();
    proxy.setFilterFixedString(clear ? "" : "77");
  }
  delete model;
}

void FilterStringOvui(benchmark::State& state) {
  FilterOvui(state, false);
}
void FilterStringQt(benchmark::State& state) {
  FilterQt(state, false);
}
void ClearFilterOvui(benchmark::State& state) {
  FilterOvui(state, true);
}
void ClearFilterQt(benchmark::State& state) {
  FilterQt(state, true);
}
BENCHMARK(FilterStringOvui)->Name("5 filter 100k by substring/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(FilterStringQt)->Name("5 filter 100k by substring/qt")->Unit(benchmark::kMillisecond);
BENCHMARK(ClearFilterOvui)->Name("5 clear that filter/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(ClearFilterQt)->Name("5 clear that filter/qt")->Unit(benchmark::kMillisecond);

}  // namespace
