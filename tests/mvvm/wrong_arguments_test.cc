// The public operations called the way a hurried user calls them, and objects
// destroyed in an unexpected order. Each refusal is a false or null result plus
// a log line naming the operation and the failed condition; nothing crashes.
#include <gtest/gtest.h>

#include <string>

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

namespace {

// One call, made as the table is built: `refused` says whether its result was
// the refusal (false, null, -1).
struct Refusal {
  const char* function;
  const char* condition;
  bool refused;
};

struct Row : vm::Model {
  Row() { InstallProp("a", &this->a); }
  int a = 1;
};

struct NoRows : vm::ViewModelHTable {
  unsigned int Size() const override { return 0; }
  bool GetCell(unsigned int, const std::string&, Value&) const override { return false; }
  bool SetCell(unsigned int, const std::string&, const Value&) override { return false; }
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
  LogCapture log;
  const Refusal refusals[] = {
      {"Dup", "str != NULL", !base::StrUtils::Dup(nullptr, 0)},
      {"StrToTokens", "p != NULL && on_token != NULL",
       !base::StrToTokens(nullptr, nullptr, nullptr)},
      {"Start", "func != NULL", !thread.Start(nullptr, nullptr)},
      {"Kill", "this->running", !thread.Kill()},
      {"On", "l != NULL", !events::EventEmitter().On("x", nullptr)},
      {"Emit", "e != NULL", !events::EventEmitter().Emit(nullptr)},
      {"On", "listener != NULL && this->emitter != NULL", !model.On("x", nullptr)},
      {"Off", "listener != NULL && this->emitter != NULL", !model.Off("x", nullptr)},
      {"UnblockEvents", "this->block_event_nr > 0", !model.UnblockEvents()},
      {"SetPropW", "found", !model.SetPropW("nope", Value(1))},
      {"SetPropW", "model != NULL", !bare.SetPropW("nope", Value(1))},
      {"RegisterCommand", "command != NULL", !bare.RegisterCommand("c", nullptr)},
      {"RegisterConverter", "converter != NULL", !bare.RegisterConverter("c", nullptr)},
      {"RegisterValidator", "validator != NULL", !bare.RegisterValidator("v", nullptr)},
      {"SetSubViewModel", "vm != NULL", !bare.SetSubViewModel("s", nullptr)},
      {"ExecuteCommand", "iter != this->commands.end()", !bare.ExecuteCommand("x", "")},
      {"CanExecuteCommand", "iter != this->commands.end()", !bare.CanExecuteCommand("x", "")},
      {"IsValidProp", "iter != this->validators.end()", !bare.IsValidProp("x", 1, text)},
      {"Convert", "iter != this->converters.end()", !bare.Convert("x", Value(1), v)},
      {"ConvertBack", "iter != this->converters.end()", !bare.ConvertBack("x", Value(1), v)},
      {"EvalProp", "expected term", !view_model.EvalProp("$a +", v)},
      {"Add", "item != NULL", !array.Add(nullptr)},
      {"Add", "parent == NULL || parent == this", !other.Add(child)},
      {"Get", "index < this->Size()", !array.Get(1)},
      {"SetCurrent", "index < this->Size()", !array.SetCurrent(array.Size())},
      {"AddWithoutSetCurrent", "item != NULL", !ext.Add(nullptr)},
      {"Remove", "item != NULL", !ext.Remove(none)},
      {"Sort", "args.size() > 2", !ext.Sort("1:")},
      {"AddWithoutSetCurrent", "item != NULL", !tree.Add(nullptr)},
      {"Remove", "item != NULL", !tree.Remove(none)},
      {"SetCurrent", "index < this->Size()", !table.SetCurrent(0)},
      {"GetIndex", "parent != NULL", loose.GetIndex() == -1},
      {"GetPropW", "vm != NULL", !binding.GetPropW(nullptr, v)},
      {"SetPropW", "vm != NULL", !binding.SetPropW(nullptr, v, text)},
      {"GetPropW", "vm->HasConverter(this->converter)", !binding.GetPropW(&view_model, v)},
      {"FromString", "str.size() > 2", !vm::DataBindingParser::FromString("{}")},
      {"ToString", "binding != NULL", vm::DataBindingParser::ToString(nullptr).empty()},
      {"ToString", "binding != NULL", vm::CommandBindingParser::ToString(nullptr).empty()},
      {"To", "request != NULL", !Navigator::To(static_cast<vm::NavigatorRequest*>(nullptr))},
      {"To", "iter != navigator->handlers.end()", !Navigator::To(&request)},
      {"RegisterHandler", "target.size() && handler != NULL",
       !Navigator::RegisterHandler("toast", nullptr)},
      {"RegisterHandler", "target.size() && handler != NULL",
       !Navigator::RegisterHandler("", &handler)},
      {"UnRegisterHandler", "target.size()", !Navigator::UnRegisterHandler("")},
      {"HasHandler", "target.size()", !Navigator::HasHandler("")}};
  size_t from = 0;  // each call's line, in the order of the calls
  for (const auto& [function, condition, refused] : refusals) {
    EXPECT_TRUE(refused) << function << ": " << condition;
    EXPECT_TRUE(log.HasFailedCheck(function, condition, &from))
        << function << ": " << condition << "\nlog: " << log.Text();
  }
  EXPECT_EQ(array.Get(0), child);  // the refused calls changed nothing
  EXPECT_EQ(other.Size(), 0u);
  EXPECT_EQ(child->GetParent(), &array);

  // Ordinary questions and no-ops, not errors: nothing is logged.
  log.Clear();
  EXPECT_FALSE(view_model.GetPropW("nope", v));
  EXPECT_FALSE(bare.GetPropW("nope", v));
  EXPECT_EQ(array.IndexOf(nullptr), -1);
  EXPECT_TRUE(array.Remove(none));
  EXPECT_FALSE(array.Remove(7u));
  EXPECT_EQ(other.Get(0), nullptr);
  EXPECT_FALSE(model.Emit(nullptr));
  EXPECT_EQ(log.Text(), "");
}

// A model handed to two view models, each with its own reference: writes
// through either reach listeners registered through the other, and the model
// lives until the last view model goes, whichever that is. A listener still
// registered then is let go.
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
    vm::ViewModel* leaving = first_goes_first ? first : second;
    vm::ViewModel* staying = first_goes_first ? second : first;
    leaving->Release();
    EXPECT_EQ(model_gone, 0);
    Value v;
    EXPECT_TRUE(staying->SetPropW("a", Value(6)));
    EXPECT_TRUE(staying->GetPropW("a", v));
    EXPECT_EQ(v.I64(), 6);
    EXPECT_EQ(heard.events.size(), 2u);  // registered on the model itself
    if (first_goes_first) {
      EXPECT_TRUE(shared->Off("prop-changed", &heard));
      EXPECT_TRUE(staying->SetPropW("a", Value(7)));
      EXPECT_EQ(heard.events.size(), 2u);
    }
    staying->Release();
    EXPECT_EQ(model_gone, 1);
    EXPECT_EQ(heard.RefCount(), 1);
  }
}

// Children the caller still holds outlive their containers: they must not
// point at them afterwards.
TEST(DestructionOrderTest, ChildrenOutliveTheirContainers) {
  vm::ViewModel* const kept[] = {new vm::ViewModelItem(), new vm::ViewModelArray(),
                                 new vm::ViewModel()};
  auto* array = new vm::ViewModelArray();
  auto* ext = new HideLists();
  auto* owner = new vm::ViewModel();
  for (vm::ViewModel* child : kept)
    child->AddRef();
  array->Add(kept[0]);
  ext->Add(kept[1]);
  ext->Filter("lists");  // the nested list now lives in the full list only
  owner->SetSubViewModel("details", kept[2]);
  kept[2]->SetParent(owner);
  array->Release();
  ext->Release();
  owner->Release();
  for (vm::ViewModel* child : kept) {
    EXPECT_EQ(child->GetParent(), nullptr);
    EXPECT_EQ(child->RefCount(), 1);
    child->Release();
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
