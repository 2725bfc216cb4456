// Heap bytes per object, counted by the program's own malloc: a model with
// ten properties, and one row of a list.
#include <benchmark/benchmark.h>

#include <QStandardItemModel>
#include <string>
#include <vector>

#include "counting_allocator.h"
#include "ovui.h"
#include "qt_counterparts.h"

namespace {

constexpr int kObjects = 1000;

class TenPropertyModel : public vm::Model {
 public:
  TenPropertyModel() {
    InstallProp("p0", &p0);
    InstallProp("p1", &p1);
    InstallProp("p2", &p2);
    InstallProp("p3", &p3);
    InstallProp("p4", &p4);
    InstallProp("p5", &p5);
    InstallProp("p6", &p6);
    InstallProp("p7", &p7);
    InstallProp("p8", &p8);
    InstallProp("p9", &p9);
  }
  int p0 = 0, p1 = 0, p2 = 0, p3 = 0, p4 = 0;
  double p5 = 0, p6 = 0;
  std::string p7, p8;
  bool p9 = false;
};

// A list row with a number and a word, as in the list cases.
class Row : public vm::ViewModelItem {
 public:
  Row() {
    InstallProp("number", &this->number);
    InstallProp("word", &this->word);
  }
  int number = 42;
  std::string word = "item 42";
};

// Runs `make` kObjects times inside a counting scope, reports bytes per
// object, then lets `destroy` free them.
template <typename Make, typename Destroy>
void PerObject(benchmark::State& state, Make make, Destroy destroy) {
  for (auto _ : state) {
    long long held;
    {
      bench::CountBytes count;
      make();
      held = count.Held();
    }
    destroy();
    state.counters["bytes"] = static_cast<double>(held) / kObjects;
  }
}

void ModelOvui(benchmark::State& state) {
  std::vector<vm::Model*> all;
  all.reserve(kObjects);
  PerObject(
      state,
      [&] {
        for (int i = 0; i < kObjects; ++i)
          all.push_back(new TenPropertyModel());
      },
      [&] {
        for (vm::Model* m : all)
          m->Release();
        all.clear();
      });
}

void ModelQt(benchmark::State& state) {
  std::vector<bench::TenProperties*> all;
  all.reserve(kObjects);
  PerObject(
      state,
      [&] {
        for (int i = 0; i < kObjects; ++i)
          all.push_back(new bench::TenProperties());
      },
      [&] {
        for (auto* o : all)
          delete o;
        all.clear();
      });
}

BENCHMARK(ModelOvui)->Name("8 memory: model, 10 properties/ovui")->Iterations(1);
BENCHMARK(ModelQt)->Name("8 memory: model, 10 properties/qt")->Iterations(1);

void RowOvui(benchmark::State& state) {
  vm::ViewModelArray* list = nullptr;
  PerObject(
      state,
      [&] {
        list = new vm::ViewModelArray();
        list->BeginBatch();
        for (int i = 0; i < kObjects; ++i)
          list->Add(new Row());
        list->UnblockEvents();
      },
      [&] { list->Release(); });
}

void RowQt(benchmark::State& state) {
  QStandardItemModel* model = nullptr;
  PerObject(
      state,
      [&] {
        model = new QStandardItemModel(0, 2);
        for (int i = 0; i < kObjects; ++i) {
          auto* number = new QStandardItem();
          number->setData(42, Qt::DisplayRole);
          model->appendRow({number, new QStandardItem(QStringLiteral("item 42"))});
        }
      },
      [&] { delete model; });
}

BENCHMARK(RowOvui)->Name("8 memory: list row/ovui")->Iterations(1);
BENCHMARK(RowQt)->Name("8 memory: list row/qt")->Iterations(1);

}  // namespace
