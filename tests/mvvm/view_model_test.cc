#include "mvvm/view_model.h"

#include <gtest/gtest.h>

#include <string>

#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::LogCapture;
using ovui_test::RecordingListener;
using ovui_test::ToyCommand;

namespace {

// A data model with two integer properties, "a" and "shared".
struct DataModel : ovui_test::Tracked<vm::Model> {
  explicit DataModel(int* destroyed) : Tracked(destroyed) {
    InstallProp("a", &this->a), InstallProp("shared", &this->shared);
  }
  int a = 1, shared = 2;
};

struct ViewModelTest : testing::Test {
  DataModel* data = new DataModel(&model_destroyed);
  vm::ViewModel* vm = new vm::ViewModel(data);
  int model_destroyed = 0;
  ~ViewModelTest() override { base::SafeRelease(vm); }
};

}  // namespace

TEST_F(ViewModelTest, OwnPropertiesShadowTheModel) {
  int own = 10;
  vm->InstallProp("shared", &own);
  Value v;
  EXPECT_TRUE(vm->GetPropW("shared", v));
  EXPECT_EQ(v.I64(), 10);
  EXPECT_TRUE(vm->SetPropW("shared", Value(11)));
  EXPECT_EQ(own, 11);
  EXPECT_EQ(data->shared, 2);
  EXPECT_TRUE(vm->SetPropW("a", Value(5)));  // falls through to the model
  EXPECT_EQ(data->a, 5);
  EXPECT_TRUE(vm->HasProp("a"));
  EXPECT_FALSE(vm->HasProp("nope"));

  LogCapture log;
  vm::ViewModel bare;
  EXPECT_FALSE(bare.SetPropW("nope", Value(1)));
  EXPECT_TRUE(log.HasFailedCheck("SetPropW", "model != NULL"));
  EXPECT_FALSE(bare.GetPropW("nope", v));
}

TEST_F(ViewModelTest, RegistriesAdoptAndRelease) {
  int destroyed = 0;
  auto* first = new ToyCommand(&destroyed);
  auto* second = new ToyCommand(&destroyed);
  EXPECT_TRUE(vm->RegisterCommand("save", first));
  EXPECT_EQ(first->RefCount(), 1);                  // adopted, no extra reference
  EXPECT_TRUE(vm->RegisterCommand("save", first));  // same object again: kept
  EXPECT_EQ(destroyed, 0);
  EXPECT_TRUE(vm->RegisterCommand("save", second));  // replaces and releases the first
  EXPECT_EQ(destroyed, 1);
  EXPECT_TRUE(vm->UnRegisterCommand("save"));
  EXPECT_EQ(destroyed, 2);
  EXPECT_FALSE(vm->UnRegisterCommand("save"));

  vm->RegisterCommand("c", new ToyCommand(&destroyed));
  vm->RegisterConverter("k", new ovui_test::ScaleConverter(10, &destroyed));
  vm->RegisterValidator("v", new ovui_test::RangeValidator(0, 1, &destroyed));
  vm->SetSubViewModel("sub", new ovui_test::Tracked<vm::ViewModel>(&destroyed));
  vm->Reset();
  EXPECT_EQ(destroyed, 6);
  EXPECT_EQ(model_destroyed, 1);
  EXPECT_EQ(vm->GetModel(), nullptr);
  EXPECT_EQ(vm->GetSubViewModel("sub"), nullptr);

  vm->RegisterCommand("c", new ToyCommand(&destroyed));
  vm->SetModel(new DataModel(&model_destroyed));
  vm->Release();  // destruction releases everything it holds
  vm = nullptr;
  EXPECT_EQ(destroyed, 7);
  EXPECT_EQ(model_destroyed, 2);
}

TEST_F(ViewModelTest, CommandsAndValidatorVerdictsByName) {
  auto* cmd = new ToyCommand();
  vm->RegisterCommand("save", cmd);
  EXPECT_TRUE(vm->ExecuteCommand("save", "all"));
  EXPECT_EQ(cmd->runs, std::vector<std::string>{"all"});
  cmd->enabled = false;
  EXPECT_FALSE(vm->CanExecuteCommand("save", ""));

  // Converters and validators run through DataBinding; here only the remembered verdict.
  vm->RegisterValidator("age", new ovui_test::RangeValidator(0, 150));
  std::string msg;
  EXPECT_FALSE(vm->HasValidatorError());
  EXPECT_FALSE(vm->IsValidProp("age", Value(200), msg));
  EXPECT_TRUE(vm->HasValidatorError());
  EXPECT_TRUE(vm->ClearValidatorError());
  EXPECT_FALSE(vm->HasValidatorError());

  LogCapture log;
  Value to;
  EXPECT_FALSE(vm->ExecuteCommand("nope", ""));
  EXPECT_TRUE(log.HasFailedCheck("ExecuteCommand", "iter != this->commands.end()"));
  EXPECT_FALSE(vm->CanExecuteCommand("nope", ""));
  EXPECT_TRUE(log.HasFailedCheck("CanExecuteCommand", "iter != this->commands.end()"));
  EXPECT_FALSE(vm->ConvertBack("nope", Value(1), to));
  EXPECT_TRUE(log.HasFailedCheck("ConvertBack", "iter != this->converters.end()"));
  EXPECT_FALSE(vm->IsValidProp("nope", Value(1), msg));
  EXPECT_TRUE(log.HasFailedCheck("IsValidProp", "iter != this->validators.end()"));
  EXPECT_FALSE(vm->RegisterCommand("x", nullptr));
  EXPECT_TRUE(log.HasFailedCheck("RegisterCommand", "command != NULL"));
  EXPECT_FALSE(vm->RegisterValidator("x", nullptr));
  EXPECT_TRUE(log.HasFailedCheck("RegisterValidator", "validator != NULL"));
  EXPECT_FALSE(vm->SetSubViewModel("x", nullptr));
  EXPECT_TRUE(log.HasFailedCheck("SetSubViewModel", "vm != NULL"));
}

TEST_F(ViewModelTest, ListenersReachTheModelAndPresentSubViewModels) {
  auto* early = new vm::ViewModel();
  int early_x = 0, late_x = 0;
  early->InstallProp("x", &early_x);
  vm->SetSubViewModel("early", early);

  auto* listener = new RecordingListener();
  ASSERT_TRUE(vm->On("prop-changed", listener));
  EXPECT_EQ(listener->RefCount(), 4);  // the view model, its model, the early child

  auto* late = new vm::ViewModel();
  late->InstallProp("x", &late_x);
  vm->SetSubViewModel("late", late);

  int own = 0;
  vm->InstallProp("own", &own);
  vm->SetPropW("own", Value(1));
  vm->SetPropW("a", Value(2));
  early->SetPropW("x", Value(3));
  late->SetPropW("x", Value(4));  // added after On: not heard
  ASSERT_EQ(listener->events.size(), 3u);
  EXPECT_NE(listener->events[0].find("name=own"), std::string::npos);
  EXPECT_NE(listener->events[1].find("name=a"), std::string::npos);
  EXPECT_NE(listener->events[2].find("name=x old=0 value=3"), std::string::npos);

  EXPECT_TRUE(vm->Off("prop-changed", listener));
  EXPECT_EQ(listener->RefCount(), 1);
  listener->Release();
}

// GetRoot is followed through two parents by the item tests' announcements.
TEST_F(ViewModelTest, DefaultHooks) {
  EXPECT_EQ(vm->GetType(), vm::ViewModel::VIEW_MODEL);
  vm::MenuData menu;
  EXPECT_FALSE(vm->GetContextMenuData("list", menu));
  EXPECT_FALSE(vm->IsPropOneWay("a"));
  EXPECT_TRUE(vm->InitWindow());
}

TEST_F(ViewModelTest, ComputedPropertiesEvaluateOverProperties) {
  std::string title = "Dr";
  double ratio = -2.5;
  vm->InstallProp("title", &title);
  vm->InstallProp("ratio", &ratio);
  Value out;
  EXPECT_TRUE(vm->EvalProp("a", out));  // a plain name is just read
  EXPECT_EQ(out.I64(), 1);
  EXPECT_TRUE(vm->EvalProp("$a * 2 + $shared > 3", out));  // 1*2 + (2 > 3)
  EXPECT_EQ(out.Type(), Value::TYPE_INT);
  EXPECT_EQ(out.I64(), 2);
  data->a = 5;
  EXPECT_TRUE(vm->EvalProp("$a * 2 + $shared > 3", out));  // recomputed from the new value
  EXPECT_EQ(out.I64(), 10);
  EXPECT_TRUE(vm->EvalProp("$ratio + 0", out));
  EXPECT_EQ(out.Type(), Value::TYPE_INT);  // -2.5 truncates toward zero
  EXPECT_EQ(out.I64(), -2);
  EXPECT_TRUE(vm->EvalProp("$title + \" \" + toupper(\"ada\")", out));
  EXPECT_STREQ(out.Str(), "Dr ADA");
  EXPECT_TRUE(vm->EvalProp("$PI * 1", out));  // not a property: the constant
  EXPECT_EQ(out.F64(), 3.1415927410125732);

  LogCapture log;
  out.Str("stale");
  EXPECT_FALSE(vm->EvalProp("$unknown + 1", out));
  EXPECT_EQ(out.Type(), Value::TYPE_FLOAT);
  EXPECT_EQ(out.F64(), 0.0);
  EXPECT_TRUE(log.HasFailedCheck("EvalProp", "undefined variable"));
}

TEST_F(ViewModelTest, ViewRequestsWithAndWithoutAView) {
  vm::MenuData menu;
  EXPECT_TRUE(vm->CloseWindow());  // nobody listens: closing and menus count as done
  EXPECT_TRUE(vm->SetControlMenu("list", menu));
  EXPECT_FALSE(vm->Rebind("list", ""));
  int x = 1, y = 2, w = 3, h = 4;
  EXPECT_FALSE(vm->WindowPos("main", x, y, w, h));

  // A view that answers window_pos and get_style_sheet, and records the rest.
  auto* view = new RecordingListener();
  view->stop = true;
  view->hook = [](events::Event* e) {
    if (e->GetType() == "window_pos") {
      e->SetParam("x", 10);
      e->SetParam("w", 300);
    }
  };
  for (const char* type : {"rebind", "set_menu", "close_window", "window_pos", "set_window_pos",
                           "get_style_sheet", "set_style_sheet"}) {
    vm->On(type, view);
  }
  EXPECT_TRUE(vm->WindowPos("main", x, y, w, h));
  EXPECT_EQ(std::vector<int>({x, y, w, h}), std::vector<int>({10, 0, 300, 0}));  // absent: 0
  std::string style = "old";
  EXPECT_TRUE(vm->GetStyleSheet("main", style));
  EXPECT_EQ(style, "");  // unanswered
  EXPECT_TRUE(vm->SetStyleSheet("main", "color: red"));
  EXPECT_TRUE(vm->GetStyleSheet("main", style));
  EXPECT_EQ(style, "color: red");  // parameters are not cleared between requests
  EXPECT_TRUE(vm->SetWindowPos("main", 1, 2, 3, 4));
  EXPECT_TRUE(vm->SetControlMenu("list", menu));
  EXPECT_TRUE(vm->CloseWindow());
  EXPECT_NE(view->events.back().find("close_window:"), std::string::npos);

  vm->BlockEvents();
  x = 77;
  EXPECT_FALSE(vm->WindowPos("main", x, y, w, h));
  EXPECT_EQ(x, 77);
  EXPECT_FALSE(vm->CloseWindow());
  vm->UnblockEvents();
  for (const char* type : {"rebind", "set_menu", "close_window", "window_pos", "set_window_pos",
                           "get_style_sheet", "set_style_sheet"}) {
    vm->Off(type, view);
  }
  view->Release();
}
