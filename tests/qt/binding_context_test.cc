#include "qt/binding_context.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QVBoxLayout>
#include <memory>

#include "support/log_capture.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::LogCapture;

namespace {

// The view model of the forms below: a title, a count checked to lie in
// 0..10, a flag, and a "save" command that can be switched off.
struct Form : vm::ViewModel {
  Form() {
    InstallProp("title", &title);
    InstallProp("count", &count);
    InstallProp("flag", &flag);
    InstallProp("choice", &choice);
    InstallProp("note", &note);
    RegisterValidator("range", new ovui_test::RangeValidator(0, 10));
    save = new ovui_test::ToyCommand();
    RegisterCommand("save", save);
  }
  bool GetContextMenuData(const std::string& name, vm::MenuData&) override {
    asked_menu = name;
    return false;
  }
  bool InitWindow() override {
    ++init_windows;
    return true;
  }
  std::string title = "Hello";
  int count = 3;
  bool flag = true;
  std::string choice = "b";
  std::string note;
  std::string asked_menu;
  int init_windows = 0;
  ovui_test::ToyCommand* save;
};

// A subclass with a meta-object of its own, which no binder knows.
class OwnLineEdit : public QLineEdit {
  Q_OBJECT
};

template <typename W>
W* Add(QWidget* parent, const char* name, const char* rule = nullptr,
       const char* key = "binding.value") {
  auto* w = new W(parent);
  w->setObjectName(name);
  if (rule) w->setProperty(key, QString::fromUtf8(rule));
  if (parent->layout()) parent->layout()->addWidget(w);
  return w;
}

// Waits for the deferred view update.
bool Settled(const std::function<bool()>& done) {
  return QTest::qWaitFor(done, 1000);
}

struct BindingContextTest : testing::Test {
  BindingContextTest() { new QVBoxLayout(window.get()); }
  ~BindingContextTest() override {
    window.reset();  // the context goes with it
    form->Release();
  }
  vm::BindingContext* Bind() {
    ctx = vm::BindingContext::CreateAndBind(window.get(), form);
    return ctx;
  }
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  Form* form = new Form();
  QPointer<vm::BindingContext> ctx;
};

}  // namespace

TEST_F(BindingContextTest, ModelToViewIsDeferredAndCoalesced) {
  auto* label = Add<QLabel>(window.get(), "label", "{Binding Path=title}");
  auto* own = Add<QLabel>(window.get(), "own");  // a rule in its own text
  own->setText("{Binding Path=count}");
  auto* plain = Add<QLabel>(window.get(), "plain");
  plain->setText("no rule");
  auto* once = Add<QLabel>(window.get(), "once", "{Binding Path=count}");
  ASSERT_TRUE(Bind());
  ctx->GetDataBindings().back()->rule->mode = vm::DataBinding::MODE_ONCE;  // set in code only
  EXPECT_EQ(label->text(), "Hello");  // the first, forced update
  EXPECT_EQ(own->text(), "3");
  EXPECT_EQ(plain->text(), "no rule");
  EXPECT_EQ(form->init_windows, 1);

  form->SetPropW("title", Value("A"));
  form->SetPropW("title", Value("B"));
  form->SetPropW("count", Value(4));
  EXPECT_EQ(label->text(), "Hello");  // not yet: one update serves the burst
  EXPECT_TRUE(Settled([&] { return label->text() == "B"; }));
  EXPECT_EQ(own->text(), "4");
  EXPECT_EQ(once->text(), "3");  // served by forced updates only
  ctx->UpdateView(true);
  EXPECT_EQ(once->text(), "4");
}

TEST_F(BindingContextTest, TriggersDecideWhenEditsReachTheModel) {
  auto* live = Add<QLineEdit>(window.get(), "live", "{Binding Path=title}");
  auto* later = Add<QLineEdit>(window.get(), "later", "{Binding Path=choice, Trigger=Changed}");
  auto* never = Add<QLineEdit>(window.get(), "never", "{Binding Path=choice, Mode=OneWay}");
  auto* text = Add<QTextEdit>(window.get(), "text", "{Binding Path=note, Trigger=Changed}");
  ASSERT_TRUE(Bind());
  QTest::keyClicks(live, "!");
  EXPECT_EQ(form->title, "Hello!");  // Changing (the default): at once
  QTest::keyClicks(later, "x");
  EXPECT_EQ(form->choice, "b");
  QTest::keyClick(later, Qt::Key_Return);  // editing finished
  EXPECT_EQ(form->choice, "bx");
  QTest::keyClicks(never, "y");
  QTest::keyClick(never, Qt::Key_Return);
  EXPECT_EQ(form->choice, "bx");
  EXPECT_TRUE(Settled([&] { return never->text() == "bx"; }));  // and follows the model
  text->setPlainText("zz");  // a text editor has no "finished": never writes
  EXPECT_EQ(form->note, "");
  ctx->UpdateModel();  // but the explicit path writes every two-way binding
  EXPECT_NE(form->note.find("zz"), std::string::npos);
}

TEST_F(BindingContextTest, ASpinBoxAndASliderShareOneValue) {
  auto* spin = Add<QSpinBox>(window.get(), "spin", "{Binding Path=count}");
  auto* slider = Add<QSlider>(window.get(), "slider", "{Binding Path=count, Trigger=Changed}");
  auto* live = Add<QSlider>(window.get(), "live", "{Binding Path=flag, Trigger=Changing}");
  live->setRange(0, 1);
  ASSERT_TRUE(Bind());
  EXPECT_EQ(slider->value(), 3);
  spin->setValue(7);
  EXPECT_EQ(form->count, 7);
  EXPECT_TRUE(Settled([&] { return slider->value() == 7; }));
  slider->setValue(2);  // moving only: written on release
  EXPECT_EQ(form->count, 7);
  emit slider->sliderReleased();
  EXPECT_EQ(form->count, 2);
  EXPECT_TRUE(Settled([&] { return spin->value() == 2; }));
  live->setValue(0);  // Changing: while it moves
  EXPECT_FALSE(form->flag);
}

TEST_F(BindingContextTest, ValidationPaintsAndReportsUntilTheNextUpdate) {
  auto* count = Add<QLineEdit>(window.get(), "count", "{Binding Path=count, Validator=range}");
  auto* error = Add<QLabel>(window.get(), "error", "{Binding Path=error.of.count}");
  ASSERT_TRUE(Bind());
  count->clear();
  QTest::keyClicks(count, "12");
  EXPECT_EQ(form->count, 1);  // "1" passed, "12" did not
  EXPECT_EQ(error->text(), "must be between 0 and 10");
  EXPECT_EQ(count->palette().color(count->foregroundRole()), QColor(Qt::red));
  ctx->UpdateView(true);
  EXPECT_EQ(error->text(), "");
  EXPECT_EQ(count->palette().color(count->foregroundRole()), QColor(Qt::black));
  QTest::keyClick(count, Qt::Key_Backspace);
  EXPECT_EQ(count->palette().color(count->foregroundRole()), QColor(Qt::black));
}

TEST_F(BindingContextTest, CommandsRunFollowTheirStateAndCloseTheWindow) {
  auto* save = Add<QPushButton>(window.get(), "save");  // bound by its name
  auto* close = Add<QPushButton>(window.get(), "close", "{Command Name=save, CloseWindow=true}",
                                 "binding.command");
  auto* missing = Add<QPushButton>(window.get(), "missing");
  auto* unnamed = Add<QPushButton>(window.get(), "");
  auto* bar = Add<QToolBar>(window.get(), "bar");
  QAction* action = bar->addAction("Save");
  action->setProperty("binding.command", "{Command Name=save, Args=all}");
  ASSERT_TRUE(Bind());
  window->show();
  QTest::mouseClick(save, Qt::LeftButton);
  action->trigger();
  EXPECT_EQ(form->save->runs, (std::vector<std::string>{"", "all"}));
  QTest::mouseClick(unnamed, Qt::LeftButton);  // "{}": not bound
  QTest::mouseClick(missing, Qt::LeftButton);  // a command the view model lacks: nothing
  EXPECT_EQ(form->save->runs.size(), 2u);

  form->save->enabled = false;
  ctx->UpdateView(false);
  EXPECT_FALSE(save->isEnabled());
  EXPECT_FALSE(action->isEnabled());
  action->trigger();  // from code: still refused
  EXPECT_EQ(form->save->runs.size(), 2u);
  EXPECT_TRUE(window->isVisible());

  form->save->enabled = true;
  ctx->UpdateView(false);
  QTest::mouseClick(close, Qt::LeftButton);
  EXPECT_EQ(form->save->runs.size(), 3u);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(BindingContextTest, SubViewModelsVisibilityAndEnablement) {
  auto* detail = new Form();
  detail->title = "Detail";
  form->SetSubViewModel("detail", detail);
  auto* braced = Add<QWidget>(window.get(), "braced", "{detail}", "binding.vm");
  new QVBoxLayout(braced);
  auto* inner = Add<QLabel>(braced, "inner", "{Binding Path=title}");
  auto* bare = Add<QWidget>(window.get(), "bare", " detail ", "binding.vm");
  auto* bare_label = Add<QLabel>(bare, "bare_label", "{Binding Path=title}");
  auto* unknown = Add<QWidget>(window.get(), "unknown", "{nope}", "binding.vm");
  auto* outer = Add<QLabel>(unknown, "outer", "{Binding Path=title}");
  auto* flagged = Add<QCheckBox>(window.get(), "flagged", "{Binding Path=flag}");
  auto* group = Add<QWidget>(window.get(), "group", "{Binding Path=flag}", "binding.enable");
  auto* shown = Add<QLabel>(window.get(), "shown", "{Binding Path=flag}", "binding.visible");
  ASSERT_TRUE(Bind());
  window->show();
  EXPECT_EQ(inner->text(), "Detail");
  EXPECT_EQ(bare_label->text(), "Detail");
  EXPECT_EQ(outer->text(), "Hello");  // an unknown name binds against the enclosing one
  EXPECT_EQ(detail->init_windows, 1);
  EXPECT_TRUE(group->isEnabled());
  EXPECT_TRUE(shown->isVisible());
  flagged->click();
  EXPECT_FALSE(form->flag);
  EXPECT_TRUE(Settled([&] { return !group->isEnabled(); }));
  EXPECT_FALSE(shown->isVisible());
}

TEST_F(BindingContextTest, WindowRequests) {
  auto* button = Add<QPushButton>(window.get(), "menu_button");
  auto* named = Add<QLabel>(window.get(), "named");
  ASSERT_TRUE(Bind());
  window->show();
  EXPECT_TRUE(form->SetWindowPos("", 40, 50, 300, 200));
  int x = 0, y = 0, w = 0, h = 0;
  EXPECT_TRUE(form->WindowPos("", x, y, w, h));
  EXPECT_EQ(std::vector<int>({w, h}), std::vector<int>({300, 200}));
  EXPECT_TRUE(form->SetWindowPos("", -1, 0, 320, 240));  // x = -1: resizes only
  EXPECT_EQ(window->size(), QSize(320, 240));
  EXPECT_TRUE(form->SetStyleSheet("named", "color: blue"));
  EXPECT_EQ(named->styleSheet(), "color: blue");
  std::string sheet;
  EXPECT_TRUE(form->GetStyleSheet("named", sheet));
  EXPECT_EQ(sheet, "color: blue");
  {
    LogCapture log;
    EXPECT_TRUE(form->SetStyleSheet("nobody", "x"));  // delivered, then refused there
    EXPECT_TRUE(log.HasFailedCheck("OnWindowRequest", "widget!=NULL"));
  }

  vm::MenuData menu;
  auto* entry = new vm::MenuData();
  entry->text = "Save";
  entry->command = "save";
  menu.AddChild(entry);
  EXPECT_TRUE(form->SetControlMenu("menu_button", menu));
  ASSERT_NE(button->menu(), nullptr);
  ASSERT_EQ(button->menu()->actions().size(), 1);
  button->menu()->actions()[0]->trigger();
  EXPECT_EQ(form->save->runs.size(), 1u);
  EXPECT_TRUE(form->SetControlMenu("menu_button", vm::MenuData()));
  EXPECT_EQ(button->menu(), nullptr);

  EXPECT_TRUE(form->CloseWindow());
  EXPECT_FALSE(window->isVisible());
}

TEST_F(BindingContextTest, CombosStatusBarsAndTheRuleLessWidgets) {
  form->InstallProp("options", &form->choice);
  auto* by_text = Add<QComboBox>(window.get(), "by_text", "{Binding Path=title}");
  by_text->setProperty("binding.options", "{Binding Path=options}");
  auto* by_index = Add<QComboBox>(window.get(), "by_index", "{Binding Path=count}");
  by_index->addItems({"0", "1", "2", "3", "4"});
  auto* status =
      Add<QStatusBar>(window.get(), "status", "{Binding Path=title}\n{x}\n{Binding Path=count}");
  auto* own = new OwnLineEdit();
  own->setParent(window.get());
  own->setProperty("binding.value", "{Binding Path=title}");
  own->setProperty("binding.enable", "{Binding Path=flag}");
  form->choice = "a\nHello\nc";
  ASSERT_TRUE(Bind());
  EXPECT_EQ(by_text->count(), 3);
  EXPECT_EQ(by_text->currentText(), "Hello");
  EXPECT_EQ(by_index->currentIndex(), 3);
  by_index->setCurrentIndex(1);
  EXPECT_EQ(form->count, 1);
  QList<QLabel*> fields = status->findChildren<QLabel*>();
  ASSERT_EQ(fields.size(), 2);  // "{x}" is too short to be a field
  EXPECT_EQ(fields[0]->text(), "Hello");
  EXPECT_TRUE(Settled([&] { return fields[1]->text() == "1"; }));
  EXPECT_EQ(own->text(), "");  // no value binding, but enablement is bound
  EXPECT_TRUE(own->isEnabled());
}

TEST_F(BindingContextTest, TenNestedUpdatesAreTheLimit) {
  // A converter that asks for another forced update from inside one, and at
  // the deepest level lets the line edit announce an edit.
  struct Recursing : vm::IConverter {
    bool Convert(const Value& from, Value& to) override {
      to = from;
      if (++depth < 12 && ctx) ctx->UpdateView(true);
      if (depth == 12 && edit) emit edit->textEdited("deep");
      return true;
    }
    bool ConvertBack(const Value& from, Value& to) override {
      to = from;
      return true;
    }
    vm::BindingContext* ctx = nullptr;
    QLineEdit* edit = nullptr;
    int depth = 0;
  };
  auto* converter = new Recursing();
  form->RegisterConverter("recursing", converter);
  auto* edit = Add<QLineEdit>(window.get(), "edit", "{Binding Path=title, Converter=recursing}");
  ASSERT_TRUE(Bind());
  converter->ctx = ctx;
  converter->edit = edit;
  converter->depth = 0;
  LogCapture log;
  ctx->UpdateView(true);
  EXPECT_TRUE(log.HasFailedCheck("OnChanged", "widget != NULL && this->updating_view < 10"));
}

TEST_F(BindingContextTest, DestroyedWidgetsAndViewModelsInEitherOrder) {
  auto* gone = Add<QLabel>(window.get(), "gone", "{Binding Path=title}");
  auto* edit = Add<QLineEdit>(window.get(), "edit", "{Binding Path=title}");
  Add<QPushButton>(window.get(), "save");
  ASSERT_TRUE(Bind());
  delete gone;
  delete edit;
  EXPECT_EQ(ctx->GetDataBindings().size(), 0u);
  form->SetPropW("title", Value("after"));
  QTest::qWait(40);  // the deferred update runs over what is left

  // The view model released first: the context keeps it alive until the
  // window goes.
  form->Release();
  form = nullptr;
  window.reset();
  EXPECT_TRUE(ctx.isNull());
  form = new Form();  // for the fixture
}

TEST_F(BindingContextTest, RefusalsAndTheContextMenuOfTheRoot) {
  LogCapture log;
  EXPECT_EQ(vm::BindingContext::CreateAndBind(nullptr, form), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("CreateAndBind", "widget != NULL && vm != NULL"));
  EXPECT_FALSE(vm::BindingContext::RegisterWidgetBinder("QLabel", nullptr));
  window->setObjectName("main");
  ASSERT_TRUE(Bind());
  emit window->customContextMenuRequested(QPoint(1, 1));
  EXPECT_EQ(form->asked_menu, "main");
  EXPECT_EQ(vm::BindingContext::FindWidget("missing", window.get()), nullptr);
  EXPECT_EQ(vm::BindingContext::FindWidget("", window.get()), window.get());
}

#include "binding_context_test.moc"
