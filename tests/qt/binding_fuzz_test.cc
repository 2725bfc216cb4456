// Random forms against the binding engine: random widget trees with valid and
// broken rules, random edits, model writes and window requests, and teardown
// in random orders. The sanitizers catch crashes, leaks and use after free;
// the test checks the lifetime rules and a few values on top.
//
// OVUI_FUZZ_SEED picks the seed (printed at start); OVUI_FUZZ_FORM replays
// a single form of that seed.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDial>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLCDNumber>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTextEdit>
#include <QTimeEdit>
#include <QToolBar>
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "mvvm/view_model_array.h"
#include "qt/binding_context.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

#if defined(__SANITIZE_ADDRESS__)
#define OVUI_FUZZ_DEATH_NOTE 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OVUI_FUZZ_DEATH_NOTE 1
#endif
#endif
#ifdef OVUI_FUZZ_DEATH_NOTE
#include <sanitizer/common_interface_defs.h>
#endif

using base::Value;

namespace {

const unsigned kDefaultSeed = 20240611u;
const int kForms = 200;
const int kStepsPerForm = 30;

// Where the run is, so that a sanitizer abort names the form to replay.
unsigned g_seed = kDefaultSeed;
int g_form = -1;

void NoteWhere() {
  std::fprintf(stderr,
               "binding fuzz: seed=%u form=%d (replay: OVUI_FUZZ_SEED=%u OVUI_FUZZ_FORM=%d)\n",
               g_seed, g_form, g_seed, g_form);
}

int EnvInt(const char* name, long fallback) {
  const char* text = std::getenv(name);
  return text && *text ? static_cast<int>(std::strtol(text, nullptr, 0))
                       : static_cast<int>(fallback);
}

class Dice {
 public:
  Dice(unsigned seed, int form) {
    std::seed_seq seq{seed, static_cast<unsigned>(form)};
    rng.seed(seq);
  }
  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
  bool Chance(double p) { return std::bernoulli_distribution(p)(rng); }
  const char* Pick(std::initializer_list<const char*> from) {
    return from.begin()[Int(0, static_cast<int>(from.size()) - 1)];
  }
  template <typename T>
  T& Pick(std::vector<T>& from) {
    return from[Int(0, static_cast<int>(from.size()) - 1)];
  }
  // Any bytes but NUL, valid UTF-8 or not.
  std::string Bytes(int max_length) {
    std::string out;
    for (int n = Int(0, max_length); n > 0; --n)
      out += static_cast<char>(Int(1, 255));
    return out;
  }
  // A few keys a user might type, braces and percent signs included.
  QString Typing() {
    const QString keys = QStringLiteral("aZ07-.{}% ");
    QString out;
    for (int n = Int(1, 6); n > 0; --n)
      out += keys[Int(0, keys.size() - 1)];
    return out;
  }
  std::mt19937 rng;
};

// Which tracked view models are still alive, and how many are.
struct Census {
  int alive = 0;
  std::map<std::string, bool> gone;
};

template <typename Base>
class Counted : public Base {
 public:
  Counted(Census* census, const char* role) : census(census), role(role) {
    ++census->alive;
    if (role) census->gone[role] = false;
  }
  ~Counted() override {
    --census->alive;
    if (role) census->gone[role] = true;
  }

 private:
  Census* census;
  const char* role;
};

struct Row : Counted<vm::ViewModel> {
  Row(Census* census, const std::string& name) : Counted(census, nullptr), name(name) {
    InstallProp("name", &this->name);
    InstallProp("n", &this->n);
  }
  std::string name;
  int n = 0;
};

using List = Counted<vm::ViewModelArray>;

// A command whose work the host supplies.
class HostCommand : public vm::ICommand {
 public:
  HostCommand(std::function<bool()> run, bool enabled) : run(std::move(run)), enabled(enabled) {}
  bool CanExecute(const std::string&) override { return enabled; }
  bool Execute(const std::string&) override { return run(); }

 private:
  std::function<bool()> run;
  bool enabled;
};

class Never : public vm::IValidator {
 public:
  bool IsValid(const Value&, std::string& msg) override {
    msg = "never %s%n%d {}";  // printf directives must stay text
    return false;
  }
};

class Broken : public vm::IConverter {
 public:
  bool Convert(const Value&, Value&) override { return false; }
  bool ConvertBack(const Value&, Value&) override { return false; }
};

class Same : public vm::IConverter {
 public:
  bool Convert(const Value& from, Value& to) override {
    to = from;
    return true;
  }
  bool ConvertBack(const Value& from, Value& to) override {
    to = from;
    return true;
  }
};

struct Host;

// The view model of every form and of its sub view models.
struct Sheet : Counted<vm::ViewModel> {
  Sheet(Census* census, const char* role, Host* host);
  bool GetTwice(Value& v) const {
    v.I64(2LL * this->i);
    return true;
  }
  int i = 3;
  std::string s = "hello";
  bool b = true;
  double d = 1.5;
  long long t = 86400;
  std::string opts = "a\nb\nhello";
  unsigned short u = 7;
  // Bound only by the probes, so that no random rule writes them back.
  std::string probe_s = "probe";
  int probe_i = 5;
};

// The test's side of a form: the windows, the widgets it drives and the
// view models it holds.
struct Host {
  struct Window {
    QPointer<QWidget> root;
    QPointer<vm::BindingContext> ctx;
    vm::ViewModel* vm = nullptr;
    std::string vm_role;
  };
  struct Tracked {
    QPointer<QWidget> widget;
    int window = 0;
    bool probe = false;
  };
  struct Action {
    QPointer<QAction> action;
    int window = 0;
  };

  explicit Host(Dice& dice) : dice(dice) {}

  // The view model of `role` while it exists, else null.
  vm::ViewModel* Alive(const std::string& role) const {
    auto gone = census.gone.find(role);
    if (gone == census.gone.end() || gone->second) return nullptr;
    return role == "root" ? root : by_role.at(role);
  }
  QWidget* RootOf(int window) const { return windows[window].root.data(); }

  Dice& dice;
  Census census;
  Sheet* root = nullptr;
  bool root_released = false;
  std::map<std::string, vm::ViewModel*> by_role;
  std::vector<Window> windows;
  std::vector<Tracked> widgets;
  std::vector<Action> actions;
  int next_name = 0;
  // What the user clicked last, for the commands that delete it.
  QPointer<QObject> sender;
  int sender_window = -1;
};

Sheet::Sheet(Census* census, const char* role, Host* host) : Counted(census, role) {
  InstallProp("i", &this->i);
  InstallProp("s", &this->s);
  InstallProp("b", &this->b);
  InstallProp("d", &this->d);
  InstallProp("t", &this->t);
  InstallProp("opts", &this->opts);
  InstallProp("u", &this->u);
  InstallProp("twice", &Sheet::GetTwice, nullptr);
  InstallProp("probe_s", &this->probe_s);
  InstallProp("probe_i", &this->probe_i);
  RegisterConverter("scale", new ovui_test::ScaleConverter(10));
  RegisterConverter("broken", new Broken());
  RegisterConverter("same", new Same());
  RegisterValidator("range", new ovui_test::RangeValidator(0, 10));
  RegisterValidator("never", new Never());
  RegisterCommand("run", new HostCommand([] { return true; }, true));
  RegisterCommand("off", new HostCommand([] { return true; }, false));
  RegisterCommand("fail", new HostCommand([] { return false; }, true));
  RegisterCommand("close", new HostCommand([this] { return CloseWindow(); }, true));
  RegisterCommand("poke", new HostCommand(
                              [this] {
                                SetPropW("i", Value(this->i + 1));
                                SetStyleSheet("", "");
                                int x = 0, y = 0, w = 0, h = 0;
                                WindowPos("", x, y, w, h);
                                Rebind("", "");
                                return true;
                              },
                              true));
  RegisterCommand("grow", new HostCommand(
                              [host] {
                                auto* list = static_cast<vm::ViewModelArray*>(host->Alive("list"));
                                if (!list) return false;
                                list->Add(new Row(&host->census, "grown"));
                                if (list->Size() > 5) list->Remove(0u);
                                return true;
                              },
                              true));
  // Host code may delete what was clicked, or its whole window, from inside
  // the command.
  RegisterCommand("drop", new HostCommand(
                              [host] {
                                delete host->sender.data();
                                return true;
                              },
                              true));
  RegisterCommand("destroy", new HostCommand(
                                 [host] {
                                   if (host->sender_window >= 0)
                                     delete host->RootOf(host->sender_window);
                                   return true;
                                 },
                                 true));
}

// ---------------------------------------------------------------------------
// Rules

const char* const kProps[] = {"i",    "s",     "b",          "d",         "t",      "opts",
                              "u",    "twice", "name",       "n",         "_size_", "_current_",
                              "nope", "",      "error.of.i", "error.of.s"};

std::string PropName(Dice& dice) {
  if (dice.Chance(0.05)) return dice.Bytes(8);
  return kProps[dice.Int(0, static_cast<int>(std::size(kProps)) - 1)];
}

// Model writes reach the probes' properties too.
std::string WriteName(Dice& dice) {
  return dice.Chance(0.15) ? dice.Pick({"probe_s", "probe_i"}) : PropName(dice);
}

std::string Expression(Dice& dice) {
  return dice.Pick({"$i + 1", "$s", "$i * $d", "$i / 0", "$nope + 1", "(($i))", "$i +", "-$i",
                    "$s + $i", "$b && $i", "1e309", "$i(", "((((((((((1))))))))))", "$d / 0.0",
                    "$twice - $u", "$_size_ + 1"});
}

std::string DataRule(Dice& dice) {
  switch (dice.Int(0, 9)) {
    case 6:
      return "{Binding " + Expression(dice) + "}";
    case 7:
      return dice.Pick({"{", "{}", "{Binding", "{Binding Path=}", "}", "", "{Binding Path=i,,,}",
                        "{Binding Path=i, Mode=}", "{{{}}}", "{Binding Path=\"i\"}",
                        "{Binding Path=%s%n, Converter=%x}", "{Binding Path=i Mode=OneWay",
                        "{Binding Path=i, Path=s}", "{Command Name=run}", "{ }"});
    case 8:
      return (dice.Chance(0.5) ? "{" : "") + dice.Bytes(24);
    case 9:
      return std::string("{Binding Path=error.of.") + dice.Pick({"i", "s", "d", "nope"}) + "}";
    default:
      break;
  }
  std::string rule = "{Binding Path=" + PropName(dice);
  if (dice.Chance(0.5))
    rule += std::string(", Mode=") +
            dice.Pick({"TwoWay", "OneWay", "OneWayToModel", "Once", "oneway", "Bogus"});
  if (dice.Chance(0.4))
    rule += std::string(", Trigger=") +
            dice.Pick({"Changed", "Changing", "Explicit", "changing", "Nonsense"});
  if (dice.Chance(0.2))
    rule += std::string(", Converter=") + dice.Pick({"scale", "broken", "same", "missing"});
  if (dice.Chance(0.2))
    rule += std::string(", Validator=") + dice.Pick({"range", "never", "missing"});
  if (dice.Chance(0.05)) rule += ", Format=0.00";
  return rule + "}";
}

const char* CommandName(Dice& dice) {
  // "destroy" ends the window early: rare, so that most forms live long.
  if (dice.Chance(0.03)) return "destroy";
  return dice.Pick({"run", "off", "fail", "close", "poke", "grow", "drop", "missing"});
}

std::string CommandRule(Dice& dice) {
  switch (dice.Int(0, 7)) {
    case 0:
      return std::string("{") + CommandName(dice) + "}";
    case 1:
      return dice.Pick({"{Command", "{Command Name=}", "{,,,=}", "{}", "{", "Command Name=run",
                        "{Command Name=%s%n}"});
    case 2:
      return "{" + dice.Bytes(16);
    default:
      break;
  }
  std::string rule = std::string("{Command Name=") + CommandName(dice);
  if (dice.Chance(0.3)) rule += ", Args=" + dice.Bytes(4);
  if (dice.Chance(0.2)) rule += ", CloseWindow=true";
  if (dice.Chance(0.3)) rule += ", UpdateModel=true";
  return rule + "}";
}

std::string SubName(Dice& dice) {
  if (dice.Chance(0.05)) return dice.Bytes(6);
  return dice.Pick({"sub", "{sub}", " sub ", "list", "{list}", "inner", "{inner}", "nope", "", "{}",
                    "{", "empty"});
}

Value RandomValue(Dice& dice) {
  static int target = 0;
  switch (dice.Int(0, 9)) {
    case 0:
      return Value();
    case 1:
      return Value(static_cast<long long>(dice.Int(-20, 20)));
    case 2:
      return Value(dice.Chance(0.5) ? std::numeric_limits<long long>::max()
                                    : std::numeric_limits<long long>::min() + dice.Int(0, 1));
    case 3:
      return Value(dice.Int(-1000, 1000) / 7.0);
    case 4: {
      const double extremes[] = {std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity(),
                                 1e300,
                                 -1e300,
                                 1e-300};
      return Value(extremes[dice.Int(0, 5)]);
    }
    case 5:
      return Value(dice.Chance(0.5));
    case 6:
      return Value(std::string(dice.Pick({"a", "hello", "b", "0", "12", "-3", "2.5", "true"})));
    case 7:
      return Value(dice.Bytes(40));
    case 8:
      return Value(std::string(
          dice.Pick({"a\nb\n\nc", "{Binding Path=i}", "%s%n%d", "<b>x</b>", "hello\nhello", ""})));
    default:
      return Value(static_cast<void*>(&target));
  }
}

// ---------------------------------------------------------------------------
// Forms

template <typename W>
QWidget* Make(QWidget* parent) {
  return new W(parent);
}

// Every class of the binder table, and a plain container.
QWidget* (*const kMakers[])(QWidget*) = {
    Make<QLabel>,        Make<QLCDNumber>,     Make<QTextBrowser>,   Make<QProgressBar>,
    Make<QGroupBox>,     Make<QPushButton>,    Make<QTimeEdit>,      Make<QDateEdit>,
    Make<QDateTimeEdit>, Make<QStackedWidget>, Make<QTabWidget>,     Make<QLineEdit>,
    Make<QRadioButton>,  Make<QCheckBox>,      Make<QPlainTextEdit>, Make<QTextEdit>,
    Make<QSlider>,       Make<QDial>,          Make<QDoubleSpinBox>, Make<QSpinBox>,
    Make<QMenu>,         Make<QToolBar>,       Make<QStatusBar>,     Make<QComboBox>,
    Make<QListView>,     Make<QWidget>,        Make<QWidget>};

bool Is(QWidget* w, const char* class_name) {
  return std::strcmp(w->metaObject()->className(), class_name) == 0;
}

void SetRule(QObject* obj, const char* key, const std::string& rule) {
  obj->setProperty(key, QString::fromUtf8(rule.c_str()));
}

void AddActions(Host& host, QWidget* bar, int window) {
  for (int n = host.dice.Int(1, 4); n > 0; --n) {
    QAction* action = nullptr;
    if (!host.actions.empty() && host.dice.Chance(0.2)) {
      action = host.dice.Pick(host.actions).action;  // shared by two bars
    }
    if (!action) {
      action =
          new QAction(QString("a%1").arg(host.next_name++),
                      host.dice.Chance(0.7) ? static_cast<QObject*>(bar) : host.RootOf(window));
      if (host.dice.Chance(0.8)) SetRule(action, "binding.command", CommandRule(host.dice));
      host.actions.push_back({action, window});
    }
    bar->addAction(action);
  }
}

// One widget of a random class with random rules, and below containers a
// random subtree.
void Populate(Host& host, QWidget* parent, int window, int depth, int count);

void AddWidget(Host& host, QWidget* parent, int window, int depth) {
  Dice& dice = host.dice;
  QWidget* w = kMakers[dice.Int(0, static_cast<int>(std::size(kMakers)) - 1)](parent);
  const bool button = Is(w, "QPushButton"), menu = Is(w, "QMenu"), list = Is(w, "QListView");
  const bool container = Is(w, "QWidget") || Is(w, "QGroupBox");
  if (button && dice.Chance(0.3)) {
    w->setObjectName(dice.Pick({"run", "off", "fail", "close", "poke", "grow", "drop", ""}));
  } else {
    w->setObjectName(QString("w%1").arg(host.next_name++));
  }
  if (Is(w, "QStatusBar")) {
    std::string lines;
    for (int n = dice.Int(1, 4); n > 0; --n)
      lines += (dice.Chance(0.2) ? std::string("{x}") : DataRule(dice)) + "\n";
    SetRule(w, "binding.value", lines);
  } else if (list) {
    SetRule(w, "binding.vm",
            dice.Chance(0.8) ? dice.Pick({"list", "{list}", "empty"}) : SubName(dice));
    if (dice.Chance(0.9))
      SetRule(w, "binding.value", dice.Chance(0.7) ? "{Binding Path=name}" : DataRule(dice));
  } else if (dice.Chance(0.1)) {
    w->setProperty("binding.value", dice.Int(0, 100));  // not text at all
  } else if (dice.Chance(0.75)) {
    const std::string rule = DataRule(dice);
    // Labels, line edits and text editors may carry the rule as their text.
    if (dice.Chance(0.2) && qobject_cast<QLabel*>(w)) {
      static_cast<QLabel*>(w)->setText(QString::fromUtf8(rule.c_str()));
    } else if (dice.Chance(0.2) && qobject_cast<QLineEdit*>(w)) {
      static_cast<QLineEdit*>(w)->setText(QString::fromUtf8(rule.c_str()));
    } else if (dice.Chance(0.2) && qobject_cast<QPlainTextEdit*>(w)) {
      static_cast<QPlainTextEdit*>(w)->setPlainText(QString::fromUtf8(rule.c_str()));
    } else {
      SetRule(w, "binding.value", rule);
    }
  }
  if (auto* combo = qobject_cast<QComboBox*>(w)) {
    if (dice.Chance(0.5))
      SetRule(w, "binding.options", dice.Chance(0.6) ? "{Binding Path=opts}" : DataRule(dice));
    if (dice.Chance(0.5)) combo->addItems({"a", "b", "hello", "3"});
    combo->setEditable(dice.Chance(0.3));
  }
  if (auto* spin = qobject_cast<QSpinBox*>(w)) spin->setRange(-1000, 1000);
  if (menu || Is(w, "QToolBar")) AddActions(host, w, window);
  // A shown menu is a pop-up: never let a rule show one.
  if (!menu) {
    if (dice.Chance(0.1)) SetRule(w, "binding.visible", DataRule(dice));
    if (dice.Chance(0.1)) SetRule(w, "binding.enable", DataRule(dice));
  }
  if (dice.Chance(button ? 0.4 : 0.05)) SetRule(w, "binding.command", CommandRule(dice));
  if (!list && dice.Chance(container ? 0.4 : 0.08)) SetRule(w, "binding.vm", SubName(dice));
  host.widgets.push_back({w, window, false});

  if (depth >= 3) return;
  if (auto* tabs = qobject_cast<QTabWidget*>(w)) {
    for (int n = dice.Int(0, 3); n > 0; --n) {
      auto* page = new QWidget();
      tabs->addTab(page, "page");
      Populate(host, page, window, depth + 1, dice.Int(0, 2));
    }
  } else if (auto* stack = qobject_cast<QStackedWidget*>(w)) {
    for (int n = dice.Int(0, 3); n > 0; --n) {
      auto* page = new QWidget();
      stack->addWidget(page);
      Populate(host, page, window, depth + 1, dice.Int(0, 2));
    }
  } else if (container) {
    Populate(host, w, window, depth + 1, dice.Int(0, 4));
  }
}

void Populate(Host& host, QWidget* parent, int window, int depth, int count) {
  for (; count > 0; --count)
    AddWidget(host, parent, window, depth);
}

// Widgets with simple, valid rules whose values the test checks.
struct Probes {
  QPointer<QLabel> text;
  QPointer<QSpinBox> number;
  QPointer<QLabel> sub_text;
  QPointer<QListView> rows;
};

Probes AddProbes(Host& host, QWidget* root) {
  Probes probes;
  probes.text = new QLabel(root);
  SetRule(probes.text, "binding.value", "{Binding Path=probe_s}");
  probes.number = new QSpinBox(root);
  probes.number->setRange(INT_MIN, INT_MAX);
  SetRule(probes.number, "binding.value", "{Binding Path=probe_i, Mode=OneWay}");
  auto* sub = new QWidget(root);
  SetRule(sub, "binding.vm", "{sub}");
  probes.sub_text = new QLabel(sub);
  SetRule(probes.sub_text, "binding.value", "{Binding Path=probe_s}");
  probes.rows = new QListView(root);
  SetRule(probes.rows, "binding.vm", "list");
  SetRule(probes.rows, "binding.value", "{Binding Path=name}");
  const std::vector<QWidget*> all = {probes.text, probes.number, sub, probes.sub_text, probes.rows};
  for (QWidget* w : all)
    host.widgets.push_back({w, 0, true});
  return probes;
}

QString StringOf(vm::ViewModel* vm, const char* name) {
  Value v;
  vm->GetPropW(name, v);
  return QString::fromUtf8(v.Str() ? v.Str() : "");
}
// ---------------------------------------------------------------------------
// Driving

void Click(Host& host, QAbstractButton* button, int window) {
  // A push button with a menu opens it modally on press.
  auto* push = qobject_cast<QPushButton*>(button);
  if (push && push->menu()) return;
  host.sender = button;
  host.sender_window = window;
  button->click();
}

void Trigger(Host& host, QAction* action, int window) {
  host.sender = action;
  host.sender_window = window;
  action->trigger();
}

void Edit(Host& host, QWidget* widget, int window) {
  Dice& dice = host.dice;
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
    if (dice.Chance(0.7)) {
      QTest::keyClicks(edit, dice.Typing());
    } else {
      edit->setText(QString::fromUtf8(dice.Bytes(10).c_str()));
    }
    if (dice.Chance(0.4)) QTest::keyClick(edit, Qt::Key_Return);
  } else if (auto* dt = qobject_cast<QDateTimeEdit*>(widget)) {
    dt->setDateTime(QDateTime::fromSecsSinceEpoch(dice.Int(-100000, 2000000000)));
    if (dice.Chance(0.5)) QTest::keyClick(dt, Qt::Key_Return);
  } else if (auto* dspin = qobject_cast<QDoubleSpinBox*>(widget)) {
    dspin->setValue(dice.Int(-500, 500) / 3.0);
    if (dice.Chance(0.5)) QTest::keyClick(dspin, Qt::Key_Return);
  } else if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
    if (dice.Chance(0.5)) {
      spin->setValue(dice.Int(-50, 50));
    } else {
      QTest::keyClicks(spin, dice.Typing());
    }
    if (dice.Chance(0.5)) QTest::keyClick(spin, Qt::Key_Return);
  } else if (auto* slider = qobject_cast<QAbstractSlider*>(widget)) {
    if (dice.Chance(0.5)) {
      slider->setSliderDown(true);
      slider->setValue(dice.Int(-10, 110));
      slider->setSliderDown(false);  // "released"
    } else {
      slider->triggerAction(QAbstractSlider::SliderPageStepAdd);
    }
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    if (button->isCheckable() && dice.Chance(0.5)) {
      button->toggle();
    } else {
      Click(host, button, window);
    }
  } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
    if (combo->isEditable() && dice.Chance(0.3)) {
      combo->setEditText(dice.Typing());
    } else if (dice.Chance(0.2)) {
      combo->addItem(dice.Typing());
    } else {
      combo->setCurrentIndex(dice.Int(-1, combo->count()));
    }
  } else if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
    tabs->setCurrentIndex(dice.Int(-1, tabs->count()));
  } else if (auto* stack = qobject_cast<QStackedWidget*>(widget)) {
    stack->setCurrentIndex(dice.Int(-1, stack->count()));
  } else if (auto* plain = qobject_cast<QPlainTextEdit*>(widget)) {
    if (dice.Chance(0.5)) {
      QTest::keyClicks(plain, dice.Typing());
    } else {
      plain->setPlainText(QString::fromUtf8(dice.Bytes(20).c_str()));
    }
  } else if (auto* text = qobject_cast<QTextEdit*>(widget)) {
    text->setHtml(QString::fromUtf8(dice.Bytes(20).c_str()));
  } else if (auto* list = qobject_cast<QListView*>(widget)) {
    if (QAbstractItemModel* model = list->model()) {
      const QModelIndex index = model->index(dice.Int(-1, model->rowCount()), 0);
      emit list->clicked(index);
    }
  } else if (qobject_cast<QMenu*>(widget) || qobject_cast<QToolBar*>(widget)) {
    QList<QAction*> actions = widget->actions();
    if (!actions.isEmpty()) Trigger(host, actions[dice.Int(0, actions.size() - 1)], window);
  } else if (auto* label = qobject_cast<QLabel*>(widget)) {
    label->setText(dice.Typing());
  } else if (auto* bar = qobject_cast<QStatusBar*>(widget)) {
    bar->showMessage(dice.Typing());
  } else if (!qobject_cast<QMenu*>(widget)) {
    widget->setVisible(!widget->isVisible());
  }
}

vm::ViewModel* SomeViewModel(Host& host) {
  const char* role = host.dice.Pick({"root", "root", "sub", "inner", "list", "empty"});
  vm::ViewModel* vm = host.Alive(role);
  if (vm && std::string(role) == "list" && host.dice.Chance(0.5)) {
    auto* list = static_cast<vm::ViewModelArray*>(vm);
    if (list->Size() > 0) return list->Get(host.dice.Int(0, list->Size() - 1));
  }
  return vm;
}

std::string SomeName(Host& host) {
  if (host.dice.Chance(0.2)) return host.dice.Pick({"", "nope", "run"});
  Host::Tracked& tracked = host.dice.Pick(host.widgets);
  return tracked.widget ? tracked.widget->objectName().toStdString() : "gone";
}

void Request(Host& host, vm::ViewModel* vm) {
  Dice& dice = host.dice;
  const std::string name = SomeName(host);
  int x = 0, y = 0, w = 0, h = 0;
  std::string sheet;
  switch (dice.Int(0, 6)) {
    case 0:
      vm->WindowPos(name, x, y, w, h);
      break;
    case 1: {
      // Large enough to matter, small enough for a backing store.
      const int sizes[] = {-1, 0, 10, 300, 1500, -5000};
      vm->SetWindowPos(name, sizes[dice.Int(0, 5)], sizes[dice.Int(0, 5)], sizes[dice.Int(0, 5)],
                       sizes[dice.Int(0, 5)]);
      break;
    }
    case 2:
      vm->SetStyleSheet(name, dice.Chance(0.7)
                                  ? dice.Pick({"", "color: red", "QLabel { font-size: 30px }",
                                               "{{{", "*{background:url(nope.png)}"})
                                  : dice.Bytes(20));
      break;
    case 3:
      vm->GetStyleSheet(name, sheet);
      break;
    case 4: {
      vm::MenuData menu;
      for (int n = dice.Int(0, 3); n > 0; --n) {
        auto* entry = new vm::MenuData();
        entry->text = dice.Bytes(6);
        entry->command = CommandName(dice);
        entry->separator = dice.Chance(0.2);
        if (dice.Chance(0.3)) {
          auto* child = new vm::MenuData();
          child->command = CommandName(dice);
          entry->AddChild(child);
        }
        menu.AddChild(entry);
      }
      vm->SetControlMenu(name, menu);
      break;
    }
    case 5:
      vm->Rebind(name, dice.Bytes(4));
      break;
    default:
      vm->CloseWindow();
      break;
  }
}

void EditList(Host& host) {
  auto* list = static_cast<vm::ViewModelArray*>(host.Alive("list"));
  if (!list) return;
  Dice& dice = host.dice;
  switch (dice.Int(0, 5)) {
    case 0:
      list->Add(new Row(&host.census, dice.Bytes(5)), dice.Int(-1, list->Size() + 1));
      break;
    case 1:
      list->Remove(static_cast<unsigned>(dice.Int(0, list->Size())));
      break;
    case 2:
      list->SetCurrent(static_cast<unsigned>(dice.Int(0, list->Size() + 1)));
      break;
    case 3:
      list->BeginBatch();
      list->Add(new Row(&host.census, "batch"));
      list->EndBatch();
      break;
    case 4:
      if (dice.Chance(0.3)) list->Reset();
      break;
    default:
      if (list->Size() > 0) list->Get(0)->SetPropW("name", RandomValue(dice));
      break;
  }
}

void ReleaseRoot(Host& host) {
  if (host.root_released) return;
  int holders = 0;
  for (const Host::Window& window : host.windows) {
    if (window.ctx && window.vm_role == "root") ++holders;
  }
  EXPECT_EQ(host.root->RefCount(), holders + 1);
  host.root_released = true;
  host.root->Release();
  if (holders == 0) {
    EXPECT_TRUE(host.census.gone["root"]);
    return;
  }
  // The contexts keep it: still usable until their windows go.
  EXPECT_FALSE(host.census.gone["root"]);
  EXPECT_EQ(host.root->RefCount(), holders);
  EXPECT_TRUE(host.root->SetPropW("i", Value(42)));
  Value v;
  EXPECT_TRUE(host.root->GetPropW("i", v));
  EXPECT_EQ(v.I32(), 42);
}

void DestroyWindow(Host& host, int index, bool later) {
  Host::Window& window = host.windows[index];
  if (!window.root) return;
  if (later) {
    window.root->deleteLater();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  } else {
    delete window.root.data();
  }
  EXPECT_TRUE(window.root.isNull());
  EXPECT_TRUE(window.ctx.isNull()) << "the context outlived its window";
}

void Step(Host& host) {
  Dice& dice = host.dice;
  const int roll = dice.Int(0, 99);
  if (roll < 32) {
    Host::Tracked& tracked = dice.Pick(host.widgets);
    if (tracked.widget && !tracked.probe) Edit(host, tracked.widget, tracked.window);
  } else if (roll < 38) {
    if (host.actions.empty()) return;
    Host::Action& action = dice.Pick(host.actions);
    if (action.action) Trigger(host, action.action, action.window);
  } else if (roll < 44) {
    Host::Window& window = dice.Pick(host.windows);
    if (!window.ctx) return;
    if (dice.Chance(0.5)) {
      window.ctx->UpdateModel();
    } else {
      window.ctx->UpdateView(dice.Chance(0.5));
    }
  } else if (roll < 64) {
    if (vm::ViewModel* vm = SomeViewModel(host)) vm->SetPropW(WriteName(dice), RandomValue(dice));
  } else if (roll < 72) {
    if (vm::ViewModel* vm = SomeViewModel(host)) Request(host, vm);
  } else if (roll < 78) {
    EditList(host);
  } else if (roll < 86) {
    QCoreApplication::processEvents();
  } else if (roll < 88) {
    QTest::qWait(30);  // the deferred view update runs
  } else if (roll < 92) {
    Host::Tracked& tracked = dice.Pick(host.widgets);
    if (!tracked.widget || tracked.probe) return;
    // A bound window's root goes through DestroyWindow.
    for (const Host::Window& window : host.windows) {
      if (window.root == tracked.widget) return;
    }
    if (dice.Chance(0.5)) {
      delete tracked.widget.data();
    } else {
      tracked.widget->deleteLater();
    }
  } else if (roll < 94) {
    Host::Tracked& tracked = dice.Pick(host.widgets);
    if (tracked.widget && !qobject_cast<QMenu*>(tracked.widget))
      tracked.widget->setEnabled(!tracked.widget->isEnabled());
  } else if (roll < 95) {
    ReleaseRoot(host);
  } else if (roll < 96) {
    // A second window may go early; the first stays for the probes.
    if (host.windows.size() > 1) DestroyWindow(host, 1, dice.Chance(0.5));
  } else if (roll < 98) {
    Host::Window& window = dice.Pick(host.windows);
    if (window.root) window.root->setVisible(!window.root->isVisible());
  } else {
    QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : host.RootOf(0);
    if (target) QTest::keyClick(target, dice.Chance(0.5) ? Qt::Key_Tab : Qt::Key_Return);
  }
}

// One form: build, bind, drive, check, tear down. Every view model the form
// made is gone at the end.
void RunForm(unsigned seed, int form) {
  Dice dice(seed, form);
  Host host(dice);
  host.root = new Sheet(&host.census, "root", &host);
  auto* sub = new Sheet(&host.census, "sub", &host);
  auto* inner = new Sheet(&host.census, "inner", &host);
  auto* list = new List(&host.census, "list");
  auto* empty = new List(&host.census, "empty");
  sub->SetSubViewModel("inner", inner);
  inner->SetParent(sub);
  host.by_role = {{"sub", sub}, {"inner", inner}, {"list", list}, {"empty", empty}};
  for (const char* name : {"sub", "list", "empty"}) {
    host.root->SetSubViewModel(name, host.by_role[name]);
    host.by_role[name]->SetParent(host.root);
  }
  for (int n = dice.Int(0, 4); n > 0; --n)
    list->Add(new Row(&host.census, "r" + std::to_string(n)));
  sub->probe_s = "sub probe";

  // The main window, and sometimes a second one over the same view model, a
  // sub view model or the list.
  const int window_count = dice.Chance(0.3) ? 2 : 1;
  for (int index = 0; index < window_count; ++index) {
    QWidget* root = nullptr;
    switch (dice.Int(0, 5)) {
      case 0: {
        auto* main = new QMainWindow();
        main->setCentralWidget(new QWidget());
        main->addToolBar(new QToolBar());
        root = main;
        break;
      }
      case 1:
        root = new QGroupBox();  // a root that is bound itself
        SetRule(root, "binding.value", DataRule(dice));
        break;
      default:
        root = new QWidget();
        break;
    }
    root->setObjectName(QString("root%1").arg(index));
    if (dice.Chance(0.2)) root->setAttribute(Qt::WA_DeleteOnClose);
    // The probes of the first window bind against the root view model.
    if (index > 0 && dice.Chance(0.2)) SetRule(root, "binding.vm", SubName(dice));
    host.windows.push_back({root, nullptr, nullptr, ""});
    Populate(host, root, index, 0, dice.Int(2, 12));
  }
  Probes probes;
  if (dice.Chance(0.7)) probes = AddProbes(host, host.RootOf(0));
  for (Host::Window& window : host.windows) {
    window.vm_role =
        window.root == host.windows[0].root ? "root" : dice.Pick({"root", "sub", "list"});
    window.vm = window.vm_role == "root" ? host.root : host.by_role[window.vm_role];
    window.ctx = vm::BindingContext::CreateAndBind(window.root, window.vm);
    EXPECT_FALSE(window.ctx.isNull());
    if (dice.Chance(0.5)) window.root->show();
  }
  if (probes.rows && probes.rows->model()) {
    new QAbstractItemModelTester(probes.rows->model(),
                                 QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 probes.rows->model());
  }

  for (int step = 0; step < kStepsPerForm; ++step)
    Step(host);

  // Simple rules show the model after a forced update.
  vm::BindingContext* ctx = host.windows[0].ctx;
  if (ctx && probes.text && host.Alive("root")) {
    ctx->UpdateView(true);
    EXPECT_EQ(probes.text->text(), StringOf(host.root, "probe_s"));
    if (probes.number) {
      EXPECT_EQ(probes.number->value(), host.root->probe_i);
    }
    if (probes.sub_text && host.Alive("sub")) {
      EXPECT_EQ(probes.sub_text->text(), StringOf(sub, "probe_s"));
    }
    if (probes.rows && host.Alive("list")) {
      EXPECT_EQ(probes.rows->model()->rowCount(), static_cast<int>(list->Size()));
    }
  }

  // Teardown in a random order.
  if (dice.Chance(0.4)) ReleaseRoot(host);
  std::vector<int> order;
  for (int index = 0; index < static_cast<int>(host.windows.size()); ++index)
    order.push_back(index);
  std::shuffle(order.begin(), order.end(), dice.rng);
  for (int index : order) {
    DestroyWindow(host, index, dice.Chance(0.3));
    if (dice.Chance(0.3)) ReleaseRoot(host);
  }
  ReleaseRoot(host);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(host.census.alive, 0) << "view models outlived every window";
}

}  // namespace

TEST(BindingFuzz, RandomFormsSurviveEditsRequestsAndTeardown) {
  g_seed = static_cast<unsigned>(EnvInt("OVUI_FUZZ_SEED", kDefaultSeed));
  const int only = EnvInt("OVUI_FUZZ_FORM", -1);
  std::printf("seed=%u\n", g_seed);
  std::fflush(stdout);
#ifdef OVUI_FUZZ_DEATH_NOTE
  __sanitizer_set_death_callback(NoteWhere);
#endif
  // Closing the last window must not ask the application to quit.
  const bool quit_on_close = QApplication::quitOnLastWindowClosed();
  QApplication::setQuitOnLastWindowClosed(false);
  // The log is open, so that failure messages built from random rules are
  // formatted and written too.
  ovui_test::LogCapture log;
  for (int form = 0; form < kForms; ++form) {
    if (only >= 0 && form != only) continue;
    g_form = form;
    // One line of form numbers: the last one names the form to replay after
    // an abort that prints nothing else (g++'s UBSan runs no death callback).
    std::printf("%d ", form);
    std::fflush(stdout);
    SCOPED_TRACE(testing::Message() << "seed=" << g_seed << " form=" << form);
    RunForm(g_seed, form);
    log.Clear();
  }
  std::printf("\n");
  g_form = -1;
  QApplication::setQuitOnLastWindowClosed(quit_on_close);
#ifdef OVUI_FUZZ_DEATH_NOTE
  __sanitizer_set_death_callback(nullptr);
#endif
}

// Cases the random forms found, kept deterministic.

TEST(BindingFuzzFound, CommandsMayDeleteTheirSenderOrTheirWindow) {
  Census census;
  auto* vm = new Counted<vm::ViewModel>(&census, "vm");
  QPointer<QObject> victim;
  int runs = 0;
  vm->RegisterCommand("drop", new HostCommand(
                                  [&] {
                                    ++runs;
                                    delete victim.data();
                                    return true;
                                  },
                                  true));
  auto* window = new QWidget();
  auto* button = new QPushButton(window);
  button->setObjectName("drop");  // bound to "drop" by its name
  auto* bar = new QToolBar(window);
  QAction* action = bar->addAction("drop");
  action->setProperty("binding.command", "{Command Name=drop, CloseWindow=true}");
  auto* closer = new QPushButton(window);
  closer->setProperty("binding.command", "{Command Name=drop, UpdateModel=true}");
  QPointer<vm::BindingContext> ctx = vm::BindingContext::CreateAndBind(window, vm);
  ASSERT_TRUE(ctx);
  window->show();

  victim = button;
  button->click();
  EXPECT_TRUE(victim.isNull());
  victim = action;
  action->trigger();
  EXPECT_TRUE(victim.isNull());
  EXPECT_FALSE(window->isVisible());  // read before the action and its rule went
  EXPECT_EQ(runs, 2);
  ASSERT_TRUE(ctx);

  // The window goes from inside the command, and with it the context and
  // the last reference on the view model.
  vm->Release();
  victim = window;
  closer->click();
  EXPECT_EQ(runs, 3);
  EXPECT_TRUE(victim.isNull());
  EXPECT_TRUE(ctx.isNull());
  EXPECT_EQ(census.alive, 0);
}

TEST(BindingFuzzFound, AnActionSharedByTwoWindowsOutlivesOneOfThem) {
  auto* vm = new vm::ViewModel();
  auto* save = new ovui_test::ToyCommand();
  vm->RegisterCommand("save", save);
  QWidget first;
  auto* first_bar = new QToolBar(&first);
  QAction* action = first_bar->addAction("Save");
  action->setProperty("binding.command", "{Command Name=save, Args=shared}");
  auto* second = new QWidget();
  auto* second_bar = new QToolBar(second);
  second_bar->addAction(action);
  QPointer<vm::BindingContext> first_ctx = vm::BindingContext::CreateAndBind(&first, vm);
  QPointer<vm::BindingContext> second_ctx = vm::BindingContext::CreateAndBind(second, vm);
  action->trigger();
  EXPECT_EQ(save->runs, std::vector<std::string>{"shared"});  // connected once

  delete second;  // its context and its copy of the rule go
  EXPECT_TRUE(second_ctx.isNull());
  action->trigger();
  EXPECT_EQ(save->runs, (std::vector<std::string>{"shared", "shared"}));
  vm->Release();
}

TEST(BindingFuzzFound, InstantsBeyondTheMillisecondRangeAreNotShown) {
  QVariant qv;
  EXPECT_FALSE(vm::QVariantFromValue(qv, Value(std::numeric_limits<long long>::max()), "dateTime"));
  EXPECT_FALSE(qv.isValid());
  EXPECT_FALSE(vm::QVariantFromValue(qv, Value(std::numeric_limits<long long>::min()), "date"));
  ASSERT_TRUE(vm::QVariantFromValue(qv, Value(86400LL), "dateTime"));
  EXPECT_EQ(qv.toDateTime().toSecsSinceEpoch(), 86400);

  auto* vm = new vm::ViewModel();
  long long when = std::numeric_limits<long long>::max();
  vm->InstallProp("when", &when);
  QWidget window;
  auto* edit = new QDateTimeEdit(&window);
  edit->setProperty("binding.value", "{Binding Path=when}");
  const QDateTime before = edit->dateTime();
  QPointer<vm::BindingContext> ctx = vm::BindingContext::CreateAndBind(&window, vm);
  EXPECT_EQ(edit->dateTime(), before);
  vm->SetPropW("when", Value(86400LL));
  ctx->UpdateView(true);
  EXPECT_EQ(edit->dateTime().toSecsSinceEpoch(), 86400);
  vm->Release();
}
