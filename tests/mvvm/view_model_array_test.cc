#include "mvvm/view_model_array.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using base::Value;
using ovui_test::LogCapture;
using ovui_test::RecordingListener;
using Child = ovui_test::Tracked<vm::ViewModel>;
using Texts = std::vector<std::string>;

namespace {

// A root list holding a nested list, with a recorder on each.
struct ViewModelArrayTest : testing::Test {
  ViewModelArrayTest() {
    root->Add(nested);
    for (const char* type :
         {"before-item-add", "item-add", "before-item-remove", "item-remove", "current-changed",
          "before-remove-all", "remove-all", "rebind", "resize-height", "update-model"}) {
      root->On(type, on_root);
      nested->On(type, on_nested);
    }
    on_root->events.clear();
  }
  ~ViewModelArrayTest() override {
    root->Release();
    on_root->Release();
    on_nested->Release();
  }

  int destroyed = 0;
  vm::ViewModelArray* root = new vm::ViewModelArray();
  vm::ViewModelArray* nested = new vm::ViewModelArray();
  RecordingListener* on_root = new RecordingListener();
  RecordingListener* on_nested = new RecordingListener();
};

}  // namespace

TEST_F(ViewModelArrayTest, AddsAtNormalisedPositionsAndAnnouncesOnTheRootToo) {
  auto* a = new Child(&destroyed);
  auto* b = new Child(&destroyed);
  auto* c = new Child(&destroyed);
  std::vector<void*> item_and_parent;
  on_root->hook = [&](events::Event* e) {
    if (e->GetType() != "item-add") return;
    item_and_parent = {e->GetParam("item").Pointer(), e->GetParam("parent").Pointer()};
  };
  EXPECT_TRUE(nested->Add(a, -5));
  EXPECT_EQ(item_and_parent, (std::vector<void*>{static_cast<vm::ViewModel*>(a), nested}));
  EXPECT_TRUE(nested->Add(b, 99));
  EXPECT_TRUE(nested->Add(c, 0));
  EXPECT_EQ(nested->GetItems(), (std::vector<vm::ViewModel*>{c, a, b}));
  EXPECT_EQ(a->GetParent(), nested);

  const Texts expected = {"before-item-add:end=0 item= parent= start=0 ",
                          "item-add:end=0 item= parent= start=0 ",
                          "current-changed:value=0 ",
                          "before-item-add:end=1 item= parent= start=1 ",
                          "item-add:end=1 item= parent= start=1 ",
                          "current-changed:value=1 ",
                          "before-item-add:end=0 item= parent= start=0 ",
                          "item-add:end=0 item= parent= start=0 ",
                          "current-changed:value=0 "};
  EXPECT_EQ(on_nested->events, expected);
  EXPECT_EQ(on_root->events, expected);  // repeated on the root of the nest
  EXPECT_EQ(root->GetCurrent(), 0u);
  EXPECT_EQ(root->GetCurrentViewModel(), c);  // the child selected last anywhere
}

TEST_F(ViewModelArrayTest, CurrentPositionFollowsAddsAndRemoves) {
  auto* a = new Child(&destroyed);
  auto* b = new Child(&destroyed);
  nested->Add(a);
  nested->Add(b);
  auto* c = new Child(&destroyed);
  EXPECT_TRUE(nested->AddWithoutSetCurrent(c, 0, true));
  EXPECT_EQ(nested->GetCurrent(), 1u);  // kept as an index

  on_nested->events.clear();
  EXPECT_TRUE(nested->Remove(2u));  // the last child, current is 1: kept, re-announced
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(on_nested->events,
            (Texts{"before-item-remove:end=2 item= parent= start=2 ",
                   "item-remove:end=2 item= parent= start=2 ", "current-changed:value=1 "}));
  EXPECT_TRUE(nested->Remove(1u));  // the current last child: moves to the new last
  EXPECT_EQ(nested->GetCurrent(), 0u);
  EXPECT_TRUE(nested->Remove(c));

  // The nest's last child is gone: the parent's current becomes this array.
  auto* other = new Child(&destroyed);
  root->Add(other);
  EXPECT_EQ(root->GetCurrentViewModel(), other);
  nested->Add(new Child(&destroyed));
  nested->Remove(0);
  EXPECT_EQ(root->GetCurrent(), 0u);
  EXPECT_EQ(root->GetCurrentViewModel(), nested);

  // A top-level array emptied: current clears.
  root->Remove(other);
  root->Remove(nested);
  on_root->events.clear();
  EXPECT_EQ(root->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(root->GetCurrent(), 0u);
  nested = nullptr;
  EXPECT_TRUE(root->Remove(static_cast<vm::ViewModel*>(a)));  // not there: done, silently
  EXPECT_TRUE(on_root->events.empty());
}

TEST_F(ViewModelArrayTest, BatchesAreSilentAndEndWithARebind) {
  nested->Add(new Child(&destroyed));
  on_nested->events.clear();
  EXPECT_TRUE(nested->BeginBatch());
  for (int i = 0; i < 3; ++i)
    nested->Add(new Child(&destroyed));
  EXPECT_TRUE(on_nested->events.empty());
  EXPECT_EQ(nested->GetCurrent(), 0u);
  EXPECT_TRUE(nested->EndBatch());
  // The request reuses the view model's event, so an earlier "kind" is still there.
  EXPECT_EQ(on_nested->events,
            (Texts{"rebind:kind=PropsChange name= value= ", "current-changed:value=3 "}));

  LogCapture log;
  vm::ViewModelArray empty;
  empty.BeginBatch();
  empty.EndBatch();
  EXPECT_TRUE(log.HasFailedCheck("SetCurrent", "index < this->Size()"));
}

TEST_F(ViewModelArrayTest, RefusedChildrenAreNotAnnounced) {
  LogCapture log;
  auto* a = new Child(&destroyed);
  nested->Add(a);
  on_root->events.clear();
  EXPECT_FALSE(root->Add(a));  // belongs to another array
  EXPECT_TRUE(log.HasFailedCheck("Add", "parent == NULL || parent == this"));
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent", "Add(GetItems(), item, index)"));
  EXPECT_FALSE(root->Add(nullptr));
  EXPECT_TRUE(log.HasFailedCheck("Add", "item != NULL"));
  EXPECT_TRUE(on_root->events.empty());
  EXPECT_EQ(root->Size(), 1u);
}

TEST_F(ViewModelArrayTest, ChildrenAreReleasedOnRemoveResetAndDestruction) {
  auto* survivor = new Child(&destroyed);
  survivor->AddRef();
  nested->Add(survivor);
  nested->Add(new Child(&destroyed));
  on_nested->events.clear();
  EXPECT_TRUE(nested->Reset());
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(survivor->RefCount(), 1);
  EXPECT_EQ(survivor->GetParent(), nested);  // not cleared by Reset
  EXPECT_EQ(on_nested->events, (Texts{"before-remove-all:parent= ", "remove-all:parent= "}));
  EXPECT_EQ(nested->GetCurrentViewModel(), nullptr);
  survivor->Release();

  nested->Add(new Child(&destroyed));
  root->Add(new Child(&destroyed));
  root->Release();  // releases the nest, which releases its children
  root = new vm::ViewModelArray();
  EXPECT_EQ(destroyed, 4);
}

TEST_F(ViewModelArrayTest, BuiltInPropertiesAndRangeChecks) {
  for (int i = 0; i < 3; ++i)
    nested->Add(new Child());
  Value v;
  EXPECT_TRUE(nested->GetPropW("_size_", v));
  EXPECT_EQ(v.I64(), 3);
  EXPECT_TRUE(nested->SetPropW("_current_", Value(1)));
  EXPECT_EQ(nested->GetCurrent(), 1u);
  EXPECT_FALSE(nested->SetPropW("_size_", Value(9)));

  LogCapture log;
  EXPECT_FALSE(nested->SetCurrent(3));  // logged as after an empty batch
  EXPECT_EQ(nested->Get(3), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Get", "index < this->Size()"));
  log.Clear();
  vm::ViewModelArray empty;
  EXPECT_EQ(empty.Get(0), nullptr);
  EXPECT_EQ(log.Text(), "");
}

TEST_F(ViewModelArrayTest, ResizeAndUpdateRequestsReachTheRoot) {
  nested->EnableAutoResizeHeight(true);
  EXPECT_TRUE(root->IsAutoResizeHeight());
  nested->UpdateViewModel();
  EXPECT_EQ(on_root->events, (Texts{"resize-height:resize=1 ", "update-model:"}));
  EXPECT_EQ(on_nested->events.size(), 2u);
}
