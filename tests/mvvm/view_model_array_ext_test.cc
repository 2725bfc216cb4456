#include "mvvm/view_model_array_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "mvvm/view_model_item.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Strings = std::vector<std::string>;

namespace {

// An item, so that its index in the visible list can be read; filtered by
// name. Counts the property reads made on it.
struct Row : ovui_test::Tracked<vm::ViewModelItem> {
  Row(std::string name, int x, int* destroyed) : Tracked(destroyed), name(name), x(x) {
    InstallProp("name", &this->name);
    InstallProp("x", &this->x);
  }
  bool GetPropW(const std::string& key, base::Value& v) const override {
    ++reads;
    return ViewModelItem::GetPropW(key, v);
  }
  std::string name;
  int x;
  mutable int reads = 0;
};

struct Rows : vm::ViewModelArrayExt {
  Rows() { compare_is_own = true; }
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.find(rule) != std::string::npos;
  }
};

struct ViewModelArrayExtTest : testing::Test {
  ViewModelArrayExtTest() {
    rows->On("current-changed", &heard);
    rows->On("filtered", &heard);
    rows->On("sorted", &heard);
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

std::string Names(const std::vector<vm::ViewModel*>& items) {
  std::string out;
  for (vm::ViewModel* item : items)
    out += static_cast<Row*>(item)->name + " ";
  return out;
}

}  // namespace

TEST_F(ViewModelArrayExtTest, SortsAndFiltersTogether) {
  Add("ax", 3);
  Row* b = Add("b", 1);
  Add("cx", 3);
  heard.events.clear();
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

TEST_F(ViewModelArrayExtTest, RulesOutliveResetsAndApplyToLaterAdds) {
  Add("a", 0);
  rows->Filter("a");
  rows->Filter("");
  rows->Reset();                    // no rule left
  EXPECT_FALSE(rows->Filter("x"));  // empty: only stored
  EXPECT_EQ(rows->Size(), 0u);      // and nothing stale shown
  Add("ax", 2);
  Add("cx", 1);
  heard.events.clear();
  Add("b", 5);
  EXPECT_TRUE(heard.events.empty());  // filtered out: silently, current kept
  rows->Sort("1:x");
  heard.events.clear();
  Add("dx", 0);
  EXPECT_EQ(Shown(), "dx,cx,ax");
  EXPECT_EQ(heard.events, (Strings{"current-changed:value=2 ", "sorted:", "filtered:"}));
  rows->BeginBatch();
  Add("e", -1);
  Add("fx", 9);
  rows->EndBatch();
  EXPECT_EQ(Shown(), "dx,cx,ax,fx");  // unheard, the sort still re-applies the filter
  EXPECT_TRUE(rows->Filter(""));
  EXPECT_EQ(Shown(), "e,dx,cx,ax,b,fx");
  EXPECT_TRUE(rows->Reset());
  EXPECT_EQ(destroyed, 7);
  EXPECT_EQ(rows->GetSortRule() + rows->GetFilterRule(), "1:x");  // rules kept
}

TEST_F(ViewModelArrayExtTest, RemovesReleaseVisibleChildrenAndHandBackHiddenOnes) {
  Row* a = Add("a", 0);
  Add("bx", 1);
  Add("cx", 2);
  rows->SetCurrent(0);
  rows->Filter("x");  // index 0 stays, now naming "bx"; the selection still names "a"
  ASSERT_EQ(rows->GetCurrentViewModel(), a);
  EXPECT_TRUE(rows->Remove(a));  // hidden: dropped unreleased, parent kept
  EXPECT_EQ(a->GetParent(), rows);
  EXPECT_EQ(rows->GetCurrentViewModel(), nullptr);  // the caller may now free it
  a->Release();
  EXPECT_TRUE(rows->Remove(rows->Get(1)));
  EXPECT_TRUE(rows->Remove(0));
  EXPECT_EQ(destroyed, 3);
  Add("ex", 0);
  Add("f", 0);
  rows->Release();
  rows = nullptr;
  EXPECT_EQ(destroyed, 5);  // each child released once, shown or not
}

TEST_F(ViewModelArrayExtTest, AChildIsHeldOnceEvenWhileHidden) {
  ovui_test::LogCapture log;
  Row* a = Add("a", 0);
  rows->Filter("x");  // "a" now lives in the full list only
  heard.events.clear();
  EXPECT_FALSE(rows->Add(a));
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent",
                                 "parent == NULL || !Contains(this->all_items, item)"));
  Row* b = Add("bx", 0);
  EXPECT_FALSE(rows->Add(b));  // shown: refused before any event
  EXPECT_EQ(heard.events, Strings{"current-changed:value=0 "});
  EXPECT_EQ(rows->GetAllItems().size(), 2u);
  rows->Release();
  rows = nullptr;
  EXPECT_EQ(destroyed, 2);
}

// Sort reads each key once when Compare is the library's own (a plain list,
// or a subclass that says it keeps Compare); the order must be exactly that
// of calling Compare for every comparison, as it does for a subclass that
// overrides it (here only to count the calls).
TEST(ViewModelArrayExtSortTest, KeyedSortReadsEachKeyOnceAndOrdersAsCompareDoes) {
  struct Counting : vm::ViewModelArrayExt {
    int Compare(vm::Model* a, vm::Model* b, const std::string& key) override {
      ++calls;
      return ViewModelArrayExt::Compare(a, b, key);
    }
    int calls = 0;
  };
  vm::ViewModelArrayExt* const lists[] = {new vm::ViewModelArrayExt(), new Rows(), new Counting()};
  std::vector<Row*> fast_rows;  // of the first two
  const int n = 200;
  for (int i = 0; i < n; ++i) {
    for (vm::ViewModelArrayExt* list : lists) {
      auto* row = new Row("r" + std::to_string(i), (i * 37) % 11, nullptr);
      if (i % 13 == 0) row->UninstallProp("x");  // no key: compares as a null value
      list->Add(row);
      if (list != lists[2]) fast_rows.push_back(row);
    }
  }
  for (const char* rule : {"1:x", "0:x", "1:name", "0 name"}) {
    for (Row* row : fast_rows)
      row->reads = 0;
    for (vm::ViewModelArrayExt* list : lists)
      list->Sort(rule);
    int reads = 0;
    for (Row* row : fast_rows)
      reads += row->reads;
    EXPECT_EQ(reads, 2 * n) << rule;  // the fast path: one read per child
    EXPECT_EQ(Names(lists[0]->GetItems()), Names(lists[2]->GetItems())) << rule;
    EXPECT_EQ(Names(lists[1]->GetItems()), Names(lists[2]->GetItems())) << rule;
  }
  EXPECT_GT(static_cast<Counting*>(lists[2])->calls, 4 * n);  // asked for every comparison
  for (vm::ViewModelArrayExt* list : lists)
    list->Release();
}
