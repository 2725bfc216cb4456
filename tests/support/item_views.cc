#include "support/item_views.h"

#include <QApplication>
#include <QTest>

namespace ovui_test {

QStringList ColumnTexts(const QAbstractItemModel* model, int column, const QModelIndex& parent) {
  QStringList texts;
  for (int row = 0; row < model->rowCount(parent); ++row)
    texts << model->index(row, column, parent).data().toString();
  return texts;
}

bool TypeInCell(QAbstractItemView* view, const QModelIndex& cell, const QString& text) {
  view->setCurrentIndex(cell);
  view->edit(cell);
  // Some delegates' editors are found only through the focus.
  QWidget* editor = view->indexWidget(cell);
  if (!editor) editor = QApplication::focusWidget();
  if (!editor) return false;
  QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(editor, text);
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::qWait(20);  // the delegate commits on its next turn
  return true;
}

}  // namespace ovui_test
