// The form demo worked through as a person would: its own Designer file, its
// own view models, real clicks and keys, on every tab.
#include <gtest/gtest.h>

#include <QtCharts/QBarSet>
#include <QtTest>
#include <QtWidgets>

#include "catalogue.h"
#include "form_loader.h"
#include "order_form.h"
#include "ovui_qt.h"
#include "support/item_views.h"
#include "support/menus.h"
#include "support/modal.h"

namespace {

using ovui_test::ColumnTexts;

// Waits for the deferred view update, or whatever comes on a later turn.
#define EXPECT_SETTLED(condition) \
  EXPECT_TRUE(QTest::qWaitFor([&] { return condition; }, 1000)) << #condition

QString Euros(const char* amount) {
  return QString::fromUtf8("\xE2\x82\xAC ") + amount;
}

class FormDemoTest : public testing::Test {
 protected:
  FormDemoTest() {
    window = LoadForm();
    if (!window) qFatal("cannot load the form");
    EXPECT_TRUE(vm::BindingContext::CreateAndBind(window.get(), form));
    window->show();
  }
  ~FormDemoTest() override {
    window.reset();
    form->Release();
  }

  // A widget of the form; one missing means the .ui and the test disagree.
  template <typename W = QWidget>
  W* Find(const char* name) {
    W* w = window->findChild<W*>(name);
    if (!w) qFatal("the form has no %s", name);
    return w;
  }
  QStringList Texts(std::initializer_list<const char*> labels) {
    QStringList texts;
    for (const char* name : labels)
      texts << Find<QLabel>(name)->text();
    return texts;
  }
  QStringList StatusFields() {
    QStringList texts;
    for (QLabel* field : Find<QStatusBar>("status")->findChildren<QLabel*>())
      texts << field->text();
    return texts;
  }

  // The entries of the menu at `at`; picks the first enabled one starting with `pick`.
  std::vector<std::string> RightClick(QListView* orders, QPoint at, const QString& pick = {}) {
    std::vector<std::string> entries;
    const auto choose = [&](QMenu& menu) {
      entries = ovui_test::Describe(menu);
      for (QAction* action : menu.actions())
        if (!pick.isEmpty() && action->isEnabled() && action->text().startsWith(pick))
          return action->trigger();
    };
    ovui_test::RightClick(*orders->viewport(), choose, at);
    return entries;
  }

  void OpenTab(int index) {
    QTabBar* bar = Find<QTabWidget>("tabs")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    EXPECT_EQ(bar->currentIndex(), index);
  }
  void Click(QAbstractItemView* view, const QModelIndex& cell) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell).center());
  }
  OrderForm* form = new OrderForm();
  std::unique_ptr<QWidget> window;
};

}  // namespace

TEST_F(FormDemoTest, OrderFieldsValidateAndFollowEachOther) {
  auto* customer = Find<QLineEdit>("customer");
  auto* save = Find<QPushButton>("save");
  EXPECT_EQ(customer->text(), "Ada Lovelace");
  EXPECT_TRUE(save->isEnabled());

  customer->selectAll();
  QTest::keyClick(customer, Qt::Key_Backspace);
  EXPECT_EQ(Texts({"customer_error"}), QStringList{"Please enter the customer's name."});
  EXPECT_FALSE(save->isEnabled());
  EXPECT_EQ(form->GetOrder()->customer, "Ada Lovelace");  // refused, not written

  QTest::keyClicks(customer, "Alan Turing");
  EXPECT_EQ(form->GetOrder()->customer, "Alan Turing");
  EXPECT_TRUE(save->isEnabled());
  EXPECT_SETTLED(Texts({"customer_error"}) == QStringList{""});

  auto* spin = Find<QSpinBox>("quantity");
  auto* slider = Find<QSlider>("quantity_slider");
  auto* product = Find<QComboBox>("product");
  EXPECT_EQ(slider->value(), 2);
  EXPECT_EQ(product->currentText(), "House blend");
  EXPECT_EQ(Texts({"price", "total"}), QStringList({Euros("8.50"), Euros("17.00")}));

  spin->setFocus();
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_SETTLED(slider->value() == 3);
  EXPECT_EQ(Texts({"total"}), QStringList{Euros("25.50")});

  product->setCurrentIndex(1);  // the price follows the product
  EXPECT_SETTLED(Texts({"price", "total"}) == QStringList({Euros("12.90"), Euros("38.70")}));

  slider->setValue(10);  // moving the slider writes as it goes
  EXPECT_SETTLED(spin->value() == 10);

  for (bool on : {false, true}) {  // the gift card group follows the check box
    QTest::mouseClick(Find("gift"), Qt::LeftButton);
    EXPECT_SETTLED(Find("gift_box")->isEnabled() == on && form->GetOrder()->gift == on);
  }
}

TEST_F(FormDemoTest, SavingListsTheOrderTheListMenuRemovesItAndCloseCloses) {
  auto* orders = Find<QListView>("orders");
  QAbstractItemModel* model = orders->model();
  EXPECT_EQ(StatusFields(), QStringList({"Ready", "2 saved orders"}));

  QString toast;  // the library's own, a message box that closes itself
  ovui_test::OnNextDialog<QMessageBox>([&](QMessageBox* box) {
    toast = box->text();
    box->accept();
  });
  QTest::mouseClick(Find<QPushButton>("save"), Qt::LeftButton);
  EXPECT_EQ(toast, "Order saved");
  EXPECT_EQ(ColumnTexts(model, 0).value(2), "2 x House blend for Ada Lovelace");
  EXPECT_EQ(orders->currentIndex().row(), 2);
  EXPECT_SETTLED(StatusFields() ==
                 QStringList({"Saved: 2 x House blend for Ada Lovelace", "3 saved orders"}));

  // A click makes the first order current; the menu offers to remove it.
  const QPoint first = orders->visualRect(model->index(0, 0)).center();
  Click(orders, model->index(0, 0));
  EXPECT_EQ(RightClick(orders, first, "Remove \""),
            (std::vector<std::string>{"Remove \"1 x Decaf Colombia for Charles Babbage\"", "-",
                                      "Remove all"}));
  EXPECT_EQ(ColumnTexts(model, 0),
            QStringList({"3 x House blend for Grace Hopper", "2 x House blend for Ada Lovelace"}));
  EXPECT_SETTLED(StatusFields().value(1) == "2 saved orders");

  RightClick(orders, first, "Remove all");
  EXPECT_SETTLED(StatusFields().value(1) == "No saved orders");
  // With nothing left, both entries are greyed out.
  EXPECT_EQ(RightClick(orders, first), (std::vector<std::string>{"[Remove]", "-", "[Remove all]"}));

  QTest::mouseClick(Find<QPushButton>("close"), Qt::LeftButton);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(FormDemoTest, ProductTreeFiltersAndTheDetailFormFollowsTheSelection) {
  OpenTab(1);
  auto* tree = Find<QTreeView>("products");
  auto* filter = Find<QLineEdit>("product_filter");
  auto* name = Find<QLineEdit>("detail_name");
  QAbstractItemModel* model = tree->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(ColumnTexts(model, 0), QStringList({"Blends", "Single origin", "Decaf"}));
  EXPECT_TRUE(tree->isExpanded(model->index(0, 0)));
  EXPECT_EQ(name->text(), "House blend");  // selected when the tab was built

  // Names and origins both match; categories stay above what they hold.
  QTest::keyClicks(filter, "kenya");
  EXPECT_EQ(ColumnTexts(model, 0), QStringList{"Single origin"});
  EXPECT_EQ(ColumnTexts(model, 0, model->index(0, 0)), QStringList{"Kenya AA"});
  filter->selectAll();
  QTest::keyClicks(filter, "Colombia");  // the house blend is from Brazil and Colombia
  EXPECT_EQ(ColumnTexts(model, 0, model->index(0, 0)), QStringList{"House blend"});
  filter->selectAll();
  QTest::keyClick(filter, Qt::Key_Backspace);
  ASSERT_EQ(ColumnTexts(model, 0, model->index(1, 0)).size(), 3);

  const QModelIndex single = model->index(1, 0);
  EXPECT_SETTLED(tree->isExpanded(single));
  const QModelIndex huila = model->index(1, 0, single);
  Click(tree, huila);
  EXPECT_SETTLED(name->text() == "Colombia Huila");
  const auto detail = [&] { return Texts({"detail_kind", "detail_price", "detail_stock"}); };
  EXPECT_EQ(detail(), QStringList({"Single origin", Euros("11.40"), "In stock"}));

  // The detail form writes to the selected coffee; its row follows.
  name->end(false);
  QTest::keyClicks(name, " Supremo");
  EXPECT_SETTLED(huila.data().toString() == "Colombia Huila Supremo");

  // Space on the check cell takes the coffee out of stock; its category
  // counts it, and the detail form follows when the category is selected.
  const QModelIndex in_stock = huila.siblingAtColumn(2);
  Click(tree, in_stock);
  QTest::keyClick(tree, Qt::Key_Space);
  EXPECT_EQ(in_stock.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_FALSE(single.siblingAtColumn(2).data(Qt::CheckStateRole).isValid());  // no box
  EXPECT_SETTLED(detail().value(2) == "Sold out");
  Click(tree, single);
  EXPECT_SETTLED(name->text() == "Single origin");
  EXPECT_EQ(detail(), QStringList({"Category", "", "1 of 3 in stock"}));
}

TEST_F(FormDemoTest, StockTableSortsFiltersAndEditsItsCells) {
  OpenTab(1);
  auto* table = Find<QTableView>("stock");
  auto* filter = Find<QLineEdit>("stock_filter");
  QAbstractItemModel* model = table->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  auto* header = qobject_cast<QHeaderViewExt*>(table->horizontalHeader());
  ASSERT_TRUE(header && header->titleWidget(0) == filter);
  ASSERT_EQ(model->columnCount(), 4);
  EXPECT_EQ(ColumnTexts(model, 3).mid(0, 2), QStringList({Euros("8.50"), Euros("9.80")}));

  // A click on a title sorts by that column; a second click reverses it.
  auto click_title = [&](int section) {
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, 6);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
    return model->index(0, 0).data().toString();
  };
  click_title(2);
  EXPECT_EQ(ColumnTexts(model, 2), QStringList({"0", "0", "2", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(click_title(2), "Ethiopia Yirgacheffe");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(click_title(0), "Breakfast blend");
  EXPECT_TRUE(header->isSortIndicatorShown());

  // The filter under the "Product" title keeps the matching rows.
  QTest::keyClicks(filter, "decaf");
  EXPECT_EQ(ColumnTexts(model, 0), QStringList({"Decaf Colombia", "Swiss water decaf"}));

  // The roast is chosen from the list's "roasts".
  const QModelIndex roast = model->index(1, 1);
  table->edit(roast);
  auto* combo = qobject_cast<QComboBox*>(table->indexWidget(roast));
  ASSERT_EQ(combo ? combo->currentText() : "", "Dark");
  QTest::keyClick(combo, Qt::Key_Up);
  QTest::keyClick(combo, Qt::Key_Return);
  EXPECT_SETTLED(roast.data().toString() == "Medium");

  // Bags edit in a spin box; a refused value stays out, and the cell says why in red.
  const QModelIndex bags = model->index(1, 2);
  for (const char* typed : {"12", "-3"}) {
    ASSERT_TRUE(ovui_test::TypeInto(table, bags, typed));
    EXPECT_EQ(bags.data().toString(), "12");
  }
  EXPECT_EQ(bags.data(Qt::ToolTipRole).toString(), "Between 0 and 99 bags, please.");
  EXPECT_EQ(bags.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_FALSE(model->flags(model->index(1, 3)) & Qt::ItemIsEditable);  // the price

  // So are names under three letters.
  ASSERT_TRUE(ovui_test::TypeInto(table, model->index(1, 0), "Sw"));
  EXPECT_EQ(model->index(1, 0).data().toString(), "Swiss water decaf");
  EXPECT_EQ(model->index(1, 0).data(Qt::ToolTipRole).toString(),
            "A product needs a name of at least 3 letters.");
}

TEST_F(FormDemoTest, MonthlyFiguresLieOnTheirSideAndTheChartGoesLive) {
  OpenTab(1);
  auto* months = Find<QTableView>("months");
  QAbstractItemModel* model = months->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  Catalogue* shop = form->GetCatalogue();

  // A column per month; a row per field, labelled.
  ASSERT_EQ(QSize(model->columnCount(), model->rowCount()), QSize(6, 5));
  EXPECT_EQ(model->headerData(3, Qt::Vertical).toString(), "Average");
  EXPECT_EQ(model->index(0, 5).data().toString(), "Jun");
  EXPECT_EQ(model->index(1, 0).data().toString(), Euros("4,211"));
  EXPECT_EQ(model->index(4, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_EQ(model->index(4, 1).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);

  // Orders edit; the average follows.
  ASSERT_TRUE(ovui_test::TypeInto(months, model->index(2, 0), "150"));
  EXPECT_EQ(shop->GetMonths()->Months()[0].orders, 150);
  EXPECT_EQ(model->index(3, 0).data().toString(), Euros("28.07"));

  // A bar set per series, a bar per month; the ticker raises June's alone.
  ASSERT_EQ(shop->GetChartData().GetSeries().size(), 2u);
  auto* revenue = qobject_cast<QtCharts::QBarSet*>(vm::FindChartSeries(
      Find<ChartViewEx>("sales_chart")->chart(), shop->GetChartData().GetSeries().front().id));
  ASSERT_TRUE(revenue && revenue->count() == 6);
  const double june = revenue->at(5);
  const QString june_cell = model->index(1, 5).data().toString();
  EXPECT_TRUE(QTest::qWaitFor([&] { return revenue->at(5) > june; }, 5000));
  EXPECT_DOUBLE_EQ(revenue->at(0), 4.2105);
  EXPECT_NE(model->index(1, 5).data().toString(), june_cell);
}

TEST_F(FormDemoTest, SettingsChangeTheOtherTabs) {
  OpenTab(2);
  auto* menu = Find<CMenuContainer>("settings_menu");
  auto* roasts = Find<CCheckComboBox>("roast_filter");
  QAbstractItemModel* stock = Find<QTableView>("stock")->model();
  const auto click = [&](int button) { QTest::mouseClick(menu->button(button), Qt::LeftButton); };
  const auto shown = [&](const char* name) { return Find(name)->isVisibleTo(Find("order_tab")); };

  // The switch hides the order form's prices in the next deferred update.
  click(0);
  EXPECT_EQ(menu->button(0)->valueText(), "Hidden");
  EXPECT_TRUE(shown("total"));
  EXPECT_SETTLED(!shown("price") && !shown("total"));

  // The icon switch steps to the next accent; the order tab takes its colour.
  click(1);
  EXPECT_EQ(menu->button(1)->valueText(), "Caramel");
  EXPECT_TRUE(Find("order_tab")->styleSheet().contains("#b5781a"));

  // The sort's choices pop up; a click on "Bags" sorts the stock by them.
  click(2);
  QPointer<MenuContainerDialog> dialog = qobject_cast<MenuContainerDialog*>(menu->currentDialog());
  ASSERT_TRUE(dialog);
  QTest::mouseClick(dialog->optionButton(3), Qt::LeftButton);
  EXPECT_EQ(menu->button(2)->valueText(), "Bags");
  EXPECT_SETTLED(dialog.isNull());
  EXPECT_EQ(ColumnTexts(stock, 2), QStringList({"0", "0", "2", "3", "4", "5", "6", "7"}));

  // A click in the closed box's icon column switches its roast off.
  QTest::mouseClick(roasts, Qt::LeftButton, {}, QPoint(4, roasts->height() / 2));
  EXPECT_FALSE(roasts->itemData(0, Qt::UserRole).toBool());
  EXPECT_EQ(ColumnTexts(stock, 1), QStringList({"Dark", "Medium", "Dark", "Medium", "Medium"}));
  EXPECT_SETTLED(Texts({"stock_shown"}) == QStringList{"The stock table shows 5 of its 8 rows."});
  QTest::keyClicks(Find("stock_filter"), "blend");  // the text filter still applies
  EXPECT_EQ(ColumnTexts(stock, 0), QStringList{"House blend"});

  // The second page pauses the sales and resets the filters.
  click(3);
  EXPECT_EQ(menu->button(3)->text(), "More settings (2/2)");
  click(0);  // "Live sales"
  EXPECT_FALSE(form->GetCatalogue()->IsLive());
  click(1);
  EXPECT_EQ(stock->rowCount(), 8);
  EXPECT_TRUE(roasts->itemData(0, Qt::UserRole).toBool());
  EXPECT_SETTLED(Find<QLineEdit>("stock_filter")->text().isEmpty());
}
