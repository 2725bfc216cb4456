#include "qt/check_combobox.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCursor>
#include <QSignalSpy>
#include <QTest>

#include "qt/binding_context.h"
#include "support/ui_files.h"

namespace {

// Kinds of records a list shows; a user may not hide the "locked" ones.
struct Filters : vm::ViewModel {
  Filters() {
    InstallProp("orders", &orders);
    InstallProp("invoices", &invoices);
    InstallProp("kinds", &kinds);
    InstallProp("locked", &Filters::GetLocked, nullptr);
  }
  bool GetLocked(base::Value& v) const {
    v.Bool(true);
    return true;
  }
  bool orders = true, invoices = false;
  std::string kinds;
};

// The item's state and its icon agree, and the icon is the library's own.
bool Shows(const CCheckComboBox* box, int index, bool checked) {
  const QIcon want(QString(":/ccheckcombox/images/%1.png").arg(checked ? "check" : "uncheck"));
  return !want.isNull() && box->itemData(index, Qt::UserRole).toBool() == checked &&
         box->itemIcon(index).pixmap(12).toImage() == want.pixmap(12).toImage();
}

struct CheckComboBoxTest : testing::Test {
  void Bind() {
    ASSERT_TRUE(vm::BindingContext::CreateAndBind(window.get(), &filters));
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  // Clicks where the cursor really is (the popup asks QCursor); row -1: the closed box.
  void Click(int row, bool icon_column) {
    QWidget* target = row < 0 ? static_cast<QWidget*>(box) : box->view()->viewport();
    const int x = icon_column ? box->getIconWidth() / 2 : box->getIconWidth() + 40;
    const int y = row < 0 ? box->height() / 2
                          : box->view()->visualRect(box->model()->index(row, 0)).center().y();
    const QPoint at(box->mapToGlobal(QPoint(x, 0)).x(), target->mapToGlobal(QPoint(0, y)).y());
    QCursor::setPos(at);
    QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, target->mapFromGlobal(at));
  }

  Filters filters;
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  CCheckComboBox* box = new CCheckComboBox(window.get());
};

TEST_F(CheckComboBoxTest, FlipsOnTheIconColumnAndSelectsOnTheText) {
  box->addItems({"orders", "invoices", "locked"});
  Bind();
  box->setCurrentIndex(2);
  Click(-1, true);
  EXPECT_TRUE(Shows(box, 2, true));  // the view model refused
  box->setCurrentIndex(1);
  Click(-1, true);
  EXPECT_TRUE(filters.invoices);
  EXPECT_TRUE(Shows(box, 1, true));
  EXPECT_FALSE(box->view()->isVisible());

  box->showPopup();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(box->view()->window()));
  Click(1, true);
  Click(0, true);
  EXPECT_TRUE(box->view()->isVisible());
  EXPECT_FALSE(filters.invoices);
  EXPECT_FALSE(filters.orders);
  EXPECT_TRUE(Shows(box, 0, false));
  Click(0, false);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !box->view()->isVisible(); }, 1000));
  EXPECT_EQ(box->currentIndex(), 0);  // selected, not flipped
  EXPECT_FALSE(filters.orders);
  Click(-1, false);
  EXPECT_TRUE(box->view()->isVisible());
}

TEST_F(CheckComboBoxTest, OptionsRebuildTheItemsOfADesignerForm) {
  window = ovui_test::LoadUi<CCheckComboBox>("check_combobox_form.ui", "CCheckComboBox");
  box = window->findChild<CCheckComboBox*>("kinds_box");
  auto* check = window->findChild<QCheckBox*>("orders_check");
  ASSERT_TRUE(box);
  ASSERT_TRUE(check);
  filters.kinds = "orders\n\ninvoices\n";
  Bind();
  EXPECT_EQ(box->count(), 2);
  EXPECT_EQ(box->itemText(1), "invoices");
  QSignalSpy index_changes(box, SIGNAL(currentIndexChanged(int)));
  filters.SetPropW("kinds", "invoices\norders");
  EXPECT_EQ(box->itemText(0), "invoices");
  EXPECT_EQ(index_changes.count(), 0);
  Click(-1, true);
  EXPECT_TRUE(filters.invoices);
  EXPECT_TRUE(Shows(box, 0, true));
  // The box and an ordinary check box bound to the same property agree.
  box->setCurrentIndex(1);
  Click(-1, true);
  EXPECT_TRUE(QTest::qWaitFor([check] { return !check->isChecked(); }, 1000));

  filters.orders = true;  // unannounced, until one "all changed"
  filters.EmitPropsChange();
  EXPECT_TRUE(Shows(box, 1, true));
}

TEST(CheckComboBox, SurvivesEitherSideGoingFirst) {
  for (const bool box_first : {true, false}) {
    auto* filters = new Filters();
    auto* box = new CCheckComboBox();
    box->bindToVm(filters, "");
    if (box_first) delete box;
    filters->SetPropW("orders", false);  // to the box, or to nobody
    filters->Release();                  // a bound box keeps it, and releases it when it goes
    if (!box_first) delete box;
  }
}

}  // namespace
