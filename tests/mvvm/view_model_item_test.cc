#include "mvvm/view_model_item.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mvvm/view_model_array.h"
#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_htable.h"
#include "support/log_capture.h"
#include "support/recording_listener.h"

using base::Value;

namespace {

// Rows of names; "name" is the only field.
class NameTable : public vm::ViewModelHTable {
 public:
  unsigned int Size() const override { return static_cast<unsigned int>(names.size()); }
  bool GetCell(unsigned int row, const std::string& field, Value& v) const override {
    if (row >= names.size() || field != "name") return false;
    v.Str(names[row].c_str());
    return true;
  }
  bool SetCell(unsigned int row, const std::string& field, const Value& v) override {
    if (row >= names.size() || field != "name") return false;
    names[row] = v.Str();
    return true;
  }
  std::vector<std::string> names{"a", "b"};
};

}  // namespace

TEST(ViewModelItemTest, IndexAndWritesAnnouncedOnTheRoot) {
  auto* root = new vm::ViewModelArray();
  auto* rows = new vm::ViewModelArray();
  root->Add(rows);
  auto* first = new vm::ViewModelItem();
  auto* second = new vm::ViewModelItem();
  int x = 0;
  second->InstallProp("x", &x);
  rows->Add(first);
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
  root->Off("prop-changed", listener);
  listener->Release();
  root->Release();
}

TEST(ViewModelHTableTest, CurrentRowAndRangeEvents) {
  NameTable table;
  auto* listener = new ovui_test::RecordingListener();
  for (const char* type : {"before-item-add", "item-add", "before-item-remove", "item-remove",
                           "update", "current-changed"}) {
    table.On(type, listener);
  }
  EXPECT_TRUE(table.SetPropW("_current_", Value(1)));
  EXPECT_EQ(table.GetCurrent(), 1u);
  ovui_test::LogCapture log;
  EXPECT_FALSE(table.SetCurrent(2));
  EXPECT_TRUE(log.HasFailedCheck("SetCurrent", "index < this->Size()"));
  Value v;
  table.GetPropW("_current_", v);
  EXPECT_EQ(v.I64(), 1);

  table.BeforeAdd(2, 3);
  table.AfterAdd();
  table.BeforeRemove(0, 0);
  table.AfterRemove();
  table.Update();
  EXPECT_EQ(listener->events,
            (std::vector<std::string>{"current-changed:value=1 ", "before-item-add:end=3 start=2 ",
                                      "item-add:", "before-item-remove:end=0 start=0 ",
                                      "item-remove:", "update:"}));
  table.Off("update", listener);
  for (const char* type :
       {"before-item-add", "item-add", "before-item-remove", "item-remove", "current-changed"}) {
    table.Off(type, listener);
  }
  listener->Release();
}

TEST(ViewModelItemTest, IndicesFollowTheVisibleList) {
  // Shows rows whose "n" is odd.
  class OddRows : public vm::ViewModelArrayExt {
    bool FilterOne(vm::ViewModel* item, const std::string&) override {
      Value v;
      item->GetPropW("n", v);
      return v.I64() % 2 != 0;
    }
  };
  auto* list = new OddRows();
  std::vector<int> numbers{4, 3, 2, 1};
  std::vector<vm::ViewModelItem*> rows;
  for (int& n : numbers) {
    rows.push_back(new vm::ViewModelItem());
    rows.back()->InstallProp("n", &n);
    list->Add(rows.back());
  }
  list->Filter("odd");
  list->Sort("1:n");
  std::vector<int> indices;
  for (vm::ViewModelItem* row : rows)
    indices.push_back(row->GetIndex());
  EXPECT_EQ(indices, (std::vector<int>{-1, 1, -1, 0}));  // hidden rows read -1
  list->Release();
}
