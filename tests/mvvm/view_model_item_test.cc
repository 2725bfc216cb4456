#include "mvvm/view_model_item.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mvvm/view_model_array.h"
#include "mvvm/view_model_htable.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"

using base::Value;
using Strings = std::vector<std::string>;

TEST(ViewModelItemTest, IndexAndWritesAnnouncedOnTheRoot) {
  ovui_test::RecordingListener heard;  // outlives the arrays, which hold references to it
  auto *root = new vm::ViewModelArray(), *rows = new vm::ViewModelArray();
  auto* second = new vm::ViewModelItem();
  int x = 0;
  second->InstallProp("x", &x);
  root->Add(rows);
  rows->Add(new vm::ViewModelItem());
  rows->Add(second);
  root->On("prop-changed", &heard);
  Value v;
  EXPECT_TRUE(second->GetPropW("_index_", v));
  EXPECT_TRUE(second->SetPropW("x", Value(5)));
  EXPECT_EQ(v.I64(), 1);
  EXPECT_FALSE(second->SetPropW("missing", Value(1)));  // refused: not announced
  EXPECT_EQ(heard.events, Strings{"prop-changed:kind=PropChange name=x old=5 value=5 "});
  root->Release();
}

TEST(ViewModelHTableTest, CurrentRowAndRangeEvents) {
  struct TwoRows : vm::ViewModelHTable {  // whose cells are never read here
    unsigned int Size() const override { return 2; }
    bool GetCell(unsigned int, const std::string&, Value&) const override { return false; }
    bool SetCell(unsigned int, const std::string&, const Value&) override { return false; }
  };
  ovui_test::RecordingListener heard;  // outlives the table, which holds a reference to it
  TwoRows table;
  for (const char* type : {"before-item-add", "item-add", "before-item-remove", "item-remove",
                           "update", "current-changed"})
    table.On(type, &heard);
  EXPECT_TRUE(table.SetPropW("_current_", Value(1)));
  EXPECT_FALSE(table.SetCurrent(2));
  // Past the 32-bit range: refused, not truncated onto row 0.
  for (const long long index : {4294967296LL, -4294967296LL, -1LL})
    EXPECT_FALSE(table.SetPropW("_current_", Value(index))) << index;
  EXPECT_EQ(table.GetCurrent(), 1u);  // kept
  table.BeforeAdd(2, 3);
  table.AfterAdd();
  table.BeforeRemove(0, 0);
  table.AfterRemove();
  table.Update();
  EXPECT_EQ(heard.events,
            (Strings{"current-changed:value=1 ", "before-item-add:end=3 start=2 ",
                     "item-add:", "before-item-remove:end=0 start=0 ", "item-remove:", "update:"}));
}
