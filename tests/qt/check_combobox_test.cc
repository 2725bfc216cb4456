#include "qt/check_combobox.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QUiLoader>
#include <QVBoxLayout>
#include <memory>

#include "qt/binding_context.h"
#include "support/log_capture.h"

namespace {

// Which kinds of records a list shows. "locked" belongs to the kinds a user
// may not hide: its setter refuses every write.
struct Filters : vm::ViewModel {
  explicit Filters(bool* destroyed = nullptr) : destroyed(destroyed) {
    InstallProp("orders", &orders);
    InstallProp("invoices", &invoices);
    InstallProp("refunds", &refunds);
    InstallProp("kinds", &kinds);
    InstallProp("locked", &Filters::GetLocked, &Filters::SetLocked);
  }
  ~Filters() override {
    if (destroyed) *destroyed = true;
  }
  bool GetLocked(base::Value& v) const {
    v.Bool(true);
    return true;
  }
  bool SetLocked(const base::Value&) { return false; }

  bool orders = true;
  bool invoices = false;
  bool refunds = false;
  std::string kinds;
  bool* destroyed;
};

QStringList Texts(const QComboBox* box) {
  QStringList texts;
  for (int i = 0; i < box->count(); ++i)
    texts.append(box->itemText(i));
  return texts;
}

// The item's state and its icon agree, and the icon is the library's own.
bool Shows(const CCheckComboBox* box, int index, bool checked) {
  const QImage want =
      QIcon(checked ? ":/ccheckcombox/images/check.png" : ":/ccheckcombox/images/uncheck.png")
          .pixmap(12)
          .toImage();
  return !want.isNull() && box->itemData(index, Qt::UserRole).toBool() == checked &&
         box->itemIcon(index).pixmap(12).toImage() == want;
}

// A press and release where the cursor really is: the popup asks QCursor.
void ClickAt(QWidget* target, const QPoint& global) {
  QCursor::setPos(global);
  QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, target->mapFromGlobal(global));
}

QPoint IconColumn(CCheckComboBox* box) {
  return box->mapToGlobal(QPoint(box->getIconWidth() / 2, box->height() / 2));
}

QPoint TextPart(CCheckComboBox* box) {
  return box->mapToGlobal(QPoint(box->getIconWidth() + 40, box->height() / 2));
}

class CheckComboBoxTest : public ::testing::Test {
 protected:
  CheckComboBoxTest() : window(new QWidget()) {
    new QVBoxLayout(window.get());
    box = new CCheckComboBox(window.get());
    box->setMinimumWidth(180);
    window->layout()->addWidget(box);
  }
  ~CheckComboBoxTest() override {
    window.reset();
    filters->Release();
  }
  void Bind(const char* options = nullptr) {
    if (options) box->setProperty("binding.options", options);
    ASSERT_TRUE(vm::BindingContext::CreateAndBind(window.get(), filters));
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  // Where a popup row is, in the popup's icon column or on its text.
  QPoint PopupRow(int row, bool icon_column) {
    QAbstractItemView* view = box->view();
    const int y = view->visualRect(view->model()->index(row, 0)).center().y();
    const QPoint in_box = (icon_column ? IconColumn(box) : TextPart(box));
    return QPoint(in_box.x(), view->viewport()->mapToGlobal(QPoint(0, y)).y());
  }

  std::unique_ptr<QWidget> window;
  CCheckComboBox* box;
  Filters* filters = new Filters();
};

TEST_F(CheckComboBoxTest, FixedItemsFollowTheirProperties) {
  box->addItems({"orders", "", "invoices", "archived"});
  Bind();
  EXPECT_EQ(Texts(box), QStringList({"orders", "invoices", "archived"}));
  EXPECT_TRUE(Shows(box, 0, true));
  EXPECT_TRUE(Shows(box, 1, false));
  EXPECT_TRUE(Shows(box, 2, false));  // no such property

  filters->SetPropW("invoices", true);
  EXPECT_TRUE(Shows(box, 1, true));

  // Changes made while events were blocked arrive as one "all changed".
  filters->BlockEvents();
  filters->SetPropW("orders", false);
  filters->UnblockEvents();
  EXPECT_TRUE(Shows(box, 0, true));
  filters->EmitPropsChange();
  EXPECT_TRUE(Shows(box, 0, false));
}

TEST_F(CheckComboBoxTest, ClosedBoxFlipsOnTheIconAndOpensOnTheText) {
  box->addItems({"orders", "invoices", "locked"});
  Bind();
  box->setCurrentIndex(1);

  ClickAt(box, IconColumn(box));
  EXPECT_TRUE(filters->invoices);
  EXPECT_TRUE(Shows(box, 1, true));
  EXPECT_FALSE(box->view()->isVisible());
  ClickAt(box, IconColumn(box));
  EXPECT_FALSE(filters->invoices);
  EXPECT_TRUE(Shows(box, 1, false));

  box->setCurrentIndex(2);
  ASSERT_TRUE(Shows(box, 2, true));
  ClickAt(box, IconColumn(box));
  EXPECT_TRUE(Shows(box, 2, true));  // the view model refused

  ClickAt(box, TextPart(box));
  EXPECT_TRUE(box->view()->isVisible());
  EXPECT_FALSE(filters->invoices);
  QCursor::setPos(TextPart(box));
  box->hidePopup();
  EXPECT_FALSE(box->view()->isVisible());
}

TEST_F(CheckComboBoxTest, PopupStaysOpenForIconClicksAndClosesOnText) {
  box->addItems({"orders", "invoices", "refunds"});
  Bind();
  box->showPopup();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(box->view()->window()));
  QWidget* viewport = box->view()->viewport();

  ClickAt(viewport, PopupRow(2, true));
  EXPECT_TRUE(box->view()->isVisible());
  EXPECT_TRUE(filters->refunds);
  EXPECT_TRUE(Shows(box, 2, true));
  ClickAt(viewport, PopupRow(1, true));
  EXPECT_TRUE(box->view()->isVisible());
  EXPECT_TRUE(filters->invoices);

  ClickAt(viewport, PopupRow(0, false));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !box->view()->isVisible(); }, 1000));
  EXPECT_EQ(box->currentIndex(), 0);
  EXPECT_TRUE(filters->orders);  // selected, not flipped
  EXPECT_TRUE(Shows(box, 0, true));
}

TEST_F(CheckComboBoxTest, OptionsPropertyRebuildsTheItems) {
  filters->kinds = "orders\n\ninvoices\n";
  filters->invoices = true;
  Bind("{Binding Path=kinds}");
  EXPECT_EQ(box->optionsProp(), "kinds");
  EXPECT_EQ(Texts(box), QStringList({"orders", "invoices"}));
  EXPECT_TRUE(Shows(box, 1, true));

  QSignalSpy index_changes(box, SIGNAL(currentIndexChanged(int)));
  filters->refunds = false;
  filters->SetPropW("kinds", "refunds\ninvoices");
  EXPECT_EQ(Texts(box), QStringList({"refunds", "invoices"}));
  EXPECT_TRUE(Shows(box, 0, false));
  EXPECT_TRUE(Shows(box, 1, true));
  EXPECT_EQ(index_changes.count(), 0);

  box->setCurrentIndex(0);
  ClickAt(box, IconColumn(box));
  EXPECT_TRUE(filters->refunds);
  EXPECT_TRUE(Shows(box, 0, true));
}

TEST(CheckComboBox, WithoutViewModelFlipsItself) {
  CCheckComboBox box;
  box.addItems({"a", "b"});
  EXPECT_FALSE(box.itemData(0, Qt::UserRole).isValid());
  box.updateIndexStatus(1);
  EXPECT_TRUE(Shows(&box, 1, true));
  box.updateIndexStatus(-1);  // no current item
  ovui_test::LogCapture log;
  box.updateIndexStatus(2);
  EXPECT_TRUE(log.HasFailedCheck("updateIndexStatus",
                                 "index >= 0 && index < this->items.size() && index < count()"));
}

TEST(CheckComboBox, SurvivesEitherSideGoingFirst) {
  bool destroyed = false;
  auto* filters = new Filters(&destroyed);
  auto* box = new CCheckComboBox();
  box->addItems({"orders"});
  box->bindToVm(filters, "");
  EXPECT_EQ(filters->RefCount(), 2);
  delete box;
  EXPECT_EQ(filters->RefCount(), 1);
  filters->SetPropW("orders", false);  // nobody left to tell

  box = new CCheckComboBox();
  box->addItems({"orders"});
  box->bindToVm(filters, "");
  filters->Release();
  EXPECT_FALSE(destroyed);
  box->updateIndexStatus(0);
  EXPECT_TRUE(Shows(box, 0, true));
  delete box;
  EXPECT_TRUE(destroyed);
}

// Designer places the box as a promoted QComboBox; the loader must be
// taught the class.
class FormLoader : public QUiLoader {
 public:
  QWidget* createWidget(const QString& class_name, QWidget* parent, const QString& name) override {
    if (class_name != "CCheckComboBox") return QUiLoader::createWidget(class_name, parent, name);
    auto* box = new CCheckComboBox(parent);
    box->setObjectName(name);
    return box;
  }
};

TEST(CheckComboBox, BindsFromADesignerForm) {
  QFile file(QDir(OVUI_TEST_DATA).filePath("check_combobox_form.ui"));
  ASSERT_TRUE(file.open(QFile::ReadOnly));
  FormLoader loader;
  std::unique_ptr<QWidget> form(loader.load(&file));
  ASSERT_TRUE(form);
  auto* kinds = form->findChild<CCheckComboBox*>("kinds_box");
  auto* fixed = form->findChild<CCheckComboBox*>("fixed_box");
  auto* check = form->findChild<QCheckBox*>("orders_check");
  ASSERT_TRUE(kinds && fixed && check);

  Filters filters;
  filters.kinds = "invoices\nrefunds";
  filters.refunds = true;
  ASSERT_TRUE(vm::BindingContext::CreateAndBind(form.get(), &filters));
  form->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
  EXPECT_EQ(Texts(kinds), QStringList({"invoices", "refunds"}));
  EXPECT_TRUE(Shows(kinds, 1, true));
  EXPECT_EQ(Texts(fixed), QStringList({"orders", "refunds"}));
  EXPECT_TRUE(Shows(fixed, 0, true));
  EXPECT_TRUE(check->isChecked());

  // The box and an ordinary check box bound to the same property agree.
  fixed->setCurrentIndex(0);
  ClickAt(fixed, IconColumn(fixed));
  EXPECT_FALSE(filters.orders);
  EXPECT_TRUE(QTest::qWaitFor([check] { return !check->isChecked(); }, 1000));
  check->click();
  EXPECT_TRUE(filters.orders);
  EXPECT_TRUE(Shows(fixed, 0, true));
  form.reset();
  EXPECT_EQ(filters.RefCount(), 1);
}

// The check mark's blue in the icon column of `image` between rows y0 and y1.
bool HasCheckMark(const QImage& image, int x1, int y0, int y1) {
  for (int y = y0; y < y1; ++y) {
    for (int x = 0; x < x1; ++x) {
      const QColor c = image.pixelColor(x, y);
      if (c.blue() > 180 && c.red() < 90) return true;
    }
  }
  return false;
}

TEST_F(CheckComboBoxTest, IconsSitInTheIconColumn) {
  filters->kinds = "orders\ninvoices\nrefunds\nlocked";
  Bind("{Binding Path=kinds}");
  const QImage closed = box->grab().toImage();
  EXPECT_TRUE(HasCheckMark(closed, box->getIconWidth(), 0, closed.height()));  // orders

  box->showPopup();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(box->view()->window()));
  QWidget* popup = box->view()->window();
  const QImage open = popup->grab().toImage();
  const int column = box->mapToGlobal(QPoint(box->getIconWidth(), 0)).x() - popup->x();
  for (int row = 0; row < 4; ++row) {
    const QRect rect = box->view()->visualRect(box->view()->model()->index(row, 0));
    const int top = box->view()->viewport()->mapTo(popup, rect.topLeft()).y();
    EXPECT_EQ(HasCheckMark(open, column, top, top + rect.height()), row == 0 || row == 3)
        << "row " << row;
  }
  const QString dir = qEnvironmentVariable("OVUI_SCREENSHOT_DIR");
  if (!dir.isEmpty()) {
    window->grab().save(QDir(dir).filePath("check_combobox_closed.png"));
    open.save(QDir(dir).filePath("check_combobox_open.png"));
  }
  QCursor::setPos(TextPart(box));
  box->hidePopup();
}

}  // namespace
