#include "qt/check_combobox.h"

#include <QAbstractItemView>
#include <QCursor>
#include <QMouseEvent>
#include <QVariant>

#include "base/log.h"
#include "mvvm/data_binding_parser.h"
#include "qt/binding_context.h"

namespace {

const char kCheckIcon[] = ":/ccheckcombox/images/check.png";
const char kUncheckIcon[] = ":/ccheckcombox/images/uncheck.png";
const char kPropChanged[] = "prop-changed";
const int kIconSize = 12;
const int kIconMargin = 10;

std::string Utf8(const QString& text) {
  return text.toUtf8().toStdString();
}

// Property names travel as Latin-1 both ways, so that a name read from the
// view model is written back byte for byte.
QString Latin1(const char* text) {
  return QString::fromLatin1(text ? text : "");
}

std::string PropName(const QString& text) {
  return text.toLatin1().toStdString();
}

}  // namespace

CCheckComboBox::CCheckComboBox(QWidget* parent)
    : QComboBox(parent), check_icon(kCheckIcon), uncheck_icon(kUncheckIcon) {
  setIconSize(QSize(kIconSize, kIconSize));
  setAttribute(Qt::WA_DeleteOnClose);
}

CCheckComboBox::~CCheckComboBox() {
  // First of all: an event reaching a half-destroyed widget would touch
  // freed items.
  unbind();
}

void CCheckComboBox::unbind() {
  if (!this->view_model) return;
  this->view_model->Off(kPropChanged, this);
  this->view_model->Release();
  this->view_model = nullptr;
}

int CCheckComboBox::getIconWidth() const {
  return iconSize().width() + kIconMargin;
}

void CCheckComboBox::setItemChecked(int index, bool checked) {
  setItemIcon(index, checked ? this->check_icon : this->uncheck_icon);
  setItemData(index, checked, Qt::UserRole);
}

void CCheckComboBox::addItems(const QStringList& texts) {
  for (const QString& text : texts) {
    if (text.isEmpty()) continue;
    this->items.append(text);
    addItem(text);
    if (this->view_model) readItemState(count() - 1);
  }
}

void CCheckComboBox::readItemState(int index) {
  base::Value value;
  const bool checked = this->view_model &&
                       this->view_model->GetPropW(PropName(itemText(index)), value) &&
                       value.I64() != 0;
  setItemChecked(index, checked);
}

void CCheckComboBox::readAllItemStates() {
  for (int i = 0; i < count(); ++i)
    readItemState(i);
}

void CCheckComboBox::updateIndexStatus(int index) {
  if (index == -1) return;
  OVUI_CHECK(index >= 0 && index < this->items.size() && index < count(), );
  const bool checked = !itemData(index, Qt::UserRole).toBool();
  if (!this->view_model) {
    setItemChecked(index, checked);
    return;
  }
  // The icon changes when the view model announces the write; a refused
  // write leaves it as it was.
  this->view_model->SetPropW(PropName(this->items[index]), base::Value(checked));
}

void CCheckComboBox::updateOptions() {
  if (!this->view_model || this->options_prop.empty()) return;
  base::Value value;
  this->view_model->GetPropW(this->options_prop, value);
  const QStringList names = Latin1(value.Str()).split('\n', Qt::SkipEmptyParts);
  // Rebuilding is not a choice of the user: no index signals for it.
  const bool blocked = blockSignals(true);
  this->items.clear();
  clear();
  addItems(names);
  blockSignals(blocked);
}

void CCheckComboBox::bindToVm(vm::ViewModel* vm, const std::string& rule) {
  if (vm != this->view_model) {
    unbind();
    if (vm) {
      vm->AddRef();
      vm->On(kPropChanged, this);
    }
    this->view_model = vm;
  }
  // The parser logs text it cannot read; no rule at all is the usual case
  // of a fixed list and not worth a log line.
  vm::DataBinding* binding = rule.empty() ? nullptr : vm::DataBindingParser::FromString(rule);
  if (!binding) {
    // Fixed items may have come from a Designer form or insertItem rather
    // than addItems: take the names from the box itself.
    this->options_prop.clear();
    this->items.clear();
    for (int i = 0; i < count(); ++i)
      this->items.append(itemText(i));
    readAllItemStates();
    return;
  }
  this->options_prop = binding->path;
  binding->Release();
  updateOptions();
}

bool CCheckComboBox::OnEvent(events::Event* event) {
  if (!event || event->GetType() != kPropChanged) return false;
  // One event for every property: read everything again.
  const char* kind = event->GetParam("kind").Str();
  if (kind && std::string(kind) == "PropsChange") {
    if (this->options_prop.empty()) {
      readAllItemStates();
    } else {
      updateOptions();
    }
    return false;
  }
  const char* name = event->GetParam("name").Str();
  const QString text = Latin1(name);
  if (this->options_prop == (name ? name : "")) {
    updateOptions();
    return false;
  }
  const int index = this->items.indexOf(text);
  if (index >= 0 && index < count()) setItemChecked(index, event->GetParam("value").I64() != 0);
  return false;
}

void CCheckComboBox::mousePressEvent(QMouseEvent* event) {
  const int x = qRound(event->localPos().x());
  if (x > getIconWidth() || event->button() != Qt::LeftButton) {
    QComboBox::mousePressEvent(event);
    return;
  }
  // The icon column is a switch, not a way into the list.
  updateIndexStatus(currentIndex());
  event->accept();
}

void CCheckComboBox::hidePopup() {
  const QPoint cursor = QCursor::pos();
  const QPoint origin = mapToGlobal(pos());
  const int x = cursor.x() - origin.x() + this->x();
  const int y = cursor.y() - origin.y() + this->y();
  const int limit = height() + view()->height();
  if (y <= limit && x >= 0 && x <= getIconWidth()) {
    updateIndexStatus(view()->currentIndex().row());
    return;
  }
  QComboBox::hidePopup();
}

namespace check_combobox {

CCheckComboBoxWidgetBinder::CCheckComboBoxWidgetBinder() {
  vm::BindingContext::RegisterWidgetBinder("CCheckComboBox", this);
}

bool CCheckComboBoxWidgetBinder::Bind(vm::BindingContext* ctx, QWidget* widget, vm::ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  auto* box = qobject_cast<CCheckComboBox*>(widget);
  OVUI_CHECK(box != NULL, false);
  const QVariant rule = widget->property("binding.options");
  box->bindToVm(vm, rule.isValid() ? Utf8(rule.toString()) : std::string());
  return true;
}

namespace {
// The binder map owns what it holds, so the one instance lives on the heap.
const CCheckComboBoxWidgetBinder* const instance = new CCheckComboBoxWidgetBinder();
}  // namespace

}  // namespace check_combobox
