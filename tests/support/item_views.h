#ifndef OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_
#define OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_

#include <QAbstractItemView>
#include <QStringList>

namespace ovui_test {

// The display texts of one column under `parent`, top to bottom.
QStringList ColumnTexts(const QAbstractItemModel* model, int column,
                        const QModelIndex& parent = QModelIndex());

// Makes `cell` current, opens its editor, replaces what it holds with `text`
// and presses Enter, then lets the delegate commit. False when no editor
// opens.
bool TypeInCell(QAbstractItemView* view, const QModelIndex& cell, const QString& text);

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_
