#include "qt/header_view_ext.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <memory>

#include "qt/binding_context.h"
#include "support/item_views.h"
#include "support/log_capture.h"

namespace {

// A 4-column table, its header replaced and given one filter edit per column.
struct HeaderViewExtTest : testing::Test {
  HeaderViewExtTest() {
    auto* model = new QStandardItemModel(6, 4, view.get());
    for (int i = 0; i < 24; ++i)
      model->setItem(i / 4, i % 4, new QStandardItem(QString::number(i * 7 % 10)));
    view->setModel(model);
    view->setSortingEnabled(true);
    view->horizontalHeader()->resizeSection(2, 130);
    plain_height = view->horizontalHeader()->sizeHint().height();
    header = QHeaderViewExt::Install(view.get());
    for (int c = 0; c < 4; ++c)
      header->setTitleWidget(c, new QLineEdit);
    EXPECT_TRUE(ovui_test::Show(view.get(), QSize(560, 240)));
  }
  // Each title widget fills the strip under its own section, or hides with it.
  void ExpectAligned() const {
    QApplication::processEvents();
    const int strip = header->titleWidgetHeight(), top = header->viewport()->height() - strip;
    for (int c = 0; c < 4; ++c) {
      const QRect want(header->sectionViewportPosition(c), top, header->sectionSize(c), strip);
      EXPECT_EQ(header->titleWidget(c)->isVisible(), !header->isSectionHidden(c)) << c;
      EXPECT_TRUE(header->isSectionHidden(c) || header->titleWidget(c)->geometry() == want) << c;
    }
  }

  std::unique_ptr<QTableView> view = std::make_unique<QTableView>();
  QHeaderViewExt* header;
  int plain_height;
};

TEST_F(HeaderViewExtTest, TheHeaderGrowsSortsAndItsWidgetsFollowTheSections) {
  EXPECT_EQ(header->sectionSize(2), 130);
  EXPECT_EQ(header->height(), plain_height + header->titleWidget(0)->sizeHint().height());
  ExpectAligned();
  ovui_test::ClickSection(header, 1);
  EXPECT_EQ(ovui_test::Texts(view->model(), 1), "1,3,5,7,7,9");
  header->resizeSection(0, 150);
  header->moveSection(0, 3);
  ExpectAligned();
  header->hideSection(1);
  ExpectAligned();
  header->showSection(1);
  view->resize(220, 240);
  QApplication::processEvents();
  view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
  ExpectAligned();
}

TEST_F(HeaderViewExtTest, TitleWidgetsAreOwnedAndBound) {
  QPointer<QWidget> first = header->titleWidget(0), second = header->titleWidget(1);
  auto* replacement = new QLineEdit;
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
  EXPECT_EQ(QHeaderViewExt::Install(nullptr), nullptr);
  EXPECT_TRUE(log.HasFailedCheck("Install", "view != NULL"));

  // The binding walk reaches them.
  QPointer<QLineEdit> edit = qobject_cast<QLineEdit*>(header->titleWidget(2));
  edit->setProperty("binding.value", "{Binding Path=name}");
  auto* filter = new ovui_test::Row("start");
  ASSERT_TRUE(vm::BindingContext::CreateAndBind(view.get(), filter));
  EXPECT_EQ(edit->text(), "start");
  QTest::keyClicks(edit, "ed");
  EXPECT_EQ(filter->name, "started");
  view.reset();
  EXPECT_TRUE(edit.isNull());
  filter->Release();
}

}  // namespace
