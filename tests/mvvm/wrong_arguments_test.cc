// The public operations called the way a hurried user calls them: null
// pointers, unknown names, indices past the end, objects destroyed in an
// unexpected order. Each refusal is a false or null result plus one log line
// naming the operation and the failed condition; nothing crashes.
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/str_token.h"
#include "base/str_utils.h"
#include "base/thread.h"
#include "events/event_emitter.h"
#include "mvvm/command_binding.h"
#include "mvvm/data_binding_parser.h"
#include "mvvm/navigator.h"
#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_htable.h"
#include "mvvm/view_model_item.h"
#include "mvvm/view_model_tree_ext.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::LogCapture;
using ovui_test::RecordingListener;
using ovui_test::Tracked;
using vm::Navigator;
using Request = vm::NavigatorRequest;

namespace {

// One refused call: `call` answers whether the result was the refusal (false,
// null, -1); the log must then hold the failed `condition` of `function`.
struct Refusal {
  const char* function;
  const char* condition;
  std::function<bool()> call;
};

void ExpectRefused(std::initializer_list<Refusal> cases) {
  for (const Refusal& c : cases) {
    LogCapture log;
    EXPECT_TRUE(c.call()) << c.function << ": " << c.condition;
    EXPECT_TRUE(log.HasFailedCheck(c.function, c.condition))
        << c.function << ": " << c.condition << "\nlog: " << log.Text();
  }
}

bool NoToken(void*, const std::string&) {
  return true;
}

class Row : public vm::Model {
 public:
  Row() { InstallProp("a", &this->a); }
  int a = 1;
};

struct NoRows : vm::ViewModelHTable {
  unsigned int Size() const override { return 0; }
  bool GetCell(unsigned int, const std::string&, Value&) const override { return false; }
  bool SetCell(unsigned int, const std::string&, const Value&) override { return false; }
};

struct HideAll : vm::ViewModelArrayExt {
  bool FilterOne(vm::ViewModel*, const std::string&) override { return false; }
};

struct HideLists : vm::ViewModelArrayExt {
  bool FilterOne(vm::ViewModel* item, const std::string&) override {
    return !dynamic_cast<vm::ViewModelArray*>(item);
  }
};

}  // namespace

// Null pointers, unknown names and targets, indices past the end, calls in
// the wrong state: each one refused with its log line.
TEST(WrongArgumentsTest, RefusedAndLogged) {
  vm::Model model;
  vm::ViewModel bare;  // no model to fall back on
  vm::ViewModel view_model(new Row());
  vm::ViewModelArray array, other;
  auto* child = new vm::ViewModel();
  array.Add(child);
  vm::ViewModelArrayExt ext;
  vm::ViewModelTreeExt tree;
  NoRows table;
  vm::ViewModelItem loose;
  vm::DataBinding binding;
  binding.path = "a";
  binding.converter = "nope";
  vm::NavigatorRequest request("nobody-serves-this");
  vm::NavigatorHandler handler;
  base::Thread thread;
  vm::ViewModel* const none = nullptr;
  Value v;
  std::string text;
  ExpectRefused({
      {"Dup", "str != NULL", [] { return !base::StrUtils::Dup(nullptr, 0); }},
      {"StrToTokens", "p != NULL && on_token != NULL",
       [] { return !base::StrToTokens(static_cast<const char*>(nullptr), &NoToken, nullptr); }},
      {"Start", "func != NULL", [&] { return !thread.Start(nullptr, nullptr); }},
      {"Kill", "this->running", [&] { return !thread.Kill(); }},
      {"On", "l != NULL", [] { return !events::EventEmitter().On("x", nullptr); }},
      {"Emit", "e != NULL", [] { return !events::EventEmitter().Emit(nullptr); }},
      {"On", "listener != NULL && this->emitter != NULL", [&] { return !model.On("x", nullptr); }},
      {"Off", "listener != NULL && this->emitter != NULL",
       [&] { return !model.Off("x", nullptr); }},
      {"UnblockEvents", "this->block_event_nr > 0", [&] { return !model.UnblockEvents(); }},
      {"SetPropW", "found", [&] { return !model.SetPropW("nope", Value(1)); }},
      {"SetPropW", "model != NULL", [&] { return !bare.SetPropW("nope", Value(1)); }},
      {"RegisterCommand", "command != NULL", [&] { return !bare.RegisterCommand("c", nullptr); }},
      {"RegisterConverter", "converter != NULL",
       [&] { return !bare.RegisterConverter("c", nullptr); }},
      {"RegisterValidator", "validator != NULL",
       [&] { return !bare.RegisterValidator("v", nullptr); }},
      {"SetSubViewModel", "vm != NULL", [&] { return !bare.SetSubViewModel("s", nullptr); }},
      {"ExecuteCommand", "iter != this->commands.end()",
       [&] { return !bare.ExecuteCommand("nope", ""); }},
      {"CanExecuteCommand", "iter != this->commands.end()",
       [&] { return !bare.CanExecuteCommand("nope", ""); }},
      {"IsValidProp", "iter != this->validators.end()",
       [&] { return !bare.IsValidProp("nope", Value(1), text); }},
      {"Convert", "iter != this->converters.end()",
       [&] { return !bare.Convert("nope", Value(1), v); }},
      {"ConvertBack", "iter != this->converters.end()",
       [&] { return !bare.ConvertBack("nope", Value(1), v); }},
      {"EvalProp", "expected term", [&] { return !view_model.EvalProp("$a +", v); }},
      {"Add", "item != NULL", [&] { return !array.Add(nullptr); }},
      {"Add", "parent == NULL || parent == this", [&] { return !other.Add(child); }},
      {"Get", "index < this->Size()", [&] { return !array.Get(1); }},
      {"SetCurrent", "index < this->Size()", [&] { return !array.SetCurrent(array.Size()); }},
      {"AddWithoutSetCurrent", "item != NULL", [&] { return !ext.Add(nullptr); }},
      {"Remove", "item != NULL", [&] { return !ext.Remove(none); }},
      {"Sort", "args.size() > 2", [&] { return !ext.Sort("1:"); }},
      {"AddWithoutSetCurrent", "item != NULL", [&] { return !tree.Add(nullptr); }},
      {"Remove", "item != NULL", [&] { return !tree.Remove(none); }},
      {"SetCurrent", "index < this->Size()", [&] { return !table.SetCurrent(0); }},
      {"GetIndex", "parent != NULL", [&] { return loose.GetIndex() == -1; }},
      {"GetPropW", "vm != NULL", [&] { return !binding.GetPropW(nullptr, v); }},
      {"SetPropW", "vm != NULL", [&] { return !binding.SetPropW(nullptr, v, text); }},
      {"GetPropW", "vm->HasConverter(this->converter)",
       [&] { return !binding.GetPropW(&view_model, v); }},
      {"FromString", "str.size() > 2", [] { return !vm::DataBindingParser::FromString("{}"); }},
      {"ToString", "binding != NULL",
       [] { return vm::DataBindingParser::ToString(nullptr).empty(); }},
      {"ToString", "binding != NULL",
       [] { return vm::CommandBindingParser::ToString(nullptr).empty(); }},
      {"To", "request != NULL", [] { return !Navigator::To(static_cast<Request*>(nullptr)); }},
      {"To", "iter != navigator->handlers.end()", [&] { return !Navigator::To(&request); }},
      {"RegisterHandler", "target.size() && handler != NULL",
       [] { return !Navigator::RegisterHandler("toast", nullptr); }},
      {"RegisterHandler", "target.size() && handler != NULL",
       [&] { return !Navigator::RegisterHandler("", &handler); }},
      {"UnRegisterHandler", "target.size()", [] { return !Navigator::UnRegisterHandler(""); }},
      {"HasHandler", "target.size()", [] { return !Navigator::HasHandler(""); }},
  });
  EXPECT_EQ(array.Get(0), child);  // the refused calls changed nothing
  EXPECT_EQ(other.Size(), 0u);
  EXPECT_EQ(child->GetParent(), &array);

  // Ordinary questions and no-ops, not errors: nothing is logged.
  LogCapture log;
  EXPECT_FALSE(view_model.GetPropW("nope", v) || bare.GetPropW("nope", v));
  EXPECT_EQ(array.IndexOf(nullptr), -1);
  EXPECT_TRUE(array.Remove(none));
  EXPECT_FALSE(array.Remove(7u) || other.Get(0) || model.Emit(nullptr));
  EXPECT_EQ(log.Text(), "");
}

// A view model released by one owner while a listener is still registered on
// it keeps delivering to the listener until it is unregistered; after the
// last release nothing refers to either.
TEST(DestructionOrderTest, ListenerOutlivesReleasesOfTheViewModel) {
  int model_gone = 0, vm_gone = 0;
  auto* view_model = new Tracked<vm::ViewModel>(&vm_gone);
  view_model->SetModel(new Tracked<Row>(&model_gone));
  RecordingListener heard;
  ASSERT_TRUE(view_model->On("prop-changed", &heard));

  view_model->AddRef();  // a second owner, say an array
  view_model->Release();
  ASSERT_EQ(vm_gone, 0);
  view_model->SetPropW("a", Value(2));
  EXPECT_EQ(heard.events.size(), 1u);
  EXPECT_TRUE(view_model->Off("prop-changed", &heard));
  view_model->SetPropW("a", Value(3));
  EXPECT_EQ(heard.events.size(), 1u);
  view_model->Release();
  EXPECT_EQ(vm_gone + model_gone, 2);

  // Released for good while still registered: the listener is simply let go.
  auto* plain = new vm::ViewModel(new Row());
  ASSERT_TRUE(plain->On("prop-changed", &heard));
  plain->Release();
  EXPECT_EQ(heard.RefCount(), 1);
}

// A model handed to two view models, each with its own reference: writes
// through either reach listeners registered through the other, and the model
// lives until the last view model goes, whichever that is.
TEST(DestructionOrderTest, ModelSharedByTwoViewModels) {
  for (bool first_goes_first : {true, false}) {
    int model_gone = 0;
    auto* shared = new Tracked<Row>(&model_gone);
    shared->AddRef();
    auto* first = new vm::ViewModel(shared);
    auto* second = new vm::ViewModel(shared);
    RecordingListener heard;
    ASSERT_TRUE(first->On("prop-changed", &heard));
    EXPECT_TRUE(second->SetPropW("a", Value(5)));
    EXPECT_EQ(heard.events.size(), 1u);

    vm::ViewModel* leaving = first_goes_first ? first : second;
    vm::ViewModel* staying = first_goes_first ? second : first;
    leaving->Release();
    EXPECT_EQ(model_gone, 0);
    Value v;
    EXPECT_TRUE(staying->SetPropW("a", Value(6)) && staying->GetPropW("a", v) && v.I64() == 6);
    EXPECT_EQ(heard.events.size(), 2u);  // registered on the model itself
    EXPECT_TRUE(shared->Off("prop-changed", &heard));
    staying->Release();
    EXPECT_EQ(model_gone, 1);
  }
}

// Children the caller still holds outlive their array: they must not point
// at it afterwards.
TEST(DestructionOrderTest, ChildrenOutliveTheirContainers) {
  auto* kept = new vm::ViewModelItem();
  kept->AddRef();
  auto* array = new vm::ViewModelArray();
  array->Add(kept);
  auto* hidden = new vm::ViewModelItem();
  hidden->AddRef();
  auto* ext = new HideAll();
  ext->Add(hidden);
  ext->Filter("none");  // the child now lives in the full list only
  auto* sub = new vm::ViewModel();
  sub->AddRef();
  auto* owner = new vm::ViewModel();
  owner->SetSubViewModel("details", sub);
  sub->SetParent(owner);

  array->Release();
  ext->Release();
  owner->Release();
  EXPECT_EQ(kept->GetParent(), nullptr);
  EXPECT_EQ(hidden->GetParent(), nullptr);
  EXPECT_EQ(sub->GetParent(), nullptr);
  LogCapture log;
  EXPECT_EQ(kept->GetIndex(), -1);
  EXPECT_TRUE(log.HasFailedCheck("GetIndex", "parent != NULL"));
  for (vm::ViewModel* survivor : std::vector<vm::ViewModel*>{kept, hidden, sub}) {
    EXPECT_EQ(survivor->RefCount(), 1);
    survivor->Release();
  }
}

// The last child of a nested list that a filter hides from its parent: the
// root's selection must not keep pointing at it once it is released.
TEST(DestructionOrderTest, SelectionInAHiddenListIsDroppedWithIt) {
  int destroyed = 0;
  auto* root = new HideLists();
  auto* nested = new vm::ViewModelArray();
  root->Add(nested);
  root->Filter("lists");
  auto* child = new Tracked<vm::ViewModel>(&destroyed);
  nested->Add(child);
  ASSERT_EQ(root->GetCurrentViewModel(), child);
  EXPECT_TRUE(nested->Remove(0));
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(root->GetCurrentViewModel(), nullptr);
  root->Release();
}
