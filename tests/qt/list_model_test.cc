#include "qt/list_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QListView>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <string>
#include <utility>

#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_item.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

namespace {

struct Row : vm::ViewModelItem {
  explicit Row(std::string name) : name(std::move(name)) {
    InstallProp("name", &this->name);
    InstallProp("count", &this->count);
    InstallProp("ptr", &Row::GetPtr, nullptr);
  }
  bool GetPtr(base::Value& v) const {
    v.Pointer(const_cast<Row*>(this));
    return true;
  }
  std::string name;
  int count = 7;
};

// Keeps the rows whose name starts with the rule.
struct Rows : ovui_test::Tracked<vm::ViewModelArrayExt> {
  using Tracked::Tracked;
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.rfind(rule, 0) == 0;
  }
};

struct ListModelTest : testing::Test {
  ListModelTest() {
    view->setProperty("binding.value", "{Binding Path=name}");
    model = ListModelOverViewModel::Create(rows, view);
    // Aborts the test program as soon as the model breaks Qt's contract.
    new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model);
  }
  ~ListModelTest() override {
    delete view;
    base::SafeRelease(rows);
  }
  void Add(const char* name, int index = -1) { rows->Add(new Row(name), index); }
  std::string Shown() const {  // "a,b"
    std::string out;
    for (int r = 0; r < model->rowCount(); ++r)
      out += (r ? "," : "") + model->index(r).data().toString().toStdString();
    return out;
  }
  int CurrentRow() const { return view->currentIndex().row(); }

  int destroyed = 0;
  Rows* rows = new Rows(&destroyed);
  QListView* view = new QListView;
  QPointer<ListModelOverViewModel> model;
};

TEST_F(ListModelTest, RowsFollowTheList) {
  ASSERT_TRUE(model);
  EXPECT_EQ(view->model(), model.data());
  QSignalSpy inserted(model.data(), SIGNAL(rowsInserted(QModelIndex, int, int)));
  Add("b");
  Add("a", 0);
  Add("d", 9);
  Add("c", 2);
  EXPECT_EQ(Shown(), "a,b,c,d");
  ASSERT_EQ(inserted.size(), 4);
  EXPECT_EQ(inserted[3][1].toInt(), 2);
  EXPECT_EQ(inserted[3][2].toInt(), 2);
  EXPECT_EQ(CurrentRow(), 2);  // the new row is current

  rows->Remove(1);
  EXPECT_EQ(Shown(), "a,c,d");
  EXPECT_EQ(CurrentRow(), 2);  // still in range: kept as a row number
  rows->SetCurrent(2);
  EXPECT_EQ(CurrentRow(), 2);
  rows->Remove(2);
  EXPECT_EQ(CurrentRow(), 1);  // the current last row went: the new last one

  // A nested list's rows are announced on this list too, but are not its rows.
  auto* nested = new vm::ViewModelArray;
  rows->Add(nested);
  nested->Add(new Row("x"));
  EXPECT_EQ(model->rowCount(), 3);
  EXPECT_FALSE(model->index(2).data().isValid());

  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  rows->Reset();
  EXPECT_EQ(reset.size(), 1);
  EXPECT_EQ(model->rowCount(), 0);
  EXPECT_EQ(CurrentRow(), -1);
  Add("only");
  rows->Remove(0);
  EXPECT_EQ(CurrentRow(), -1);
}

TEST_F(ListModelTest, BatchesFiltersAndSortsRebuildTheRows) {
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  rows->BeginBatch();
  for (const char* name : {"bob", "al", "ann", "ben"})
    Add(name);
  rows->Remove(0);
  rows->EndBatch();
  EXPECT_EQ(reset.size(), 1);
  EXPECT_EQ(Shown(), "al,ann,ben");
  EXPECT_EQ(CurrentRow(), 2);  // after a batch the last row is current

  rows->Filter("a");
  EXPECT_EQ(Shown(), "al,ann");
  EXPECT_EQ(reset.size(), 2);
  QSignalSpy inserted(model.data(), SIGNAL(rowsInserted(QModelIndex, int, int)));
  Add("carl");  // hidden: nothing to announce
  Add("abe", 0);
  EXPECT_EQ(Shown(), "abe,al,ann");
  EXPECT_EQ(inserted.size(), 1);

  rows->Sort("0:name");
  EXPECT_EQ(Shown(), "ann,al,abe");
  Add("amy", 0);  // inserted first, then sorted into place
  EXPECT_EQ(Shown(), "ann,amy,al,abe");
  rows->Filter("");
  EXPECT_EQ(Shown(), "carl,ben,ann,amy,al,abe");
  rows->Remove(rows->Get(0));
  EXPECT_EQ(Shown(), "ben,ann,amy,al,abe");
  EXPECT_EQ(reset.size(), 7);  // each sort is followed by its re-applied filter
}

TEST_F(ListModelTest, ChangedChildrenAreRepainted) {
  Add("a");
  Add("b");
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  rows->Get(1)->SetPropW("name", std::string("z"));
  EXPECT_EQ(Shown(), "a,z");
  rows->UpdateViewModel();
  ASSERT_EQ(changed.size(), 2);
  EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
}

TEST_F(ListModelTest, ClicksAndCodeMoveTheCurrentRow) {
  for (const char* name : {"a", "b", "c"})
    Add(name);
  view->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
  rows->SetCurrent(0);
  EXPECT_EQ(CurrentRow(), 0);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                    view->visualRect(model->index(2)).center());
  EXPECT_EQ(rows->GetCurrent(), 2u);
  EXPECT_EQ(rows->GetCurrentViewModel(), rows->Get(2));
}

TEST_F(ListModelTest, CellValuesKeepTheirKind) {
  Add("a");
  const char* const rules[] = {"{Binding Path=count}", "{Binding Path=ptr}",
                               "{Binding Path=missing}", "{}"};
  const QVariant expected[] = {QVariant(7), QVariant::fromValue<void*>(rows->Get(0)), QVariant(),
                               QVariant()};
  for (int i = 0; i < 4; ++i) {
    QListView other;
    other.setProperty("binding.value", rules[i]);
    ListModelOverViewModel* m = ListModelOverViewModel::Create(rows, &other);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->index(0).data(), expected[i]) << rules[i];
    EXPECT_EQ(m->index(0).data(Qt::EditRole), QVariant()) << rules[i];
  }
}

TEST_F(ListModelTest, RefusedViews) {
  ovui_test::LogCapture log;
  QListView bare;
  EXPECT_EQ(ListModelOverViewModel::Create(rows, &bare), nullptr);
  EXPECT_EQ(bare.model(), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "qv.isValid()"));
  EXPECT_EQ(ListModelOverViewModel::Create(nullptr, view), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "vm != NULL && list != NULL"));
}

TEST_F(ListModelTest, TheViewOwnsTheModelAndItsReference) {
  EXPECT_EQ(rows->RefCount(), 2);
  Add("a");
  rows->Release();  // the model's reference keeps the list alive
  Rows* const kept = rows;
  rows = nullptr;
  EXPECT_EQ(destroyed, 0);
  kept->Add(new Row("b"));
  EXPECT_EQ(Shown(), "a,b");
  delete view;
  view = nullptr;
  EXPECT_FALSE(model);
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
