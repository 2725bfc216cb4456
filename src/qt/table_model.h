#ifndef OVUI_QT_TABLE_MODEL_H_
#define OVUI_QT_TABLE_MODEL_H_

#include <QAbstractTableModel>
#include <QModelIndex>
#include <vector>

#include "events/event_listener.h"
#include "mvvm/view_model_array.h"
#include "qt/item_columns.h"

class QTableView;

namespace vm {
class ViewModelArrayExt;
}

// Shows a list view model in a QTableView: one row per child, one column per
// rule line of the view's "binding.value" (see vm::ItemColumn for Header=,
// Width=, Editor= and Options=).
//
// Rows follow the list's item events with real insertions and removals; a
// cleared or rebuilt list (the end of a batch, "rebind") resets the model,
// and the "filtered" and "sorted" of a vm::ViewModelArrayExt are layout
// changes that keep persistent indexes on their children. The view's current
// row and the list's current child follow each other. Changed child
// properties repaint the table.
//
// Cells of TwoWay and OneWayToModel columns edit through the rule (converter,
// validator, property); a refused write shows red with its message until a
// later write to that cell succeeds. Editor=check columns toggle in place.
//
// Over a vm::ViewModelArrayExt a click on a section header sorts the list by
// that column's Path with the list's own Sort rule; a second click reverses
// the order. The header shows the sort indicator.
//
// It holds one reference on the list and lives until the view is destroyed.
class TableModelOverViewModel : public QAbstractTableModel, public events::EventListener {
  Q_OBJECT

 public:
  // The model, installed on `view` with a vm::CellDelegate; null (logged)
  // for a null argument or a view without "binding.value".
  static TableModelOverViewModel* Create(vm::ViewModelArray* vm, QTableView* view);
  ~TableModelOverViewModel() override;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  // Sorts a vm::ViewModelArrayExt with its own rule, "1:<Path>" or "0:<Path>".
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

  bool OnEvent(events::Event* e) override;

  const vm::ItemColumns& Columns() const { return this->columns; }

 public slots:
  void OnCurrentRowChanged(const QModelIndex& current, const QModelIndex& previous);
  void OnSectionClicked(int section);
  void OnWidgetDestroyed(QObject* obj);

 private:
  TableModelOverViewModel(vm::ViewModelArray* vm, QTableView* view);

  // Which begin call of the item-model protocol waits for its end call.
  enum class Pending { kNone, kInsert, kRemove, kReset };

  // Whether an item event is about this list's own rows (a nested array's
  // events are announced again on the root of the nest).
  bool IsOwnRow(const events::Event* e) const;
  vm::ViewModel* Row(int row) const;
  // Announces a list that changed wholesale.
  void ResetRows();
  // Announces a list whose children were reordered or filtered: persistent
  // indexes move with their children, or become invalid when hidden.
  void RelayoutRows();
  void RepaintRows();
  // Moves the view's current row to the list's current child.
  void ShowCurrentRow();
  void ShowSortIndicator();

  QTableView* view = nullptr;
  vm::ViewModelArray* vm = nullptr;
  // The same list when it can sort and filter, else null.
  vm::ViewModelArrayExt* ext = nullptr;
  vm::ItemColumns columns;
  vm::CellErrors errors;
  // The rows as last announced: the model's row count, and the key for
  // moving persistent indexes when the list is reordered. Never dereferenced.
  std::vector<const vm::ViewModel*> shown;
  Pending pending = Pending::kNone;
  // Set while the view is moved to follow the list, so that the move is not
  // written back.
  bool following = false;
};

#endif  // OVUI_QT_TABLE_MODEL_H_
