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

using ovui_test::ClickCell;
using ovui_test::ColumnTexts;

// Waits for the deferred view update, or whatever comes on a later turn.
#define EXPECT_SETTLED(condition) \
  EXPECT_TRUE(QTest::qWaitFor([&] { return condition; }, 1000)) << #condition

const auto Euros = [](const char* amount) { return QString::fromUtf8("\xE2\x82\xAC ") + amount; };

class FormDemoTest : public testing::Test {
 protected:
  FormDemoTest() : window(LoadForm()) {
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
    if (W* w = window->findChild<W*>(name)) return w;
    qFatal("the form has no %s", name);
  }
  template <typename... Names>
  QStringList Texts(Names... labels) {
    return {Find<QLabel>(labels)->text()...};
  }
  QString Status(int field) {  // "" for a field the status bar lacks
    QLabel* label = Find<QStatusBar>("status")->findChildren<QLabel*>().value(field);
    return label ? label->text() : "";
  }

  // The entries of the menu at `at`; clicks the entry `pick`.
  std::vector<std::string> RightClick(QListView* orders, QPoint at, int pick = -1) {
    std::vector<std::string> entries;
    const auto inspect = [&](QMenu& menu) {
      entries = ovui_test::Describe(menu);
      if (pick >= 0) menu.actions().at(pick)->trigger();  // does nothing when disabled
    };
    ovui_test::RightClick(*orders->viewport(), inspect, at);
    return entries;
  }

  void OpenTab(int index) {
    QTabBar* bar = Find<QTabWidget>("tabs")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    EXPECT_EQ(bar->currentIndex(), index);
  }
  OrderForm* form = new OrderForm();  // before the window, which binds to it
  std::unique_ptr<QWidget> window;
};

}  // namespace

TEST_F(FormDemoTest, OrderFieldsValidateAndFollowEachOther) {
  auto* customer = Find<QLineEdit>("customer");
  customer->selectAll();
  QTest::keyClick(customer, Qt::Key_Backspace);
  EXPECT_EQ(Texts("customer_error"), QStringList{"Please enter the customer's name."});
  EXPECT_FALSE(Find("save")->isEnabled());
  EXPECT_EQ(form->GetOrder()->customer, "Ada Lovelace");  // refused, not written

  QTest::keyClicks(customer, "Alan Turing");
  EXPECT_EQ(form->GetOrder()->customer, "Alan Turing");
  EXPECT_TRUE(Find("save")->isEnabled());
  EXPECT_SETTLED(Texts("customer_error") == QStringList{""});

  auto* spin = Find<QSpinBox>("quantity");
  auto* slider = Find<QSlider>("quantity_slider");
  EXPECT_EQ(Texts("price", "total"), QStringList({Euros("8.50"), Euros("17.00")}));

  spin->setFocus();
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_SETTLED(slider->value() == 3 && Texts("total") == QStringList{Euros("25.50")});

  Find<QComboBox>("product")->setCurrentIndex(1);  // the price follows the product
  EXPECT_SETTLED(Texts("price", "total") == QStringList({Euros("12.90"), Euros("38.70")}));

  slider->setValue(10);  // moving the slider writes as it goes
  EXPECT_SETTLED(spin->value() == 10);

  QTest::mouseClick(Find("gift"), Qt::LeftButton);  // the gift card group follows the check box
  EXPECT_SETTLED(!Find("gift_box")->isEnabled() && !form->GetOrder()->gift);
}

TEST_F(FormDemoTest, SavingListsTheOrderTheListMenuRemovesItAndCloseCloses) {
  auto* orders = Find<QListView>("orders");
  QAbstractItemModel* model = orders->model();

  QString toast;  // the library's own, a message box that closes itself
  ovui_test::OnNextDialog<QMessageBox>([&](QMessageBox* box) {
    toast = box->text();
    box->accept();
  });
  QTest::mouseClick(Find<QPushButton>("save"), Qt::LeftButton);
  EXPECT_EQ(toast, "Order saved");
  EXPECT_SETTLED(Status(0) == "Saved: 2 x House blend for Ada Lovelace");

  const QPoint first = orders->visualRect(model->index(0, 0)).center();
  ClickCell(orders, model->index(0, 0));  // the current order, which the menu offers to remove
  EXPECT_EQ(RightClick(orders, first, 0),
            (std::vector<std::string>{"Remove \"1 x Decaf Colombia for Charles Babbage\"", "-",
                                      "Remove all"}));
  EXPECT_EQ(ColumnTexts(model, 0),
            QStringList({"3 x House blend for Grace Hopper", "2 x House blend for Ada Lovelace"}));

  RightClick(orders, first, 2);
  EXPECT_SETTLED(Status(1) == "No saved orders");
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
  ovui_test::CheckModel(model);
  EXPECT_EQ(ColumnTexts(model, 0), QStringList({"Blends", "Single origin", "Decaf"}));
  EXPECT_EQ(name->text(), "House blend");  // selected when the tab was built

  QTest::keyClicks(filter, "kenya");  // names and origins match, under their categories
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
  ClickCell(tree, huila);
  EXPECT_SETTLED(name->text() == "Colombia Huila");
  const auto detail = [&] { return Texts("detail_kind", "detail_price", "detail_stock"); };
  EXPECT_EQ(detail(), QStringList({"Single origin", Euros("11.40"), "In stock"}));

  name->end(false);
  QTest::keyClicks(name, " Supremo");  // into the selected coffee; its row follows
  EXPECT_SETTLED(huila.data().toString() == "Colombia Huila Supremo");

  // Space on the check cell sells the coffee out; its category counts it.
  const QModelIndex in_stock = huila.siblingAtColumn(2);
  ClickCell(tree, in_stock);
  QTest::keyClick(tree, Qt::Key_Space);
  EXPECT_EQ(in_stock.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_SETTLED(detail().value(2) == "Sold out");
  ClickCell(tree, single);
  EXPECT_SETTLED(name->text() == "Single origin");
  EXPECT_EQ(detail(), QStringList({"Category", "", "1 of 3 in stock"}));
}

TEST_F(FormDemoTest, StockTableSortsFiltersAndEditsItsCells) {
  OpenTab(1);
  auto* table = Find<QTableView>("stock");
  QAbstractItemModel* model = table->model();
  ovui_test::CheckModel(model);
  auto* header = qobject_cast<QHeaderViewExt*>(table->horizontalHeader());
  ASSERT_TRUE(header && header->titleWidget(0) == Find("stock_filter"));
  EXPECT_EQ(ColumnTexts(model, 3).mid(0, 2), QStringList({Euros("8.50"), Euros("9.80")}));

  ovui_test::ClickSection(header, 2);  // sorts by the bags; a second click reverses
  ovui_test::ClickSection(header, 2);
  EXPECT_EQ(ColumnTexts(model, 2), QStringList({"7", "6", "5", "4", "3", "2", "0", "0"}));

  QTest::keyClicks(header->titleWidget(0), "decaf");  // the filter under "Product"
  EXPECT_EQ(ColumnTexts(model, 0), QStringList({"Decaf Colombia", "Swiss water decaf"}));

  const QModelIndex roast = model->index(1, 1);  // chosen from the list's "roasts"
  auto* combo = qobject_cast<QComboBox*>(ovui_test::OpenEditor(table, roast));
  ASSERT_EQ(combo ? combo->currentText() : "", "Dark");
  QTest::keyClick(combo, Qt::Key_Up);
  QTest::keyClick(combo, Qt::Key_Return);
  EXPECT_SETTLED(roast.data().toString() == "Medium");

  // Bags edit in a spin box, names too; a refused value stays out, and the cell says why in red.
  const QModelIndex bags = model->index(1, 2);
  ASSERT_TRUE(ovui_test::TypeInto(table, bags, "12"));
  ovui_test::ExpectRefusedEdit(table, bags, "-3", "Between 0 and 99 bags, please.");
  ovui_test::ExpectRefusedEdit(table, model->index(1, 0), "Sw",
                               "A product needs a name of at least 3 letters.");
  EXPECT_EQ(bags.data().toString(), "12");
  EXPECT_FALSE(model->flags(model->index(1, 3)) & Qt::ItemIsEditable);  // the price
}

TEST_F(FormDemoTest, MonthlyFiguresLieOnTheirSideAndTheChartGoesLive) {
  OpenTab(1);
  auto* months = Find<QTableView>("months");
  QAbstractItemModel* model = months->model();
  ovui_test::CheckModel(model);
  Catalogue* shop = form->GetCatalogue();

  ASSERT_EQ(QSize(model->columnCount(), model->rowCount()), QSize(6, 5));  // months across
  EXPECT_EQ(model->headerData(3, Qt::Vertical).toString(), "Average");
  EXPECT_EQ(model->index(1, 0).data().toString(), Euros("4,211"));
  EXPECT_EQ(model->index(4, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);

  ASSERT_TRUE(ovui_test::TypeInto(months, model->index(2, 0), "150"));  // the average follows
  EXPECT_EQ(shop->GetMonths()->Months()[0].orders, 150);
  EXPECT_EQ(model->index(3, 0).data().toString(), Euros("28.07"));

  ASSERT_EQ(shop->GetChartData().GetSeries().size(), 2u);  // a bar set each, a bar per month
  auto* revenue = qobject_cast<QtCharts::QBarSet*>(vm::FindChartSeries(
      Find<ChartViewEx>("sales_chart")->chart(), shop->GetChartData().GetSeries().front().id));
  ASSERT_TRUE(revenue && revenue->count() == 6);
  const double june = revenue->at(5);  // the ticker raises June's alone
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

  click(0);  // the switch hides the order form's prices
  EXPECT_EQ(menu->button(0)->valueText(), "Hidden");
  EXPECT_SETTLED(!shown("price") && !shown("total"));

  click(1);  // the icon switch steps to the next accent, which the order tab takes
  EXPECT_EQ(menu->button(1)->valueText(), "Caramel");
  EXPECT_TRUE(Find("order_tab")->styleSheet().contains("#b5781a"));

  click(2);  // the sort's choices pop up; "Bags" sorts the stock by them
  QPointer<MenuContainerDialog> dialog = qobject_cast<MenuContainerDialog*>(menu->currentDialog());
  ASSERT_TRUE(dialog);
  QTest::mouseClick(dialog->optionButton(3), Qt::LeftButton);
  EXPECT_EQ(menu->button(2)->valueText(), "Bags");
  EXPECT_SETTLED(dialog.isNull());
  EXPECT_EQ(ColumnTexts(stock, 2), QStringList({"0", "0", "2", "3", "4", "5", "6", "7"}));

  // A click in the closed box's icon column switches its roast off.
  QTest::mouseClick(roasts, Qt::LeftButton, {}, QPoint(4, roasts->height() / 2));
  EXPECT_EQ(ColumnTexts(stock, 1), QStringList({"Dark", "Medium", "Dark", "Medium", "Medium"}));
  EXPECT_SETTLED(Texts("stock_shown") == QStringList{"The stock table shows 5 of its 8 rows."});
  QTest::keyClicks(Find("stock_filter"), "blend");  // the text filter still applies
  EXPECT_EQ(ColumnTexts(stock, 0), QStringList{"House blend"});

  click(3);  // the second page pauses the sales and resets the filters
  click(0);  // "Live sales"
  EXPECT_FALSE(form->GetCatalogue()->IsLive());
  click(1);
  EXPECT_EQ(stock->rowCount(), 8);
  EXPECT_TRUE(roasts->itemData(0, Qt::UserRole).toBool());
  EXPECT_SETTLED(Find<QLineEdit>("stock_filter")->text().isEmpty());
}
