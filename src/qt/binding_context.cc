#include "qt/binding_context.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QVariant>
#include <QWidget>
#include <algorithm>
#include <memory>

#include "base/log.h"
#include "mvvm/command_binding.h"
#include "mvvm/data_binding_parser.h"
#include "qt/widget_binder.h"

namespace vm {

std::map<std::string, WidgetBinder*>* BindingContext::binders = nullptr;

namespace {

// The view model's events the context serves, in the order it subscribes.
const char* const kServedEvents[] = {"prop-changed",   "set_menu",       "close_window",
                                     "window_pos",     "set_window_pos", "set_style_sheet",
                                     "get_style_sheet"};
const char kErrorOf[] = "error.of.";
const size_t kErrorOfLength = sizeof(kErrorOf) - 1;
const int kDeferredUpdateMs = 25;

bool StartsWith(const std::string& text, const char* prefix, size_t length) {
  return text.compare(0, length, prefix) == 0;
}

bool IsErrorPath(const DataBinding* rule) {
  return rule && StartsWith(rule->path, kErrorOf, kErrorOfLength);
}

std::string Utf8(const QString& text) {
  return text.toUtf8().toStdString();
}

void PaintForeground(QWidget* widget, Qt::GlobalColor color) {
  QPalette palette = widget->palette();
  palette.setBrush(QPalette::All, widget->foregroundRole(), QBrush(color, Qt::SolidPattern));
  widget->setPalette(palette);
}

int IntParam(events::Event* e, const char* name) {
  return e->GetParam(name).I32();
}

}  // namespace

BindingContext* BindingContext::CreateAndBind(QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(widget != NULL && vm != NULL, nullptr);
  auto* ctx = new BindingContext();
  ctx->Bind(widget, vm);
  connect(widget, SIGNAL(destroyed(QObject*)), ctx, SLOT(OnRootWidgetDestroyed(QObject*)));
  return ctx;
}

BindingContext::~BindingContext() {
  if (this->vm) {
    for (const char* type : kServedEvents)
      this->vm->Off(type, this);
  }
  for (DataBindingItemQt* item : this->data_bindings)
    delete item;
  for (CommandBindingItemQt* item : this->command_bindings)
    delete item;
  base::SafeRelease(this->vm);
}

bool BindingContext::Bind(void* widget_ptr, ViewModel* vm) {
  OVUI_CHECK(widget_ptr != NULL && vm != NULL, false);
  QWidget* root = static_cast<QWidget*>(widget_ptr);
  RegisterBindingItemTypes();
  this->pop_menu.Attach(root, vm);
  this->widget = root;
  this->vm = vm;
  // Held so that a view model released before the window cannot leave the
  // context pointing at freed memory.
  vm->AddRef();
  this->vm_stack.push_back(vm);
  BindWidget(root);
  this->vm_stack.pop_back();
  UpdateView(true);
  for (const char* type : kServedEvents)
    vm->On(type, this);
  connect(this, SIGNAL(ViewModelChanged()), this, SLOT(OnViewModelChanged()));
  for (const auto& entry : vm->GetAllSubViewModel()) {
    if (entry.second) entry.second->InitWindow();
  }
  vm->InitWindow();
  return true;
}

bool BindingContext::BindWidget(QWidget* widget) {
  if (!widget) return false;
  bool pushed = false;
  const QVariant sub = widget->property("binding.vm");
  if (sub.isValid()) {
    std::string name = Utf8(sub.toString().trimmed());
    if (name.size() > 2 && name.front() == '{' && name.back() == '}') {
      name = name.substr(1, name.size() - 2);
    }
    ViewModel* found = this->vm_stack.back()->GetSubViewModel(name);
    if (!found) found = this->vm->GetSubViewModel(name);
    if (found) {
      this->vm_stack.push_back(found);
      pushed = true;
    }
  }
  ViewModel* current = this->vm_stack.back();
  BindWidget(this, widget, current);
  // Children are walked whatever the widget is: a bound view's viewport or
  // a combo box's line edit binds only if it carries rules of its own.
  for (QObject* child : widget->children()) {
    if (child->isWidgetType()) BindWidget(static_cast<QWidget*>(child));
  }
  BindCommand(widget);
  BindReadonly(widget, "binding.visible", "visible", current);
  BindReadonly(widget, "binding.enable", "enabled", current);
  if (pushed) this->vm_stack.pop_back();
  return true;
}

bool BindingContext::BindWidget(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(BindingContext::binders != NULL && ctx != NULL && widget != NULL, false);
  // The exact class only: a subclass with its own meta-object is bound only
  // when its own name is registered.
  auto it = binders->find(widget->metaObject()->className());
  if (it == binders->end()) return false;
  return it->second->Bind(ctx, widget, vm);
}

bool BindingContext::RegisterWidgetBinder(const std::string& class_name, WidgetBinder* binder) {
  if (!binders) binders = new std::map<std::string, WidgetBinder*>();
  OVUI_CHECK(BindingContext::binders != NULL && binder != NULL, false);
  WidgetBinder*& slot = (*binders)[class_name];
  if (slot != binder) delete slot;
  slot = binder;
  return true;
}

std::string BindingContext::RuleText(QWidget* widget) {
  const QVariant rule = widget->property("binding.value");
  if (rule.isValid()) return Utf8(rule.toString());
  QString text;
  if (widget->inherits("QLabel")) {
    text = static_cast<QLabel*>(widget)->text();
  } else if (widget->inherits("QLineEdit")) {
    text = static_cast<QLineEdit*>(widget)->text();
  } else if (widget->inherits("QPlainTextEdit") || widget->inherits("QTextEdit")) {
    text = widget->property("plainText").toString();
  }
  return text.contains('{') ? Utf8(text) : std::string();
}

bool BindingContext::BindReadonly(QWidget* widget, const char* key, const char* prop,
                                  ViewModel* vm) {
  std::string text;
  const QVariant rule = widget->property(key);
  if (rule.isValid()) {
    text = Utf8(rule.toString());
  } else if (std::string(key) == "binding.value") {
    text = RuleText(widget);
  }
  if (text.empty()) return false;
  DataBinding* binding = DataBindingParser::FromString(text);
  if (!binding) return false;
  binding->AsOneWay();
  return AddDataBinding(new DataBindingItemQt(widget, vm, binding, prop, true));
}

bool BindingContext::BindCommand(QWidget* widget) {
  std::string text;
  const QVariant rule = widget->property("binding.command");
  if (rule.isValid()) {
    text = Utf8(rule.toString());
  } else if (widget->inherits("QToolButton") || widget->inherits("QPushButton")) {
    // A button runs the command that bears its object name; one without a
    // name gives "{}", which the length test below leaves unbound.
    text = "{" + Utf8(widget->objectName()) + "}";
  }
  if (text.size() <= 2 || text[0] != '{') return false;
  ViewModel* current = this->vm_stack.empty() ? this->vm : this->vm_stack.back();
  if (!current) return false;
  auto* item =
      new CommandBindingItemQt(widget, current, CommandBindingParser::FromString(text), true);
  AddCommandBinding(item);
  // Only what can be clicked runs its command; other widgets keep the item
  // for its enabled state.
  if (widget->metaObject()->indexOfSignal("clicked()") >= 0) {
    connect(widget, SIGNAL(clicked()), this, SLOT(OnCommand()));
  }
  return true;
}

bool BindingContext::AddDataBinding(DataBindingItemQt* item) {
  OVUI_CHECK(item != NULL, false);
  if (item->rule && !item->rule->validator.empty()) this->validated[item->rule->path] = item;
  this->data_bindings.push_back(item);
  // Every bound widget, display-only ones too, is dropped when destroyed.
  if (item->obj) {
    connect(item->obj, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)),
            Qt::UniqueConnection);
  }
  if (!item->rule) return true;
  // An error display never writes back.
  if (IsErrorPath(item->rule)) item->rule->AsOneWay();
  const int mode = item->rule->mode;
  if (mode == DataBinding::MODE_ONE_WAY || mode == DataBinding::MODE_ONCE) return true;
  if (item->obj) item->obj->setProperty("data-binding", QVariant::fromValue(*item));
  return true;
}

bool BindingContext::AddCommandBinding(CommandBindingItemQt* item) {
  OVUI_CHECK(item != NULL, false);
  this->command_bindings.push_back(item);
  if (item->obj) {
    item->obj->setProperty("cmd-binding", QVariant::fromValue(*item));
    connect(item->obj, SIGNAL(destroyed(QObject*)), this, SLOT(OnWidgetDestroyed(QObject*)),
            Qt::UniqueConnection);
  }
  return true;
}

bool BindingContext::UpdateView(bool force) {
  UpdateViewData(force);
  UpdateViewCommand();
  return true;
}

bool BindingContext::UpdateViewData(bool force) {
  ++this->updating_view;
  // By index: a widget written here may be destroyed by its own slots, which
  // removes its items from the list.
  for (size_t i = 0; i < this->data_bindings.size(); ++i) {
    DataBindingItemQt* item = this->data_bindings[i];
    if (!item->rule || !item->obj) continue;
    const int mode = item->rule->mode;
    if (!force && (mode == DataBinding::MODE_ONE_WAY_TO_MODEL || mode == DataBinding::MODE_ONCE)) {
      continue;
    }
    // A forced update starts every visibility and enablement from off.
    if (force && (item->prop == "visible" || item->prop == "enabled")) {
      item->obj->setProperty(item->prop.c_str(), false);
    }
    if (IsErrorPath(item->rule)) {
      item->obj->setProperty(item->prop.c_str(), QString());
      auto it = this->validated.find(item->rule->path.substr(kErrorOfLength));
      if (it != this->validated.end() && it->second->obj && it->second->obj->isWidgetType()) {
        PaintForeground(static_cast<QWidget*>(it->second->obj), Qt::black);
      }
      continue;
    }
    UpdateWidgetToView(*item);
  }
  --this->updating_view;
  return true;
}

void BindingContext::UpdateWidgetToView(DataBindingItemQt& item) {
  OVUI_CHECK(item.vm != NULL && item.rule != NULL, );
  base::Value value;
  if (item.rule->GetPropW(item.vm, value)) item.SetWidgetProp(value);
}

bool BindingContext::UpdateViewCommand() {
  for (CommandBindingItemQt* item : this->command_bindings) {
    if (!item->rule || !item->vm || !item->obj || !item->vm->HasCommand(item->rule->name)) {
      continue;
    }
    const bool enabled = item->vm->CanExecuteCommand(item->rule->name, item->rule->args);
    if (item->obj->inherits("QWidget")) {
      static_cast<QWidget*>(item->obj)->setEnabled(enabled);
    } else if (item->obj->inherits("QAction")) {
      static_cast<QAction*>(item->obj)->setEnabled(enabled);
    }
  }
  return true;
}

bool BindingContext::UpdateModel() {
  ++this->updating_model;
  // Guarded: a model write may destroy widgets (a host listener's doing).
  std::vector<QPointer<QObject>> writers;
  for (DataBindingItemQt* item : this->data_bindings) {
    if (!item->rule || !item->obj) continue;
    const int mode = item->rule->mode;
    if (mode == DataBinding::MODE_TWO_WAY || mode == DataBinding::MODE_ONE_WAY_TO_MODEL) {
      writers.push_back(item->obj);
    }
  }
  for (const QPointer<QObject>& obj : writers) {
    if (obj && obj->isWidgetType()) UpdateWidgetToModel(static_cast<QWidget*>(obj.data()));
  }
  --this->updating_model;
  return true;
}

void BindingContext::UpdateWidgetToModel(QWidget* widget) {
  const QVariant stored = widget->property("data-binding");
  if (!stored.canConvert<DataBindingItemQt>()) return;
  DataBindingItemQt item = stored.value<DataBindingItemQt>();
  base::Value value;
  OVUI_CHECK(item.GetWidgetProp(value) && !value.IsNull(), );
  if (!item.rule || !item.vm) return;
  const std::string error_key = kErrorOf + item.rule->path;
  std::string message;
  item.rule->SetPropW(item.vm, value, message);
  OnPropValidationMsg(widget, error_key, message);
  UpdateViewCommand();
}

void BindingContext::OnPropValidationMsg(QWidget* widget, const std::string& error_key,
                                         const std::string& message) {
  PaintForeground(widget, message.empty() ? Qt::black : Qt::red);
  const QString text = QString::fromUtf8(message.c_str());
  for (DataBindingItemQt* item : this->data_bindings) {
    if (!item->rule || !item->obj || item->rule->mode != DataBinding::MODE_ONE_WAY) continue;
    if (item->rule->path != error_key) continue;
    if (item->obj->property(item->prop.c_str()).toString() != text) {
      item->obj->setProperty(item->prop.c_str(), text);
    }
  }
}

void BindingContext::OnChanged() {
  QObject* obj = sender();
  QWidget* widget = obj && obj->isWidgetType() ? static_cast<QWidget*>(obj) : nullptr;
  // Ten nested view updates deep, a change raised from inside one is refused:
  // two widgets feeding each other would otherwise never settle.
  OVUI_CHECK(widget != NULL && this->updating_view < 10, );
  UpdateWidgetToModel(widget);
}

void BindingContext::OnCommand() {
  QObject* obj = sender();
  OVUI_CHECK(obj != NULL, );
  // This context's own item, not the copy in "cmd-binding": an action shared
  // with another window may carry that window's copy, whose rule is freed
  // when that window goes.
  auto found = std::find_if(this->command_bindings.begin(), this->command_bindings.end(),
                            [obj](const CommandBindingItemQt* item) { return item->obj == obj; });
  if (found == this->command_bindings.end()) return;
  const CommandBindingItemQt& item = **found;
  if (!item.rule || !item.vm) return;
  // Copied before anything runs: the command may delete the sender, whose
  // item owns the rule, or the whole window and with it this context.
  const std::string name = item.rule->name;
  const std::string args = item.rule->args;
  const bool close_window = item.rule->close_window;
  const bool update_model = item.rule->update_model;
  // Held so that a command whose window takes the last reference with it
  // still returns into a live view model.
  item.vm->AddRef();
  const std::unique_ptr<ViewModel, void (*)(ViewModel*)> owner(
      item.vm, [](ViewModel* vm) { vm->Release(); });
  const QPointer<BindingContext> alive(this);
  // Nothing runs while the command says it cannot, even when an action is
  // triggered from code.
  const bool has = owner->HasCommand(name);
  if (has && !owner->CanExecuteCommand(name, args)) return;
  if (update_model) UpdateModel();
  if (!alive) return;
  if (has) {
    if (!owner->ExecuteCommand(name, args) || !alive) return;
    if (!close_window) {
      UpdateViewCommand();
      return;
    }
  }
  if (close_window && this->widget) this->widget->close();
}

void BindingContext::OnWidgetDestroyed(QObject* obj) {
  auto drop = [obj](auto& items) {
    auto keep = std::stable_partition(items.begin(), items.end(),
                                      [obj](const auto* item) { return item->obj != obj; });
    for (auto it = keep; it != items.end(); ++it)
      delete *it;
    items.erase(keep, items.end());
  };
  for (auto it = this->validated.begin(); it != this->validated.end();) {
    it = it->second->obj == obj ? this->validated.erase(it) : std::next(it);
  }
  drop(this->data_bindings);
  drop(this->command_bindings);
}

void BindingContext::OnRootWidgetDestroyed(QObject*) {
  // The children are gone already; their items must not be touched.
  this->widget = nullptr;
  delete this;
}

void BindingContext::OnViewModelChanged() {
  if (this->pending_updates++ == 0) {
    QTimer::singleShot(kDeferredUpdateMs, this, SLOT(OnUpdateViewAsync()));
  }
}

void BindingContext::OnUpdateViewAsync() {
  if (this->pending_updates == 0) return;
  this->pending_updates = 0;
  UpdateView(false);
}

bool BindingContext::OnEvent(events::Event* e) {
  if (!e) return false;
  if (e->GetType() == "prop-changed") {
    emit ViewModelChanged();
    return false;
  }
  if (!this->widget) return false;
  OnWindowRequest(e);
  return false;
}

bool BindingContext::OnWindowRequest(events::Event* e) {
  const std::string& type = e->GetType();
  const char* name_text = e->GetParam("name").Str();
  const std::string name = name_text ? name_text : "";
  if (type == "set_menu") {
    const auto* menu = static_cast<const MenuData*>(e->GetParam("value").Pointer());
    return menu && OnSetMenu(name, *menu, this->widget);
  }
  if (type == "close_window") {
    this->widget->close();
    return true;
  }
  QWidget* target = FindWidget(name, this->widget);
  if (type == "window_pos") {
    if (!target) return false;  // unanswered
    const QPoint at = target->mapToGlobal(QPoint(0, 0));
    e->SetParam("x", at.x());
    e->SetParam("y", at.y());
    e->SetParam("w", target->width());
    e->SetParam("h", target->height());
    return true;
  }
  if (type == "set_window_pos") {
    if (!target) {
      OVUI_LOG_FAILED("widget!=NULL");
      return false;
    }
    const int x = IntParam(e, "x"), y = IntParam(e, "y");
    const int w = IntParam(e, "w"), h = IntParam(e, "h");
    if (w != -1 && h != -1) target->resize(w, h);
    if (x != -1 && y != -1) target->move(x, y);
    return true;
  }
  if (type == "set_style_sheet") {
    if (!target) {
      OVUI_LOG_FAILED("widget!=NULL");
      return false;
    }
    // The sheet travels as "style_sheet"; "value" is accepted too.
    const char* sheet = e->GetParam("style_sheet").Str();
    if (!sheet) sheet = e->GetParam("value").Str();
    target->setStyleSheet(QString::fromUtf8(sheet ? sheet : ""));
    return true;
  }
  if (type == "get_style_sheet") {
    if (!target) {
      OVUI_LOG_FAILED("widget!=NULL");
      return false;
    }
    e->SetParam("style_sheet", Utf8(target->styleSheet()));
    return true;
  }
  return false;
}

QWidget* BindingContext::FindWidget(const std::string& name, QWidget* root) {
  if (!root) return nullptr;
  if (name.empty() || Utf8(root->objectName()) == name) return root;
  for (QObject* child : root->children()) {
    if (!child->isWidgetType()) continue;
    if (QWidget* found = FindWidget(name, static_cast<QWidget*>(child))) return found;
  }
  return nullptr;
}

bool BindingContext::OnSetMenu(const std::string& name, const MenuData& menu, QWidget* root) {
  QWidget* target = FindWidget(name, root);
  auto* button = qobject_cast<QPushButton*>(target);
  if (!button) return false;
  QMenu* old = button->menu();
  if (menu.GetChilds().empty() && !menu.separator) {
    button->setMenu(nullptr);
  } else {
    auto* built = new QMenu(button);
    this->pop_menu.BuildMenu(built, menu);
    button->setMenu(built);
  }
  // The button does not own its menu; the old one was made here for it.
  if (old && old->parent() == button) old->deleteLater();
  return true;
}

}  // namespace vm
