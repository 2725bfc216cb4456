#include "support/item_views.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QMetaProperty>
#include <QTest>
#include <utility>

namespace ovui_test {

Row::Row(std::string name, int qty, bool done) : name(std::move(name)), qty(qty), done(done) {
  InstallProp("name", &this->name);
  InstallProp("qty", &this->qty);
  InstallProp("done", &this->done);
  RegisterValidator("qty_range", new RangeValidator(0, 100));
}

bool Rows::FilterOne(vm::ViewModel* item, const std::string& rule) {
  return static_cast<Row*>(item)->name.rfind(rule, 0) == 0;
}

void Rows::AddRow(const char* name, int qty, bool done, int index) {
  Add(new Row(name, qty, done), index);
}

void CheckModel(QAbstractItemModel* model) {
  new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal, model);
}

bool Show(QWidget* w, QSize size) {
  w->resize(size);
  w->show();
  return QTest::qWaitForWindowExposed(w);
}

QStringList ColumnTexts(const QAbstractItemModel* model, int column, const QModelIndex& parent) {
  QStringList texts;
  for (int row = 0; row < model->rowCount(parent); ++row)
    texts << model->index(row, column, parent).data().toString();
  return texts;
}

std::string Texts(const QAbstractItemModel* model, int column, const QModelIndex& parent) {
  return ColumnTexts(model, column, parent).join(',').toStdString();
}

void ClickCell(QAbstractItemView* view, const QModelIndex& cell) {
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell).center());
}

void ClickSection(QHeaderView* header, int section) {
  const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, 4);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
}

QWidget* EditorOf(QAbstractItemView* view, const QModelIndex& cell) {
  const bool open = QTest::qWaitFor([&] { return view->indexWidget(cell) != nullptr; }, 1000);
  return open ? view->indexWidget(cell) : nullptr;
}

QWidget* OpenEditor(QAbstractItemView* view, const QModelIndex& cell) {
  view->setCurrentIndex(cell);
  view->edit(cell);
  return view->indexWidget(cell);
}

bool TypeInto(QAbstractItemView* view, const QModelIndex& cell, const char* text) {
  QWidget* editor = OpenEditor(view, cell);
  if (!editor) return false;
  QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(editor, text);
  QTest::keyClick(editor, Qt::Key_Return);
  QApplication::processEvents();  // the delegate commits after the key
  return true;
}

void ExpectRefusedEdit(QAbstractItemView* view, const QModelIndex& cell, const char* input,
                       const char* message) {
  ASSERT_TRUE(TypeInto(view, cell, input));
  EXPECT_EQ(cell.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
  EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), message);
  QWidget* editor = EditorOf(view, cell);
  ASSERT_TRUE(editor) << "no editor reopened";
  EXPECT_EQ(editor->property(editor->metaObject()->userProperty().name()).toString(), input);
  QTest::keyClick(editor, Qt::Key_Escape);
  QApplication::processEvents();
}

}  // namespace ovui_test
