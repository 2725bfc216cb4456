#include "qt/header_view_ext.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <memory>
#include <string>

#include "mvvm/view_model.h"
#include "qt/binding_context.h"
#include "support/log_capture.h"

namespace {

struct Filters : vm::ViewModel {
  Filters() { InstallProp("filter", &filter); }
  std::string filter;
};

// A 4-column table in a window, its header replaced and given one filter
// edit per column.
struct HeaderViewExtTest : testing::Test {
  HeaderViewExtTest() {
    auto* layout = new QVBoxLayout(window.get());
    model = new QStandardItemModel(6, 4, window.get());
    for (int c = 0; c < 4; ++c) {
      model->setHorizontalHeaderItem(c, new QStandardItem(QString("Column %1").arg(c)));
      for (int r = 0; r < 6; ++r)
        model->setItem(r, c, new QStandardItem(QString::number((r * 7 + c * 3) % 10)));
    }
    view = new QTableView(window.get());
    view->setModel(model);
    view->setSortingEnabled(true);
    view->horizontalHeader()->resizeSection(2, 130);
    layout->addWidget(view);
    plain_height = view->horizontalHeader()->sizeHint().height();
    header = QHeaderViewExt::Install(view);
    for (int c = 0; c < 4; ++c) {
      auto* edit = new QLineEdit();
      edit->setPlaceholderText(QString("filter %1").arg(c));
      header->setTitleWidget(c, edit);
    }
    window->resize(560, 240);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }

  QLineEdit* Edit(int c) const { return qobject_cast<QLineEdit*>(header->titleWidget(c)); }

  // Every title widget fills the strip under its own section, or is hidden
  // with it.
  void ExpectAligned() const {
    QApplication::processEvents();
    const int strip = header->titleWidgetHeight();
    for (int c = 0; c < 4; ++c) {
      SCOPED_TRACE(c);
      QWidget* w = header->titleWidget(c);
      ASSERT_NE(w, nullptr);
      if (header->isSectionHidden(c)) {
        EXPECT_FALSE(w->isVisible());
        continue;
      }
      EXPECT_TRUE(w->isVisible());
      EXPECT_EQ(w->x(), header->sectionViewportPosition(c));
      EXPECT_EQ(w->width(), header->sectionSize(c));
      EXPECT_EQ(w->height(), strip);
      EXPECT_EQ(w->geometry().bottom(), header->viewport()->height() - 1);
    }
  }

  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  QStandardItemModel* model;
  QTableView* view;
  QHeaderViewExt* header;
  int plain_height = 0;
};

}  // namespace

TEST_F(HeaderViewExtTest, InstallKeepsTheHeaderAndGrowsByTheWidgets) {
  EXPECT_EQ(view->horizontalHeader(), header);
  EXPECT_EQ(header->parentWidget(), view);
  EXPECT_TRUE(header->isVisible());
  EXPECT_TRUE(header->sectionsClickable());
  EXPECT_TRUE(header->isSortIndicatorShown());
  EXPECT_EQ(header->sectionSize(2), 130);

  const int strip = Edit(0)->sizeHint().height();
  EXPECT_EQ(header->titleWidgetHeight(), strip);
  EXPECT_EQ(header->height(), plain_height + strip);
  ExpectAligned();

  // A click on a title sorts by its column, as with the default header.
  const QPoint title(header->sectionViewportPosition(1) + 10, 4);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, title);
  EXPECT_EQ(header->sortIndicatorSection(), 1);
  for (int r = 1; r < model->rowCount(); ++r)
    EXPECT_LE(model->item(r - 1, 1)->text().toInt(), model->item(r, 1)->text().toInt());

  QTest::keyClicks(Edit(3), "ab");
  EXPECT_EQ(Edit(3)->text(), "ab");

  window->grab().save(QApplication::applicationDirPath() + "/header_view_ext.png");
}

TEST_F(HeaderViewExtTest, WidgetsFollowTheirSections) {
  header->resizeSection(0, 150);
  ExpectAligned();
  header->moveSection(0, 3);
  ExpectAligned();
  EXPECT_GT(Edit(0)->x(), Edit(3)->x());
  header->hideSection(1);
  ExpectAligned();
  header->showSection(1);
  ExpectAligned();

  window->resize(220, 240);
  QApplication::processEvents();
  QScrollBar* bar = view->horizontalScrollBar();
  ASSERT_GT(bar->maximum(), 0);
  bar->setValue(bar->maximum());
  EXPECT_LT(header->sectionViewportPosition(header->logicalIndex(0)), 0);
  ExpectAligned();
}

TEST_F(HeaderViewExtTest, OwnershipOfTheTitleWidgets) {
  QPointer<QWidget> first = header->titleWidget(0);
  QPointer<QWidget> second = header->titleWidget(1);
  EXPECT_EQ(first->parentWidget(), header->viewport());

  auto* replacement = new QLineEdit();
  EXPECT_TRUE(header->setTitleWidget(0, replacement));
  EXPECT_TRUE(first.isNull());

  // Moving a widget to another section frees its old place without deleting it.
  EXPECT_TRUE(header->setTitleWidget(1, replacement));
  EXPECT_TRUE(second.isNull());
  EXPECT_EQ(header->titleWidget(0), nullptr);
  EXPECT_EQ(header->titleWidget(1), replacement);

  ovui_test::LogCapture log;
  QHeaderViewExt vertical(Qt::Vertical);
  QLineEdit kept;
  EXPECT_FALSE(vertical.setTitleWidget(0, &kept));
  EXPECT_TRUE(log.HasFailedCheck("setTitleWidget", "orientation() == Qt::Horizontal"));
  EXPECT_EQ(kept.parentWidget(), nullptr);
  EXPECT_EQ(QHeaderViewExt::Install(nullptr), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Install", "view != NULL"));

  QPointer<QWidget> last = header->titleWidget(3);
  delete view;
  EXPECT_TRUE(last.isNull());
}

TEST_F(HeaderViewExtTest, TheBindingWalkReachesTitleWidgets) {
  QLineEdit* edit = Edit(2);
  edit->setProperty("binding.value", "{Binding Path=filter}");
  auto* filters = new Filters();
  filters->filter = "start";
  ASSERT_NE(vm::BindingContext::CreateAndBind(window.get(), filters), nullptr);
  EXPECT_EQ(edit->text(), "start");

  edit->clear();
  QTest::keyClicks(edit, "abc");
  EXPECT_EQ(filters->filter, "abc");

  window.reset();
  filters->Release();
}
