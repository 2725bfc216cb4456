#include "qt/list_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QListView>
#include <QPointer>
#include <QSignalSpy>
#include <string>

#include "support/item_views.h"
#include "support/log_capture.h"

namespace {

using ovui_test::Texts;

struct ListModelTest : testing::Test {
  ListModelTest() {
    view->setProperty("binding.value", "{Binding Path=name}");
    model = ListModelOverViewModel::Create(rows, view);
    new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model);
  }
  // The list goes first: the model's reference keeps it until the view goes.
  ~ListModelTest() override {
    base::SafeRelease(rows);
    EXPECT_EQ(destroyed, 0);
    delete view;
    EXPECT_EQ(destroyed, 1);
  }
  void Add(const char* name, int index = -1) { rows->AddRow(name, 0, false, index); }
  int CurrentRow() const { return view->currentIndex().row(); }

  int destroyed = 0;
  ovui_test::Rows* rows = new ovui_test::Rows(&destroyed);
  QListView* view = new QListView;
  QPointer<ListModelOverViewModel> model;
};

TEST_F(ListModelTest, RowsAndTheCurrentRowFollowTheList) {
  Add("b");
  Add("a", 0);
  Add("d", 9);
  Add("c", 2);
  EXPECT_EQ(Texts(model), "a,b,c,d");
  EXPECT_EQ(CurrentRow(), 2);  // the new row is current
  rows->Remove(1);
  EXPECT_EQ(CurrentRow(), 2);  // still in range: kept as a row number
  rows->Remove(2);
  EXPECT_EQ(CurrentRow(), 1);  // the current last row went: the new last one
  // A nested list's rows are announced on this list too, but are not its rows.
  auto* nested = new vm::ViewModelArray;
  rows->Add(nested);
  nested->Add(new ovui_test::Row("x"));
  EXPECT_EQ(model->rowCount(), 3);
  EXPECT_FALSE(model->index(2).data().isValid());
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  rows->Get(1)->SetPropW("name", std::string("z"));
  EXPECT_EQ(Texts(model), "a,z,");
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex().row(), 2);  // every row is repainted

  rows->Reset();
  EXPECT_EQ(CurrentRow(), -1);
  Add("only");
  rows->Remove(0);
  EXPECT_EQ(CurrentRow(), -1);

  ASSERT_TRUE(ovui_test::Show(view));
  for (const char* name : {"a", "b", "c"})
    Add(name);
  rows->SetCurrent(0);
  EXPECT_EQ(CurrentRow(), 0);
  ovui_test::ClickCell(view, model->index(2));
  EXPECT_EQ(rows->GetCurrentViewModel(), rows->Get(2));
}

TEST_F(ListModelTest, BatchesFiltersAndSortsRebuildTheRows) {
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  rows->BeginBatch();
  for (const char* name : {"bob", "al", "ann", "ben"})
    Add(name);
  rows->Remove(0);
  rows->EndBatch();
  EXPECT_EQ(reset.size(), 1);
  EXPECT_EQ(CurrentRow(), 2);  // after a batch the last row is current
  rows->Filter("a");
  EXPECT_EQ(Texts(model), "al,ann");
  Add("carl");  // hidden
  Add("abe", 0);
  EXPECT_EQ(Texts(model), "abe,al,ann");
  rows->Sort("0:name");
  Add("amy", 0);  // inserted first, then sorted into place
  EXPECT_EQ(Texts(model), "ann,amy,al,abe");
  rows->Filter("");
  EXPECT_EQ(Texts(model), "carl,ben,ann,amy,al,abe");
  rows->Remove(rows->Get(0));
  EXPECT_EQ(Texts(model), "ben,ann,amy,al,abe");
  EXPECT_EQ(reset.size(), 7);  // each sort is followed by its re-applied filter
}

TEST_F(ListModelTest, CellValuesKeepTheirKindAndBadViewsAreRefused) {
  rows->AddRow("a", 7);
  const char* const rules[] = {"{Binding Path=qty}", "{Binding Path=missing}", "{}"};
  const QVariant expected[] = {QVariant(7), QVariant(), QVariant()};
  for (int i = 0; i < 3; ++i) {
    QListView other;
    other.setProperty("binding.value", rules[i]);
    ListModelOverViewModel* m = ListModelOverViewModel::Create(rows, &other);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->index(0).data(), expected[i]) << rules[i];
    EXPECT_EQ(m->index(0).data(Qt::EditRole), QVariant()) << rules[i];
  }
  ovui_test::LogCapture log;
  QListView bare;
  EXPECT_EQ(ListModelOverViewModel::Create(rows, &bare), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "qv.isValid()"));
  EXPECT_EQ(ListModelOverViewModel::Create(nullptr, view), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "vm != NULL && list != NULL"));
}

}  // namespace
