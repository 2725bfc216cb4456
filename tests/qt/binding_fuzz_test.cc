// Random widget trees with valid and broken rules, random edits, writes and window requests, and
// teardown in random orders, for the sanitizers and the lifetime rules. OVUI_FUZZ_SEED seeds it.

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "mvvm/view_model_array.h"
#include "qt/binding_context.h"
#include "support/item_views.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

using base::Value;

namespace {

std::mt19937 rng;  // seeded for each form

const auto Int = [](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
const auto Chance = [](double p) { return std::bernoulli_distribution(p)(rng); };
template <typename T>
T Pick(std::initializer_list<T> from) {
  return from.begin()[Int(0, static_cast<int>(from.size()) - 1)];
}
template <typename C>
auto Pick(const C& from) {
  return std::begin(from)[Int(0, static_cast<int>(std::size(from)) - 1)];
}
std::string Bytes(int max) {  // any but NUL, valid UTF-8 or not
  std::string out(Int(0, max), ' ');
  std::generate(out.begin(), out.end(), [] { return static_cast<char>(Int(1, 255)); });
  return out;
}

struct HostCommand : vm::ICommand {
  HostCommand(std::function<bool()> run, bool enabled = true) : run(run), enabled(enabled) {}
  bool CanExecute(const std::string&) override { return enabled; }
  bool Execute(const std::string&) override { return run(); }
  std::function<bool()> run;
  bool enabled;
};

bool Delete(QObject* obj) {
  delete obj;
  return true;
}

struct Host {     // a form's view models, windows, and what the user touches, with its window
  int alive = 0;  // view models
  vm::ViewModel *root = nullptr, *sub = nullptr;
  vm::ViewModelArray* list = nullptr;
  std::vector<std::pair<QPointer<QWidget>, QPointer<vm::BindingContext>>> windows;  // and contexts
  std::vector<std::pair<QPointer<QObject>, int>> targets;
  QPointer<QObject> sender;  // what the user touched last, for the commands that delete it
  QPointer<QWidget> sender_window;
};

template <typename Base>
struct Counted : Base {
  explicit Counted(Host* host) : host(host) { ++host->alive; }
  ~Counted() override { --host->alive; }
  Host* host;
};

struct Sheet : Counted<vm::ViewModel> {  // every form's, its sub view model's and the rows'
  explicit Sheet(Host* host) : Counted(host) {
    InstallProp("i", &i);
    InstallProp("s", &s);
    InstallProp("d", &d);
    InstallProp("t", &t);
    RegisterConverter("scale", new ovui_test::ScaleConverter(1));  // extremes must not overflow
    RegisterValidator("range", new ovui_test::RangeValidator(0, 10));
    RegisterCommand("run", new HostCommand([] { return true; }));
    RegisterCommand("off", new HostCommand([] { return true; }, false));
    // Host code may close, write, rebind or delete the sender or its window.
    RegisterCommand("close", new HostCommand([this] { return CloseWindow(); }));
    RegisterCommand("poke", new HostCommand([this] { return SetPropW("i", 1) && Rebind("", ""); }));
    RegisterCommand("drop", new HostCommand([host] { return Delete(host->sender); }));
    RegisterCommand("destroy", new HostCommand([host] { return Delete(host->sender_window); }));
  }
  int i = 3;
  std::string s = "a\nb\nhello";
  double d = 1.5;
  long long t = 86400;
};

const char* const kProps[] = {"i", "s", "d", "t", "_size_", "_current_", "nope", "", "error.of.i"};
// "destroy" ends the window early: rare, so that most forms live long.
const char* const kCommands[] = {"run", "off", "close", "poke", "drop", "missing",
                                 "run", "off", "close", "poke", "drop", "destroy"};
const char* const kSubNames[] = {"sub", "{sub}", " sub ", "list", "{list}", "nope", "", "{}", "{"};
// Rules the parser must refuse or survive, and text for the model.
const char kOddText[] =
    "{Binding $i + 1}|{Binding $s + $i}|{Binding $i / 0}|{Binding $i +}|{Binding $i(}|"
    "{Binding ((((((((((1))))))))))}|{Binding $d / 0.0}|{Binding 1e309}|{Binding $_size_ + 1}|{|"
    "{}|}||{{{}}}|{,,,=}|{Binding|{Binding Path=}|{Binding Path=i, Mode=}|{Binding Path=\"i\"}|"
    "{Binding Path=%s%n, Converter=%x}|{Binding Path=i Mode=OneWay|{Binding Path=i, Path=s}|"
    "{Command|{Command Name=}|{Command Name=run}|a|hello|12|-3|2.5|a\nb\n\nc|hello\nhello|%s%n%d";
const QStringList kTexts = QString(kOddText).split('|');
const auto Odd = [] { return Chance(0.2) ? "{" + Bytes(24) : Pick(kTexts).toStdString(); };

void Maybe(std::string& rule, double p, const char* key, std::initializer_list<const char*> v) {
  if (Chance(p)) rule += std::string(", ") + key + "=" + Pick(v);
}

std::string DataRule() {
  if (Chance(0.3)) return Odd();
  std::string rule = "{Binding Path=" + (Chance(0.05) ? Bytes(8) : Pick(kProps));
  Maybe(rule, 0.5, "Mode", {"TwoWay", "OneWay", "OneWayToModel", "Once", "oneway", "Bogus"});
  Maybe(rule, 0.4, "Trigger", {"Changed", "Changing", "Explicit", "changing", "Nonsense"});
  Maybe(rule, 0.2, "Converter", {"scale", "missing"});
  Maybe(rule, 0.2, "Validator", {"range", "missing"});
  return rule + "}";
}

std::string CommandRule() {
  if (Chance(0.25)) return Odd();
  return (Chance(0.2) ? "{" : "{Command Name=") + std::string(Pick(kCommands)) +
         Pick({"}", ", Args=x}", ", Args=%s%n}", ", CloseWindow=true}", ", UpdateModel=true}",
               ", Args=\xff, CloseWindow=true, UpdateModel=true}"});
}

Value RandomValue() {
  if (Chance(0.3)) return Value(Int(-20, 20));
  if (Chance(0.3)) return Value(Odd());
  if (Chance(0.3)) return Value(Pick({LLONG_MAX, -LLONG_MAX, LLONG_MIN}));
  if (Chance(0.5)) return Value(Pick({HUGE_VAL - HUGE_VAL, HUGE_VAL, -HUGE_VAL, 1e300, 1 / 7.0}));
  return Chance(0.5) ? Value(Chance(0.5)) : Chance(0.5) ? Value() : Value(static_cast<void*>(&rng));
}

void SetRule(QObject* obj, const char* key, const std::string& rule) {
  obj->setProperty(key, QString::fromUtf8(rule.c_str()));
}

template <typename W>
QWidget* (*const Make)(QWidget*) = [](QWidget* parent) -> QWidget* { return new W(parent); };

QWidget* (*const kMakers[])(QWidget*) = {  // every class of the binder table, and containers
    Make<QLabel>,        Make<QLCDNumber>,     Make<QTextBrowser>,   Make<QProgressBar>,
    Make<QGroupBox>,     Make<QPushButton>,    Make<QTimeEdit>,      Make<QDateEdit>,
    Make<QDateTimeEdit>, Make<QStackedWidget>, Make<QTabWidget>,     Make<QLineEdit>,
    Make<QRadioButton>,  Make<QCheckBox>,      Make<QPlainTextEdit>, Make<QTextEdit>,
    Make<QSlider>,       Make<QDial>,          Make<QDoubleSpinBox>, Make<QSpinBox>,
    Make<QMenu>,         Make<QToolBar>,       Make<QStatusBar>,     Make<QComboBox>,
    Make<QListView>,     Make<QWidget>,        Make<QWidget>};
QWidget* (*const kRoots[])(QWidget*) = {Make<QWidget>, Make<QGroupBox>, Make<QMainWindow>};

// `count` widgets of random classes with random rules, containers with subtrees.
void Populate(Host& host, QWidget* parent, int window, int depth, int count) {
  for (; count > 0; --count) {
    QWidget* w = Pick(kMakers)(parent);
    const bool button = qobject_cast<QPushButton*>(w), menu = qobject_cast<QMenu*>(w);
    const bool list = qobject_cast<QListView*>(w), bar = menu || qobject_cast<QToolBar*>(w);
    const bool holds = w->metaObject() == &QWidget::staticMetaObject || qobject_cast<QGroupBox*>(w);
    w->setObjectName(button && Chance(0.3) ? Pick(kCommands) : Pick(kSubNames));  // by name: bound
    // Status bars take a rule a line, labels and editors may carry it as their text.
    std::string value = DataRule() + (Chance(0.2) ? "\n{x}\n" + DataRule() : "");
    SetRule(w, Chance(0.1) ? Pick({"text", "plainText"}) : "binding.value", value);
    if (Chance(0.05)) w->setProperty("binding.value", Int(0, 100));  // not text at all
    if (list) SetRule(w, "binding.vm", Chance(0.8) ? "list" : Pick(kSubNames));
    if (!list && Chance(holds ? 0.4 : 0.08)) SetRule(w, "binding.vm", Pick(kSubNames));
    if (Chance(0.5)) SetRule(w, "binding.options", DataRule());    // for combo boxes
    for (const char* key : {"binding.visible", "binding.enable"})  // never show a menu: a pop-up
      if (!menu && Chance(0.1)) SetRule(w, key, DataRule());
    if (Chance(button ? 0.4 : 0.05)) SetRule(w, "binding.command", CommandRule());
    for (int n = bar ? Int(1, 4) : 0; n > 0; --n) {
      auto* action = qobject_cast<QAction*>(Pick(host.targets).first.data());  // one in two bars
      if (!action || Chance(0.6)) action = new QAction("a", Chance(0.7) ? w : w->window());
      if (Chance(0.8)) SetRule(action, "binding.command", CommandRule());
      host.targets.push_back({action, window});
      w->addAction(action);
    }
    host.targets.push_back({w, window});
    QWidget* page = holds ? w : nullptr;  // containers hold a random subtree, some on a page
    if (auto* tabs = qobject_cast<QTabWidget*>(w)) tabs->addTab(page = new QWidget(), "page");
    if (auto* stack = qobject_cast<QStackedWidget*>(w)) stack->addWidget(page = new QWidget());
    if (page && depth < 3) Populate(host, page, window, depth + 1, Int(0, 4));
  }
}

void ReleaseRoot(Host& host) {  // the test's; a context bound to it keeps it usable
  if (!host.root) return;
  const int before = host.alive;
  const bool held = host.root->RefCount() > 1;
  host.root->Release();
  EXPECT_EQ(host.alive < before, !held);
  EXPECT_TRUE(!held || host.root->SetPropW("i", Value(42)));
  host.root = nullptr;
}

void Step(Host& host) {  // one thing the user, the host code or the event loop does
  const auto target = Pick(host.targets);
  QObject* obj = target.first;
  auto* w = qobject_cast<QWidget*>(obj);
  auto* list = qobject_cast<QListView*>(obj);
  // Menus are modal pop-ups, and keys may make a button open its menu.
  const bool plain = w && !qobject_cast<QMenu*>(w) && !qobject_cast<QAbstractButton*>(w);
  const QPointer<vm::BindingContext> ctx = Pick(host.windows).second;
  const int size = static_cast<int>(host.list->Size());
  vm::ViewModel* vm = Pick<vm::ViewModel*>({host.root, host.root, host.sub, host.list});
  if (size > 0 && Chance(0.2)) vm = host.list->Get(Int(0, size - 1));
  const std::string name = obj && Chance(0.8) ? obj->objectName().toStdString() : "nope";
  QByteArray signal = Pick({"clicked", "triggered", "toggle", "sliderReleased", "close"});
  QByteArray prop = Pick({"value", "currentIndex", "plainText", "text", "currentText"});
  host.sender = obj;
  host.sender_window = host.windows[target.second].first;
  const int kind =
      std::discrete_distribution<int>({20, 10, 6, 8, 3, 20, 6, 7, 2, 2, 1, 3, 2, 3, 1})(rng);
  if (kind == 0 && obj && obj->metaObject()->indexOfMethod(signal + "()") >= 0)
    QMetaObject::invokeMethod(obj, signal);  // a click, trigger, toggle or release
  if (kind == 1 && plain) QTest::keyClicks(w, QString("aZ07-.{}%").mid(Int(0, 8), 3));
  if (kind == 2 && plain) QTest::keyClick(w, Pick({Qt::Key_Return, Qt::Key_Tab, Qt::Key_Up}));
  if (kind == 3 && plain && w->metaObject()->indexOfProperty(prop) >= 0)
    w->setProperty(prop, Int(-50, 110) / Pick({1, 20}));
  if (kind == 4 && list && list->model()) emit list->clicked(list->model()->index(size - 1, 0));
  if (kind == 5) vm->SetPropW(Chance(0.05) ? Bytes(8) : Pick(kProps), RandomValue());
  if (kind == 6 && ctx) Chance(0.5) ? ctx->UpdateModel() : ctx->UpdateView(Chance(0.5));
  if (kind == 7) QTest::qWait(Pick({0, 0, 30}));  // 30: the deferred view update runs
  if (kind == 8) host.list->Add(new Sheet(&host), Int(-1, size + 1));
  if (kind == 9) host.list->Remove(Int(0, size));
  if (kind == 10) host.list->Reset();
  if (kind == 11 && target.first && Chance(0.5)) target.first->deleteLater();
  if (kind == 11 && Chance(0.5)) delete target.first.data();
  if (kind == 12) vm->SetWindowPos(name, Int(-1, 10), 0, Pick({0, 300, 1500}), 300);  // requests
  if (kind == 13) vm->Rebind(name, Bytes(4));
  if (kind == 14) vm->CloseWindow();
}

void RunForm(unsigned seed, int form) {  // build, bind, drive, tear down, view models and all
  rng.seed(seed ^ (static_cast<unsigned>(form) * 2654435761u));
  Host host;
  host.root = new Sheet(&host);
  host.root->SetSubViewModel("sub", host.sub = new Sheet(&host));
  host.root->SetSubViewModel("list", host.list = new Counted<vm::ViewModelArray>(&host));
  host.sub->SetParent(host.root);
  host.list->SetParent(host.root);
  for (int n = Int(0, 4); n > 0; --n)
    host.list->Add(new Sheet(&host));
  // The main window, and sometimes one over the root, the sub view model or the list.
  const int windows = Chance(0.3) ? 2 : 1;
  for (int index = 0; index < windows; ++index) {
    QWidget* window = Pick(kRoots)(nullptr);
    if (Chance(0.2)) window->setAttribute(Qt::WA_DeleteOnClose);
    if (Chance(0.2)) SetRule(window, "binding.value", DataRule());
    if (index > 0 && Chance(0.2)) SetRule(window, "binding.vm", Pick(kSubNames));
    host.windows.push_back({window, nullptr});
    host.targets.push_back({window, index});
    Populate(host, window, index, 0, Int(2, 12));
    auto* vm = index ? Pick<vm::ViewModel*>({host.root, host.sub, host.list}) : host.root;
    EXPECT_TRUE(host.windows.back().second = vm::BindingContext::CreateAndBind(window, vm));
    if (Chance(0.5)) window->show();
    for (auto* view : window->findChildren<QListView*>())
      if (view->model()) ovui_test::CheckModel(view->model());
  }
  for (int step = 0; step < 30; ++step)
    Step(host);
  // The windows go in a random order, the test's root view model at a random point.
  const bool reverse = Chance(0.5);
  for (int n = 0; n < windows; ++n) {
    if (Chance(0.3)) ReleaseRoot(host);
    auto& [root, ctx] = host.windows[reverse ? windows - 1 - n : n];
    if (root && Chance(0.3)) root->deleteLater();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete root.data();
    EXPECT_TRUE(ctx.isNull()) << "the context outlived its window";
  }
  ReleaseRoot(host);
  EXPECT_EQ(host.alive, 0) << "view models outlived their form";
}

}  // namespace

TEST(BindingFuzz, RandomFormsSurviveEditsRequestsAndTeardown) {
  const char* seed_text = std::getenv("OVUI_FUZZ_SEED");
  const unsigned seed = seed_text ? std::strtoul(seed_text, nullptr, 0) : 20240611u;
  QApplication::setQuitOnLastWindowClosed(false);  // closing a window must not quit
  ovui_test::LogCapture log;  // so that messages built from random rules are written too
  std::fprintf(stderr, "OVUI_FUZZ_SEED=%u, forms:", seed);
  for (int form = 0; form < 200; ++form) {
    std::fprintf(stderr, " %d", form);  // the last one names the form a sanitizer abort stopped in
    SCOPED_TRACE(testing::Message() << "OVUI_FUZZ_SEED=" << seed << " form " << form);
    RunForm(seed, form);
    log.Clear();
  }
  std::fprintf(stderr, "\n");
  QApplication::setQuitOnLastWindowClosed(true);
}

// Cases the random forms found, kept deterministic.

TEST(BindingFuzzFound, CommandsMayDeleteTheirSenderOrWindowAndShareAnAction) {
  Host host;
  auto* form = new Sheet(&host);
  auto* save = new ovui_test::ToyCommand();
  form->RegisterCommand("save", save);
  auto* window = new QWidget();
  auto* button = new QPushButton(window);
  button->setObjectName("drop");  // bound by its name
  QAction* action = (new QToolBar(window))->addAction("a");
  action->setProperty("binding.command", "{Command Name=drop, CloseWindow=true}");
  auto* closer = new QPushButton(window);
  closer->setProperty("binding.command", "{Command Name=destroy, UpdateModel=true}");
  QAction* shared = (new QToolBar(window))->addAction("b");
  shared->setProperty("binding.command", "{Command Name=save, Args=x}");
  auto* other = new QWidget();
  (new QToolBar(other))->addAction(shared);
  QPointer<vm::BindingContext> ctx = vm::BindingContext::CreateAndBind(window, form);
  QPointer<vm::BindingContext> other_ctx = vm::BindingContext::CreateAndBind(other, form);
  shared->trigger();
  EXPECT_EQ(save->runs.size(), 1u);  // connected once
  delete other;                      // its context and its copy of the rule go
  EXPECT_TRUE(other_ctx.isNull());
  shared->trigger();
  EXPECT_EQ(save->runs, (std::vector<std::string>{"x", "x"}));

  window->show();
  host.sender = button;
  button->click();
  EXPECT_TRUE(host.sender.isNull());
  host.sender = action;
  action->trigger();
  EXPECT_TRUE(host.sender.isNull());
  EXPECT_FALSE(window->isVisible());  // read before the action and its rule went
  // The window goes from inside the command, with the context and the view model.
  form->Release();
  host.sender_window = window;
  closer->click();
  EXPECT_TRUE(ctx.isNull());
  EXPECT_EQ(host.alive, 0);
}
