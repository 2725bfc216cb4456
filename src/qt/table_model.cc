#include "qt/table_model.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QString>
#include <QTableView>
#include <QVariant>
#include <cstring>
#include <string>

#include "base/log.h"
#include "mvvm/view_model_array_ext.h"
#include "qt/list_model.h"

TableModelOverViewModel* TableModelOverViewModel::Create(vm::ViewModelArray* vm, QTableView* view) {
  OVUI_CHECK(vm != NULL && view != NULL, nullptr);
  const QVariant qv = view->property("binding.value");
  OVUI_CHECK(qv.isValid(), nullptr);
  return new TableModelOverViewModel(vm, view);
}

TableModelOverViewModel::TableModelOverViewModel(vm::ViewModelArray* vm, QTableView* view)
    : QAbstractTableModel(nullptr),
      view(view),
      vm(vm),
      ext(dynamic_cast<vm::ViewModelArrayExt*>(vm)) {
  this->columns.Parse(view->property("binding.value").toString(), view->objectName());
  const auto& items = vm->GetItems();
  this->shown.assign(items.begin(), items.end());
  connect(view, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
  ListenEvents(vm, this, kListModelEvents, kListModelEventCount);
  vm->AddRef();
  view->setItemDelegate(new vm::CellDelegate(view));
  view->setModel(this);
  // setModel made a new selection model; follow that one.
  connect(view->selectionModel(), SIGNAL(currentRowChanged(QModelIndex, QModelIndex)), this,
          SLOT(OnCurrentRowChanged(QModelIndex, QModelIndex)));
  QHeaderView* header = view->horizontalHeader();
  this->columns.ApplyWidths(header);
  if (this->ext) {
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    connect(header, SIGNAL(sectionClicked(int)), this, SLOT(OnSectionClicked(int)));
    ShowSortIndicator();
  }
  ShowCurrentRow();
}

TableModelOverViewModel::~TableModelOverViewModel() {
  // Off first: it hands back the emitters' references on this listener, and
  // the list (released next) may go with its emitter.
  UnlistenEvents(this->vm, this, kListModelEvents, kListModelEventCount);
  this->vm->Release();
  this->vm = nullptr;
}

int TableModelOverViewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(this->shown.size());
}

int TableModelOverViewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : this->columns.Count();
}

vm::ViewModel* TableModelOverViewModel::Row(int row) const {
  // Read from the list itself: rows released inside a batch, which sends
  // nothing, are never touched.
  if (row < 0 || static_cast<unsigned int>(row) >= this->vm->Size()) return nullptr;
  return this->vm->Get(static_cast<unsigned int>(row));
}

QVariant TableModelOverViewModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return QVariant();
  const vm::ItemColumn* column = this->columns.At(index.column());
  vm::ViewModel* row = Row(index.row());
  if (!column || !row) return QVariant();
  const QVariant error = this->errors.Data(row, index.column(), role);
  if (error.isValid()) return error;
  return vm::CellData(*column, row, role, this->vm);
}

QVariant TableModelOverViewModel::headerData(int section, Qt::Orientation orientation,
                                             int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
    const vm::ItemColumn* column = this->columns.At(section);
    return column ? QVariant(column->header) : QVariant();
  }
  return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags TableModelOverViewModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index);
  const vm::ItemColumn* column = this->columns.At(index.column());
  if (!index.isValid() || !column) return base;
  return vm::CellFlags(*column, base);
}

bool TableModelOverViewModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  const vm::ItemColumn* column = this->columns.At(index.column());
  vm::ViewModel* row = Row(index.row());
  if (!column || !row || !column->Editable()) return false;
  // A check column takes check states only, the others edits only.
  if (role != (column->IsCheck() ? Qt::CheckStateRole : Qt::EditRole)) return false;
  std::string error;
  const bool ok = vm::SetCellData(*column, row, value, role, error);
  // A refusal keeps what the user entered, for the editor that reopens.
  this->errors.Set(row, index.column(), ok ? std::string() : (error.empty() ? "refused" : error),
                   value);
  // A row that is no vm::ViewModelItem announces nothing itself.
  emit dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
  return ok;
}

void TableModelOverViewModel::sort(int column, Qt::SortOrder order) {
  const vm::ItemColumn* c = this->columns.At(column);
  if (!this->ext || !c || c->rule->path.empty()) return;
  this->ext->Sort((order == Qt::AscendingOrder ? "1:" : "0:") + c->rule->path);
  ShowSortIndicator();
}

bool TableModelOverViewModel::OnEvent(events::Event* e) {
  const std::string& type = e->GetType();
  if (type == "current-changed") {
    if (this->pending == Pending::kNone) ShowCurrentRow();
  } else if (type == "before-item-add") {
    if (!IsOwnRow(e) || this->pending != Pending::kNone) return false;
    const int start = e->GetParam("start").I32();
    if (start < 0 || start > rowCount()) return false;  // out of step: item-add resets
    this->pending = Pending::kInsert;
    beginInsertRows(QModelIndex(), start, start);
  } else if (type == "item-add") {
    if (!IsOwnRow(e)) return false;
    if (this->pending != Pending::kInsert) {
      ResetRows();
      return false;
    }
    const auto row = static_cast<size_t>(e->GetParam("start").I32());
    this->shown.insert(this->shown.begin() + static_cast<std::ptrdiff_t>(row),
                       static_cast<const vm::ViewModel*>(e->GetParam("item").Pointer()));
    this->pending = Pending::kNone;
    endInsertRows();
  } else if (type == "before-item-remove") {
    if (!IsOwnRow(e) || this->pending != Pending::kNone) return false;
    const int start = e->GetParam("start").I32();
    if (start < 0 || start >= rowCount()) return false;
    this->pending = Pending::kRemove;
    beginRemoveRows(QModelIndex(), start, start);
  } else if (type == "item-remove") {
    if (!IsOwnRow(e)) return false;
    this->errors.Forget(e->GetParam("item").Pointer());
    if (this->pending != Pending::kRemove) {
      ResetRows();
      return false;
    }
    this->shown.erase(this->shown.begin() + e->GetParam("start").I32());
    this->pending = Pending::kNone;
    endRemoveRows();
  } else if (type == "before-remove-all") {
    if (this->pending != Pending::kNone) return false;
    this->pending = Pending::kReset;
    beginResetModel();
  } else if (type == "remove-all") {
    this->errors.Clear();
    if (this->pending == Pending::kReset) {
      this->shown.clear();
      this->pending = Pending::kNone;
      endResetModel();
    } else {
      ResetRows();
    }
  } else if (type == "filtered" || type == "sorted") {
    RelayoutRows();
    ShowSortIndicator();
  } else if (type == "rebind") {
    // A rebind names a control, or none for the whole view.
    const char* name = ValueText(e->GetParam("name"));
    if (!*name || this->view->objectName() == QString::fromUtf8(name)) ResetRows();
  } else if (type == "update-model") {
    RepaintRows();
  } else if (type == "prop-changed") {
    // Children announce their writes on the list; the list's own "PropsChange"
    // (size and current position) changes no cell.
    if (std::strcmp(ValueText(e->GetParam("kind")), "PropChange") == 0) RepaintRows();
  }
  return false;
}

void TableModelOverViewModel::OnCurrentRowChanged(const QModelIndex& current, const QModelIndex&) {
  // Removals and resets move the view's current row on their own; the list
  // announces its own current child afterwards.
  if (this->following || this->pending != Pending::kNone || !current.isValid()) return;
  const auto row = static_cast<unsigned int>(current.row());
  if (row >= this->vm->Size()) return;
  if (row == this->vm->GetCurrent() && this->vm->GetCurrentViewModel() == this->vm->Get(row)) {
    return;
  }
  this->vm->SetCurrent(row);
}

void TableModelOverViewModel::OnSectionClicked(int section) {
  const vm::ItemColumn* column = this->columns.At(section);
  if (!this->ext || !column) return;
  // A second click on the sorted column reverses it.
  const bool ascending = this->ext->GetSortRule() != "1:" + column->rule->path;
  sort(section, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TableModelOverViewModel::OnWidgetDestroyed(QObject*) {
  this->view = nullptr;
  delete this;
}

bool TableModelOverViewModel::IsOwnRow(const events::Event* e) const {
  return e->GetParam("parent").Pointer() == static_cast<void*>(this->vm);
}

void TableModelOverViewModel::ResetRows() {
  // The list has already changed: an empty reset pair is all that is left
  // to announce it, and keeps the model's promises intact.
  if (this->pending != Pending::kNone) return;
  beginResetModel();
  const auto& items = this->vm->GetItems();
  this->shown.assign(items.begin(), items.end());
  endResetModel();
  ShowCurrentRow();
}

void TableModelOverViewModel::RelayoutRows() {
  if (this->pending != Pending::kNone) return;
  emit layoutAboutToBeChanged();
  const auto& items = this->vm->GetItems();
  const QModelIndexList from = persistentIndexList();
  QModelIndexList to;
  to.reserve(from.size());
  for (const QModelIndex& old : from) {
    const size_t row = static_cast<size_t>(old.row());
    int now = -1;
    if (row < this->shown.size()) now = this->vm->IndexOf(this->shown[row]);
    to.append(now < 0 ? QModelIndex() : createIndex(now, old.column()));
  }
  changePersistentIndexList(from, to);
  this->shown.assign(items.begin(), items.end());
  emit layoutChanged();
  ShowCurrentRow();
}

void TableModelOverViewModel::RepaintRows() {
  if (this->pending != Pending::kNone || rowCount() == 0 || columnCount() == 0) return;
  emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void TableModelOverViewModel::ShowCurrentRow() {
  if (!this->view || this->shown.empty()) return;
  const unsigned int current = this->vm->GetCurrent();
  if (current >= this->shown.size()) return;
  const int column = qMax(0, this->view->currentIndex().column());
  this->following = true;
  this->view->setCurrentIndex(index(static_cast<int>(current), column));
  this->following = false;
}

void TableModelOverViewModel::ShowSortIndicator() {
  if (!this->ext) return;
  const std::string& rule = this->ext->GetSortRule();
  QHeaderView* header = this->view->horizontalHeader();
  if (rule.size() > 2) {
    const std::string key = rule.substr(2);
    for (int i = 0; i < this->columns.Count(); ++i) {
      if (this->columns.At(i)->rule->path != key) continue;
      header->setSortIndicator(i, rule[0] == '0' ? Qt::DescendingOrder : Qt::AscendingOrder);
      return;
    }
  }
  header->setSortIndicator(-1, Qt::AscendingOrder);
}
