#ifndef OVUI_QT_HTABLE_MODEL_H_
#define OVUI_QT_HTABLE_MODEL_H_

#include <QAbstractTableModel>
#include <QModelIndex>
#include <string>

#include "events/event_listener.h"
#include "mvvm/view_model_htable.h"
#include "qt/item_columns.h"

class QTableView;

// Shows a vm::ViewModelHTable in a QTableView turned on its side: each
// record is a column, numbered from 1, and the fields run down as rows, one
// per rule line of the view's "binding.attribute" (the same rule form as a
// table's columns; Header= labels the row). Cells are read and written with
// the table's GetCell and SetCell under the rule's Path, through the rule's
// converter and validator; a refused write shows red with its message.
//
// The table's range events insert and remove columns, "update" repaints the
// whole table, and the view's current column and the table's current record
// follow each other.
//
// It holds one reference on the table and lives until the view is destroyed.
class HighTableModelOverViewModel : public QAbstractTableModel, public events::EventListener {
  Q_OBJECT

 public:
  // The model, installed on `view` with a vm::CellDelegate; null (logged)
  // for a null argument or a view without "binding.attribute".
  static HighTableModelOverViewModel* Create(vm::ViewModelHTable* vm, QTableView* view);
  ~HighTableModelOverViewModel() override;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  bool OnEvent(events::Event* e) override;

  const vm::ItemColumns& Fields() const { return this->fields; }

 public slots:
  void OnCurrentColumnChanged(const QModelIndex& current, const QModelIndex& previous);
  void OnWidgetDestroyed(QObject* obj);

 private:
  HighTableModelOverViewModel(vm::ViewModelHTable* vm, QTableView* view);

  enum class Pending { kNone, kInsert, kRemove };

  // Writes one cell: converter, validator, then SetCell. False with `error`.
  bool WriteCell(const vm::ItemColumn& field, unsigned int record, const QVariant& input, int role,
                 std::string& error);
  // Announces a table that changed in a way no event described.
  void ResetColumns();
  void RepaintAll();
  void ShowCurrentColumn();
  // CellErrors keys cells by row object; records are only positions.
  static const void* Key(int record);

  QTableView* view = nullptr;
  vm::ViewModelHTable* vm = nullptr;
  vm::ItemColumns fields;
  vm::CellErrors errors;
  // The records as last announced; the "after" events carry no range, so the
  // one of the "before" event is kept.
  int records = 0;
  Pending pending = Pending::kNone;
  int first = 0;
  int last = -1;
  bool following = false;
};

#endif  // OVUI_QT_HTABLE_MODEL_H_
