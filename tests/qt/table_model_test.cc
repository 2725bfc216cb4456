#include "qt/table_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <map>

#include "mvvm/view_model_htable.h"
#include "qt/binding_context.h"
#include "qt/htable_model.h"
#include "support/item_views.h"
#include "support/log_capture.h"

namespace {

using ovui_test::Texts;

// Records as field maps; an empty name is refused.
struct Stock : ovui_test::Tracked<vm::ViewModelHTable> {
  using Record = std::map<std::string, base::Value>;
  explicit Stock(int* destroyed) : Tracked(destroyed) {
    RegisterValidator("qty_range", new ovui_test::RangeValidator(0, 1000));
  }
  unsigned int Size() const override { return static_cast<unsigned int>(records.size()); }
  bool GetCell(unsigned int row, const std::string& name, base::Value& value) const override {
    value = records.at(row).at(name);
    return true;
  }
  bool SetCell(unsigned int row, const std::string& name, const base::Value& value) override {
    if (name == "name" && !*value.Str()) return false;
    records.at(row)[name] = value;
    return true;
  }
  static Record Fruit(const char* name, int qty = 1, bool fresh = false) {
    return {{"name", name}, {"qty", qty}, {"fresh", fresh}};
  }
  std::vector<Record> records = {Fruit("pear", 3, true), Fruit("apple", 5), Fruit("fig", 1, true)};
};

// A form with a table over a list and one over an HTable, bound from its root.
struct TableTest : testing::Test {
  void SetUp() override {
    rows->AddRow("pear", 3);
    rows->AddRow("apple", 5, true);
    rows->AddRow("fig", 1);
    root->SetSubViewModel("rows", rows);
    root->SetSubViewModel("stock", stock);
    auto* layout = new QVBoxLayout(form);
    for (QTableView* v : {view, hview})
      layout->addWidget(v);
    view->setObjectName("ledger");
    view->setProperty("binding.vm", "rows");
    view->setProperty("binding.value",
                      "{Binding Path=name, Header=Name, Width=140}\n"
                      "{Binding Path=qty, Header=Qty, Validator=qty_range}\n"
                      "{Binding Path=done, Header=Done, Editor=check}\r\n"
                      "not a rule\n\n"
                      "{Binding Path=name, Mode=OneWay}");
    hview->setProperty("binding.vm", "stock");
    hview->setProperty("binding.attribute",
                       "{Binding Path=name, Header=Fruit}\n"
                       "{Binding Path=qty, Header=Quantity, Validator=qty_range}\n"
                       "{Binding Path=fresh, Header=Fresh, Editor=check}");
    ASSERT_TRUE(vm::BindingContext::CreateAndBind(form, root));
    model = qobject_cast<TableModelOverViewModel*>(view->model());
    hmodel = qobject_cast<HighTableModelOverViewModel*>(hview->model());
    ASSERT_TRUE(model);
    ASSERT_TRUE(hmodel);
    new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 model);
    new QAbstractItemModelTester(hmodel, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                 hmodel);
    ASSERT_TRUE(ovui_test::Show(form, QSize(460, 520)));
  }
  // The view models go first: the models keep them until the views go.
  ~TableTest() override {
    base::SafeRelease(root);
    EXPECT_EQ(destroyed, 0);
    delete form;
    EXPECT_EQ(destroyed, 2);
  }
  QModelIndex At(int row, int column) const { return model->index(row, column); }

  ovui_test::LogCapture log;
  int destroyed = 0;
  ovui_test::Rows* rows = new ovui_test::Rows(&destroyed);
  Stock* stock = new Stock(&destroyed);
  vm::ViewModel* root = new vm::ViewModel;
  QWidget* form = new QWidget;
  QTableView *view = new QTableView, *hview = new QTableView;
  QPointer<TableModelOverViewModel> model;
  QPointer<HighTableModelOverViewModel> hmodel;
};

TEST_F(TableTest, ColumnsComeFromTheRulesAndRowsFollowTheList) {
  EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), "Qty");
  EXPECT_EQ(view->horizontalHeader()->sectionSize(0), 140);
  // A check column shows its box only, and toggles instead of editing.
  EXPECT_FALSE(At(1, 2).data().isValid());
  EXPECT_TRUE(At(1, 2).data(Qt::CheckStateRole) == Qt::Checked);
  EXPECT_FALSE(model->setData(At(0, 2), true, Qt::EditRole));
  // Records are columns and fields are rows.
  EXPECT_EQ(hmodel->headerData(1, Qt::Vertical).toString(), "Quantity");

  // Bad lines are logged with the view's name and skipped.
  EXPECT_NE(log.Text().find("ledger skipped: not a rule"), std::string::npos);
  EXPECT_EQ(model->headerData(3, Qt::Horizontal).toString(), "name");  // no Header=: the Path
  EXPECT_FALSE(model->setData(At(0, 3), "kiwi"));                      // one way

  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  rows->AddRow("kiwi", 2, false, 1);
  EXPECT_EQ(view->currentIndex().row(), 1);  // the new row is current
  rows->Remove(2);
  EXPECT_EQ(Texts(model), "pear,kiwi,fig");
  rows->Get(2)->SetPropW("qty", base::Value(9));
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex(), At(2, 3));  // the whole row
  // A nested list's rows are announced on this list too, but are not its rows.
  auto* nested = new vm::ViewModelArray;
  rows->Add(nested);
  nested->Add(new ovui_test::Row("seed"));
  EXPECT_EQ(model->rowCount(), 4);
  rows->Remove(3);

  rows->BeginBatch();
  rows->AddRow("lime");
  rows->Remove(0);
  rows->EndBatch();
  EXPECT_EQ(Texts(model), "kiwi,fig,lime");
  EXPECT_EQ(view->currentIndex().row(), 2);  // after a batch the last row is current
  // A list under attribute rules, or an HTable under value rules, is refused.
  view->setProperty("binding.vm", "stock");
  hview->setProperty("binding.vm", "rows");
  ASSERT_TRUE(vm::BindingContext::CreateAndBind(form, root));
  EXPECT_TRUE(log.HasFailedCheck("Bind", "a"));
  EXPECT_TRUE(log.HasFailedCheck("Bind", "ht"));
}

TEST_F(TableTest, SortsFromCodeAndHeaderMovePersistentIndexes) {
  const QPersistentModelIndex fig(At(2, 1)), pear(At(0, 0));
  rows->Sort("1:name");
  rows->Filter("p");
  EXPECT_FALSE(fig.isValid());
  rows->AddRow("plum", 4);    // sorted into place
  rows->AddRow("cherry", 4);  // hidden by the filter
  EXPECT_EQ(Texts(model), "pear,plum");
  rows->Filter("");
  EXPECT_EQ(Texts(model), "apple,cherry,fig,pear,plum");
  EXPECT_EQ(pear.row(), 3);

  QHeaderView* header = view->horizontalHeader();
  ovui_test::ClickSection(header, 0);
  EXPECT_EQ(rows->GetSortRule(), "0:name");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(pear.row(), 1);
  ovui_test::ClickSection(header, 1);
  EXPECT_EQ(Texts(model, 1), "1,3,4,4,5");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
}

TEST_F(TableTest, EditsChecksAndTheCurrentRowGoBothWays) {
  ovui_test::ClickCell(view, At(2, 0));
  EXPECT_EQ(rows->GetCurrent(), 2u);

  // Refused: nothing is written; the cell shows its old value, marked until a later write.
  const QModelIndex qty = At(1, 1);
  ovui_test::ExpectRefusedEdit(view, qty, "500", "must be between 0 and 100");
  EXPECT_EQ(rows->At(1)->qty, 5);
  EXPECT_TRUE(qty.data() == 5);
  EXPECT_TRUE(qty.data(Qt::ToolTipRole).isValid());
  ASSERT_TRUE(ovui_test::TypeInto(view, qty, "50"));
  EXPECT_EQ(rows->At(1)->qty, 50);
  EXPECT_FALSE(qty.data(Qt::ToolTipRole).isValid());

  view->setCurrentIndex(At(1, 2));
  QTest::keyClick(view, Qt::Key_Space);  // toggles the box through the delegate
  EXPECT_FALSE(rows->At(1)->done);
}

TEST_F(TableTest, HTableRangesAndCellsFollowBothWays) {
  QSignalSpy changed(hmodel.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  stock->BeforeAdd(1, 2);
  stock->records.insert(stock->records.begin() + 1, {Stock::Fruit("kiwi"), Stock::Fruit("lime")});
  stock->AfterAdd();
  EXPECT_EQ(hmodel->index(0, 2).data().toString(), "lime");
  stock->BeforeRemove(0, 1);
  stock->records.erase(stock->records.begin(), stock->records.begin() + 2);
  stock->AfterRemove();
  stock->records[2]["name"] = "date";
  stock->Update();
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex(), hmodel->index(2, 2));
  stock->records.push_back(Stock::Fruit("plum"));
  stock->Update();  // a size change reported only as "update" rebuilds the columns
  EXPECT_EQ(hmodel->index(0, 3).data().toString(), "plum");

  stock->SetCurrent(2);
  EXPECT_EQ(hview->currentIndex().column(), 2);
  ovui_test::ClickCell(hview, hmodel->index(1, 1));
  EXPECT_EQ(stock->GetCurrent(), 1u);
  ovui_test::ClickSection(hview->horizontalHeader(), 0);
  EXPECT_EQ(stock->GetCurrent(), 0u);

  EXPECT_TRUE(hmodel->setData(hmodel->index(1, 0), 7));
  EXPECT_EQ(stock->records[0]["qty"].I32(), 7);
  EXPECT_TRUE(hmodel->setData(hmodel->index(2, 1), Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(stock->records[1]["fresh"].Bool());
  // Refused by the validator and by the table itself.
  const QModelIndex qty = hmodel->index(1, 2), name = hmodel->index(0, 1);
  EXPECT_FALSE(hmodel->setData(qty, 5000));
  EXPECT_EQ(qty.data(Qt::ToolTipRole).toString(), "must be between 0 and 1000");
  EXPECT_EQ(qty.data(Qt::EditRole).toInt(), 5000);  // kept for the editor
  EXPECT_FALSE(hmodel->setData(name, ""));
  EXPECT_TRUE(name.data(Qt::ToolTipRole) == "refused");
  EXPECT_TRUE(hmodel->setData(name, "quince"));
  EXPECT_FALSE(name.data(Qt::ToolTipRole).isValid());
}

}  // namespace
