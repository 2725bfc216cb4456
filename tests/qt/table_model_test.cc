#include "qt/table_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QHeaderView>
#include <QImage>
#include <QLineEdit>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <string>
#include <utility>
#include <vector>

#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_htable.h"
#include "mvvm/view_model_item.h"
#include "qt/binding_context.h"
#include "qt/htable_model.h"
#include "support/item_views.h"
#include "support/log_capture.h"
#include "support/toy_objects.h"

namespace {

struct Row : vm::ViewModelItem {
  Row(std::string name, int qty, bool done) : name(std::move(name)), qty(qty), done(done) {
    InstallProp("name", &this->name);
    InstallProp("qty", &this->qty);
    InstallProp("done", &this->done);
    RegisterValidator("qty_range", new ovui_test::RangeValidator(0, 100));
  }
  std::string name;
  int qty;
  bool done;
};

// Keeps the rows whose name starts with the rule.
struct Rows : ovui_test::Tracked<vm::ViewModelArrayExt> {
  using Tracked::Tracked;
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    return static_cast<Row*>(item)->name.rfind(rule, 0) == 0;
  }
  Row* At(unsigned int i) const { return static_cast<Row*>(Get(i)); }
};

const char kColumns[] =
    "{Binding Path=name, Header=Name, Width=140}\n"
    "{Binding Path=qty, Header=Qty, Validator=qty_range}\n"
    "{Binding Path=done, Header=Done, Editor=check}";

// Aborts the test program as soon as `model` breaks Qt's contract.
void Check(QAbstractItemModel* model) {
  new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal, model);
}

QPoint SectionCenter(QHeaderView* header, int section) {
  const int along = header->sectionViewportPosition(section) + header->sectionSize(section) / 2;
  return header->orientation() == Qt::Horizontal ? QPoint(along, header->height() / 2)
                                                 : QPoint(header->width() / 2, along);
}

void Show(QWidget* w, QSize size = QSize(420, 220)) {
  w->resize(size);
  w->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(w));
}

struct TableTest : testing::Test {
  TableTest() {
    Add("pear", 3, false);
    Add("apple", 5, true);
    Add("fig", 1, false);
    view->setObjectName("stock");
    view->setProperty("binding.value", kColumns);
    model = TableModelOverViewModel::Create(rows, view);
    Check(model);
  }
  ~TableTest() override {
    delete view;
    base::SafeRelease(rows);
  }
  void Add(const char* name, int qty = 0, bool done = false, int index = -1) {
    rows->Add(new Row(name, qty, done), index);
  }
  std::string Shown(int column = 0) const {  // "a,b"
    return ovui_test::ColumnTexts(model, column).join(',').toStdString();
  }
  QModelIndex At(int row, int column) const { return model->index(row, column); }
  void Type(const QModelIndex& cell, const char* text) {
    ASSERT_TRUE(ovui_test::TypeInCell(view, cell, text));
  }

  int destroyed = 0;
  Rows* rows = new Rows(&destroyed);
  QTableView* view = new QTableView;
  QPointer<TableModelOverViewModel> model;
};

TEST_F(TableTest, ColumnsComeFromTheRuleLines) {
  ASSERT_TRUE(model);
  EXPECT_EQ(view->model(), model.data());
  EXPECT_NE(qobject_cast<vm::CellDelegate*>(view->itemDelegate()), nullptr);
  ASSERT_EQ(model->columnCount(), 3);
  EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), "Qty");
  EXPECT_EQ(model->headerData(2, Qt::Vertical).toInt(), 3);
  EXPECT_EQ(view->horizontalHeader()->sectionSize(0), 140);
  EXPECT_EQ(Shown(), "pear,apple,fig");
  EXPECT_EQ(At(1, 1).data(), QVariant(5));
  // A check column shows its box only, and toggles instead of editing.
  EXPECT_FALSE(At(1, 2).data().isValid());
  EXPECT_EQ(At(1, 2).data(Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_EQ(At(0, 2).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_TRUE(model->flags(At(0, 2)) & Qt::ItemIsUserCheckable);
  EXPECT_FALSE(model->flags(At(0, 2)) & Qt::ItemIsEditable);
  EXPECT_TRUE(model->flags(At(0, 0)) & Qt::ItemIsEditable);

  ovui_test::LogCapture log;
  QTableView other;
  other.setObjectName("ledger");
  other.setProperty("binding.value",
                    "{Binding Path=name, Mode=OneWay}\r\nnot a rule\n\n{Binding Path=qty}");
  TableModelOverViewModel* m = TableModelOverViewModel::Create(rows, &other);
  ASSERT_TRUE(m);
  ASSERT_EQ(m->columnCount(), 2);
  EXPECT_EQ(m->headerData(1, Qt::Horizontal).toString(), "qty");  // no Header=: the Path
  EXPECT_NE(log.Text().find("ledger"), std::string::npos);
  EXPECT_NE(log.Text().find("not a rule"), std::string::npos);
  EXPECT_FALSE(m->flags(m->index(0, 0)) & Qt::ItemIsEditable);
  EXPECT_FALSE(m->setData(m->index(0, 0), "kiwi"));
  EXPECT_EQ(rows->At(0)->name, "pear");
  EXPECT_EQ(TableModelOverViewModel::Create(nullptr, &other), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Create", "vm != NULL && view != NULL"));
}

TEST_F(TableTest, RowsFollowTheList) {
  QSignalSpy inserted(model.data(), SIGNAL(rowsInserted(QModelIndex, int, int)));
  QSignalSpy removed(model.data(), SIGNAL(rowsRemoved(QModelIndex, int, int)));
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  Add("kiwi", 2, false, 1);
  EXPECT_EQ(Shown(), "pear,kiwi,apple,fig");
  ASSERT_EQ(inserted.size(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 1);
  EXPECT_EQ(view->currentIndex().row(), 1);  // the new row is current

  rows->Remove(2);
  EXPECT_EQ(Shown(), "pear,kiwi,fig");
  ASSERT_EQ(removed.size(), 1);
  EXPECT_EQ(removed[0][2].toInt(), 2);

  // A nested list's rows are announced on this list too, but are not its rows.
  auto* nested = new vm::ViewModelArray;
  rows->Add(nested);
  nested->Add(new Row("seed", 0, false));
  EXPECT_EQ(model->rowCount(), 4);
  rows->Remove(3);

  rows->BeginBatch();
  Add("lime");
  rows->Remove(0);
  rows->EndBatch();
  EXPECT_EQ(Shown(), "kiwi,fig,lime");
  EXPECT_EQ(view->currentIndex().row(), 2);  // after a batch the last row is current
  rows->Reset();
  EXPECT_EQ(model->rowCount(), 0);
  EXPECT_EQ(reset.size(), 2);
  EXPECT_EQ(inserted.size(), 2);
  EXPECT_EQ(removed.size(), 2);
}

TEST_F(TableTest, FilterAndSortMovePersistentIndexes) {
  QSignalSpy layout(model.data(), SIGNAL(layoutChanged()));
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  const QPersistentModelIndex fig(At(2, 1));
  const QPersistentModelIndex pear(At(0, 0));
  rows->Sort("1:name");
  EXPECT_EQ(Shown(), "apple,fig,pear");
  EXPECT_EQ(fig.row(), 1);
  EXPECT_EQ(fig.column(), 1);
  EXPECT_EQ(pear.row(), 2);

  rows->Filter("p");
  EXPECT_EQ(Shown(), "pear");
  EXPECT_FALSE(fig.isValid());
  EXPECT_EQ(pear.row(), 0);
  Add("plum", 4);    // sorted into place
  Add("cherry", 4);  // hidden by the filter
  EXPECT_EQ(Shown(), "pear,plum");
  rows->Filter("");
  EXPECT_EQ(Shown(), "apple,cherry,fig,pear,plum");
  EXPECT_EQ(pear.row(), 3);
  rows->Sort("0:qty");
  EXPECT_EQ(Shown(1), "5,4,4,3,1");
  EXPECT_EQ(pear.row(), 3);
  EXPECT_GE(layout.size(), 6);
  EXPECT_EQ(reset.size(), 0);
}

TEST_F(TableTest, HeaderClicksSortByTheColumn) {
  Show(view);
  QHeaderView* header = view->horizontalHeader();
  EXPECT_TRUE(header->isSortIndicatorShown());
  EXPECT_EQ(header->sortIndicatorSection(), -1);

  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, SectionCenter(header, 0));
  EXPECT_EQ(rows->GetSortRule(), "1:name");
  EXPECT_EQ(Shown(), "apple,fig,pear");
  EXPECT_EQ(header->sortIndicatorSection(), 0);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);

  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, SectionCenter(header, 0));
  EXPECT_EQ(rows->GetSortRule(), "0:name");
  EXPECT_EQ(Shown(), "pear,fig,apple");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);

  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, SectionCenter(header, 1));
  EXPECT_EQ(Shown(1), "1,3,5");
  EXPECT_EQ(header->sortIndicatorSection(), 1);
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
  QApplication::processEvents();
}

TEST_F(TableTest, TheCurrentRowFollowsBothWays) {
  Show(view);
  rows->SetCurrent(0);
  EXPECT_EQ(view->currentIndex().row(), 0);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(At(2, 0)).center());
  EXPECT_EQ(rows->GetCurrent(), 2u);
  EXPECT_EQ(rows->GetCurrentViewModel(), rows->Get(2));
  QTest::keyClick(view, Qt::Key_Up);
  EXPECT_EQ(rows->GetCurrent(), 1u);
  rows->Remove(1);  // the list picks its new current row; the view follows
  EXPECT_EQ(view->currentIndex().row(), static_cast<int>(rows->GetCurrent()));
}

TEST_F(TableTest, EditsWriteThroughTheRule) {
  Show(view);
  Type(At(0, 0), "kiwi");
  EXPECT_EQ(rows->At(0)->name, "kiwi");
  EXPECT_EQ(At(0, 0).data().toString(), "kiwi");

  // The validator refuses: nothing is written, the cell turns red with the
  // message, and the editor opens again with what was typed.
  const QModelIndex qty = At(1, 1);
  Type(qty, "500");
  EXPECT_EQ(rows->At(1)->qty, 5);
  EXPECT_EQ(qty.data().toInt(), 5);
  EXPECT_EQ(qty.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_EQ(qty.data(Qt::ToolTipRole).toString(), "must be between 0 and 100");
  QTRY_VERIFY(view->indexWidget(qty) != nullptr);
  auto* spin = qobject_cast<QSpinBox*>(view->indexWidget(qty));
  ASSERT_TRUE(spin);
  EXPECT_EQ(spin->value(), 500);
  QTest::keyClick(spin, Qt::Key_Escape);
  QApplication::processEvents();

  // Only a later successful write clears the mark.
  EXPECT_TRUE(qty.data(Qt::ToolTipRole).isValid());
  Type(qty, "50");
  EXPECT_EQ(rows->At(1)->qty, 50);
  EXPECT_FALSE(qty.data(Qt::ForegroundRole).isValid());
  EXPECT_FALSE(qty.data(Qt::ToolTipRole).isValid());
  QApplication::processEvents();
  EXPECT_EQ(view->indexWidget(qty), nullptr);
}

TEST_F(TableTest, CheckColumnsToggleInPlace) {
  Show(view);
  EXPECT_TRUE(model->setData(At(0, 2), Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(rows->At(0)->done);
  EXPECT_FALSE(model->setData(At(0, 2), true, Qt::EditRole));

  // A click on the box itself.
  const QModelIndex cell = At(1, 2);
  QStyleOptionViewItem option;
  option.initFrom(view->viewport());
  option.rect = view->visualRect(cell);
  option.features |= QStyleOptionViewItem::HasCheckIndicator;
  const QRect box =
      view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, view);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, box.center());
  EXPECT_FALSE(rows->At(1)->done);
  EXPECT_EQ(cell.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
}

TEST_F(TableTest, ChangedRowsAreRepainted) {
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  rows->Get(2)->SetPropW("qty", base::Value(9));
  EXPECT_EQ(At(2, 1).data().toInt(), 9);
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex(), At(2, 2));
  rows->UpdateViewModel();
  EXPECT_EQ(changed.size(), 2);
}

// Records in a plain vector; an empty name is refused.
struct Fruit {
  std::string name;
  int qty;
  bool fresh;
};

struct Stock : ovui_test::Tracked<vm::ViewModelHTable> {
  explicit Stock(int* destroyed = nullptr) : Tracked(destroyed) {
    RegisterValidator("qty_range", new ovui_test::RangeValidator(0, 1000));
    records = {{"pear", 3, true}, {"apple", 5, false}, {"fig", 1, true}};
  }
  unsigned int Size() const override { return static_cast<unsigned int>(records.size()); }
  bool GetCell(unsigned int row, const std::string& name, base::Value& value) const override {
    if (row >= Size()) return false;
    const Fruit& f = records[row];
    if (name == "name") value = base::Value(f.name);
    if (name == "qty") value = base::Value(f.qty);
    if (name == "fresh") value = base::Value(f.fresh);
    return !value.IsNull();
  }
  bool SetCell(unsigned int row, const std::string& name, const base::Value& value) override {
    if (row >= Size()) return false;
    Fruit& f = records[row];
    if (name == "name") {
      const char* text = value.Str();
      if (!text || !*text) return false;
      f.name = text;
    }
    if (name == "qty") f.qty = value.I32();
    if (name == "fresh") f.fresh = value.Bool();
    return true;
  }
  void Insert(int at, std::vector<Fruit> more) {
    BeforeAdd(at, at + static_cast<int>(more.size()) - 1);
    records.insert(records.begin() + at, more.begin(), more.end());
    AfterAdd();
  }
  void Erase(int at, int count) {
    BeforeRemove(at, at + count - 1);
    records.erase(records.begin() + at, records.begin() + at + count);
    AfterRemove();
  }
  std::vector<Fruit> records;
};

const char kFields[] =
    "{Binding Path=name, Header=Fruit}\n"
    "{Binding Path=qty, Header=Quantity, Width=90, Validator=qty_range}\n"
    "{Binding Path=fresh, Header=Fresh, Editor=check}";

struct HighTableTest : testing::Test {
  HighTableTest() {
    view->setProperty("binding.attribute", kFields);
    model = HighTableModelOverViewModel::Create(stock, view);
    Check(model);
  }
  ~HighTableTest() override {
    delete view;
    base::SafeRelease(stock);
  }
  QModelIndex At(int field, int record) const { return model->index(field, record); }
  std::string Names() const {
    std::string out;
    for (int c = 0; c < model->columnCount(); ++c)
      out += (c ? "," : "") + At(0, c).data().toString().toStdString();
    return out;
  }

  int destroyed = 0;
  Stock* stock = new Stock(&destroyed);
  QTableView* view = new QTableView;
  QPointer<HighTableModelOverViewModel> model;
};

TEST_F(HighTableTest, RecordsAreColumnsAndFieldsAreRows) {
  ASSERT_TRUE(model);
  ASSERT_EQ(model->rowCount(), 3);
  ASSERT_EQ(model->columnCount(), 3);
  EXPECT_EQ(model->headerData(1, Qt::Vertical).toString(), "Quantity");
  EXPECT_EQ(model->headerData(0, Qt::Horizontal).toInt(), 1);
  EXPECT_EQ(model->headerData(2, Qt::Horizontal).toInt(), 3);
  EXPECT_EQ(view->horizontalHeader()->sectionSize(2), 90);
  EXPECT_EQ(Names(), "pear,apple,fig");
  EXPECT_EQ(At(1, 1).data(), QVariant(5));
  EXPECT_EQ(At(2, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_FALSE(At(2, 0).data().isValid());
}

TEST_F(HighTableTest, RangesInsertAndRemoveColumns) {
  QSignalSpy inserted(model.data(), SIGNAL(columnsInserted(QModelIndex, int, int)));
  QSignalSpy removed(model.data(), SIGNAL(columnsRemoved(QModelIndex, int, int)));
  QSignalSpy changed(model.data(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
  stock->Insert(1, {{"kiwi", 2, true}, {"lime", 4, false}});
  EXPECT_EQ(Names(), "pear,kiwi,lime,apple,fig");
  ASSERT_EQ(inserted.size(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 1);
  EXPECT_EQ(inserted[0][2].toInt(), 2);

  stock->Erase(0, 2);
  EXPECT_EQ(Names(), "lime,apple,fig");
  ASSERT_EQ(removed.size(), 1);
  EXPECT_EQ(removed[0][2].toInt(), 1);

  stock->records[2].name = "date";
  stock->Update();
  EXPECT_EQ(Names(), "lime,apple,date");
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex(), At(2, 2));

  // A size change reported only as "update" rebuilds the columns.
  QSignalSpy reset(model.data(), SIGNAL(modelReset()));
  stock->records.push_back({"plum", 1, true});
  stock->Update();
  EXPECT_EQ(reset.size(), 1);
  EXPECT_EQ(Names(), "lime,apple,date,plum");
}

TEST_F(HighTableTest, TheCurrentRecordFollowsBothWays) {
  Show(view);
  stock->SetCurrent(2);
  EXPECT_EQ(view->currentIndex().column(), 2);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(At(1, 1)).center());
  EXPECT_EQ(stock->GetCurrent(), 1u);
  QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {},
                    SectionCenter(view->horizontalHeader(), 0));
  EXPECT_EQ(stock->GetCurrent(), 0u);
}

TEST_F(HighTableTest, CellsWriteThroughTheTable) {
  EXPECT_TRUE(model->setData(At(1, 0), 7));
  EXPECT_EQ(stock->records[0].qty, 7);
  EXPECT_TRUE(model->setData(At(2, 1), Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(stock->records[1].fresh);

  // Refused by the validator and by the table itself.
  EXPECT_FALSE(model->setData(At(1, 2), 5000));
  EXPECT_EQ(stock->records[2].qty, 1);
  EXPECT_EQ(At(1, 2).data(Qt::ToolTipRole).toString(), "must be between 0 and 1000");
  EXPECT_EQ(At(1, 2).data(Qt::EditRole).toInt(), 5000);
  EXPECT_FALSE(model->setData(At(0, 1), ""));
  EXPECT_EQ(At(0, 1).data(Qt::ToolTipRole).toString(), "refused");
  EXPECT_EQ(At(0, 1).data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_EQ(At(0, 1).data().toString(), "apple");
  EXPECT_TRUE(model->setData(At(0, 1), "quince"));
  EXPECT_FALSE(At(0, 1).data(Qt::ToolTipRole).isValid());
  EXPECT_EQ(stock->records[1].name, "quince");
}

// Both tables in one form bound from its root view model, and views in the
// wrong place refused.
TEST(TableBindingTest, TheBinderPicksTheModelByTheViewModelKind) {
  int destroyed = 0;
  auto* rows = new Rows(&destroyed);
  rows->Add(new Row("pear", 3, true));
  rows->Add(new Row("apple", 5, false));
  auto* stock = new Stock(&destroyed);
  auto* root = new vm::ViewModel;
  root->SetSubViewModel("rows", rows);
  root->SetSubViewModel("stock", stock);

  auto* form = new QWidget;
  auto* layout = new QVBoxLayout(form);
  auto* table = new QTableView;
  table->setProperty("binding.vm", "rows");
  table->setProperty("binding.value", kColumns);
  auto* htable = new QTableView;
  htable->setProperty("binding.vm", "stock");
  htable->setProperty("binding.attribute", kFields);
  auto* not_a_list = new QTableView;
  not_a_list->setProperty("binding.vm", "stock");
  not_a_list->setProperty("binding.value", kColumns);
  auto* not_a_table = new QTableView;
  not_a_table->setProperty("binding.vm", "rows");
  not_a_table->setProperty("binding.attribute", kFields);
  for (QWidget* w : {table, htable, not_a_list, not_a_table})
    layout->addWidget(w);

  ovui_test::LogCapture log;
  ASSERT_TRUE(vm::BindingContext::CreateAndBind(form, root));
  auto* rows_model = qobject_cast<TableModelOverViewModel*>(table->model());
  auto* stock_model = qobject_cast<HighTableModelOverViewModel*>(htable->model());
  ASSERT_TRUE(rows_model);
  ASSERT_TRUE(stock_model);
  Check(rows_model);
  Check(stock_model);
  EXPECT_EQ(not_a_list->model(), nullptr);
  EXPECT_EQ(not_a_table->model(), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Bind", "a"));
  EXPECT_TRUE(log.HasFailedCheck("Bind", "ht"));
  EXPECT_EQ(rows_model->index(1, 0).data().toString(), "apple");
  EXPECT_EQ(stock_model->index(0, 2).data().toString(), "fig");

  // Rendered offscreen: both tables, with a refused cell in each.
  Show(form, QSize(460, 520));
  EXPECT_FALSE(rows_model->setData(rows_model->index(0, 1), 500));
  EXPECT_FALSE(stock_model->setData(stock_model->index(1, 1), -4000));
  rows->Sort("0:name");
  rows->SetCurrent(1);
  QApplication::processEvents();
  EXPECT_EQ(table->horizontalHeader()->sortIndicatorSection(), 0);
  const QImage shot = form->grab().toImage();
  EXPECT_TRUE(shot.save("table_model_test.png"));
  // Some text of the refused cell is drawn red.
  const QRect cell = table->visualRect(rows_model->index(0, 1))
                         .translated(table->viewport()->mapTo(form, QPoint(0, 0)));
  bool red = false;
  for (int y = cell.top(); y <= cell.bottom() && !red; ++y) {
    for (int x = cell.left(); x <= cell.right() && !red; ++x) {
      const QColor c =
          shot.pixelColor(x * shot.width() / form->width(), y * shot.height() / form->height());
      red = c.red() > 180 && c.green() < 90 && c.blue() < 90;
    }
  }
  EXPECT_TRUE(red);

  // The view models go first; the models still hold them, and go with the views.
  const QPointer<QAbstractItemModel> models[] = {rows_model, stock_model};
  root->Release();
  stock->Insert(0, {{"kiwi", 2, true}});
  EXPECT_EQ(stock_model->columnCount(), 4);
  EXPECT_EQ(destroyed, 0);
  delete form;
  EXPECT_FALSE(models[0]);
  EXPECT_FALSE(models[1]);
  EXPECT_EQ(destroyed, 2);
}

}  // namespace
