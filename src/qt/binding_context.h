#ifndef OVUI_QT_BINDING_CONTEXT_H_
#define OVUI_QT_BINDING_CONTEXT_H_

#include <QObject>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "events/event_listener.h"
#include "mvvm/menu_data.h"
#include "mvvm/view_model.h"
#include "qt/data_binding_item.h"
#include "qt/pop_menu.h"

class QWidget;

namespace vm {

class WidgetBinder;

// What a binding engine offers without naming a Qt type.
class IBindingContext : public events::EventListener {
 public:
  virtual bool Bind(void* widget, ViewModel* vm) = 0;
  virtual bool UpdateView(bool force) = 0;
  virtual bool UpdateModel() = 0;
};

// Joins one tree of widgets to one view model. CreateAndBind walks the tree
// once, reads the rules in each widget's dynamic properties ("binding.vm",
// "binding.value", "binding.visible", "binding.enable", "binding.command"
// and the binder-specific ones), and from then on moves values both ways:
//
// - model to view: every "prop-changed" of the view model schedules one
//   deferred view update; all changes within 25 ms share it;
// - view to model: a widget's edit signal reads the widget, converts,
//   validates and writes the property at once, paints the widget red with
//   the validator's message in every widget bound to "error.of.<path>", and
//   refreshes every command's enabled state.
//
// It also runs command bindings and serves the view model's window requests
// ("close_window", "window_pos", "set_window_pos", "get_style_sheet",
// "set_style_sheet", "set_menu").
//
// Lifetime: the context deletes itself when its root widget is destroyed.
// It never deletes widgets or view models; it holds one reference on the
// root view model so that releasing the view model first is safe. A
// destroyed bound widget is dropped from the context.
class BindingContext : public QObject, public virtual IBindingContext {
  Q_OBJECT

 public:
  // Binds `widget` and its children to `vm`; null (logged) for a null argument.
  static BindingContext* CreateAndBind(QWidget* widget, ViewModel* vm);
  ~BindingContext() override;

  bool Bind(void* widget, ViewModel* vm) override;
  bool UpdateView(bool force) override;
  // Writes every two-way and to-model binding's widget value into the model
  // (the path of Trigger=Explicit bindings).
  bool UpdateModel() override;
  bool OnEvent(events::Event* e) override;

  // The walk of one subtree.
  bool BindWidget(QWidget* widget);
  // Binder dispatch by the widget's exact class name.
  static bool BindWidget(BindingContext* ctx, QWidget* widget, ViewModel* vm);
  // Stores `binder` (owned from then on) for widgets of `class_name`,
  // replacing an earlier one.
  static bool RegisterWidgetBinder(const std::string& class_name, WidgetBinder* binder);
  bool BindCommand(QWidget* widget);
  bool BindReadonly(QWidget* widget, const char* key, const char* prop, ViewModel* vm);
  // Take ownership of an item.
  bool AddDataBinding(DataBindingItemQt* item);
  bool AddCommandBinding(CommandBindingItemQt* item);

  virtual bool UpdateViewData(bool force);
  virtual bool UpdateViewCommand();
  void UpdateWidgetToView(DataBindingItemQt& item);
  void UpdateWidgetToModel(QWidget* widget);
  virtual void OnPropValidationMsg(QWidget* widget, const std::string& error_key,
                                   const std::string& message);

  // `root` when `name` is empty or is its object name, else the first
  // widget of that name below it, depth first; null when none.
  static QWidget* FindWidget(const std::string& name, QWidget* root);
  bool OnSetMenu(const std::string& name, const MenuData& menu, QWidget* root);

  // The rule for a widget's main property: "binding.value", or else the own
  // text of a label, line edit or text editor when it holds a "{". Empty
  // when there is none.
  static std::string RuleText(QWidget* widget);

  QWidget* GetWidget() const { return this->widget; }
  ViewModel* GetViewModel() const { return this->vm; }
  const std::vector<DataBindingItemQt*>& GetDataBindings() const { return this->data_bindings; }
  const std::vector<CommandBindingItemQt*>& GetCommandBindings() const {
    return this->command_bindings;
  }

 signals:
  void ViewModelChanged();

 public slots:
  void OnCommand();
  void OnChanged();
  void OnWidgetDestroyed(QObject* obj);
  void OnRootWidgetDestroyed(QObject* obj);
  void OnViewModelChanged();
  void OnUpdateViewAsync();

 private:
  BindingContext() = default;
  bool OnWindowRequest(events::Event* e);

  QWidget* widget = nullptr;
  ViewModel* vm = nullptr;
  std::deque<ViewModel*> vm_stack;
  int updating_view = 0;
  int updating_model = 0;
  std::vector<DataBindingItemQt*> data_bindings;
  std::vector<CommandBindingItemQt*> command_bindings;
  std::map<std::string, DataBindingItemQt*> validated;
  unsigned int pending_updates = 0;
  PopMenuSupport pop_menu;

  static std::map<std::string, WidgetBinder*>* binders;
};

}  // namespace vm

#endif  // OVUI_QT_BINDING_CONTEXT_H_
