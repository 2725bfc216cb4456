#include "mvvm/view_model_array_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "mvvm/view_model_item.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Strings = std::vector<std::string>;

namespace {

// An item, so that its index in the visible list can be read; filtered by name.
struct Row : ovui_test::Tracked<vm::ViewModelItem> {
  Row(std::string name, int x, int* destroyed) : Tracked(destroyed), name(name), x(x) {
    InstallProp("name", &this->name), InstallProp("x", &this->x);
  }
  std::string name;
  int x;
};

struct Rows : vm::ViewModelArrayExt {
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.find(rule) != std::string::npos;
  }
};

struct ViewModelArrayExtTest : testing::Test {
  ViewModelArrayExtTest() {
    rows->On("current-changed", &heard), rows->On("filtered", &heard), rows->On("sorted", &heard);
  }
  ~ViewModelArrayExtTest() override { base::SafeRelease(rows); }
  Row* Add(const std::string& name, int x) { return Add(new Row(name, x, &destroyed)); }
  Row* Add(Row* row) { return rows->Add(row) ? row : nullptr; }
  std::string Shown() const {  // the visible names in order, "a,b"
    std::string out;
    for (vm::ViewModel* item : rows->GetItems())
      out += (out.empty() ? "" : ",") + static_cast<Row*>(item)->name;
    return out;
  }
  int destroyed = 0;
  ovui_test::RecordingListener heard;  // outlives the array, which holds a reference
  Rows* rows = new Rows();
};

}  // namespace

TEST_F(ViewModelArrayExtTest, SortsAndFiltersTogether) {
  Add("ax", 3);
  Row* b = Add("b", 1);
  Add("cx", 3), heard.events.clear();
  EXPECT_TRUE(rows->Filter("x"));  // current index 2 is now past the end
  EXPECT_TRUE(rows->Sort("0:x"));  // the filter is re-applied
  EXPECT_EQ(Shown(), "cx,ax");     // the complemented predicate swaps the equal 3s
  EXPECT_EQ(b->GetIndex(), -1);    // hidden
  EXPECT_EQ(heard.events,
            (Strings{"filtered:", "current-changed:value=0 ", "sorted:", "filtered:"}));
  heard.events.clear();
  EXPECT_TRUE(rows->Filter("none"));
  EXPECT_EQ(rows->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(heard.events, Strings{"filtered:"});  // cleared without "current-changed"
}

TEST_F(ViewModelArrayExtTest, AddsRemovesAndResetsUnderTheRules) {
  Add("a", 0), rows->Filter("a"), rows->Filter(""), rows->Reset();  // no rule left
  EXPECT_FALSE(rows->Filter("x"));                                  // empty: only stored
  EXPECT_EQ(rows->Size(), 0u);                                      // and nothing stale shown
  Add("ax", 2), Add("cx", 1), heard.events.clear();
  Row* b = Add("b", 5);
  EXPECT_TRUE(heard.events.empty());  // filtered out: silently, current kept
  rows->Sort("1:x"), heard.events.clear();
  Add("dx", 0);
  EXPECT_EQ(Shown(), "dx,cx,ax");
  EXPECT_EQ(heard.events, (Strings{"current-changed:value=2 ", "sorted:", "filtered:"}));
  rows->BeginBatch(), Add("e", -1), Add("fx", 9), rows->EndBatch();
  EXPECT_EQ(Shown(), "dx,cx,ax,fx");  // unheard, the sort still re-applies the filter
  EXPECT_TRUE(rows->Filter(""));
  EXPECT_EQ(Shown(), "e,dx,cx,ax,b,fx");

  rows->Filter("x");
  EXPECT_TRUE(rows->Remove(b) && b->GetParent() == rows);  // hidden: dropped unreleased
  b->Release();
  EXPECT_TRUE(rows->Remove(rows->Get(1)) && rows->Remove(0));
  EXPECT_EQ(destroyed, 4);  // "a", "b", "cx", "dx"
  EXPECT_TRUE(rows->Reset());
  EXPECT_EQ(destroyed, 7);
  EXPECT_EQ(rows->GetSortRule() + rows->GetFilterRule(), "1:xx");  // rules kept
  Add("e", 0), Add("fx", 0);
  rows->Release(), rows = nullptr;
  EXPECT_EQ(destroyed, 9);  // each child released once
}

// Sort reads each key once when Compare is the library's own; the order must
// be exactly that of calling Compare for every comparison, as it does for a
// subclass that overrides it (here only to count the calls).
TEST(ViewModelArrayExtSortTest, KeyedSortOrdersAsCompareDoes) {
  struct Counting : vm::ViewModelArrayExt {
    int Compare(vm::Model* a, vm::Model* b, const std::string& key) override {
      ++calls;
      return ViewModelArrayExt::Compare(a, b, key);
    }
    int calls = 0;
  };
  auto* plain = new vm::ViewModelArrayExt();
  auto* counting = new Counting();
  vm::ViewModelArrayExt* counted = counting;
  for (int i = 0; i < 200; ++i) {
    for (vm::ViewModelArrayExt* list : {plain, counted}) {
      auto* row = new Row("r" + std::to_string(i), (i * 37) % 11, nullptr);
      if (i % 13 == 0) row->UninstallProp("x");  // no key: compares as a null value
      list->Add(row);
    }
  }
  for (const char* rule : {"1:x", "0:x", "1:name", "0 name"}) {
    plain->Sort(rule);
    counting->Sort(rule);
    Strings order_plain, order_counting;
    for (vm::ViewModel* r : plain->GetItems())
      order_plain.push_back(static_cast<Row*>(r)->name);
    for (vm::ViewModel* r : counting->GetItems())
      order_counting.push_back(static_cast<Row*>(r)->name);
    EXPECT_EQ(order_plain, order_counting) << rule;
  }
  EXPECT_GT(counting->calls, 0);  // the override is honoured
  plain->Release();
  counting->Release();
}
