// The order form demo worked through as a person would: its own Designer
// file, its own view model, real clicks and keys.
#include <gtest/gtest.h>

#include <QApplication>
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
#include <QTest>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "form_loader.h"
#include "order_form.h"
#include "qt/binding_context.h"
#include "qt/dialog_handlers.h"

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
