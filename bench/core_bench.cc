// Events, property writes and reads, computed properties and rule parsing:
// the operations that run on every keystroke and every model change.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "ovui.h"
#include "qt_counterparts.h"

namespace {

// The receivers' shared trivial work: count what they hear.
class CountingListener : public events::EventListener {
 public:
  bool OnEvent(events::Event*) override {
    ++count;
    return false;
  }
  long long count = 0;
};

void EmitOvui(benchmark::State& state, int listeners) {
  events::EventEmitter emitter;
  std::vector<CountingListener*> all;
  for (int i = 0; i < listeners; ++i) {
    all.push_back(new CountingListener());
    emitter.On("prop-changed", all.back());
  }
  events::Event e("prop-changed");
  e.SetParam("name", "title");
  e.SetParam("old", 1);
  e.SetParam("value", 2);
  for (auto _ : state)
    emitter.Emit(&e);
  for (CountingListener* l : all) {
    benchmark::DoNotOptimize(l->count);
    l->Release();
  }
}

void EmitQt(benchmark::State& state, int receivers) {
  bench::Sender sender;
  std::vector<std::unique_ptr<bench::Receiver>> all;
  for (int i = 0; i < receivers; ++i) {
    all.push_back(std::make_unique<bench::Receiver>());
    QObject::connect(&sender, &bench::Sender::changed, all.back().get(),
                     &bench::Receiver::OnChanged, Qt::DirectConnection);
  }
  const QString name = QStringLiteral("title");
  const QVariant old_value(1), value(2);
  for (auto _ : state)
    emit sender.changed(name, old_value, value);
  for (auto& r : all)
    benchmark::DoNotOptimize(r->count);
}

void Emit1Ovui(benchmark::State& state) {
  EmitOvui(state, 1);
}
void Emit1Qt(benchmark::State& state) {
  EmitQt(state, 1);
}
void Emit8Ovui(benchmark::State& state) {
  EmitOvui(state, 8);
}
void Emit8Qt(benchmark::State& state) {
  EmitQt(state, 8);
}
BENCHMARK(Emit1Ovui)->Name("1 emit, 1 listener/ovui");
BENCHMARK(Emit1Qt)->Name("1 emit, 1 listener/qt");
BENCHMARK(Emit8Ovui)->Name("1 emit, 8 listeners/ovui");
BENCHMARK(Emit8Qt)->Name("1 emit, 8 listeners/qt");

// A model with one int property and one "prop-changed" listener.
struct IntModel {
  IntModel() {
    model->InstallProp("value", &value);
    model->On("prop-changed", listener);
  }
  ~IntModel() {
    model->Off("prop-changed", listener);
    listener->Release();
    model->Release();
  }
  int value = 0;
  vm::Model* model = new vm::Model();
  CountingListener* listener = new CountingListener();
};

void SetPropOvui(benchmark::State& state) {
  IntModel m;
  long long i = 0;
  for (auto _ : state)
    m.model->SetPropW("value", base::Value(++i));
  benchmark::DoNotOptimize(m.listener->count);
}

void SetPropViewModelOvui(benchmark::State& state) {
  IntModel m;
  m.model->AddRef();  // the view model adopts one reference
  auto* view_model = new vm::ViewModel(m.model);
  long long i = 0;
  for (auto _ : state)
    view_model->SetPropW("value", base::Value(++i));
  benchmark::DoNotOptimize(m.listener->count);
  view_model->Release();
}

struct QtCounter {
  QtCounter() {
    QObject::connect(&counter, &bench::Counter::valueChanged, &receiver, [this](int) { ++heard; });
  }
  bench::Counter counter;
  QObject receiver;
  long long heard = 0;
};

void SetPropQt(benchmark::State& state) {
  QtCounter c;
  int i = 0;
  for (auto _ : state)
    c.counter.setProperty("value", QVariant(++i));
  benchmark::DoNotOptimize(c.heard);
}

void SetPropFloor(benchmark::State& state) {
  QtCounter c;
  int i = 0;
  for (auto _ : state)
    c.counter.setValue(++i);
  benchmark::DoNotOptimize(c.heard);
}

BENCHMARK(SetPropOvui)->Name("2 property write + notify/ovui");
BENCHMARK(SetPropQt)->Name("2 property write + notify/qt");
BENCHMARK(SetPropFloor)->Name("2 property write + notify/floor");
BENCHMARK(SetPropViewModelOvui)->Name("2b same, through a view model/ovui");
BENCHMARK(SetPropQt)->Name("2b same, through a view model/qt");

void GetPropOvui(benchmark::State& state) {
  IntModel m;
  base::Value v;
  for (auto _ : state) {
    m.model->GetPropW("value", v);
    benchmark::DoNotOptimize(v);
  }
}

void GetPropQt(benchmark::State& state) {
  QtCounter c;
  for (auto _ : state) {
    QVariant v = c.counter.property("value");
    benchmark::DoNotOptimize(v);
  }
}

BENCHMARK(GetPropOvui)->Name("3 property read/ovui");
BENCHMARK(GetPropQt)->Name("3 property read/qt");

// A view model with the two properties of the computed expression.
struct Operands {
  Operands() {
    view_model->InstallProp("a", &a);
    view_model->InstallProp("b", &b);
  }
  ~Operands() { view_model->Release(); }
  int a = 3, b = 5;
  vm::ViewModel* view_model = new vm::ViewModel();
};

void EvalOvui(benchmark::State& state) {
  Operands o;
  base::Value out;
  const std::string path = "$a * 2 + $b > 10";  // kept by the binding, as its path
  for (auto _ : state) {
    o.view_model->EvalProp(path, out);
    benchmark::DoNotOptimize(out);
  }
}

// The same expression written in C++: read both properties, compute.
void EvalFloor(benchmark::State& state) {
  Operands o;
  base::Value a, b, out;
  const std::string name_a = "a", name_b = "b";
  for (auto _ : state) {
    o.view_model->GetPropW(name_a, a);
    o.view_model->GetPropW(name_b, b);
    out.I64(a.I64() * 2 + (b.I64() > 10 ? 1 : 0));
    benchmark::DoNotOptimize(out);
  }
}

BENCHMARK(EvalOvui)->Name("6 computed property/ovui");
BENCHMARK(EvalFloor)->Name("6 computed property/floor");

void ParseRule(benchmark::State& state) {
  for (auto _ : state) {
    vm::DataBinding* b = vm::DataBindingParser::FromString(
        "{Binding Path=Title, Mode=OneWay, Converter=upper, Trigger=Changed}");
    benchmark::DoNotOptimize(b);
    b->Release();
  }
}

BENCHMARK(ParseRule)->Name("7 parse a four-key rule/ovui");

}  // namespace
