#include "qt/binding_context.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <memory>

#include "support/log_capture.h"
#include "support/toy_objects.h"

using base::Value;

namespace {

// A title, a count checked to lie in 0..10, a flag, and a "save" command.
struct Form : vm::ViewModel {
  Form() {
    InstallProp("title", &title);
    InstallProp("count", &count);
    InstallProp("flag", &flag);
    InstallProp("choice", &choice);
    InstallProp("note", &note);
    RegisterValidator("range", new ovui_test::RangeValidator(0, 10));
    RegisterCommand("save", save = new ovui_test::ToyCommand());
  }
  bool GetContextMenuData(const std::string& name, vm::MenuData&) override {
    asked_menu = name;
    return false;
  }
  bool InitWindow() override { return ++init_windows > 0; }
  std::string title = "Hello", choice = "b", note, asked_menu;
  int count = 3, init_windows = 0;
  bool flag = true;
  ovui_test::ToyCommand* save;
};

// A subclass with a meta-object of its own, which no binder knows.
class OwnLineEdit : public QLineEdit {
  Q_OBJECT
  using QLineEdit::QLineEdit;
};

struct BindingContextTest : testing::Test {
  ~BindingContextTest() override {
    window.reset();  // the context goes with it
    form->Release();
  }
  template <typename W>
  W* Add(const char* name, const char* rule = nullptr, const char* key = "binding.value",
         QWidget* parent = nullptr) {
    auto* w = new W(parent ? parent : window.get());
    w->setObjectName(name);
    if (rule) w->setProperty(key, QString::fromUtf8(rule));
    return w;
  }
  vm::BindingContext* Bind() {  // and shows the window
    window->show();
    return ctx = vm::BindingContext::CreateAndBind(window.get(), form);
  }
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  Form* form = new Form();
  QPointer<vm::BindingContext> ctx;
};

}  // namespace

TEST_F(BindingContextTest, ModelToViewIsDeferredCoalescedNestedAndOutlivesWhatItShows) {
  // Asks for a forced update from inside one; at the deepest, the edit reports an edit.
  struct Recursing : vm::IConverter {
    bool ConvertBack(const Value&, Value&) override { return false; }
    bool Convert(const Value& from, Value& to) override {
      to = from;
      if (++depth < 12) ctx->UpdateView(true);
      if (depth == 12) emit edit->textEdited("deep");
      return true;
    }
    vm::BindingContext* ctx = nullptr;
    QLineEdit* edit = nullptr;
    int depth = 100;  // idle until the test asks
  };
  auto* converter = new Recursing();
  form->RegisterConverter("recursing", converter);
  auto* label = Add<QLabel>("label", "{Binding Path=title}");
  auto* own = Add<QLabel>("own", "{Binding Path=count}", "text");  // a rule in its own text
  auto* plain = Add<QLabel>("plain", "no rule", "text");
  converter->edit = Add<QLineEdit>("edit", "{Binding Path=title, Converter=recursing}");
  auto* once = Add<QLabel>("once", "{Binding Path=count}");
  Add<QPushButton>("save");  // a command, left for the deferred update below
  ASSERT_TRUE(converter->ctx = Bind());
  ctx->GetDataBindings().back()->rule->mode = vm::DataBinding::MODE_ONCE;  // set in code only
  EXPECT_EQ(QStringList({label->text(), own->text(), plain->text()}),  // the first, forced update
            QStringList({"Hello", "3", "no rule"}));
  EXPECT_EQ(form->init_windows, 1);
  form->SetPropW("title", Value("B"));
  form->SetPropW("count", Value(4));
  EXPECT_EQ(label->text(), "Hello");  // not yet: one update serves the burst
  EXPECT_TRUE(QTest::qWaitFor([&] { return label->text() == "B"; }));
  EXPECT_EQ(own->text(), "4");
  EXPECT_EQ(once->text(), "3");  // served by forced updates only
  ctx->UpdateView(true);
  EXPECT_EQ(once->text(), "4");
  converter->depth = 0;  // ten nested updates are the limit
  ovui_test::LogCapture log;
  ctx->UpdateView(true);
  EXPECT_TRUE(log.HasFailedCheck("OnChanged", "widget != NULL && this->updating_view < 10"));

  // Bound widgets may go first, and the deferred update runs over what is left.
  for (QWidget* gone : QList<QWidget*>{label, own, once, converter->edit})
    delete gone;
  EXPECT_EQ(ctx->GetDataBindings().size(), 0u);
  form->SetPropW("title", Value("after"));
  QTest::qWait(40);
  // The view model released before the window: the context keeps it until then.
  form->Release();
  window.reset();
  EXPECT_TRUE(ctx.isNull());
  form = new Form();  // for the fixture
}

TEST_F(BindingContextTest, TriggersAndValidatorsDecideWhenEditsReachTheModel) {
  auto* live = Add<QLineEdit>("live", "{Binding Path=title}");
  auto* later = Add<QLineEdit>("later", "{Binding Path=choice, Trigger=Changed}");
  auto* never = Add<QLineEdit>("never", "{Binding Path=choice, Mode=OneWay}");
  auto* text = Add<QTextEdit>("text", "{Binding Path=note, Trigger=Changed}");
  auto* spin = Add<QSpinBox>("spin", "{Binding Path=count}");
  auto* slider = Add<QSlider>("slider", "{Binding Path=count, Trigger=Changed}");
  auto* moving = Add<QSlider>("moving", "{Binding Path=flag, Trigger=Changing}");
  auto* count = Add<QLineEdit>("count", "{Binding Path=count, Validator=range}");
  auto* error = Add<QLabel>("error", "{Binding Path=error.of.count}");
  ASSERT_TRUE(Bind());
  QTest::keyClicks(live, "!");
  EXPECT_EQ(form->title, "Hello!");  // Changing (the default): at once
  QTest::keyClicks(later, "x");
  EXPECT_EQ(form->choice, "b");
  QTest::keyClick(later, Qt::Key_Return);  // editing finished
  EXPECT_EQ(form->choice, "bx");
  QTest::keyClicks(never, "y");
  EXPECT_EQ(form->choice, "bx");
  EXPECT_TRUE(QTest::qWaitFor([&] { return never->text() == "bx"; }));  // and follows the model
  text->setPlainText("zz");  // a text editor has no "finished": never writes
  EXPECT_EQ(form->note, "");
  ctx->UpdateModel();  // the explicit path writes every two-way binding
  EXPECT_NE(form->note.find("zz"), std::string::npos);

  // A spin box and a slider share one value; the slider writes on release.
  spin->setValue(7);
  EXPECT_EQ(form->count, 7);
  EXPECT_TRUE(QTest::qWaitFor([&] { return slider->value() == 7; }));
  slider->setValue(2);
  EXPECT_EQ(form->count, 7);
  emit slider->sliderReleased();
  EXPECT_EQ(form->count, 2);
  moving->setValue(0);  // Changing: while it moves
  EXPECT_FALSE(form->flag);

  // A failed validation paints the editor and reports until the next update.
  auto color = [&] { return count->palette().color(count->foregroundRole()); };
  count->clear();
  QTest::keyClicks(count, "12");
  EXPECT_EQ(form->count, 1);  // "1" passed, "12" did not
  EXPECT_EQ(error->text(), "must be between 0 and 10");
  EXPECT_EQ(color(), QColor(Qt::red));
  ctx->UpdateView(true);
  EXPECT_EQ(error->text(), "");
  EXPECT_EQ(color(), QColor(Qt::black));
}

TEST_F(BindingContextTest, CommandsRunFollowTheirStateAndCloseTheWindow) {
  auto* save = Add<QPushButton>("save");  // bound by its name
  auto* quit = Add<QPushButton>("quit", "{Command Name=save, CloseWindow=true}", "binding.command");
  QPushButton* idle[] = {Add<QPushButton>("missing"), Add<QPushButton>("")};
  QAction* action = Add<QToolBar>("bar")->addAction("Save");
  action->setProperty("binding.command", "{Command Name=save, Args=all}");
  ASSERT_TRUE(Bind());
  QTest::mouseClick(save, Qt::LeftButton);
  action->trigger();
  EXPECT_EQ(form->save->runs, (std::vector<std::string>{"", "all"}));
  for (QPushButton* button : idle)  // a command the view model lacks, and "{}": nothing
    button->click();
  form->save->enabled = false;
  ctx->UpdateView(false);
  EXPECT_FALSE(save->isEnabled());
  EXPECT_FALSE(action->isEnabled());
  action->trigger();  // from code: still refused
  EXPECT_EQ(form->save->runs.size(), 2u);
  form->save->enabled = true;
  ctx->UpdateView(false);
  QTest::mouseClick(quit, Qt::LeftButton);
  EXPECT_EQ(form->save->runs.size(), 3u);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(BindingContextTest, SubViewModelsVisibilityEnablementCombosAndStatusBars) {
  auto* detail = new Form();
  detail->title = "Detail";
  form->SetSubViewModel("detail", detail);
  QList<QLabel*> titles;  // under a braced, a bare and an unknown sub view model name
  for (const char* name : {"{detail}", " detail ", "{nope}"})
    titles << Add<QLabel>("t", "{Binding Path=title}", "binding.value",
                          Add<QWidget>("", name, "binding.vm"));
  auto* flagged = Add<QCheckBox>("flagged", "{Binding Path=flag}");
  auto* group = Add<QWidget>("group", "{Binding Path=flag}", "binding.enable");
  auto* shown = Add<QLabel>("shown", "{Binding Path=flag}", "binding.visible");
  auto* by_text = Add<QComboBox>("by_text", "{Binding Path=title}");
  by_text->setProperty("binding.options", "{Binding Path=choice}");
  auto* by_index = Add<QComboBox>("by_index", "{Binding Path=count}");
  by_index->addItems({"0", "1", "2", "3", "4"});
  auto* status = Add<QStatusBar>("status", "{Binding Path=title}\n{x}\n{Binding Path=count}");
  auto* own = Add<OwnLineEdit>("own", "{Binding Path=title}");
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
  EXPECT_TRUE(QTest::qWaitFor([&] { return fields[1]->text() == "1"; }));
  EXPECT_TRUE(own->text().isEmpty());  // no value binding, but enablement
  EXPECT_TRUE(own->isEnabled());
  // An unknown name binds against the enclosing view model.
  EXPECT_EQ(QStringList({titles[0]->text(), titles[1]->text(), titles[2]->text()}),
            QStringList({"Detail", "Detail", "Hello"}));
  EXPECT_EQ(detail->init_windows, 1);
  EXPECT_TRUE(group->isEnabled());
  EXPECT_TRUE(shown->isVisible());
  flagged->click();
  EXPECT_FALSE(form->flag);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !group->isEnabled(); }));
  EXPECT_FALSE(shown->isVisible());
}

TEST_F(BindingContextTest, WindowRequestsRefusalsAndTheRootContextMenu) {
  auto* button = Add<QPushButton>("menu_button");
  auto* named = Add<QLabel>("named");
  window->setObjectName("main");
  ovui_test::LogCapture log;
  EXPECT_EQ(vm::BindingContext::CreateAndBind(nullptr, form), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("CreateAndBind", "widget != NULL && vm != NULL"));
  EXPECT_FALSE(vm::BindingContext::RegisterWidgetBinder("QLabel", nullptr));
  ASSERT_TRUE(Bind());
  emit window->customContextMenuRequested(QPoint(1, 1));
  EXPECT_EQ(form->asked_menu, "main");
  EXPECT_EQ(vm::BindingContext::FindWidget("", window.get()), window.get());
  int x = 0, y = 0, w = 0, h = 0;
  EXPECT_TRUE(form->SetWindowPos("", -1, 0, 320, 240));  // x = -1: resizes only
  EXPECT_TRUE(form->WindowPos("", x, y, w, h));
  EXPECT_EQ(QSize(w, h), window->size());
  EXPECT_EQ(window->size(), QSize(320, 240));
  std::string sheet;
  EXPECT_TRUE(form->SetStyleSheet("named", "color: blue"));
  EXPECT_TRUE(form->GetStyleSheet("named", sheet));
  EXPECT_EQ(sheet, "color: blue");
  EXPECT_EQ(named->styleSheet(), "color: blue");
  EXPECT_TRUE(form->SetStyleSheet("nobody", "x"));  // delivered, then refused there
  EXPECT_TRUE(log.HasFailedCheck("OnWindowRequest", "widget!=NULL"));
  vm::MenuData menu;
  menu.AddChild(new vm::MenuData());
  menu.GetChilds()[0]->command = "save";
  EXPECT_TRUE(form->SetControlMenu("menu_button", menu));
  ASSERT_TRUE(button->menu() && button->menu()->actions().size() == 1);
  button->menu()->actions()[0]->trigger();
  EXPECT_EQ(form->save->runs.size(), 1u);
  EXPECT_TRUE(form->SetControlMenu("menu_button", vm::MenuData()));
  EXPECT_EQ(button->menu(), nullptr);
  EXPECT_TRUE(form->CloseWindow());
  EXPECT_FALSE(window->isVisible());
}

#include "binding_context_test.moc"
