// The form demo worked through as a person would: its own Designer file, its
// own view models, real clicks and keys, on both tabs.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <memory>
#include <string>
#include <vector>

#include "catalogue.h"
#include "form_loader.h"
#include "order_form.h"
#include "qt/binding_context.h"
#include "qt/chart_binding.h"
#include "qt/chart_view_ex.h"
#include "qt/dialog_handlers.h"
#include "qt/header_view_ext.h"

namespace {

// Answers "toast" without a window and keeps what it was asked to show.
class RecordingToast : public vm::NavigatorHandler {
 public:
  RecordingToast() : NavigatorHandler("toast") {}
  bool OnRequest(vm::NavigatorRequest* request) override {
    shown.push_back(request->params["content"].Str());
    return true;
  }
  std::vector<std::string> shown;
};

// A replaced handler's target is left unserved when the replacement goes;
// the library's own toast comes back for the suites that follow.
void RestoreStandardToast() {
  static std::unique_ptr<vm::ToastHandler> standard;
  standard.reset();
  standard = std::make_unique<vm::ToastHandler>("toast");
}

bool Settled(const std::function<bool()>& done) {
  return QTest::qWaitFor(done, 1000);
}

class FormDemoTest : public testing::Test {
 protected:
  FormDemoTest() {
    window = LoadForm();
    EXPECT_TRUE(window);
    if (!window) return;
    EXPECT_TRUE(vm::BindingContext::CreateAndBind(window.get(), form));
    window->show();
  }
  ~FormDemoTest() override {
    window.reset();
    form->Release();
    toast.reset();
    RestoreStandardToast();
  }

  template <typename W>
  W* Find(const char* name) {
    W* w = window ? window->findChild<W*>(name) : nullptr;
    EXPECT_NE(w, nullptr) << name;
    return w;
  }

  QStringList StatusFields() {
    QStringList texts;
    for (QLabel* field : Find<QStatusBar>("status")->findChildren<QLabel*>())
      texts << field->text();
    return texts;
  }

  // Right-clicks `at` in `orders` and picks the first enabled menu entry
  // whose text starts with `entry` (none when empty). Returns the entries,
  // "-" for a separator and disabled ones in brackets.
  QStringList RightClick(QListView* orders, QPoint at, const QString& entry = QString()) {
    QStringList texts;
    QTimer::singleShot(0, [&] {
      QPointer<QMenu> popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!popup) return;
      QAction* chosen = nullptr;
      for (QAction* action : popup->actions()) {
        const bool enabled = action->isEnabled();
        texts << (action->isSeparator() ? "-"
                  : enabled             ? action->text()
                                        : "[" + action->text() + "]");
        if (!chosen && enabled && !entry.isEmpty() && action->text().startsWith(entry)) {
          chosen = action;
        }
      }
      if (chosen) chosen->trigger();
      if (popup) popup->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, orders->viewport()->mapToGlobal(at));
    QApplication::sendEvent(orders->viewport(), &event);
    return texts;
  }

  // Clicks the "Catalogue" tab.
  void OpenCatalogue() {
    auto* tabs = Find<QTabWidget>("tabs");
    ASSERT_TRUE(tabs);
    QTabBar* bar = tabs->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
    ASSERT_EQ(tabs->currentIndex(), 1);
  }

  // Opens the editor of `cell` and types `text` into it, then Enter.
  void EditCell(QAbstractItemView* view, const QModelIndex& cell, const QString& text) {
    view->edit(cell);
    QWidget* editor = view->indexWidget(cell);
    if (!editor) editor = QApplication::focusWidget();
    ASSERT_TRUE(editor);
    if (auto* line = qobject_cast<QLineEdit*>(editor)) line->selectAll();
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(editor)) spin->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(20);  // the delegate commits on its next turn
  }

  Catalogue* Shop() const { return form->GetCatalogue(); }

  std::unique_ptr<RecordingToast> toast = std::make_unique<RecordingToast>();
  OrderForm* form = new OrderForm();
  std::unique_ptr<QWidget> window;
};

}  // namespace

TEST_F(FormDemoTest, TheCustomerIsRequiredBeforeSaving) {
  auto* customer = Find<QLineEdit>("customer");
  auto* error = Find<QLabel>("customer_error");
  auto* save = Find<QPushButton>("save");
  ASSERT_TRUE(customer && error && save);
  EXPECT_EQ(customer->text(), "Ada Lovelace");
  EXPECT_TRUE(save->isEnabled());

  customer->selectAll();
  QTest::keyClick(customer, Qt::Key_Backspace);
  EXPECT_EQ(error->text(), "Please enter the customer's name.");
  EXPECT_FALSE(save->isEnabled());
  EXPECT_EQ(form->GetOrder()->customer, "Ada Lovelace");  // refused, not written

  QTest::keyClicks(customer, "Alan Turing");
  EXPECT_EQ(form->GetOrder()->customer, "Alan Turing");
  EXPECT_TRUE(save->isEnabled());
  EXPECT_TRUE(Settled([&] { return error->text().isEmpty(); }));
}

TEST_F(FormDemoTest, QuantityProductTotalAndGiftOptions) {
  auto* spin = Find<QSpinBox>("quantity");
  auto* slider = Find<QSlider>("quantity_slider");
  auto* product = Find<QComboBox>("product");
  auto* price = Find<QLabel>("price");
  auto* total = Find<QLabel>("total");
  auto* gift = Find<QCheckBox>("gift");
  auto* gift_box = Find<QGroupBox>("gift_box");
  ASSERT_TRUE(spin && slider && product && price && total && gift && gift_box);
  EXPECT_EQ(slider->value(), 2);
  EXPECT_EQ(product->count(), 3);
  EXPECT_EQ(product->currentText(), "House blend");
  EXPECT_EQ(total->text(), QString::fromUtf8("\xE2\x82\xAC 17.00"));

  spin->setFocus();
  QTest::keyClick(spin, Qt::Key_Up);
  EXPECT_EQ(form->GetOrder()->quantity, 3);
  EXPECT_TRUE(Settled([&] { return slider->value() == 3; }));
  EXPECT_EQ(total->text(), QString::fromUtf8("\xE2\x82\xAC 25.50"));

  product->setCurrentIndex(1);  // the price follows the product
  EXPECT_EQ(form->GetOrder()->product, "Ethiopia Yirgacheffe");
  EXPECT_TRUE(Settled([&] { return price->text() == QString::fromUtf8("\xE2\x82\xAC 12.90"); }));
  EXPECT_EQ(total->text(), QString::fromUtf8("\xE2\x82\xAC 38.70"));

  slider->setValue(10);  // moving the slider writes as it goes
  EXPECT_EQ(form->GetOrder()->quantity, 10);
  EXPECT_TRUE(Settled([&] { return spin->value() == 10; }));

  EXPECT_TRUE(gift_box->isEnabled());
  QTest::mouseClick(gift, Qt::LeftButton);
  EXPECT_FALSE(form->GetOrder()->gift);
  EXPECT_TRUE(Settled([&] { return !gift_box->isEnabled(); }));
  QTest::mouseClick(gift, Qt::LeftButton);
  EXPECT_TRUE(Settled([&] { return gift_box->isEnabled(); }));
}

TEST_F(FormDemoTest, SavingListsTheOrderAndTheListMenuRemovesIt) {
  auto* save = Find<QPushButton>("save");
  auto* orders = Find<QListView>("orders");
  ASSERT_TRUE(save && orders);
  EXPECT_EQ(StatusFields(), QStringList({"Ready", "2 saved orders"}));
  ASSERT_EQ(orders->model()->rowCount(), 2);

  QTest::mouseClick(save, Qt::LeftButton);
  EXPECT_EQ(toast->shown, std::vector<std::string>{"Order saved"});
  ASSERT_EQ(orders->model()->rowCount(), 3);
  EXPECT_EQ(orders->model()->index(2, 0).data().toString(), "2 x House blend for Ada Lovelace");
  EXPECT_EQ(orders->currentIndex().row(), 2);
  EXPECT_TRUE(Settled([&] { return StatusFields().value(1) == "3 saved orders"; }));
  EXPECT_EQ(StatusFields().value(0), "Saved: 2 x House blend for Ada Lovelace");

  // A click makes the first order current; the menu offers to remove it.
  const QPoint first = orders->visualRect(orders->model()->index(0, 0)).center();
  QTest::mouseClick(orders->viewport(), Qt::LeftButton, Qt::NoModifier, first);
  EXPECT_EQ(form->GetSavedOrders()->GetCurrent(), 0u);
  EXPECT_EQ(RightClick(orders, first, "Remove \""),
            QStringList({"Remove \"1 x Decaf Colombia for Charles Babbage\"", "-", "Remove all"}));
  ASSERT_EQ(orders->model()->rowCount(), 2);
  EXPECT_EQ(orders->model()->index(0, 0).data().toString(), "3 x House blend for Grace Hopper");
  EXPECT_TRUE(Settled([&] { return StatusFields().value(1) == "2 saved orders"; }));

  RightClick(orders, first, "Remove all");
  EXPECT_EQ(orders->model()->rowCount(), 0);
  EXPECT_TRUE(Settled([&] { return StatusFields().value(1) == "No saved orders"; }));
  // With nothing left, both entries are greyed out.
  EXPECT_EQ(RightClick(orders, first), QStringList({"[Remove]", "-", "[Remove all]"}));
}

TEST_F(FormDemoTest, CloseButtonClosesTheWindow) {
  auto* close = Find<QPushButton>("close");
  ASSERT_TRUE(close);
  QTest::mouseClick(close, Qt::LeftButton);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(FormDemoTest, ProductTreeFiltersAndTheDetailFormFollowsTheSelection) {
  OpenCatalogue();
  auto* tree = Find<QTreeView>("products");
  auto* filter = Find<QLineEdit>("product_filter");
  auto* name = Find<QLineEdit>("detail_name");
  auto* kind = Find<QLabel>("detail_kind");
  auto* price = Find<QLabel>("detail_price");
  auto* stock = Find<QLabel>("detail_stock");
  ASSERT_TRUE(tree && filter && name && kind && price && stock);
  QAbstractItemModel* model = tree->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  ASSERT_EQ(model->rowCount(), 3);
  EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), "In stock");
  const QModelIndex blends = model->index(0, 0);
  EXPECT_EQ(model->rowCount(blends), 3);
  EXPECT_TRUE(tree->isExpanded(blends));
  EXPECT_EQ(name->text(), "House blend");  // selected when the tab was built
  EXPECT_EQ(tree->currentIndex(), model->index(0, 0, blends));

  // Names and origins both match; categories stay above what they hold.
  QTest::keyClicks(filter, "kenya");
  ASSERT_EQ(model->rowCount(), 1);
  EXPECT_EQ(model->index(0, 0).data().toString(), "Single origin");
  ASSERT_EQ(model->rowCount(model->index(0, 0)), 1);
  EXPECT_EQ(model->index(0, 0, model->index(0, 0)).data().toString(), "Kenya AA");
  filter->selectAll();
  QTest::keyClicks(filter, "Colombia");
  ASSERT_EQ(model->rowCount(), 3);
  EXPECT_EQ(model->rowCount(model->index(0, 0)), 1);  // House blend, from Brazil and Colombia
  filter->selectAll();
  QTest::keyClick(filter, Qt::Key_Backspace);
  ASSERT_EQ(model->rowCount(), 3);
  EXPECT_EQ(model->rowCount(model->index(1, 0)), 3);

  const QModelIndex single = model->index(1, 0);
  ASSERT_TRUE(Settled([&] { return tree->isExpanded(single); }));
  const QModelIndex huila = model->index(1, 0, single);
  EXPECT_EQ(huila.data().toString(), "Colombia Huila");
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree->visualRect(huila).center());
  EXPECT_TRUE(Settled([&] { return name->text() == "Colombia Huila"; }));
  EXPECT_EQ(kind->text(), "Single origin");
  EXPECT_EQ(price->text(), QString::fromUtf8("\xE2\x82\xAC 11.40"));
  EXPECT_EQ(stock->text(), "In stock");

  // The detail form writes to the selected coffee; its row follows.
  name->end(false);
  QTest::keyClicks(name, " Supremo");
  EXPECT_TRUE(Settled([&] { return huila.data().toString() == "Colombia Huila Supremo"; }));

  // Space on the check cell takes the coffee out of stock; its category
  // counts it, and the detail form follows when the category is selected.
  const QModelIndex in_stock = huila.siblingAtColumn(2);
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree->visualRect(in_stock).topRight() + QPoint(-4, 4));
  QTest::keyClick(tree, Qt::Key_Space);
  EXPECT_EQ(in_stock.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_FALSE(single.siblingAtColumn(2).data(Qt::CheckStateRole).isValid());  // no box
  EXPECT_TRUE(Settled([&] { return stock->text() == "Sold out"; }));
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree->visualRect(single).center());
  EXPECT_TRUE(Settled([&] { return name->text() == "Single origin"; }));
  EXPECT_EQ(kind->text(), "Category");
  EXPECT_EQ(price->text(), "");
  EXPECT_EQ(stock->text(), "1 of 3 in stock");
}

TEST_F(FormDemoTest, StockTableSortsFiltersAndEditsItsCells) {
  OpenCatalogue();
  auto* table = Find<QTableView>("stock");
  auto* filter = Find<QLineEdit>("stock_filter");
  ASSERT_TRUE(table && filter);
  QAbstractItemModel* model = table->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  auto* header = qobject_cast<QHeaderViewExt*>(table->horizontalHeader());
  ASSERT_TRUE(header);
  EXPECT_EQ(header->titleWidget(0), filter);
  ASSERT_EQ(model->rowCount(), 8);
  ASSERT_EQ(model->columnCount(), 4);
  EXPECT_EQ(model->index(0, 3).data().toString(), QString::fromUtf8("\xE2\x82\xAC 8.50"));

  // A click on a title sorts by that column; a second click reverses it.
  auto click_title = [&](int section) {
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, 6);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, at);
  };
  click_title(2);
  EXPECT_EQ(model->index(0, 2).data().toInt(), 0);
  EXPECT_EQ(model->index(7, 2).data().toInt(), 7);
  EXPECT_TRUE(header->isSortIndicatorShown());
  EXPECT_EQ(header->sortIndicatorSection(), 2);
  click_title(2);
  EXPECT_EQ(model->index(0, 0).data().toString(), "Ethiopia Yirgacheffe");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  click_title(0);
  EXPECT_EQ(model->index(0, 0).data().toString(), "Breakfast blend");

  // The filter under the "Product" title keeps the matching rows.
  QTest::keyClicks(filter, "decaf");
  ASSERT_EQ(model->rowCount(), 2);
  EXPECT_EQ(model->index(0, 0).data().toString(), "Decaf Colombia");
  EXPECT_EQ(model->index(1, 0).data().toString(), "Swiss water decaf");
  vm::ViewModel* swiss = Shop()->GetStock()->Get(1);

  base::Value v;
  EditCell(table, model->index(1, 2), "12");  // a spin box
  ASSERT_TRUE(swiss->GetPropW("bags", v));
  EXPECT_EQ(v.I64(), 12);
  EXPECT_EQ(model->index(1, 2).data().toInt(), 12);

  // The roast is chosen from the list's "roasts".
  const QModelIndex roast = model->index(1, 1);
  table->edit(roast);
  auto* combo = qobject_cast<QComboBox*>(table->indexWidget(roast));
  ASSERT_TRUE(combo);
  EXPECT_EQ(combo->count(), 3);
  EXPECT_EQ(combo->currentText(), "Dark");
  QTest::keyClick(combo, Qt::Key_Up);
  QTest::keyClick(combo, Qt::Key_Return);
  QTest::qWait(20);
  ASSERT_TRUE(swiss->GetPropW("roast", v));
  EXPECT_STREQ(v.Str(), "Medium");

  // Refused by the validators: the row keeps its values, the cell turns red
  // with the reason, and the editor comes back with what was typed.
  const QModelIndex product = model->index(1, 0);
  EditCell(table, product, "Sw");
  ASSERT_TRUE(swiss->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "Swiss water decaf");
  EXPECT_EQ(product.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_EQ(product.data(Qt::ToolTipRole).toString(),
            "A product needs a name of at least 3 letters.");
  ASSERT_TRUE(Settled([&] { return table->indexWidget(product) != nullptr; }));
  auto* again = qobject_cast<QLineEdit*>(table->indexWidget(product));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->text(), "Sw");
  QTest::keyClick(again, Qt::Key_End);  // it comes back selected
  QTest::keyClicks(again, "iss roast");
  QTest::keyClick(again, Qt::Key_Return);
  QTest::qWait(20);
  ASSERT_TRUE(swiss->GetPropW("name", v));
  EXPECT_STREQ(v.Str(), "Swiss roast");
  EXPECT_FALSE(product.data(Qt::ForegroundRole).isValid());

  EditCell(table, model->index(1, 2), "-3");
  ASSERT_TRUE(swiss->GetPropW("bags", v));
  EXPECT_EQ(v.I64(), 12);
  EXPECT_EQ(model->index(1, 2).data(Qt::ToolTipRole).toString(), "Between 0 and 99 bags, please.");
  EXPECT_FALSE(model->flags(model->index(1, 3)) & Qt::ItemIsEditable);  // the price

  filter->selectAll();
  QTest::keyClick(filter, Qt::Key_Backspace);
  EXPECT_EQ(model->rowCount(), 8);
}

TEST_F(FormDemoTest, MonthlyFiguresLieOnTheirSideAndTheChartGoesLive) {
  OpenCatalogue();
  auto* months = Find<QTableView>("months");
  auto* chart_view = Find<ChartViewEx>("sales_chart");
  ASSERT_TRUE(months && chart_view);
  QAbstractItemModel* model = months->model();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);

  // A column per month, numbered; a row per field, labelled.
  ASSERT_EQ(model->columnCount(), 6);
  ASSERT_EQ(model->rowCount(), 5);
  EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), "1");
  EXPECT_EQ(model->headerData(3, Qt::Vertical).toString(), "Average");
  EXPECT_EQ(model->index(0, 5).data().toString(), "Jun");
  EXPECT_EQ(model->index(1, 0).data().toString(), QString::fromUtf8("\xE2\x82\xAC 4,211"));
  EXPECT_EQ(model->index(4, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_EQ(model->index(4, 1).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);

  // Orders edit; the average follows.
  EditCell(months, model->index(2, 0), "150");
  EXPECT_EQ(Shop()->GetMonths()->Months()[0].orders, 150);
  EXPECT_EQ(model->index(3, 0).data().toString(), QString::fromUtf8("\xE2\x82\xAC 28.07"));

  // A bar set per series, a bar per month; the sales ticker raises June's.
  QtCharts::QChart* chart = chart_view->chart();
  ASSERT_EQ(Shop()->GetChartData().GetSeries().size(), 2u);
  const std::string revenue_id = Shop()->GetChartData().GetSeries().front().id;
  auto* revenue = qobject_cast<QtCharts::QBarSet*>(vm::FindChartSeries(chart, revenue_id));
  ASSERT_TRUE(revenue);
  EXPECT_EQ(revenue->label(), "Revenue");
  ASSERT_EQ(revenue->count(), 6);
  EXPECT_DOUBLE_EQ(revenue->at(0), 4.2105);
  const double june = revenue->at(5);
  const QString june_cell = model->index(1, 5).data().toString();
  EXPECT_TRUE(QTest::qWaitFor([&] { return revenue->at(5) > june; }, 5000));
  EXPECT_EQ(revenue->at(0), 4.2105);
  EXPECT_NE(model->index(1, 5).data().toString(), june_cell);
  EXPECT_GT(Shop()->GetMonths()->Months()[5].orders, 118);
}
