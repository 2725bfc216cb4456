#include "qt/message_box_ex.h"

#include <gtest/gtest.h>

#include <QCursor>
#include <QWidget>

#include "mvvm/navigator.h"

TEST(MoveWidgetTest, PlacementRules) {
  QWidget w;
  w.setGeometry(7, 8, 200, 100);
  vm::MoveWidget(&w, 100, -1, false);  // either coordinate -1: the window system decides
  EXPECT_EQ(w.pos(), QPoint(7, 8));

  QCursor::setPos(50, 40);  // near the top left: clamped to the screen edge
  vm::MoveWidget(&w, 300, 300, true);
  EXPECT_EQ(w.pos(), QPoint(0, 0));
  QCursor::setPos(1000, 800);  // centred on the cursor, never clamped at the far edges
  vm::MoveWidget(&w, -1, -1, true);
  EXPECT_EQ(w.pos(), QPoint(900, 750));

  auto* request = new vm::NavigatorRequest("custom");
  request->params["x"] = 11;  // "y" missing: nothing happens
  vm::HandlePos(&w, request);
  EXPECT_EQ(w.pos(), QPoint(900, 750));
  request->SetPos(12, 13, false);
  vm::HandlePos(&w, request);
  EXPECT_EQ(w.pos(), QPoint(12, 13));
  vm::HandlePos(&w, nullptr);  // no request: left where it is
  vm::HandlePos(nullptr, request);
  vm::MoveWidget(nullptr, 1, 2, true);
  EXPECT_EQ(w.pos(), QPoint(12, 13));
  request->Release();
}
