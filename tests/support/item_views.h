#ifndef OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_
#define OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_

#include <QAbstractItemView>
#include <QHeaderView>
#include <QSize>
#include <QStringList>
#include <string>

#include "mvvm/view_model_array_ext.h"
#include "mvvm/view_model_item.h"
#include "support/toy_objects.h"

namespace ovui_test {

// A row with name, qty and done; "qty_range" accepts a qty of 0 to 100.
struct Row : vm::ViewModelItem {
  explicit Row(std::string name, int qty = 0, bool done = false);
  std::string name;
  int qty;
  bool done;
};

// A list of Rows that keeps those whose name starts with the filter rule.
struct Rows : Tracked<vm::ViewModelArrayExt> {
  using Tracked::Tracked;
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override;
  void AddRow(const char* name, int qty = 0, bool done = false, int index = -1);
  Row* At(unsigned int i) const { return static_cast<Row*>(Get(i)); }
};

// Aborts the test program as soon as `model` breaks Qt's contract.
void CheckModel(QAbstractItemModel* model);

// Shows `w` at `size`; false when it never got exposed.
bool Show(QWidget* w, QSize size = QSize(420, 240));

// The display texts of `column` in the rows under `parent`, top to bottom.
QStringList ColumnTexts(const QAbstractItemModel* model, int column,
                        const QModelIndex& parent = QModelIndex());
// The same, comma separated: "a,b".
std::string Texts(const QAbstractItemModel* model, int column = 0,
                  const QModelIndex& parent = QModelIndex());

void ClickCell(QAbstractItemView* view, const QModelIndex& cell);

// Clicks a horizontal header's `section` near its top, above any title widgets.
void ClickSection(QHeaderView* header, int section);

// Makes `cell` current and opens its editor; the editor, or null.
QWidget* OpenEditor(QAbstractItemView* view, const QModelIndex& cell);

// The editor open on `cell`, or null when none opens within a second (a
// refused edit reopens its editor on a later turn).
QWidget* EditorOf(QAbstractItemView* view, const QModelIndex& cell);

// Opens the editor of `cell`, types `text` over its content and presses
// Enter; false when no editor opened.
bool TypeInto(QAbstractItemView* view, const QModelIndex& cell, const char* text);

// Types `input` into `cell`, which must refuse it: the cell turns red with
// `message` as tool tip, and its editor opens again with the input (then
// cancelled).
void ExpectRefusedEdit(QAbstractItemView* view, const QModelIndex& cell, const char* input,
                       const char* message);

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_ITEM_VIEWS_H_
