#ifndef OVUI_QT_CHECK_COMBOBOX_H_
#define OVUI_QT_CHECK_COMBOBOX_H_

#include <QComboBox>
#include <QIcon>
#include <QStringList>
#include <string>

#include "events/event_listener.h"
#include "mvvm/view_model.h"
#include "qt/widget_binder.h"

class QMouseEvent;

// A combo box whose items are on/off switches. Each item's text names a
// property of the bound view model; the item shows a check or an uncheck
// icon after that property, and a click in the icon column (the left
// getIconWidth() pixels) flips it. The popup stays open while the user clicks
// in its icon column, so several switches can be flipped in one go; a click
// on the text closes it and selects the row as usual.
//
// The items are either fixed (added with addItems before binding) or read
// from a view-model property holding newline-separated names, named by the
// "binding.options" rule, e.g. `{Binding Path=kinds}`; they are rebuilt
// whenever that property changes.
//
// A flip is a write to the view model; the icon follows only the view
// model's "prop-changed" event, so a property that refuses the write keeps
// its icon. Without a view model a flip changes the icon directly.
//
// Lifetime: the widget holds a reference on its view model from bindToVm on
// and releases it, after unsubscribing, when it is destroyed; the view model
// may therefore be released by its owner first. The widget is deleted like
// any QWidget, never through Release.
class CCheckComboBox : public QComboBox, public events::EventListener {
  Q_OBJECT

 public:
  explicit CCheckComboBox(QWidget* parent = nullptr);
  ~CCheckComboBox() override;

  // Width of the icon column: the icon width and 10 pixels of margin.
  int getIconWidth() const;
  // Shows `checked` as the item's icon and keeps it as its Qt::UserRole data.
  void setItemChecked(int index, bool checked);
  // Appends one item per non-empty text; with a view model, each new item
  // takes its state from the property of its name (unchecked when missing).
  void addItems(const QStringList& texts);
  // Flips item `index`: through the view model when bound, else directly.
  // -1 (no current item) is ignored.
  void updateIndexStatus(int index);
  // Rebuilds the items from the options property; nothing without one.
  void updateOptions();
  // Binds to `vm` (replacing an earlier binding). `rule` is the
  // "binding.options" rule; empty, or a rule that does not parse, keeps the
  // fixed items and reads their states.
  void bindToVm(vm::ViewModel* vm, const std::string& rule);

  // Follows "prop-changed": the options property rebuilds the items, an
  // item's property sets its state. Never stops delivery.
  bool OnEvent(events::Event* event) override;

  vm::ViewModel* viewModel() const { return this->view_model; }
  const std::string& optionsProp() const { return this->options_prop; }

  void hidePopup() override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  // Unsubscribes from and releases the bound view model.
  void unbind();
  // State of `index` from the view model's property of the item's name.
  void readItemState(int index);
  void readAllItemStates();

  QIcon check_icon;
  QIcon uncheck_icon;
  QStringList items;
  vm::ViewModel* view_model = nullptr;
  std::string options_prop;
};

namespace check_combobox {

// Binds a CCheckComboBox: its "binding.options" rule (empty when absent)
// goes to bindToVm. The one instance registers itself for the class name
// "CCheckComboBox" when the library loads.
class CCheckComboBoxWidgetBinder : public vm::WidgetBinder {
 public:
  CCheckComboBoxWidgetBinder();
  bool Bind(vm::BindingContext* ctx, QWidget* widget, vm::ViewModel* vm) override;
};

}  // namespace check_combobox

#endif  // OVUI_QT_CHECK_COMBOBOX_H_
