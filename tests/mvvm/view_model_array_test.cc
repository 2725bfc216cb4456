#include "mvvm/view_model_array.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Texts = std::vector<std::string>;

namespace {

// A root list holding a nested list, with a recorder on each.
struct ViewModelArrayTest : testing::Test {
  ViewModelArrayTest() {
    root->Add(nested);
    for (const char* type :
         {"before-item-add", "item-add", "before-item-remove", "item-remove", "current-changed",
          "before-remove-all", "remove-all", "rebind", "resize-height", "update-model"}) {
      root->On(type, &on_root);
      nested->On(type, &on_nest);
    }
  }
  ~ViewModelArrayTest() override { base::SafeRelease(root); }
  vm::ViewModel* New() { return new ovui_test::Tracked<vm::ViewModel>(&destroyed); }

  int destroyed = 0;
  ovui_test::RecordingListener on_root, on_nest;  // outlive the arrays, which hold references
  vm::ViewModelArray* root = new vm::ViewModelArray();
  vm::ViewModelArray* nested = new vm::ViewModelArray();
};

}  // namespace

TEST_F(ViewModelArrayTest, AddsAnnounceTheirPositionBecomeCurrentAndAreHeldOnce) {
  vm::ViewModel *a = New(), *b = New(), *c = New();
  std::vector<void*> added;  // "item" and "parent" of the last "item-add"
  on_root.hook = [&](events::Event* e) {
    if (e->GetType() == "item-add")
      added = {e->GetParam("item").Pointer(), e->GetParam("parent").Pointer()};
  };
  EXPECT_TRUE(nested->Add(a, -5));
  EXPECT_TRUE(nested->Add(b, 99));
  EXPECT_TRUE(nested->Add(c, 0));
  EXPECT_EQ(added, (std::vector<void*>{c, nested}));
  Texts expected;  // each add announced at its index (clamped), which becomes current
  for (const std::string i : {"0", "1", "0"}) {
    const std::string at = "end=" + i + " item= parent= start=" + i + " ";
    expected.insert(expected.end(), {"before-item-add:" + at, "item-add:" + at,
                                     "current-changed:value=" + i + " "});
  }
  EXPECT_EQ(on_nest.events, expected);
  EXPECT_EQ(on_root.events, expected);        // repeated on the root of the nest
  EXPECT_EQ(root->GetCurrentViewModel(), c);  // the child selected last anywhere

  // A child of another array, or one already here (it would be released twice).
  on_root.events.clear();
  ovui_test::LogCapture log;
  size_t from = 0;
  EXPECT_FALSE(root->Add(c));
  EXPECT_FALSE(nested->Add(c, 0));
  EXPECT_TRUE(log.HasFailedCheck("Add", "parent == NULL || parent == this", &from));
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent", "Add(GetItems(), item, index)", &from));
  EXPECT_TRUE(log.HasFailedCheck("Add", "parent == NULL || !Contains(items, item)", &from));
  EXPECT_TRUE(on_root.events.empty());

  base::Value size;
  EXPECT_TRUE(nested->SetPropW("_current_", 1));
  EXPECT_TRUE(nested->AddWithoutSetCurrent(New(), 0, true));
  EXPECT_EQ(nested->GetCurrent(), 1u);  // kept as an index
  EXPECT_TRUE(nested->GetPropW("_size_", size));
  EXPECT_EQ(size.I64(), 4);
  EXPECT_FALSE(nested->SetPropW("_size_", base::Value(9)));
}

// An emptied nested list selects nothing, and keeps that true once detached,
// when it is its own root; an emptied top-level list is cleared silently.
TEST_F(ViewModelArrayTest, RemovesKeepOrMoveTheCurrentPosition) {
  for (int i = 0; i < 4; ++i)
    nested->Add(New());
  nested->SetCurrent(1);
  on_nest.events.clear();
  EXPECT_TRUE(nested->Remove(3u));  // current is 1: kept, re-announced
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(on_nest.events,
            (Texts{"before-item-remove:end=3 item= parent= start=3 ",
                   "item-remove:end=3 item= parent= start=3 ", "current-changed:value=1 "}));
  EXPECT_TRUE(nested->Remove(0));
  EXPECT_TRUE(nested->Remove(1));  // then the current last child
  EXPECT_EQ(nested->GetCurrent(), 0u);
  vm::ViewModel* other = New();
  root->Add(other);
  vm::ViewModel* last = nested->Get(0);
  EXPECT_TRUE(root->Remove(last));    // not in this list: done, silently
  EXPECT_TRUE(nested->Remove(last));  // the nest emptied: the parent's current becomes it
  EXPECT_EQ(root->GetCurrentViewModel(), nested);
  root->Remove(other);
  on_root.events.clear();
  nested->AddRef();
  root->Remove(nested);
  EXPECT_EQ(root->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(on_root.events.size(), 2u);  // removal
  EXPECT_EQ(nested->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(nested->GetModel(), nullptr);
  nested->Release();
}

TEST_F(ViewModelArrayTest, BatchesAndResets) {
  vm::ViewModel* survivor = New();
  nested->Add(survivor);
  survivor->AddRef();
  on_nest.events.clear();
  EXPECT_TRUE(nested->BeginBatch());
  for (int i = 0; i < 3; ++i)
    nested->Add(New());
  EXPECT_EQ(nested->GetCurrent(), 0u);  // not moved while silent
  EXPECT_TRUE(nested->EndBatch());
  EXPECT_EQ(on_nest.events,  // the view model's event is reused: an earlier "kind" stays
            (Texts{"rebind:kind=PropsChange name= value= ", "current-changed:value=3 "}));

  on_nest.events.clear();
  EXPECT_TRUE(nested->Reset());
  EXPECT_EQ(destroyed, 3);
  EXPECT_EQ(nested->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(survivor->GetParent(), nested);  // not cleared by Reset
  EXPECT_EQ(on_nest.events, (Texts{"before-remove-all:parent= ", "remove-all:parent= "}));
  survivor->Release();
}

TEST_F(ViewModelArrayTest, RequestsGoToTheRootAndCurrentStaysInRange) {
  nested->EnableAutoResizeHeight(true);
  EXPECT_TRUE(root->IsAutoResizeHeight());
  nested->UpdateViewModel();
  EXPECT_EQ(on_root.events, (Texts{"resize-height:resize=1 ", "update-model:"}));

  // "_current_" past 32 bits is refused, not truncated onto a row (2^32 reads as unchanged).
  nested->Add(New());
  nested->Add(New(), 0);
  on_nest.events.clear();
  ovui_test::LogCapture log;
  const base::Value indices[] = {4294967297LL, -4294967295LL, -1, 4294967297.0, -1e300};
  size_t from = 0;
  for (const base::Value& index : indices) {
    EXPECT_FALSE(nested->SetPropW("_current_", index)) << index.F64();
    EXPECT_TRUE(log.HasFailedCheck("SetCurrentProp", "index >= 0 && index <= UINT_MAX", &from));
  }
  EXPECT_EQ(nested->GetCurrent(), 0u);
  EXPECT_TRUE(on_nest.events.empty());
}
