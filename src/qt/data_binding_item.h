#ifndef OVUI_QT_DATA_BINDING_ITEM_H_
#define OVUI_QT_DATA_BINDING_ITEM_H_

#include <QMetaType>
#include <QObject>
#include <QVariant>
#include <string>

#include "base/value.h"
#include "mvvm/command_binding.h"
#include "mvvm/data_binding.h"
#include "mvvm/view_model.h"

class PopMenuSupport;

namespace vm {

// The record that ties one bound object (a widget or an action) to one view
// model and one parsed rule. Neither the object nor the view model is owned.
template <typename T>
class DataBindingItem {
 public:
  T* obj = nullptr;
  ViewModel* vm = nullptr;
  DataBinding* rule = nullptr;
};

// A data binding on one Qt property of a widget ("text", "value", "visible"
// ...), converting between base::Value and QVariant on the way.
//
// The item a binding context holds owns its rule (`owns`); copies, such as
// the one stored in the widget's "data-binding" property and the ones read
// back from it, never own anything.
class DataBindingItemQt : public DataBindingItem<QObject> {
 public:
  DataBindingItemQt() = default;
  DataBindingItemQt(QObject* obj, ViewModel* vm, DataBinding* rule, const std::string& prop,
                    bool owns);
  DataBindingItemQt(const DataBindingItemQt& other);
  DataBindingItemQt& operator=(const DataBindingItemQt& other);
  virtual ~DataBindingItemQt();

  // Reads the widget's property `prop`; false when the widget has no such
  // property. Types without a value counterpart leave `value` untouched.
  virtual bool GetWidgetProp(base::Value& value) const;
  // Writes `value` to the widget's property unless it already holds it.
  virtual bool SetWidgetProp(const base::Value& value);

  std::string prop;
  bool owns = false;
};

// A combo box's item: "currentText" selects by data, then by text;
// "currentIndex" selects by position; "options" refills the items from one
// newline-separated string.
class DataBindingItemComboBox : public DataBindingItemQt {
 public:
  using DataBindingItemQt::DataBindingItemQt;
  bool SetWidgetProp(const base::Value& value) override;
};

// A command binding on a widget or a QAction. The item a binding context
// holds owns its rule and its `menu_support`; copies own nothing.
template <typename T>
class CommandBindingItem {
 public:
  T* obj = nullptr;
  ViewModel* vm = nullptr;
  CommandBinding* rule = nullptr;
};

class CommandBindingItemQt : public CommandBindingItem<QObject> {
 public:
  CommandBindingItemQt() = default;
  CommandBindingItemQt(QObject* obj, ViewModel* vm, CommandBinding* rule, bool owns);
  CommandBindingItemQt(const CommandBindingItemQt& other);
  CommandBindingItemQt& operator=(const CommandBindingItemQt& other);
  virtual ~CommandBindingItemQt();

  bool owns = false;
  PopMenuSupport* menu_support = nullptr;
};

// Value to QVariant for the property `prop`: doubles, integers (seconds since
// the epoch for "date", "time" and "dateTime"), UTF-8 strings and pointers;
// false for a null value, which gives an invalid variant.
bool QVariantFromValue(QVariant& qv, const base::Value& value, const std::string& prop);
// QVariant to Value: bool, int, double (through float, so 0.1 comes back as
// its single-precision neighbour), string, date, time and date-time (seconds
// since the epoch). False, with `value` untouched, for any other type.
bool ValueFromQVariant(base::Value& value, const QVariant& qv);

// Registers the two item meta-types with Qt (once; also done on first use).
void RegisterBindingItemTypes();

}  // namespace vm

Q_DECLARE_METATYPE(vm::DataBindingItemQt)
Q_DECLARE_METATYPE(vm::CommandBindingItemQt)

#endif  // OVUI_QT_DATA_BINDING_ITEM_H_
