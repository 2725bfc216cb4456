#include "qt/data_binding_item.h"

#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStringList>
#include <QTextCursor>
#include <QTime>
#include <QWidget>
#include <algorithm>
#include <limits>

#include "base/log.h"
#include "base/ref_obj.h"
#include "qt/pop_menu.h"

namespace vm {

// ---------------------------------------------------------------------------
// DataBindingItemQt

DataBindingItemQt::DataBindingItemQt(QObject* obj, ViewModel* vm, DataBinding* rule,
                                     const std::string& prop, bool owns)
    : prop(prop), owns(owns) {
  this->obj = obj;
  this->vm = vm;
  this->rule = rule;
}

// A copy shares the rule but never owns it, so only the context's item releases it.
DataBindingItemQt::DataBindingItemQt(const DataBindingItemQt& other)
    : DataBindingItem<QObject>(other), prop(other.prop), owns(false) {}

DataBindingItemQt& DataBindingItemQt::operator=(const DataBindingItemQt& other) {
  if (this == &other) return *this;
  if (this->owns) base::SafeRelease(this->rule);
  DataBindingItem<QObject>::operator=(other);
  this->prop = other.prop;
  this->owns = false;
  return *this;
}

DataBindingItemQt::~DataBindingItemQt() {
  if (this->owns) base::SafeRelease(this->rule);
}

bool DataBindingItemQt::GetWidgetProp(base::Value& value) const {
  OVUI_CHECK(this->obj, false);
  const QVariant qv = this->obj->property(this->prop.c_str());
  if (!qv.isValid()) return false;
  ValueFromQVariant(value, qv);
  return true;
}

bool DataBindingItemQt::SetWidgetProp(const base::Value& value) {
  OVUI_CHECK(this->obj, false);
  QVariant qv;
  QVariantFromValue(qv, value, this->prop);

  if (this->prop == "visible") {
    // The hidden flag, not the property, tells whether the widget was shown:
    // a child of a hidden window reads invisible and would be shown again.
    if (auto* widget = qobject_cast<QWidget*>(this->obj)) {
      if (!widget->isHidden() != qv.toBool()) widget->setProperty("visible", qv.toBool());
    }
    return true;
  }

  auto* edit = qobject_cast<QPlainTextEdit*>(this->obj);
  const int caret = edit ? edit->textCursor().position() : 0;
  const QString old_text = edit ? edit->toPlainText() : QString();

  if (this->obj->property(this->prop.c_str()) == qv) return true;
  const bool written = this->obj->setProperty(this->prop.c_str(), qv);

  // Replacing the text puts the caret at the start; the user typing in a
  // two-way bound editor must not notice the model echoing the text back.
  if (edit && edit->hasFocus()) {
    const QString new_text = edit->toPlainText();
    if (new_text != old_text) {
      QTextCursor cursor = edit->textCursor();
      const int growth = new_text.length() - old_text.length();
      if (growth > 0) {
        cursor.setPosition(std::min(caret + growth, new_text.length()));
      } else {
        cursor.movePosition(QTextCursor::End);
      }
      edit->setTextCursor(cursor);
    }
  }
  return written;
}

// ---------------------------------------------------------------------------
// DataBindingItemComboBox

bool DataBindingItemComboBox::SetWidgetProp(const base::Value& value) {
  auto* combo = qobject_cast<QComboBox*>(this->obj);
  OVUI_CHECK(combo, false);
  QVariant qv;
  if (!QVariantFromValue(qv, value, this->prop)) {
    OVUI_LOG_FAILED("QVariantFromValue(qv, value, prop)");
    return false;
  }
  // "options" is compared too: the list is kept in a dynamic property of that name.
  if (combo->property(this->prop.c_str()) == qv) return true;

  if (this->prop == "currentText") {
    const QString text = qv.toString();
    int index = combo->findData(text);
    if (index < 0) index = combo->findText(text);
    if (index < 0) {
      // Nothing to select; listeners still learn the text the model holds.
      emit combo->currentTextChanged(text);
    } else {
      combo->setCurrentIndex(index);
    }
    return true;
  }
  if (this->prop == "currentIndex") {
    combo->setCurrentIndex(qv.toInt());
    return true;
  }
  if (this->prop == "options") {
    // A refill is not a user's choice: nothing may reach the view model.
    const QSignalBlocker blocker(combo);
    const QString text = qv.toString();
    combo->setProperty("options", text);
    combo->clear();
    QStringList items = text.split(QLatin1Char('\n'));
    // "a\nb\n" is two lines; an empty line in the middle is a deliberate blank item.
    if (items.last().isEmpty()) items.removeLast();
    combo->insertItems(combo->count(), items);
    return true;
  }
  return combo->setProperty(this->prop.c_str(), qv);
}

// ---------------------------------------------------------------------------
// CommandBindingItemQt

CommandBindingItemQt::CommandBindingItemQt(QObject* obj, ViewModel* vm, CommandBinding* rule,
                                           bool owns)
    : owns(owns) {
  this->obj = obj;
  this->vm = vm;
  this->rule = rule;
}

// A copy keeps pointing at the menu support (so whoever reads it back from
// the widget can reach it) but, like the rule, never deletes it.
CommandBindingItemQt::CommandBindingItemQt(const CommandBindingItemQt& other)
    : CommandBindingItem<QObject>(other), owns(false), menu_support(other.menu_support) {}

CommandBindingItemQt& CommandBindingItemQt::operator=(const CommandBindingItemQt& other) {
  if (this == &other) return *this;
  if (this->owns) {
    base::SafeRelease(this->rule);
    delete this->menu_support;
  }
  CommandBindingItem<QObject>::operator=(other);
  this->owns = false;
  this->menu_support = other.menu_support;
  return *this;
}

CommandBindingItemQt::~CommandBindingItemQt() {
  if (!this->owns) return;
  base::SafeRelease(this->rule);
  delete this->menu_support;
}

// ---------------------------------------------------------------------------
// Conversions

bool QVariantFromValue(QVariant& qv, const base::Value& value, const std::string& prop) {
  switch (value.Type()) {
    case base::Value::TYPE_FLOAT:
      qv = QVariant(value.F64());
      return true;
    case base::Value::TYPE_INT:
      if (prop == "date" || prop == "time" || prop == "dateTime") {
        // Seconds since the epoch, shown in local time. Beyond the range
        // the milliseconds can hold there is no instant to show.
        const long long seconds = value.I64();
        const long long limit = std::numeric_limits<long long>::max() / 1000;
        if (seconds > limit || seconds < -limit) {
          qv = QVariant();
          return false;
        }
        QDateTime instant;
        instant.setMSecsSinceEpoch(seconds * 1000);
        if (prop == "date") {
          qv = QVariant(instant.date());
        } else if (prop == "time") {
          qv = QVariant(instant.time());
        } else {
          qv = QVariant(instant);
        }
      } else {
        qv = QVariant(value.I32());
      }
      return true;
    case base::Value::TYPE_STR:
      qv = QVariant(QString::fromUtf8(value.Str()));
      return true;
    case base::Value::TYPE_POINTER:
      qv = QVariant::fromValue(value.Pointer());
      return true;
    default:
      qv = QVariant();
      return false;
  }
}

bool ValueFromQVariant(base::Value& value, const QVariant& qv) {
  QDateTime instant;
  switch (qv.userType()) {
    case QMetaType::Bool:
      value.Bool(qv.toBool());
      return true;
    case QMetaType::Int:
      value.I64(qv.toInt());
      return true;
    case QMetaType::Double:
      // Through float on purpose: spin boxes hold binary noise below that precision.
      value.F64(qv.toFloat());
      return true;
    case QMetaType::QString: {
      const QByteArray utf8 = qv.toString().toUtf8();
      value.Str(utf8.constData(), static_cast<unsigned>(utf8.size()));
      return true;
    }
    case QMetaType::QDate:
      instant = qv.toDate().startOfDay();
      break;
    case QMetaType::QTime:
      // A time alone counts from the local midnight of the epoch's day, which
      // is where the integer-to-time direction puts small values.
      instant = QDateTime(QDate(1970, 1, 1), qv.toTime());
      break;
    case QMetaType::QDateTime:
      instant = qv.toDateTime();
      break;
    default:
      return false;
  }
  if (!instant.isValid()) return false;
  value.I64(instant.toMSecsSinceEpoch() / 1000);
  return true;
}

void RegisterBindingItemTypes() {
  static const bool registered = [] {
    qRegisterMetaType<DataBindingItemQt>("vm::DataBindingItemQt");
    qRegisterMetaType<CommandBindingItemQt>("vm::CommandBindingItemQt");
    return true;
  }();
  static_cast<void>(registered);
}

}  // namespace vm
