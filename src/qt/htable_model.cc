#include "qt/htable_model.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QString>
#include <QTableView>
#include <QVariant>
#include <cstdint>

#include "base/log.h"
#include "qt/list_model.h"

namespace {

const char* const kEvents[] = {
    "current-changed", "before-item-add", "item-add", "before-item-remove",
    "item-remove",     "update",          "rebind",
};
constexpr int kEventCount = static_cast<int>(sizeof(kEvents) / sizeof(kEvents[0]));

}  // namespace

HighTableModelOverViewModel* HighTableModelOverViewModel::Create(vm::ViewModelHTable* vm,
                                                                 QTableView* view) {
  OVUI_CHECK(vm != NULL && view != NULL, nullptr);
  const QVariant qv = view->property("binding.attribute");
  OVUI_CHECK(qv.isValid(), nullptr);
  return new HighTableModelOverViewModel(vm, view);
}

HighTableModelOverViewModel::HighTableModelOverViewModel(vm::ViewModelHTable* vm, QTableView* view)
    : QAbstractTableModel(nullptr), view(view), vm(vm), records(static_cast<int>(vm->Size())) {
  this->fields.Parse(view->property("binding.attribute").toString(), view->objectName());
  connect(view, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)));
  ListenEvents(vm, this, kEvents, kEventCount);
  vm->AddRef();
  view->setItemDelegate(new vm::CellDelegate(view));
  view->setModel(this);
  connect(view->selectionModel(), SIGNAL(currentColumnChanged(QModelIndex, QModelIndex)), this,
          SLOT(OnCurrentColumnChanged(QModelIndex, QModelIndex)));
  // Width= sizes the records' columns alike: the fields are rows here.
  for (int i = 0; i < this->fields.Count(); ++i) {
    if (this->fields.At(i)->width > 0) {
      view->horizontalHeader()->setDefaultSectionSize(this->fields.At(i)->width);
      break;
    }
  }
  ShowCurrentColumn();
}

HighTableModelOverViewModel::~HighTableModelOverViewModel() {
  UnlistenEvents(this->vm, this, kEvents, kEventCount);
  this->vm->Release();
  this->vm = nullptr;
}

int HighTableModelOverViewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : this->fields.Count();
}

int HighTableModelOverViewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : this->records;
}

QVariant HighTableModelOverViewModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return QVariant();
  const vm::ItemColumn* field = this->fields.At(index.row());
  const auto record = static_cast<unsigned int>(index.column());
  if (!field || record >= this->vm->Size()) return QVariant();
  const QVariant error = this->errors.Data(Key(index.column()), index.row(), role);
  if (error.isValid()) return error;
  // The editor's name and choices, the choices read from the table itself.
  if (role == vm::kEditorRole || role == vm::kOptionsRole) {
    return vm::CellData(*field, this->vm, role, nullptr);
  }
  base::Value value;
  if (!this->vm->GetCell(record, field->rule->path, value)) return QVariant();
  const std::string& converter = field->rule->converter;
  if (!converter.empty()) {
    base::Value shown;
    if (!this->vm->HasConverter(converter) || !this->vm->Convert(converter, value, shown)) {
      return QVariant();
    }
    value = shown;
  }
  return vm::CellValue(*field, value, role);
}

QVariant HighTableModelOverViewModel::headerData(int section, Qt::Orientation orientation,
                                                 int role) const {
  if (orientation == Qt::Vertical && role == Qt::DisplayRole) {
    const vm::ItemColumn* field = this->fields.At(section);
    return field ? QVariant(field->header) : QVariant();
  }
  // Records are numbered from 1, Qt's default.
  return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags HighTableModelOverViewModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index);
  const vm::ItemColumn* field = this->fields.At(index.row());
  if (!index.isValid() || !field) return base;
  return vm::CellFlags(*field, base);
}

bool HighTableModelOverViewModel::setData(const QModelIndex& index, const QVariant& value,
                                          int role) {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  const vm::ItemColumn* field = this->fields.At(index.row());
  const auto record = static_cast<unsigned int>(index.column());
  if (!field || !field->Editable() || record >= this->vm->Size()) return false;
  if (role != (field->IsCheck() ? Qt::CheckStateRole : Qt::EditRole)) return false;
  std::string error;
  const bool ok = WriteCell(*field, record, value, role, error);
  this->errors.Set(Key(index.column()), index.row(), ok ? std::string() : error, value);
  emit dataChanged(this->index(0, index.column()), this->index(rowCount() - 1, index.column()));
  return ok;
}

bool HighTableModelOverViewModel::WriteCell(const vm::ItemColumn& field, unsigned int record,
                                            const QVariant& input, int role, std::string& error) {
  base::Value value;
  if (!vm::CellInput(field, input, role, value, error)) return false;
  // The steps of a widget edit, with the cell in place of a property.
  const vm::DataBinding& rule = *field.rule;
  if (!rule.converter.empty()) {
    base::Value back;
    if (!this->vm->HasConverter(rule.converter)) {
      error = "no converter " + rule.converter;
      return false;
    }
    if (!this->vm->ConvertBack(rule.converter, value, back)) {
      error = "converter failed: " + rule.converter;
      return false;
    }
    value = back;
  }
  if (!rule.validator.empty()) {
    if (!this->vm->HasValidator(rule.validator)) {
      error = "no validator " + rule.validator;
      return false;
    }
    if (!this->vm->IsValidProp(rule.validator, value, error)) {
      if (error.empty()) error = "refused";
      return false;
    }
  }
  if (this->vm->SetCell(record, rule.path, value)) return true;
  error = "refused";
  return false;
}

bool HighTableModelOverViewModel::OnEvent(events::Event* e) {
  const std::string& type = e->GetType();
  if (type == "current-changed") {
    if (this->pending == Pending::kNone) ShowCurrentColumn();
  } else if (type == "before-item-add" || type == "before-item-remove") {
    if (this->pending != Pending::kNone) return false;
    const bool add = type == "before-item-add";
    const int start = e->GetParam("start").I32();
    const int end = e->GetParam("end").I32();
    // A range the model cannot take is left to the "after" event, which resets.
    if (start < 0 || end < start || start > this->records || (!add && end >= this->records)) {
      return false;
    }
    this->first = start;
    this->last = end;
    // Records shift: their marks would land on other records.
    this->errors.Clear();
    if (add) {
      this->pending = Pending::kInsert;
      beginInsertColumns(QModelIndex(), start, end);
    } else {
      this->pending = Pending::kRemove;
      beginRemoveColumns(QModelIndex(), start, end);
    }
  } else if (type == "item-add" || type == "item-remove") {
    const Pending expected = type == "item-add" ? Pending::kInsert : Pending::kRemove;
    if (this->pending != expected) {
      ResetColumns();
      return false;
    }
    const int count = this->last - this->first + 1;
    this->records += expected == Pending::kInsert ? count : -count;
    this->pending = Pending::kNone;
    if (expected == Pending::kInsert) {
      endInsertColumns();
    } else {
      endRemoveColumns();
    }
    // A subclass whose range and size disagree is shown as it is.
    if (this->records != static_cast<int>(this->vm->Size())) ResetColumns();
  } else if (type == "update") {
    if (this->records != static_cast<int>(this->vm->Size())) {
      ResetColumns();
    } else {
      RepaintAll();
    }
  } else if (type == "rebind") {
    const char* name = ValueText(e->GetParam("name"));
    if (!*name || this->view->objectName() == QString::fromUtf8(name)) ResetColumns();
  }
  return false;
}

void HighTableModelOverViewModel::OnCurrentColumnChanged(const QModelIndex& current,
                                                         const QModelIndex&) {
  if (this->following || this->pending != Pending::kNone || !current.isValid()) return;
  const auto record = static_cast<unsigned int>(current.column());
  if (record >= this->vm->Size() || record == this->vm->GetCurrent()) return;
  this->vm->SetCurrent(record);
}

void HighTableModelOverViewModel::OnWidgetDestroyed(QObject*) {
  this->view = nullptr;
  delete this;
}

void HighTableModelOverViewModel::ResetColumns() {
  if (this->pending != Pending::kNone) return;
  beginResetModel();
  this->errors.Clear();
  this->records = static_cast<int>(this->vm->Size());
  endResetModel();
  ShowCurrentColumn();
}

void HighTableModelOverViewModel::RepaintAll() {
  if (rowCount() == 0 || columnCount() == 0) return;
  emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void HighTableModelOverViewModel::ShowCurrentColumn() {
  if (!this->view || this->fields.Count() == 0) return;
  const unsigned int current = this->vm->GetCurrent();
  if (current >= static_cast<unsigned int>(this->records)) return;
  const int row = qMax(0, this->view->currentIndex().row());
  this->following = true;
  this->view->setCurrentIndex(index(row, static_cast<int>(current)));
  this->following = false;
}

const void* HighTableModelOverViewModel::Key(int record) {
  return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(record) + 1);
}
