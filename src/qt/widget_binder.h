#ifndef OVUI_QT_WIDGET_BINDER_H_
#define OVUI_QT_WIDGET_BINDER_H_

#include <string>

#include "mvvm/view_model.h"

class QWidget;

namespace vm {

class BindingContext;

// How one widget class takes part in binding: which property carries the
// bound value and which signals announce an edit. One binder per class name
// is registered with BindingContext when the library loads.
class WidgetBinder {
 public:
  virtual ~WidgetBinder() = default;
  virtual bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) = 0;
};

// Shows the "binding.value" rule in `prop`, one-way whatever the rule's Mode.
class DisplayWidgetBinder : public WidgetBinder {
 public:
  explicit DisplayWidgetBinder(const std::string& prop) : prop(prop) {}
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
  std::string prop;
};

// Binds `prop` with the rule's own Mode and, for bindings that write back
// (TwoWay, OneWayToModel, not Trigger=Explicit), connects the widget's edit
// signals: with Trigger=Changing those that fire while editing, and in every
// case those that fire when an edit is finished.
class InputWidgetBinder : public WidgetBinder {
 public:
  explicit InputWidgetBinder(const std::string& prop) : prop(prop) {}
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
  virtual bool ConnectWidgetChangingEvents(BindingContext* ctx, QWidget* widget);
  virtual bool ConnectWidgetChangedEvents(BindingContext* ctx, QWidget* widget);
  std::string prop;
};

// "binding.options" fills the items (one per line of the bound text);
// "binding.value" selects by text, or by index when the bound value is an
// integer.
class ComboBoxWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// Gives an item view the context menu its view model keeps under the view's
// object name; the menu support goes with the view.
void AttachContextMenu(QWidget* view, ViewModel* vm);

// A list view over a list view model, through ListModelOverViewModel, with
// the list's context menu.
class ListViewWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// A tree view over a tree view model, through TreeModelOverViewModel: one
// column per line of the view's "binding.value", the first one the tree
// column.
class TreeViewWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// A table view: without "binding.attribute" over a list view model, through
// TableModelOverViewModel; with it over a vm::ViewModelHTable, through
// HighTableModelOverViewModel. Another view model is logged and refused.
class TableViewWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// The "binding.command" rules of a menu's or tool bar's actions.
class MenuWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// Shows the view model's vm::ChartData, held by the property the
// "binding.value" rule names as a pointer, in a QChartView or ChartViewEx.
// Always one-way: a chart never writes back.
class ChartWidgetBinder : public WidgetBinder {
 public:
  explicit ChartWidgetBinder(const std::string& prop) : prop(prop) {}
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
  std::string prop;
};

// One centred label per line of the status bar's "binding.value".
class StatusBarWidgetBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

// A CMenuContainer: the container itself listens to the view model and reads
// its "binding.value" (the property that holds the item tree); no binding
// item is created.
class MenuContainerBinder : public WidgetBinder {
 public:
  bool Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) override;
};

}  // namespace vm

#endif  // OVUI_QT_WIDGET_BINDER_H_
