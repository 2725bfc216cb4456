#ifndef OVUI_QT_ITEM_COLUMNS_H_
#define OVUI_QT_ITEM_COLUMNS_H_

#include <QModelIndex>
#include <QString>
#include <QStyledItemDelegate>
#include <QVariant>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mvvm/data_binding.h"
#include "mvvm/view_model.h"

class QHeaderView;

namespace vm {

// Roles the item models answer for CellDelegate.
enum ItemRole {
  // The column's Editor= name ("combo", "date", "time", "datetime", "spin"),
  // or an invalid variant.
  kEditorRole = Qt::UserRole + 100,
  // The combo editor's choices (QStringList), from the Options= property.
  kOptionsRole,
};

// One column of an item view: one rule line of the view's "binding.value"
// (or "binding.attribute"). The rule is an ordinary data-binding rule; the
// keys it does not know arrive lower-cased in its params and are read here:
//   Header=   the header text, passed through the translator
//   Width=    the initial section width in pixels
//   Editor=   combo, date, time, datetime, spin, or check (a check box)
//   Options=  a view-model property holding newline-separated choices
class ItemColumn {
 public:
  // Adopts `rule`.
  explicit ItemColumn(DataBinding* rule);
  ~ItemColumn();
  ItemColumn(const ItemColumn&) = delete;
  ItemColumn& operator=(const ItemColumn&) = delete;

  // TwoWay and OneWayToModel columns edit; the others are read-only.
  bool Editable() const;
  bool IsCheck() const { return this->editor == "check"; }

  DataBinding* const rule;
  QString header;
  int width = -1;
  std::string editor;
  std::string options;
};

// The columns of one view, in the order of their lines.
class ItemColumns {
 public:
  // One rule per line; a line that does not parse is skipped with a log line
  // naming `view_name`, and the other columns still work.
  void Parse(const QString& text, const QString& view_name);
  int Count() const { return static_cast<int>(this->columns.size()); }
  const ItemColumn* At(int column) const;
  // Gives every section with a Width= its width.
  void ApplyWidths(QHeaderView* header) const;

 private:
  std::vector<std::unique_ptr<ItemColumn>> columns;
};

// The cell side that the tree and table models share.
//
// What `row` shows in `column` for `role`: the rule's value (path,
// expression, converter) for display and editing, seconds since the epoch
// as a date, time or date-time for those editors, a check state for check
// columns; the editor name and choices for CellDelegate.
QVariant CellData(const ItemColumn& column, ViewModel* row, int role, ViewModel* options_from);
// Writes an edited cell through the rule: converter, validator, then the
// property. False, with `error` saying why, when refused.
bool SetCellData(const ItemColumn& column, ViewModel* row, const QVariant& value, int role,
                 std::string& error);
// The same two steps for cells that are not view-model properties (the
// fields of a horizontal table): what a value already read shows for `role`,
// and the value an edit stands for (a check state for check columns, the
// editor's value otherwise). CellInput is false, with `error` set, for a
// role or value the column cannot take.
QVariant CellValue(const ItemColumn& column, const base::Value& value, int role);
bool CellInput(const ItemColumn& column, const QVariant& input, int role, base::Value& value,
               std::string& error);
Qt::ItemFlags CellFlags(const ItemColumn& column, Qt::ItemFlags base);

// Refused cell writes. A refused cell shows red text with the message as its
// tool tip, and offers the refused input for the next edit, until a later
// write to that cell succeeds.
class CellErrors {
 public:
  // An empty message clears the cell.
  void Set(const void* row, int column, const std::string& message, const QVariant& input);
  // The answer for the roles above when the cell is in error.
  QVariant Data(const void* row, int column, int role) const;
  bool Has(const void* row, int column) const;
  void Forget(const void* row);
  void Clear() { this->errors.clear(); }

 private:
  struct Error {
    QString message;
    QVariant input;
  };
  std::map<std::pair<const void*, int>, Error> errors;
};

// Picks the editor a column's Editor= names: a combo box of its Options=,
// date, time and date-time editors, or a spin box; Qt's default editor
// otherwise. A refused write opens the editor again with the user's input.
class CellDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
};

}  // namespace vm

#endif  // OVUI_QT_ITEM_COLUMNS_H_
