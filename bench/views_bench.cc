// A QTableView over 100,000 rows of three columns: binding it, bringing one
// more page into view, and filtering with the view attached, against a
// QStandardItemModel (and a QSortFilterProxyModel) with the same data.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEvent>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>
#include <memory>

#include "ovui_qt.h"
#include "rows.h"

namespace {

using bench::kRows;

// The rows a 600-pixel table shows at once, give or take one.
constexpr int kPageRows = 30;
const char kColumns[] = "{Binding Path=number}\n{Binding Path=word}\n{Binding Path=shuffle}";

void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::unique_ptr<QTableView> NewView(bool rules) {
  auto view = std::make_unique<QTableView>();
  view->resize(800, 600);
  if (rules) view->setProperty("binding.value", kColumns);
  return view;
}

// Times `bind` on a fresh, hidden view each iteration.
template <typename Bind>
void BindEach(benchmark::State& state, bool rules, Bind bind) {
  for (auto _ : state) {
    state.PauseTiming();
    std::unique_ptr<QTableView> view = NewView(rules);
    state.ResumeTiming();
    bind(view.get());
    state.PauseTiming();
    view.reset();
    Settle();
    state.ResumeTiming();
  }
}

void BindViewOvui(benchmark::State& state) {
  bench::Rows* rows = bench::FillOvui();
  BindEach(state, true, [rows](QTableView* view) {
    benchmark::DoNotOptimize(vm::BindingContext::CreateAndBind(view, rows));
  });
  rows->Release();
}

void BindViewQt(benchmark::State& state) {
  std::unique_ptr<QStandardItemModel> model(bench::FillQt());
  BindEach(state, false, [&model](QTableView* view) { view->setModel(model.get()); });
}

BENCHMARK(BindViewOvui)->Name("13 table 100k: bind a view/ovui")->Unit(benchmark::kMicrosecond);
BENCHMARK(BindViewQt)->Name("13 table 100k: bind a view/qt")->Unit(benchmark::kMicrosecond);

// What a view asks of its model for the cells of rows [first, first +
// kPageRows): their flags and every role a styled item delegate reads to
// paint one.
void ReadPage(const QAbstractItemModel* model, int first) {
  static const int kRoles[] = {Qt::FontRole,       Qt::TextAlignmentRole, Qt::ForegroundRole,
                               Qt::CheckStateRole, Qt::DecorationRole,    Qt::DisplayRole,
                               Qt::BackgroundRole};
  for (int row = first; row < first + kPageRows; ++row) {
    for (int column = 0; column < 3; ++column) {
      const QModelIndex index = model->index(row, column);
      benchmark::DoNotOptimize(model->flags(index));
      for (int role : kRoles) {
        QVariant v = model->data(index, role);
        benchmark::DoNotOptimize(v);
      }
    }
  }
}

// Reads one page further down each iteration, from the top again at the end.
void ReadPages(benchmark::State& state, const QAbstractItemModel* model) {
  int first = 0;
  for (auto _ : state) {
    first += kPageRows;
    if (first + kPageRows > kRows) first = 0;
    ReadPage(model, first);
  }
}

// Scrolls the shown view down one page each iteration and paints it.
void PaintPages(benchmark::State& state, QTableView* view) {
  view->show();
  QCoreApplication::processEvents();
  QScrollBar* bar = view->verticalScrollBar();
  for (auto _ : state) {
    const int next = bar->value() + bar->pageStep();
    bar->setValue(next > bar->maximum() ? 0 : next);
    view->viewport()->repaint();
  }
  QCoreApplication::processEvents();
}

// A list bound to a table view that lives as long as it is needed.
struct BoundRows {
  BoundRows() : rows(bench::FillOvui()), view(NewView(true)) {
    vm::BindingContext::CreateAndBind(view.get(), rows);
  }
  ~BoundRows() {
    view.reset();
    Settle();
    rows->Release();
  }
  bench::Rows* rows;
  std::unique_ptr<QTableView> view;
};

struct ShownItems {
  ShownItems() : model(bench::FillQt()), view(NewView(false)) { view->setModel(model.get()); }
  std::unique_ptr<QStandardItemModel> model;
  std::unique_ptr<QTableView> view;
};

void ScrollOvui(benchmark::State& state) {
  BoundRows bound;
  ReadPages(state, bound.view->model());
}

void ScrollQt(benchmark::State& state) {
  ShownItems shown;
  ReadPages(state, shown.model.get());
}

void PaintOvui(benchmark::State& state) {
  BoundRows bound;
  PaintPages(state, bound.view.get());
}

void PaintQt(benchmark::State& state) {
  ShownItems shown;
  PaintPages(state, shown.view.get());
}

BENCHMARK(ScrollOvui)->Name("13 table 100k: data of one page/ovui")->Unit(benchmark::kMicrosecond);
BENCHMARK(ScrollQt)->Name("13 table 100k: data of one page/qt")->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintOvui)
    ->Name("13 table 100k: scroll and paint a page/ovui")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintQt)
    ->Name("13 table 100k: scroll and paint a page/qt")
    ->Unit(benchmark::kMicrosecond);

// Filters with a substring, or clears a filter that was set, while the list
// is bound to a view.
void FilterViewOvui(benchmark::State& state, bool clear) {
  BoundRows bound;
  for (auto _ : state) {
    state.PauseTiming();
    bound.rows->Filter(clear ? "77" : "");
    state.ResumeTiming();
    bound.rows->Filter(clear ? "" : "77");
  }
}

void FilterViewQt(benchmark::State& state, bool clear) {
  std::unique_ptr<QStandardItemModel> model(bench::FillQt());
  QSortFilterProxyModel proxy;
  proxy.setSourceModel(model.get());
  proxy.setFilterKeyColumn(1);
  std::unique_ptr<QTableView> view = NewView(false);
  view->setModel(&proxy);
  for (auto _ : state) {
    state.PauseTiming();
    proxy.setFilterFixedString(clear ? "77" : "");
    state.ResumeTiming();
    proxy.setFilterFixedString(clear ? "" : "77");
  }
}

void FilterOvui(benchmark::State& state) {
  FilterViewOvui(state, false);
}
void FilterQt(benchmark::State& state) {
  FilterViewQt(state, false);
}
void ClearOvui(benchmark::State& state) {
  FilterViewOvui(state, true);
}
void ClearQt(benchmark::State& state) {
  FilterViewQt(state, true);
}

BENCHMARK(FilterOvui)
    ->Name("13 table 100k: filter, view attached/ovui")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(FilterQt)->Name("13 table 100k: filter, view attached/qt")->Unit(benchmark::kMillisecond);
BENCHMARK(ClearOvui)
    ->Name("13 table 100k: clear it, view attached/ovui")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ClearQt)
    ->Name("13 table 100k: clear it, view attached/qt")
    ->Unit(benchmark::kMillisecond);

}  // namespace
