#include "qt/list_model.h"

#include <QAbstractItemView>
#include <QString>
#include <QVariant>
#include <cstring>
#include <string>

#include "base/log.h"
#include "mvvm/data_binding_parser.h"

const char* const kListModelEvents[] = {
    "current-changed", "prop-changed",      "before-item-add", "item-add", "before-item-remove",
    "item-remove",     "before-remove-all", "remove-all",      "filtered", "sorted",
    "rebind",          "update-model",
};
const int kListModelEventCount =
    static_cast<int>(sizeof(kListModelEvents) / sizeof(kListModelEvents[0]));

const char* ValueText(const base::Value& v) {
  const char* s = v.Str();
  return s ? s : "";
}

void ListenEvents(vm::ViewModel* vm, events::EventListener* listener, const char* const* names,
                  int count) {
  for (int i = 0; i < count; ++i)
    vm->On(names[i], listener);
}

void UnlistenEvents(vm::ViewModel* vm, events::EventListener* listener, const char* const* names,
                    int count) {
  for (int i = 0; i < count; ++i)
    vm->Off(names[i], listener);
}

ListModelOverViewModel* ListModelOverViewModel::Create(vm::ViewModelArray* vm,
                                                       QAbstractItemView* list) {
  OVUI_CHECK(vm != NULL && list != NULL, nullptr);
  const QVariant qv = list->property("binding.value");
  OVUI_CHECK(qv.isValid(), nullptr);
  return new ListModelOverViewModel(vm, list);
}

ListModelOverViewModel::ListModelOverViewModel(vm::ViewModelArray* vm, QAbstractItemView* widget)
    : QAbstractListModel(nullptr), widget(widget), vm(vm) {
  const QByteArray rule = widget->property("binding.value").toString().toUtf8();
  this->binding = vm::DataBindingParser::FromString(rule.toStdString());
  connect(widget, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
  connect(widget, SIGNAL(clicked(QModelIndex)), this, SLOT(OnActivated(QModelIndex)));
  ListenEvents(vm, this, kListModelEvents, kListModelEventCount);
  vm->AddRef();
  widget->setModel(this);
  // The view starts on the list's current row, as later changes keep it.
  if (vm->Size() > 0) widget->setCurrentIndex(index(static_cast<int>(vm->GetCurrent()), 0));
}

ListModelOverViewModel::~ListModelOverViewModel() {
  // Off first: it hands back the emitters' references on this listener, and
  // the list (released next) may go with its emitter.
  UnlistenEvents(this->vm, this, kListModelEvents, kListModelEventCount);
  this->vm->Release();
  this->vm = nullptr;
  delete this->binding;
  this->binding = nullptr;
}

int ListModelOverViewModel::rowCount(const QModelIndex& parent) const {
  // A list: rows have no children.
  return parent.isValid() ? 0 : static_cast<int>(this->vm->Size());
}

QVariant ListModelOverViewModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !this->binding || !index.isValid()) return QVariant();
  const auto row = static_cast<unsigned int>(index.row());
  if (row >= this->vm->Size()) return QVariant();
  base::Value value;
  this->binding->GetPropW(this->vm->Get(row), value);
  switch (value.Type()) {
    case base::Value::TYPE_FLOAT:
      return QVariant(value.Float());
    case base::Value::TYPE_INT:
      // Never shown as a date or time here: a list row has no column kind.
      return QVariant(value.I32());
    case base::Value::TYPE_STR:
      return QVariant(QString::fromUtf8(ValueText(value)));
    case base::Value::TYPE_POINTER:
      return QVariant::fromValue(value.Pointer());
    default:
      return QVariant();
  }
}

bool ListModelOverViewModel::OnEvent(events::Event* e) {
  const std::string& type = e->GetType();
  if (type == "current-changed") {
    if (this->pending != Pending::kNone) return false;
    this->widget->setCurrentIndex(index(static_cast<int>(this->vm->GetCurrent()), 0));
  } else if (type == "before-item-add") {
    if (!IsOwnRow(e) || this->pending != Pending::kNone) return false;
    this->pending = Pending::kInsert;
    beginInsertRows(QModelIndex(), e->GetParam("start").I32(), e->GetParam("end").I32());
  } else if (type == "item-add") {
    if (!IsOwnRow(e)) return false;
    if (this->pending != Pending::kInsert) {
      // Not announced beforehand: the row is already there.
      ResetRows();
      return false;
    }
    this->pending = Pending::kNone;
    endInsertRows();
  } else if (type == "before-item-remove") {
    if (!IsOwnRow(e) || this->pending != Pending::kNone) return false;
    this->pending = Pending::kRemove;
    this->row_before = this->widget->currentIndex().row();
    beginRemoveRows(QModelIndex(), e->GetParam("start").I32(), e->GetParam("end").I32());
  } else if (type == "item-remove") {
    if (!IsOwnRow(e)) return false;
    if (this->pending != Pending::kRemove) {
      const int row = this->widget->currentIndex().row();
      ResetRows();
      RestoreCurrentRow(row);
      return false;
    }
    this->pending = Pending::kNone;
    endRemoveRows();
    RestoreCurrentRow(this->row_before);
  } else if (type == "before-remove-all") {
    if (this->pending != Pending::kNone) return false;
    this->pending = Pending::kReset;
    this->row_before = this->widget->currentIndex().row();
    beginResetModel();
  } else if (type == "remove-all") {
    int row = this->row_before;
    if (this->pending == Pending::kReset) {
      this->pending = Pending::kNone;
      endResetModel();
    } else {
      row = this->widget->currentIndex().row();
      beginResetModel();
      endResetModel();
    }
    RestoreCurrentRow(row);
  } else if (type == "filtered" || type == "sorted") {
    ResetRows();
  } else if (type == "rebind") {
    // A rebind names a control, or none for the whole view.
    const char* name = ValueText(e->GetParam("name"));
    if (!*name || this->widget->objectName() == QString::fromUtf8(name)) ResetRows();
  } else if (type == "update-model") {
    RepaintRows();
  } else if (type == "prop-changed") {
    // Children announce their writes on the list; the list's own "PropsChange"
    // (size and current position) changes no cell.
    if (std::strcmp(ValueText(e->GetParam("kind")), "PropChange") == 0) RepaintRows();
  }
  return false;
}

void ListModelOverViewModel::OnActivated(QModelIndex index) {
  if (!index.isValid()) return;
  this->vm->SetCurrent(static_cast<unsigned int>(index.row()));
}

void ListModelOverViewModel::OnWidgetDestroyed(QObject*) {
  this->widget = nullptr;
  delete this;
}

bool ListModelOverViewModel::IsOwnRow(const events::Event* e) const {
  return e->GetParam("parent").Pointer() == static_cast<void*>(this->vm);
}

void ListModelOverViewModel::ResetRows() {
  // The list has already changed: an empty reset pair is all that is left
  // to announce it, and keeps the model's promises intact.
  if (this->pending != Pending::kNone) return;
  beginResetModel();
  endResetModel();
  const unsigned int current = this->vm->GetCurrent();
  if (current < this->vm->Size())
    this->widget->setCurrentIndex(index(static_cast<int>(current), 0));
}

void ListModelOverViewModel::RepaintRows() {
  const int rows = rowCount();
  if (this->pending != Pending::kNone || rows == 0) return;
  emit dataChanged(index(0, 0), index(rows - 1, 0), {Qt::DisplayRole});
}

void ListModelOverViewModel::RestoreCurrentRow(int row) {
  // Deliberately unsigned: no current row (-1) selects the last row.
  auto target = static_cast<unsigned int>(row);
  if (target >= this->vm->Size()) target = this->vm->Size() - 1;
  this->widget->setCurrentIndex(index(static_cast<int>(target), 0));
}
