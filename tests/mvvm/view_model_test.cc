#include "mvvm/view_model.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::LogCapture;
using ovui_test::RecordingListener;
using ovui_test::ToyCommand;

namespace {

struct ViewModelTest : testing::Test {
  ViewModelTest() {
    data->InstallProp("a", &a);
    data->InstallProp("shared", &shared);
  }
  ~ViewModelTest() override { vm->Release(); }
  int a = 1, shared = 2, model_destroyed = 0, x = 1, y = 2, w = 3, h = 4;
  RecordingListener view, after;  // outlive the view model, which holds references
  vm::Model* data = new ovui_test::Tracked<vm::Model>(&model_destroyed);
  vm::ViewModel* vm = new vm::ViewModel(data);
};

}  // namespace

TEST_F(ViewModelTest, ListenersAndRegistriesReachWhatTheViewModelHolds) {
  auto *early = new vm::ViewModel(), *late = new vm::ViewModel();
  vm->SetSubViewModel("early", early);
  ASSERT_TRUE(vm->On("prop-changed", &view));
  EXPECT_EQ(view.RefCount(), 4);  // the view model, its model, the early child
  vm->SetSubViewModel("late", late);
  EXPECT_TRUE(vm->SetPropW("a", Value(2)));
  EXPECT_TRUE(early->EmitPropsChange());
  EXPECT_TRUE(vm->EmitPropsChange());
  EXPECT_FALSE(late->EmitPropsChange());  // added after On: nobody listens there
  EXPECT_EQ(view.events.size(), 3u);      // from the model, the early child, the view model
  EXPECT_TRUE(vm->Off("prop-changed", &view));
  EXPECT_EQ(view.RefCount(), 1);

  // A request while a change is delivered: the listeners after it still hear the change.
  view.hook = [&](events::Event* e) {
    EXPECT_TRUE(e->GetType() != "prop-changed" || vm->WindowPos("main", x, y, w, h));
  };
  for (const char* type : {"prop-changed", "window_pos"})
    vm->On(type, &view);
  vm->On("prop-changed", &after);
  EXPECT_TRUE(vm->EmitPropChange("title", Value("a"), Value("b")));
  EXPECT_EQ(after.events,
            std::vector<std::string>{"prop-changed:kind=PropChange name=title old=a value=b "});
  EXPECT_EQ(view.events.back(), "window_pos:name=main ");

  int destroyed = 0;
  auto* cmd = new ToyCommand(&destroyed);
  EXPECT_TRUE(vm->RegisterCommand("s", cmd));
  EXPECT_TRUE(vm->RegisterCommand("s", cmd));
  EXPECT_EQ(cmd->RefCount(), 1);  // adopted once: the same object again is kept
  cmd->enabled = false;           // Execute does not ask CanExecute
  EXPECT_TRUE(vm->ExecuteCommand("s", "all"));
  EXPECT_FALSE(vm->CanExecuteCommand("s", ""));
  EXPECT_EQ(cmd->runs, std::vector<std::string>{"all"});
  EXPECT_TRUE(vm->RegisterCommand("s", new ToyCommand(&destroyed)));  // releases the first
  vm->RegisterConverter("k", new ovui_test::ScaleConverter(10, &destroyed));
  vm->RegisterValidator("v", new ovui_test::RangeValidator(0, 1, &destroyed));
  vm->SetSubViewModel("sub", new ovui_test::Tracked<vm::ViewModel>(&destroyed));
  EXPECT_TRUE(vm->UnRegisterValidator("v"));
  EXPECT_FALSE(vm->UnRegisterValidator("v"));
  EXPECT_EQ(destroyed, 2);
  vm->Reset();
  EXPECT_EQ(std::make_pair(destroyed, model_destroyed), std::make_pair(5, 1));

  vm->RegisterValidator("age", new ovui_test::RangeValidator(0, 150));  // the verdict is kept
  std::string msg;
  EXPECT_FALSE(vm->IsValidProp("age", Value(200), msg));
  EXPECT_TRUE(vm->HasValidatorError());
  EXPECT_TRUE(vm->ClearValidatorError());
  EXPECT_FALSE(vm->HasValidatorError());
}

TEST_F(ViewModelTest, ComputedAndOwnPropertiesOverTheModel) {
  std::string title = "Dr";
  double ratio = -2.5;
  vm->InstallProp("title", &title);
  vm->InstallProp("ratio", &ratio);
  const std::pair<const char*, Value> cases[] = {
      {"a", 1},  // a plain name is just read
      {"$a * 2 + $shared > 3", 2},
      {"$ratio + 0", -2},  // -2.5 truncates toward zero, to an integer
      {"$title + \" \" + toupper(\"ada\")", "Dr ADA"},
      {"$PI * 1", 3.1415927410125732}};  // not a property: the constant
  Value out;
  for (const auto& [expr, expected] : cases) {  // Cmp: the kind counts too
    EXPECT_TRUE(vm->EvalProp(expr, out)) << expr;
    EXPECT_EQ(out.Cmp(expected), 0) << expr;
  }
  a = 5;
  EXPECT_TRUE(vm->EvalProp("$a * 2 + $shared > 3", out));
  EXPECT_EQ(out.Cmp(10), 0);  // recomputed
  LogCapture log;
  EXPECT_FALSE(vm->EvalProp("$unknown + 1", out));
  EXPECT_EQ(out.Cmp(0.0), 0);
  EXPECT_TRUE(log.HasFailedCheck("EvalProp", "undefined variable"));

  int own = 10;
  vm->InstallProp("shared", &own);
  EXPECT_TRUE(vm->GetPropW("shared", out));
  EXPECT_EQ(out.I64(), 10);
  EXPECT_TRUE(vm->SetPropW("shared", 11));
  EXPECT_EQ(std::vector<int>({own, shared}), std::vector<int>({11, 2}));
}

TEST_F(ViewModelTest, ViewRequestsWithAndWithoutAView) {
  std::string style = "old";
  // Nobody listens: closing and menus count as done, the others fail.
  EXPECT_TRUE(vm->CloseWindow());
  EXPECT_TRUE(vm->SetControlMenu("list", vm::MenuData()));
  EXPECT_FALSE(vm->Rebind("list", ""));
  EXPECT_FALSE(vm->WindowPos("main", x, y, w, h));
  EXPECT_FALSE(vm->SetWindowPos("main", 1, 2, 3, 4));
  EXPECT_FALSE(vm->GetStyleSheet("main", style));
  EXPECT_FALSE(vm->SetStyleSheet("main", "x"));

  view.hook = [](events::Event* e) { e->SetParam("x", 10); };  // answers window_pos
  vm->On("window_pos", &view);
  vm->On("close_window", &view);
  EXPECT_TRUE(vm->WindowPos("main", x, y, w, h));
  EXPECT_EQ(std::vector<int>({x, y, w, h}), std::vector<int>({10, 0, 0, 0}));
  EXPECT_TRUE(vm->GetStyleSheet("main", style));
  EXPECT_EQ(style, "");  // absent: empty, or 0
  // Parameters are not cleared between requests.
  EXPECT_TRUE(vm->SetStyleSheet("m", "red"));
  EXPECT_TRUE(vm->GetStyleSheet("m", style));
  EXPECT_EQ(style, "red");
  EXPECT_TRUE(vm->SetWindowPos("main", 1, 2, 3, 4));
  EXPECT_TRUE(vm->SetControlMenu("list", vm::MenuData()));
  EXPECT_TRUE(vm->Rebind("list", ""));
  EXPECT_TRUE(vm->CloseWindow());
  EXPECT_EQ(view.events.back().rfind("close_window:", 0), 0u);

  vm->BlockEvents();
  x = 77;  // the event still holds x=10
  EXPECT_FALSE(vm->WindowPos("main", x, y, w, h));
  EXPECT_FALSE(vm->CloseWindow());
  EXPECT_EQ(x, 77);
}
