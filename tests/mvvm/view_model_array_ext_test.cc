#include "mvvm/view_model_array_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "mvvm/view_model_item.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Strings = std::vector<std::string>;

namespace {

// An item, so that its index in the visible list can be read.
struct Row : ovui_test::Tracked<vm::ViewModelItem> {
  Row(std::string name, int x, int* destroyed) : Tracked(destroyed), name(name), x(x) {
    InstallProp("name", &this->name), InstallProp("x", &this->x);
  }
  std::string name;
  int x;
};

// The filter rule is a text that the child's name must contain.
struct Rows : vm::ViewModelArrayExt {
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.find(rule) != std::string::npos;
  }
};

struct ViewModelArrayExtTest : testing::Test {
  void Listen() {
    for (const char* type : {"current-changed", "filtered", "sorted"})
      rows->On(type, listener);
  }
  ~ViewModelArrayExtTest() override { base::SafeRelease(rows), listener->Release(); }
  Row* Add(const std::string& name, int x) {
    auto* row = new Row(name, x, &destroyed);
    return rows->Add(row) ? row : nullptr;
  }
  // The visible names in order, "a,b".
  std::string Shown() const {
    std::string out;
    for (vm::ViewModel* item : rows->GetItems())
      out += (out.empty() ? "" : ",") + static_cast<Row*>(item)->name;
    return out;
  }
  Rows* rows = new Rows();
  ovui_test::RecordingListener* listener = new ovui_test::RecordingListener();
  Strings& heard = listener->events;
  int destroyed = 0;
};

}  // namespace

TEST_F(ViewModelArrayExtTest, SortsByIntAndTextBothWays) {
  Add("a", 3), Add("b", 1);
  Row* c = Add("c", 3);
  Listen();
  ovui_test::LogCapture log;
  EXPECT_FALSE(rows->Sort("1:"));
  EXPECT_TRUE(log.HasFailedCheck("Sort", "args.size() > 2"));
  EXPECT_TRUE(rows->Sort("0:x"));
  EXPECT_EQ(Shown(), "c,a,b");  // the complemented predicate swaps the equal 3s
  EXPECT_EQ(c->GetIndex(), 0);  // an item's index follows the order
  EXPECT_EQ(heard, Strings{"sorted:"});
  EXPECT_TRUE(rows->Sort("0 name"));
  EXPECT_EQ(Shown(), "c,b,a");
  EXPECT_TRUE(rows->Sort("1:x"));
  EXPECT_EQ(Shown(), "b,c,a");  // ascending keeps equal keys in their order
}

TEST_F(ViewModelArrayExtTest, FilterSortAndTheCurrentChild) {
  Add("ax", 2);
  Row* b = Add("b", 3);
  Row* cx = Add("cx", 1);
  Listen();
  EXPECT_TRUE(rows->Filter("x"));  // current index 2 is now past the end
  EXPECT_TRUE(rows->Sort("0:x"));
  EXPECT_EQ(Shown(), "ax,cx");   // filter re-applied to the sorted list
  EXPECT_EQ(cx->GetIndex(), 1);  // its place among the visible rows
  EXPECT_EQ(b->GetIndex(), -1);  // hidden
  EXPECT_EQ(heard, (Strings{"filtered:", "current-changed:value=0 ", "sorted:", "filtered:"}));
  heard.clear();
  EXPECT_TRUE(rows->Filter("none"));
  EXPECT_EQ(rows->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(heard, Strings{"filtered:"});  // cleared without "current-changed"
}

TEST_F(ViewModelArrayExtTest, AddsFollowTheRules) {
  Listen();
  Add("a", 0);
  rows->Filter("a"), rows->Filter(""), rows->Reset();
  EXPECT_FALSE(rows->Filter("x"));  // empty: only stored
  EXPECT_EQ(rows->Size(), 0u);      // and nothing stale shown
  Add("ax", 2);
  heard.clear();
  Add("b", 5);
  EXPECT_TRUE(heard.empty());  // nor a current change
  EXPECT_EQ(Shown(), "ax");
  Add("cx", 1);
  rows->Sort("1:x");
  heard.clear();
  Add("dx", 0);
  EXPECT_EQ(Shown(), "dx,cx,ax");
  EXPECT_EQ(heard, (Strings{"current-changed:value=2 ", "sorted:", "filtered:"}));
  rows->BeginBatch();  // "sorted" is not heard here, the filter still applies
  Add("e", -1), Add("fx", 9);
  rows->EndBatch();
  EXPECT_EQ(Shown(), "dx,cx,ax,fx");
  EXPECT_TRUE(rows->Filter(""));
  EXPECT_EQ(Shown(), "e,dx,cx,ax,b,fx");
}

TEST_F(ViewModelArrayExtTest, RemoveAndResetReleaseEachChildOnce) {
  Add("ax", 0);
  Row* b = Add("b", 0);
  Add("cx", 0), Add("dx", 0);
  rows->Filter("x");
  EXPECT_TRUE(rows->Sort("1:x"));  // nobody listens: sorted all the same, filter re-applied
  EXPECT_EQ(Shown(), "ax,cx,dx");
  EXPECT_TRUE(rows->Remove(b));  // hidden: dropped unreleased, still parented
  EXPECT_EQ(b->GetParent(), rows);
  b->Release();
  EXPECT_TRUE(rows->Remove(rows->Get(1)));
  EXPECT_TRUE(rows->Remove(0));
  EXPECT_EQ(destroyed, 3);
  EXPECT_TRUE(rows->Reset());
  EXPECT_EQ(destroyed, 4);
  EXPECT_EQ(rows->GetSortRule() + rows->GetFilterRule(), "1:xx");  // rules kept
  Add("e", 0), Add("fx", 0);
  EXPECT_EQ(Shown(), "fx");
  rows->Release(), rows = nullptr;
  EXPECT_EQ(destroyed, 6);
}
