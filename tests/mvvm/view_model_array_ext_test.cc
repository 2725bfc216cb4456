#include "mvvm/view_model_array_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "mvvm/view_model_item.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"
#include "support/toy_objects.h"

using Strings = std::vector<std::string>;

namespace {

int key_reads = 0, compare_calls = 0;  // reads of Row properties, calls of Counting::Compare

// An item, so that its index in the visible list can be read; filtered by name.
struct Row : ovui_test::Tracked<vm::ViewModelItem> {
  Row(std::string name, int x, int* destroyed) : Tracked(destroyed), name(name), x(x) {
    InstallProp("name", &this->name);
    InstallProp("x", &this->x);
  }
  bool GetPropW(const std::string& key, base::Value& v) const override {
    ++key_reads;
    return ViewModelItem::GetPropW(key, v);
  }
  std::string name;
  int x;
};

struct Rows : vm::ViewModelArrayExt {
  Rows() { compare_is_own = true; }
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.find(rule) != std::string::npos;
  }
};

std::string Names(const std::vector<vm::ViewModel*>& items) {  // "a b "
  std::string out;
  for (vm::ViewModel* item : items)
    out += static_cast<Row*>(item)->name + " ";
  return out;
}

struct ViewModelArrayExtTest : testing::Test {
  ViewModelArrayExtTest() {
    for (const char* type : {"current-changed", "filtered", "sorted"})
      rows->On(type, &heard);
  }
  ~ViewModelArrayExtTest() override { base::SafeRelease(rows); }
  Row* Add(const std::string& name, int x) {
    auto* row = new Row(name, x, &destroyed);
    return rows->Add(row) ? row : nullptr;
  }
  int destroyed = 0;
  ovui_test::RecordingListener heard;  // outlives the array, which holds a reference
  Rows* rows = new Rows();
};

}  // namespace

TEST_F(ViewModelArrayExtTest, SortsAndFiltersTogetherAndOnLaterAdds) {
  Add("ax", 3);
  Row* b = Add("b", 1);
  Add("cx", 3);
  heard.events.clear();
  EXPECT_TRUE(rows->Filter("x"));                // current index 2 is now past the end
  EXPECT_TRUE(rows->Sort("0:x"));                // the filter is re-applied
  EXPECT_EQ(Names(rows->GetItems()), "cx ax ");  // the complemented predicate swaps the equal 3s
  EXPECT_EQ(b->GetIndex(), -1);                  // hidden
  EXPECT_EQ(heard.events,
            (Strings{"filtered:", "current-changed:value=0 ", "sorted:", "filtered:"}));
  heard.events.clear();
  EXPECT_TRUE(rows->Filter("none"));
  EXPECT_EQ(rows->GetCurrentViewModel(), nullptr);
  EXPECT_EQ(heard.events, Strings{"filtered:"});  // cleared without "current-changed"

  rows->Filter("");
  rows->Reset();                    // no filter left
  EXPECT_FALSE(rows->Filter("x"));  // empty: only stored, and nothing stale shown below
  Add("ax", 2);
  Add("cx", 1);
  heard.events.clear();
  Add("b", 5);  // filtered out: sorted in, the current row kept
  rows->Sort("1:x");
  Add("dx", 0);
  EXPECT_EQ(Names(rows->GetItems()), "dx cx ax ");
  EXPECT_EQ(heard.events, (Strings{"sorted:", "filtered:", "sorted:", "filtered:",
                                   "current-changed:value=2 ", "sorted:", "filtered:"}));
  rows->BeginBatch();
  Add("fx", 9);
  rows->EndBatch();  // unheard, the sort still re-applies the filter
  EXPECT_EQ(Names(rows->GetItems()), "dx cx ax fx ");
  EXPECT_TRUE(rows->Filter(""));
  EXPECT_EQ(Names(rows->GetItems()), "dx cx ax b fx ");
  EXPECT_TRUE(rows->Reset());
  EXPECT_EQ(destroyed, 8);
  EXPECT_EQ(rows->GetSortRule() + rows->GetFilterRule(), "1:x");  // rules kept
}

TEST_F(ViewModelArrayExtTest, HiddenChildrenAreHeldOnceAndHandedBackOnRemove) {
  ovui_test::LogCapture log;
  Row* a = Add("a", 0);
  Add("bx", 1);
  Add("cx", 2);
  Add("d", 3);  // hidden, and released with the list
  rows->SetCurrent(0);
  rows->Filter("x");  // index 0 stays, now naming "bx"; the selection still names "a"
  ASSERT_EQ(rows->GetCurrentViewModel(), a);
  heard.events.clear();
  EXPECT_FALSE(rows->Add(a));
  EXPECT_TRUE(log.HasFailedCheck("AddWithoutSetCurrent",
                                 "parent == NULL || !Contains(this->all_items, item)"));
  EXPECT_FALSE(rows->Add(rows->Get(0)));  // shown: refused silently
  EXPECT_TRUE(heard.events.empty());

  EXPECT_TRUE(rows->Remove(a));  // hidden: dropped unreleased, parent kept
  EXPECT_EQ(a->GetParent(), rows);
  EXPECT_EQ(rows->GetCurrentViewModel(), nullptr);
  a->Release();  // the caller may now free it
  EXPECT_TRUE(rows->Remove(rows->Get(1)));
  EXPECT_TRUE(rows->Remove(0));
  EXPECT_EQ(destroyed, 3);
}

// Sort reads each key once when Compare is the library's own (a plain list, or a
// subclass that says it keeps Compare), and orders exactly as calling Compare
// for every comparison does, as for a subclass that overrides it to count calls.
TEST(ViewModelArrayExtSortTest, KeyedSortReadsEachKeyOnceAndOrdersAsCompareDoes) {
  struct Counting : vm::ViewModelArrayExt {
    int Compare(vm::Model* a, vm::Model* b, const std::string& key) override {
      ++compare_calls;
      return ViewModelArrayExt::Compare(a, b, key);
    }
  };
  vm::ViewModelArrayExt* const lists[] = {new vm::ViewModelArrayExt(), new Rows(), new Counting()};
  const int n = 200;
  for (int i = 0; i < n; ++i)
    for (vm::ViewModelArrayExt* list : lists) {
      auto* row = new Row("r" + std::to_string(i), (i * 37) % 11, nullptr);
      if (i % 13 == 0) row->UninstallProp("x");  // no key: compares as a null value
      list->Add(row);
    }
  for (const char* rule : {"1:x", "0:x", "1:name", "0 name"}) {
    key_reads = 0;
    lists[0]->Sort(rule);
    lists[1]->Sort(rule);
    EXPECT_EQ(key_reads, 2 * n) << rule;  // the fast path: one read per child
    lists[2]->Sort(rule);
    EXPECT_EQ(Names(lists[0]->GetItems()), Names(lists[2]->GetItems())) << rule;
    EXPECT_EQ(Names(lists[1]->GetItems()), Names(lists[2]->GetItems())) << rule;
  }
  EXPECT_GT(compare_calls, 4 * n);  // asked for every comparison
  for (vm::ViewModelArrayExt* list : lists)
    list->Release();
}
