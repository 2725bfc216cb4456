// A form of 1,000 widgets, 500 line edits and 500 labels, each bound to its
// own property of one view model: binding it, refreshing it, carrying one
// change and one keystroke, and its heap bytes. The Qt counterpart is a
// QDataWidgetMapper over a one-row, 1,000-column QStandardItemModel; the
// floor is hand-written code, setText and one connect per field.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDataWidgetMapper>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTest>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "counting_allocator.h"
#include "ovui_qt.h"
#include "qt_counterparts.h"

namespace {

constexpr int kFields = 1000;
// A label's field for one change, a line edit's for one keystroke.
constexpr int kChanged = 701;
constexpr int kTyped = 700;
// The ovui side of these cases starts the 25 ms timer of a deferred update
// on every iteration; a fixed count keeps those timers few, and both sides
// run it.
constexpr int kFixedIterations = 3000;

std::string FieldName(int i) {
  return "f" + std::to_string(i);
}

std::string FieldText(int i) {
  return "value " + std::to_string(i);
}

bool IsEdit(int i) {
  return i % 2 == 0;
}

// Deletes what was handed to deleteLater.
void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Lets the deferred-update timers started by a case fire (into nothing, once
// their context is gone) and be deleted.
void RunOutTimers() {
  QTest::qWait(60);
  Settle();
}

class FormViewModel : public vm::ViewModel {
 public:
  FormViewModel() : fields(kFields) {
    for (int i = 0; i < kFields; ++i) {
      fields[i] = FieldText(i);
      InstallProp(FieldName(i), &fields[i]);
    }
  }
  std::vector<std::string> fields;
};

// Line edits on even fields, labels on odd ones, under one parent. With
// `rules` each carries its binding rule, as a .ui file gives it.
struct Form {
  explicit Form(bool rules) : root(new QWidget()) {
    widgets.reserve(kFields);
    for (int i = 0; i < kFields; ++i) {
      QWidget* w = IsEdit(i) ? static_cast<QWidget*>(new QLineEdit(root.get()))
                             : static_cast<QWidget*>(new QLabel(root.get()));
      if (rules) {
        const std::string rule =
            "{Binding Path=" + FieldName(i) + (IsEdit(i) ? ", Trigger=Changing}" : "}");
        w->setProperty("binding.value", QString::fromStdString(rule));
      }
      widgets.push_back(w);
    }
  }
  QLineEdit* Edit(int i) const { return static_cast<QLineEdit*>(widgets[i]); }
  QLabel* Label(int i) const { return static_cast<QLabel*>(widgets[i]); }

  std::unique_ptr<QWidget> root;
  std::vector<QWidget*> widgets;
};

QStandardItemModel* MakeRecord() {
  auto* model = new QStandardItemModel(1, kFields);
  for (int i = 0; i < kFields; ++i)
    model->setItem(0, i, new QStandardItem(QString::fromStdString(FieldText(i))));
  return model;
}

// What a Qt programmer writes: one mapping per widget, then the first row.
QDataWidgetMapper* MapForm(const Form& form, QAbstractItemModel* model) {
  auto* mapper = new QDataWidgetMapper(form.root.get());
  mapper->setModel(model);
  for (int i = 0; i < kFields; ++i) {
    if (IsEdit(i)) {
      mapper->addMapping(form.widgets[i], i);
    } else {
      mapper->addMapping(form.widgets[i], i, "text");  // a label has no user property
    }
  }
  mapper->toFirst();
  return mapper;
}

// The floor: set each text, and connect each edit to its field and each
// label to its field's change.
void WireForm(const Form& form, bench::FormData& data) {
  for (int i = 0; i < kFields; ++i) {
    const QString text = QString::fromStdString(data.fields[i]);
    if (IsEdit(i)) {
      QLineEdit* edit = form.Edit(i);
      edit->setText(text);
      QObject::connect(edit, &QLineEdit::textEdited, edit,
                       [&data, i](const QString& t) { data.fields[i] = t.toStdString(); });
    } else {
      QLabel* label = form.Label(i);
      label->setText(text);
      QObject::connect(&data, &bench::FormData::changed, label, [&data, label, i](int field) {
        if (field == i) label->setText(QString::fromStdString(data.fields[i]));
      });
    }
  }
}

void FillFormData(bench::FormData& data) {
  data.fields.resize(kFields);
  for (int i = 0; i < kFields; ++i)
    data.fields[i] = FieldText(i);
}

// Times `bind` on a fresh form each iteration; building and destroying the
// widgets is not timed.
template <typename Bind>
void BindEach(benchmark::State& state, bool rules, Bind bind) {
  for (auto _ : state) {
    state.PauseTiming();
    auto form = std::make_unique<Form>(rules);
    state.ResumeTiming();
    bind(*form);
    state.PauseTiming();
    form.reset();
    Settle();
    state.ResumeTiming();
  }
}

void BindOvui(benchmark::State& state) {
  auto* model = new FormViewModel();
  BindEach(state, true, [model](const Form& form) {
    benchmark::DoNotOptimize(vm::BindingContext::CreateAndBind(form.root.get(), model));
  });
  model->Release();
}

void BindQt(benchmark::State& state) {
  std::unique_ptr<QStandardItemModel> model(MakeRecord());
  BindEach(state, false,
           [&model](const Form& form) { benchmark::DoNotOptimize(MapForm(form, model.get())); });
}

void BindFloor(benchmark::State& state) {
  bench::FormData data;
  FillFormData(data);
  BindEach(state, false, [&data](const Form& form) { WireForm(form, data); });
}

BENCHMARK(BindOvui)->Name("9 form: bind 1,000 widgets/ovui")->Unit(benchmark::kMillisecond);
BENCHMARK(BindQt)->Name("9 form: bind 1,000 widgets/qt")->Unit(benchmark::kMillisecond);
BENCHMARK(BindFloor)->Name("9 form: bind 1,000 widgets/floor")->Unit(benchmark::kMillisecond);

// A bound form kept for the cases below.
struct BoundOvui {
  BoundOvui() : form(true) { ctx = vm::BindingContext::CreateAndBind(form.root.get(), model); }
  ~BoundOvui() {
    form.root.reset();  // takes the context with it
    model->Release();
    RunOutTimers();
  }
  FormViewModel* model = new FormViewModel();
  Form form;
  vm::BindingContext* ctx = nullptr;
};

struct BoundQt {
  BoundQt() : model(MakeRecord()), form(false) { mapper = MapForm(form, model.get()); }
  std::unique_ptr<QStandardItemModel> model;
  Form form;
  QDataWidgetMapper* mapper = nullptr;  // a child of the form
};

void RefreshOvui(benchmark::State& state) {
  BoundOvui bound;
  for (auto _ : state)
    bound.ctx->UpdateView(true);
}

void RefreshQt(benchmark::State& state) {
  BoundQt bound;
  for (auto _ : state)
    bound.mapper->revert();
}

BENCHMARK(RefreshOvui)->Name("10 form: full refresh/ovui")->Unit(benchmark::kMicrosecond);
BENCHMARK(RefreshQt)->Name("10 form: full refresh/qt")->Unit(benchmark::kMicrosecond);

// One property changes, alternating between two texts, and its label shows
// it. On the ovui side the deferred update runs at once instead of 25 ms
// later.
void ChangeOvui(benchmark::State& state) {
  BoundOvui bound;
  const std::string name = FieldName(kChanged);
  const base::Value texts[2] = {base::Value("changed 0"), base::Value("changed 1")};
  int n = 0;
  for (auto _ : state) {
    bound.model->SetPropW(name, texts[++n % 2]);
    bound.ctx->OnUpdateViewAsync();
  }
  if (bound.form.Label(kChanged)->text() != texts[n % 2].Str()) state.SkipWithError("not shown");
}

void ChangeQt(benchmark::State& state) {
  BoundQt bound;
  const QModelIndex at = bound.model->index(0, kChanged);
  const QVariant texts[2] = {QStringLiteral("changed 0"), QStringLiteral("changed 1")};
  int n = 0;
  for (auto _ : state)
    bound.model->setData(at, texts[++n % 2]);
  if (bound.form.Label(kChanged)->text() != texts[n % 2].toString()) {
    state.SkipWithError("not shown");
  }
}

BENCHMARK(ChangeOvui)
    ->Name("11 form: one change reaches its widget/ovui")
    ->Iterations(kFixedIterations)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(ChangeQt)
    ->Name("11 form: one change reaches its widget/qt")
    ->Iterations(kFixedIterations)
    ->Unit(benchmark::kMicrosecond);

// One key press and release: "a", then a backspace that takes it back, so
// the text stays short. Each edits the text.
void Type(QLineEdit* edit, int n) {
  QTest::keyClick(edit, n % 2 ? Qt::Key_A : Qt::Key_Backspace);
}

// Between keystrokes, untimed, `between` runs; every side pauses the same
// way so that the pause's own cost is the same in each column.
template <typename Between>
void TypeEach(benchmark::State& state, QLineEdit* edit, Between between) {
  int n = 0;
  for (auto _ : state) {
    Type(edit, ++n);
    state.PauseTiming();
    between();
    state.ResumeTiming();
  }
}

void KeystrokeOvui(benchmark::State& state) {
  BoundOvui bound;
  QLineEdit* edit = bound.form.Edit(kTyped);
  // The deferred update a real keystroke is followed by, so that the next
  // one starts its own timer as it would.
  TypeEach(state, edit, [&bound] { bound.ctx->OnUpdateViewAsync(); });
  if (bound.model->fields[kTyped] != edit->text().toStdString()) state.SkipWithError("not held");
}

// A live-updating form needs the mapper to submit on every edit.
void KeystrokeQt(benchmark::State& state) {
  BoundQt bound;
  bound.mapper->setSubmitPolicy(QDataWidgetMapper::ManualSubmit);
  for (int i = 0; i < kFields; i += 2) {
    QObject::connect(bound.form.Edit(i), &QLineEdit::textEdited, bound.mapper,
                     &QDataWidgetMapper::submit);
  }
  QLineEdit* edit = bound.form.Edit(kTyped);
  TypeEach(state, edit, [] {});
  if (bound.model->index(0, kTyped).data().toString() != edit->text()) {
    state.SkipWithError("not held");
  }
}

void KeystrokeFloor(benchmark::State& state) {
  bench::FormData data;
  FillFormData(data);
  Form form(false);
  WireForm(form, data);
  QLineEdit* edit = form.Edit(kTyped);
  TypeEach(state, edit, [] {});
  if (data.fields[kTyped] != edit->text().toStdString()) state.SkipWithError("not held");
}

BENCHMARK(KeystrokeOvui)
    ->Name("12 form: one keystroke/ovui")
    ->Iterations(kFixedIterations)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(KeystrokeQt)
    ->Name("12 form: one keystroke/qt")
    ->Iterations(kFixedIterations)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(KeystrokeFloor)
    ->Name("12 form: one keystroke/floor")
    ->Iterations(kFixedIterations)
    ->Unit(benchmark::kMicrosecond);

// Heap bytes that binding adds to a built form, per field. A first, uncounted
// bind warms the caches that the first bind of a process fills.
template <typename Bind>
void BytesPerField(benchmark::State& state, bool rules, Bind bind) {
  {
    Form warm(rules);
    bind(warm);
  }
  Settle();
  for (auto _ : state) {
    Form form(rules);
    long long held;
    {
      bench::CountBytes count;
      bind(form);
      held = count.Held();
    }
    state.counters["bytes"] = static_cast<double>(held) / kFields;
  }
  Settle();
}

void BytesOvui(benchmark::State& state) {
  auto* model = new FormViewModel();
  BytesPerField(state, true, [model](const Form& form) {
    vm::BindingContext::CreateAndBind(form.root.get(), model);
  });
  model->Release();
}

void BytesQt(benchmark::State& state) {
  std::unique_ptr<QStandardItemModel> model(MakeRecord());
  BytesPerField(state, false, [&model](const Form& form) { MapForm(form, model.get()); });
}

void BytesFloor(benchmark::State& state) {
  bench::FormData data;
  FillFormData(data);
  BytesPerField(state, false, [&data](const Form& form) { WireForm(form, data); });
}

BENCHMARK(BytesOvui)->Name("14 memory: per bound form widget/ovui")->Iterations(1);
BENCHMARK(BytesQt)->Name("14 memory: per bound form widget/qt")->Iterations(1);
BENCHMARK(BytesFloor)->Name("14 memory: per bound form widget/floor")->Iterations(1);

}  // namespace
