#ifndef OVUI_QT_LIST_MODEL_H_
#define OVUI_QT_LIST_MODEL_H_

#include <QAbstractListModel>
#include <QModelIndex>

#include "base/value.h"
#include "events/event_listener.h"
#include "mvvm/data_binding.h"
#include "mvvm/view_model_array.h"

class QAbstractItemView;

// Registers `listener` on `vm` for the first `count` event names of `names`,
// in order; UnlistenEvents unregisters it the same way. Shared by the item
// models over view models.
void ListenEvents(vm::ViewModel* vm, events::EventListener* listener, const char* const* names,
                  int count);
void UnlistenEvents(vm::ViewModel* vm, events::EventListener* listener, const char* const* names,
                    int count);
// The events a model over a list view model follows: the "before-" events
// open the item-model protocol's begin calls; the list has already changed
// when the others arrive.
extern const char* const kListModelEvents[];
extern const int kListModelEventCount;
// A string value's text; empty for a value without one.
const char* ValueText(const base::Value& v);

// Shows a list view model in a QListView: one row per child, showing the
// property (or expression) of the view's "binding.value" rule. Read-only.
//
// The model follows the list's item events: single rows are announced as
// they are inserted and removed; a cleared, filtered, sorted or rebuilt list
// (the end of a batch) resets the model. A removal keeps the view's current
// row where it is, or moves it to the last row when it fell off the end or
// there was none. "current-changed" moves the view's current row, a clicked
// row becomes the list's current child, and changed child properties repaint
// the rows. It holds one reference on the list and lives until the view is
// destroyed.
class ListModelOverViewModel : public QAbstractListModel, public events::EventListener {
  Q_OBJECT

 public:
  // The model, installed on `list`; null (logged) for a null argument or a
  // view without "binding.value".
  static ListModelOverViewModel* Create(vm::ViewModelArray* vm, QAbstractItemView* list);
  ~ListModelOverViewModel() override;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

  bool OnEvent(events::Event* e) override;

 public slots:
  void OnActivated(QModelIndex index);
  void OnWidgetDestroyed(QObject* obj);

 private:
  ListModelOverViewModel(vm::ViewModelArray* vm, QAbstractItemView* widget);

  // Which begin call of the item-model protocol waits for its end call.
  enum class Pending { kNone, kInsert, kRemove, kReset };

  // Whether an item event is about this list's own rows (a nested array's
  // events are announced again on the root of the nest).
  bool IsOwnRow(const events::Event* e) const;
  // Announces a list that changed wholesale, then shows the list's current row.
  void ResetRows();
  void RepaintRows();
  // The view's current row after a removal: `row` (the one before it) while
  // still in the list, else the last row.
  void RestoreCurrentRow(int row);

  QAbstractItemView* widget = nullptr;
  vm::DataBinding* binding = nullptr;
  vm::ViewModelArray* vm = nullptr;
  Pending pending = Pending::kNone;
  // The view's current row when the pending removal or reset began.
  int row_before = -1;
};

#endif  // OVUI_QT_LIST_MODEL_H_
