#include "mvvm/view_model_item.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mvvm/view_model_array.h"
#include "mvvm/view_model_htable.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"

using base::Value;

namespace {

// Two rows; the cells are never read here.
struct TwoRows : vm::ViewModelHTable {
  unsigned int Size() const override { return 2; }
  bool GetCell(unsigned int, const std::string&, Value&) const override { return false; }
  bool SetCell(unsigned int, const std::string&, const Value&) override { return false; }
};

}  // namespace

TEST(ViewModelItemTest, IndexAndWritesAnnouncedOnTheRoot) {
  auto* root = new vm::ViewModelArray();
  auto* rows = new vm::ViewModelArray();
  root->Add(rows);
  auto* second = new vm::ViewModelItem();
  int x = 0;
  second->InstallProp("x", &x);
  rows->Add(new vm::ViewModelItem());
  rows->Add(second);
  Value v;
  EXPECT_TRUE(second->GetPropW("_index_", v));
  EXPECT_EQ(v.I64(), 1);
  EXPECT_EQ(second->GetType(), vm::ViewModel::VIEW_MODEL_ITEM);

  auto* listener = new ovui_test::RecordingListener();
  root->On("prop-changed", listener);
  EXPECT_TRUE(second->SetPropW("x", Value(5)));
  EXPECT_EQ(listener->events,
            std::vector<std::string>{"prop-changed:kind=PropChange name=x old=5 value=5 "});
  EXPECT_FALSE(second->SetPropW("missing", Value(1)));
  EXPECT_EQ(listener->events.size(), 1u);

  ovui_test::LogCapture log;
  vm::ViewModelItem loose;
  EXPECT_EQ(loose.GetIndex(), -1);
  EXPECT_TRUE(log.HasFailedCheck("GetIndex", "parent != NULL"));
  listener->Release();
  root->Release();
}

TEST(ViewModelHTableTest, CurrentRowAndRangeEvents) {
  TwoRows table;
  auto* listener = new ovui_test::RecordingListener();
  for (const char* type : {"before-item-add", "item-add", "before-item-remove", "item-remove",
                           "update", "current-changed"}) {
    table.On(type, listener);
  }
  EXPECT_TRUE(table.SetPropW("_current_", Value(1)));
  ovui_test::LogCapture log;
  EXPECT_FALSE(table.SetCurrent(2));
  EXPECT_TRUE(log.HasFailedCheck("SetCurrent", "index < this->Size()"));
  Value v;
  table.GetPropW("_current_", v);
  EXPECT_EQ(v.I64(), 1);  // kept

  table.BeforeAdd(2, 3);
  table.AfterAdd();
  table.BeforeRemove(0, 0);
  table.AfterRemove();
  table.Update();
  EXPECT_EQ(listener->events,
            (std::vector<std::string>{"current-changed:value=1 ", "before-item-add:end=3 start=2 ",
                                      "item-add:", "before-item-remove:end=0 start=0 ",
                                      "item-remove:", "update:"}));
  listener->Release();  // the table's emitter releases the rest
}
