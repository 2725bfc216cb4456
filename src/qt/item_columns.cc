#include "qt/item_columns.h"

#include <QAbstractItemView>
#include <QBrush>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QMetaProperty>
#include <QPersistentModelIndex>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStringList>
#include <QTimeEdit>
#include <climits>
#include <cstdlib>

#include "base/log.h"
#include "base/str_utils.h"
#include "mvvm/data_binding_parser.h"
#include "qt/data_binding_item.h"
#include "qt/translator.h"

namespace vm {

namespace {

std::string Param(const DataBinding* rule, const char* key) {
  auto it = rule->params.find(key);
  return it == rule->params.end() ? std::string() : it->second;
}

// The widget property whose value conversion a column's editor wants:
// integers are seconds since the epoch for the date and time editors.
const char* ConversionFor(const std::string& editor) {
  if (editor == "date") return "date";
  if (editor == "time") return "time";
  if (editor == "datetime") return "dateTime";
  return "";
}

QStringList Choices(const ItemColumn& column, ViewModel* row, ViewModel* options_from) {
  base::Value text;
  if (!row->GetPropW(column.options, text) &&
      !(options_from && options_from->GetPropW(column.options, text))) {
    return QStringList();
  }
  const char* s = text.Str();
  QStringList choices = QString::fromUtf8(s ? s : "").split('\n');
  if (!choices.isEmpty() && choices.back().isEmpty()) choices.removeLast();
  return choices;
}

}  // namespace

ItemColumn::ItemColumn(DataBinding* rule) : rule(rule) {
  const std::string width_text = Param(rule, "width");
  if (!width_text.empty()) this->width = std::atoi(width_text.c_str());
  this->editor = base::StrUtils::ToLower(Param(rule, "editor"));
  this->options = Param(rule, "options");
}

ItemColumn::~ItemColumn() {
  this->rule->Release();
}

bool ItemColumn::Editable() const {
  return this->rule->mode == DataBinding::MODE_TWO_WAY ||
         this->rule->mode == DataBinding::MODE_ONE_WAY_TO_MODEL;
}

void ItemColumns::Parse(const QString& text, const QString& view_name) {
  const QByteArray view = view_name.toUtf8();
  for (const QString& raw : text.split(QRegularExpression("[\r\n]"))) {
    const QString line = raw.trimmed();
    if (line.isEmpty()) continue;
    const QByteArray utf8 = line.toUtf8();
    DataBinding* rule = nullptr;
    if (line.startsWith('{') && line.endsWith('}')) {
      rule = DataBindingParser::FromString(utf8.toStdString());
    }
    if (!rule) {
      base::Log(__FILE__, __LINE__, 2, "%s:%d column rule of %s skipped: %s\n", __func__, __LINE__,
                view.constData(), utf8.constData());
      continue;
    }
    auto column = std::make_unique<ItemColumn>(rule);
    const std::string header = Param(rule, "header");
    column->header = QString::fromUtf8(
        (header.empty() ? rule->path : Translator::Tr(header, view.toStdString())).c_str());
    this->columns.push_back(std::move(column));
  }
}

const ItemColumn* ItemColumns::At(int column) const {
  if (column < 0 || column >= Count()) return nullptr;
  return this->columns[static_cast<size_t>(column)].get();
}

void ItemColumns::ApplyWidths(QHeaderView* header) const {
  for (int i = 0; i < Count(); ++i) {
    if (this->columns[static_cast<size_t>(i)]->width > 0) {
      header->resizeSection(i, this->columns[static_cast<size_t>(i)]->width);
    }
  }
}

QVariant CellData(const ItemColumn& column, ViewModel* row, int role, ViewModel* options_from) {
  if (!row) return QVariant();
  switch (role) {
    case kEditorRole:
      return column.editor.empty() ? QVariant()
                                   : QVariant(QString::fromUtf8(column.editor.c_str()));
    case kOptionsRole:
      return column.options.empty() ? QVariant() : QVariant(Choices(column, row, options_from));
    case Qt::CheckStateRole:
    case Qt::DisplayRole:
    case Qt::EditRole:
      break;
    default:
      return QVariant();
  }
  // Not read at all for a role the column does not show.
  if (column.IsCheck() != (role == Qt::CheckStateRole)) return QVariant();
  base::Value value;
  if (!column.rule->GetPropW(row, value)) return QVariant();
  return CellValue(column, value, role);
}

QVariant CellValue(const ItemColumn& column, const base::Value& value, int role) {
  if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::CheckStateRole) {
    return QVariant();
  }
  // A check column shows its box only.
  if (column.IsCheck() != (role == Qt::CheckStateRole)) return QVariant();
  if (role == Qt::CheckStateRole) return value.Bool() ? Qt::Checked : Qt::Unchecked;
  QVariant qv;
  QVariantFromValue(qv, value, ConversionFor(column.editor));
  return qv;
}

bool CellInput(const ItemColumn& column, const QVariant& input, int role, base::Value& value,
               std::string& error) {
  if (role == Qt::CheckStateRole && column.IsCheck()) {
    value.Bool(input.toInt() == Qt::Checked);
    return true;
  }
  if (role == Qt::EditRole && !column.IsCheck() && ValueFromQVariant(value, input)) return true;
  error = "unsupported value";
  return false;
}

bool SetCellData(const ItemColumn& column, ViewModel* row, const QVariant& input, int role,
                 std::string& error) {
  if (!row || !column.Editable()) {
    error = "read-only";
    return false;
  }
  base::Value value;
  if (!CellInput(column, input, role, value, error)) return false;
  return column.rule->SetPropW(row, value, error);
}

Qt::ItemFlags CellFlags(const ItemColumn& column, Qt::ItemFlags base) {
  if (!column.Editable()) return base;
  return base | (column.IsCheck() ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

void CellErrors::Set(const void* row, int column, const std::string& message,
                     const QVariant& input) {
  const auto key = std::make_pair(row, column);
  if (message.empty()) {
    this->errors.erase(key);
  } else {
    this->errors[key] = Error{QString::fromUtf8(message.c_str()), input};
  }
}

QVariant CellErrors::Data(const void* row, int column, int role) const {
  auto it = this->errors.find(std::make_pair(row, column));
  if (it == this->errors.end()) return QVariant();
  switch (role) {
    case Qt::ForegroundRole:
      return QBrush(Qt::red);
    case Qt::ToolTipRole:
      return it->second.message;
    case Qt::EditRole:
      return it->second.input;  // nothing the user typed is lost
    default:
      return QVariant();
  }
}

bool CellErrors::Has(const void* row, int column) const {
  return this->errors.count(std::make_pair(row, column)) != 0;
}

void CellErrors::Forget(const void* row) {
  for (auto it = this->errors.begin(); it != this->errors.end();) {
    it = it->first.first == row ? this->errors.erase(it) : std::next(it);
  }
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  const QString editor = index.data(kEditorRole).toString();
  if (editor == "combo") {
    auto* combo = new QComboBox(parent);
    combo->addItems(index.data(kOptionsRole).toStringList());
    return combo;
  }
  if (editor == "date") return new QDateEdit(parent);
  if (editor == "time") return new QTimeEdit(parent);
  if (editor == "datetime") return new QDateTimeEdit(parent);
  if (editor == "spin") {
    if (index.data(Qt::EditRole).userType() == QMetaType::Double) {
      auto* spin = new QDoubleSpinBox(parent);
      spin->setRange(-1e12, 1e12);
      return spin;
    }
    auto* spin = new QSpinBox(parent);
    spin->setRange(INT_MIN, INT_MAX);
    return spin;
  }
  return QStyledItemDelegate::createEditor(parent, option, index);
}

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  if (auto* combo = qobject_cast<QComboBox*>(editor)) {
    combo->setCurrentText(index.data(Qt::EditRole).toString());
    return;
  }
  QStyledItemDelegate::setEditorData(editor, index);
}

void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                const QModelIndex& index) const {
  QVariant value;
  if (auto* combo = qobject_cast<QComboBox*>(editor)) {
    value = combo->currentText();
  } else {
    const QByteArray name = editor->metaObject()->userProperty().name();
    value = editor->property(name.isEmpty() ? "text" : name.constData());
  }
  if (model->setData(index, value, Qt::EditRole)) return;
  // Refused: open the editor again, which the model fills with the input.
  auto* view = qobject_cast<QAbstractItemView*>(parent());
  if (!view) return;
  const QPersistentModelIndex cell(index);
  QMetaObject::invokeMethod(
      view,
      [view, cell] {
        if (cell.isValid()) view->edit(cell);
      },
      Qt::QueuedConnection);
}

}  // namespace vm
